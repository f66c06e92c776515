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
        const auto kit = [&app] { return app.findChild<ParloquinViewController *>(); };
        const auto open = [&] {
            QTest::mouseClick(app.findChild<QPushButton *>(place), Qt::LeftButton);
            return kit();
        };
        QVERIFY(ParloquinTest::Person(sandbox, open()).closes());
        QTRY_VERIFY(!kit()); // nor is anything left where it was
        ParloquinTest::Person person(sandbox, open());
        QVERIFY(person.asksForCode("470123456"));
        QVERIFY(person.types(sandbox.lastCode()));
        const auto *state = app.findChild<QLabel *>("state");
        QTRY_VERIFY(state->text().startsWith("Verified"));
        QVERIFY(sandbox.confirms(state->text().section(' ', -1)));
        QTRY_VERIFY(!kit());
    }
};

QTEST_MAIN(SignInTest)
#include "SignInTest.moc"
