#include "Parloquin/TestKit/Http.h"

#include <QtNetwork/QTcpSocket>

namespace ParloquinTest {

HttpAnswer http(const QString &host, const QByteArray &path, const QByteArray &body)
{
    constexpr int patience = 10000; // ms
    QTcpSocket socket;
    const auto colon = host.lastIndexOf(QLatin1Char(':'));
    socket.connectToHost(host.left(colon), host.mid(colon + 1).toUShort());
    if (!socket.waitForConnected(patience))
        return {};
    socket.write((body.isNull() ? "GET " : "POST ") + path + " HTTP/1.1\r\nHost: " + host.toLatin1()
        + "\r\nConnection: close\r\nContent-Type: application/json\r\nContent-Length: "
        + QByteArray::number(body.size()) + "\r\n\r\n" + body);
    QByteArray answer;
    do {
        answer += socket.readAll();
    } while (socket.waitForReadyRead(patience));
    answer += socket.readAll();

    // "HTTP/1.1 200 OK"
    const auto end = answer.indexOf("\r\n\r\n");
    return { end < 0 ? 0 : answer.mid(answer.indexOf(' ') + 1, 3).toInt(), answer.mid(end + 4) };
}

} // namespace ParloquinTest
