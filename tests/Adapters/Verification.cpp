// The element in a Qt Quick app that has a QApplication, tapped as people tap.
#include <QtGui/QWindow>
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
    QWindow page;
    QWindow named;
    named.setTitle(QStringLiteral("named"));
    std::unique_ptr<QObject> element(component.create());
    ASSERT_TRUE(element) << qPrintable(component.errorString());
    const QSignalSpy closed(element.get(), SIGNAL(closed()));
    QWidget *kit = nullptr;
    const auto kitsAfter = [&element, &kit](const char *call) {
        QMetaObject::invokeMethod(element.get(), call);
        EXPECT_EQ(element->property("bound").toBool(), element->property("active").toBool());
        return std::ranges::count_if(QApplication::topLevelWidgets(), [&kit](QWidget *window) {
            return qobject_cast<ParloquinViewController *>(window) && (kit = window);
        });
    };
    element->setParent(&page);
    for (const int round : { 1, 2 }) {
        EXPECT_EQ(kitsAfter("open"), 1);
        ASSERT_TRUE(kit->windowHandle()->transientParent());
        const auto over = kit->windowHandle()->transientParent()->title().toStdString();
        EXPECT_EQ(over, round == 1 ? "" : "named");
        EXPECT_EQ(kit->windowModality(), Qt::WindowModal);
        EXPECT_EQ(kitsAfter("open"), 1) << "tapped twice, in round " << round;
        EXPECT_TRUE(QTest::qWaitFor([&] { return kitsAfter("close") == 0; }));
        EXPECT_EQ(closed.count(), round);
        EXPECT_TRUE(element->setProperty("window", QVariant::fromValue(&named)));
    }
}

} // namespace
