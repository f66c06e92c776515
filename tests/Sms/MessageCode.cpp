#include "Parloquin/Extension/QString+OneTimeCode.h"
#include "Sms/SmsRoad.h"
#include "support/ModemBus.h"

#include <QtCore/QDeadlineTimer>
#include <QtCore/QTranslator>

#include <string_view>

namespace {

TEST(BoundCode, IsReadFromTheLastLineForThisHostAlone)
{
    const auto read = [](const QString &message) {
        return oneTimeCode(message, u"verify.example"_s, 3).value_or(u"none"_s);
    };
    EXPECT_EQ(read(u"Your code is 7K2.\n\n@verify.example #7K2"_s), u"7K2");
    EXPECT_EQ(read(u"@verify.example #245"_s), u"245");
    EXPECT_EQ(read(u"@Verify.Example #abc"_s), u"abc");
    for (const QString &message :
        { u"@verify.test #7K2"_s, u"@a.verify.example #7K2"_s, u"@verify.example.test #7K2"_s,
            u"@example #7K2"_s, u"@verify.example:443 #7K2"_s, u"@ #7K2"_s,
            u"@verify.e\u212Aample #7K2"_s, // letters that look alike
            u"@verify.example #7K2\nThanks"_s, u"Code @verify.example #7K2"_s,
            u"@verify.example #7K"_s, u"@verify.example #7K29"_s,
            u"@verify.example #7K2 @other.example"_s, u"@verify.example  #7K2"_s,
            u"@verify.example 7K2"_s, u"@verify.example #\u0667\u0668\u0669"_s,
            u"@verify.example #7\u00002"_s, u""_s })
        EXPECT_EQ(read(message), u"none") << message.toStdString();
}

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
    void SetUp() override
    {
        SmsRoad::SetUp();
        bus.play("start bus; start service; await; modem 0 20801; modem 1 26201");
        bus.tell({ u"sms"_s, u"0"_s, u"before"_s, u"3"_s, bound(u"old"_s) });
        goToCode();
        QCoreApplication::installTranslator(&offers);
    }

    static QString bound(const QString &code) { return uR"(Code\n@127.0.0.1 #)"_s + code; }
    QWidget *button() const { return visible("btnMessageCode"); }
    void send(const QString &text, const QString &modem = u"0"_s)
    {
        bus.tell({ u"sms"_s, modem, QString::number(++messages), u"3"_s, text });
    }
    bool isShown(const QString &code, int patience) const
    {
        const QString text = u"Fill in %1 from your message"_s.arg(code);
        return QTest::qWaitFor([&] { return button() && textOf(button()) == text; }, patience);
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

    ModemBus bus;
    Offers offers;
    int messages = 0;
};

TEST_F(MessageCode, StandsBelowThePageAndIsFilledInByTabAndEnter)
{
    page()->setFocus(); // as when it comes before the first box has the keyboard
    ASSERT_TRUE(isOffered(u"7K2"_s, u"1"_s));
    container->resize(195, 422); // at twice the scale
    hands::wheel(container.get(), { 100, 200 }, {}, { 0, -12000 });
    EXPECT_GE(frame("btnMessageCode").top() - 1 - frame("btnTryAgain").bottom(), 20);
    container->resize(390, 844);
    tap("txtCode0");
    hands::key(Qt::Key_Tab);
    EXPECT_TRUE(button()->hasFocus());
    hands::key(Qt::Key_Backtab);
    type(u"1"_s);
    EXPECT_EQ(boxes(), u"1|[]|");
    hands::key(Qt::Key_Tab);
    EXPECT_TRUE(button()->hasFocus());
    hands::key(Qt::Key_Backtab);
    hands::key(Qt::Key_End); // wherever one types, it is the next
    hands::key(Qt::Key_Tab);
    hands::key(Qt::Key_Return);
    EXPECT_EQ(boxes(), u"7|K|2");
    EXPECT_EQ(button(), nullptr);
    EXPECT_TRUE(isOffered(u"7K2"_s)) << "another message may bring the same";
    container->hide();
    container->show();
    EXPECT_EQ(button(), nullptr) << "offered before it was hidden";
}

TEST_F(MessageCode, IsTakenOnceFromWholeReceivedMessagesForThisHostAlone)
{
    ASSERT_TRUE(isOffered(u"111"_s));
    offers.count = 0;
    send(u"Code 222"_s);
    send(uR"(@verify.example #333)"_s);
    send(uR"(<b>%s"$(true)`\u202e\u0007`</b>)"_s.repeated(1000) + bound(u"4444"_s));
    bus.tell({ u"sms"_s, u"0"_s, u"own"_s, u"3"_s, bound(u"555"_s), u"false"_s });
    bus.tell({ u"sms"_s, u"1"_s, u"parts"_s, u"2"_s, bound(u"660"_s) });
    bus.tell({ u"complete"_s, u"parts"_s, bound(u"661"_s), u"2"_s });
    send(bound(u"665"_s));
    EXPECT_TRUE(isShown(u"665"_s, 20000)); // so that the part that came before was looked at
    bus.tell({ u"complete"_s, u"parts"_s, u"x"_s.repeated(9000) + bound(u"666"_s) });
    EXPECT_TRUE(isShown(u"666"_s, 20000));
    bus.tell({ u"complete"_s, u"parts"_s, bound(u"667"_s) }); // it was whole before
    bus.tell({ u"complete"_s, u"before"_s, bound(u"777"_s) });
    bus.tell({ u"forge"_s, u"before"_s });
    send(bound(u"888"_s));
    EXPECT_TRUE(isShown(u"888"_s, 20000));
    EXPECT_EQ(offers.count, 3) << "of 665, 666 and 888";
    container->hide();
    send(bound(u"999"_s));
    EXPECT_FALSE(QTest::qWaitFor([this] { return offers.count > 3; }, 500)) << "still read";
}

TEST_F(MessageCode, IsNotAskedForWithoutAModemOrABus)
{
    bus.play("end service");
    goBack();
    tap("btnContinue");
    ASSERT_TRUE(seen("btnCheck"));
    bus.play("end bus");
    goBack();
}

} // namespace
