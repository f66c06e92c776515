#include "Parloquin/TestKit/Person.h"

#include "Parloquin/TestKit/Http.h"
#include "Parloquin/TestKit/PacedStyle.h"
#include "Parloquin/TestKit/SandboxPrivate.h"

#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QUrl>
#include <QtCore/QUrlQuery>
#include <QtGui/QWheelEvent>
#include <QtGui/QWindow>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>

namespace ParloquinTest {

namespace {

QString textOf(const QWidget *widget) { return widget->property("text").toString(); }

QString digitsOf(QString text)
{
    text.removeIf([](QChar letter) { return !letter.isDigit(); });
    return text;
}

QPoint middleOf(const QWidget *widget)
{
    return widget->mapTo(widget->window(), widget->rect().center());
}

} // namespace

void switchMotionOff()
{
    QApplication::setStyle(new PacedStyle(0, QApplication::style()->objectName()));
}

Person::Person(Sandbox &sandbox, QWidget *container)
    : m_sandbox(sandbox)
    , m_container(container)
{
}

void Person::setPatience(std::chrono::milliseconds patience) { m_patience = patience; }

bool Person::isAtRest() const
{
    return m_container && m_container->isVisible() && m_container->property("atRest").toBool();
}

bool Person::hasSettled() const { return !m_container || !m_container->isVisible() || isAtRest(); }

QWidget *Person::visible(const QString &name) const
{
    if (!m_container)
        return nullptr;
    const auto all = m_container->findChildren<QWidget *>(name);
    const auto seen = std::find_if(all.cbegin(), all.cend(), [](const QWidget *widget) {
        return widget->isVisible() && !widget->visibleRegion().isEmpty();
    });
    return seen == all.cend() ? nullptr : *seen;
}

Person::Screen Person::screen() const
{
    if (!isAtRest())
        return Screen::none;
    if (visible(QStringLiteral("tblCountries")))
        return Screen::countries;
    if (visible(QStringLiteral("txtCode0")))
        return Screen::code;
    if (visible(QStringLiteral("txtPhoneNumber")))
        return Screen::number;
    return visible(QStringLiteral("tblKits")) ? Screen::apps : Screen::none;
}

bool Person::waits(const QString &what, const Condition &condition) const
{
    return QTest::qWaitFor(condition, static_cast<int>(m_patience.count())) || fail(what);
}

bool Person::sees(Screen wanted, const QString &what) const
{
    return waits(what, [this, wanted] { return screen() == wanted; });
}

/// Waits for the effect of a call, or until its answer had none for so long that none will come.
bool Person::answered(
    const QString &call, int before, const QString &what, const Condition &effect) const
{
    constexpr int quiet = 15; // looks of 10 ms
    int looks = 0;
    bool isThere = false;
    const bool isOver = waits(what, [&] {
        isThere = effect();
        looks = isAtRest() && m_sandbox.requests(call) > before ? looks + 1 : 0;
        return isThere || looks > quiet;
    });
    return isOver && (isThere || fail(what));
}

bool Person::taps(QWidget *widget)
{
    QWidget *const window = widget->window();
    const QPoint middle = middleOf(widget);
    const QWidget *const hit = window->childAt(middle);
    if (!hit || (hit != widget && !widget->isAncestorOf(hit) && !hit->isAncestorOf(widget)))
        return fail(QStringLiteral("%1 is covered by %2")
                        .arg(widget->objectName(),
                            hit ? QLatin1String(hit->metaObject()->className())
                                : QLatin1String("the window's edge")));
    QTest::mouseClick(window->windowHandle(), Qt::LeftButton, {}, middle);
    return true;
}

bool Person::taps(const QString &name)
{
    QWidget *found = nullptr;
    return waits(QStringLiteral("no %1 to tap").arg(name), [&] {
        found = isAtRest() ? visible(name) : nullptr;
        return found && found->isEnabled();
    }) && taps(found);
}

bool Person::keys(const QString &text)
{
    if (!m_container)
        return fail(QStringLiteral("the container is gone"));
    QWidget *const window = m_container->window();
    window->activateWindow();
    if (!QTest::qWaitForWindowActive(window->windowHandle()))
        return fail(QStringLiteral("the window does not become active"));
    // In place of what stands there.
    QTest::keyClick(window->windowHandle(), Qt::Key_A, Qt::ControlModifier);
    for (const QChar letter : text)
        QTest::sendKeyEvent(QTest::Click, window->windowHandle(),
            Qt::Key(letter.toUpper().unicode()), letter, Qt::NoModifier);
    return true;
}

namespace {

// Languages put an app's name anywhere in what its row says; one phone code may begin like another.
bool names(const QString &shown, const QString &text)
{
    const auto words = [](const QString &line) {
        return QLatin1Char(' ') + line + QLatin1Char(' ');
    };
    return text.startsWith(QLatin1Char('+')) ? shown.endsWith(text)
                                             : words(shown).contains(words(text));
}

} // namespace

QWidget *Person::row(const QString &cell, const QString &label, const QString &text) const
{
    if (!m_container)
        return nullptr;
    const auto all = m_container->findChildren<QWidget *>(cell);
    for (QWidget *candidate : all) {
        const auto *const shown = candidate->findChild<QWidget *>(label);
        // One that its list or its window cuts off in the middle is not there to tap yet.
        if (shown && names(textOf(shown), text) && candidate->isVisible()
            && candidate->visibleRegion().contains(candidate->rect().center()))
            return candidate;
    }
    return nullptr;
}

bool Person::sendsFrom(const QString &app)
{
    QWidget *found = nullptr;
    const auto findRow = [&] {
        found = screen() == Screen::apps
            ? row(QStringLiteral("ThirdPartyKitTableCell"), QStringLiteral("lblKitName"), app)
            : nullptr;
        return found != nullptr;
    };
    const int starts = m_sandbox.requests(QStringLiteral("start"));
    const int checks = m_sandbox.requests(QStringLiteral("check"));
    (void)m_sandbox.d->desktop.takeOpened();
    QByteArray link;
    const auto isOpened = [&] {
        if (link.isEmpty())
            link = m_sandbox.d->desktop.takeOpened();
        return !link.isEmpty() && isAtRest();
    };
    if (!waits(QStringLiteral("no app %1 in the list").arg(app), findRow) || !taps(found)
        || !answered(QStringLiteral("start"), starts,
            QStringLiteral("the app of %1 was not opened").arg(app), isOpened))
        return false;

    const QUrlQuery query { QUrl(QString::fromUtf8(link)) };
    const QJsonObject message {
        { QStringLiteral("app"), query.queryItemValue(QStringLiteral("app"), QUrl::FullyDecoded) },
        { QStringLiteral("text"), query.queryItemValue(QStringLiteral("text"), QUrl::FullyDecoded) }
    };
    const HttpAnswer sent = http(m_sandbox.host(), "/sandbox/messages",
        QJsonDocument(message).toJson(QJsonDocument::Compact));
    if (sent.status != 202)
        return fail(
            QStringLiteral("the message was not taken: %1").arg(QString::fromUtf8(sent.body)));
    QCoreApplication::sendPostedEvents(); // the reference of the start is kept behind the link
    Q_EMIT qApp->applicationStateChanged(Qt::ApplicationInactive);
    Q_EMIT qApp->applicationStateChanged(Qt::ApplicationActive);
    return waits(QStringLiteral("the outcome was not asked for"),
        [&] { return m_sandbox.requests(QStringLiteral("check")) > checks && hasSettled(); });
}

bool Person::picksCountry(const QString &phoneCode)
{
    constexpr int turn = -1200; // eighths of a degree: ten notches
    QWidget *found = nullptr;
    const auto findRow = [&] {
        if (screen() != Screen::countries)
            return false;
        found = row(QStringLiteral("CountryTableCell"), QStringLiteral("lblPhoneCode"), phoneCode);
        QWidget *const table = visible(QStringLiteral("tblCountries"));
        if (found || !table)
            return found != nullptr;
        QWindow *const window = table->window()->windowHandle();
        const QPoint at = middleOf(table);
        QWheelEvent wheel(at, window->mapToGlobal(at), {}, QPoint(0, turn), Qt::NoButton, {},
            Qt::NoScrollPhase, false);
        // As a device's own: what lies under it may then leave it to the list.
        QSpontaneKeyEvent::setSpontaneous(&wheel);
        qApp->notify(window, &wheel);
        return false;
    };
    return taps(QStringLiteral("viewCountryBack"))
        && waits(QStringLiteral("no country with %1 in the list").arg(phoneCode), findRow)
        && taps(found) && sees(Screen::number, QStringLiteral("the list of countries stays"));
}

bool Person::asksForCode(const QString &number, const QString &phoneCode)
{
    if (screen() != Screen::number
        && (!taps(QStringLiteral("viewAlternativeKit"))
            || !sees(Screen::number, QStringLiteral("no screen for the number"))))
        return false;
    const QWidget *const shown = visible(QStringLiteral("txtCountryCode"));
    if ((!shown || textOf(shown) != phoneCode) && !picksCountry(phoneCode))
        return false;
    const int before = m_sandbox.requests(QStringLiteral("send-otp"));
    const auto isTyped = [this, &number] {
        const QWidget *const field = visible(QStringLiteral("txtPhoneNumber"));
        return field && digitsOf(textOf(field)) == digitsOf(number);
    };
    return taps(QStringLiteral("txtPhoneNumber")) && keys(number)
        && waits(QStringLiteral("the number is not in its field"), isTyped)
        && taps(QStringLiteral("btnContinue"))
        && answered(QStringLiteral("send-otp"), before, QStringLiteral("no screen for the code"),
            [this] { return screen() == Screen::code; });
}

bool Person::types(const QString &code)
{
    if (!sees(Screen::code, QStringLiteral("no screen for the code")))
        return false;
    const auto isTyped = [this, &code] {
        QString typed; // in every box: behind a short code stands what was typed before
        for (int i = 0; const auto *const box = visible(QStringLiteral("txtCode%1").arg(i)); ++i)
            typed += textOf(box);
        return typed == code;
    };
    const int before = m_sandbox.requests(QStringLiteral("check-otp"));
    return taps(QStringLiteral("txtCode0")) && keys(code)
        && waits(QStringLiteral("the code is not in its boxes"), isTyped)
        && taps(QStringLiteral("btnCheck"))
        && waits(QStringLiteral("the code was not checked"), [&] {
               return m_sandbox.requests(QStringLiteral("check-otp")) > before && hasSettled();
           });
}

bool Person::goesBack()
{
    const Screen before = screen();
    return taps(QStringLiteral("btnBack"))
        && waits(QStringLiteral("the screen stays"),
            [this, before] { return screen() != Screen::none && screen() != before; });
}

bool Person::closes()
{
    return taps(QStringLiteral("btnClose")) && waits(QStringLiteral("the kit stays open"), [this] {
        return !m_container || !m_container->isVisible();
    });
}

bool Person::fail(const QString &what) const
{
    QStringList shown;
    const auto all = m_container ? m_container->findChildren<QWidget *>() : QList<QWidget *>();
    for (const QWidget *widget : all) {
        const QString text = textOf(widget);
        if (widget->isVisible() && !text.isEmpty())
            shown += text;
    }
    qWarning("TestKit: %s.\n On screen: %s\n The sandbox got:\n%s", qPrintable(what),
        m_container ? qPrintable(shown.join(QStringLiteral(" | "))) : "the container is gone",
        qPrintable(m_sandbox.report()));
    return false;
}

} // namespace ParloquinTest
