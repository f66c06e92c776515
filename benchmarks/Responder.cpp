// A service that knows its answers beforehand: to each request that comes to the port named it
// sends the next of the answers to that call, and closes. A connection that says nothing keeps no
// other waiting: Qt's client opens some ahead of need. The file of answers: the call, a blank, the
// size, a line break, that many bytes, and so on.
#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <map>
#include <string>
#include <vector>

namespace {

struct Answers {
    std::vector<std::string> all;
    std::size_t next = 0;
};

std::map<std::string, Answers> readAnswers(const char *path)
{
    std::map<std::string, Answers> calls;
    std::ifstream file(path, std::ios::binary);
    std::string call;
    for (std::size_t size = 0; file >> call >> size;) {
        file.get();
        std::string answer(size, '\0');
        file.read(answer.data(), static_cast<std::streamsize>(size));
        calls[call].all.push_back(std::move(answer));
    }
    return calls;
}

struct Connection {
    int socket;
    std::string request; ///< as much of it as has come
};

/// \return the last part of the request's path; empty while there is more to come
std::string called(const std::string &request)
{
    const std::size_t headEnd = request.find("\r\n\r\n");
    if (headEnd == std::string::npos)
        return {};
    const std::size_t length = request.find("Content-Length: ");
    const std::size_t whole = headEnd + 4
        + (length < headEnd ? std::strtoul(request.c_str() + length + 16, nullptr, 10) : 0);
    if (request.size() < whole)
        return {};
    const std::size_t pathEnd = request.find(" HTTP/");
    const std::size_t call = request.rfind('/', pathEnd) + 1;
    return request.substr(call, pathEnd - call);
}

void send(int connection, const std::string &answer)
{
    for (std::size_t sent = 0; sent < answer.size();) {
        const ssize_t count =
            ::send(connection, answer.data() + sent, answer.size() - sent, MSG_NOSIGNAL);
        if (count <= 0)
            return;
        sent += static_cast<std::size_t>(count);
    }
}

} // namespace

int main(int argc, char **argv)
{
    ::prctl(PR_SET_PDEATHSIG, SIGTERM); // goes with the run, however that ends
    if (argc != 3)
        return 2;
    auto calls = readAnswers(argv[2]);

    const int listener = ::socket(AF_INET, SOCK_STREAM, 0);
    const int yes = 1;
    ::setsockopt(listener, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
    sockaddr_in address {};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<std::uint16_t>(std::atoi(argv[1])));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    if (::bind(listener, reinterpret_cast<sockaddr *>(&address), sizeof address) != 0
        || ::listen(listener, 128) != 0) {
        std::perror("the responder's port (PARLOQUIN_SERVICE_HOST names another)");
        return 1;
    }
    std::puts("ready");
    std::fflush(stdout);

    std::vector<Connection> connections;
    for (;;) {
        std::vector<pollfd> ready { { listener, POLLIN, 0 } };
        for (const Connection &connection : connections)
            ready.push_back({ connection.socket, POLLIN, 0 });
        ::poll(ready.data(), ready.size(), -1);
        for (std::size_t i = connections.size(); i-- > 0;) {
            if (ready[i + 1].revents == 0)
                continue;
            auto &[socket, request] = connections[i];
            char block[16384];
            const ssize_t count = ::read(socket, block, sizeof block);
            request.append(block, static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
            const std::string call = called(request);
            if (count > 0 && call.empty())
                continue;
            if (const auto found = calls.find(call); found != calls.end()) {
                Answers &answers = found->second;
                send(socket, answers.all[answers.next]);
                answers.next = (answers.next + 1) % answers.all.size();
            }
            ::close(socket);
            connections.erase(connections.begin() + static_cast<std::ptrdiff_t>(i));
        }
        if (ready[0].revents != 0)
            connections.push_back({ ::accept(listener, nullptr, nullptr), {} });
    }
}
