// What becomes of a call in every weather, over real sockets.
#include "Network/Awaited.h"
#include "Parloquin/Networking/Model/Request/CheckRequestModel.h"
#include "Parloquin/Networking/Model/Response/CheckResponseModel.h"
#include "Parloquin/Networking/Model/Response/CountryResponseModel.h"
#include "Parloquin/Networking/Request/Request.h"
#include "support/RawServer.h"
#include "support/ServiceEndpoint.h"

#include <QtCore/QJsonObject>

#include <gtest/gtest.h>

#include <functional>
#include <initializer_list>

using namespace parloquin;
using namespace std::chrono_literals;

namespace {

const QByteArray success = R"({"meta":{"httpStatusCode":200}})";
const QByteArray refused = R"({"meta":{"httpStatusCode":500}})";

QByteArray head(int length) // of an answer, up to its body
{
    return "HTTP/1.1 200 OK\r\nContent-Length: " + QByteArray::number(length) + "\r\n\r\n";
}

QByteArray json(int status, const QByteArray &body, const QByteArray &headers = {})
{
    return RawServer::http(status, body, "Content-Type: application/json\r\n" + headers);
}

QByteArray padded(const QByteArray &object, qsizetype size) // the same JSON, that long
{
    return object.chopped(1) + QByteArray(size - object.size(), ' ') + '}';
}

QByteArray chunked(const QByteArray &body, const QByteArray &end)
{
    return "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n"
        + QByteArray::number(body.size(), 16) + "\r\n" + body + "\r\n" + end;
}

constexpr qsizetype most = 16 * 1024 * 1024;

// What the server does; large answers are made only when they are needed.
class Scripted {
public:
    Scripted(std::initializer_list<RawServer::Step> steps)
        : Scripted(RawServer::Script(steps))
    {
    }
    Scripted(RawServer::Script script)
        : make([script = std::move(script)] { return script; })
    {
    }
    explicit Scripted(std::function<QByteArray()> answer)
        : make([answer = std::move(answer)] {
            return RawServer::Script { RawServer::read(), RawServer::send(answer()) };
        })
    {
    }

