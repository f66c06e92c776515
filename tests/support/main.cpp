#include <QtWidgets/QApplication>

#include <gtest/gtest.h>

int main(int argc, char **argv)
{
    testing::InitGoogleTest(&argc, argv);
    testing::GTEST_FLAG(death_test_style) = "threadsafe";
    const QApplication app(argc, argv);
    return RUN_ALL_TESTS();
}
