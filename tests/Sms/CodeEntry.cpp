#include "Parloquin/Networking/Helper/ApiSessionHelper.h"
#include "Sms/SmsRoad.h"
#include "support/DeveloperWords.h"

namespace {

class CodeEntry : public SmsRoad {
protected:
    void SetUp() override
    {
        SmsRoad::SetUp();
        on("check-otp", ok(R"({"sessionId":"s-1"})"));
        goToCode();
    }
};

struct Steps {
    const char *name;
    /// Each: "@N" taps box N, "<" is backspace, ">" Enter held, "#..." a key by name, "v..."
    /// pastes, "mirror" turns the screen, anything else is typed.
    QStringList steps;
    QString boxes;
    QString code; // sent by a tap on the button; empty: nothing is sent
};

class CodeBoxes : public CodeEntry, public testing::WithParamInterface<Steps> { };

TEST_P(CodeBoxes, MoveTheFocusAndKeepOneCharacterEach)
{
    const DeveloperWords developer;
    for (const QString &step : GetParam().steps) {
        if (step.startsWith(u'@'))
            tap(u"txtCode"_s.append(step[1]).toLatin1());
        else if (step == u"<")
            hands::key(Qt::Key_Backspace);
        else if (step == u">")
            hands::hold(Qt::Key_Enter);
        else if (step.startsWith(u'#'))
            hands::key(QKeySequence(step.mid(1))[0].key());
        else if (step == u"mirror")
            container->setLayoutDirection(Qt::RightToLeft);
        else if (step.startsWith(u'v'))
            paste(step.mid(1));
        else
            type(step);
    }
    EXPECT_EQ(boxes(), GetParam().boxes);

    tap("btnCheck");
    if (GetParam().code.isEmpty()) { // what comes first must be what is typed next
        QCoreApplication::processEvents();
        tap("txtCode0");
        type(u"9"_s);
        tap("btnCheck");
    }
    ASSERT_TRUE(isTold());
    const auto sent = bodies("check-otp");
    ASSERT_EQ(sent.size(), 1);
    EXPECT_EQ(sent[0][u"code"].toString(), GetParam().code.isEmpty() ? u"9"_s : GetParam().code);
    EXPECT_EQ(developer.heard(), QStringList()) << "nothing was kept from the person";
}

const QString family = u"👨‍👩‍👧"_s;
const Steps steps[] = {
    { "TwoOnly", { u"1"_s, u"2"_s }, u"1|2|[]"_s, u"12"_s },
    { "SecondDigitInFilledLast", { u"@2"_s, u"7"_s, u"@2"_s, u"8"_s }, u"||7"_s, u"7"_s },
    { "DeletedInFirstStays", { u"1"_s, u"@0"_s, u"<"_s }, u"[]||"_s, {} },
    { "DeletedInSecondGoesBack", { u"1"_s, u"2"_s, u"@1"_s, u"<"_s }, u"[1]||"_s, u"1"_s },
    { "BackspaceInEmptyBoxGoesBack", { u"1"_s, u"<"_s }, u"[1]||"_s, u"1"_s },
    { "BackspaceInEmptyFirstBoxStays", { u"<"_s }, u"[]||"_s, {} },
    { "PasteOfTwoKeepsOne", { u"v47"_s }, u"4|[]|"_s, u"4"_s },
    { "PasteOfThreeKeepsTwo", { u"v471"_s }, u"47|[]|"_s, u"47"_s },
    { "LettersPass", { u"a"_s, u"?"_s, u" "_s }, u"a|?| "_s, u"a? "_s },
    { "EmojiIsOne", { family, u"🇳🇴"_s, u"👍🏽"_s }, family + u"|🇳🇴|👍🏽"_s,
        family + u"🇳🇴👍🏽"_s },
    { "EmojiLeavesWhole", { u"v1"_s + family }, u"1|[]|"_s, u"1"_s },
    { "CombinedLetterIsOne", { u"e\u0301"_s, u"ve\u0301\u0308x"_s }, u"e\u0301|e\u0301\u0308|[]"_s,
        u"e\u0301e\u0301\u0308"_s },
    { "EnterGoesOnByOne", { u">"_s, u"2"_s, u"@0"_s, u">"_s }, u"|[2]|"_s, u"2"_s },
    { "ArrowsAndEndsGoFromBoxToBox",
        { u"1"_s, u"2"_s, u"#Left"_s, u"5"_s, u"#Home"_s, u"#Left"_s, u"6"_s, u"#Right"_s, u"7"_s },
        u"6|5|7"_s, u"657"_s },
    { "ArrowsGoBySight", { u"mirror"_s, u"#Left"_s, u"2"_s, u"#Right"_s, u"1"_s, u"#Home"_s },
        u"[]|1|"_s, u"1"_s },
    { "BackspaceAfterTheLastGoesBackToIt", { u"1"_s, u"2"_s, u"3"_s, u"<"_s, u"4"_s }, u"1|2|4"_s,
        u"124"_s },
    { "FilledOutOfOrder", { u"@2"_s, u"3"_s, u"@0"_s, u"1"_s }, u"1|[]|3"_s, u"13"_s },
};

INSTANTIATE_TEST_SUITE_P(Sequences, CodeBoxes, testing::ValuesIn(steps), byName);

TEST_F(CodeEntry, AHostMayDeleteTheContainerOverAMissingNetwork)
{
    // Such a request fails at once, and the host is told on the main thread.
    delegate->whenTold = [this] { container.reset(); };
    ApiSessionHelper::shared().isNetworkReachable = false;
    type(u"1"_s);
    const auto lives = std::make_shared<bool>(); // after the kit has dealt with the tap
    const auto *button = part<QAbstractButton>("btnCheck");
    QObject::connect(button, &QAbstractButton::clicked, button,
        [this, lives] { *lives = container != nullptr; });
    tap("btnCheck");
    EXPECT_TRUE(*lives) << "deleted within the tap";
    EXPECT_SOON(!container);
    ApiSessionHelper::shared().isNetworkReachable = true; // for whoever comes in this process
}

TEST_F(CodeEntry, TryAgainLooksUnpressed)
{
    auto *const link = part("btnTryAgain");
    const QImage before = link->grab().toImage();
    hands::press(link);
    EXPECT_EQ(difference(link->grab().toImage(), before), "");
}

TEST_F(CodeEntry, EnterChecksFromTheLastBoxOnce)
{
    type(u"2"_s);
    tap("txtCode2");
    hands::hold(Qt::Key_Return); // the box is empty, and the button would not mind either
    ASSERT_TRUE(isTold());
    ASSERT_EQ(bodies("check-otp").size(), 1);
    EXPECT_EQ(bodies("check-otp").constFirst()[u"code"], u"2"_s);
}

} // namespace
