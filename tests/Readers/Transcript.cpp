// What everyone is told on both roads, step by step: the person, by eye, by a reader and on the
// screen's keyboard; the service, the delegate, the host and its log. Held against Transcript.txt,
// which somebody read; TRANSCRIPT=approve takes it anew, to be read as git shows what has changed.
#include "Readers/Transcript.h"

#include "Readers/Account.h"

#include <QtCore/QFile>
#include <QtCore/QJsonDocument>
#include <QtCore/QRegularExpression>
#include <QtCore/QScopeGuard>
#include <QtGui/QShortcut>
#include <QtGui/QStyleHints>

namespace {

QStringList without(const QStringList &lines, const QStringList &others, const QString &mark)
{
    QStringList left;
    for (const QString &line : lines) {
        if (!others.contains(line))
            left << mark + line.trimmed();
    }
    return left;
}

/// Writes what the kit leaves to its host.
class Left : public QObject {
    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::Wheel)
            Heard::events << u"the host's wheel"_s;
        if (event->type() == QEvent::ShortcutOverride)
            m_offered = static_cast<QKeyEvent *>(event)->keyCombination();
        if (event->type() != QEvent::KeyPress)
            return false;
        const auto *const press = static_cast<QKeyEvent *>(event);
        const bool isAside = press->key() == Qt::Key_Left || press->key() == Qt::Key_Right;
        const bool isKept = std::exchange(m_offered, {}) != press->keyCombination();
        if (press->key() < Qt::Key_Shift || press->key() > Qt::Key_ScrollLock)
            Heard::events << u"the host's key "_s
                    + (isAside ? u"aside"_s : QKeySequence(press->keyCombination()).toString())
                    + (isKept ? u", kept from its shortcuts"_s : QString());
        return false;
    }

    QKeyCombination m_offered; // to its shortcuts
} left;

} // namespace

void Transcript::SetUp()
{
    ContainerTest::SetUp();
    QApplication::setStyle(new ParloquinTest::PacedStyle(0));
    QApplication::setCursorFlashTime(0);
    QGuiApplication::styleHints()->setKeyboardInputInterval(600000); // a word is one, if slow
    QApplication::setFont(QFont(u"Noto Sans"_s));
    QApplication::setLayoutDirection(GetParam());
    answerBothRoads();
    modem.play("start bus; start service; await; modem 0 20801");
    m_heard = std::make_unique<Heard>();
    page.installEventFilter(&left);
    for (const auto key : { Qt::Key_Escape, Qt::Key_Return, Qt::Key_Down, Qt::Key_M })
        QObject::connect(new QShortcut(key, &page), &QShortcut::activated,
            [key] { Heard::events << u"the host's own "_s + QKeySequence(key).toString(); });
}

void Transcript::TearDown()
{
    m_heard.reset();
    container->setParent(nullptr);
    ContainerTest::TearDown();
}

void Transcript::settle(size_t sends, const std::function<bool()> &until)
{
    (void)QTest::qWaitFor([&] { return server.requests().size() >= m_sent + sends; });
    QCoreApplication::sendPostedEvents(); // the request may be there before its overlay is
    if (m_waits)
        (void)waitForOverlay(true);
    else
        (void)(waitForOverlay(false) && drainSession() && (m_moves || rests()));
    EXPECT_TRUE(!until || QTest::qWaitFor(until)) << "was not seen";
    QCoreApplication::processEvents();
}

QStringList Transcript::whatCame(const QString &printed)
{
    QStringList lines;
    const auto requests = server.requests();
    for (; m_sent < requests.size(); ++m_sent) {
        const RawRequest &each = requests[m_sent];
        const QByteArray text = each.body.isEmpty()
            ? ""
            : QJsonDocument(each.parameters()).toJson(QJsonDocument::Compact);
        lines << account::said(
            u"sent "_s + QString::fromUtf8(each.method() + ' ' + each.path() + ' ' + text));
    }
    for (const QStringList told = delegate->outcomes(); m_told < told.size(); ++m_told)
        lines << u"told "_s + told.at(m_told);
    for (const QStringList words = m_words.heard(); m_worded < words.size(); ++m_worded)
        lines << u"developer "_s + account::said(words.at(m_worded)).join(u' ');
    for (const QString &each : m_isBrief ? QStringList() : account::said(printed))
        lines << u"log "_s + each;
    if (m_isBrief && !handlerArguments().isEmpty())
        lines << u"opened "_s.repeated(takeHandlerStarts()) + handlerArguments().join(u' ');
    forgetHandlerArguments();
    for (const QString &each : std::as_const(Heard::events)) {
        const QString line = u"heard "_s + each;
        if (!each.contains(QRegularExpression(u"^(0x|caret )"_s)) && !lines.endsWith(line)
            && !(m_isBrief && each == u"focus Loading the countries…")) // who is late hears of none
            lines << line; // a message may come twice
    }
    return lines;
}

