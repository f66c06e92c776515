// What a call puts on the wire, and how a host that quits meanwhile ends.
#include "support/RawServer.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QProcess>
#include <QtCore/QRegularExpression>

#include <gtest/gtest.h>

namespace {

class Host : public QProcess {
public:
    explicit Host(const QStringList &arguments, const QByteArray &variables = {})
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        for (const QByteArray &variable : variables.split(' ')) {
            const auto equals = variable.indexOf('=');
            environment.insert(QString::fromLatin1(variable.left(equals)),
                QString::fromLatin1(variable.mid(equals + 1)));
        }
        setProcessEnvironment(environment);
        setStandardOutputFile(nullDevice());
        start(QStringLiteral(NETWORK_HOST), arguments);
    }

    [[nodiscard]] bool endsWell()
    {
        return waitForFinished(10'000) && exitStatus() == NormalExit && exitCode() == 0;
    }
};

struct Surroundings {
    const char *name;
    QByteArray variables; // PROXY stands for the server's own address
    QByteArray target = "/v1.0/init";
};

class Wire : public testing::TestWithParam<Surroundings> { };

// Only X-TRZ-Lang follows the locale, as it has to.
TEST_P(Wire, CarriesTheSameHeadEverywhere)
{
    RawServer server;
    server.answer(GetParam().target, QJsonObject {});
    QByteArray variables = GetParam().variables;
    variables.replace("PROXY", server.url({}).toLatin1());
    const QString service = variables.contains("http_proxy")
        ? QStringLiteral("service.invalid:8046")
        : server.hostAndPort();
    Host host({ service }, variables);
    ASSERT_TRUE(host.endsWell()) << host.readAllStandardError().toStdString();

    ASSERT_EQ(server.requests().size(), 1U);
    QByteArray head = server.requests()[0].head;
    QString masked = QString::fromLatin1(head);
    masked.replace(QRegularExpression(QStringLiteral(
                       "(X-TRZ-(?:Client-Device-Id|Lang|Os|Req-\\w+)|Content-Length): [^\r]*")),
        QStringLiteral("\\1: *"));
    EXPECT_EQ(masked.toStdString(),
        "POST " + GetParam().target.toStdString() + " HTTP/1.1\r\nHost: " + service.toStdString()
            + "\r\nConnection: close\r\n"
              "Accept-Encoding: identity\r\n"
              "Accept-Language: *\r\n"
              "User-Agent: iOS\r\n"
              "X-TRZ-Client-Device-Id: *\r\n"
              "X-TRZ-Client-Key: parloquin-demo\r\n"
              "X-TRZ-Encrypted: 1\r\n"
              "X-TRZ-Lang: *\r\n"
              "X-TRZ-Os: *\r\n"
              "X-TRZ-Req-Signature: *\r\n"
              "X-TRZ-Req-Timestamp: *\r\n"
              "X-TRZ-Sdk-Version: 1.0\r\n"
              "Content-Type: application/json; charset=utf-8\r\n"
              "Content-Length: *\r\n");
    EXPECT_EQ(
        server.requests()[0].header("Content-Length").toInt(), server.requests()[0].body.size());
}

const Surroundings surroundings[] = {
    { "C", "LC_ALL=C" },
    { "German", "LC_ALL=de_DE.UTF-8" },
    { "Turkish", "LC_ALL=tr_TR.UTF-8 LANGUAGE=tr:en" },
    { "Arabic", "LC_ALL=ar_EG.UTF-8" },
    { "UpgradeAllowed", "QT_NETWORK_H2C_ALLOWED=1" },
    { "Proxy", "http_proxy=PROXY", "http://service.invalid:8046/v1.0/init" },
};

INSTANTIATE_TEST_SUITE_P(
    Network, Wire, testing::ValuesIn(surroundings), [](const auto &row) { return row.param.name; });

struct Leaving {
    const char *name;
    RawServer::Script script;
    const char *how = "return";
};

class Quitting : public testing::TestWithParam<Leaving> { };

TEST_P(Quitting, EndsACallWithinASecondAndWithoutItsOutcome)
{
    RawServer server;
    server.play(GetParam().script);
    Host host({ server.hostAndPort(), QString::fromLatin1(GetParam().how) });
    ASSERT_TRUE(server.waitForRequests(1));

    QElapsedTimer time;
    time.start();
    host.write("q");
    EXPECT_TRUE(host.endsWell());
    EXPECT_LT(time.elapsed(), 1000);
    EXPECT_EQ(host.readAllStandardError(), "");
    EXPECT_EQ(server.requests().size(), 1U);
}

const QByteArray large = RawServer::http(200, QByteArray(1'000'000, ' ')).chopped(1);
const Leaving leavings[] = {
    { "Silent", { RawServer::read(), RawServer::hold() } },
    { "AmidTheAnswer", { RawServer::read(), RawServer::send(large), RawServer::hold() } },
    { "Dripping", { RawServer::read(), RawServer::drip(large, std::chrono::milliseconds(1)) } },
    { "SilentByExit", { RawServer::read(), RawServer::hold() }, "exit" },
};

INSTANTIATE_TEST_SUITE_P(
    Network, Quitting, testing::ValuesIn(leavings), [](const auto &row) { return row.param.name; });

} // namespace
