#include "Parloquin/Toolkit/FocusRing.h"

#include "Parloquin/Toolkit/Button.h"
#include "Parloquin/Toolkit/DevicePixels.h"
#include "Parloquin/Toolkit/Style.h"
#include "Parloquin/Toolkit/TappableView.h"
#include "Parloquin/Toolkit/TextField.h"
#include "Parloquin/Toolkit/View.h"

#include <QtCore/QEvent>
#include <QtGui/QPainter>
#include <QtWidgets/QApplication>

namespace parloquin {

namespace {

constexpr int ringGap = 2; // px between edge and ring
constexpr int ringWidth = 2; // px
constexpr int reach = ringGap + ringWidth;
constexpr qreal insideRadius = 6; // px, of a ring inside its edge

// What rings for the focused widget: itself, the box around it, or nothing.
QWidget *ringedFor(QWidget *screen, QWidget *focused)
{
    const auto boxes = screen->findChildren<View *>();
    for (auto *box : boxes) {
        if (box->ringField() == focused)
            return box;
    }
    if (qobject_cast<TextField *>(focused))
        return focused;
    const bool rings = qobject_cast<TappableView *>(focused) || qobject_cast<Button *>(focused);
    return rings && static_cast<Tappable *>(focused)->hasKeyboardFocus() ? focused : nullptr;
}

}

FocusRing::FocusRing(QWidget *screen)
    : Pane(screen)
    , m_screen(screen)
{
    setObjectName(QStringLiteral("focusRing"));
    setAttribute(Qt::WA_TransparentForMouseEvents);
    hide();
    connect(qApp, &QApplication::focusChanged, this,
        [this](QWidget *, QWidget *focused) { follow(focused); });
}

void FocusRing::paint(
    QPainter &painter, const QRectF &rect, qreal radius, bool inside, const QColor &color)
{
    const int offset = inside ? ringGap : -reach;
    painter.save();
    DevicePixels::drawFrame(painter, rect.adjusted(offset, offset, -offset, -offset), ringWidth,
        inside ? insideRadius : radius + reach, color);
    painter.restore();
}

void FocusRing::follow(QWidget *focused)
{
    if (m_focused)
        m_focused->removeEventFilter(this);
    m_focused = focused && m_screen->isAncestorOf(focused) ? focused : nullptr;
    auto *target = m_focused ? ringedFor(m_screen, m_focused) : nullptr;
    for (auto *watched = m_target.data(); watched && watched != m_screen;
         watched = watched->parentWidget())
        watched->removeEventFilter(this);
    m_target = target;
    for (auto *watched = target; watched && watched != m_screen; watched = watched->parentWidget())
        watched->installEventFilter(this);
    if (m_focused)
        m_focused->installEventFilter(this);
    place();
}

void FocusRing::place()
{
    if (!m_target) {
        hide();
        return;
    }
    m_radius = 0;
    m_inside = false;
    if (const auto *view = qobject_cast<View *>(m_target)) {
        m_radius = view->cornerRadius();
    } else if (const auto *panel = qobject_cast<TappableView *>(m_target)) {
        m_radius = panel->cornerRadius();
        m_inside = panel->ringsInside();
    } else if (const auto *button = qobject_cast<Button *>(m_target)) {
        m_radius = button->cornerRadius();
    } else if (const auto *field = qobject_cast<TextField *>(m_target)) {
        m_radius = field->cornerRadius();
    }
    const int margin = m_inside ? 0 : reach;
    setGeometry(QRect(m_target->mapTo(m_screen, QPoint()), m_target->size())
                    .adjusted(-margin, -margin, margin, margin));
    raise();
    show();
    update();
}

void FocusRing::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    const int margin = m_inside ? 0 : reach;
    paint(painter, QRectF(rect()).adjusted(margin, margin, -margin, -margin), m_radius, m_inside,
        Style::blue);
}

bool FocusRing::event(QEvent *event)
{
    const bool handled = Pane::event(event);
    if (SheetSize::heeds(*event)) // and gives back a place that may be an older one
        place();
    return handled;
}

bool FocusRing::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Move || event->type() == QEvent::Resize)
        place();
    // What has the focus may be told anew how it came by it, once it has heard.
    if (event->type() == QEvent::FocusIn && watched == m_focused)
        QMetaObject::invokeMethod(
            this, [this] { follow(QApplication::focusWidget()); }, Qt::QueuedConnection);
    return QWidget::eventFilter(watched, event);
}

} // namespace parloquin
