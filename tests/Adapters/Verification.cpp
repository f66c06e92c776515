// The element in a Qt Quick app that has a QApplication, tapped as people tap.
#include <QtQml/QQmlComponent>
#include <QtQml/QQmlEngine>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>

#include <Parloquin/Parloquin.h>
#include <Parloquin/TestKit/Sandbox.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>

namespace {

TEST(Verification, IsOneKitHoweverOftenItIsOpened)
{
    const ParloquinTest::Sandbox sandbox;
    QQmlEngine engine;
    engine.addImportPath(QStringLiteral(IMPORT_PATH));
    QQmlComponent component(&engine);
    component.setData("import Parloquin\nVerification { property bool bound: active }", QUrl());
    std::unique_ptr<QObject> element(component.create());
    ASSERT_TRUE(element) << qPrintable(component.errorString());
    const QSignalSpy closed(element.get(), SIGNAL(closed()));
    const auto kitsAfter = [&element](const char *call) {
        QMetaObject::invokeMethod(element.get(), call);
        EXPECT_EQ(element->property("bound").toBool(), element->property("active").toBool());
        return std::ranges::count_if(QApplication::topLevelWidgets(),
            [](QWidget *window) { return qobject_cast<ParloquinViewController *>(window); });
    };
    for (const int round : { 1, 2 }) {
        EXPECT_EQ(kitsAfter("open"), 1);
        EXPECT_EQ(kitsAfter("open"), 1) << "tapped twice, in round " << round;
        EXPECT_TRUE(QTest::qWaitFor([&] { return kitsAfter("close") == 0; }));
        EXPECT_EQ(closed.count(), round);
    }
}

} // namespace
