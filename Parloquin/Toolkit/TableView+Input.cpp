#include "Parloquin/Toolkit/Keys.h"
#include "Parloquin/Toolkit/Scrolling.h"
#include "Parloquin/Toolkit/Style.h"
#include "Parloquin/Toolkit/TableViewPrivate.h"
#include "Parloquin/Toolkit/Tappable.h"

#include <QtGui/QKeyEvent>
#include <QtGui/QMouseEvent>
#include <QtGui/QTouchEvent>
#include <QtGui/QWheelEvent>
#include <QtWidgets/QScroller>

#include <algorithm>

namespace parloquin {

namespace {
bool isForTables(const QKeyEvent &key)
{
    constexpr Qt::Key moves[] = { Qt::Key_Down, Qt::Key_Up, Qt::Key_PageDown, Qt::Key_PageUp,
        Qt::Key_Home, Qt::Key_End, Qt::Key_Select };
    const QString text = key.text();
    return !Keys::isCommand(key)
        && (Keys::isEnter(key) || (!text.isEmpty() && text.front().isPrint())
            || std::find(std::begin(moves), std::end(moves), key.key()) != std::end(moves));
}
}

void TableCell::select()
{
    if (auto *table = qobject_cast<TableView *>(parentWidget()); table && isVisible())
        table->d->select(m_path);
}

void TableView::Private::press(const QPointF &position)
{
    const auto row = geometry.rowAt(qRound(position.y()) + offset);
    // A header that sticks lies over rows; the finger on it means none of them.
    const bool onHeader =
        std::any_of(headers.cbegin(), headers.cend(), [&position](const TableHeader *header) {
            return header->isVisible() && header->geometry().contains(position.toPoint());
        });
    pressed.reset();
    if (row && !onHeader && table->cellForRow(*row)) {
        pressed = row;
        pressedAt = position;
    }
    updateStates();
}

void TableView::Private::stray(const QPointF &position)
{
    if (pressed && (position - pressedAt).manhattanLength() >= Style::strayDistance)
        cancelPress();
}

void TableView::Private::cancelPress()
{
    if (!pressed)
        return;
    pressed.reset();
    updateStates();
}

void TableView::Private::release()
{
    const auto row = pressed;
    cancelPress();
    if (row)
        select(*row);
}

void TableView::Private::select(const IndexPath &path)
{
    if (!geometry.contains(path))
        return;
    current = path;
    updateStates();
    if (delegate)
        delegate->didSelectRow(*table, path); // last: it may close the screen
}

void TableView::Private::moveCurrent(const IndexPath &path)
{
    current = path;
    keyboardFocus = true;
    reveal(path);
    updateStates();
}

void TableView::Private::updateStates()
{
    const bool rings = keyboardFocus && table->hasFocus();
    for (const auto &[key, cell] : cells) {
        const IndexPath path { key.first, key.second };
        cell->setState(pressed == path, rings && current == path);
    }
}

bool TableView::Private::handleTouch(QTouchEvent *event)
{
    if (event->points().isEmpty())
        return false;
    const auto &point = event->points().first();
    auto *scroller = QScroller::scroller(table);
    const auto time = static_cast<qint64>(event->timestamp());
    switch (event->type()) {
    case QEvent::TouchBegin: {
        // The letters take their taps as a mouse does.
        if (hasIndex && index->geometry().contains(point.position().toPoint()))
            return false;
        const bool rolling = scroller->state() == QScroller::Scrolling;
        motion.stop();
        scroller->handleInput(QScroller::InputPress, point.position(), time);
        if (!rolling) // the finger that stops a rolling table means no row
            press(point.position());
        return true;
    }
    case QEvent::TouchUpdate:
        stray(point.position());
        scroller->handleInput(QScroller::InputMove, point.position(), time);
        return true;
    case QEvent::TouchEnd:
        scroller->handleInput(QScroller::InputRelease, point.position(), time);
        release();
        return true;
    case QEvent::TouchCancel:
        scroller->handleInput(QScroller::InputRelease, point.position(), time);
        cancelPress();
        return true;
    default:
        return false;
    }
}

bool TableView::Private::handleKey(QKeyEvent *event)
{
    const auto first = geometry.first();
    if (!first)
        return false;
    if (!current || !geometry.contains(*current))
        current = geometry.rowAt(offset + TableGeometry::headerHeight).value_or(*first);
    const int page = std::max(table->height() / rowHeight - 1, 1);
    switch (event->key()) {
    case Qt::Key_Down:
        moveCurrent(keyboardFocus ? geometry.moved(*current, 1) : *current);
        return true;
    case Qt::Key_Up:
        moveCurrent(keyboardFocus ? geometry.moved(*current, -1) : *current);
        return true;
    case Qt::Key_PageDown:
        moveCurrent(geometry.moved(*current, page));
        return true;
    case Qt::Key_PageUp:
        moveCurrent(geometry.moved(*current, -page));
        return true;
    case Qt::Key_Home:
        moveCurrent(*first);
        return true;
    case Qt::Key_End:
        moveCurrent(*geometry.last());
        return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
    case Qt::Key_Select:
        if (!event->isAutoRepeat())
            select(*current);
        return true;
    default:
        return jumpToLetter(event->text());
    }
}

bool TableView::Private::jumpToLetter(const QString &typed)
{
    if (typed.isEmpty() || !typed.front().isLetterOrNumber())
        return false;
    const auto &sections = geometry.sections();
    for (std::size_t section = 0; section < sections.size(); ++section) {
        if (sections[section].rows > 0
            && sections[section].title.startsWith(typed, Qt::CaseInsensitive)) {
            jumpToSection(static_cast<int>(section));
            moveCurrent({ static_cast<int>(section), 0 });
            return true;
        }
    }
    return false;
}

bool TableView::event(QEvent *event)
{
    switch (event->type()) {
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
    case QEvent::TouchCancel: {
        const bool handled = d->handleTouch(static_cast<QTouchEvent *>(event));
        event->setAccepted(handled);
        return true;
    }
    case QEvent::ScrollPrepare:
        Scrolling::prepare(*event, size(), d->offset, d->maxOffset());
        return true;
    case QEvent::ShortcutOverride:
        // What moves the ring, chooses or jumps is no shortcut of the host's meanwhile.
        event->setAccepted(isForTables(*static_cast<QKeyEvent *>(event)));
        return true;
    case QEvent::Scroll:
        d->setOffset(Scrolling::targetOf(*event));
        return true;
    default:
        return QWidget::event(event);
    }
}

void TableView::mousePressEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton)
        d->press(event->position());
    else
        event->ignore();
}

void TableView::mouseMoveEvent(QMouseEvent *event) { d->stray(event->position()); }

void TableView::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton)
        d->release();
    else
        event->ignore();
}

void TableView::wheelEvent(QWheelEvent *event)
{
    d->cancelPress();
    setContentOffset(d->offset + Scrolling::distanceOf(*event));
    event->accept();
}

void TableView::keyPressEvent(QKeyEvent *event)
{
    if (Keys::isCommand(*event) || !d->handleKey(event))
        QWidget::keyPressEvent(event);
}

void TableView::focusInEvent(QFocusEvent *event)
{
    QWidget::focusInEvent(event);
    d->keyboardFocus = Tappable::isKeyboardReason(event->reason(), d->keyboardFocus);
    if (!d->current || !cellForRow(*d->current)) {
        const auto cells = visibleCells();
        if (!cells.isEmpty())
            d->current = cells.first()->indexPath();
    }
    if (d->keyboardFocus && d->current)
        d->reveal(*d->current);
    d->updateStates();
}

bool TableView::hasKeyboardFocus() const { return d->keyboardFocus && hasFocus(); }

void TableView::focusOutEvent(QFocusEvent *event)
{
    QWidget::focusOutEvent(event);
    d->updateStates();
}

} // namespace parloquin
