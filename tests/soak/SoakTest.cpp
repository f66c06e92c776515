// Long runs: many verifications in bad weather, and many containers opened and closed.
// tests/soak/run starts them; none runs with the suite.
#include "Faults/FaultTest.h"

#include <malloc.h>

#include <fstream>

namespace {

int wanted(const char *name, int usual)
{
    return qEnvironmentVariableIsSet(name) ? qEnvironmentVariableIntValue(name) : usual;
}

std::string seed() { return std::to_string(wanted("PARLOQUIN_SOAK_SEED", 1)); }

double residentMegabytes()
{
    long pages = 0;
    std::ifstream("/proc/self/statm") >> pages >> pages;
    return static_cast<double>(pages) * 4096 / 1048576;
}

} // namespace

class SoakTest : public FaultTest {
public:
    using FaultTest::FaultTest;
    // What is written before its fixture has gone counts as the kit's own.
    static void TearDownTestSuite() { std::fputs(report.c_str(), stdout); }

protected:
    static std::string report;

    void expectNoFinding(const QList<QByteArray> &secrets)
    {
        for (const QString &finding : yardstick.findings(secrets)) {
            // We ask the service from this very thread, and a busy machine lets us wait for it.
            if (!finding.startsWith(QStringLiteral("the main thread was held")))
                ADD_FAILURE() << finding.toStdString();
        }
        if (!HasFailure()) // its words are among what would be forgotten
            yardstick.beginAnew();
        service.process().takeOutput(); // it would wait for a reader
    }

    void close()
    {
        container.reset();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        forgetHandlerArguments();
    }
};

std::string SoakTest::report;

class VerificationSoak : public SoakTest {
public:
    VerificationSoak()
        : SoakTest({ "--faults", "20:" + seed() })
    {
    }

protected:
    /// One person's attempt: begun anew while nothing has come of it.
    void verify(const QList<QByteArray> &road);

    int m_succeeded = 0, m_failed = 0, m_begunAnew = 0, m_requests = 0, m_faults = 0;
};

void VerificationSoak::verify(const QList<QByteArray> &road)
{
    constexpr int mostAttempts = 30;
    askService("/sandbox/requests", json::object());
    delegate = std::make_shared<RecordingDelegate>();
    for (int attempt = 0; delegate->outcomes().isEmpty() && attempt < mostAttempts; ++attempt) {
        close();
        m_begunAnew += attempt > 0;
        for (const QByteArray &call : road) {
            if (!leadTo(call))
                break;
            make(call);
            waitForAnswers();
            // Without apps, countries or a word to the host, the person can only start again.
            const auto leadsOn = [this] { return !scene().contains(" 0"); };
            if (!delegate->outcomes().isEmpty() || HasFailure() || !QTest::qWaitFor(leadsOn, 500))
                break;
        }
    }
    close();

    const QStringList outcomes = delegate->outcomes();
    ASSERT_EQ(outcomes.size(), 1) << outcomes.join(u',').toStdString();
    int posts = 0;
    int faults = 0;
    for (const auto &call : askService("/sandbox/requests")) {
        posts += call.at("posts").get<int>();
        faults += call.at("faults").get<int>();
    }
    EXPECT_EQ(posts, yardstick.requests()) << service.process().output();
    m_requests += posts;
    m_faults += faults;
    QList<QByteArray> secrets { number, code };
    if (outcomes.first().startsWith(QStringLiteral("succeeded "))) {
        ++m_succeeded;
        secrets.append(outcomes.first().section(u' ', 1).toUtf8());
        const auto session = askService("/sandbox/sessions/" + secrets.last().toStdString());
        EXPECT_TRUE(session.value("confirmed", false)) << session;
        EXPECT_EQ(session.value("method", ""), &road == &roadByApp ? "3rdparty" : "otp");
    } else {
        ++m_failed;
        EXPECT_GT(faults, 0) << outcomes.first().toStdString() << " though all was well";
    }
    expectNoFinding(secrets);
}

TEST_F(VerificationSoak, EndsEachOnceAsTheServiceHasIt)
{
    const int count = wanted("PARLOQUIN_SOAK_VERIFICATIONS", 1000);
    setDeadline(3s);
    for (int i = 0; i < count && !HasFailure(); ++i) {
        verify(i % 2 == 0 ? roadByApp : roadBySms);
        if (HasFailure())
            ADD_FAILURE() << "in verification " << i << ", seed " << seed();
    }
    report += "verifications: " + std::to_string(m_succeeded) + " succeeded, "
        + std::to_string(m_failed) + " failed, " + std::to_string(m_begunAnew)
        + " times begun anew; " + std::to_string(m_requests) + " requests, "
        + std::to_string(m_faults) + " faults; seed " + seed() + "\n";
}

TEST_F(SoakTest, LeavesNothingWhereContainersCameAndWent)
{
    const int count = wanted("PARLOQUIN_SOAK_CYCLES", 10000);
    const auto cycle = [this](int i) {
        present();
        if (i % 2 == 0) // every other one goes while its answer is under way
            waitForAnswers();
        close();
        EXPECT_TRUE(
            QTest::qWaitFor([this] { return yardstick.completions() == yardstick.requests(); }));
        expectNoFinding({});
    };
    for (int i = 0; i < std::max(count / 20, std::min(count, 50)); ++i) // caches fill up
        cycle(i);
    yardstick.noteResources();
    const auto before = ::mallinfo2().uordblks;
    const auto residentBefore = residentMegabytes();
    int done = 0;
    for (; done < count && !HasFailure(); ++done)
        cycle(done);
    EXPECT_EQ(yardstick.leftOver().toStdString(), "");
    const auto grown = static_cast<long>(::mallinfo2().uordblks - before); // 0 under sanitizers
    EXPECT_LT(grown, 262144); // caches go on filling up for a while, whatever the count
    report += "open and close: " + std::to_string(done) + " times; heap grown by "
        + std::to_string(grown) + " bytes, resident from " + std::to_string(residentBefore) + " to "
        + std::to_string(residentMegabytes()) + " MiB\n";
}
