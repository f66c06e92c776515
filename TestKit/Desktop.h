#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QMutex>
#include <QtCore/QSet>
#include <QtCore/QTemporaryDir>
#include <QtCore/QThread>
#include <QtNetwork/QLocalServer>

#include <optional>

namespace ParloquinTest {

/// \brief Answers in place of the desktop's handlers of links, and keeps the links that it gets.
///
/// On a thread of its own: the kit asks from the main thread, and waits there.
class Desktop {
public:
    Desktop();
    ~Desktop();
    Q_DISABLE_COPY_MOVE(Desktop)

    [[nodiscard]] QString socket() const { return m_folder.filePath(QStringLiteral("desktop")); }

    /// \param schemes those that it has an app for; nothing: all
    void setApps(std::optional<QSet<QByteArray>> schemes);
    /// \return the link that was opened last, once; empty where none was
    [[nodiscard]] QByteArray takeOpened();

private:
    QByteArray answer(const QByteArray &question);

    QTemporaryDir m_folder;
    QThread m_thread;
    QLocalServer m_server; // lives on that thread

    QMutex m_mutex; // of what follows
    std::optional<QSet<QByteArray>> m_apps;
    QByteArray m_opened;
};

} // namespace ParloquinTest