    std::function<RawServer::Script()> make;
};

struct Weather {
    const char *name;
    Scripted script;
    std::string outcome;
    std::string log; // part of the console's text; empty: none of the client's lines
    size_t requests = 1;
    std::chrono::milliseconds timeout = 30s;
};

std::ostream &operator<<(std::ostream &out, const Weather &weather) { return out << weather.name; }

std::vector<Weather> weathers()
{
    using S = RawServer;
    const auto answered = [](const QByteArray &bytes) {
        return S::Script { S::read(), S::send(bytes), S::close() };
    };
    const std::string lost = "*Server Error \n- Error: Optional(\"";
    const std::string unreadable = "*Json Parse Error \n- Error: ";
    const std::string logged = "Parloquin Request Start";
    std::vector<Weather> rows {
        // No head: nothing is known of the answer.
        { "ClosedAtOnce", { S::close() }, "general", "", 0 },
        { "ResetAtOnce", { S::reset() }, "general", "", 0 },
        { "ClosedBeforeTheFirstByte", { S::read(), S::close() }, "general", "" },
        { "ResetBeforeTheFirstByte", { S::read(), S::reset() }, "general", "" },
        { "ClosedInTheStatusLine", { S::read(), S::send("HTTP/1.1 2"), S::close() }, "general",
            "" },
        { "ClosedInTheHead", { S::read(), S::send(head(9).chopped(4)), S::close() }, "general",
            "" },
        { "ResetInTheHead", { S::read(), S::send(head(9).chopped(4)), S::reset() }, "general", "" },
        { "Silent", { S::read(), S::hold() }, "general", "", 1, 300ms },
        { "DrippingHead", { S::read(), S::drip(head(9), 50ms) }, "general", "", 1, 400ms },
        { "NoHttp", answered("SSH-2.0-OpenSSH_9.2\r\n"), "general", "" },
        { "HeadWithoutEnd",
            { S::read(), S::send("HTTP/1.1 200 OK\r\n" + padded("X: {}", 66000)), S::hold() },
            "general", "" },
        { "InterimHeadsWithoutEnd",
            Scripted([] { return QByteArray("HTTP/1.1 102 Processing\r\n\r\n").repeated(3000); }),
            "general", "" },
        { "MoreFieldsThanAreLookedThrough", Scripted([] {
             QByteArray fields;
             for (int i = 0; i < 1000; ++i)
                 fields += "X" + QByteArray::number(i) + ":\r\n";
             return json(200, success, fields);
         }),
            "general", "" },
        { "FieldWithoutName", answered("HTTP/1.1 200 OK\r\n: 1\r\n\r\n"), "general", "" },
        { "NulInAField", answered("HTTP/1.1 200 OK\r\nX: a" + QByteArray(1, '\0') + "\r\n\r\n{}"),
            "general", "" },
        { "CarriageReturnInAField",
            answered("HTTP/1.1 200 OK\r\nX: a\rX-TRZ-Encrypted: 1\r\n\r\n{}"), "general", "" },
        { "BytesOfNoMeaning", answered(QByteArray(3000, '\xfe') + "\r\n\r\n"), "general", "" },

        // A head and no data: the transport's error decides.
        { "ClosedInTheBody", { S::read(), S::send(head(99) + success), S::close() }, "timeOutEtc",
            lost },
        { "ResetInTheBody", { S::read(), S::send(head(99)), S::reset() }, "timeOutEtc", lost },
        { "SilentInTheBody", { S::read(), S::send(head(9)), S::hold() }, "timeOutEtc", lost, 1,
            300ms },
        { "DrippingBody", { S::read(), S::send(head(900)), S::drip(padded(success, 900), 50ms) },
            "timeOutEtc", lost, 1, 400ms },
        { "LengthsThatDiffer", answered(json(200, success, "Content-Length: 5\r\n")), "timeOutEtc",
            lost },
        { "LengthOfNoNumber", answered("HTTP/1.1 200 OK\r\nContent-Length: -31\r\n\r\n" + success),
            "timeOutEtc", lost },
        { "ChunkOfNoNumber",
            answered("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n+1f\r\n" + success),
            "timeOutEtc", lost },
        { "LengthWithASign", answered("HTTP/1.1 200 OK\r\nContent-Length: +31\r\n\r\n" + success),
            "timeOutEtc", lost },
        { "ChunkWithAPrefix", answered(chunked(success, "0\r\n\r\n").replace("1f\r\n", "0x1f\r\n")),
            "timeOutEtc", lost },
        { "ChunkLongerThanItSays",
            answered(chunked(success, "").replace("1f\r\n", "1e\r\n") + "0\r\n\r\n"), "timeOutEtc",
            lost },
        { "CodingNobodyKnows",
            answered("HTTP/1.1 200 OK\r\nTransfer-Encoding: gzip, chunked\r\n\r\n1f\r\n" + success
                + "\r\n0\r\n\r\n"),
            "timeOutEtc", lost },
        { "ChunkedBeforeAnotherCoding",
            answered("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked, x\r\n\r\n" + success),
            "timeOutEtc", lost },
        { "ChunkExtensionWithoutEnd",
            { S::read(), S::send(chunked(success, "1;" + QByteArray(66000, 'x'))), S::hold() },
            "timeOutEtc", lost },
        { "TrailerWithoutEnd",
            { S::read(), S::send(chunked(success, "0\r\nX: " + QByteArray(66000, 'x'))),
                S::hold() },
            "timeOutEtc", lost },
        { "ResetWithoutLength",
            { S::read(), S::send("HTTP/1.1 200 OK\r\n\r\n" + success), S::reset() }, "timeOutEtc",
            lost },
        { "LastChunkMissing", answered(chunked(success, "")), "timeOutEtc", lost },
        { "TooLong", Scripted([] { return json(200, padded(success, most + 1)); }), "timeOutEtc",
            lost },
        { "TooLongInOneChunk",
            Scripted([] { return chunked(padded(success, most + 1), "0\r\n\r\n"); }), "timeOutEtc",
            lost },
        { "TooLongInTwoChunks",
            Scripted([] { return chunked(padded(success, most), "1\r\n \r\n0\r\n\r\n"); }),
            "timeOutEtc", lost },
        { "TooLongWithoutLength",
            Scripted([] { return "HTTP/1.1 200 OK\r\n\r\n" + padded(success, most + 1); }),
            "timeOutEtc", lost },

        // Data that is no envelope.
        { "Empty", answered(json(200, "")), "jsonDecode", unreadable },
        { "NoContent", answered("HTTP/1.1 204 No Content\r\n\r\n"), "jsonDecode", unreadable },
        { "Page", answered(json(502, "<html>Bad gateway</html>")), "jsonDecode",
            "CurrentJSON: <html>Bad gateway</html>" },
        { "CutJson", answered(json(200, R"({"meta":{)")), "jsonDecode",
            R"(CurrentJSON: {"meta":{)" },
        { "TailBehindJson", answered(json(200, success + "}")), "jsonDecode", unreadable },
        { "NoText", answered(json(200, "{\"meta\":\xff}")), "jsonDecode", "CurrentJSON: \n" },
        { "WrongType", answered(json(200, R"({"meta":{"httpStatusCode":"200"}})")), "jsonDecode",
            "meta.httpStatusCode" },
        { "UnknownStatus", answered(json(200, R"({"meta":{"httpStatusCode":401}})")), "jsonDecode",
            unreadable },
        { "UnknownErrorCode", answered(json(200, R"({"meta":{"errorCode":"403009"}})")),
            "jsonDecode", unreadable },
        { "WrongKeyAndNoEnvelope",
            answered(json(
                200, R"({"data":"3q2+796tvu/erb7v3q2+7w==","meta":1})", "X-TRZ-Encrypted: 1\r\n")),
            "jsonDecode", R"(CurrentJSON: {"data":"3q2+796tvu/erb7v3q2+7w==","meta":1})" },

        // Envelopes, whatever they say and however they come.
        { "Success", answered(json(200, success)), "success", logged },
        { "Refused", answered(json(500, refused)), "refused", logged },
        { "NeitherMetaNorResult", answered(json(200, "{}")), "refused", logged },
        // Read as it came, and that is an envelope of nothing.
        { "WrongKey",
            answered(json(200, R"({"data":"3q2+796tvu/erb7v3q2+7w=="})", "X-TRZ-Encrypted: 1\r\n")),
            "refused", logged },
        { "FlaggedButPlain", answered(json(200, success, "x-trz-encrypted: 1\r\n")), "success",
            logged },
        { "Chunked", answered(chunked(success, "0\r\n\r\n")), "success", logged },
        { "ChunkedWithAllThatMayBe",
            answered("HTTP/1.1 200\r\nTransfer-Encoding: chunked\r\n\r\n00a ;a=\"b\"\r\n"
                + success.left(10) + "\r\n15\r\n" + success.mid(10)
                + "\r\n0\r\nTrailer: x\r\n\r\n"),
            "success", logged },
        { "FoldedFieldAndBareLineFeeds",
            answered("HTTP/1.1 200 OK\nX-TRZ-Encrypted:\n 1\nContent-Length: 31\n\n" + success),
            "success", logged },
        { "WithoutLength", answered("HTTP/1.1 200 OK\r\n\r\n" + success), "success", logged },
        { "WithoutLengthAndOld", answered("HTTP/1.0 200 OK\r\n\r\n" + success), "success", logged },
        { "WithoutLengthAndLarge",
            Scripted([] { return "HTTP/1.0 200 OK\r\n\r\n" + padded(success, 5'000'000); }),
            "success", logged },
        { "MoreThanItsLength", answered(json(200, success) + "HTTP/1.1 500 No\r\n\r\n"), "success",
            logged },
        { "AfterContinue", answered("HTTP/1.1 100 Continue\r\n\r\n" + json(200, success)),
            "success", logged },
        { "BeforeTheRequest", { S::send(json(200, success)), S::read() }, "success", logged },
        { "ThenKeptOpen", { S::read(), S::send(json(200, success)), S::hold() }, "success",
            logged },
        { "InSmallPieces", { S::read(), S::drip(json(200, success), 1ms) }, "success", logged },
        { "FiveMegabytes", Scripted([] { return json(200, padded(success, 5'000'000)); }),
            "success", logged },
        { "AsLongAsMayBe", Scripted([] { return json(200, padded(success, most)); }), "success",
            logged },
        { "Encrypted", Scripted([] {
             return json(200,
                 RawServer::encrypted(
                     { { QStringLiteral("meta"),
                           QJsonObject { { QStringLiteral("httpStatusCode"), 201 } } },
                         { QStringLiteral("padding"), QString(5'000'000, QLatin1Char('x')) } }),
                 "X-TRZ-Encrypted: 1\r\n");
         }),
            "success", logged },
        { "EncryptedByAFoldedField", Scripted([] {
             const QJsonObject meta { { QStringLiteral("httpStatusCode"), 200 } };
             return RawServer::http(200, RawServer::encrypted({ { QStringLiteral("meta"), meta } }),
                 "Via: a\r\nX-TRZ-Encrypted:\r\n 1\r\nVia: b\r\n (c)\r\n");
         }),
            "success", logged },
    };
    // The transport's status decides nothing, with or without what else goes with it.
    static std::vector<std::string> names;
    const int statuses[] = { 300, 301, 302, 303, 304, 307, 308, 400, 401, 403, 404, 405, 407, 408,
        409, 410, 413, 418, 429, 500, 501, 503, 599 };
    names.reserve(std::size(statuses));
    for (const int status : statuses) {
        names.push_back("Status" + std::to_string(status));
        const QByteArray challenge = "Location: /moved\r\nWWW-Authenticate: Basic "
                                     "realm=\"x\"\r\nProxy-Authenticate: Basic realm=\"x\"\r\n";
        rows.push_back(
            { names.back().c_str(), answered(json(status, status == 304 ? "" : success, challenge)),
                status == 304 ? "jsonDecode" : "success", status == 304 ? unreadable : logged });
    }
    return rows;
}

class BadWeather : public testing::TestWithParam<Weather> { };

TEST_P(BadWeather, EndsInOneOutcomeAfterOneRequest)
{
    const Weather &weather = GetParam();
    RawServer server;
    server.play(weather.script.make());
    setServiceHost(server.hostAndPort());
    setServiceTimeout(weather.timeout);

    testing::internal::CaptureStdout();
    AwaitedResult<CheckResponseModel> call;
    ApiRequest::check({}, call.handler());
    const std::string outcome = call.wait();

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
    EXPECT_EQ(server.requests().size(), weather.requests);
    if (weather.log.empty())
        EXPECT_EQ(log.find("[Parloquin]"), std::string::npos) << log;
    else
        EXPECT_NE(log.find(weather.log), std::string::npos) << log.substr(0, 4000);
}

INSTANTIATE_TEST_SUITE_P(Network, BadWeather, testing::ValuesIn(weathers()),
    [](const auto &row) { return row.param.name; });

} // namespace
