// The kit for hosts' tests, as such a host uses it: the real library, sandbox and screens.
#include <QtTest/QTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QVBoxLayout>

#include <Parloquin/Parloquin.h>
#include <Parloquin/TestKit/Heard.h>
#include <Parloquin/TestKit/Person.h>
#include <Parloquin/TestKit/Sandbox.h>
#include <gtest/gtest.h>

using namespace ParloquinTest;
using namespace std::chrono_literals;

namespace {

class SignIn : public testing::Test {
protected:
    SignIn()
    {
        switchMotionOff();
        container.reset(Parloquin().viewControllerForLogin());
        container->setKitDelegate(heard);
    }

    bool asksForCode() { return person().asksForCode(QStringLiteral("470123456")); }
    Person &person()
    {
        if (!m_person) {
            container->show();
            m_person.emplace(sandbox, container.get());
        }
        return *m_person;
    }
    /// What a step says where it fails.
    template <class Step> std::string complaintOf(const Step &step)
    {
        testing::internal::CaptureStderr();
        const bool isDone = step();
        const std::string said = testing::internal::GetCapturedStderr();
        return isDone ? "it was done" : said;
    }

    Sandbox sandbox;
    std::unique_ptr<ParloquinViewController> container;
    std::shared_ptr<Heard> heard = std::make_shared<Heard>();

private:
    std::optional<Person> m_person;
};

bool holds(const std::string &text, const char *part)
{
    return text.find(part) != std::string::npos;
}

TEST_F(SignIn, ByMessage)
{
    ASSERT_TRUE(person().sendsFrom(QStringLiteral("Kite")));
    ASSERT_TRUE(heard->success());
    EXPECT_TRUE(sandbox.confirms(heard->sessionId()));
    EXPECT_EQ(sandbox.sessions().at(0)[QStringLiteral("app")], QStringLiteral("kite"));
    EXPECT_FALSE(sandbox.confirms(QStringLiteral("another")));
}

TEST_F(SignIn, ByCodeInAWindowOfTheApp)
{
    QWidget window;
    QVBoxLayout layout(&window);
    layout.addWidget(container.get());
    const auto outlived = qScopeGuard([this] { container->setParent(nullptr); });
    window.show();
    ASSERT_TRUE(asksForCode());
    ASSERT_TRUE(person().types(sandbox.lastCode()));
    EXPECT_TRUE(heard->success());
}

TEST_F(SignIn, FailsByAWrongCodeAndThenSucceeds)
{
    ASSERT_TRUE(asksForCode());
    QString wrong = sandbox.lastCode();
    wrong[0] = wrong[0] == QLatin1Char('1') ? QLatin1Char('2') : QLatin1Char('1');
    ASSERT_TRUE(person().types(wrong));
    EXPECT_TRUE(heard->failure(ParloquinError::authorizationError));
    ASSERT_TRUE(person().types(sandbox.lastCode()));
    EXPECT_TRUE(heard->success());
    ASSERT_TRUE(person().goesBack());
    ASSERT_TRUE(asksForCode());
    EXPECT_EQ(person().screen(), Person::Screen::code);
    EXPECT_EQ(heard->count(), 2);
}

TEST_F(SignIn, WithoutANetwork)
{
    ASSERT_TRUE(asksForCode());
    sandbox.goesOffline();
    const int before = sandbox.requests(QStringLiteral("check-otp"));
    person().setPatience(200ms);
    EXPECT_TRUE(holds(complaintOf([this] { return person().types(QStringLiteral("123")); }),
        "the code was not checked"));
    EXPECT_TRUE(heard->failure(ParloquinError::serverError));
    EXPECT_EQ(sandbox.requests(QStringLiteral("check-otp")), before);
}

TEST_F(SignIn, RefusedAndLate)
{
    sandbox.answers(QStringLiteral("send-otp"), QStringLiteral("limit"));
    const std::string said = complaintOf([this] { return asksForCode(); });
    EXPECT_TRUE(holds(said, "no screen for the code")) << said;
    EXPECT_TRUE(holds(said, "send-otp")) << said;

    sandbox.delays(QStringLiteral("send-otp"), 300ms);
    QElapsedTimer timer;
    timer.start();
    EXPECT_TRUE(asksForCode());
    EXPECT_GE(timer.elapsed(), 300);

    sandbox.reset();
    EXPECT_EQ(sandbox.lastCode(), QString());
}

TEST_F(SignIn, BeginsAnewAfterAReset)
{
    sandbox.hasApps({});
    sandbox.goesOffline();
    sandbox.reset();
    EXPECT_TRUE(person().sendsFrom(QStringLiteral("Kite")));
}

TEST(Sandbox, SteersTheKitNoLongerThanItLives)
{
    const char *const variables[] = { "PARLOQUIN_SERVICE_HOST", "PARLOQUIN_ROUTE",
        "PARLOQUIN_DESKTOP" };
    {
        const Sandbox sandbox;
        for (const char *variable : variables)
            EXPECT_TRUE(qEnvironmentVariableIsSet(variable)) << variable;
    }
    for (const char *variable : variables)
        EXPECT_FALSE(qEnvironmentVariableIsSet(variable)) << variable;
}

TEST_F(SignIn, HasOneSandboxAtATime)
{
    EXPECT_DEATH({ const Sandbox another; }, "make one at a time");
}

TEST_F(SignIn, TellsAStepThatCannotBeDone)
{
    sandbox.hasApps({ QStringLiteral("kite") });
    person().setPatience(500ms);
    EXPECT_TRUE(holds(complaintOf([this] { return person().sendsFrom(QStringLiteral("Parlo")); }),
        "was not opened"));
    EXPECT_TRUE(holds(complaintOf([this] { return person().sendsFrom(QStringLiteral("Nobody")); }),
        "no app Nobody in the list"));
    QWidget cover(container.get());
    cover.setGeometry(container->rect());
    cover.show();
    EXPECT_TRUE(holds(complaintOf([this] { return person().closes(); }), "btnClose is covered"));
    cover.hide();
    EXPECT_TRUE(person().closes());
    EXPECT_EQ(person().screen(), Person::Screen::none);
    EXPECT_EQ(heard->count(), 0);
}

} // namespace
