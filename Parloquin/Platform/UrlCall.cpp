#include "Parloquin/Platform/UrlCall.h"

#include <QtCore/QIODevice>
#include <QtNetwork/QNetworkAccessManager>
#include <QtNetwork/QNetworkReply>
#include <QtNetwork/QNetworkRequest>

#include <algorithm>
#include <cstring>
#include <memory>
#include <utility>

namespace parloquin {

namespace {

constexpr int mostConnections = 4; // an address of each family, and one more try
constexpr qint64 readBufferSize = qint64 { 256 } * 1024; // bytes

/// A body that can be read once. The stack silently repeats a request whose body it can rewind when
/// the peer closes before the first byte of an answer; a message might be sent twice.
class UploadBody : public QIODevice {
public:
    explicit UploadBody(QByteArray bytes)
        : m_bytes(std::move(bytes))
    {
        open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    }

    [[nodiscard]] bool isSequential() const override { return true; }
    [[nodiscard]] qint64 bytesAvailable() const override { return m_bytes.size() - m_read; }
    [[nodiscard]] bool atEnd() const override { return bytesAvailable() == 0; }

    // The base class refuses as well, but warns on the host's console.
    bool seek(qint64 /*position*/) override { return false; }

protected:
    qint64 readData(char *data, qint64 maximum) override
    {
        const qint64 count = std::min(maximum, bytesAvailable());
        if (count == 0 && maximum > 0)
            return -1;
        std::memcpy(data, m_bytes.constData() + m_read, static_cast<size_t>(count));
        m_read += count;
        return count;
    }

