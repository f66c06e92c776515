#include "Parloquin/TestKit/Desktop.h"

#include <QtNetwork/QLocalSocket>

#include <utility>

namespace ParloquinTest {

Desktop::Desktop()
{
    m_server.moveToThread(&m_thread);
    QObject::connect(&m_server, &QLocalServer::newConnection, &m_server, [this] {
        while (QLocalSocket *const socket = m_server.nextPendingConnection()) {
            QObject::connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
            QObject::connect(socket, &QLocalSocket::readyRead, socket, [this, socket] {
                if (socket->canReadLine())
                    socket->write(answer(socket->readLine().chopped(1)));
            });
        }
    });
    m_thread.start();
    bool isListening = false;
    QMetaObject::invokeMethod(
        &m_server, [this] { return m_server.listen(socket()); }, Qt::BlockingQueuedConnection,
        &isListening);
    if (!isListening)
        qFatal("TestKit: cannot listen at %s", qPrintable(socket()));
}

Desktop::~Desktop()
{
    QMetaObject::invokeMethod(
        &m_server,
        [this] {
            m_server.close();
            m_server.moveToThread(nullptr);
        },
        Qt::BlockingQueuedConnection);
    m_thread.quit();
    m_thread.wait();
}

void Desktop::setApps(std::optional<QSet<QByteArray>> schemes)
{
    const QMutexLocker lock(&m_mutex);
    m_apps = std::move(schemes);
}

QByteArray Desktop::takeOpened()
{
    const QMutexLocker lock(&m_mutex);
    return std::exchange(m_opened, {});
}

QByteArray Desktop::answer(const QByteArray &question)
{
    const QMutexLocker lock(&m_mutex);
    const QByteArray what = question.mid(question.indexOf(' ') + 1);
    const bool isThere = !m_apps || m_apps->contains(what.split(':').constFirst());
    if (isThere && question.startsWith("open "))
        m_opened = what;
    return isThere ? "yes\n" : "no\n";
}

} // namespace ParloquinTest
