#include "Screens/Container.h"
#include "support/Widgets.h"

namespace {

using AppList = ContainerTest;

TEST_F(AppList, TellsAutomationWhenItIsAtRest)
{
    QApplication::setStyle(new ParloquinTest::PacedStyle(200));
    QByteArray list;
    for (int row = 0; row < 50; ++row)
        list += R"({"text":"Row"},)";
    answer("/v1.0/init",
        R"({"result":{"alternativeValidation":"otp","list":[)" + list.chopped(1) + "]}}");
    present();
    EXPECT_TRUE(waitForOverlay(true));
    EXPECT_FALSE(isAtRest());
    ASSERT_TRUE(settle(1));
    EXPECT_TRUE(isAtRest());

    hands::Finger finger;
    finger.down(container.get(), { 200, 600 });
    finger.drag({ 0, -300 });
    finger.up();
    EXPECT_FALSE(isAtRest()) << "it rolls on by itself";
    EXPECT_TRUE(rests());

    tap("viewAlternativeKit");
    EXPECT_FALSE(isAtRest());
    EXPECT_TRUE(rests());
    EXPECT_FALSE(find("tblKits")->isVisible()) << "the slide is over";
}

} // namespace
