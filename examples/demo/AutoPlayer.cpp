#include "AutoPlayer.h"

#include "DemoWindow.h"

#include <QtGui/QGuiApplication>
#include <QtGui/QStyleHints>
#include <QtGui/QWindow>
#include <QtTest/QTest>

#include <memory>
#include <utility>

namespace demo {

namespace {

// What the player looks for in the sandbox's built-in scenario.
QString app() { return QStringLiteral("Parlo"); }
QString phoneCode() { return QStringLiteral("+32"); }
QString number() { return QStringLiteral("470123456"); }

/// Of the same length, and different in every character.
QString wrongFor(QString code)
{
    for (QChar &digit : code)
        digit = digit == QLatin1Char('9') ? QLatin1Char('0') : QChar(digit.unicode() + 1);
    return code;
}

} // namespace

AutoPlayer::AutoPlayer(DemoWindow &window, QString pictures, std::chrono::milliseconds leisure)
    : m_window(window)
    , m_pictures(std::move(pictures))
    , m_leisure(leisure)
{
    // Listened for, not looked for: a quick messenger may come and go between two looks.
    connect(qGuiApp, &QGuiApplication::applicationStateChanged, this,
        [this](Qt::ApplicationState state) { m_left |= state != Qt::ApplicationActive; });
}

bool AutoPlayer::play()
{
    // A blinking caret would keep two frames from ever being equal.
    QGuiApplication::styleHints()->setCursorFlashTime(0);
    return waitFor(tr("the host's window is in front"),
               [] { return QGuiApplication::applicationState() == Qt::ApplicationActive; })
        && playMessaging() && playSms();
}

bool AutoPlayer::playMessaging()
{
    if (!presentKit())
        return false;

    QWidget *row = nullptr;
    const auto findRow = [this, &row] {
        row = visibleWithText(
            QStringLiteral("ThirdPartyKitTableCell"), QStringLiteral("lblKitName"), app());
        return row != nullptr;
    };
    if (!waitFor(tr("the app list shows %1").arg(app()), findRow))
        return false;
    if (!waitFor(tr("every app has its icon"), [this] { return iconsShown(); })
        || !picture(QStringLiteral("app-list")))
        return false;

    QWindow *target = m_window.windowHandle();
    QTest::mousePress(target, Qt::LeftButton, {}, middleOf(row));
    if (!picture(QStringLiteral("app-list-pressed")))
        return false;
    if (!findRow())
        return fail(tr("the row of %1 went away under the finger").arg(app()));
    m_left = false;
    QTest::mouseRelease(target, Qt::LeftButton, {}, middleOf(row));
    step(tr("tapped the row of %1").arg(app()));

    ++m_number; // the messenger's own picture
    return waitFor(
               tr("the messenger is in front"), [this] { return m_left; }, 2)
        && waitFor(
            tr("the message is sent, the host is in front again"),
            [] { return QGuiApplication::applicationState() == Qt::ApplicationActive; }, 2)
        && confirmed(QStringLiteral("verified-by-message")) && openKit(QStringLiteral("btnAgain"));
}

bool AutoPlayer::playSms()
{
    QString code;
    const auto check = [this] {
        return tap(QStringLiteral("btnCheck"), tr("the host has heard of it"),
            shown(QStringLiteral("pageOutcome")));
    };
    // After a failure the first button is another try.
    if (!askForCode(code) || !typeCode(wrongFor(code)) || !check() || !refused()
        || !openKit(QStringLiteral("btnDone")))
        return false;
    return askForCode(code) && takeCodeFromMessage(code)
        && picture(QStringLiteral("code-entry-filled")) && check()
        && confirmed(QStringLiteral("verified-by-code"))
        && tap(QStringLiteral("btnDone"), tr("the host's start page is back"),
            shown(QStringLiteral("btnVerify")));
}

bool AutoPlayer::askForCode(QString &code)
{
    const QString field = QStringLiteral("txtPhoneNumber");
    if (!tap(QStringLiteral("viewAlternativeKit"), tr("a number is asked for"), shown(field))
        || !picture(QStringLiteral("phone-entry"))
        || !tap(QStringLiteral("viewCountryBack"), tr("the countries are listed"),
            shown(QStringLiteral("CountryTableCell")))
        || !pickCountry() || !tap(field, tr("the number has the caret"), focused(field))
        || !type(field, number()) || !picture(QStringLiteral("phone-entry-filled"))
        || !tap(QStringLiteral("btnContinue"), tr("the first box has the caret"),
            focused(QStringLiteral("txtCode0")))
        || !picture(QStringLiteral("code-entry")))
        return false;

    // Shared: an answer may still come when the wait for it is over.
    struct Asked {
        QString code;
        bool waiting = false;
    };
    const auto asked = std::make_shared<Asked>();
    const auto codeCame = [asked, this] {
        if (asked->code.isEmpty() && !std::exchange(asked->waiting, true)) {
            m_window.backEnd().askCode(
                phoneCode().mid(1) + number(), [asked](const QString &answer) {
                    *asked = { answer, false };
                });
        }
        return !asked->code.isEmpty();
    };
    if (!waitFor(tr("the code has come by SMS"), codeCame))
        return false;
    code = asked->code;
    return true;
}

bool AutoPlayer::presentKit()
{
    QWidget *button = nullptr;
    return waitFor(tr("the sandbox is running"),
               [this, &button] {
                   button = visible(QStringLiteral("btnVerify"));
                   return button && button->isEnabled() // also while nobody has answered yet
                       && toldBy(QStringLiteral("lblStatus"))
                       == QCoreApplication::translate("demo::StartPage", "Sandbox is running");
               })
        && picture(QStringLiteral("start")) && openKit(QStringLiteral("btnVerify"));
}

bool AutoPlayer::openKit(const QString &button)
{
    return tap(button, tr("the kit is open, its first answer is in"),
        [this] { return visible(QStringLiteral("viewAlternativeKit")) && isAtRest(); });
}

bool AutoPlayer::pickCountry()
{
    if (!picture(QStringLiteral("country-picker")))
        return false;

    QWidget *row = nullptr;
    const auto findRow = [&, this] {
        if (!isAtRest()) // a list that still moves takes the finger as a stop
            return false;
        row = visibleWithText(
            QStringLiteral("CountryTableCell"), QStringLiteral("lblPhoneCode"), phoneCode());
        if (row)
            return true;
        QWidget *table = visible(QStringLiteral("tblCountries"));
        if (table)
            turnWheel(table, -240);
        return false;
    };
    if (!waitFor(tr("the country with %1 is in view").arg(phoneCode()), findRow)
        || !picture(QStringLiteral("country-picker-scrolled")))
        return false;
    QTest::mouseClick(m_window.windowHandle(), Qt::LeftButton, {}, middleOf(row));

    return waitFor(tr("the phone entry shows the country"), [this] {
        return isAtRest() && toldBy(QStringLiteral("txtCountryCode")).contains(phoneCode());
    });
}

bool AutoPlayer::typeCode(const QString &code)
{
    for (int i = 0; i < code.size(); ++i) {
        const QString name = QStringLiteral("txtCode%1").arg(i);
        if (!waitFor(tr("the caret is in box %1").arg(i + 1), focused(name))
            || !type(name, code.mid(i, 1)))
            return false;
    }
    return true;
}

bool AutoPlayer::takeCodeFromMessage(const QString &code)
{
    const QString button = QStringLiteral("btnMessageCode");
    const auto offered = [&] { return toldBy(button).contains(code); };
    const auto filled = [&] {
        QString all;
        for (const char *name : { "txtCode0", "txtCode1", "txtCode2" })
            all += toldBy(QLatin1String(name));
        return all == code;
    };
    return waitFor(tr("the code in the message is offered"), offered)
        && picture(QStringLiteral("code-offered"))
        && tap(button, tr("the code is filled in"), filled);
}

bool AutoPlayer::outcome(QString &state)
{
    QWidget *page = nullptr;
    if (!see(QStringLiteral("pageOutcome"), page))
        return false;
    return waitFor(tr("the outcome is in"), [&state, page] {
        state = page->property("state").toString();
        return state != QStringLiteral("asking");
    });
}

bool AutoPlayer::refused()
{
    QString state;
    if (!outcome(state) || !picture(QStringLiteral("not-verified")))
        return false;
    // Where nobody answered, nobody refused.
    const QString title = toldBy(QStringLiteral("lblOutcome"));
    if (title != QCoreApplication::translate("demo::OutcomePage", "Not verified"))
        return fail(tr("a wrong code was not refused, the outcome is: %1").arg(title));
    step(tr("the wrong code was refused, as it should be"));
    return true;
}

bool AutoPlayer::confirmed(const QString &name)
{
    QString state;
    if (!outcome(state) || !picture(name))
        return false;
    if (state != QStringLiteral("verified"))
        return fail(toldBy(QStringLiteral("lblOutcome")) + QStringLiteral(": ")
            + toldBy(QStringLiteral("lblOutcomeWords")));

    const QString session = toldBy(QStringLiteral("lblSessionId")).remove(QLatin1Char('\n'));
    if (session.isEmpty() || m_sessions.contains(session))
        return fail(tr("no new session id on the page, but \"%1\"").arg(session));
    m_sessions.insert(session);
    step(tr("the back end has confirmed session %1").arg(session));
    return true;
}

} // namespace demo
