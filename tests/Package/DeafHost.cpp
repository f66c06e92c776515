// A kit that is built for a real service, told by the environment to go elsewhere: it goes, through
// the proxy, where it was built to go.
#include "Parloquin/Parloquin.h"

#include <QtCore/QTimer>
#include <QtNetwork/QTcpServer>
#include <QtNetwork/QTcpSocket>
#include <QtWidgets/QApplication>

#include <cstdio>
#include <memory>

int main(int argc, char **argv)
{
    const QApplication app(argc, argv);
    QTcpServer proxy;
    QTcpServer elsewhere;
    if (!proxy.listen(QHostAddress::LocalHost) || !elsewhere.listen(QHostAddress::LocalHost))
        return 2;
    const QByteArray loopback = "127.0.0.1:";
    qputenv("http_proxy", "http://" + loopback + QByteArray::number(proxy.serverPort()));
    qputenv("PARLOQUIN_SERVICE_HOST", loopback + QByteArray::number(elsewhere.serverPort()));
    qputenv("PARLOQUIN_ROUTE", "none");

    QByteArray request;
    QObject::connect(&proxy, &QTcpServer::newConnection, &app, [proxy = &proxy, got = &request] {
        QTcpSocket *const socket = proxy->nextPendingConnection();
        const auto read = [got, socket] {
            *got += socket->readAll();
            QCoreApplication::exit(got->contains("verify.example") ? 0 : 1);
        };
        QObject::connect(socket, &QTcpSocket::readyRead, socket, read);
    });
    QObject::connect(
        &elsewhere, &QTcpServer::newConnection, &app, [] { QCoreApplication::exit(1); });
    QTimer::singleShot(std::chrono::seconds(20), &app, [] { QCoreApplication::exit(1); });

    const std::unique_ptr<ParloquinViewController> container(Parloquin().viewControllerForLogin());
    container->show();
    const int result = QCoreApplication::exec();
    std::fprintf(stderr, "the proxy got:\n%s\n", request.constData());
    return result;
}
