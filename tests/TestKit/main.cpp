// Of programs that know the kit as its hosts do; by default without a display.
#include <QtWidgets/QApplication>

#include <gtest/gtest.h>

int main(int argc, char **argv)
{
    testing::InitGoogleTest(&argc, argv);
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    if (!qEnvironmentVariableIsSet("LC_ALL"))
        qputenv("LC_ALL", "C.UTF-8");
    const QApplication app(argc, argv);
    return RUN_ALL_TESTS();
}
