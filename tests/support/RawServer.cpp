#include "support/RawServer.h"

#include "Parloquin/Extension/Encodable+Extension.h"
#include "Parloquin/Manager/EncryptManager.h"
#include "Parloquin/Networking/Helper/ApiResponseHelper.h"

#include <QtCore/QJsonDocument>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <condition_variable>
#include <map>
#include <mutex>
#include <optional>
#include <set>
#include <thread>

QByteArray RawRequest::method() const { return head.left(head.indexOf(' ')); }

QByteArray RawRequest::path() const
{
    const QByteArray line = head.left(head.indexOf('\r'));
    return line.mid(line.indexOf(' ') + 1).chopped(static_cast<qsizetype>(strlen(" HTTP/1.1")));
}

QByteArray RawRequest::header(const QByteArray &name) const
{
    for (const QByteArray &line : head.split('\n')) {
        const auto colon = line.indexOf(':');
        if (line.left(colon).compare(name, Qt::CaseInsensitive) == 0)
            return line.mid(colon + 1).trimmed();
    }
    return {};
}

QJsonObject RawRequest::parameters() const
{
    return QJsonDocument::fromJson(
        parloquin::ApiResponseHelper().getData(body).value_or(QByteArray()))
        .object();
}

namespace {

int listeningSocket(quint16 *port)
{
    const int fd = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    auto *generic = reinterpret_cast<sockaddr *>(&address);
    if (fd < 0 || ::bind(fd, generic, size) != 0 || ::listen(fd, 64) != 0
        || ::getsockname(fd, generic, &size) != 0)
        qFatal("RawServer: no port on 127.0.0.1");
    *port = ntohs(address.sin_port);
    return fd;
}

bool sendAll(int fd, const QByteArray &bytes)
{
    for (qsizetype sent = 0; sent < bytes.size();) {
        const auto count = ::send(
            fd, bytes.constData() + sent, static_cast<size_t>(bytes.size() - sent), MSG_NOSIGNAL);
        if (count <= 0)
            return false;
        sent += count;
    }
    return true;
}

} // namespace

struct RawServer::Private {
    quint16 port = 0;
    int listener = -1;
    std::thread acceptor;

    mutable std::mutex mutex; // of all below
    mutable std::condition_variable changed;
    bool stopping = false;
    std::optional<QByteArray> held; // what is in the paths that wait
    Script script;
    std::map<QByteArray, QByteArray> answers;
    int connections = 0;
    std::vector<RawRequest> requests;
    std::set<int> sockets;
    std::vector<std::thread> threads;

    void acceptAll();
    void serve(int fd);
    void play(int fd, const Script &steps);
    std::optional<RawRequest> readRequest(int fd, QByteArray *pending);
    void drip(int fd, const Step &step);
};

void RawServer::Private::acceptAll()
{
    for (;;) {
        const int fd = ::accept4(listener, nullptr, nullptr, SOCK_CLOEXEC);
        const std::lock_guard lock(mutex);
        if (stopping || fd < 0) {
            if (fd >= 0)
                ::close(fd);
            return;
        }
        ++connections;
        sockets.insert(fd);
        threads.emplace_back([this, fd] { serve(fd); });
        changed.notify_all();
    }
}

void RawServer::Private::serve(int fd)
{
    std::unique_lock lock(mutex);
    const Script steps = script;
    lock.unlock();
    QByteArray pending;
    if (!steps.empty()) {
        play(fd, steps);
    } else if (const auto request = readRequest(fd, &pending)) {
        lock.lock();
        changed.wait(lock, [&] { return !held || !request->path().contains(*held) || stopping; });
        const auto found = answers.find(request->path());
        const QByteArray bytes = found == answers.end()
            ? http(404, R"({"meta":{"httpStatusCode":404}})")
            : found->second;
        lock.unlock();
        sendAll(fd, bytes);
    }
    lock.lock();
    sockets.erase(fd);
    ::close(fd);
}

void RawServer::Private::play(int fd, const Script &steps)
{
    QByteArray pending;
    for (const Step &step : steps) {
        switch (step.kind) {
        case Step::Kind::read:
            readRequest(fd, &pending);
            break;
        case Step::Kind::send:
            sendAll(fd, step.bytes);
            break;
        case Step::Kind::drip:
            drip(fd, step);
            break;
        case Step::Kind::hold:
            while (readRequest(fd, &pending)) { }
            break;
        case Step::Kind::reset:
            const linger now { 1, 0 };
            ::setsockopt(fd, SOL_SOCKET, SO_LINGER, &now, sizeof now);
            return;
        }
    }
}

