#include <QtQml/QQmlApplicationEngine>
#include <QtQuick/QQuickItem>
#include <QtQuick/QQuickWindow>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>

#include <Parloquin/Parloquin.h>
#include <Parloquin/TestKit/Person.h>
#include <Parloquin/TestKit/Sandbox.h>

class SignInTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void verifies()
    {
        ParloquinTest::Sandbox sandbox;
        ParloquinTest::switchMotionOff();
        QQmlApplicationEngine engine;
        engine.addImportPath(PARLOQUIN_QML_PATH);
        engine.load(QUrl("qrc:/Main.qml"));
        QVERIFY(!engine.rootObjects().isEmpty());
        auto *const window = qobject_cast<QQuickWindow *>(engine.rootObjects().constFirst());
        QVERIFY(QTest::qWaitForWindowExposed(window));
        const auto *const button = window->findChild<QQuickItem *>("verify");
        QTest::mouseClick(window, Qt::LeftButton, {},
            button->mapToScene(button->boundingRect().center()).toPoint());
        QWidget *const kit = QApplication::topLevelWidgets().value(0);
        QVERIFY(qobject_cast<ParloquinViewController *>(kit));
        QCOMPARE(kit->windowHandle()->transientParent(), window);
        QCOMPARE(button->opacity(), 0.5); // while the kit is open

        ParloquinTest::Person person(sandbox, kit);
        QVERIFY(person.asksForCode("470123456"));
        QVERIFY(person.types(sandbox.lastCode()));
        QTRY_VERIFY(window->property("state").toString().startsWith("Verified"));
        QVERIFY(sandbox.confirms(window->property("state").toString().section(' ', -1)));
        QTRY_VERIFY(QApplication::topLevelWidgets().isEmpty());
        QTRY_COMPARE(button->opacity(), 1);
    }
};

QTEST_MAIN(SignInTest)
#include "SignInTest.moc"
