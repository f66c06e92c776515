#include "Parloquin/Toolkit/ScrollView.h"

#include "Parloquin/Toolkit/Finger.h"
#include "Parloquin/Toolkit/Keys.h"

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

void ScrollView::keyPressEvent(QKeyEvent *event)
{
    // The base takes every arrow for its own, Alt+Left too.
    if (Keys::isCommand(*event))
        event->ignore();
    else
        QScrollArea::keyPressEvent(event);
}

void ScrollView::mousePressEvent(QMouseEvent *event) { followFinger(event); }

void ScrollView::mouseMoveEvent(QMouseEvent *event) { followFinger(event); }

void ScrollView::mouseReleaseEvent(QMouseEvent *event) { followFinger(event); }

// Fingers reach fields and buttons as a mouse does, and those hand on what they get. (QScroller's
// own gesture would do as well, if it did not leak with every viewport.)
void ScrollView::followFinger(QMouseEvent *event)
{
    event->ignore(); // who goes back a screen by it stands further up
    if (!isFinger(*event))
        return;
    const QScroller::Input input = event->type() == QEvent::MouseMove ? QScroller::InputMove
        : event->type() == QEvent::MouseButtonRelease                 ? QScroller::InputRelease
                                                                      : QScroller::InputPress;
    QScroller::scroller(viewport())
        ->handleInput(input, viewport()->mapFromGlobal(event->globalPosition()),
            static_cast<qint64>(event->timestamp()));
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
