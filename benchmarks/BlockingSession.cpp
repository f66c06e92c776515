#include "BlockingSession.h"

#include <QtCore/QUrl>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <utility>

namespace {

constexpr char host[] = PARLOQUIN_SERVICE_HOST;

} // namespace

BlockingSession::BlockingSession()
    : m_thread([this] { run(); })
{
}

BlockingSession::~BlockingSession()
{
    {
        const std::lock_guard lock(m_mutex);
        m_isEnding = true;
    }
    m_hasMore.notify_one();
    m_thread.join();
}

void BlockingSession::start(
    const parloquin::StartRequestModel &model, std::function<void(QByteArray)> done)
{
    const ByHand::Request request = ByHand::request(model, m_keys);
    // As long as the kit's, field by field.
    QByteArray message = "POST /v1.0/start HTTP/1.1\r\nHost: ";
    message.reserve(1024 + request.body.size());
    message += host;
    message += "\r\nConnection: close\r\nAccept-Encoding: identity\r\nAccept-Language: *\r\n"
               "User-Agent: iOS\r\n"
               "X-TRZ-Client-Device-Id: 01234567-89AB-4CDE-8F01-23456789ABCD\r\n"
               "X-TRZ-Client-Key: ";
    message += m_keys.clientKey;
    message += "\r\nX-TRZ-Encrypted: 1\r\nX-TRZ-Lang: \r\nX-TRZ-Os: ios 12\r\n"
               "X-TRZ-Req-Signature: ";
    message += request.signature;
    message += "\r\nX-TRZ-Req-Timestamp: ";
    message += request.time;
    message += "\r\nX-TRZ-Sdk-Version: 1.0\r\n"
               "Content-Type: application/json; charset=utf-8\r\nContent-Length: ";
    message += QByteArray::number(request.body.size());
    message += "\r\n\r\n";
    message += request.body;
    {
        const std::lock_guard lock(m_mutex);
        m_calls.push_back({ message.toStdString(), std::move(done) });
    }
    m_hasMore.notify_one();
}

void BlockingSession::run()
{
    std::unique_lock lock(m_mutex);
    for (;;) {
        m_hasMore.wait(lock, [this] { return m_isEnding || !m_calls.empty(); });
        if (m_isEnding)
            return;
        const Call call = std::move(m_calls.front());
        m_calls.pop_front();
        lock.unlock();
        call.done(carry(call.message));
        lock.lock();
    }
}

QByteArray BlockingSession::carry(const std::string &message) const
{
    static const int port = QUrl(QStringLiteral("http://" PARLOQUIN_SERVICE_HOST)).port();
    sockaddr_in address {};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<std::uint16_t>(port));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    const int socket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (::connect(socket, reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0
        || ::send(socket, message.data(), message.size(), MSG_NOSIGNAL)
            != static_cast<ssize_t>(message.size()))
        qFatal("no responder");
    QByteArray answer;
    char block[65536];
    for (ssize_t count = 0; (count = ::recv(socket, block, sizeof block, 0)) > 0;)
        answer.append(block, count);
    ::close(socket);

    const qsizetype head = answer.indexOf("\r\n\r\n");
    if (head < 0 || !answer.startsWith("HTTP/1.1 200 "))
        qFatal("no answer");
    const QByteArray text = ByHand::plainText(answer.sliced(head + 4), m_keys);
    const QByteArray name = "\"reference\":\"";
    const qsizetype from = text.indexOf(name) + name.size();
    return text.mid(from, text.indexOf('"', from) - from);
}
