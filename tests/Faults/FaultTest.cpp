#include "Faults/FaultTest.h"

#include "Parloquin/Platform/UI/TableView.h"
#include "support/ServiceEndpoint.h"
#include "support/StillStyle.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QUrlQuery>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QLineEdit>

#include <cctype>

using namespace parloquin;
using namespace std::chrono_literals;
using nlohmann::json;

namespace {
// One icon: calls follow one another then, and take one socket each of those that Qt keeps.
const json scenario { { "codes", { { "fixed", FaultTest::code } } },
    { "apps",
        { { { "app", "parlo" }, { "name", "Parlo" }, { "appPackage", "parlo://" },
              { "icon", "/sandbox/icons/parlo.png" } },
            { { "app", "kite" }, { "name", "Kite" } } } } };
constexpr int mostRounds = 6;
const QString succeeded = QStringLiteral("succeeded ");
}

const QList<QByteArray> FaultTest::roadByApp { "init", "start", "check" };
const QList<QByteArray> FaultTest::roadBySms { "init", "country", "send-otp", "check-otp" };

FaultTest::FaultTest(const std::vector<std::string> &sandboxOptions)
    : m_service(scenario, sandboxOptions)
{
}

void FaultTest::SetUp()
{
    ContainerTest::SetUp();
    QApplication::setStyle(new StillStyle);
    setServiceHost(QStringLiteral("127.0.0.1:%1").arg(m_service.port()));
    setDeadline(10s);
}

void FaultTest::setDeadline(std::chrono::milliseconds deadline)
{
    m_deadline = deadline;
    setServiceTimeout(deadline);
}

void FaultTest::goTo(const QByteArray &call)
{
    if (call == "icon")
        return;
    for (const auto &step : call == "start" || call == "check" ? roadByApp : roadBySms) {
        ASSERT_TRUE(leadTo(step));
        if (step == call)
            return;
        make(step);
        waitForAnswers();
    }
}

bool FaultTest::leadTo(const QByteArray &call)
{
    if (call == "check") {
        if (!QTest::qWaitFor([] { return !handlerArguments().isEmpty(); }))
            return false;
        return send(handlerArguments().constFirst());
    }
    if (call == "country") {
        if (find("viewAlternativeKit")->isVisible())
            tap(find("viewAlternativeKit"));
        return QTest::qWaitFor([this] { return scene() == "phone"; });
    }
    if (call == "send-otp") {
        const auto *countries = find<TableView>("tblCountries");
        if (!QTest::qWaitFor([&] { return countries->cellForRow({ 0, 0 }) != nullptr; }))
            return false;
        tap(countries->cellForRow({ 0, 0 }));
        if (!QTest::qWaitFor([this] { return scene() == "phone"; }))
            return false;
        tap(find("txtPhoneNumber"));
        QTest::keyClicks(QApplication::focusWidget(), QLatin1String(number));
    } else if (call == "check-otp") {
        if (!QTest::qWaitFor([this] { return scene() == "code"; }))
            return false;
        tap(find("txtCode0"));
        for (const char *c = code; *c != '\0'; ++c)
            QTest::keyClick(QApplication::focusWidget(), *c);
    }
    return true;
}

void FaultTest::make(const QByteArray &call)
{
    if (call == "init" || call == "icon")
        present();
    else if (call == "start")
        tapRow(0);
    else if (call == "check")
        comeBack();
    else if (call == "country")
        tap(find("viewCountryBack"));
    else
        tap(find(call == "send-otp" ? "btnContinue" : "btnCheck"));
}

void FaultTest::waitForAnswers()
{
    QElapsedTimer waited;
    waited.start();
    const auto bound = m_deadline + Yardstick::slack(m_deadline);
    EXPECT_TRUE(QTest::qWaitFor(
        [this] {
            const auto requests = m_yardstick.requests();
            return requests > 0 && m_yardstick.completions() == requests;
        },
        static_cast<int>(bound.count())))
        << "no completion within " << bound.count() << " ms";
    // What an answer asks of the main thread may ask for more: twice through.
    EXPECT_TRUE(drainSession() && drainSession());
    EXPECT_TRUE(waitForOverlay(false));
}

