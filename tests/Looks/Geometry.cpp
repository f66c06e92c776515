// Where everything stands on a phone of 390 x 844, in both directions.
#include "Looks/Walk.h"

#include <map>

namespace {

class Geometry : public Walk, public testing::WithParamInterface<Qt::LayoutDirection> { };

struct Framed {
    const char *name;
    QRectF frame; ///< in the container, from left to right
};
const std::map<std::string, std::vector<Framed>> frames = {
    { "app list",
        {
            { "lblDescription", { 25, 122, 340, 20 } },
            { "tblKits", { 0, 172, 390, 567 } },
            { "ThirdPartyKitTableCell", { 0, 172, 390, 80 } },
            { "viewBack", { 20, 182, 350, 60 } },
            { "imgKitIcon", { 40, 199.5, 25, 25 } },
            { "lblKitName", { 85, 192, 265, 40 } },
            { "viewAlternativeKit", { 0, 739, 390, 105 } },
            { "lineAlternateViewTop", { 0, 739, 390, 0.5 } },
            { "lblAlternateKitTitle", { 25, 754, 340, 20 } },
            { "iconSms", { 25, 789, 30, 30 } },
            { "lblAlternateKitDesc", { 65, 789, 285, 30 } },
            { "iconArrowRight", { 360, 796.5, 10, 15 } },
        } },
    { "phone entry",
        {
            { "viewCountryBack", { 20, 122, 350, 60 } },
            { "txtCountryName", { 35, 132, 303, 40 } },
            { "iconArrowDown", { 348, 146, 17, 12 } },
            { "viewPhoneBack", { 20, 202, 350, 60 } },
            { "txtCountryCode", { 35, 212, 90, 40 } },
            { "txtPhoneNumber", { 125, 212, 235, 40 } },
            { "btnContinue", { 20, 292, 350, 55 } },
        } },
    // The first row, under its header of 28 and beside the strip of letters of 24.
    { "country picker",
        {
            { "tblCountries", { 0, 92, 390, 752 } },
            { "CountryTableCell", { 0, 120, 366, 44 } },
            { "lblTitle", { 15, 127, 249, 30 } },
            { "iconTick", { 271, 132, 20, 20 } },
            { "lblPhoneCode", { 298, 127, 53, 30 } },
        } },
    { "code entry",
        {
            { "lblDescription", { 15, 122, 360, 0 } }, // empty
            { "viewFieldsBack", { 20, 142, 350, 75 } },
            { "txtCode0", { 99, 152.5, 54, 54 } },
            { "txtCode1", { 168, 152.5, 54, 54 } },
            { "txtCode2", { 237, 152.5, 54, 54 } },
            { "btnCheck", { 20, 242, 350, 55 } },
            { "btnTryAgain", { 15, 332, 360, 44 } },
        } },
};

TEST_P(Geometry, IsExact)
{
    QApplication::setLayoutDirection(GetParam());
    const std::map<std::string, QString> placeholders { { "txtCountryName", u"Select Country.."_s },
        { "txtCountryCode", u"+(Code)"_s }, { "txtPhoneNumber", u"Phone Number.."_s } };
    take([&](const std::string &stop) {
        EXPECT_EQ(container->findChildren<BarButtonItem *>().size(), 1) << stop;
        const auto there = frames.find(stop);
        if (there == frames.end())
            return;
        // Of the rows' parts the first one's.
        const QWidget *const table = visible("tblKits") ? find("tblKits") : visible("tblCountries");
        const QWidget *const first = table ? row(qPrintable(table->objectName()), 0, 0) : nullptr;
        for (auto [name, expected] : there->second) {
            SCOPED_TRACE(stop + ": " + name);
            const QLatin1String called(name);
            const QWidget *widget = first ? first->findChild<QWidget *>(called) : nullptr;
            if (!widget)
                widget = first && first->objectName() == called ? first : visible(name);
            ASSERT_NE(widget, nullptr);
            if (GetParam() == Qt::RightToLeft)
                expected.moveLeft(container->width() - expected.right());
            const QRectF actual = frame(widget);
            // Halves may round either way.
            EXPECT_NEAR(actual.x(), expected.x(), 0.5);
            EXPECT_NEAR(actual.y(), expected.y(), 0.5);
            EXPECT_NEAR(actual.width(), expected.width(), 0.5);
            EXPECT_NEAR(actual.height(), expected.height(), 0.5);
            if (placeholders.contains(name)) {
                EXPECT_EQ(widget->property("placeholderText").toString(), placeholders.at(name));
            }
        }
    });
}

// What is left of a phone of 390 x 844 at twice the scale.
TEST_P(Geometry, CodeBoxesStandWholeOnANarrowScreen)
{
    QApplication::setLayoutDirection(GetParam());
    size = { 195, 422 };
    take([&](const std::string &stop) {
        if (stop != "code entry")
            return;
        const QRect around = frame(visible("viewFieldsBack"));
        EXPECT_EQ(around, QRect(20, 142, 155, 75));
        std::vector<QRect> boxes;
        for (const char *name : { "txtCode0", "txtCode1", "txtCode2" })
            boxes.push_back(frame(visible(name)));
        if (GetParam() == Qt::RightToLeft)
            std::ranges::reverse(boxes);
        int end = around.x();
        for (const QRect &box : boxes) {
            EXPECT_EQ(box.size(), boxes[0].size());
            EXPECT_GE(box.width(), 36);
            EXPECT_GE(box.x() - end, 8) << "no room for the ring of the one at " << box.x();
            end = box.x() + box.width();
        }
        EXPECT_GE(around.x() + around.width() - end, 8);
    });
}

INSTANTIATE_TEST_SUITE_P(Directions, Geometry, testing::Values(Qt::LeftToRight, Qt::RightToLeft),
    [](const auto &row) { return row.param == Qt::LeftToRight ? "LeftToRight" : "RightToLeft"; });

} // namespace
