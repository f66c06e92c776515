// The kit for hosts' tests, as such a host uses it: the real library, sandbox and screens.
#include <QtCore/QProcess>
#include <QtCore/QRegularExpression>
#include <QtCore/QTimer>
#include <QtNetwork/QLocalSocket>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QProxyStyle>
#include <QtWidgets/QVBoxLayout>

#include <Parloquin/Parloquin.h>
#include <Parloquin/TestKit/Heard.h>
#include <Parloquin/TestKit/Http.h>
#include <Parloquin/TestKit/Person.h>
#include <Parloquin/TestKit/Sandbox.h>
#include <gtest/gtest.h>

using namespace ParloquinTest;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

class SignIn : public testing::Test {
protected:
    explicit SignIn(const QStringList &arguments = {})
        : sandbox(QStringLiteral(PARLOQUIN_SANDBOX_PROGRAM), arguments)
    {
        switchMotionOff();
        container.reset(Parloquin().viewControllerForLogin());
        container->setKitDelegate(heard);
    }

    bool asksForCode() { return person().asksForCode(u"470123456"_s); }
    Person &person()
    {
        if (!m_person) {
            container->show();
            m_person.emplace(sandbox, container.get());
        }
        return *m_person;
    }
    /// The step fails, and says so.
    template <class Step>
    void expectComplaint(std::initializer_list<const char *> words, const Step &step)
    {
        testing::internal::CaptureStderr();
        const bool isDone = step();
        const std::string said = testing::internal::GetCapturedStderr();
        EXPECT_FALSE(isDone);
        for (const char *word : words)
            EXPECT_NE(said.find(word), std::string::npos) << word << " is not in " << said;
    }

    Sandbox sandbox;
    std::unique_ptr<ParloquinViewController> container;
    std::shared_ptr<Heard> heard = std::make_shared<Heard>();

private:
    std::optional<Person> m_person;
};

TEST_F(SignIn, ByMessage)
{
    sandbox.hasApps({ u"kite"_s });
    QLocalSocket desktop; // opened by the host itself
    desktop.connectToServer(qEnvironmentVariable("PARLOQUIN_DESKTOP"));
    desktop.write("open kite://send?app=kite&to=a&text=AB2C-3D4E\n");
    ASSERT_TRUE(desktop.waitForReadyRead());
    ASSERT_TRUE(person().sendsFrom(u"Kite"_s));
    ASSERT_TRUE(heard->success());
    EXPECT_TRUE(sandbox.confirms(heard->sessionId()));
    EXPECT_EQ(sandbox.sessions().at(0)[u"app"_s], u"kite"_s);
    EXPECT_FALSE(sandbox.confirms(u"another"_s));
    (void)http(sandbox.host(), "/sandbox/sessions", R"({"state":"expired"})");
    EXPECT_FALSE(sandbox.confirms(sandbox.sessions().at(0)[u"sessionId"_s].toString()));
}

struct SignInWithOwnWords : SignIn {
    SignInWithOwnWords()
        : SignIn({ u"--scenario"_s, u"" WORDS ""_s })
    {
    }
};

TEST_F(SignInWithOwnWords, SendsThemAsTheyAre) { EXPECT_TRUE(person().sendsFrom(u"Kite"_s)); }

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

TEST_F(SignIn, InAHostThatHidesTheKitAmidACall)
{
    QSet<QString> sessions; // each of its own message
    for (const QString &call : { u"start"_s, u"check"_s, u"check-otp"_s }) {
        container->show();
        sandbox.delays(call, 200ms);
        QTimer host; // shows it again while the app has opened, and not after an outcome
        host.callOnTimeout([&, looks = 40, before = sandbox.requests(call)]() mutable {
            const bool isBack = call == u"start"_s && --looks < 0;
            container->setVisible(isBack || sandbox.requests(call) == before);
        });
        if (call != u"check"_s)
            host.start(10ms);
        else // which is sent at once, before the person looks
            QObject::connect(qApp, &QGuiApplication::applicationStateChanged, &host,
                [&](auto state) { state == Qt::ApplicationActive ? container->hide() : void(); });
        EXPECT_TRUE(call == u"check-otp"_s ? asksForCode() && person().types(sandbox.lastCode())
                                           : person().sendsFrom(u"Kite"_s));
        EXPECT_TRUE(heard->success()) << call.toStdString();
        sessions.insert(heard->sessionId());
    }
    EXPECT_EQ(sessions.size(), 3);
}

