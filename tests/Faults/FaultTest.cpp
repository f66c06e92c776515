#include "Faults/FaultTest.h"

#include "Parloquin/Platform/UI/ImageView.h"
#include "Parloquin/Platform/UI/TableView.h"
#include "support/OwnNetwork.h"
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
constexpr int brokenConnections = 400; // more than the stack tries until the kit ends it
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
        // The picture has a connection of its own.
        ASSERT_TRUE(step != "init" || waitForScene("apps 2 icon"));
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
    m_awaited = m_yardstick.requests() + 1; // one may be out already
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
            return requests >= std::max<qsizetype>(m_awaited, 1)
                && m_yardstick.completions() >= requests;
        },
        static_cast<int>(bound.count())))
        << "no completion within " << bound.count() << " ms";
    // What an answer asks of the main thread may ask for more: twice through.
    EXPECT_TRUE(drainSession() && drainSession());
    EXPECT_TRUE(!container || waitForOverlay(false));
}

void FaultTest::waitForRequest() const
{
    EXPECT_TRUE(QTest::qWaitFor([this] { return m_yardstick.requests() >= m_awaited; }));
}

bool FaultTest::send(const QString &message)
{
    const QUrlQuery query { QUrl(message) };
    const auto pause = m_yardstick.pause();
    const json body { { "app", "parlo" },
        { "text",
            query.queryItemValue(QStringLiteral("text"), QUrl::FullyDecoded).toStdString() } };
    const auto answer =
        m_service.client().Post("/sandbox/messages", body.dump(), "application/json");
    return answer && answer->status == 202;
}

json FaultTest::askService(const char *path, const json &body) const
{
    // It may take its time on a busy machine: this test waits then, not the kit.
    const auto pause = m_yardstick.pause();
    const auto ask = [&] {
        return body.is_null() ? m_service.client().Get(path)
                              : m_service.client().Post(path, body.dump(), "application/json");
    };
    auto answer = ask();
    for (int tries = 0; tries < brokenConnections && !answer; ++tries)
        answer = ask();
    EXPECT_TRUE(answer && answer->status / 100 == 2) << path << body;
    return json::parse(answer ? answer->body : "{}", nullptr, false);
}

void FaultTest::setOutcome(const QByteArray &call, const json &outcome)
{
    askService("/sandbox/requests", json::object());
    askService("/sandbox/outcomes", { { call.toStdString(), outcome } });
}

void FaultTest::setFault(const QByteArray &call, QByteArray text)
{
    text.replace("OTHER", server.hostAndPort().toLatin1());
    const json outcome = text.isEmpty() || text == "none"
        ? json("success")
        : json { { "fault", text.toStdString() } };
    if (!text.contains("@accept"))
        return setOutcome(call, outcome);
    // The stack connects again where nothing of the request has gone out yet.
    const bool isOnce = text.startsWith("stall") || text.startsWith("endless");
    json outcomes(isOnce ? 1 : brokenConnections, outcome);
    if (call == "icon") // its connection comes behind that of init
        outcomes.insert(outcomes.begin(), "success");
    setOutcome("connection", outcomes);
}

int FaultTest::posts(const QByteArray &call) const
{
    return askService("/sandbox/requests")
        .value(call.toStdString(), json::object())
        .value("posts", 0);
}

bool FaultTest::waitForScene(const QByteArray &wanted, std::chrono::milliseconds patience) const
{
    return QTest::qWaitFor([&] { return scene() == wanted; }, static_cast<int>(patience.count()));
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
    const auto icons = container->findChildren<ImageView *>(QStringLiteral("imgKitIcon"));
    const bool hasIcon = std::any_of(
        icons.begin(), icons.end(), [](const auto *icon) { return !icon->image().isNull(); });
    return "apps " + QByteArray::number(static_cast<int>(rows("tblKits")))
        + (hasIcon ? " icon" : "") + link;
}

void FaultTest::play(const Cell &cell)
{
    delegate = std::make_shared<RecordingDelegate>();
    setDeadline(10s);
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
    (void)waitForScene(wanted); // pictures come and apps start when they like
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
        if (leftOver.isEmpty() && !m_yardstick.wasHeld())
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
    for (const auto &chapter :
        { serviceCells(), lifetimeCells(), entryCells(), handlerCells(), deviceCells() }) {
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
        if (std::isalnum(static_cast<unsigned char>(c)) == 0) {
            const auto at = std::string_view("+-[{\"").find(c);
            c = at == std::string_view::npos ? '_' : "pmloq"[at];
        }
    }
    return name;
}

} // namespace

void PrintTo(const Cell &cell, std::ostream *out)
{
    *out << cell.fault.constData() << " at " << cell.at.constData();
}

TEST_P(FaultTest, Holds)
{
    if (!GetParam().inOwnNetwork || isInOwnNetwork())
        playInRounds(GetParam());
}

INSTANTIATE_TEST_SUITE_P(Sample, FaultTest, testing::ValuesIn(table(true)), nameOf);
INSTANTIATE_TEST_SUITE_P(Rest, FaultTest, testing::ValuesIn(table(false)), nameOf);
