// What holds on both pages of the road alike: fingers scroll them from anywhere, and no key that is
// held does more than a person wants.
#include "Sms/SmsRoad.h"

namespace {

struct Place {
    const char *button; ///< that the page has
    const char *from; ///< where the finger is put down
};
void PrintTo(const Place &place, std::ostream *out) { *out << place.button << ", " << place.from; }
class TouchedPage : public SmsRoad, public testing::WithParamInterface<Place> { };

TEST_P(TouchedPage, ScrollsFromAnywhereAndBackAndIsNotTapped)
{
    const auto &[button, from] = GetParam();
    if (qstrcmp(button, "btnCheck") == 0)
        goToCode();
    page()->setFocus();
    on("check-otp", ok("{}"));
    const auto calls = server.requests().size();
    container->resize(390, 300);
    QCoreApplication::processEvents();
    const auto y = [this] { return frame(GetParam().button).y(); };
    const int before = y();
    hands::Finger finger;
    const QRect start = frame(from);
    const QPoint at(start.center().x(), std::clamp(start.center().y(), 100, 296));
    ASSERT_TRUE(start.contains(at)) << "out of view";
    finger.down(container.get(), at);
    finger.drag({ 0, -60 });
    EXPECT_SOON(std::abs(before - y() - 60) <= 25)
        << "it goes with the finger, not from " << before << " to " << y();
    finger.drag({ 0, 100 });
    finger.up();
    ASSERT_TRUE(rests());
    EXPECT_EQ(y(), before) << "and no further than it goes";
    EXPECT_TRUE(page()->hasFocus()) << "it was a scroll";
    EXPECT_TRUE(visible(button));
    EXPECT_FALSE(overlayIsUp());
    EXPECT_EQ(server.requests().size(), calls);
}

// Pages get a touch as a mouse: a release is all that Qt makes of one that was taken away.
TEST_P(TouchedPage, ATouchThatTheSystemTakesAwayMeansNothing)
{
    const auto &[button, from] = GetParam();
    if (qstrcmp(button, "btnCheck") == 0) {
        goToCode();
        hands::keys(u"471"_s);
    } else {
        pick(u"Norway"_s);
        enterNumber(u"41234567"_s);
    }
    on("send-otp", ok("{}"));
    on("check-otp", ok("{}"));
    auto *const screen = page();
    screen->setFocus();
    const auto calls = server.requests().size();
    hands::Finger finger;
    for (const char *name : { from, "navigationBar", from }) {
        auto *const back = container->findChild<QWidget *>(u"btnBack"_s);
        finger.down(back && qstrcmp(name, from) != 0 ? back : part(name), { 10, 10 });
        finger.cancel();
        finger.up();
    }
    ASSERT_TRUE(rests());
    EXPECT_EQ(page(), screen);
    EXPECT_TRUE(screen->hasFocus());
    EXPECT_FALSE(overlayIsUp());
    EXPECT_EQ(server.requests().size(), calls);
    finger.tap(part(button)); // which is heard
    EXPECT_SOON(server.requests().size() > calls && !overlayIsUp());
}

const Place places[] = {
    { "btnContinue", "viewCountryBack" },
    { "btnContinue", "txtPhoneNumber" },
    { "btnContinue", "txtCountryCode" },
    { "btnContinue", "btnContinue" },
    { "btnCheck", "txtCode1" },
    { "btnCheck", "viewFieldsBack" },
};
INSTANTIATE_TEST_SUITE_P(Places, TouchedPage, testing::ValuesIn(places),
    [](const auto &row) { return std::string(row.param.button) + "_" + row.param.from; });

struct Held {
    const char *from; ///< has the keyboard; "page": the phone's page itself
    Qt::Key key;
    Qt::KeyboardModifiers modifiers;
    const char *arrives; ///< a part of the page that shows in the end
    int calls; ///< that went out
    QString texts; ///< of the fields there
};
void PrintTo(const Held &held, std::ostream *out) { *out << held.from << ", key " << held.key; }
class HeldKey : public SmsRoad, public testing::WithParamInterface<Held> { };

TEST_P(HeldKey, DoesWhatOnePressDoes)
{
    const Held &row = GetParam();
    goToCode();
    on("check-otp", ok(R"({"sessionId":"s"})"));
    hands::keys(u"471"_s);
    if (!visible(row.from))
        goBack();
    auto *const from = visible(row.from);
    (from ? from : page())->setFocus(Qt::TabFocusReason);
    const auto before = server.requests().size();
    hands::keyDown(row.key, false, row.modifiers);
    const auto there = [&] {
        return visible(row.arrives) && !overlayIsUp()
            && server.requests().size() >= before + static_cast<std::size_t>(row.calls);
    };
    ASSERT_TRUE(QTest::qWaitFor([&] {
        hands::keyDown(row.key, true, row.modifiers); // on, until what comes of it has come
        return there() && isAtRest();
    })) << row.arrives;
    for (int i = 0; i < 30; ++i)
        hands::keyDown(row.key, true, row.modifiers);
    hands::keyUp(row.key);
    QCoreApplication::processEvents();
    EXPECT_TRUE(there()) << row.arrives;
    EXPECT_EQ(server.requests().size() - before, row.calls);
    EXPECT_EQ(fields(), row.texts);
}

const QString phoneTexts = u"Norway|+47|41234567"_s;
const Held helds[] = {
    { "txtCode2", Qt::Key_Return, {}, "btnCheck", 1, u"4|7|1"_s },
    { "btnCheck", Qt::Key_Enter, {}, "btnCheck", 1, u"4|7|1"_s },
    { "btnTryAgain", Qt::Key_Return, {}, "btnCheck", 0, u"4|7|1"_s },
    { "txtCode2", Qt::Key_Backspace, {}, "btnCheck", 0, u"||"_s },
    { "txtCode0", Qt::Key_Delete, {}, "btnCheck", 0, u"|7|1"_s },
    { "txtCode0", Qt::Key_8, {}, "btnCheck", 0, u"8|7|1"_s },
    { "txtCode1", Qt::Key_Escape, {}, "btnContinue", 0, phoneTexts },
    { "txtCode1", Qt::Key_Back, {}, "btnContinue", 0, phoneTexts },
    { "btnCheck", Qt::Key_Left, Qt::AltModifier, "btnContinue", 0, phoneTexts },
    { "btnBack", Qt::Key_Return, {}, "btnContinue", 0, phoneTexts },
    { "viewCountryBack", Qt::Key_Enter, {}, "tblCountries", 1, {} },
    { "txtPhoneNumber", Qt::Key_Enter, {}, "btnCheck", 1, u"||"_s },
    { "btnContinue", Qt::Key_Return, {}, "btnCheck", 1, u"||"_s },
    { "page", Qt::Key_Return, {}, "btnCheck", 1, u"||"_s },
    { "txtPhoneNumber", Qt::Key_Backspace, {}, "btnContinue", 0, u"Norway|+47|"_s },
    { "txtPhoneNumber", Qt::Key_Left, {}, "btnContinue", 0, phoneTexts },
};
INSTANTIATE_TEST_SUITE_P(Keys, HeldKey, testing::ValuesIn(helds), [](const auto &row) {
    return std::string(row.param.from)
        + QVariant::fromValue(row.param.key).toString().toStdString();
});

} // namespace
