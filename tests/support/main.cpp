// Tests of what lies below the screens run without Qt's widgets.
#ifdef TEST_OF_SCREENS
#include <QtWidgets/QApplication>
using Application = QApplication;
#else
#include <QtGui/QGuiApplication>
using Application = QGuiApplication;
#endif

#include <gtest/gtest.h>

int main(int argc, char **argv)
{
    testing::InitGoogleTest(&argc, argv);
    testing::GTEST_FLAG(death_test_style) = "threadsafe";
    // By default no display and no language of the machine's; also when a case is run by hand.
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    if (!qEnvironmentVariableIsSet("LC_ALL"))
        qputenv("LC_ALL", "C.UTF-8");
    const Application app(argc, argv);
    return RUN_ALL_TESTS();
}