bool FaultTest::send(const QString &message)
{
    const QUrlQuery query { QUrl(message) };
    const json body { { "app", "parlo" },
        { "text",
            query.queryItemValue(QStringLiteral("text"), QUrl::FullyDecoded).toStdString() } };
    const auto answer =
        m_service.client().Post("/sandbox/messages", body.dump(), "application/json");
    return answer && answer->status == 202;
}

void FaultTest::setOutcome(const QByteArray &call, const json &outcome)
{
    const auto answer = m_service.client().Post(
        "/sandbox/outcomes", json { { call.toStdString(), outcome } }.dump(), "application/json");
    ASSERT_TRUE(answer && answer->status / 100 == 2) << call.toStdString() << ": " << outcome;
}

int FaultTest::posts() const
{
    const auto answer = m_service.client().Get("/sandbox/requests");
    int posts = 0;
    for (const auto &call : json::parse(answer ? answer->body : "{}"))
        posts += call.value("posts", 0);
    return posts;
}

QByteArray FaultTest::scene() const
{
    if (!container || !container->isVisible())
        return "closed";
    const auto rows = [this](const char *name) {
        const auto cells = find<TableView>(name)->visibleCells();
        return std::count_if(
            cells.begin(), cells.end(), [](const auto *cell) { return cell->isVisible(); });
    };
    const QByteArray link = handlerArguments().isEmpty() ? "" : " link";
    if (find("btnCheck"))
        return "code" + link;
    if (find("tblCountries"))
        return "countries " + QByteArray::number(static_cast<int>(rows("tblCountries"))) + link;
    if (find("btnContinue"))
        return "phone" + link;
    return "apps " + QByteArray::number(static_cast<int>(rows("tblKits"))) + link;
}

void FaultTest::play(const Cell &cell)
{
    delegate = std::make_shared<RecordingDelegate>();
    if (cell.setUp)
        cell.setUp(*this);
    cell.act(*this);
    QStringList outcomes = delegate->outcomes();
    for (QString &outcome : outcomes) {
        if (outcome.startsWith(succeeded))
            outcome.truncate(succeeded.size() - 1);
    }
    EXPECT_EQ(outcomes.join(u',').toStdString(), cell.outcomes.join(u',').toStdString());
    const auto wanted = cell.scene.isEmpty() ? scene() : cell.scene;
    (void)QTest::qWaitFor([&] { return scene() == wanted; }); // an app takes its time to start
    EXPECT_EQ(scene().toStdString(), wanted.toStdString());
    container.reset();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    forgetHandlerArguments();
}

void FaultTest::playInRounds(const Cell &cell)
{
    play(cell);
    QString leftOver;
    for (int round = 0; round < mostRounds && !HasFailure(); ++round) {
        m_yardstick.noteResources();
        play(cell);
        leftOver = m_yardstick.leftOver();
        if (leftOver.isEmpty())
            break;
    }
    EXPECT_EQ(leftOver.toStdString(), "");
    QList<QByteArray> secrets { number, code, "parloquin-demo" };
    for (const QString &outcome : delegate->outcomes()) {
        if (outcome.startsWith(succeeded))
            secrets.append(outcome.mid(succeeded.size()).toUtf8());
    }
    for (const QString &finding : m_yardstick.findings(secrets))
        ADD_FAILURE() << finding.toStdString();
    EXPECT_EQ(server.connections(), 0);
}

namespace {

std::vector<Cell> table(bool inSample)
{
    std::vector<Cell> cells;
    for (const auto &chapter : { serviceCells() }) {
        for (const Cell &cell : chapter) {
            if (cell.inSample == inSample)
                cells.push_back(cell);
        }
    }
    return cells;
}

std::string nameOf(const testing::TestParamInfo<Cell> &row)
{
    std::string name = (row.param.fault + "_at_" + row.param.at).toStdString();
    for (char &c : name) {
        if (!std::isalnum(static_cast<unsigned char>(c)))
            c = c == '+' ? 'p' : c == '-' ? 'm' : '_';
    }
    return name;
}

} // namespace

void PrintTo(const Cell &cell, std::ostream *out)
{
    *out << cell.fault.constData() << " at " << cell.at.constData();
}

TEST_P(FaultTest, Holds) { playInRounds(GetParam()); }

INSTANTIATE_TEST_SUITE_P(Sample, FaultTest, testing::ValuesIn(table(true)), nameOf);
INSTANTIATE_TEST_SUITE_P(Rest, FaultTest, testing::ValuesIn(table(false)), nameOf);