void Transcript::step(const QString &name, const std::function<void()> &act, size_t sends,
    const std::function<bool()> &until)
{
    if (HasFailure()) // a walk that went wrong ends there
        return;
    SCOPED_TRACE(name.toStdString());
    Heard::events.clear();
    testing::internal::CaptureStdout();
    auto shown = qScopeGuard([] { // what failed is said there, too
        if (HasFailure())
            std::cout << testing::internal::GetCapturedStdout() << std::flush;
    });
    act();
    settle(sends, until);
    if (HasFailure())
        return;
    shown.dismiss();
    QStringList lines = whatCame(QString::fromStdString(testing::internal::GetCapturedStdout()));
    const QStringList now = account::stateOf(container.get());
    if (m_isBrief && now != m_state)
        lines << without(m_state, now, u"- "_s) << without(now, m_state, u"+ "_s);
    else
        lines << (now == m_state ? QStringList(u"as it was"_s) : now);
    m_state = now;
    if (m_waits && !isAtRest())
        lines << u"not at rest"_s;
    const std::string mark = m_isBrief ? "$ " : "# ";
    steps.push_back({ mark + name.toStdString(), (lines.join(u'\n') + u"\n\n"_s).toStdString() });
    account::expectDrawn(container->window(), name);
}

void Transcript::hold()
{
    server.pause();
    m_waits = true;
}

void Transcript::proceed()
{
    m_waits = false;
    server.proceed();
}

// clang-format off
void Transcript::key(const QString &name, Qt::Key key, size_t sends)
{
    step(name, [key] { hands::key(key); }, sends);
}

void Transcript::around(const QString &name, int stops)
{
    step(name, [stops] {
        for (int i = 0; i < 2 * stops; ++i)
            hands::key(i < stops ? Qt::Key_Tab : Qt::Key_Backtab), QCoreApplication::processEvents();
    });
}

void Transcript::tapped(const QString &name, const char *widget, size_t sends, const std::function<bool()> &until)
{
    step(name, [=, this] { tap(widget); }, sends, until);
}

std::function<bool()> Transcript::told(int count) const
{
    return [=, this] { return delegate->outcomes().size() >= count; };
}

void Transcript::open()
{
    step(u"the kit opens"_s, [this] {
        hold();
        present(&page);
        container->setContentsMargins(0, 44, 0, 0);
        container->setFocus();
        EXPECT_TRUE(comesToFront(page));
    }, 1);
}

