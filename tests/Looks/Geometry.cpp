// Where on a phone of 390 x 844, in both directions, what no picture shows begins and ends: what is
// tapped, and the room that texts have before they are cut.
#include "Looks/Walk.h"

namespace {

class Geometry : public Walk, public testing::WithParamInterface<Qt::LayoutDirection> { };

struct Framed {
    const char *stop;
    const char *name; ///< of the uppermost there
    QRect frame; ///< in the container, from left to right
};
const Framed frames[] = {
    { "app list", "lblDescription", { 25, 122, 340, 20 } },
    { "app list", "tblKits", { 0, 172, 390, 567 } },
    { "app list", "lblKitName", { 85, 192, 265, 40 } },
    { "app list", "lblAlternateKitDesc", { 65, 789, 285, 30 } },
    { "phone entry", "txtCountryName", { 35, 132, 303, 40 } },
    { "phone entry", "txtCountryCode", { 35, 212, 90, 40 } },
    { "phone entry", "txtPhoneNumber", { 125, 212, 235, 40 } },
    { "country picker", "CountryTableCell", { 0, 120, 366, 44 } }, // beside the letters
    { "country picker", "lblPhoneCode", { 298, 127, 53, 30 } },
    { "code entry", "btnTryAgain", { 15, 332, 360, 44 } },
};

TEST_P(Geometry, OfWhatIsTappedOrCutIsExact)
{
    QApplication::setLayoutDirection(GetParam());
    take([&](const std::string &stop) {
        EXPECT_EQ(container->findChildren<BarButtonItem *>().size(), 1) << stop;
        for (auto [at, name, expected] : frames) {
            if (stop != at)
                continue;
            if (GetParam() == Qt::RightToLeft)
                expected.moveLeft(container->width() - expected.x() - expected.width());
            QRect upper(0, 844, 0, 0);
            for (const auto *each : container->findChildren<QWidget *>(QLatin1String(name)))
                upper = each->isVisible() && frame(each).y() < upper.y() ? frame(each) : upper;
            EXPECT_EQ(upper, expected) << stop << ": " << name;
        }
    });
}

INSTANTIATE_TEST_SUITE_P(Directions, Geometry, testing::Values(Qt::LeftToRight, Qt::RightToLeft),
    [](const auto &row) { return row.param == Qt::LeftToRight ? "LeftToRight" : "RightToLeft"; });

} // namespace
