#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QList>

#include <atomic>
#include <thread>

/// \brief A name server for tests in a network of their own, which ask at 127.0.0.1: every name has
/// the same addresses there, told first for IPv6, which is so tried first.
///
/// Runs on a thread of its own from the constructor to the destructor.
class NameServer {
public:
    struct Names {
        QList<QByteArray> ipv4;
        QList<QByteArray> ipv6;
        bool answersIpv4 = true; ///< else not a word
        bool answersIpv6 = true;
    };

    explicit NameServer(Names names);
    ~NameServer();
    NameServer(const NameServer &) = delete;
    NameServer &operator=(const NameServer &) = delete;

    [[nodiscard]] int questions() const { return m_questions; }

private:
    void serve();
    [[nodiscard]] QByteArray answer(const QByteArray &question) const;

    const Names m_names;
    int m_socket = -1;
    std::atomic<int> m_questions = 0;
    std::thread m_thread;
};
