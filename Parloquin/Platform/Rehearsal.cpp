#include "Parloquin/Platform/Rehearsal.h"

#include <QtCore/QRegularExpression>
#include <QtNetwork/QLocalSocket>

#include <atomic>
#include <cstdio>

namespace parloquin::Rehearsal {

namespace {

/// Neither a name, which could lead anywhere, nor anything beside address and port.
bool isOnLoopback(const QString &host)
{
    static const QRegularExpression pattern(QRegularExpression::anchoredPattern(QStringLiteral(
        R"((?:127(?:\.(?:25[0-5]|2[0-4]\d|1\d\d|[1-9]?\d)){3}|\[::1\]):([1-9]\d{0,4}))")));
    constexpr int lastPort = 65535;
    const auto match = pattern.match(host);
    return match.hasMatch() && match.captured(1).toInt() <= lastPort;
}

/// \return null where it is not set, and always where the library is built for a real service
QString variable(const char *name)
{
    return isOnLoopback(builtFor()) ? qEnvironmentVariable(name) : QString();
}

void complain(const char *variable, const QString &value, const char *mend)
{
    static std::atomic<bool> isSaid = false;
    if (!isSaid.exchange(true))
        std::fprintf(
            stderr, "Parloquin: %s=%s is left alone: %s\n", variable, qPrintable(value), mend);
}

} // namespace

QString serviceHost()
{
    constexpr char name[] = "PARLOQUIN_SERVICE_HOST";
    const QString host = variable(name);
    if (isOnLoopback(host))
        return host;
    if (!host.isNull())
        complain(name, host, "write a loopback address and a port, as 127.0.0.1:8046");
    return builtFor();
}

std::optional<bool> hasRoute()
{
    constexpr char name[] = "PARLOQUIN_ROUTE";
    const QString route = variable(name);
    if (route == QStringLiteral("default"))
        return true;
    if (route == QStringLiteral("none"))
        return false;
    if (!route.isNull())
        complain(name, route, "write none or default");
    return std::nullopt;
}

std::optional<bool> askDesktop(const QByteArray &question)
{
    const QString path = variable("PARLOQUIN_DESKTOP");
    if (path.isNull())
        return std::nullopt;
    constexpr int patience = 1500; // ms
    QLocalSocket socket;
    socket.connectToServer(path);
    if (!socket.waitForConnected(patience))
        return false;
    socket.write(question + '\n');
    while (!socket.canReadLine()) {
        if (!socket.waitForReadyRead(patience))
            return false;
    }
    return socket.readLine() == "yes\n";
}

} // namespace parloquin::Rehearsal
