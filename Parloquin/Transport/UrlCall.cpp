#include "Parloquin/Transport/UrlCall.h"

#include "Parloquin/Transport/SystemRoute.h"

#include <netinet/in.h>
#include <netinet/tcp.h>

#include <utility>

namespace parloquin {

namespace {

// With what the system says of proxies: then the call goes its way without, and those behind it
// wait no longer than a system in order takes. The session's thread only.
constexpr std::chrono::milliseconds fullPatience(1500);
constexpr std::chrono::milliseconds shortPatience(100);
std::chrono::milliseconds settingsPatience = fullPatience;

GLibPointer<GSource> after(std::chrono::milliseconds delay, GSourceFunc call, gpointer data)
{
    GLibPointer<GSource> source(g_timeout_source_new(static_cast<guint>(delay.count())));
    g_source_set_callback(source.get(), call, data, nullptr);
    g_source_attach(source.get(), g_main_context_get_thread_default());
    return source;
}

QByteArray authorization(const QUrl &proxy)
{
    if (proxy.userName().isEmpty())
        return {};
    const QString name =
        proxy.userName(QUrl::FullyDecoded) + u':' + proxy.password(QUrl::FullyDecoded);
    return "Basic " + name.toUtf8().toBase64();
}

/// The request as it is sent. A proxy of plain HTTP is told the whole address.
/// \param plainProxy to which the request goes; empty where it goes to the server itself
QByteArray message(const UrlRequest &request, const QUrl &plainProxy)
{
    QUrl url = request.url.adjusted(QUrl::RemoveUserInfo | QUrl::RemoveFragment);
    if (url.path().isEmpty())
        url.setPath(QStringLiteral("/"));
    const auto target =
        plainProxy.isEmpty() ? QUrl::RemoveScheme | QUrl::RemoveAuthority : QUrl::FullyEncoded;

    UrlRequest sent;
    // A connection of its own for each call, and nothing by the locale.
    sent.headers = {
        { "Host", url.authority(QUrl::FullyEncoded).toLatin1() },
        { "Connection", "close" },
        { "Accept-Encoding", "identity" },
        { "Accept-Language", "*" },
        { "User-Agent", "Parloquin/1.0" },
    };
    for (const auto &[name, value] : request.headers)
        sent.setHeader(name, value);
    if (const QByteArray name = authorization(plainProxy); !name.isEmpty())
        sent.setHeader("Proxy-Authorization", name);
    const QByteArray body = request.body.value_or(QByteArray());
    if (request.method != "GET")
        sent.setHeader("Content-Length", QByteArray::number(body.size()));

    QByteArray text;
    text.reserve(1024 + body.size());
    text += request.method + ' ' + url.toEncoded(target) + " HTTP/1.1\r\n";
    for (const auto &[name, value] : std::as_const(sent.headers))
        text += name + ": " + value + "\r\n";
    return text + "\r\n" + body;
}

int transportCode(const GError *error)
{
    // Before the first byte of the answer; after it a TLS that fails is a connection lost.
    if (error->domain == G_TLS_ERROR && error->code != G_TLS_ERROR_EOF)
        return TransportError::secureConnectionFailed;
    if (error->domain == G_RESOLVER_ERROR)
        return TransportError::cannotFindHost;
    if (error->domain != G_IO_ERROR)
        return TransportError::networkConnectionLost;
    switch (error->code) {
    case G_IO_ERROR_TIMED_OUT:
        return TransportError::timedOut;
    case G_IO_ERROR_HOST_NOT_FOUND:
        return TransportError::cannotFindHost;
    case G_IO_ERROR_CONNECTION_REFUSED:
    case G_IO_ERROR_PROXY_FAILED:
    case G_IO_ERROR_PROXY_AUTH_FAILED:
    case G_IO_ERROR_PROXY_NEED_AUTH:
    case G_IO_ERROR_PROXY_NOT_ALLOWED:
    case G_IO_ERROR_NOT_SUPPORTED: // a kind of proxy
        return TransportError::cannotConnectToHost;
    case G_IO_ERROR_HOST_UNREACHABLE:
    case G_IO_ERROR_NETWORK_UNREACHABLE:
        return TransportError::notConnectedToInternet;
    default:
        return TransportError::networkConnectionLost;
    }
}

TransportError transportError(const GError *error)
{
    return { transportCode(error), QString::fromUtf8(error->message) };
}

bool isCancelled(const GError *error)
{
    return g_error_matches(error, G_IO_ERROR, G_IO_ERROR_CANCELLED) != FALSE;
}

} // namespace

UrlCall::UrlCall(UrlRequest request, UrlSession::Handler handler, qint64 maximumBytes, Ended ended)
    : m_request(std::move(request))
    , m_handler(std::move(handler))
    , m_ended(std::move(ended))
    , m_answer(maximumBytes)
    , m_deadline(after(
          m_request.timeout,
          [](gpointer call) -> gboolean {
              static_cast<UrlCall *>(call)->finish(
                  { { TransportError::timedOut, QStringLiteral("The request timed out.") } });
              return G_SOURCE_REMOVE;
          },
          this))
{
}

UrlCall::~UrlCall() { release(); }

void UrlCall::prepare()
{
    const GLibPointer<GSocketClient> client(g_socket_client_new());
    const GLibPointer<GSocketConnectable> address(g_network_address_new("127.0.0.1", 0));
    const GLibPointer<GSocketAddressEnumerator> addresses(
        g_socket_connectable_enumerate(address.get()));
    const GLibPointer<GSocketAddress> found(
        g_socket_address_enumerator_next(addresses.get(), nullptr, nullptr));
    const GLibPointer<GSocket> socket(
        g_socket_new(G_SOCKET_FAMILY_IPV4, G_SOCKET_TYPE_STREAM, G_SOCKET_PROTOCOL_TCP, nullptr));
    const GLibPointer<GSocketConnection> connection(
        socket ? g_socket_connection_factory_create_connection(socket.get()) : nullptr);
}

bool UrlCall::isSecure() const { return m_request.url.scheme() == QLatin1String("https"); }

void UrlCall::start()
{
    if (!m_handler)
        return; // ended while it waited
    const QUrl &url = m_request.url;
    if ((!isSecure() && url.scheme() != QLatin1String("http")) || url.host().isEmpty()) {
        finish({ { TransportError::unsupportedUrl, QStringLiteral("unsupported URL") } });
        return;
    }
    if (!isSecure() && isThisMachine(url.host())) {
        connect({});
        return;
    }
    m_patience = after(
        settingsPatience,
        [](gpointer call) -> gboolean {
            settingsPatience = shortPatience;
            static_cast<UrlCall *>(call)->connect({});
            return G_SOURCE_REMOVE;
        },
        this);
    askSystemRoute(
        url, m_cancelled.get(),
        [](GObject *, GAsyncResult *result, gpointer data) {
            const auto route = systemRoute(result);
            auto *const call = static_cast<UrlCall *>(data);
            if (!route || !call->m_patience)
                return; // the call is gone, or has gone its way
            settingsPatience = fullPatience;
            if (route->hasTls)
                call->connect(route->proxy);
            else
                call->finish({ { TransportError::secureConnectionFailed,
                    QStringLiteral("TLS is not available.") } });
        },
        this);
}

void UrlCall::cancel() { finish({ { TransportError::cancelled, QStringLiteral("cancelled") } }); }

void UrlCall::connect(const QUrl &proxy)
{
    m_patience.reset();
    const GLibPointer<GSocketClient> client(g_socket_client_new());
    g_socket_client_set_tls(client.get(), isSecure() ? TRUE : FALSE);
    // Proxies of HTTP pass plain requests on; through the other kinds GIO makes its way.
    const bool isPlain = !isSecure() && proxy.scheme() == QLatin1String("http");
    m_message = message(m_request, isPlain ? proxy : QUrl());
    if (isPlain || proxy.isEmpty()) {
        g_socket_client_set_enable_proxy(client.get(), FALSE);
    } else {
        const GLibPointer<GProxyResolver> resolver(
            g_simple_proxy_resolver_new(proxy.toEncoded().constData(), nullptr));
        g_socket_client_set_proxy_resolver(client.get(), resolver.get());
    }
    const QUrl &peer = isPlain ? proxy : m_request.url;
    const GLibPointer<GSocketConnectable> address(
        g_network_address_new(peer.host(QUrl::FullyEncoded).toLatin1().constData(),
            static_cast<guint16>(peer.port(isSecure() ? 443 : 80))));
    g_socket_client_connect_async(
        client.get(), address.get(), m_cancelled.get(),
        [](GObject *source, GAsyncResult *result, gpointer data) {
            GError *failure = nullptr;
            GLibPointer<GSocketConnection> connection(
                g_socket_client_connect_finish(G_SOCKET_CLIENT(source), result, &failure));
            const GLibPointer<GError> error(failure);
            if (isCancelled(failure))
                return; // the call may be gone
            auto *const call = static_cast<UrlCall *>(data);
            if (error)
                call->finish(transportError(failure));
            else
                call->send(std::move(connection));
        },
        this);
}

void UrlCall::send(GLibPointer<GSocketConnection> connection)
{
    m_connection = std::move(connection);
    // Behind a handshake the request would wait for the peer's word that it has come.
    g_socket_set_option(
        g_socket_connection_get_socket(m_connection.get()), IPPROTO_TCP, TCP_NODELAY, 1, nullptr);
    GIOStream *const stream = G_IO_STREAM(m_connection.get());
    m_readable.reset(g_pollable_input_stream_create_source(
        G_POLLABLE_INPUT_STREAM(g_io_stream_get_input_stream(stream)), nullptr));
    const GPollableSourceFunc call = [](GObject *, gpointer data) -> gboolean {
        return static_cast<UrlCall *>(data)->read();
    };
    g_source_set_callback(m_readable.get(), G_SOURCE_FUNC(call), this, nullptr);
    g_source_attach(m_readable.get(), g_main_context_get_thread_default());
    // A peer that takes no more may have answered already: how reading ends decides.
    g_output_stream_write_all_async(g_io_stream_get_output_stream(stream), m_message.constData(),
        static_cast<gsize>(m_message.size()), G_PRIORITY_DEFAULT, m_cancelled.get(), nullptr,
        nullptr);
}

gboolean UrlCall::read()
{
    const auto self = shared_from_this();
    char bytes[65536];
    GError *failure = nullptr;
    const gssize count = g_pollable_input_stream_read_nonblocking(
        G_POLLABLE_INPUT_STREAM(g_io_stream_get_input_stream(G_IO_STREAM(m_connection.get()))),
        bytes, sizeof bytes, nullptr, &failure);
    const GLibPointer<GError> error(failure);
    if (g_error_matches(failure, G_IO_ERROR, G_IO_ERROR_WOULD_BLOCK) != FALSE)
        return G_SOURCE_CONTINUE;
    if (error) {
        finish(transportError(failure));
        return G_SOURCE_REMOVE;
    }
    if (count == 0 && m_answer.end() != HttpAnswer::State::whole) {
        finish({ { TransportError::networkConnectionLost,
            QStringLiteral("The connection ended before the answer.") } });
        return G_SOURCE_REMOVE;
    }
    switch (m_answer.read({ bytes, count })) {
    case HttpAnswer::State::incomplete:
        return G_SOURCE_CONTINUE;
    case HttpAnswer::State::whole:
        finish({});
        break;
    case HttpAnswer::State::broken:
        finish(
            { { TransportError::cannotParseResponse, QStringLiteral("The answer is no HTTP.") } });
        break;
    case HttpAnswer::State::tooLong:
        finish({ { TransportError::networkConnectionLost,
            QStringLiteral("The answer is too long.") } });
        break;
    }
    return G_SOURCE_REMOVE;
}

void UrlCall::finish(std::optional<TransportError> error)
{
    // Taken out first: it runs once, whatever it does.
    const auto handler = std::exchange(m_handler, {});
    if (!handler)
        return;
    const auto self = shared_from_this();
    release();
    auto response = m_answer.response();
    auto data = response && !error ? std::optional(m_answer.takeBody()) : std::nullopt;
    handler(std::move(data), std::move(response), std::move(error));
    m_ended(this);
}

void UrlCall::release()
{
    m_deadline.reset();
    m_patience.reset();
    m_readable.reset();
    g_cancellable_cancel(m_cancelled.get());
    // What is let go of open says goodbye first, and TLS would wait for the peer to take that.
    if (m_connection)
        g_socket_close(g_socket_connection_get_socket(m_connection.get()), nullptr);
    m_connection.reset();
}

} // namespace parloquin
