#include "MainWindow.h"

#include <QtTest/QTest>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>

#include <Parloquin/Parloquin.h>
#include <Parloquin/TestKit/Person.h>
#include <Parloquin/TestKit/Sandbox.h>

class SignInTest : public QObject {
    Q_OBJECT
    ParloquinTest::Sandbox sandbox;
private Q_SLOTS:
    void verifies_data()
    {
        QTest::addColumn<QString>("place");
        for (const char *place : { "dialog", "page", "tab" })
            QTest::newRow(place) << QString(place);
    }
    void verifies()
    {
        ParloquinTest::switchMotionOff();
        QFETCH(QString, place);
        MainWindow app;
        app.show();
        QTest::mouseClick(app.findChild<QPushButton *>(place), Qt::LeftButton);
        ParloquinTest::Person person(sandbox, app.findChild<ParloquinViewController *>());
        QVERIFY(person.asksForCode("470123456"));
        QVERIFY(person.types(sandbox.lastCode()));
        const auto *state = app.findChild<QLabel *>("state");
        QTRY_VERIFY(state->text().startsWith("Verified"));
        QVERIFY(sandbox.confirms(state->text().section(' ', -1)));
        QTRY_VERIFY(!app.findChild<ParloquinViewController *>()); // and is gone from there
    }
};

QTEST_MAIN(SignInTest)
#include "SignInTest.moc"
