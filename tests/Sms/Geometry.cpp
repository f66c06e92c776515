#include "Parloquin/Controller/CountryListViewController.h"
#include "Parloquin/Toolkit/Label.h"
#include "Parloquin/Toolkit/TableView.h"
#include "Sms/SmsRoad.h"

#include <QtWidgets/QApplication>
#include <QtWidgets/QLineEdit>

using namespace parloquin;
using namespace Qt::StringLiterals;

namespace {

class SmsGeometry : public SmsRoad, public testing::WithParamInterface<Qt::LayoutDirection> {
protected:
    void SetUp() override
    {
        QApplication::setLayoutDirection(GetParam());
        SmsRoad::SetUp();
    }
    /// In the container; mirrored where the text runs the other way.
    void expectFrame(const char *name, QRect rect) const
    {
        if (GetParam() == Qt::RightToLeft)
            rect.moveLeft(container->width() - rect.x() - rect.width());
        EXPECT_EQ(frame(name), rect) << name;
    }
};

TEST_P(SmsGeometry, PhoneEntry)
{
    expectFrame("viewCountryBack", { 20, 122, 350, 60 });
    expectFrame("txtCountryName", { 35, 132, 303, 40 });
    expectFrame("iconArrowDown", { 348, 146, 17, 12 });
    expectFrame("viewPhoneBack", { 20, 202, 350, 60 });
    expectFrame("txtCountryCode", { 35, 212, 90, 40 });
    expectFrame("txtPhoneNumber", { 125, 212, 235, 40 });
    expectFrame("btnContinue", { 20, 292, 350, 55 });
    EXPECT_EQ(text("btnBack"), u"Back"_s);
    EXPECT_EQ(top<Screen>()->navigationItem().title(), u"SMS"_s);
    EXPECT_EQ(text("btnContinue"), u"Send SMS"_s);
    const char *placeholders[][2] = { { "txtCountryName", "Select Country.." },
        { "txtCountryCode", "+(Code)" }, { "txtPhoneNumber", "Phone Number.." } };
    for (const auto &[name, placeholder] : placeholders)
        EXPECT_EQ(part<QLineEdit>(name)->placeholderText(), QLatin1String(placeholder));
}

TEST_P(SmsGeometry, CodeEntry)
{
    goToCodeEntry();
    expectFrame("lblDescription", { 15, 122, 360, 0 }); // empty
    expectFrame("viewFieldsBack", { 20, 142, 350, 75 });
    expectFrame("btnCheck", { 20, 242, 350, 55 });
    expectFrame("btnTryAgain", { 15, 332, 360, 44 });
    // The middle of 75 lies on a half: either side will do.
    const char *boxes[] = { "txtCode0", "txtCode1", "txtCode2" };
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(part(boxes[i])->accessibleName(), u"Code, digit %1 of 3"_s.arg(i + 1));
        const int y = frame(boxes[i]).y();
        EXPECT_TRUE(y == 152 || y == 153) << y;
        expectFrame(boxes[i], { 99 + 69 * i, y, 54, 54 });
    }
    EXPECT_EQ(text("lblDescription"), QString());
    EXPECT_EQ(text("btnCheck"), u"Send Code"_s);
    EXPECT_EQ(text("btnTryAgain"), u"Didn't you receive the code? Tap here to try again"_s);
}

// What is left of a phone of 390 x 844 at twice the scale.
TEST_P(SmsGeometry, CodeBoxesStandWholeOnANarrowScreen)
{
    goToCodeEntry();
    container->resize(195, 422);
    ASSERT_TRUE(rests());
    const QRect around = frame("viewFieldsBack");
    EXPECT_EQ(around, QRect(20, 142, 155, 75));
    int end = around.x();
    const bool turned = GetParam() == Qt::RightToLeft;
    for (const char *name :
        { turned ? "txtCode2" : "txtCode0", "txtCode1", turned ? "txtCode0" : "txtCode2" }) {
        const QRect box = frame(name);
        EXPECT_EQ(box.size(), frame("txtCode0").size()) << name;
        EXPECT_GE(box.x() - end, 8) << name << " has no room for its ring";
        end = box.x() + box.width();
    }
    EXPECT_GE(around.x() + around.width() - end, 8);
    EXPECT_GE(frame("txtCode0").width(), 36);
}

TEST_P(SmsGeometry, CountryPicker)
{
    on("country", ok(R"({"list":[{"title":"Chad","countryCode":"TD","phoneCode":"+235"}]})"));
    auto *const phone = top<Screen>();
    openPicker();
    ASSERT_TRUE(QTest::qWaitFor(
        [&] { return !part<TableView>("tblCountries")->visibleCells().isEmpty(); }));
    EXPECT_EQ(frame("tblCountries"), QRect(0, 92, 390, 752));
    EXPECT_EQ(top<Screen>()->navigationItem().title(), u"Country List"_s);
    // The first row, under its header of 28 and beside the strip of letters of 24.
    expectFrame("CountryTableCell", { 0, 120, 366, 44 });
    expectFrame("lblTitle", { 15, 127, 249, 30 });
    expectFrame("iconTick", { 271, 132, 20, 20 });
    expectFrame("lblPhoneCode", { 298, 127, 53, 30 });
    EXPECT_EQ(phone->navigationItem().leftBarButtonItem(), nullptr) << "gone from the bar";
    container->hide();
    EXPECT_NE(top<Screen>()->navigationItem().leftBarButtonItem(), nullptr) << "this one's stays";
    container->show();
    EXPECT_EQ(text("btnClose"), u"Back"_s);
}

INSTANTIATE_TEST_SUITE_P(Directions, SmsGeometry, testing::Values(Qt::LeftToRight, Qt::RightToLeft),
    [](const auto &row) { return row.param == Qt::LeftToRight ? "LeftToRight" : "RightToLeft"; });

} // namespace
