#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>

#include <optional>

namespace messenger {

/// What a link asks for: a message to a recipient, in one of the apps.
struct DeepLink {
    QString app;
    QString recipient;
    QString text;

    /// Takes `APP://send?app=APP&to=RECIPIENT&text=TEXT` and nothing else: a link comes from
    /// outside, and what is not understood must not be half done.
    /// \param fault set to what is wrong when nothing is returned
    static std::optional<DeepLink> parse(
        const QString &link, const QStringList &apps, QString *fault);
};

}
