#pragma once

#include <QtCore/QStringList>

/// \brief Hears what the kit tells the host's developer, from any thread, while this lives. One at
/// a time.
class DeveloperWords {
public:
    /// \param rules of Qt, by which the host turns it on
    explicit DeveloperWords(const QString &rules = QStringLiteral("parloquin=true"));
    ~DeveloperWords();
    DeveloperWords(const DeveloperWords &) = delete;
    DeveloperWords &operator=(const DeveloperWords &) = delete;

    /// \return a line each
    [[nodiscard]] QStringList heard() const;
};
