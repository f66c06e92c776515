#include "Parloquin/Transport/UrlCall.h"

#include <QtNetwork/QNetworkProxy>
#include <QtNetwork/QSslSocket>

#include <utility>

namespace parloquin {

namespace {

constexpr qint64 readBufferSize =
    qint64 { 256 } * 1024; // bytes; what more comes waits in the kernel

/// The proxy that the host or the system has set; none on the way to this machine.
QNetworkProxy proxyFor(const QUrl &url)
{
    const auto proxies = QNetworkProxyFactory::proxyForQuery(QNetworkProxyQuery(url));
    return proxies.isEmpty() ? QNetworkProxy(QNetworkProxy::NoProxy) : proxies.constFirst();
}

QByteArray authorization(const QNetworkProxy &proxy)
{
    if (proxy.user().isEmpty())
        return {};
    return "Basic " + (proxy.user() + u':' + proxy.password()).toUtf8().toBase64();
}

/// The request as it is sent. A proxy of plain HTTP is told the whole address.
QByteArray message(const UrlRequest &request, bool isProxied, const QByteArray &proxyAuthorization)
{
    QUrl url = request.url.adjusted(QUrl::RemoveUserInfo | QUrl::RemoveFragment);
    if (url.path().isEmpty())
        url.setPath(QStringLiteral("/"));
    const auto target = isProxied ? QUrl::FullyEncoded : QUrl::RemoveScheme | QUrl::RemoveAuthority;

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
    if (!proxyAuthorization.isEmpty())
        sent.setHeader("Proxy-Authorization", proxyAuthorization);
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

int transportCode(QAbstractSocket::SocketError error)
{
    switch (error) {
    case QAbstractSocket::SocketTimeoutError:
        return TransportError::timedOut;
    case QAbstractSocket::HostNotFoundError:
        return TransportError::cannotFindHost;
    case QAbstractSocket::ConnectionRefusedError:
    case QAbstractSocket::ProxyAuthenticationRequiredError:
    case QAbstractSocket::ProxyConnectionRefusedError:
    case QAbstractSocket::ProxyConnectionClosedError:
    case QAbstractSocket::ProxyConnectionTimeoutError:
    case QAbstractSocket::ProxyNotFoundError:
    case QAbstractSocket::ProxyProtocolError:
        return TransportError::cannotConnectToHost;
    case QAbstractSocket::NetworkError: // no way there
        return TransportError::notConnectedToInternet;
    case QAbstractSocket::SslHandshakeFailedError:
    case QAbstractSocket::SslInternalError:
    case QAbstractSocket::SslInvalidUserDataError:
        return TransportError::secureConnectionFailed;
    default:
        return TransportError::networkConnectionLost;
    }
}

} // namespace

UrlCall::UrlCall(
    UrlRequest request, UrlSession::Handler handler, qint64 maximumBytes, QObject *parent)
    : QObject(parent)
    , m_request(std::move(request))
    , m_handler(std::move(handler))
    , m_answer(maximumBytes)
{
    m_deadline.setSingleShot(true);
    m_deadline.setTimerType(Qt::PreciseTimer);
    connect(&m_deadline, &QTimer::timeout, this, [this] {
        finish({ { TransportError::timedOut, QStringLiteral("The request timed out.") } });
    });
    m_deadline.start(m_request.timeout);
}

UrlCall::~UrlCall() { release(); }

void UrlCall::start()
{
    if (!m_handler)
        return; // ended while it waited
    const QUrl &url = m_request.url;
    const bool isSecure = url.scheme() == QLatin1String("https");
    if ((!isSecure && url.scheme() != QLatin1String("http")) || url.host().isEmpty()) {
        finish({ { TransportError::unsupportedUrl, QStringLiteral("unsupported URL") } });
        return;
    }

    // Proxies of HTTP pass plain requests on; through the other kinds the socket makes its way.
    const QNetworkProxy proxy = proxyFor(url);
    const bool isHttpProxy =
        proxy.type() == QNetworkProxy::HttpProxy || proxy.type() == QNetworkProxy::HttpCachingProxy;
    const bool isProxied = isHttpProxy && !isSecure;
    const auto ready = [this, isProxied, name = isProxied ? authorization(proxy) : QByteArray()] {
        send(name, isProxied);
    };
    if (isSecure) {
        auto *secure = new QSslSocket(this);
        connect(secure, &QSslSocket::encrypted, this, ready);
        m_socket = secure;
    } else {
        m_socket = new QTcpSocket(this);
        connect(m_socket, &QAbstractSocket::connected, this, ready);
    }
    m_socket->setReadBufferSize(readBufferSize);
    connect(m_socket, &QAbstractSocket::readyRead, this, &UrlCall::read);
    connect(m_socket, &QAbstractSocket::errorOccurred, this, &UrlCall::end);
    if (isProxied) {
        m_socket->setProxy(QNetworkProxy::NoProxy);
        m_socket->connectToHost(proxy.hostName(), proxy.port());
        return;
    }
    m_socket->setProxy(isHttpProxy ? QNetworkProxy(QNetworkProxy::HttpProxy, proxy.hostName(),
                           proxy.port(), proxy.user(), proxy.password())
                                   : proxy);
    if (isSecure)
        static_cast<QSslSocket *>(m_socket)->connectToHostEncrypted(
            url.host(QUrl::FullyEncoded), static_cast<quint16>(url.port(443)));
    else
        m_socket->connectToHost(url.host(QUrl::FullyEncoded), static_cast<quint16>(url.port(80)));
}

void UrlCall::cancel() { finish({ { TransportError::cancelled, QStringLiteral("cancelled") } }); }

void UrlCall::send(const QByteArray &proxyAuthorization, bool isProxied)
{
    m_socket->write(message(m_request, isProxied, proxyAuthorization));
    m_socket->flush(); // before an answer that has come already ends the call
}

void UrlCall::read()
{
    while (m_socket && m_socket->bytesAvailable() > 0) {
        switch (m_answer.read(m_socket->readAll())) {
        case HttpAnswer::State::incomplete:
            break;
        case HttpAnswer::State::whole:
            finish({});
            return;
        case HttpAnswer::State::broken:
            finish({ { TransportError::cannotParseResponse,
                QStringLiteral("The answer is no HTTP.") } });
            return;
        case HttpAnswer::State::tooLong:
            finish({ { TransportError::networkConnectionLost,
                QStringLiteral("The answer is too long.") } });
            return;
        }
    }
}

void UrlCall::end()
{
    const auto error = m_socket->error();
    const QString description = m_socket->errorString();
    read();
    if (!m_handler)
        return;
    if (error == QAbstractSocket::RemoteHostClosedError
        && m_answer.end() == HttpAnswer::State::whole)
        finish({});
    else
        finish({ { transportCode(error), description } });
}

void UrlCall::finish(std::optional<TransportError> error)
{
    // Taken out first: it runs once, whatever it does.
    const auto handler = std::exchange(m_handler, {});
    if (!handler)
        return;
    deleteLater(); // a signal of the socket may have led here
    release();
    auto response = m_answer.response();
    auto data = response && !error ? std::optional(m_answer.takeBody()) : std::nullopt;
    handler(std::move(data), std::move(response), std::move(error));
}

void UrlCall::release()
{
    m_deadline.stop();
    if (!m_socket)
        return;
    m_socket->disconnect(this);
    m_socket->abort();
}

} // namespace parloquin