TEST_F(SignIn, FailsByAWrongCodeAndThenSucceeds)
{
    // Whose row a turn of the wheel leaves cut in its middle.
    ASSERT_TRUE(person().asksForCode(u"470123456"_s, u"+220"_s));
    QString wrong = sandbox.lastCode();
    wrong[0] = wrong[0] == QLatin1Char('1') ? QLatin1Char('2') : QLatin1Char('1');
    ASSERT_TRUE(person().types(wrong));
    EXPECT_TRUE(heard->failure(ParloquinError::authorizationError));
    person().setPatience(500ms);
    for (const QString &code : { wrong.left(2), wrong + u'1' })
        expectComplaint(
            { "the code is not in its boxes" }, [&, this] { return person().types(code); });
    person().setPatience(10s);
    ASSERT_TRUE(person().types(sandbox.lastCode()));
    EXPECT_TRUE(heard->success());
    ASSERT_TRUE(person().goesBack());
    ASSERT_TRUE(person().asksForCode(u"470123456"_s, u"+1"_s)); // others begin like it
    EXPECT_EQ(person().screen(), Person::Screen::code);
    EXPECT_EQ(container->findChild<QWidget *>(u"txtCountryCode"_s)->property("text"), u"+1"_s);
    EXPECT_EQ(heard->count(), 2);
    heard->verificationDidFail(ParloquinError::serverError);
    expectComplaint({ "another outcome came: failure" },
        [this] { return heard->failure(ParloquinError::authorizationError); });
    heard->verificationDidSucceed(u"another"_s);
    expectComplaint({ "another outcome came: success" },
        [this] { return heard->failure(ParloquinError::serverError); });
    expectComplaint({ "no outcome in 10 ms" }, [this] { return heard->success(10ms); });
    heard->verificationDidFail(ParloquinError::serverError);
    EXPECT_TRUE(heard->failure(ParloquinError::serverError));
    EXPECT_TRUE(sandbox.confirms(heard->sessionId())) << "still that of the success";
}

TEST_F(SignIn, WithoutANetwork)
{
    ASSERT_TRUE(asksForCode());
    sandbox.goesOffline();
    const int before = sandbox.requests(u"check-otp"_s);
    person().setPatience(200ms);
    expectComplaint({ "the code was not checked" }, [this] { return person().types(u"123"_s); });
    EXPECT_TRUE(heard->failure(ParloquinError::serverError));
    EXPECT_EQ(sandbox.requests(u"check-otp"_s), before);
}

TEST_F(SignIn, RefusedAndLate)
{
    sandbox.answers(u"send-otp"_s, u"limit"_s);
    const QDeadlineTimer isImpatient(10s);
    expectComplaint({ "no screen for the code.\n On screen: Belgium | +32 | 470123456 | Send SMS |",
                        "\n The sandbox got:\n  init accepted 200 5 apps\n",
                        "\n  send-otp refused 429 Too many attempts. (as set)\n" },
        [this] { return asksForCode(); });
    EXPECT_FALSE(isImpatient.hasExpired()) << "the answer had come";

    sandbox.delays(u"send-otp"_s, 300ms);
    const QDeadlineTimer isLate(300ms);
    EXPECT_TRUE(asksForCode());
    EXPECT_TRUE(isLate.hasExpired());

    sandbox.reset();
    EXPECT_EQ(sandbox.lastCode(), QString());
}

TEST_F(SignIn, BeginsAnewAfterAReset)
{
    sandbox.hasApps({});
    sandbox.goesOffline();
    sandbox.reset();
    EXPECT_TRUE(person().sendsFrom(u"Kite"_s));
}

TEST(Motion, IsSwitchedOffInTheStyleOfTheApp)
{
    QApplication::setStyle(u"windows"_s);
    switchMotionOff();
    const auto *const style = qobject_cast<QProxyStyle *>(QApplication::style());
    ASSERT_TRUE(style);
    EXPECT_EQ(style->baseStyle()->name(), u"windows"_s);
    EXPECT_EQ(style->styleHint(QStyle::SH_Widget_Animation_Duration), 0);
}