void Transcript::messagingRoad()
{
    const auto isStarted = [] { return !handlerArguments().isEmpty(); };
    step(u"its apps come"_s, [this] { proceed(); });
    key(u"Escape, which is the host's here"_s, Qt::Key_Escape);
    QApplication::setStyle(new ParloquinTest::PacedStyle(60)); // presses fade
    const auto panel = [this] { return visible("viewAlternativeKit"); };
    step(u"the way by SMS pressed"_s, [&] { hands::press(panel()); });
    step(u"drawn along it"_s, [&] { hands::moveTo(panel(), hands::middleOf(panel()) + QPoint(11, 0)); });
    step(u"and let go"_s, [&] { hands::release(panel()); });
    QApplication::setStyle(new ParloquinTest::PacedStyle(0));
    key(u"Down"_s, Qt::Key_Down);
    around(u"around the apps"_s, 3);
    step(u"the first app"_s, [this] { hold(); tapRow(0); }, 1);
    step(u"its link comes"_s, [this] { proceed(); }, 0, isStarted);
    step(u"back from it"_s, [] { comeBack(); }, 1, told(1));
    step(u"back once more"_s, [] { comeBack(); }, 1, told(2));
    answer("/v1.0/check", R"({"meta":{"httpStatusCode":400}})");
    step(u"the first app again"_s, [this] { tapRow(0); }, 1, isStarted);
    step(u"back from it, refused"_s, [] { comeBack(); }, 1, told(3));
    step(u"an app that is not there"_s, [this] { tapRow(1); });
    answer("/v1.0/start", R"({"result":{"deeplink":"nobody://send","reference":"R-3"}})");
    step(u"a link that nobody takes"_s, [this] { tapRow(0); }, 1);
    answer("/v1.0/start", "[]");
    step(u"a start that fails"_s, [this] { tapRow(0); }, 1, told(4));
}

void Transcript::phoneEntry()
{
    const QByteArray refused = R"({"meta":{"httpStatusCode":400}})";
    answer("/v1.0/send-otp", refused);
    answer("/v1.0/country", R"({"result":{"list":[{"title":"Norway","countryCode":"NO","phoneCode":"+47"},
        {"title":"Chad","countryCode":"TD","phoneCode":"+235"},{"title":"Corsica"}]}})");
    tapped(u"the way by SMS"_s, "viewAlternativeKit");
    around(u"around the number"_s, 4);
    tapped(u"Send of nothing"_s, "btnContinue");
    step(u"the countries, awaited"_s, [this] { server.pause(); tap("viewCountryBack"); }, 1);
    step(u"the countries come"_s, [this] { server.proceed(); (void)row("tblCountries", 1, 0); });
    key(u"Down in them"_s, Qt::Key_Down);
    around(u"around the countries"_s, 2);
    key(u"N"_s, Qt::Key_N);
    key(u"no choice"_s, Qt::Key_Escape);
    for (const QString &each : { u"Norway"_s, u"Chad"_s, u"Norway again"_s })
        step(each, [&] { pick(each.section(u' ', 0, 0)); }, 1);
    QString many;
    for (int i = 10; i < 40; ++i)
        many += uR"({"title":"Land %1"},)"_s.arg(i);
    answer("/v1.0/country", R"({"result":{"list":[)" + many.chopped(1).toUtf8() + "]}}");
    step(u"many countries"_s, [this] { openPicker(); (void)row("tblCountries", 0, 0); }, 1);
    key(u"the last of them"_s, Qt::Key_End);
    step(u"less of them"_s, [this] { container->resize(390, 400); });
    step(u"as many again"_s, [this] { container->resize(390, 844); });
    tapped(u"back from many"_s, "btnClose");
    answer("/v1.0/country", R"({"result":{}})");
    step(u"no countries"_s, [this] { openPicker(); }, 1, [this] { return visible("lblEmpty") && textOf(visible("lblEmpty")).startsWith(u"No"_s); });
    tapped(u"back from none"_s, "btnClose");
    tapped(u"in the number"_s, "txtPhoneNumber");
    step(u"a number"_s, [] { hands::keys(u"41234567"_s); });
    step(u"all of it selected"_s, [] { hands::key(Qt::Key_A, Qt::ControlModifier); });
    step(u"a tap beside it"_s, [this] { hands::click(container.get(), { 195, 700 }); });
    key(u"Enter beside the field, refused"_s, Qt::Key_Return, 1);
    answer("/v1.0/send-otp", "[]");
    tapped(u"Send, not answered"_s, "btnContinue", 1);
    answer("/v1.0/send-otp", R"({"result":{"reference":"R-4"}})");
    step(u"Send, by keys"_s, [this] { hold(); for (const auto each : { Qt::Key_Tab, Qt::Key_Tab, Qt::Key_Tab, Qt::Key_Return }) hands::key(each); }, 1);
}

void Transcript::offerCode()
{
    do // nobody knows when the kit has begun to listen; a second one may come in late
        modem.tell({ u"sms"_s, u"0"_s, QString::number(++m_messages), u"3"_s, uR"(Code\n@127.0.0.1 #7K2)"_s });
    while (!QTest::qWaitFor([this] { return visible("btnMessageCode"); }, 1500) && m_messages < 40);
}

void Transcript::codeEntry()
{
    const auto begins = [this] { return visible("txtCode0") && visible("txtCode0")->hasFocus(); };
    const auto offer = [this] { offerCode(); };
    step(u"the code's page"_s, [this] { proceed(); }, 0, begins);
    step(u"a code is offered"_s, offer);
    around(u"around the code"_s, 7);
    key(u"back from the offer"_s, Qt::Key_Escape);
    tapped(u"Send again"_s, "btnContinue", 1, begins);
    step(u"a character"_s, [] { hands::keys(u"4"_s); });
    key(u"back to it"_s, Qt::Key_Backtab);
    step(u"a code is offered again"_s, offer);
    tapped(u"it is taken"_s, "btnMessageCode");
    answer("/v1.0/check-otp", R"({"meta":{"httpStatusCode":400}})");
    step(u"Check, awaited"_s, [this] { hold(); hands::key(Qt::Key_Return); }, 1);
    step(u"the host means what is covered"_s, [this] { find("txtCode0")->setFocus(); });
    step(u"refused"_s, [this] { proceed(); }, 0, told(5));
    answer("/v1.0/check-otp", "[]");
    tapped(u"Check, not answered"_s, "btnCheck", 1, told(6));
    answer("/v1.0/check-otp", R"({"result":{"sessionId":"S-2"}})");
    step(u"typed over it, in vain"_s, [this] { tap("txtCode0"); hands::keys(u"471"_s); });
    tapped(u"Check"_s, "btnCheck", 1, told(7));
    step(u"all emptied"_s, [] { hands::keys(u"\b\b\b\b"_s); });
    tapped(u"Check of none"_s, "btnCheck");
    server.answer("/v1.0/check-otp", RawServer::http(200, R"({"meta":{"httpStatusCode":400}})", "Via: a\r\n\tb\r\n"));
    step(u"others typed"_s, [] { hands::keys(u"82"_s); });
    tapped(u"refused after all"_s, "btnCheck", 1, told(8));
    tapped(u"no code came"_s, "btnTryAgain");
    tapped(u"back to the number"_s, "btnBack");
    around(u"around it again"_s, 4);
}

