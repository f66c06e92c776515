// What lies below the screens is whole without Qt's widgets: this program holds all its objects.
#include <QtCore/QFile>

#include <gtest/gtest.h>

TEST(Wall, NothingBelowTheScreensBringsWidgets)
{
    QFile loaded(QStringLiteral("/proc/self/maps"));
    ASSERT_TRUE(loaded.open(QIODevice::ReadOnly));
    const QByteArray libraries = loaded.readAll();
    EXPECT_TRUE(libraries.contains("libQt6Core"));
    EXPECT_FALSE(libraries.contains("libQt6Widgets"));
}