TEST(Sandbox, SteersTheKitNoLongerThanItLives)
{
    const char *const variables[] = { "PARLOQUIN_SERVICE_HOST", "PARLOQUIN_ROUTE",
        "PARLOQUIN_DESKTOP" };
    QString host;
    qputenv(variables[0], "127.0.0.1:1"); // of a host that the program was started for
    {
        const Sandbox sandbox;
        EXPECT_NE(qgetenv(variables[0]), "127.0.0.1:1");
        host = sandbox.host();
        EXPECT_EQ(http(host, "/sandbox/health").status, 200);
        EXPECT_EQ(sandbox.report(), u"  nothing\n"_s);
        for (int i = 0; i < 101; ++i) // more than comes at once, and than is told unasked
            (void)http(host, "/sandbox/messages", QByteArray(20000, ' '));
        EXPECT_EQ(sandbox.journal().size(), 101);
        EXPECT_DEATH({ const Sandbox another; }, "make one at a time");
        for (const char *variable : variables)
            EXPECT_TRUE(qEnvironmentVariableIsSet(variable)) << variable;
    }
    for (const char *variable : variables)
        EXPECT_FALSE(qEnvironmentVariableIsSet(variable)) << variable;
    EXPECT_EQ(http(host, "/sandbox/health").status, 0);
}

TEST(Sandbox, GoesWithAProgramThatCrashes)
{
    if (qEnvironmentVariableIsSet("CRASHES")) {
        const Sandbox sandbox;
        qWarning("%s", qPrintable(sandbox.host()));
        std::abort();
    }
    qputenv("CRASHES", "1");
    QProcess program;
    program.start(QCoreApplication::applicationFilePath(),
        { u"--gtest_filter=Sandbox.GoesWithAProgramThatCrashes"_s });
    ASSERT_TRUE(program.waitForFinished());
    const auto host = QRegularExpression(u"127.0.0.1:\\d+"_s)
                          .match(QString::fromUtf8(program.readAllStandardError()))
                          .captured();
    EXPECT_NE(host, QString());
    EXPECT_TRUE(QTest::qWaitFor([&] { return http(host, "/sandbox/health").status == 0; }));
}

TEST(Sandbox, SaysWhatItCannotDo)
{
    EXPECT_DEATH(Sandbox(u"/nowhere"_s), "TestKit: /nowhere does not start: .*No such file");
    EXPECT_DEATH(Sandbox(QStringLiteral(PARLOQUIN_SANDBOX_PROGRAM), { u"--nonsense"_s }),
        "does not start: .*--nonsense");
    EXPECT_DEATH(Sandbox().answers(u"begin"_s, u"limit"_s),
        "the sandbox refused /sandbox/outcomes .400.: .*no call has this name");
    const QTemporaryDir longer(QDir::tempPath() + u'/' + QString(100, u'x'));
    qputenv("TMPDIR", longer.path().toLocal8Bit()); // than a socket's name may be
    EXPECT_DEATH(Sandbox(), "TestKit: cannot listen at ");
}

TEST_F(SignIn, TellsAStepThatCannotBeDone)
{
    sandbox.hasApps({ u"kite"_s });
    person().setPatience(500ms);
    const std::pair<const char *, std::function<bool()>> rows[] = {
        { "the app of Parlo was not opened", [this] { return person().sendsFrom(u"Parlo"_s); } },
        { "no app Kit in the list", [this] { return person().sendsFrom(u"Kit"_s); } },
        { "no screen for the code", [this] { return person().types(u"123"_s); } },
        { "no btnBack to tap", [this] { return person().goesBack(); } },
    };
    for (const auto &[words, step] : rows)
        expectComplaint({ words }, step);
    auto *const cover = new QWidget(container.get());
    cover->setGeometry(container->rect());
    cover->show();
    expectComplaint({ "btnClose is covered" }, [this] { return person().closes(); });
    cover->hide();
    container->setEnabled(false);
    expectComplaint({ "no btnClose to tap" }, [this] { return person().closes(); });
    container->setEnabled(true);
    EXPECT_TRUE(person().closes());
    EXPECT_EQ(person().screen(), Person::Screen::none);
    EXPECT_EQ(heard->count(), 0);
    container.reset();
    expectComplaint({ "the container is gone" }, [this] { return person().closes(); });
}

} // namespace
