#include "Parloquin/Platform/Rehearsal.h"

#include "Parloquin/Platform/GLibPointers.h"

#include <QtCore/QFile>
#include <QtCore/QRegularExpression>

#include <gio/gunixsocketaddress.h>

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
    QString host = variable(name);
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
    constexpr gint64 patience = 1'500'000; // us
    const GLibPointer<GSocket> socket(g_socket_new(
        G_SOCKET_FAMILY_UNIX, G_SOCKET_TYPE_STREAM, G_SOCKET_PROTOCOL_DEFAULT, nullptr));
    const GLibPointer<GSocketAddress> desktop(
        g_unix_socket_address_new(QFile::encodeName(path).constData()));
    const QByteArray line = question + '\n';
    if (!socket || g_socket_connect(socket.get(), desktop.get(), nullptr, nullptr) == FALSE
        || g_socket_send(
               socket.get(), line.constData(), static_cast<gsize>(line.size()), nullptr, nullptr)
            != line.size())
        return false;
    const QByteArray yes("yes\n");
    QByteArray answer;
    while (answer.size() < yes.size() && !answer.contains('\n')) {
        char bytes[4];
        const bool isThere =
            g_socket_condition_timed_wait(socket.get(), G_IO_IN, patience, nullptr, nullptr)
            != FALSE;
        const gssize count =
            isThere ? g_socket_receive(socket.get(), bytes, sizeof bytes, nullptr, nullptr) : 0;
        if (count <= 0)
            return false;
        answer.append(bytes, count);
    }
    return answer.startsWith(yes);
}

} // namespace parloquin::Rehearsal
