#include "Parloquin/Toolkit/ScrollView.h"

#include "Parloquin/Toolkit/Button.h"
#include "Parloquin/Toolkit/Finger.h"
#include "Parloquin/Toolkit/Scrolling.h"

#include <QtCore/QEvent>
#include <QtGui/QMouseEvent>
#include <QtGui/QWheelEvent>
#include <QtWidgets/QApplication>
#include <QtWidgets/QScroller>

#include <algorithm>

namespace parloquin {

namespace {
// px over and under what is brought into view: room for its box and focus ring
constexpr int revealMargin = 14;
}

ScrollView::ScrollView(QWidget *parent)
    : Pane(parent)
    , m_content(new Pane(this))
{
    connect(qApp, &QApplication::focusChanged, this, [this] { revealFocus(); });
    parent->installEventFilter(this);
    setGeometry(parent->rect());
}

void ScrollView::setLastWidget(QWidget *last, int margin)
{
    m_last = last;
    m_margin = margin;
    last->installEventFilter(this);
    fitContent();
}

void ScrollView::setCover(QWidget *cover)
{
    m_cover = cover;
    cover->installEventFilter(this);
}

bool ScrollView::eventFilter(QObject *watched, QEvent *event)
{
    const bool moved = event->type() == QEvent::Move || event->type() == QEvent::Resize;
    if (moved && watched == parent())
        fitParent();
    if (moved && watched == m_last)
        fitContent();
    if (watched == m_cover
        && (moved || event->type() == QEvent::ShowToParent
            || event->type() == QEvent::HideToParent))
        fitParent();
    return Pane::eventFilter(watched, event);
}

void ScrollView::mousePressEvent(QMouseEvent *event) { followFinger(event); }

void ScrollView::mouseMoveEvent(QMouseEvent *event) { followFinger(event); }

void ScrollView::mouseReleaseEvent(QMouseEvent *event) { followFinger(event); }

// Fingers reach fields and buttons as a mouse does, and those hand on what they get. (QScroller's
// own gesture would do as well, if it did not leak with every widget.)
void ScrollView::followFinger(QMouseEvent *event)
{
    event->ignore(); // who goes back a screen by it stands further up
    if (!isFinger(*event))
        return;
    const QScroller::Input input = event->type() == QEvent::MouseMove ? QScroller::InputMove
        : event->type() == QEvent::MouseButtonRelease                 ? QScroller::InputRelease
                                                                      : QScroller::InputPress;
    QScroller::scroller(this)->handleInput(
        input, mapFromGlobal(event->globalPosition()), static_cast<qint64>(event->timestamp()));
}

bool ScrollView::event(QEvent *event)
{
    switch (event->type()) {
    case QEvent::ScrollPrepare:
        Scrolling::prepare(*event, size(), m_offset, maxOffset());
        return true;
    case QEvent::Scroll:
        setOffset(Scrolling::targetOf(*event));
        return true;
    default:
        return Pane::event(event);
    }
}

void ScrollView::wheelEvent(QWheelEvent *event)
{
    event->setAccepted(maxOffset() > 0);
    setOffset(m_offset + Scrolling::distanceOf(*event));
}

void ScrollView::resizeEvent(QResizeEvent *)
{
    setOffset(m_offset);
    revealFocus();
}

int ScrollView::maxOffset() const { return std::max(m_least - height(), 0); }

void ScrollView::setOffset(int offset)
{
    m_offset = std::clamp(offset, 0, maxOffset());
    m_content->setGeometry(0, -m_offset, width(), std::max(height(), m_least));
}

void ScrollView::fitParent()
{
    QRect place = parentWidget()->rect();
    if (m_cover && m_cover->isVisibleTo(parentWidget()))
        place.setBottom(std::min(place.bottom(), m_cover->y() - 1 - cutLine(m_cover->y())));
    setGeometry(place);
}

// Of the last text's line, if it would be cut at this height: it shows whole or, at first, not at
// all.
int ScrollView::cutLine(int end) const
{
    const auto *const link = qobject_cast<const Button *>(m_last);
    const int inside = link ? end - link->mapTo(parentWidget(), QPoint()).y() : 0;
    return inside > 0 && inside < link->height() ? inside % link->lineHeight() : 0;
}

void ScrollView::fitContent()
{
    const int bottom = m_last->mapTo(contentView(), QPoint(0, m_last->height())).y();
    m_least = bottom + m_margin;
    setOffset(m_offset);
}

void ScrollView::revealFocus()
{
    QWidget *focused = QApplication::focusWidget();
    if (!focused || !contentView()->isAncestorOf(focused))
        return;
    // The field last: where both do not fit, it wins.
    if (m_button)
        reveal(m_button);
    reveal(focused);
}

void ScrollView::reveal(const QWidget *widget)
{
    const int top = widget->mapTo(contentView(), QPoint()).y() - revealMargin;
    const int bottom = top + widget->height() + 2 * revealMargin;
    setOffset(std::min(std::max(m_offset, bottom - height()), top));
}

} // namespace parloquin
