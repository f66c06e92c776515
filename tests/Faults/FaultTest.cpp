#include "Faults/FaultTest.h"

#include "Parloquin/Toolkit/ImageView.h"
#include "Parloquin/Toolkit/TableView.h"
#include "TestKit/PacedStyle.h"
#include "support/ServiceEndpoint.h"

#include <QtCore/QRegularExpression>
#include <QtCore/QUrlQuery>

#include <cctype>

using namespace parloquin;

namespace {

// One icon: calls follow one another then.
const json scenario = json::parse(R"({ "codes": { "fixed": "#Q7" }, "apps": [
    { "app": "parlo", "name": "Parlo", "appPackage": "parlo://", "icon": "/sandbox/icons/parlo.png" },
    { "app": "kite", "name": "Kite" } ] })");
constexpr int mostRounds = 6;
const QString succeeded = u"succeeded "_s;

} // namespace

const QList<QByteArray> FaultTest::roadByApp { "init", "start", "check" };
const QList<QByteArray> FaultTest::roadBySms { "init", "country", "send-otp", "check-otp" };

FaultTest::FaultTest(const std::vector<std::string> &sandboxOptions)
    : service(scenario, sandboxOptions)
{
}

void FaultTest::SetUp()
{
    ContainerTest::SetUp();
    QApplication::setStyle(new ParloquinTest::PacedStyle(0));
    setServiceHost(u"127.0.0.1:%1"_s.arg(service.port()));
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
    for (const auto &step : roadByApp.contains(call) ? roadByApp : roadBySms) {
        ASSERT_TRUE(leadTo(step));
        if (step == call)
            return;
        makeAndWait(step);
        // The picture has a connection of its own.
        ASSERT_TRUE(step != "init" || waitForScene("apps 2 icon"));
    }
}

bool FaultTest::leadTo(const QByteArray &call)
{
    if (call == "check")
        return waitForLink() && send(handlerArguments().constFirst());
    if (call == "country") {
        if (find("viewAlternativeKit")->isVisible())
            tap(find("viewAlternativeKit"));
        return waitForScene("phone");
    }
    if (call == "send-otp") {
        const auto *countries = find<TableView>("tblCountries");
        if (!QTest::qWaitFor([&] { return countries->cellForRow({ 0, 0 }) != nullptr; }))
            return false;
        tap(countries->cellForRow({ 0, 0 }));
        if (!waitForScene("phone"))
            return false;
        tap(find("txtPhoneNumber"));
        hands::keys(QLatin1String(number));
    } else if (call == "check-otp") {
        if (!waitForScene("code"))
            return false;
        tap(find("txtCode0"));
        hands::keys(QLatin1String(code)); // each field hands the focus on
    }
    return true;
}

