// The shortest whole test of a sign-in: docs/test.md shows it, and it runs here as it stands there.
#include <QtTest/QTest>

#include <Parloquin/Parloquin.h>
#include <Parloquin/TestKit/Heard.h>
#include <Parloquin/TestKit/Person.h>
#include <Parloquin/TestKit/Sandbox.h>

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    ParloquinTest::Sandbox sandbox;
    ParloquinTest::switchMotionOff();
    const std::unique_ptr<ParloquinViewController> kit(Parloquin().viewControllerForLogin());
    const auto heard = std::make_shared<ParloquinTest::Heard>();
    kit->setKitDelegate(heard);
    kit->show();
    ParloquinTest::Person person(sandbox, kit.get());
    const bool isVerified = person.asksForCode(QStringLiteral("470123456"))
        && person.types(sandbox.lastCode()) && heard->success();
    return isVerified && sandbox.confirms(heard->sessionId()) ? 0 : 1;
}
