#pragma once

#include <QtCore/QObject>
#include <QtCore/QString>

namespace parloquin {

/// \brief Tells whoever listens that something of a name has happened.
///
/// Posting emits on the thread that posts; a listener's connection type says where it hears of it.
class NotificationCenter final : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    /// The one that everybody shares; lives as long as the process.
    [[nodiscard]] static NotificationCenter *defaultCenter();

    /// \param sender what the notification is about; borrowed, alive until this returns
    void post(const QString &name, const void *sender) { Q_EMIT posted(name, sender); }

Q_SIGNALS:
    void posted(const QString &name, const void *sender);
};

} // namespace parloquin
