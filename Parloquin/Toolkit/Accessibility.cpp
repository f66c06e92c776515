#include "Parloquin/Toolkit/Accessibility.h"

#include "Parloquin/Toolkit/ActivityIndicator.h"
#include "Parloquin/Toolkit/ImageView.h"
#include "Parloquin/Toolkit/Label.h"
#include "Parloquin/Toolkit/TableView.h"
#include "Parloquin/Toolkit/View.h"

#include <QtWidgets/QAccessibleWidget>

namespace parloquin {

namespace {

class AccessibleRow : public QAccessibleWidget {
public:
    explicit AccessibleRow(TableCell *cell)
        : QAccessibleWidget(cell, QAccessible::ListItem)
    {
    }

    [[nodiscard]] QAccessible::State state() const override
    {
        auto state = QAccessibleWidget::state();
        state.focusable = true;
        state.selectable = true;
        state.focused = cell()->hasKeyboardFocus();
        return state;
    }

    [[nodiscard]] QStringList actionNames() const override { return { pressAction() }; }

    void doAction(const QString &name) override
    {
        if (name == pressAction())
            cell()->select();
    }

private:
    [[nodiscard]] TableCell *cell() const { return static_cast<TableCell *>(widget()); }
};

class AccessibleLabel : public QAccessibleWidget {
public:
    explicit AccessibleLabel(Label *label)
        : QAccessibleWidget(label, QAccessible::StaticText)
    {
    }

    [[nodiscard]] QString text(QAccessible::Text kind) const override
    {
        if (kind == QAccessible::Name)
            return static_cast<Label *>(widget())->text();
        return QAccessibleWidget::text(kind);
    }
};

QAccessibleInterface *describe(const QString &, QObject *object)
{
    if (auto *cell = qobject_cast<TableCell *>(object))
        return new AccessibleRow(cell);
    if (auto *label = qobject_cast<Label *>(object))
        return new AccessibleLabel(label);
    if (auto *table = qobject_cast<TableView *>(object))
        return new QAccessibleWidget(table, QAccessible::List);
    if (auto *view = qobject_cast<View *>(object))
        return new QAccessibleWidget(view, QAccessible::Grouping);
    if (auto *picture = qobject_cast<ImageView *>(object))
        return new QAccessibleWidget(picture, QAccessible::Graphic);
    if (auto *spinner = qobject_cast<ActivityIndicator *>(object))
        return new QAccessibleWidget(spinner, QAccessible::Animation);
    return nullptr;
}

}

void installAccessibility()
{
    [[maybe_unused]] static const bool once = [] {
        QAccessible::installFactory(describe);
        return true;
    }();
}

} // namespace parloquin
