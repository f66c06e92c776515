#include "Parloquin/Toolkit/ScrollView.h"

#include <QtCore/QEvent>
#include <QtGui/QMouseEvent>
#include <QtGui/QPointingDevice>
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
    // Fingers reach the fields as a mouse does; the application sees them whichever field it is.
    // (QScroller's own gesture would do as well, if it did not leak with every viewport.)
    qApp->installEventFilter(this);
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
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseMove:
    case QEvent::MouseButtonRelease:
        if (auto *widget = qobject_cast<QWidget *>(watched); widget && isAncestorOf(widget))
            followFinger(*static_cast<QMouseEvent *>(event));
        return false;
    default:
        break;
    }
    const bool moved = event->type() == QEvent::Move || event->type() == QEvent::Resize;
    if (moved && watched == parent())
        setGeometry(parentWidget()->rect());
    if (moved && watched == m_last)
        fitContent();
    return QScrollArea::eventFilter(watched, event);
}

void ScrollView::followFinger(const QMouseEvent &event)
{
    if (event.pointerType() != QPointingDevice::PointerType::Finger)
        return;
    const QScroller::Input input = event.type() == QEvent::MouseButtonPress ? QScroller::InputPress
        : event.type() == QEvent::MouseMove                                 ? QScroller::InputMove
                                            : QScroller::InputRelease;
    QScroller::scroller(viewport())
        ->handleInput(input, viewport()->mapFromGlobal(event.globalPosition()),
            static_cast<qint64>(event.timestamp()));
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
