#pragma once

#include <QtCore/QList>
#include <QtWidgets/QAccessibleWidget>

namespace parloquin {

/// \brief A widget in the tree that screen readers walk.
///
/// That tree holds what a person can read or use, from top to bottom, and nothing else: what only
/// lays out, draws or moves the rest has no place in it, and what a button or a row says as a whole
/// is not said by its parts again. A page that slides out is no longer there. Main thread only.
class AccessibleNode : public QAccessibleWidget {
public:
    using QAccessibleWidget::QAccessibleWidget;

    [[nodiscard]] bool isValid() const override;
    [[nodiscard]] QAccessibleInterface *parent() const override;
    [[nodiscard]] int childCount() const override;
    [[nodiscard]] QAccessibleInterface *child(int index) const override;
    [[nodiscard]] int indexOfChild(const QAccessibleInterface *child) const override;
    [[nodiscard]] QAccessibleInterface *childAt(int x, int y) const override;

    /// Whether it hides what else its parent holds, as a veil does.
    [[nodiscard]] virtual bool coversSiblings() const { return false; }

protected:
    /// Whether a walk from the top comes here. What a reader still remembers of a page that has
    /// gone, or that lies under a veil, is not to be pressed.
    [[nodiscard]] bool isReached() const;
    /// And whether a press of it would be the first since the event loop turned.
    [[nodiscard]] bool takesPress() const;

private:
    [[nodiscard]] QList<QWidget *> nodesBelow() const;
};

/// \brief A widget without a place in the tree; readers hear no event of it either.
class AccessibleFiller : public QAccessibleWidget {
public:
    using QAccessibleWidget::QAccessibleWidget;
    [[nodiscard]] bool isValid() const override { return false; }
};

/// \brief A label: its text.
class AccessibleLabel : public AccessibleNode {
public:
    explicit AccessibleLabel(QWidget *label)
        : AccessibleNode(label, QAccessible::StaticText)
    {
    }
    [[nodiscard]] QString text(QAccessible::Text kind) const override;
};

/// \brief Whatever is tapped: a button, whatever it looks like.
class AccessibleButton : public AccessibleNode {
public:
    explicit AccessibleButton(QWidget *button)
        : AccessibleNode(button, QAccessible::Button)
    {
    }
    [[nodiscard]] QString text(QAccessible::Text kind) const override;
    [[nodiscard]] QStringList actionNames() const override;
    void doAction(const QString &name) override;
};

} // namespace parloquin
