#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QJsonObject>
#include <QtCore/QString>

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <vector>

/// \brief One request as it came over the wire.
struct RawRequest {
    QByteArray head; ///< request line and header lines, each with its CR LF; without the empty line
    QByteArray body;

    [[nodiscard]] QByteArray method() const;
    [[nodiscard]] QByteArray path() const; ///< as "/v1.0/init"
    [[nodiscard]] QByteArray header(const QByteArray &name) const; ///< name in any case
    /// The body of a call to the service, decrypted with the test's key.
    [[nodiscard]] QJsonObject parameters() const;
};

/// \brief A small TCP server for tests, on 127.0.0.1 and a free port, that does as it is told.
///
/// Two ways to use it:
/// - As a stand-in for the service: `answer("/v1.0/init", envelope)` and the like say what a path
///   brings; other paths bring 404. pause() holds what they bring back until proceed().
/// - As bad weather: `play({ RawServer::read(), RawServer::reset() })` is done to every
///   connection.
///
/// Point the kit at it by `setServiceHost(server.hostAndPort())`. A program that encrypts, and
/// every call to the service does, adds `support/HostKeys.qrc` to its sources: the test's key.
///
/// Runs on threads of its own from the constructor to the destructor; all operations may be called
/// from any thread.
class RawServer {
public:
    struct Step {
        enum class Kind { read, send, drip, hold, reset };
        Kind kind;
        QByteArray bytes;
        std::chrono::milliseconds pace {};
    };
    using Script = std::vector<Step>; ///< at whose end the connection closes

    // clang-format off
    static Step read() { return { Step::Kind::read, {} }; } ///< one whole request
    static Step send(QByteArray bytes) { return { Step::Kind::send, std::move(bytes) }; }
    static Step drip(QByteArray bytes, std::chrono::milliseconds pace) ///< a byte at a time
        { return { Step::Kind::drip, std::move(bytes), pace }; }
    static Step hold() { return { Step::Kind::hold, {} }; } ///< silent until the peer goes
    static Step reset() { return { Step::Kind::reset, {} }; } ///< closes by RST
    // clang-format on

    RawServer();
    ~RawServer();
    Q_DISABLE_COPY_MOVE(RawServer)

    [[nodiscard]] QString hostAndPort() const;
    [[nodiscard]] QString url(const QString &path) const; ///< of a path as "/icon.png"

    /// Done to every connection from now on, instead of the answers.
    void play(Script script);

    /// What a POST or GET of the path brings from now on: an envelope with status 200.
    void answer(const QByteArray &path, const QJsonObject &envelope);
    /// The same with any bytes, a whole HTTP answer: see http().
    void answer(const QByteArray &path, const QByteArray &httpAnswer);
    void pause(const QByteArray &path = {}); ///< that is in theirs; others go on
    void proceed();

    [[nodiscard]] int connections() const;
    [[nodiscard]] int posts() const;
    [[nodiscard]] std::vector<RawRequest> requests() const;
    /// \return whether that many requests have come within five seconds, and which came instead
    [[nodiscard]] testing::AssertionResult waitForRequests(size_t count) const;

    /// \brief A whole HTTP answer. \param headers lines, each with its CR LF; the length is added
    static QByteArray http(int status, const QByteArray &body,
        const QByteArray &headers = "Content-Type: application/json\r\n");
    /// {"data": cipher text} of the envelope under the test's key.
    static QByteArray encrypted(const QJsonObject &envelope);
    /// host:port where nothing listens.
    static QString refusingHostAndPort();

private:
    struct Private;
    std::unique_ptr<Private> d;
};
