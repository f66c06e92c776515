#include "Parloquin/Toolkit/AccessibleNode.h"

#include "Parloquin/Toolkit/Label.h"
#include "Parloquin/Toolkit/NavigationBar.h"
#include "Parloquin/Toolkit/NavigationController.h"
#include "Parloquin/Toolkit/Screen.h"
#include "Parloquin/Toolkit/TableView.h"
#include "Parloquin/Toolkit/Tappable.h"

#include <algorithm>

namespace parloquin {

namespace {

// Said as a whole: its parts are not in the tree.
bool isWhole(const QWidget *widget)
{
    return qobject_cast<const Tappable *>(widget) || qobject_cast<const TableView *>(widget)
        || qobject_cast<const TableCell *>(widget);
}

bool isPartOfAnother(const QWidget *widget)
{
    for (const QWidget *above = widget->parentWidget(); above; above = above->parentWidget()) {
        if (isWhole(above))
            return true;
    }
    // The page bears its title as its name.
    return qobject_cast<const Label *>(widget)
        && qobject_cast<const NavigationBar *>(widget->parentWidget());
}

bool isAbsent(const QWidget *widget)
{
    if (widget->isHidden() || widget->isWindow())
        return true;
    if (const auto *label = qobject_cast<const Label *>(widget))
        return label->text().isEmpty();
    if (!qobject_cast<const Screen *>(widget))
        return false;
    const auto *navigation = NavigationController::above(*widget);
    return navigation && navigation->topViewController() != widget;
}

void collect(const QWidget *widget, QList<QWidget *> &nodes)
{
    const auto before = nodes.size();
    for (QObject *object : widget->children()) {
        auto *child = qobject_cast<QWidget *>(object);
        if (!child || isAbsent(child))
            continue;
        auto *interface = QAccessible::queryAccessibleInterface(child);
        if (!interface || !interface->isValid()) {
            collect(child, nodes);
            continue;
        }
        const auto *node = dynamic_cast<AccessibleNode *>(interface);
        if (node && node->coversSiblings()) {
            nodes.resize(before);
            nodes.append(child);
            return;
        }
        nodes.append(child);
    }
}

} // namespace

bool AccessibleNode::isValid() const
{
    return QAccessibleWidget::isValid() && !isPartOfAnother(widget());
}

QAccessibleInterface *AccessibleNode::parent() const
{
    if (widget()->isWindow())
        return QAccessibleWidget::parent();
    for (QWidget *above = widget()->parentWidget(); above; above = above->parentWidget()) {
        auto *interface = QAccessible::queryAccessibleInterface(above);
        if (interface && interface->isValid())
            return interface;
    }
    return QAccessibleWidget::parent();
}

QList<QWidget *> AccessibleNode::nodesBelow() const
{
    QList<QWidget *> nodes;
    if (isWhole(widget()))
        return nodes;
    collect(widget(), nodes);
    // Widgets stand in the order in which they are drawn. Those of one height stay as they were
    // made, which is as they are read, whatever the direction.
    std::stable_sort(nodes.begin(), nodes.end(), [this](const QWidget *a, const QWidget *b) {
        return a->mapTo(widget(), QPoint()).y() < b->mapTo(widget(), QPoint()).y();
    });
    return nodes;
}

int AccessibleNode::childCount() const { return static_cast<int>(nodesBelow().size()); }

QAccessibleInterface *AccessibleNode::child(int index) const
{
    const auto nodes = nodesBelow();
    return index >= 0 && index < nodes.size()
        ? QAccessible::queryAccessibleInterface(nodes.at(index))
        : nullptr;
}

int AccessibleNode::indexOfChild(const QAccessibleInterface *child) const
{
    return child ? static_cast<int>(nodesBelow().indexOf(qobject_cast<QWidget *>(child->object())))
                 : -1;
}

QAccessibleInterface *AccessibleNode::childAt(int x, int y) const
{
    const auto nodes = nodesBelow();
    const auto hit = std::find_if(nodes.crbegin(), nodes.crend(), [x, y](const QWidget *node) {
        return node->rect().contains(node->mapFromGlobal(QPoint(x, y)));
    });
    return hit != nodes.crend() ? QAccessible::queryAccessibleInterface(*hit) : nullptr;
}

bool AccessibleNode::isReached() const
{
    const QAccessibleInterface *child = this;
    for (;;) {
        const auto *above = dynamic_cast<AccessibleNode *>(child->parent());
        if (!above)
            return true; // from here on it is the host's
        if (above->indexOfChild(child) < 0)
            return false;
        child = above;
    }
}

// Readers know of no slide: they find the screen that comes alone.
bool AccessibleNode::takesPress() const
{
    const auto *navigation = NavigationController::above(*widget());
    return isReached() && !(navigation && navigation->awaitsPress());
}

QString AccessibleLabel::text(QAccessible::Text kind) const
{
    const auto *label = qobject_cast<Label *>(widget());
    return kind == QAccessible::Name && label->accessibleName().isEmpty()
        ? label->text()
        : AccessibleNode::text(kind);
}

QString AccessibleButton::text(QAccessible::Text kind) const
{
    const auto *button = qobject_cast<Tappable *>(widget());
    return kind == QAccessible::Name && button->accessibleName().isEmpty()
        ? button->text()
        : AccessibleNode::text(kind);
}

QStringList AccessibleButton::actionNames() const
{
    return QStringList { pressAction() } + AccessibleNode::actionNames();
}

void AccessibleButton::doAction(const QString &name)
{
    if (name != pressAction() && isReached())
        AccessibleNode::doAction(name);
    else if (name == pressAction() && takesPress())
        qobject_cast<Tappable *>(widget())->click();
}

} // namespace parloquin
