#include "Parloquin/Toolkit/AccessibleField.h"

#include "Parloquin/Toolkit/TextField.h"

namespace parloquin {

AccessibleField::AccessibleField(TextField *field)
    : AccessibleNode(field, QAccessible::EditableText)
{
}

TextField *AccessibleField::field() const { return static_cast<TextField *>(widget()); }

// What is set up before it is first shown is no news. Of a caret that moved then, a reader that
// lags behind would hear when the field has the keyboard, take that as known, and say nothing of
// it. Nor is what Tab selects, which is said with the field.
bool AccessibleField::isValid() const
{
    return AccessibleNode::isValid() && !field()->isReadOnly()
        && field()->testAttribute(Qt::WA_WState_Created) && !field()->isChangingFocus();
}

QString AccessibleField::text(QAccessible::Text kind) const
{
    return kind == QAccessible::Value ? field()->text() : AccessibleNode::text(kind);
}

QAccessible::State AccessibleField::state() const
{
    auto state = AccessibleNode::state();
    state.editable = true;
    state.selectableText = true;
    return state;
}

void *AccessibleField::interface_cast(QAccessible::InterfaceType type)
{
    if (type == QAccessible::TextInterface)
        return static_cast<QAccessibleTextInterface *>(this);
    if (type == QAccessible::EditableTextInterface)
        return static_cast<QAccessibleEditableTextInterface *>(this);
    return AccessibleNode::interface_cast(type);
}

void AccessibleField::selection(int index, int *start, int *end) const
{
    *start = *end = 0;
    if (index != 0 || !field()->hasSelectedText())
        return;
    *start = field()->selectionStart();
    *end = field()->selectionEnd();
}

int AccessibleField::selectionCount() const { return field()->hasSelectedText() ? 1 : 0; }

void AccessibleField::addSelection(int start, int end) { setSelection(0, start, end); }

void AccessibleField::removeSelection(int index)
{
    if (index == 0)
        field()->deselect();
}

void AccessibleField::setSelection(int index, int start, int end)
{
    if (index == 0)
        field()->setSelection(start, end - start);
}

int AccessibleField::cursorPosition() const { return field()->cursorPosition(); }

void AccessibleField::setCursorPosition(int position) { field()->setCursorPosition(position); }

QString AccessibleField::text(int start, int end) const
{
    return field()->text().mid(start, end - start);
}

int AccessibleField::characterCount() const { return static_cast<int>(field()->text().size()); }

QRect AccessibleField::characterRect(int offset) const
{
    if (offset < 0 || offset >= characterCount())
        return {};
    // A line edit tells the place of its caret alone; the texts here are a number or a digit.
    const auto metrics = field()->fontMetrics();
    const auto caret = field()->inputMethodQuery(Qt::ImCursorRectangle).toRect();
    const auto advance = [&](int length) {
        return metrics.horizontalAdvance(field()->text().left(length));
    };
    const int x = caret.center().x() + advance(offset) - advance(cursorPosition());
    const QRect place(x, caret.y(), advance(offset + 1) - advance(offset), caret.height());
    return { field()->mapToGlobal(place.topLeft()), place.size() };
}

int AccessibleField::offsetAtPoint(const QPoint &point) const
{
    // A line edit knows where a text is that it paints itself, and a digit in its box it does not.
    int at = 0;
    while (at < characterCount() && point.x() > characterRect(at).right())
        ++at;
    return at;
}

void AccessibleField::scrollToSubstring(int start, int) { field()->setCursorPosition(start); }

QString AccessibleField::attributes(int, int *start, int *end) const
{
    *start = 0;
    *end = characterCount();
    return {};
}

void AccessibleField::deleteText(int start, int end)
{
    if (start != end)
        replaceText(start, end, {});
}

void AccessibleField::insertText(int offset, const QString &text)
{
    if (!text.isEmpty())
        replaceText(offset, offset, text);
}

void AccessibleField::replaceText(int start, int end, const QString &text)
{
    if (!isReached())
        return;
    if (start == end)
        field()->setCursorPosition(start);
    else
        field()->setSelection(start, end - start);
    if (text.isEmpty())
        field()->del();
    else
        field()->insert(text);
}

} // namespace parloquin
