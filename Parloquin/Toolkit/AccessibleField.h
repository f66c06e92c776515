#pragma once

#include "Parloquin/Toolkit/AccessibleNode.h"

namespace parloquin {

class TextField;

/// \brief A field to type in. One that only shows a text is told by what stands around it.
///
/// Qt's own would do, if it did not name a widget that only lays out as its parent.
class AccessibleField : public AccessibleNode,
                        public QAccessibleTextInterface,
                        public QAccessibleEditableTextInterface {
public:
    explicit AccessibleField(TextField *field);

    [[nodiscard]] bool isValid() const override;
    [[nodiscard]] QString text(QAccessible::Text kind) const override;
    [[nodiscard]] QAccessible::State state() const override;
    void *interface_cast(QAccessible::InterfaceType type) override;

    void selection(int index, int *start, int *end) const override;
    [[nodiscard]] int selectionCount() const override;
    void addSelection(int start, int end) override;
    void removeSelection(int index) override;
    void setSelection(int index, int start, int end) override;
    [[nodiscard]] int cursorPosition() const override;
    void setCursorPosition(int position) override;
    [[nodiscard]] QString text(int start, int end) const override;
    [[nodiscard]] int characterCount() const override;
    [[nodiscard]] QRect characterRect(int offset) const override;
    [[nodiscard]] int offsetAtPoint(const QPoint &point) const override;
    void scrollToSubstring(int start, int end) override;
    [[nodiscard]] QString attributes(int offset, int *start, int *end) const override;

    // As edits of the person's own, so that the page hears of them.
    void deleteText(int start, int end) override;
    void insertText(int offset, const QString &text) override;
    void replaceText(int start, int end, const QString &text) override;

private:
    [[nodiscard]] TextField *field() const;
};

} // namespace parloquin
