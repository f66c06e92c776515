// What a host sets, and where it takes effect.
#include "Parloquin/Manager/LogManager.h"
#include "Parloquin/Protocol/ParloquinSingleton.h"
#include "Parloquin/Toolkit/NavigationBar.h"
#include "Parloquin/Toolkit/NavigationController.h"
#include "Screens/Container.h"

#include <optional>

using namespace parloquin;

namespace {

using Style = ParloquinStatusBarStyle;

ParloquinOptions options(bool logActive, const QColor &bar, Style style)
{
    return { ParloquinEnvironment::prod, logActive, { bar, style } };
}

struct OptionsRow {
    const char *name;
    QList<ParloquinOptions> given; ///< one kit after the other; none: the one without options
    std::optional<Style> shared;
    bool logActive;
    Style style;
};
void PrintTo(const OptionsRow &row, std::ostream *out) { *out << row.name; }

class Options : public testing::TestWithParam<OptionsRow> { };

TEST_P(Options, OfTheLastKitHoldForTheProcess)
{
    for (const ParloquinOptions &given : GetParam().given)
        Parloquin { given };
    const std::unique_ptr<ParloquinViewController> container(Parloquin().viewControllerForLogin());
    const auto &shared = ParloquinSingleton::shared().options;
    EXPECT_EQ(
        shared ? std::optional(shared->theme.statusBarColor) : std::nullopt, GetParam().shared);
    EXPECT_EQ(LogManager::shared().isActive, GetParam().logActive);
    EXPECT_EQ(
        container->property("preferredStatusBarStyle").toInt(), static_cast<int>(GetParam().style));

    // The bar is blue with white titles, whatever the theme says.
    const NavigationBar &bar = container->findChild<NavigationController *>()->navigationBar();
    EXPECT_EQ(bar.barTintColor(), QColor(0, 0, 255));
    EXPECT_EQ(bar.titleColor(), QColor(255, 255, 255));
}

const OptionsRow optionsRows[] = {
    { "None", {}, {}, true, Style::lightContent },
    { "Dark", { options(false, Qt::red, Style::standard) }, Style::standard, false,
        Style::standard },
    { "LastWins",
        { options(false, Qt::red, Style::standard), options(true, Qt::red, Style::lightContent) },
        Style::lightContent, true, Style::lightContent },
};
INSTANTIATE_TEST_SUITE_P(Rows, Options, testing::ValuesIn(optionsRows),
    [](const auto &row) { return std::string(row.param.name); });

TEST(Delegate, IsTheLastOneSetAnywhere)
{
    const auto make = [] {
        return std::unique_ptr<ParloquinViewController>(Parloquin().viewControllerForLogin());
    };
    const auto first = make();
    auto second = make();
    const auto a = std::make_shared<RecordingDelegate>();
    const auto b = std::make_shared<RecordingDelegate>();
    EXPECT_EQ(first->kitDelegate(), nullptr);
    first->setKitDelegate(a);
    second->setKitDelegate(b);
    EXPECT_EQ(first->kitDelegate(), a);
    EXPECT_EQ(ParloquinSingleton::shared().delegate(), b);
    second.reset();
    EXPECT_EQ(ParloquinSingleton::shared().delegate(), b); // outlives its container
    first->setKitDelegate(nullptr);
    EXPECT_EQ(first->kitDelegate(), nullptr);
    EXPECT_EQ(ParloquinSingleton::shared().delegate(), nullptr);
}

TEST(Log, PrintsWhateverTheFlagSays)
{
    const Parloquin quiet(options(false, Qt::blue, Style::standard));
    testing::internal::CaptureStdout();
    LogManager::shared().log(QStringLiteral("m"), false);
    LogManager::shared().log(QStringLiteral("e"), true);
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
        "\n\n[Parloquin]\nm\n[Parloquin]\n\n\n"
        "\n\n[Parloquin]\n\u26A0\uFE0F\ne\n[Parloquin]\n\n\n");
}

} // namespace
