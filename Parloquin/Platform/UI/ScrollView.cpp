#include "Parloquin/Platform/UI/ScrollView.h"

#include <QtCore/QEvent>
#include <QtWidgets/QApplication>
#include <QtWidgets/QScrollBar>
#include <QtWidgets/QScroller>

#include <algorithm>

namespace parloquin {

namespace {
// px over and under what is brought into view: room for its box and focus ring
constexpr int revealMargin = 14;
}

ScrollView::ScrollView(QWidget *parent)
    : QScrollArea(parent)
{
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::NoFocus);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setWidgetResizable(true);
    setWidget(new QWidget);
    // The screen's own background shows through.
    viewport()->setAutoFillBackground(false);
    widget()->setAutoFillBackground(false);
    QScroller::grabGesture(viewport(), QScroller::TouchGesture);

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

bool ScrollView::eventFilter(QObject *watched, QEvent *event)
{
    const bool moved = event->type() == QEvent::Move || event->type() == QEvent::Resize;
    if (moved && watched == parent())
        setGeometry(parentWidget()->rect());
    if (moved && watched == m_last)
        fitContent();
    return QScrollArea::eventFilter(watched, event);
}

void ScrollView::resizeEvent(QResizeEvent *event)
{
    QScrollArea::resizeEvent(event);
    revealFocus();
}

void ScrollView::fitContent()
{
    const int bottom = m_last->mapTo(contentView(), QPoint(0, m_last->height())).y();
    contentView()->setMinimumHeight(bottom + m_margin);
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
    // All of it: ensureWidgetVisible() would be content with a field's caret.
    const int top = widget->mapTo(contentView(), QPoint()).y() - revealMargin;
    const int bottom = top + widget->height() + 2 * revealMargin;
    QScrollBar *bar = verticalScrollBar();
    bar->setValue(std::min(std::max(bar->value(), bottom - viewport()->height()), top));
}

} // namespace parloquin