void FaultTest::make(const QByteArray &call)
{
    m_awaited = Yardstick::requests() + 1; // one may be out already
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

void FaultTest::waitForRequest() const
{
    EXPECT_TRUE(QTest::qWaitFor([this] { return Yardstick::requests() >= m_awaited; }));
}

void FaultTest::waitForAnswers()
{
    QElapsedTimer waited;
    waited.start();
    const auto bound = m_deadline + Yardstick::slack(m_deadline);
    EXPECT_TRUE(QTest::qWaitFor(
        [this] {
            const auto requests = Yardstick::requests();
            return requests >= std::max<qsizetype>(m_awaited, 1)
                && Yardstick::completions() >= requests;
        },
        static_cast<int>(bound.count())))
        << "no completion within " << bound.count() << " ms";
    // What an answer asks of the main thread may ask for more: twice through.
    EXPECT_TRUE(drainSession() && drainSession());
    EXPECT_TRUE(!container || waitForOverlay(false));
}

void FaultTest::makeAndWait(const QByteArray &call)
{
    make(call);
    waitForAnswers();
}

bool FaultTest::waitForLink()
{
    return QTest::qWaitFor([] { return !handlerArguments().isEmpty(); });
}

bool FaultTest::send(const QString &message)
{
    const QUrlQuery query { QUrl(message) };
    const QString text = query.queryItemValue(u"text"_s, QUrl::FullyDecoded);
    const json body { { "app", "parlo" }, { "text", text.toStdString() } };
    const auto pause = yardstick.pause();
    return service.post("/sandbox/messages", body)["status"] == 202;
}

json FaultTest::askService(const std::string &path, const json &body)
{
    const auto pause = yardstick.pause();
    json answer = body.is_null() ? service.get(path) : service.post(path, body);
    EXPECT_EQ(answer["status"].get<int>() / 100, 2) << path << body;
    answer.erase("status");
    return answer;
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
    // Once: a second connection would be whole, and its answer tell of it. That of an icon comes
    // behind that of init.
    setOutcome("connection",
        call == "icon" ? json::array({ "success", outcome }) : json::array({ outcome }));
}

int FaultTest::posts(const QByteArray &call)
{
    const json requests = askService("/sandbox/requests");
    return requests.value(call.toStdString(), json::object()).value("posts", 0);
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
        return QByteArray::number(std::count_if(
            cells.begin(), cells.end(), [](const auto *cell) { return cell->isVisible(); }));
    };
    const QByteArray link = handlerArguments().isEmpty() ? "" : " link";
    if (find("btnCheck"))
        return "code" + link;
    if (find("tblCountries"))
        return "countries " + rows("tblCountries") + link;
    if (find("btnContinue"))
        return "phone" + link;
    const auto icons = container->findChildren<ImageView *>(u"imgKitIcon"_s);
    const bool hasIcon = std::any_of(
        icons.begin(), icons.end(), [](const auto *icon) { return !icon->image().isNull(); });
    return "apps " + rows("tblKits") + (hasIcon ? " icon" : "") + link;
}

void FaultTest::play(const Cell &cell)
{
    delegate = std::make_shared<RecordingDelegate>();
    setDeadline(10s);
    cell.act(*this);
    QStringList outcomes = delegate->outcomes();
    outcomes.replaceInStrings(QRegularExpression(u"^succeeded .*"_s), u"succeeded"_s);
    EXPECT_EQ(outcomes.join(u',').toStdString(), cell.outcomes.join(u',').toStdString());
    if (!cell.scene.isEmpty()) { // pictures come and apps start when they like
        EXPECT_TRUE(waitForScene(cell.scene)) << scene().constData();
    }
    container.reset();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    forgetHandlerArguments();
}

void FaultTest::playInRounds(const Cell &cell)
{
    play(cell);
    QString leftOver;
    for (int round = 0; round < mostRounds && !HasFailure(); ++round) {
        yardstick.noteResources();
        play(cell);
        leftOver = yardstick.leftOver();
        if (leftOver.isEmpty() && !yardstick.wasHeld())
            break;
    }
    EXPECT_EQ(leftOver.toStdString(), "");
    QList<QByteArray> secrets { number, code, "parloquin-demo" };
    for (const QString &outcome : delegate->outcomes().filter(succeeded))
        secrets.append(outcome.mid(succeeded.size()).toUtf8());
    for (const QString &finding : yardstick.findings(secrets))
        ADD_FAILURE() << finding.toStdString();
    EXPECT_EQ(server.connections(), 0);
}

namespace {

std::vector<Cell> table(bool inSample)
{
    std::vector<Cell> cells;
    for (const auto &chapter :
        { serviceCells(), lifetimeCells(), entryCells(), handlerCells(), deviceCells() })
        std::copy_if(chapter.begin(), chapter.end(), std::back_inserter(cells),
            [=](const Cell &cell) { return cell.inSample == inSample; });
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
    *out << (cell.fault + " at " + cell.at).constData();
}

TEST_P(FaultTest, Holds)
{
    if (!GetParam().isHere || GetParam().isHere())
        playInRounds(GetParam());
}

INSTANTIATE_TEST_SUITE_P(Sample, FaultTest, testing::ValuesIn(table(true)), nameOf);
INSTANTIATE_TEST_SUITE_P(Rest, FaultTest, testing::ValuesIn(table(false)), nameOf);
