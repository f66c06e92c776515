// Both roads from end to end by one kind of input alone, in every kind of host.
#include "Screens/Hosts.h"

namespace {

class Walk : public InEveryHost {
protected:
    void tabTo(const char *name) const
    {
        for (int i = 0; i < 20 && focusName() != QLatin1String(name); ++i)
            hands::key(Qt::Key_Tab);
        EXPECT_EQ(focusName(), QLatin1String(name));
    }
    void lead(bool byKeys);
};

TEST_P(Walk, LeadsAlongBothRoadsByKeys) { lead(true); }
TEST_P(Walk, LeadsAlongBothRoadsByTouch) { lead(false); }

void Walk::lead(bool byKeys)
{
    // None of another case, whose app may write down its own only now.
    const QByteArray link = "parlo://walk";
    answer("/v1.0/start", R"({"result":{"deeplink":")" + link + R"(","reference":"R-1"}})");
    open();
    hands::Finger finger;
    const auto touch = [&](const char *name) { finger.tap(visible(name)); };
    const auto enter = [this](Qt::Key key) { // and once more, while what it led to is on its way
        hands::hold(key);
        QCoreApplication::processEvents();
        if (!isAtRest()) // a busy machine may be there already
            hands::key(key);
    };

    if (byKeys) {
        EXPECT_EQ(focusName(), u"tblKits");
        hands::key(Qt::Key_Home);
        hands::hold(Qt::Key_Return);
    } else {
        finger.tap(row("tblKits", 0, 0));
    }
    ASSERT_SOON(handlerArguments() == QStringList(QString::fromLatin1(link)));
    ASSERT_TRUE(settle(2));
    comeBack();
    ASSERT_TRUE(waitForOutcomes(1));
    EXPECT_EQ(takeHandlerStarts(link), 1);
    ASSERT_TRUE(settle(3)); // an outcome may be there before the overlay is

    if (byKeys) {
        EXPECT_EQ(focusName(), u"tblKits") << "what had it before the overlay";
        tabTo("viewAlternativeKit");
        enter(Qt::Key_Space);
        ASSERT_TRUE(seen("viewCountryBack"));
        EXPECT_EQ(focusName(), u"viewCountryBack");
        hands::hold(Qt::Key_Escape);
        ASSERT_TRUE(seen("viewAlternativeKit"));
        EXPECT_EQ(focusName(), u"viewAlternativeKit");
        enter(Qt::Key_Enter);
        ASSERT_TRUE(seen("viewCountryBack"));
        enter(Qt::Key_Return);
        ASSERT_TRUE(seen("tblCountries"));
        EXPECT_EQ(focusName(), u"tblCountries");
        (void)row("tblCountries", 1, 0);
        hands::key(Qt::Key_N);
        enter(Qt::Key_Return);
        ASSERT_TRUE(seen("viewCountryBack"));
        EXPECT_EQ(focusName(), u"viewCountryBack");
        tabTo("txtPhoneNumber");
        hands::keys(u"41234567"_s);
        enter(Qt::Key_Return);
    } else {
        touch("viewAlternativeKit");
        ASSERT_TRUE(seen("viewCountryBack"));
        touch("viewCountryBack");
        (void)row("tblCountries", 1, 0);
        ASSERT_TRUE(rests());
        finger.tap(row("tblCountries", 1, 0));
        ASSERT_TRUE(seen("txtPhoneNumber"));
        touch("txtPhoneNumber");
        hands::commit(u"41234567"_s);
        touch("btnContinue");
    }
    ASSERT_TRUE(seen("btnCheck"));
    (void)focusName();
    ASSERT_SOON(visible("txtCode0")->hasFocus());
    for (const QString &digit : { u"4"_s, u"7"_s, u"1"_s })
        byKeys ? hands::keys(digit) : hands::commit(digit);
    EXPECT_EQ(focusName(), u"btnCheck");
    EXPECT_EQ(visible("focusRing"), nullptr) << "it came by itself";
    byKeys ? hands::hold(Qt::Key_Return) : touch("btnCheck");
    ASSERT_TRUE(waitForOutcomes(2));
    EXPECT_EQ(delegate->outcomes(), QStringList({ u"succeeded S-1"_s, u"succeeded S-2"_s }));
    ASSERT_TRUE(settle(6));
    EXPECT_EQ(server.requests().size(), 6U) << "each call went out once";

    for (const char *before : { "btnContinue", "viewAlternativeKit" }) {
        (void)focusName();
        byKeys ? hands::key(Qt::Key_Left, Qt::AltModifier) : touch("btnBack");
        ASSERT_TRUE(seen(before)) << before;
    }
    (void)focusName();
}

INSTANTIATE_TEST_SUITE_P(Hosts, Walk, everyHost, byHost);

TEST(Container, IsAsLargeAsItWouldLikeToBe)
{
    const std::unique_ptr<ParloquinViewController> container(Parloquin().viewControllerForLogin());
    EXPECT_NE(container->focusProxy(), nullptr);
    EXPECT_EQ(container->size(), container->sizeHint());
}

} // namespace
