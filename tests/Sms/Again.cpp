// The second time round: what an earlier round left behind is neither sent nor shown nor told.
#include "Parloquin/Controller/OtpCheckViewController.h"
#include "Parloquin/Controller/OtpMainViewController.h"
#include "Sms/SmsRoad.h"

#include <QtWidgets/QLineEdit>

using namespace parloquin;
using namespace Qt::StringLiterals;

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
    /// The service answers with this reference; without one nobody gets on.
    void send(const QByteArray &reference)
    {
        on("send-otp", ok(reference.isEmpty() ? "{}" : "{\"reference\":\"" + reference + "\"}"));
        const auto before = server.requests().size();
        tap("btnContinue");
        ASSERT_TRUE(server.waitForRequests(before + 1));
        ASSERT_TRUE(QTest::qWaitFor([this] { return !overlayIsUp() && isAtRest(); }));
        ASSERT_EQ(top<OtpCheckViewController>() == nullptr, reference.isEmpty());
    }
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
        ASSERT_TRUE(QTest::qWaitFor([&] { return told().size() == before + 1 && !overlayIsUp(); }));
    }
    void back()
    {
        tap("btnBack");
        ASSERT_TRUE(arrivesAt<OtpMainViewController>() && rests());
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
    QString shown() const
    {
        QStringList texts;
        for (const char *name : { "txtCountryName", "txtCountryCode", "txtPhoneNumber", "txtCode0",
                 "txtCode1", "txtCode2" })
            if (const auto *field = top<Screen>()->findChild<QLineEdit *>(QLatin1String(name)))
                texts << field->text();
        return texts.join(u'|');
    }
};

const QByteArray rightCode = ok(R"({"sessionId":"s"})");
const QByteArray wrongCode = RawServer::http(400, R"({"meta":{"httpStatusCode":400}})");

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
    EXPECT_EQ(shown(), GetParam().shown);
    EXPECT_EQ(told().join(u", "_s), GetParam().told);
}

using R = SecondRound;
const Round rounds[] = {
    { "CountryWithoutAPrefix",
        [](R &r) { r.pick(u"Nowhere"_s), r.send({}), r.pick(u"Chad"_s), r.send({}); },
        u"send XN 41; send TD +23541"_s, u"Chad|+235|41"_s },
    { "CountryWithoutAPrefixShown", [](R &r) { r.pick(u"Nowhere"_s); }, {}, u"Nowhere||41"_s },
    { "ChoiceChangedBack",
        [](R &r) { r.send({}), r.pick(u"Chad"_s), r.pick(u"Norway"_s), r.send({}); },
        u"send NO +4741; send NO +4741"_s, u"Norway|+47|41"_s },
    { "ChoiceGivenUp", [](R &r) { r.openPicker(), r.tap("btnClose"), (void)r.rests(), r.send({}); },
        u"send NO +4741"_s, u"Norway|+47|41"_s },
    { "NumberAndCountryAfterASend",
        [](R &r) {
            r.send("r1"), r.back(), r.number(u"52"_s), r.pick(u"Chad"_s), r.send("r2");
            r.code(u"471"_s), r.check(rightCode);
        },
        u"send NO +4741; send TD +23552; check r2 TD 52 471"_s, u"4|7|1"_s, u"succeeded s"_s },
    { "SendRefusedAfterASend",
        [](R &r) {
            r.send("r1"), r.back(), r.send({}), r.send("r2"), r.code(u"4"_s), r.check(rightCode);
        },
        u"send NO +4741; send NO +4741; send NO +4741; check r2 NO 41 4"_s, u"4||"_s,
        u"succeeded s"_s },
    { "CodeAfterBackAndIn",
        [](R &r) {
            r.send("r1"), r.code(u"471"_s), r.back(), r.send("r2"), r.code(u"9"_s),
                r.check(rightCode);
        },
        u"send NO +4741; send NO +4741; check r2 NO 41 9"_s, u"9||"_s, u"succeeded s"_s },
    { "AllBoxesEmptiedAfterACheck",
        [](R &r) {
            r.send("r1"), r.code(u"471"_s), r.check(wrongCode), r.tap("txtCode2"),
                hands::keys(u"\b\b\b"_s);
            r.tap("btnCheck"), r.code(u"82"_s), r.check(rightCode);
        },
        u"send NO +4741; check r1 NO 41 471; check r1 NO 41 82"_s, u"8|2|"_s,
        u"failed 0, succeeded s"_s },
    { "CheckOfTheSameCode",
        [](R &r) {
            r.send("r1"), r.code(u"471"_s), r.check(rightCode), r.check(wrongCode),
                r.check(dropped);
            r.check(rightCode);
        },
        u"send NO +4741; check r1 NO 41 471; check r1 NO 41 471; check r1 NO 41 471; "
        "check r1 NO 41 471"_s,
        u"4|7|1"_s, u"succeeded s, failed 0, failed 1, succeeded s"_s },
};

INSTANTIATE_TEST_SUITE_P(Rounds, Again, testing::ValuesIn(rounds), byName);

} // namespace
