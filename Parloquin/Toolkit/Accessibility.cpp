#include "Parloquin/Toolkit/Accessibility.h"

#include "Parloquin/Toolkit/AccessibleField.h"
#include "Parloquin/Toolkit/AccessibleNode.h"
#include "Parloquin/Toolkit/AccessibleTable.h"
#include "Parloquin/Toolkit/Label.h"
#include "Parloquin/Toolkit/Screen.h"
#include "Parloquin/Toolkit/Tappable.h"
#include "Parloquin/Toolkit/TextField.h"

#include <cstring>

namespace parloquin {

namespace {

bool isNamedByTheKit(const QWidget *widget)
{
    constexpr const char *kit = "parloquin::";
    return std::strncmp(widget->metaObject()->className(), kit, std::strlen(kit)) == 0;
}

// A class of the kit's, or a nameless box within one; a host's own boxes are none of ours.
bool isOfTheKit(const QWidget *widget)
{
    if (isNamedByTheKit(widget))
        return true;
    if (widget->metaObject() != &QWidget::staticMetaObject)
        return false;
    for (const QWidget *above = widget->parentWidget(); above; above = above->parentWidget()) {
        if (isNamedByTheKit(above))
            return true;
    }
    return false;
}

QAccessibleInterface *describe(const QString &, QObject *object)
{
    if (auto *self = dynamic_cast<Describable *>(object))
        return self->makeAccessible();
    auto *widget = qobject_cast<QWidget *>(object);
    if (!widget)
        return nullptr;
    if (auto *table = qobject_cast<TableView *>(widget))
        return new AccessibleTable(table);
    if (auto *field = qobject_cast<TextField *>(widget))
        return new AccessibleField(field);
    if (qobject_cast<Tappable *>(widget))
        return new AccessibleButton(widget);
    if (qobject_cast<Label *>(widget))
        return new AccessibleLabel(widget);
    if (qobject_cast<Screen *>(widget))
        return new AccessibleNode(widget, QAccessible::Pane);
    return isOfTheKit(widget) ? new AccessibleFiller(widget) : nullptr;
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
