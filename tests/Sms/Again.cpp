// The second time round: what an earlier round left behind is neither sent nor shown nor told.
#include "Sms/SmsRoad.h"

namespace {

class SecondRound : public SmsRoad {
public:
    // Steps of a person; each ends where the next can begin.
    void number(const QString &digits)
    {
        tap("txtPhoneNumber");
        hands::key(Qt::Key_A, Qt::ControlModifier);
        hands::keys(digits);
    }
    /// \param leadsOn else nobody gets on by that answer
    void send(const QByteArray &answer, bool leadsOn = true)
    {
        on("send-otp", answer);
        const auto before = server.requests().size();
        tap("btnContinue");
        ASSERT_TRUE(server.waitForRequests(before + 1));
        ASSERT_SOON(!overlayIsUp() && isAtRest() && (visible("btnCheck") != nullptr) == leadsOn)
            << answer.constData();
    }
    void sendInVain() { send(ok("{}"), false); }
    void code(const QString &digits)
    {
        tap("txtCode0");
        hands::keys(digits);
    }
    void check(const QByteArray &answer)
    {
        on("check-otp", answer);
        const auto before = told().size();
        tap("btnCheck");
        ASSERT_SOON(told().size() == before + 1 && !overlayIsUp());
    }
    /// Each request of the road in a line: "send NO +4741", "check r1 NO 41 471".
    QString sent() const
    {
        QStringList lines;
        for (const RawRequest &request : server.requests()) {
            const QJsonObject all = request.parameters();
            const auto of = [&all](const char *key) { return all[QLatin1String(key)].toString(); };
            if (request.path().endsWith("/send-otp"))
                lines << u"send %1 %2"_s.arg(of("countryCode"), of("phoneNumber"));
            else if (request.path().endsWith("/check-otp"))
                lines << u"check %1 %2 %3 %4"_s.arg(
                    of("reference"), of("countryCode"), of("phoneNumber"), of("code"));
        }
        return lines.join(u"; "_s);
    }
};

QByteArray reference(const char *name)
{
    return ok(R"({"reference":")" + QByteArray(name) + "\"}");
}
const QByteArray rightCode = ok(R"({"sessionId":"s"})");
const QByteArray refused = RawServer::http(400, R"({"meta":{"httpStatusCode":400}})");

struct Round {
    const char *name;
    std::function<void(SecondRound &)> act;
    QString sent;
    QString shown; ///< in the end
    QString told = {};
};

class Again : public SecondRound, public testing::WithParamInterface<Round> { };

TEST_P(Again, NothingIsLeftOfTheFirst)
{
    number(u"41"_s);
    pick(u"Norway"_s);
    GetParam().act(*this);
    EXPECT_EQ(sent(), GetParam().sent);
    EXPECT_EQ(fields(), GetParam().shown);
    EXPECT_EQ(told().join(u", "_s), GetParam().told);
}

using R = SecondRound;
const Round rounds[] = {
    { "AnswersWithoutAReference",
        [](R &r) {
            for (const QByteArray &answer :
                { reference(""), refused, RawServer::http(502, "<html>"), dropped })
                r.send(answer, false);
        },
        u"send NO +4741; send NO +4741; send NO +4741; send NO +4741"_s, u"Norway|+47|41"_s },
    { "RefusalWithAReference", // which alone decides
        [](R &r) {
            r.send(RawServer::http(
                400, R"({"meta":{"httpStatusCode":400},"result":{"reference":"r1"}})"));
            r.code(u"4"_s), r.check(rightCode);
        },
        u"send NO +4741; check r1 NO 41 4"_s, u"4||"_s, u"succeeded s"_s },
    { "CountryWithoutAPrefix",
        [](R &r) { r.pick(u"Nowhere"_s), r.sendInVain(), r.pick(u"Chad"_s), r.sendInVain(); },
        u"send XN 41; send TD +23541"_s, u"Chad|+235|41"_s },
    { "CountryWithoutAPrefixShown", [](R &r) { r.pick(u"Nowhere"_s); }, {}, u"Nowhere||41"_s },
    { "ChoiceGivenUp",
        [](R &r) { r.openPicker(), r.tap("btnClose"), (void)r.rests(), r.sendInVain(); },
        u"send NO +4741"_s, u"Norway|+47|41"_s },
    { "NumberAndCountryAfterASend",
        [](R &r) {
            r.send(reference("r1")), r.goBack(), r.number(u"52"_s), r.pick(u"Chad"_s),
                r.send(reference("r2"));
            r.code(u"471"_s), r.check(rightCode);
        },
        u"send NO +4741; send TD +23552; check r2 TD 52 471"_s, u"4|7|1"_s, u"succeeded s"_s },
    { "SendRefusedAfterASend",
        [](R &r) {
            r.send(reference("r1")), r.goBack(), r.sendInVain(), r.send(reference("r2")),
                r.code(u"4"_s), r.check(rightCode);
        },
        u"send NO +4741; send NO +4741; send NO +4741; check r2 NO 41 4"_s, u"4||"_s,
        u"succeeded s"_s },
    { "CodeAfterBackAndIn",
        [](R &r) {
            r.send(reference("r1")), r.code(u"471"_s), r.goBack(), r.send(reference("r2")),
                r.code(u"9"_s), r.check(rightCode);
        },
        u"send NO +4741; send NO +4741; check r2 NO 41 9"_s, u"9||"_s, u"succeeded s"_s },
    { "AllBoxesEmptiedAfterACheck",
        [](R &r) {
            r.send(reference("r1")), r.code(u"471"_s), r.check(refused), r.tap("txtCode2"),
                hands::keys(u"\b\b\b"_s);
            r.tap("btnCheck"), r.code(u"82"_s), r.check(rightCode);
        },
        u"send NO +4741; check r1 NO 41 471; check r1 NO 41 82"_s, u"8|2|"_s,
        u"failed 0, succeeded s"_s },
    { "ASessionIdDecidesAlone", // whatever else the answer says
        [](R &r) {
            r.send(reference("r1")), r.code(u"4"_s);
            for (const char *result : { R"({"sessionId":"s","validationStatus":false})",
                     R"({"sessionId":""})", R"({"validationStatus":true})" })
                r.check(ok(result));
            r.check(RawServer::http(200, "[]"));
        },
        u"send NO +4741"_s + u"; check r1 NO 41 4"_s.repeated(4), u"4||"_s,
        u"succeeded s, succeeded , failed 0, failed 1"_s },
};

INSTANTIATE_TEST_SUITE_P(Rounds, Again, testing::ValuesIn(rounds), byName);

} // namespace