    qint64 writeData(const char * /*data*/, qint64 /*size*/) override { return -1; }

private:
    const QByteArray m_bytes;
    qint64 m_read = 0;
};

QNetworkRequest networkRequest(const UrlRequest &request)
{
    QNetworkRequest result(request.url);
    result.setAttribute(
        QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
    result.setAttribute(QNetworkRequest::Http2AllowedAttribute, false);
    result.setAttribute(QNetworkRequest::Http2CleartextAllowedAttribute, false);
    result.setAttribute(QNetworkRequest::HttpPipeliningAllowedAttribute, false);
    result.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    result.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    result.setAttribute(QNetworkRequest::AuthenticationReuseAttribute, QNetworkRequest::Manual);
    result.setAttribute(QNetworkRequest::CacheSaveControlAttribute, false);
    result.setAttribute(QNetworkRequest::DoNotBufferUploadDataAttribute, true);

    // The stack fills in each of these when it is missing, by the locale or by its own taste.
    // A connection of its own for each call: one that the peer is about to close is never reused.
    result.setRawHeader("Connection", "close");
    result.setRawHeader("Accept-Encoding", "identity");
    result.setRawHeader("Accept-Language", "*");
    result.setRawHeader("User-Agent", "Parloquin/1.0");
    for (const auto &[name, value] : request.headers)
        result.setRawHeader(name, value);
    return result;
}

/// Whether the answer is whole although the stack wants to send again: it does so too for an answer
/// that ended with its connection and came fast, and for a 307 or 308, which it would not follow.
bool isWhole(const QNetworkReply &reply, qint64 received)
{
    const QVariant status = reply.attribute(QNetworkRequest::HttpStatusCodeAttribute);
    if (!status.isValid())
        return false;
    if (reply.hasRawHeader("Transfer-Encoding"))
        return status == 307 || status == 308;
    return !reply.hasRawHeader("Content-Length")
        || reply.rawHeader("Content-Length").toLongLong() == received;
}

/// Nothing where the reply has a whole answer: a status of 400 and above is an error to the stack
/// only.
std::optional<TransportError> transportError(const QNetworkReply &reply, qint64 received)
{
    const auto error = [&reply](int code) { return TransportError { code, reply.errorString() }; };
    switch (reply.error()) {
    case QNetworkReply::NoError:
    case QNetworkReply::ProxyAuthenticationRequiredError: // a status like any other
        return {};
    case QNetworkReply::OperationCanceledError:
        return error(TransportError::cancelled);
    case QNetworkReply::TimeoutError:
    case QNetworkReply::ProxyTimeoutError:
        return error(TransportError::timedOut);
    case QNetworkReply::ProtocolUnknownError:
        return error(TransportError::unsupportedUrl);
    case QNetworkReply::HostNotFoundError:
        return error(TransportError::cannotFindHost);
    case QNetworkReply::ConnectionRefusedError:
    case QNetworkReply::ProxyConnectionRefusedError:
    case QNetworkReply::ProxyNotFoundError:
        return error(TransportError::cannotConnectToHost);
    case QNetworkReply::NetworkSessionFailedError:
    case QNetworkReply::UnknownNetworkError: // the socket's "network unreachable" arrives as this
        return error(TransportError::notConnectedToInternet);
    case QNetworkReply::ProtocolFailure:
        return error(TransportError::cannotParseResponse);
    case QNetworkReply::SslHandshakeFailedError:
        return error(TransportError::secureConnectionFailed);
    case QNetworkReply::ContentReSendError: // closed before the first byte: see UploadBody
        if (isWhole(reply, received))
            return {};
        return error(TransportError::networkConnectionLost);
    default:
        if (reply.error() < QNetworkReply::ContentAccessDenied)
            return error(TransportError::networkConnectionLost);
        return {};
    }
}

std::optional<UrlResponse> urlResponse(const QNetworkReply &reply)
{
    const QVariant status = reply.attribute(QNetworkRequest::HttpStatusCodeAttribute);
    if (!status.isValid())
        return {};
    UrlResponse response { status.toInt(), {}, {} };
    for (const auto &field : reply.rawHeaderPairs())
        response.headers.append({ field.first, field.second });
    const QByteArray type = reply.rawHeader("Content-Type");
    response.mimeType = type.split(';').constFirst().trimmed().toLower();
    return response;
}

} // namespace

UrlCall::UrlCall(
    UrlRequest request, UrlSession::Handler handler, qint64 maximumBytes, QObject *parent)
    : QObject(parent)
    , m_request(std::move(request))
    , m_handler(std::move(handler))
    , m_maximumBytes(maximumBytes)
{
    m_deadline.setSingleShot(true);
    m_deadline.setTimerType(Qt::PreciseTimer);
    connect(&m_deadline, &QTimer::timeout, this, [this] {
        finish({ { TransportError::timedOut, QStringLiteral("The request timed out.") } });
    });
}

UrlCall::~UrlCall()
{
    release();
    delete m_reply; // before the manager may go, whose child it is
}

void UrlCall::start(std::shared_ptr<QNetworkAccessManager> manager, std::function<void()> spoilt)
{
    m_manager = std::move(manager);
    m_spoilt = std::move(spoilt);
    const QString scheme = m_request.url.scheme();
    if (scheme != QLatin1String("http") && scheme != QLatin1String("https")) {
        finish({ { TransportError::unsupportedUrl, QStringLiteral("unsupported URL") } });
        return;
    }

    m_deadline.start(m_request.timeout);
    QNetworkRequest request = networkRequest(m_request);
    if (m_request.method == "GET") {
        m_reply = m_manager->get(request);
    } else {
        const QByteArray bytes = m_request.body.value_or(QByteArray());
        // Without a length the stack would buffer the body, and could rewind it.
        request.setHeader(QNetworkRequest::ContentLengthHeader, bytes.size());
        auto body = std::make_unique<UploadBody>(bytes);
        m_reply = m_manager->sendCustomRequest(request, m_request.method, body.get());
        body.release()->setParent(m_reply);
    }
    // Without a bound the stack would take whatever comes before it says a word of it to read().
    m_reply->setReadBufferSize(readBufferSize);
    // The stack would connect again for ever to a peer that resets each connection at once.
    connect(m_reply, &QNetworkReply::socketStartedConnecting, this, [this] {
        if (++m_connections > mostConnections)
            finish({ { TransportError::networkConnectionLost,
                QStringLiteral("The peer resets every connection.") } });
    });
    connect(m_reply, &QNetworkReply::readyRead, this, &UrlCall::read);
    connect(m_reply, &QNetworkReply::finished, this, [this] {
        read();
        if (m_reply)
            finish(transportError(*m_reply, m_data.size()));
    });
}

void UrlCall::cancel() { finish({ { TransportError::cancelled, QStringLiteral("cancelled") } }); }

void UrlCall::read()
{
    m_data += m_reply->readAll();
    if (m_data.size() > m_maximumBytes)
        finish({ { TransportError::networkConnectionLost,
            QStringLiteral("The answer is longer than %1 bytes.").arg(m_maximumBytes) } });
}

void UrlCall::finish(std::optional<TransportError> error)
{
    // Taken out first: it runs once, whatever it does.
    const auto handler = std::exchange(m_handler, {});
    if (!handler)
        return;
    deleteLater(); // its own signal may have led here
    // The stack closes where the peer says that it does, and only there.
    if (m_reply
        && (!m_reply->isFinished()
            || m_reply->rawHeader("Connection").compare("close", Qt::CaseInsensitive) != 0))
        m_spoilt();
    auto response = m_reply ? urlResponse(*m_reply) : std::nullopt;
    auto data = response && !error ? std::optional(std::move(m_data)) : std::nullopt;
    m_data.clear();
    release();
    handler(std::move(data), std::move(response), std::move(error));
}

void UrlCall::release()
{
    m_deadline.stop();
    if (!m_reply)
        return;
    m_reply->disconnect(this);
    m_reply->abort();
}

} // namespace parloquin
