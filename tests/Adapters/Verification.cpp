// The element in a Qt Quick app that has a QApplication, tapped as people tap.
#include <QtQml/QQmlComponent>
#include <QtQml/QQmlEngine>
#include <QtQuick/QQuickItem>
#include <QtQuick/QQuickWindow>
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
        "import Parloquin\nVerification { property bool bound: active; property var over: window; "
        "property string said; "
        "property var all: [Verification.AuthorizationError, Verification.ServerError, "
        "Verification.UrlSchemeError]; onSucceeded: id => said += id; onFailed: error => "
        "said += all.indexOf(error) }",
        QUrl());
    QQuickWindow page;
    page.setTitle(QStringLiteral("page"));
    QWindow named;
    named.setTitle(QStringLiteral("named"));
    std::unique_ptr<QObject> element(component.create());
    ASSERT_TRUE(element) << qPrintable(component.errorString());
    const QSignalSpy closed(element.get(), SIGNAL(closed()));
    QWidget *kit = nullptr;
    const auto says = [&element](const QString &text) {
        EXPECT_TRUE(QTest::qWaitFor([&] { return element->property("said") == text; }))
            << qPrintable(element->property("said").toString());
        element->setProperty("said", QString());
    };
    const auto kitsAfter = [&element, &kit](const char *call) {
        QMetaObject::invokeMethod(element.get(), call);
        EXPECT_EQ(element->property("bound").toBool(), element->property("active").toBool());
        return std::ranges::count_if(QApplication::topLevelWidgets(), [&kit](QWidget *window) {
            return qobject_cast<ParloquinViewController *>(window) && (kit = window);
        });
    };
    for (const int round : { 1, 2, 3 }) {
        element->setParent(round == 1 ? static_cast<QObject *>(page.contentItem()) : &page);
        EXPECT_EQ(kitsAfter("open"), 1);
        ASSERT_TRUE(kit->windowHandle()->transientParent());
        const auto over = kit->windowHandle()->transientParent()->title().toStdString();
        EXPECT_EQ(over, round == 3 ? "named" : "page");
        EXPECT_EQ(kit->windowModality(), Qt::WindowModal);
        const QPoint middle = kit->windowHandle()->transientParent()->geometry().center();
        EXPECT_LT((kit->geometry().center() - middle).manhattanLength(), 50) << "but for a frame";
        says(QStringLiteral("1"));
        const auto outcome = qobject_cast<ParloquinViewController *>(kit)->kitDelegate();
        outcome->verificationDidFail(ParloquinError::authorizationError);
        outcome->verificationDidFail(ParloquinError::urlSchemeError);
        outcome->verificationDidSucceed(QStringLiteral("id"));
        says(QStringLiteral("02id"));
        QWidget other;
        other.show();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&other));
        EXPECT_EQ(kitsAfter("open"), 1) << "tapped twice, in round " << round;
        EXPECT_TRUE(QTest::qWaitFor([&] { return kit->isActiveWindow(); })) << "in front again";
        EXPECT_TRUE(QTest::qWaitFor([&] { return kitsAfter("close") == 0; }));
        EXPECT_EQ(closed.count(), round);
        if (round == 2)
            element->setProperty("window", QVariant::fromValue(&named));
        EXPECT_EQ(element->property("over").isNull(), round < 2) << "a binding is told of it";
    }
    for (const char *call : { "open", "close", "open" }) // at once, as after a failure
        kitsAfter(call);
    EXPECT_EQ(closed.count(), 4);
    EXPECT_TRUE(QTest::qWaitFor([&] { return kitsAfter("open") == 1; }));
    const QPointer last(kit);
    element.reset();
    EXPECT_TRUE(last.isNull()) << "it stays when its element goes";
}

} // namespace
