// What a host sets, and where it takes effect.
#include "Parloquin/Manager/LogManager.h"
#include "Parloquin/Protocol/ParloquinSingleton.h"
#include "Screens/Container.h"
#include "support/Console.h"
#include "support/Widgets.h"

#include <QtWidgets/QApplication>

#include <cstdlib>
#include <memory>
#include <optional>

namespace {

using Style = ParloquinStatusBarStyle;

ParloquinOptions options(bool logActive, const QColor &bar, Style style)
{
    return { ParloquinEnvironment::prod, logActive, { bar, style } };
}

TEST(Options, OfTheLastKitHoldForTheProcess)
{
    const struct {
        QList<ParloquinOptions> given; ///< one kit after the other; none: the one without options
        std::optional<Style> shared;
        bool logActive;
        int style; ///< as a shell reads it
    } rows[] = {
        { {}, {}, true, 1 },
        { { options(false, Qt::red, Style::standard) }, Style::standard, false, 0 },
        { { options(false, Qt::red, Style::standard), options(true, Qt::red, Style::lightContent) },
            Style::lightContent, true, 1 },
    };
    for (const auto &row : rows) {
        for (const ParloquinOptions &given : row.given)
            Parloquin { given };
        const std::unique_ptr<ParloquinViewController> kit(Parloquin().viewControllerForLogin());
        const auto &shared = ParloquinSingleton::shared().options;
        EXPECT_EQ(shared ? std::optional(shared->theme.statusBarColor) : std::nullopt, row.shared);
        EXPECT_EQ(LogManager::shared().isActive, row.logActive);
        EXPECT_EQ(kit->property("preferredStatusBarStyle").toInt(), row.style);
        EXPECT_EQ(kit->size(), kit->sizeHint());
        EXPECT_EQ(printedBy([] {
            LogManager::shared().log(u"m"_s, false);
            LogManager::shared().log(u"e"_s, true);
        }),
            "\n\n[Parloquin]\nm\n[Parloquin]\n\n\n"
            "\n\n[Parloquin]\n\u26A0\uFE0F\ne\n[Parloquin]\n\n\n")
            << "whatever the flag says";
        // Nor does the theme say anything of the bar.
        const NavigationBar &bar = kit->findChild<NavigationController *>()->navigationBar();
        EXPECT_EQ(bar.barTintColor(), QColor(0, 0, 255));
    }
}

TEST(Log, CutsNoCharacterWhereAPieceEnds)
{
    const auto printed = printedBy([] { print(QString(16383, u'x') + u"🌀"_s); });
    EXPECT_EQ(printed.substr(16380), "xxx🌀\n");
}

TEST(Delegate, IsTheLastOneSetAnywhere)
{
    const auto make = [] {
        return std::unique_ptr<ParloquinViewController>(Parloquin().viewControllerForLogin());
    };
    const auto first = make();
    auto second = make();
    const auto a = std::make_shared<RecordingDelegate>();
    auto b = std::make_shared<RecordingDelegate>();
    EXPECT_EQ(first->kitDelegate(), nullptr);
    first->setKitDelegate(a);
    second->setKitDelegate(b);
    EXPECT_EQ(first->kitDelegate(), a);
    EXPECT_EQ(ParloquinSingleton::shared().delegate(), b);
    second.reset();
    const std::weak_ptr lastOne = b;
    b.reset();
    EXPECT_FALSE(lastOne.expired()) << "the process keeps the last one";
    first->setKitDelegate(nullptr);
    EXPECT_EQ(first->kitDelegate(), nullptr);
    EXPECT_TRUE(lastOne.expired());

    const auto endTheApplication = [&make] {
        auto last = std::make_shared<RecordingDelegate>();
        const std::weak_ptr watched = last;
        make()->setKitDelegate(std::move(last));
        std::destroy_at(qobject_cast<QApplication *>(QCoreApplication::instance()));
        std::_Exit(watched.expired() ? 0 : 1);
    };
    EXPECT_EXIT(endTheApplication(), testing::ExitedWithCode(0), "") << "a delegate is left";
}

TEST(Kit, OpensInASecondApplicationObject)
{
    const auto openTwice = [] {
        char name[] = "host";
        char *arguments[] = { name, nullptr };
        int count = 1;
        for (const bool isFirst : { true, false }) {
            const std::unique_ptr<QApplication> again(
                isFirst ? nullptr : new QApplication(count, arguments));
            std::unique_ptr<QWidget> kit(Parloquin().viewControllerForLogin());
            EXPECT_TRUE(comesToFront(*kit));
            hands::hold(Qt::Key_Tab);
            kit.reset();
            if (isFirst)
                std::destroy_at(qobject_cast<QApplication *>(QCoreApplication::instance()));
        }
        std::_Exit(testing::Test::HasFailure() ? 1 : 0);
    };
    EXPECT_EXIT(openTwice(), testing::ExitedWithCode(0), "");
}

} // namespace
