#include "Parloquin/Controller/OtpCheckViewController.h"
#include "Parloquin/Extension/QString+OneTimeCode.h"
#include "Sms/SmsRoad.h"
#include "support/ModemBus.h"

#include <QtCore/QDeadlineTimer>
#include <QtCore/QTranslator>
#include <QtGui/QWindow>
#include <QtWidgets/QLineEdit>

#include <string_view>

using namespace parloquin;
using namespace Qt::StringLiterals;

namespace {

struct CodeRow {
    const char *name;
    QString message;
    const char *code; // empty: none
};

class BoundCode : public testing::TestWithParam<CodeRow> { };

TEST_P(BoundCode, IsReadFromTheLastLineForThisHostAlone)
{
    EXPECT_EQ(
        oneTimeCode(GetParam().message, u"verify.example"_s, 3).value_or(QString()).toStdString(),
        GetParam().code);
}

const CodeRow codeRows[] = {
    { "AfterAText", u"Your code is 7K2.\n\n@verify.example #7K2"_s, "7K2" },
    { "Alone", u"@verify.example #245"_s, "245" },
    { "HostInCapitals", u"@Verify.Example #abc"_s, "abc" },
    { "OtherHost", u"@verify.test #7K2"_s, "" },
    { "HostBelow", u"@a.verify.example #7K2"_s, "" },
    { "HostWithMoreBehind", u"@verify.example.test #7K2"_s, "" },
    { "PartOfTheHost", u"@example #7K2"_s, "" },
    { "HostWithAPort", u"@verify.example:443 #7K2"_s, "" },
    { "HostOfLettersAlike", u"@verify.e\u212Aample #7K2"_s, "" },
    { "NoHost", u"@ #7K2"_s, "" },
    { "NotTheLastLine", u"@verify.example #7K2\nThanks"_s, "" },
    { "WithinALine", u"Code @verify.example #7K2"_s, "" },
    { "TooShort", u"@verify.example #7K"_s, "" },
    { "TooLong", u"@verify.example #7K29"_s, "" },
    { "ForAPageWithin", u"@verify.example #7K2 @other.example"_s, "" },
    { "TwoBlanks", u"@verify.example  #7K2"_s, "" },
    { "NoMark", u"@verify.example 7K2"_s, "" },
    { "OtherDigits", u"@verify.example #\u0667\u0668\u0669"_s, "" },
    { "ControlCharacters", u"@verify.example #7\u00002"_s, "" },
    { "Empty", u""_s, "" },
};
INSTANTIATE_TEST_SUITE_P(Messages, BoundCode, testing::ValuesIn(codeRows), named);

/// Counts the offers: each asks for its words.
class Offers : public QTranslator {
public:
    QString translate(const char *, const char *text, const char *, int) const override
    {
        count += std::string_view(text) == "Fill in %1 from your message" ? 1 : 0;
        return {};
    }
    [[nodiscard]] bool isEmpty() const override { return false; }
    mutable int count = 0;
};

class MessageCode : public SmsRoad {
protected:
    MessageCode()
    {
        bus.play("start bus; start service; await; modem 0 20801; modem 1 26201");
        bus.tell({ u"sms"_s, u"0"_s, u"before"_s, u"3"_s, bound(u"old"_s) });
        on("check-otp", ok(R"({"sessionId":"s-1"})"));
        goToCodeEntry();
        QCoreApplication::installTranslator(&offers);
    }

    static QString bound(const QString &code) { return uR"(Code\n@127.0.0.1 #)"_s + code; }
    static QString offer(const QString &code)
    {
        return u"Fill in %1 from your message"_s.arg(code);
    }

