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
    ParloquinTest::Sandbox sandbox;
    sandbox.goesOffline();
    QQmlEngine engine;
    engine.addImportPath(QStringLiteral(IMPORT_PATH));
    QQmlComponent component(&engine);
    component.setData(
        "import Parloquin\nVerification { property bool bound: active; property string "
        "said; onFailed: error => said += error === Verification.ServerError }",
        QUrl());
    QWindow page;
    QWindow named;
    named.setTitle(QStringLiteral("named"));
    std::unique_ptr<QObject> element(component.create());
    ASSERT_TRUE(element) << qPrintable(component.errorString());
    const QSignalSpy closed(element.get(), SIGNAL(closed()));
    QWidget *kit = nullptr;
    QString said = QStringLiteral("true");
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
        const QPoint middle = kit->windowHandle()->transientParent()->geometry().center();
        EXPECT_LT((kit->geometry().center() - middle).manhattanLength(), 50) << "but for a frame";
        EXPECT_TRUE(QTest::qWaitFor([&] { return element->property("said") == said; }))
            << qPrintable(element->property("said").toString());
        said += said;
        QWidget other;
        other.show();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&other));
        EXPECT_EQ(kitsAfter("open"), 1) << "tapped twice, in round " << round;
        EXPECT_TRUE(QTest::qWaitFor([&] { return kit->isActiveWindow(); })) << "in front again";
        EXPECT_TRUE(QTest::qWaitFor([&] { return kitsAfter("close") == 0; }));
        EXPECT_EQ(closed.count(), round);
        EXPECT_TRUE(element->setProperty("window", QVariant::fromValue(&named)));
    }
    EXPECT_EQ(kitsAfter("open"), 1);
    const QPointer last(kit);
    element.reset();
    EXPECT_TRUE(last.isNull()) << "it stays when its element goes";
}

} // namespace
