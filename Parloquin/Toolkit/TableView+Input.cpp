#include "Parloquin/Toolkit/AccessibleTable.h"
#include "Parloquin/Toolkit/Keys.h"
#include "Parloquin/Toolkit/NavigationController.h"
#include "Parloquin/Toolkit/Scrolling.h"
#include "Parloquin/Toolkit/Style.h"
#include "Parloquin/Toolkit/TableViewPrivate.h"
#include "Parloquin/Toolkit/Tappable.h"

#include <QtGui/QAccessible>
#include <QtGui/QGuiApplication>
#include <QtGui/QKeyEvent>
#include <QtGui/QMouseEvent>
#include <QtGui/QStyleHints>
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

// Without accents.
QString bare(const QString &text)
{
    QString bare = text.normalized(QString::NormalizationForm_KD);
    bare.removeIf([](QChar c) { return c.category() == QChar::Mark_NonSpacing; });
    return bare;
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
    setCurrent(path);
    updateStates();
    NavigationController::notePress(*table);
    if (delegate)
        delegate->didSelectRow(*table, path); // last: it may close the screen
}

void TableView::Private::moveCurrent(const IndexPath &path)
{
    keyboardFocus = true;
    reveal(path);
    setCurrent(path);
    updateStates();
}

void TableView::Private::setCurrent(const std::optional<IndexPath> &path)
{
    if (current == path && !focusUntold)
        return;
    current = path;
    AccessibleTable::tellFocus(*table);
}

void TableView::Private::startAtView()
{
    if (current && table->cellForRow(*current))
        return;
    if (!cells.empty())
        current = cells.begin()->second->indexPath();
}

void TableView::Private::updateStates()
{
    const bool rings = keyboardFocus && table->hasFocus();
    for (const auto &[key, cell] : cells) {
        const IndexPath path { key.first, key.second };
        cell->setState(pressed == path, rings && current == path);
    }
}

// One finger leads; what others do beside it means nothing. (A cancelled touch says of no finger
// where it is.)
bool TableView::Private::handleTouch(QTouchEvent *event)
{
    auto *scroller = QScroller::scroller(table);
    const auto time = static_cast<qint64>(event->timestamp());
    if (event->type() == QEvent::TouchCancel) {
        finger.reset();
        cancelPress();
        scroller->stop();
        return true;
    }
    if (event->type() == QEvent::TouchBegin) {
        const auto &point = event->points().first();
        // The letters take their taps as a mouse does.
        if (hasIndex && index->geometry().contains(point.position().toPoint()))
            return false;
        finger = point.id();
    }
    const auto *point = finger ? event->pointById(*finger) : nullptr;
    if (!point)
        return true;
    switch (point->state()) {
    case QEventPoint::Pressed: {
        const bool rolling = scroller->state() == QScroller::Scrolling;
        scroller->handleInput(QScroller::InputPress, point->position(), time);
        if (!rolling) // the finger that stops a rolling table means no row
            press(point->position());
        break;
    }
    case QEventPoint::Released:
        finger.reset();
        scroller->handleInput(QScroller::InputRelease, point->position(), time);
        release();
        break;
    default:
        stray(point->position());
        scroller->handleInput(QScroller::InputMove, point->position(), time);
        break;
    }
    return true;
}

bool TableView::Private::handleKey(QKeyEvent *event)
{
    const auto first = geometry.first();
    if (!first)
        return isForTables(*event); // to come, perhaps: the keys are not the host's meanwhile
    if (!current || !geometry.contains(*current))
        current = geometry.rowAt(offset + TableGeometry::headerHeight).value_or(*first);
    const int page = std::max(table->height() / rowHeight - 1, 1);
    // The first key shows which row it is, unless a screen reader has said so.
    const bool known = keyboardFocus || QAccessible::isActive();
    switch (event->key()) {
    case Qt::Key_Down:
        moveCurrent(known ? geometry.moved(*current, 1) : *current);
        return true;
    case Qt::Key_Up:
        moveCurrent(known ? geometry.moved(*current, -1) : *current);
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
        if (!Keys::acts(*event, *table))
            return true;
        // Nobody chooses what is not seen: the first press shows which row it would be.
        if (known && offsetShowing(*current) == offset)
            select(*current);
        else
            moveCurrent(*current);
        return true;
    default:
        return false;
    }
}

// The letters of a row's name one after another, as in every list; a pause begins anew. One letter
// again and again goes through the rows that begin with it.
bool TableView::Private::typeAhead(QKeyEvent *event)
{
    const QString text = event->text();
    const int pause = QGuiApplication::styleHints()->keyboardInputInterval();
    const bool goesOn = !typed.isEmpty() && typedLast.isValid() && !typedLast.hasExpired(pause);
    if (text.isEmpty() || !text.front().isPrint() || (text == QLatin1String(" ") && !goesOn))
        return false;
    typed = goesOn ? typed + text : text;
    typedLast.start();
    const bool sameLetter = typed.count(typed.front()) == typed.size();
    auto row = find(typed, typed.size() == 1);
    if (!row && sameLetter)
        row = find(typed.left(1), true);
    if (row)
        moveCurrent(*row);
    return true;
}

std::optional<IndexPath> TableView::Private::find(const QString &beginning, bool afterCurrent) const
{
    const auto first = geometry.first();
    if (!first)
        return {};
    // Whoever has no key for Å writes A, but a row as written wins.
    const QString plain = bare(beginning);
    std::optional<IndexPath> alike;
    IndexPath row = current && geometry.contains(*current) ? *current : *first;
    const IndexPath start = row;
    bool skip = afterCurrent && keyboardFocus;
    do {
        if (!skip) {
            const QString name = source->nameOfRow(*table, row);
            if (name.startsWith(beginning, Qt::CaseInsensitive))
                return row;
            if (!alike && bare(name).startsWith(plain, Qt::CaseInsensitive))
                alike = row;
        }
        skip = false;
        const IndexPath next = geometry.moved(row, 1);
        row = next == row ? *first : next;
    } while (!(row == start));
    return alike;
}

void TableView::letGo() { d->cancelPress(); }

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
        return Pane::event(event);
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
    QScroller::scroller(this)->stop();
    setContentOffset(d->offset + Scrolling::distanceOf(*event));
    event->accept();
}

void TableView::keyPressEvent(QKeyEvent *event)
{
    if (!Keys::isCommand(*event)) {
        if (d->typeAhead(event))
            return;
        d->typed.clear(); // another key ends the word
        if (d->handleKey(event))
            return;
    }
    QWidget::keyPressEvent(event);
}

void TableView::focusInEvent(QFocusEvent *event)
{
    QWidget::focusInEvent(event);
    d->keyboardFocus = Tappable::isKeyboardReason(event->reason(), d->keyboardFocus);
    d->startAtView();
    if (d->keyboardFocus && d->current)
        d->reveal(*d->current);
    d->updateStates();
    // Later: behind Qt's own word that the table has it.
    d->focusUntold = true;
    QMetaObject::invokeMethod(
        this,
        [this] {
            if (d->focusUntold)
                AccessibleTable::tellFocus(*this);
        },
        Qt::QueuedConnection);
}

bool TableView::hasKeyboardFocus() const { return d->keyboardFocus && hasFocus(); }

void TableView::focusOutEvent(QFocusEvent *event)
{
    QWidget::focusOutEvent(event);
    d->updateStates();
}

} // namespace parloquin
