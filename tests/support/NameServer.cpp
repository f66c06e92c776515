#include "support/NameServer.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <chrono>
#include <optional>
#include <utility>

namespace {

constexpr qsizetype headSize = 12; // bytes
constexpr char typeAaaa = 28;

qsizetype questionEnd(const QByteArray &message) { return message.indexOf('\0', headSize) + 5; }

char typeOf(const QByteArray &message) { return message[questionEnd(message) - 3]; }

} // namespace

NameServer::NameServer(Names names)
    : m_names(std::move(names))
    , m_socket(::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0))
{
    sockaddr_in address {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(53);
    if (::bind(m_socket, reinterpret_cast<sockaddr *>(&address), sizeof address) != 0)
        qFatal("NameServer: 127.0.0.1:53 is not free; only a network of the test's own has it");
    m_thread = std::thread([this] { serve(); });
}

NameServer::~NameServer()
{
    ::shutdown(m_socket, SHUT_RDWR);
    m_thread.join();
    ::close(m_socket);
}

void NameServer::serve()
{
    struct Question {
        QByteArray bytes;
        sockaddr_in peer {};
    };
    std::optional<Question> waiting;
    bool hasToldIpv6 = m_names.ipv6.isEmpty();
    const auto tell = [this](const Question &question) {
        const QByteArray message = answer(question.bytes);
        ::sendto(m_socket, message.constData(), static_cast<size_t>(message.size()), 0,
            reinterpret_cast<const sockaddr *>(&question.peer), sizeof question.peer);
    };
    for (;;) {
        Question question { QByteArray(512, '\0') };
        socklen_t size = sizeof question.peer;
        const auto count = ::recvfrom(m_socket, question.bytes.data(), 512, 0,
            reinterpret_cast<sockaddr *>(&question.peer), &size);
        if (count <= 0)
            return;
        question.bytes.truncate(count);
        ++m_questions;
        const bool isIpv6 = typeOf(question.bytes) == typeAaaa;
        if (!(isIpv6 ? m_names.answersIpv6 : m_names.answersIpv4))
            continue;
        if (!isIpv6 && !hasToldIpv6) {
            waiting = question;
            continue;
        }
        tell(question);
        hasToldIpv6 = hasToldIpv6 || isIpv6;
        if (hasToldIpv6 && waiting) {
            std::this_thread::sleep_for(std::chrono::milliseconds(50)); // a slower way
            tell(*std::exchange(waiting, {}));
        }
    }
}

QByteArray NameServer::answer(const QByteArray &question) const
{
    const bool isIpv6 = typeOf(question) == typeAaaa;
    const QByteArray asked = question.sliced(headSize, questionEnd(question) - headSize);
    const auto &addresses = isIpv6 ? m_names.ipv6 : m_names.ipv4;
    QByteArray message = question.first(2); // its number
    message += QByteArray("\x81\x80\0\1\0", 5) + static_cast<char>(addresses.size())
        + QByteArray(4, '\0') + asked;
    for (const QByteArray &text : addresses) {
        QByteArray bytes(isIpv6 ? 16 : 4, '\0');
        ::inet_pton(isIpv6 ? AF_INET6 : AF_INET, text.constData(), bytes.data());
        // The name asked for, in class IN, for no longer than this answer.
        message += QByteArray("\xc0\x0c\0", 3) + (isIpv6 ? typeAaaa : char { 1 })
            + QByteArray("\0\1\0\0\0\0\0", 7) + static_cast<char>(bytes.size()) + bytes;
    }
    return message;
}
