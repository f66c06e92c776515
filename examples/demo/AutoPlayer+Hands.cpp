#include "AutoPlayer.h"

#include "DemoWindow.h"

#include <QtCore/QDir>
#include <QtCore/QElapsedTimer>
#include <QtCore/QEventLoop>
#include <QtCore/QTimer>
#include <QtGui/QWheelEvent>
#include <QtGui/QWindow>
#include <QtTest/QTest>

#include <algorithm>
#include <cstdio>
#include <utility>

using namespace std::chrono_literals;

namespace demo {

namespace {

constexpr auto glance = 20ms; // between two looks

/// Without the marks that keep a text's direction on a mixed page.
QString bare(QString text)
{
    for (const char16_t mark : u"\u200e\u200f\u2066\u2067\u2068\u2069")
        text.remove(QChar(mark));
    return text;
}

} // namespace

bool AutoPlayer::waitQuietlyFor(const QString &what, const Condition &come, int patiences)
{
    QElapsedTimer since;
    since.start();
    QEventLoop loop;
    QTimer look;
    bool came = false;
    connect(&look, &QTimer::timeout, &loop, [&] {
        came = m_window.isVisible() && come();
        if (came || since.hasExpired((patiences * m_patience).count()) || !m_window.isVisible())
            loop.quit();
    });
    look.start(glance);
    loop.exec();
    if (!came && !m_window.isVisible())
        return fail(tr("the window was closed while waiting: %1").arg(what));
    if (!came)
        return fail(tr("not within %1 s: %2")
                        .arg(double((patiences * m_patience).count()) / 1000)
                        .arg(what));
    return true;
}

bool AutoPlayer::waitFor(const QString &what, const Condition &come, int patiences)
{
    if (!waitQuietlyFor(what, come, patiences))
        return false;
    step(what);
    return true;
}

bool AutoPlayer::fail(const QString &why)
{
    std::fprintf(stderr, "demo: FAILED: %s\n", qPrintable(why));
    frame().save(QDir(m_pictures).filePath(QStringLiteral("failed-here.png")));
    return false;
}

// The kit's own lines go to standard output; steps keep apart from them.
void AutoPlayer::step(const QString &words) const
{
    std::fprintf(stderr, "demo: %s\n", qPrintable(words));
}

QWidget *AutoPlayer::visible(const QString &name) const
{
    const auto found = m_window.findChildren<QWidget *>(name);
    for (QWidget *widget : found) {
        // Of two screens that slide, the one in the middle of the window is meant.
        if (widget->isVisible() && m_window.rect().contains(middleOf(widget)))
            return widget;
    }
    return nullptr;
}

QString AutoPlayer::toldBy(const QString &name) const
{
    const QWidget *part = visible(name);
    return part ? part->property("text").toString() : QString();
}

AutoPlayer::Condition AutoPlayer::shown(const QString &name) const
{
    return [this, name] { return visible(name) != nullptr; };
}

AutoPlayer::Condition AutoPlayer::focused(const QString &name) const
{
    return [this, name] {
        const QWidget *widget = visible(name);
        return widget && widget->hasFocus();
    };
}

QWidget *AutoPlayer::visibleWithText(
    const QString &cell, const QString &part, const QString &text) const
{
    const auto cells = m_window.findChildren<QWidget *>(cell);
    for (QWidget *candidate : cells) {
        const auto *label = candidate->findChild<QWidget *>(part);
        if (!candidate->isVisible() || !label)
            continue;
        const QString shown = bare(label->property("text").toString());
        // Hidden below a neighbour or cut by the table's edge counts as out of view.
        const QPoint middle = middleOf(candidate);
        const bool inView = candidate->visibleRegion().contains(candidate->rect().center());
        // Languages put a name at the end of what it says, or amid it.
        const auto words = [](const QString &line) {
            return QLatin1Char(' ') + line + QLatin1Char(' ');
        };
        if (words(shown).contains(words(text)) && inView && m_window.rect().contains(middle))
            return candidate;
    }
    return nullptr;
}

QPoint AutoPlayer::middleOf(const QWidget *widget) const
{
    return widget->mapTo(&m_window, widget->rect().center());
}

bool AutoPlayer::see(const QString &name, QWidget *&found)
{
    return waitQuietlyFor(tr("%1 is on the screen").arg(name), [&, this] {
        found = visible(name);
        return found && isAtRest();
    });
}

bool AutoPlayer::tap(const QString &name, const QString &effect, const Condition &come)
{
    QTest::qWait(int(m_leisure.count()));
    QWidget *target = nullptr;
    if (!see(name, target))
        return false;
    QTest::mouseClick(m_window.windowHandle(), Qt::LeftButton, {}, middleOf(target));
    step(tr("tapped %1").arg(name));
    return waitFor(effect, come);
}

void AutoPlayer::turnWheel(QWidget *target, int eighths)
{
    QWindow *window = m_window.windowHandle();
    const QPoint at = middleOf(target);
    QWheelEvent turn(at, window->mapToGlobal(at), {}, QPoint(0, eighths), Qt::NoButton, {},
        Qt::NoScrollPhase, false);
    // As a device's own: what lies under it may then leave it to the list.
    QSpontaneKeyEvent::setSpontaneous(&turn);
    qApp->notify(window, &turn);
}

bool AutoPlayer::type(const QString &name, const QString &text)
{
    for (const QChar letter : text)
        QTest::sendKeyEvent(QTest::Click, m_window.windowHandle(), Qt::Key(letter.unicode()),
            letter, Qt::NoModifier);
    return waitFor(tr("typed %1").arg(text), [this, name, text] {
        const QWidget *field = visible(name);
        return field && bare(field->property("text").toString()).remove(QLatin1Char(' ')) == text;
    });
}

QImage AutoPlayer::frame() const { return m_window.grab().toImage(); }

bool AutoPlayer::isAtRest() const { return m_window.isAtRest(); }

// For a picture: the host's buttons still fade when nothing slides any more.
bool AutoPlayer::settled()
{
    const QImage now = frame();
    return now == std::exchange(m_frame, now) && isAtRest();
}

bool AutoPlayer::iconsShown() const
{
    const QImage image = frame();
    const qreal ratio = image.devicePixelRatio();
    const auto icons = m_window.findChildren<QWidget *>(QStringLiteral("imgKitIcon"));
    return std::all_of(icons.begin(), icons.end(), [&](const QWidget *icon) {
        if (!icon->isVisible())
            return true;
        const QRectF place(icon->mapTo(&m_window, QPoint()), icon->size());
        const QImage part =
            image.copy(QRectF(place.topLeft() * ratio, place.size() * ratio).toAlignedRect());
        // An icon that is not there leaves its place in the one colour of the row.
        QSet<QRgb> colours;
        for (int y = 0; y < part.height(); ++y)
            for (int x = 0; x < part.width(); ++x)
                colours.insert(part.pixel(x, y));
        return colours.size() > 1;
    });
}

bool AutoPlayer::picture(const QString &name)
{
    if (m_pictured.contains(name))
        return true;
    m_pictured.insert(name);
    if (!waitQuietlyFor(
            tr("screen \"%1\" has come to rest").arg(name), [this] { return settled(); }))
        return false;
    const QString file =
        QDir(m_pictures)
            .filePath(
                QStringLiteral("%1-%2.png").arg(++m_number, 2, 10, QLatin1Char('0')).arg(name));
    if (!m_frame.save(file))
        return fail(tr("cannot write %1").arg(file));
    step(tr("picture %1").arg(file));
    return true;
}

} // namespace demo
