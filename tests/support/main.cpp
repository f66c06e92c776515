// Tests of what lies below the screens run without Qt's widgets.
#ifdef TEST_OF_SCREENS
#include <QtWidgets/QApplication>
using Application = QApplication;
#else
#include <QtGui/QGuiApplication>
using Application = QGuiApplication;
#endif

#include <gtest/gtest.h>
#include <unistd.h>

#include <csignal>
#include <string_view>

namespace {
/// An ASSERT that failed in a helper ends the whole case: what follows would only crash, and hide
/// what went wrong.
class EndsTheCase : public testing::EmptyTestEventListener {
    void OnTestPartResult(const testing::TestPartResult &result) override
    {
        if (result.fatally_failed())
            throw testing::AssertionException(result);
    }
    /// What cases set for the process, so that they may run in one, in any order.
    void OnTestEnd(const testing::TestInfo &) override
    {
        Application::setLayoutDirection(Qt::LeftToRight);
    }
};
}

int main(int argc, char **argv)
{
    testing::InitGoogleTest(&argc, argv);
    testing::GTEST_FLAG(death_test_style) = "threadsafe";
    // Behind the one that prints what failed.
    testing::UnitTest::GetInstance()->listeners().Append(std::make_unique<EndsTheCase>().release());
    // By default no display and no language of the machine's; also when a case is run by hand.
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    if (!qEnvironmentVariableIsSet("LC_ALL"))
        qputenv("LC_ALL", "C.UTF-8");
    const Application app(argc, argv);
    const int outcome = RUN_ALL_TESTS();
    // A thread of the kit that does not end would be waited for without a word.
    std::signal(SIGALRM, [](int) {
        constexpr std::string_view words = "Failure: the program does not end\n";
        _exit(::write(STDERR_FILENO, words.data(), words.size()) < 0 ? 2 : 1);
    });
    ::alarm(20); // s
    return outcome;
}