std::optional<RawRequest> RawServer::Private::readRequest(int fd, QByteArray *pending)
{
    for (;;) {
        const auto end = pending->indexOf("\r\n\r\n");
        if (end >= 0) {
            RawRequest request { pending->left(end + 2), {} };
            const auto length = request.header("Content-Length").toLongLong();
            if (pending->size() - (end + 4) >= length) {
                request.body = pending->mid(end + 4, length);
                pending->remove(0, end + 4 + length);
                const std::lock_guard lock(mutex);
                requests.push_back(request);
                changed.notify_all();
                return request;
            }
        }
        char buffer[65536];
        const auto count = ::recv(fd, buffer, sizeof buffer, 0);
        if (count <= 0)
            return {};
        pending->append(buffer, count);
    }
}

void RawServer::Private::drip(int fd, const Step &step)
{
    for (const char byte : step.bytes) {
        if (!sendAll(fd, QByteArray(1, byte)))
            return;
        std::unique_lock lock(mutex);
        if (changed.wait_for(lock, step.pace, [this] { return stopping; }))
            return;
    }
}

RawServer::RawServer()
    : d(std::make_unique<Private>())
{
    d->listener = listeningSocket(&d->port);
    d->acceptor = std::thread([this] { d->acceptAll(); });
}

RawServer::~RawServer()
{
    {
        const std::lock_guard lock(d->mutex);
        d->stopping = true;
        for (const int fd : d->sockets)
            ::shutdown(fd, SHUT_RDWR);
        d->changed.notify_all();
    }
    ::shutdown(d->listener, SHUT_RDWR);
    d->acceptor.join();
    for (std::thread &thread : d->threads)
        thread.join();
    ::close(d->listener);
}

QString RawServer::hostAndPort() const { return QStringLiteral("127.0.0.1:%1").arg(d->port); }

QString RawServer::url(const QString &path) const
{
    return QStringLiteral("http://") + hostAndPort() + path;
}

void RawServer::play(Script script)
{
    const std::lock_guard lock(d->mutex);
    d->script = std::move(script);
}

void RawServer::answer(const QByteArray &path, const QJsonObject &envelope)
{
    answer(path, http(200, parloquin::jsonText(envelope)));
}

void RawServer::answer(const QByteArray &path, const QByteArray &httpAnswer)
{
    const std::lock_guard lock(d->mutex);
    d->answers[path] = httpAnswer;
}

void RawServer::pause(const QByteArray &path)
{
    const std::lock_guard lock(d->mutex);
    d->held = path;
    d->changed.notify_all();
}

void RawServer::proceed()
{
    const std::lock_guard lock(d->mutex);
    d->held.reset();
    d->changed.notify_all();
}

int RawServer::connections() const
{
    const std::lock_guard lock(d->mutex);
    return d->connections;
}

int RawServer::posts() const
{
    int count = 0;
    for (const RawRequest &request : requests())
        count += request.method() == "POST";
    return count;
}

std::vector<RawRequest> RawServer::requests() const
{
    const std::lock_guard lock(d->mutex);
    return d->requests;
}

testing::AssertionResult RawServer::waitForRequests(size_t count) const
{
    std::unique_lock lock(d->mutex);
    const bool haveCome = d->changed.wait_for(
        lock, std::chrono::seconds(5), [this, count] { return d->requests.size() >= count; });
    auto result = testing::AssertionResult(haveCome)
        << d->requests.size() << " of " << count << " requests, " << d->connections
        << " connections:";
    for (const RawRequest &request : d->requests)
        result << ' ' << request.path().constData();
    return result;
}

QByteArray RawServer::http(int status, const QByteArray &body, const QByteArray &headers)
{
    return "HTTP/1.1 " + QByteArray::number(status) + " Status\r\n" + headers + "Content-Length: "
        + QByteArray::number(body.size()) + "\r\nConnection: close\r\n\r\n" + body;
}

QByteArray RawServer::encrypted(const QJsonObject &envelope)
{
    const auto text = parloquin::EncryptManager::shared().encrypt(envelope);
    return parloquin::jsonText({ { QStringLiteral("data"), text.value_or(QString()) } });
}

QString RawServer::refusingHostAndPort()
{
    quint16 port = 0;
    ::close(listeningSocket(&port));
    return QStringLiteral("127.0.0.1:%1").arg(port);
}
