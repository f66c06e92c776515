// What becomes of a call in every weather, over real sockets.
#include "Network/Network.h"

#include <QtCore/QJsonObject>

namespace {

const QByteArray success = R"({"meta":{"httpStatusCode":200}})";
const QByteArray okLine = "HTTP/1.1 200 OK\r\n";

QByteArray head(int length) // of an answer, up to its body
{
    return okLine + "Content-Length: " + QByteArray::number(length) + "\r\n\r\n";
}

QByteArray json(int status, const QByteArray &body, const QByteArray &headers = {})
{
    return RawServer::http(status, body, "Content-Type: application/json\r\n" + headers);
}

QByteArray fields(int count, int size) // of a head
{
    QByteArray fields;
    for (int i = 0; i < count; ++i)
        fields += 'X' + QByteArray::number(i) + ':' + QByteArray(size, 'x') + "\r\n";
    return fields;
}

QByteArray padded(const QByteArray &object, qsizetype size) // the same JSON, that long
{
    return object.chopped(1) + QByteArray(size - object.size(), ' ') + '}';
}

QByteArray chunked(const QByteArray &body, const QByteArray &end)
{
    return okLine + "Transfer-Encoding: chunked\r\n\r\n" + QByteArray::number(body.size(), 16)
        + "\r\n" + body + "\r\n" + end;
}

constexpr qsizetype most = 16 * 1024 * 1024;

using S = RawServer;
using Script = std::function<S::Script()>; // large answers are made only when they are needed

struct Weather {
    std::string name;
    Script script;
    const char *log = nullptr; // part of the console's text; else that of its outcome
    std::chrono::milliseconds timeout = 30s;
    std::string outcome = {};
};

Script does(S::Script script)
{
    return [script = std::move(script)] { return script; };
}

Script reads(S::Script script)
{
    script.insert(script.begin(), S::read());
    return does(std::move(script));
}

Script answered(const QByteArray &bytes) { return reads({ S::send(bytes) }); }

Script sent(std::function<QByteArray()> answer)
{
    return [=] { return S::Script { S::read(), S::send(answer()) }; };
}

std::vector<Weather> weathers()
{
    const QByteArray flag = "X-TRZ-Encrypted: 1\r\n";
    const QJsonObject meta { { u"httpStatusCode"_s, 200 } };
    std::vector<Weather> rows;
    // \param log empty: none of the client's lines
    const auto add = [&rows](const char *outcome, const char *log, std::vector<Weather> those) {
        for (Weather &row : those) {
            row.outcome = outcome;
            row.log = row.log ? row.log : log;
            rows.push_back(std::move(row));
        }
    };
    // No head: nothing is known of the answer.
    add("general", "",
        {
            { "ClosedInTheStatusLine", reads({ S::send("HTTP/1.1 2") }) },
            { "Silent", reads({ S::hold() }), nullptr, 300ms },
            { "HeadWithoutEnd", reads({ S::send(okLine + padded("X: {}", 66000)), S::hold() }) },
            { "InterimHeadsWithoutEnd",
                sent([] { return QByteArray("HTTP/1.1 102 Processing\r\n\r\n").repeated(3000); }) },
            { "FoldedFieldFirst", answered(okLine + " 1\r\n\r\n" + success) },
            { "FieldBeyondAscii",
                answered(okLine + "X-\xff: 1\r\nContent-Length: 31\r\n\r\n" + success) },
            { "FieldWithoutName", reads({ S::send(okLine + ": 1\r\n\r\n"), S::hold() }), nullptr,
                5s },
            { "NulInAField", answered(okLine + "X: a" + QByteArray(1, '\0') + "\r\n\r\n{}") },
            { "CarriageReturnInAField", answered(okLine + "X: a\rX-TRZ-Encrypted: 1\r\n\r\n{}") },
            { "MoreFieldsThanAreLookedThrough", answered(json(200, success, fields(498, 0))) },
        });
    // Known for none of HTTP at once, whatever is still to come.
    for (const char *line : { "HTTP/2.0 200 OK", "HTTP/1.1 099 X", "HTTP/1.1 2000",
             "HTTP/1.1x200 OK", "HTTP/1.x 200 OK", "HTTP/1.1 20" })
        add("general", "",
            { { "StatusLine" + std::to_string(rows.size()),
                reads({ S::send(QByteArray(line) + "\r\n\r\n"), S::hold() }), nullptr, 5s } });
    // A head and no data: the transport's error decides.
    add("timeOutEtc", "*Server Error \n- Error: Optional(\"",
        {
            { "ClosedInTheBody", reads({ S::send(head(99) + success) }),
                "Error: Optional(\"The connection ended before the answer.\")" },
            { "DripsOn", reads({ S::send(head(2000)), S::drip(padded(success, 2000), 1ms) }),
                "Error: Optional(\"The request timed out.\")", 300ms },
            { "ChunkOfNoNumber",
                reads({ S::send(okLine + "Transfer-Encoding: chunked\r\n\r\n+1f\r\n"), S::hold() }),
                "Error: Optional(\"The answer is no HTTP.\")", 5s },
            { "LengthWithASign", answered(okLine + "Content-Length: +31\r\n\r\n" + success) },
            { "ChunkWithAPrefix",
                answered(chunked(success, "0\r\n\r\n").replace("1f\r\n", "0x1f\r\n")) },
            { "ChunkLongerThanItSays",
                answered(chunked(success, "").replace("1f\r\n", "1e\r\n") + "0\r\n\r\n") },
            { "CodingNobodyKnows",
                answered(okLine + "Transfer-Encoding: gzip, chunked\r\n\r\n1f\r\n" + success
                    + "\r\n0\r\n\r\n") },
            { "ChunkedBeforeAnotherCoding",
                answered(okLine + "Transfer-Encoding: chunked, x\r\n\r\n" + success) },
            { "ChunkExtensionWithoutEnd",
                reads({ S::send(chunked(success, "1;" + QByteArray(66000, 'x'))), S::hold() }),
                "Error: Optional(\"The answer is too long.\")", 5s },
            { "ResetWithoutLength", reads({ S::send(okLine + "\r\n" + success), S::reset() }) },
            { "LastChunkMissing", answered(chunked(success, "")) },
            { "TooLong", sent([] { return json(200, padded(success, most + 1)); }) },
            { "TooLongInTwoChunks",
                sent([] { return chunked(padded(success, most), "1\r\n \r\n0\r\n\r\n"); }) },
            { "TooLongWithoutLength",
                sent([] { return okLine + "\r\n" + padded(success, most + 1); }) },
        });
    // Data that is no envelope.
    add("jsonDecode", "*Json Parse Error \n- Error: ",
        {
            { "Page", answered(json(502, "<html>Bad gateway</html>")),
                "CurrentJSON: <html>Bad gateway</html>" },
            { "NotModified", reads({ S::send("HTTP/1.1 304 X\r\n\r\n"), S::hold() }),
                "body: no JSON", 5s },
            { "NoContent", reads({ S::send("HTTP/1.1 204\r\n\r\n"), S::hold() }), "body: no JSON",
                5s },
            { "NoText", answered(json(200, "{\"meta\":\xff}")), "CurrentJSON: \n" },
            { "WrongType", answered(json(200, R"({"meta":{"httpStatusCode":"200"}})")),
                "meta.httpStatusCode" },
            { "WrongKeyAndNoEnvelope",
                answered(json(200, R"({"data":"3q2+796tvu/erb7v3q2+7w==","meta":1})", flag)),
                R"(CurrentJSON: {"data":"3q2+796tvu/erb7v3q2+7w==","meta":1})" },
        });
    // Envelopes, whatever they say and however they come.
    const char *const logged = "Parloquin Request Start";
    add("refused", logged,
        {
            { "Refused",
                answered(
                    json(200, R"({"meta":{"httpStatusCode":400},"result":{"sessionId":"s"}})")) },
            { "NeitherMetaNorResult", answered(json(200, "{}")) },
        });
    add("success", logged,
        {
            { "Success", answered(json(200, success)) },
            { "Created",
                answered(json(201, R"({"meta":{"httpStatusCode":201,"errorCode":"403002"}})")) },
            { "ProxyUnauthorised",
                answered(json(407, success, "Proxy-Authenticate: Basic realm=\"x\"\r\n")) },
            { "LengthTwiceTheSame", answered(json(200, success, "Content-Length: 31\r\n")) },
            { "ChunkedWithAllThatMayBe",
                answered("HTTP/1.1 200\r\nContent-Length: 9\r\ntransfer-encoding:Chunked\r\n\r\n"
                         "00a ;a=\""
                    + QByteArray(60'000, 'b') + "\"\r\n" + success.left(10) + "\r\n15\r\n"
                    + success.mid(10) + "\r\n0\r\nTrailer: x\r\n\r\n") },
            { "AsLongAHeadAsMayBe", answered(json(200, success, fields(497, 120))) },
            { "FoldedFieldAndBareLineFeeds",
                reads({ S::send("HTTP/1.1 200 OK\nX-TRZ-Encrypted:\n\t1\ncontent-length:31 \n\n"
                            + success),
                    S::hold() }),
                nullptr, 5s },
            { "WithoutLengthAndLarge",
                sent([] { return "HTTP/1.0 200 OK\r\n\r\n" + padded(success, 5'000'000); }),
                "Response Header: [:]\n" },
            { "InVerySmallChunks",
                answered(
                    chunked(success, QByteArray("1\r\n \r\n").repeated(20'000) + "0\r\n\r\n")) },
            { "AfterEarlyHints",
                answered("HTTP/1.1 103\r\nContent-Length: 9\r\n\r\n" + json(200, success)) },
            { "BeforeTheRequest", does({ S::send(json(200, success)), S::read() }) },
            { "InSmallPieces", reads({ S::drip(json(200, success), 1ms) }) },
            { "AsLongAsMayBe", sent([] { return json(200, padded(success, most)); }) },
            { "EncryptedByAFoldedField", sent([=] {
                 return S::http(200, S::encrypted({ { u"meta"_s, meta } }),
                     "Via: a\r\nX-TRZ-Encrypted:\r\n 1\r\nVia: b\r\n (c)\r\n");
             }) },
        });
    return rows;
}

class BadWeather : public testing::TestWithParam<Weather> { };

TEST_P(BadWeather, EndsInOneOutcomeAfterOneRequest)
{
    const Weather &weather = GetParam();
    RawServer server;
    server.play(weather.script());
    setServiceHost(server.hostAndPort());
    setServiceTimeout(weather.timeout);

    testing::internal::CaptureStdout();
    AwaitedResult<CheckResponseModel> call;
    QElapsedTimer time;
    time.start();
    ApiRequest::check({}, call.handler());
    const std::string outcome = call.wait();
    EXPECT_EQ(time.elapsed() >= weather.timeout.count(), weather.timeout < 1s);

    // Another call after it: what was still to come of the first has come by then.
    RawServer fair;
    fair.answer("/v1.0/country", QJsonObject {});
    setServiceHost(fair.hostAndPort());
    setServiceTimeout(30s);
    AwaitedResult<CountryResponseModel> next;
    ApiRequest::country(next.handler());
    const std::string nextOutcome = next.wait();
    const std::string log = testing::internal::GetCapturedStdout();

    EXPECT_EQ(outcome, weather.outcome) << log;
    EXPECT_EQ(call.count(), 1);
    EXPECT_FALSE(call.onThisThread());
    EXPECT_EQ(nextOutcome, "refused");
    EXPECT_EQ(server.requests().size(), 1U);
    if (*weather.log == '\0')
        EXPECT_EQ(log.find("[Parloquin]"), std::string::npos) << log;
    else
        EXPECT_NE(log.find(weather.log), std::string::npos) << log.substr(0, 4000);
}

INSTANTIATE_TEST_SUITE_P(Network, BadWeather, testing::ValuesIn(weathers()), byName);

} // namespace