void Transcript::hosts()
{
    step(u"before the number"_s, [this] { tap("txtPhoneNumber"); hands::key(Qt::Key_Home); });
    step(u"the host shuts its window"_s, [this] { page.setEnabled(false); });
    step(u"and opens it"_s, [this] { page.setEnabled(true); });
    step(u"the host hides the kit"_s, [this] { container->hide(); });
    step(u"and shows it"_s, [this] { container->show(); });
    step(u"minimised, and restored"_s, [this] { page.showMinimized(); EXPECT_SOON(qGuiApp->applicationState() != Qt::ApplicationActive); page.showNormal(); EXPECT_TRUE(comesToFront(page)); }, 1, told(9));
    step(u"narrow and low"_s, [this] { container->resize(195, 422); });
    step(u"on its side"_s, [this] { container->resize(844, 390); });
    step(u"upright"_s, [this] { container->resize(390, 844); });
    m_moves = true;
    hands::Finger finger;
    const int way = GetParam() == Qt::LeftToRight ? 1 : -1;
    step(u"drawn along the bar"_s, [&] { finger.down(container.get(), { way == 1 ? 4 : 386, 70 }); finger.drag({ way * 240, 0 }); finger.up(); });
    step(u"drawn from the edge"_s, [&] { finger.down(container.get(), { way == 1 ? 4 : 386, 300 }); finger.drag({ way * 240, 0 }); });
    step(u"and half back"_s, [&] { finger.drag({ way * -120, 0 }); });
    m_moves = false;
    step(u"and let go of"_s, [&] { finger.drag({ way * -100, 0 }); finger.up(); });
    tapped(u"Back"_s, "btnBack");
    tapped(u"Close"_s, "btnClose");
    step(u"opened again"_s, [this] { container->show(); });
    const auto again = [this] { container->setParent(nullptr); present(&page); };
    answer("/v1.0/init", R"({"result":{}})");
    step(u"another kit, of nothing"_s, again, 1);
    QFile icon(QStringLiteral(ICON));
    ASSERT_TRUE(icon.open(QIODevice::ReadOnly));
    server.answer("/icon.png", RawServer::http(200, icon.readAll(), "Content-Type: image/png\r\n"));
    QString apps = uR"({"text":"Verify with A","icon":"%1"})"_s.arg(server.url(u"/icon.png"_s));
    for (int i = 1; i < 14; ++i) // theirs are not there
        apps += uR"(,{"text":"App %1","icon":"http://127.0.0.1:9/"})"_s.arg(i);
    answer("/v1.0/init", (uR"({"result":{"list":[)"_s + apps + u"]}}"_s).toUtf8());
    step(u"another, with a picture"_s, again, 2, [this] { return !row("tblKits", 0, 0)->findChild<ImageView *>()->image().isNull(); });
    key(u"beyond it"_s, Qt::Key_End);
}
// clang-format on

// One for both directions.
void Transcript::expectApproved(const std::string &file) const
{
    transcript::write(transcript::seenFile(file), steps); // also of a walk that ended early
    if (GetParam() == Qt::LeftToRight && !HasFailure())
        transcript::takeIfMeant(steps, file);
    transcript::expectApproved(steps, file);
}

TEST_P(Transcript, IsTheApprovedOne)
{
    open();
    messagingRoad();
    phoneEntry();
    codeEntry();
    hosts();
    far();
    onTheWay();
    expectApproved(APPROVED "/Transcript.txt");
}

INSTANTIATE_TEST_SUITE_P(
    Directions, Transcript, testing::Values(Qt::LeftToRight, Qt::RightToLeft), [](const auto &row) {
        return std::string(row.param == Qt::LeftToRight ? "LeftToRight" : "RightToLeft");
    });
