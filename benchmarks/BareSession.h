#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QThread>

#include <functional>

class QNetworkAccessManager;

/// \brief What a host would write without the kit: a network access manager on a thread of its own
/// that posts a body and hands back the one that comes.
class BareSession {
public:
    BareSession();
    ~BareSession();
    Q_DISABLE_COPY_MOVE(BareSession)

    /// Main thread; `done` runs on the session's.
    void post(const QByteArray &body, std::function<void(QByteArray)> done);

private:
    QThread m_thread;
    QNetworkAccessManager *m_manager;
};
