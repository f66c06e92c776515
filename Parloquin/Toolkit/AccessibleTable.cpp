#include "Parloquin/Toolkit/AccessibleTable.h"

#include "Parloquin/Toolkit/EmptyLook.h"
#include "Parloquin/Toolkit/TableViewPrivate.h"

#include <utility>

namespace parloquin {

namespace {

// A row, a section's title, or what an empty table says.
class AccessibleItem : public QAccessibleInterface, public QAccessibleActionInterface {
public:
    AccessibleItem(AccessibleTable *list, int index)
        : m_list(list)
        , m_index(index)
    {
    }

    [[nodiscard]] int index() const { return m_index; }

    [[nodiscard]] bool isValid() const override
    {
        return m_list->isValid() && m_index < m_list->childCount();
    }
    [[nodiscard]] QObject *object() const override { return nullptr; }
    [[nodiscard]] QWindow *window() const override { return m_list->window(); }
    [[nodiscard]] QAccessibleInterface *parent() const override { return m_list; }
    [[nodiscard]] QAccessibleInterface *child(int) const override { return nullptr; }
    [[nodiscard]] QAccessibleInterface *childAt(int, int) const override { return nullptr; }
    [[nodiscard]] int childCount() const override { return 0; }
    [[nodiscard]] int indexOfChild(const QAccessibleInterface *) const override { return -1; }
    void setText(QAccessible::Text, const QString &) override { }

    [[nodiscard]] QString text(QAccessible::Text kind) const override
    {
        if (kind != QAccessible::Name)
            return {};
        const auto row = path();
        if (!row)
            return title();
        return data().source->nameOfRow(m_list->table(), *row);
    }

    [[nodiscard]] QAccessible::Role role() const override
    {
        if (path())
            return QAccessible::ListItem;
        return data().geometry.items() > 0 ? QAccessible::Heading : QAccessible::StaticText;
    }

    [[nodiscard]] QRect rect() const override
    {
        const QRect place = data().placeOfItem(m_index);
        return { m_list->table().mapToGlobal(place.topLeft()), place.size() };
    }

    [[nodiscard]] QAccessible::State state() const override
    {
        auto state = m_list->state();
        state.focused = state.focused && m_list->focusedItem() == m_index;
        state.focusable = path().has_value() || data().geometry.items() == 0;
        state.offscreen =
            state.offscreen || !m_list->table().rect().intersects(data().placeOfItem(m_index));
        // Only what is ticked says so: a picker is no list of boxes to tick.
        const auto row = path();
        state.checked = row && data().source->isRowChecked(m_list->table(), *row);
        state.checkable = state.checked;
        return state;
    }

    void *interface_cast(QAccessible::InterfaceType type) override
    {
        return type == QAccessible::ActionInterface && path()
            ? static_cast<QAccessibleActionInterface *>(this)
            : nullptr;
    }

    [[nodiscard]] QStringList actionNames() const override
    {
        return { pressAction(), setFocusAction() };
    }

    void doAction(const QString &name) override
    {
        const auto row = path();
        if (row && name == pressAction())
            m_list->press(*row); // last: it may close the screen
        else if (row && name == setFocusAction())
            m_list->focusRow(*row);
    }

    [[nodiscard]] QStringList keyBindingsForAction(const QString &) const override { return {}; }

private:
    [[nodiscard]] const AccessibleTable::Data &data() const { return m_list->data(); }
    [[nodiscard]] std::optional<IndexPath> path() const
    {
        return data().geometry.rowOfItem(m_index);
    }
    [[nodiscard]] QString title() const
    {
        const auto &geometry = data().geometry;
        if (geometry.items() == 0)
            return data().emptyLook->text();
        return geometry.sections()[static_cast<std::size_t>(geometry.sectionOfItem(m_index))].title;
    }

    AccessibleTable *m_list;
    int m_index;
};

}

AccessibleTable::AccessibleTable(TableView *table)
    : AccessibleNode(table, QAccessible::List)
{
}

AccessibleTable::~AccessibleTable() { forgetItems(); }

void AccessibleTable::tellFocus(TableView &table)
{
    table.d->focusUntold = false;
    if (!QAccessible::isActive())
        return;
    const auto *list =
        dynamic_cast<AccessibleTable *>(QAccessible::queryAccessibleInterface(&table));
    const int item = list ? list->focusedItem() : -1;
    if (item < 0)
        return;
    QAccessibleEvent event(&table, QAccessible::Focus);
    event.setChild(item);
    QAccessible::updateAccessibility(&event);
}

void AccessibleTable::tellReload(TableView &table)
{
    if (!QAccessible::isActive())
        return;
    auto *list = dynamic_cast<AccessibleTable *>(QAccessible::queryAccessibleInterface(&table));
    if (!list)
        return;
    list->forgetItems();
    QAccessibleTableModelChangeEvent event(&table, QAccessibleTableModelChangeEvent::ModelReset);
    QAccessible::updateAccessibility(&event);
    tellFocus(table);
}

int AccessibleTable::childCount() const
{
    const int items = data().geometry.items();
    return items == 0 && !data().emptyLook->text().isEmpty() ? 1 : items;
}

QAccessibleInterface *AccessibleTable::child(int index) const
{
    if (index < 0 || index >= childCount())
        return nullptr;
    auto &id = m_items[index];
    if (id == 0) {
        id = QAccessible::registerAccessibleInterface(
            new AccessibleItem(const_cast<AccessibleTable *>(this), index));
    }
    return QAccessible::accessibleInterface(id);
}

int AccessibleTable::indexOfChild(const QAccessibleInterface *child) const
{
    const auto *item = dynamic_cast<const AccessibleItem *>(child);
    return item && item->parent() == this ? item->index() : -1;
}

QAccessibleInterface *AccessibleTable::childAt(int x, int y) const
{
    return child(data().itemAt(table().mapFromGlobal(QPoint(x, y))));
}

int AccessibleTable::focusedItem() const
{
    if (!table().hasFocus())
        return -1;
    if (data().geometry.items() == 0)
        return childCount() - 1; // what it says instead, if anything
    const auto &current = data().current;
    return current && data().geometry.contains(*current) ? data().geometry.itemOf(*current) : -1;
}

QAccessibleInterface *AccessibleTable::focusChild() const { return child(focusedItem()); }

void AccessibleTable::forgetItems()
{
    for (const auto id : std::as_const(m_items))
        QAccessible::deleteAccessibleInterface(id);
    m_items.clear();
}

void AccessibleTable::press(const IndexPath &path)
{
    if (!takesPress())
        return;
    table().d->reveal(path); // a chosen row is one that can be seen
    table().d->select(path);
}

void AccessibleTable::focusRow(const IndexPath &path)
{
    if (!isReached())
        return;
    table().setFocus(Qt::OtherFocusReason);
    table().d->moveCurrent(path); // and rings, as if keys had brought it there
}

} // namespace parloquin