    QWidget *button() const
    {
        auto *found = container->findChild<QWidget *>(u"btnMessageCode"_s);
        return found && found->isVisible() ? found : nullptr;
    }
    void send(const QString &text, const QString &modem = u"0"_s)
    {
        bus.tell({ u"sms"_s, modem, QString::number(++messages), u"3"_s, text });
    }
    bool isShown(const QString &code, int patience) const
    {
        const QString text = u"Fill in %1 from your message"_s.arg(code);
        return QTest::qWaitFor(
            [&] { return button() && button()->property("text") == text; }, patience);
    }
    /// Sends it again until it is offered: nobody knows when the kit has begun to listen.
    bool isOffered(const QString &code, const QString &modem = u"0"_s)
    {
        for (const QDeadlineTimer deadline(20000); !deadline.hasExpired();) {
            send(bound(code), modem);
            if (isShown(code, 500))
                return true;
        }
        return false;
    }
    QString boxes() const
    {
        QString all;
        for (const char *name : { "txtCode0", "txtCode1", "txtCode2" })
            all += part<QLineEdit>(name)->text();
        return all;
    }
    void check()
    {
        EXPECT_EQ(boxes(), u"7K2");
        EXPECT_EQ(button(), nullptr);
        EXPECT_TRUE(part("btnCheck")->hasFocus());
        QTest::keyClick(container->windowHandle(), Qt::Key_Return);
        ASSERT_TRUE(QTest::qWaitFor([this] { return !outcomes->all().isEmpty(); }));
        ASSERT_EQ(bodies("check-otp").size(), 1);
        EXPECT_EQ(bodies("check-otp").at(0)[u"code"].toString(), u"7K2");
    }

    ModemBus bus;
    Offers offers;
    int messages = 0;
};

TEST_F(MessageCode, IsOfferedOverThePageAndFilledInByATap)
{
    const QRect before = frame("btnTryAgain");
    ASSERT_TRUE(isOffered(u"7K2"_s, u"1"_s));
    EXPECT_EQ(frame("btnTryAgain"), before);
    EXPECT_EQ(frame("btnMessageCode"), QRect(20, 769, 350, 55));
    EXPECT_EQ(boxes(), u"");
    EXPECT_TRUE(part("txtCode0")->hasFocus());
    EXPECT_TRUE(bodies("check-otp").isEmpty());

    QTest::mouseClick(
        container->windowHandle(), Qt::LeftButton, {}, frame("btnMessageCode").center());
    check();
}

TEST_F(MessageCode, IsFilledInByTabAndEnter)
{
    type(u"1"_s);
    ASSERT_TRUE(isOffered(u"7K2"_s));
    EXPECT_TRUE(part("txtCode1")->hasFocus());
    QTest::keyClick(container->windowHandle(), Qt::Key_Tab);
    QTest::keyClick(container->windowHandle(), Qt::Key_Return);
    check();
}

TEST_F(MessageCode, IsTakenOnceFromWholeReceivedMessagesForThisHostAlone)
{
    ASSERT_TRUE(isOffered(u"111"_s));
    offers.count = 0;
    send(u"Code 222"_s);
    send(uR"(@verify.example #333)"_s);
    send(uR"(<b>%s"$(true)`\u202e\u0007`</b>)"_s.repeated(1000) + bound(u"4444"_s));
    bus.tell({ u"sms"_s, u"0"_s, u"own"_s, u"3"_s, bound(u"555"_s), u"false"_s });
    bus.tell({ u"sms"_s, u"1"_s, u"parts"_s, u"2"_s, bound(u"66"_s) });
    bus.tell({ u"complete"_s, u"parts"_s, bound(u"666"_s) });
    bus.tell({ u"complete"_s, u"before"_s, bound(u"777"_s) });
    send(bound(u"888"_s));
    EXPECT_TRUE(isShown(u"888"_s, 20000));
    EXPECT_EQ(offers.count, 2) << "of 666 and 888";
}

TEST_F(MessageCode, IsNotAskedForWithoutAModemOrABus)
{
    bus.play("end service");
    tap("btnBack");
    ASSERT_TRUE(QTest::qWaitFor([this] { return !top<OtpCheckViewController>(); }));
    tap("btnContinue");
    ASSERT_TRUE(arrivesAt<OtpCheckViewController>());
    bus.play("end bus");
    tap("btnBack");
    EXPECT_TRUE(QTest::qWaitFor([this] { return !top<OtpCheckViewController>(); }));
}

} // namespace
