#pragma once

#include "Parloquin/Toolkit/AccessibleNode.h"
#include "Parloquin/Toolkit/TableView.h"

#include <QtCore/QHash>

namespace parloquin {

/// \brief A table as screen readers see it: a list of all its rows and section titles, whether in
/// view or not, made from the table's data and not from the few widgets that show it.
class AccessibleTable : public AccessibleNode {
public:
    explicit AccessibleTable(TableView *table);
    ~AccessibleTable() override;

    [[nodiscard]] int childCount() const override;
    [[nodiscard]] QAccessibleInterface *child(int index) const override;
    [[nodiscard]] int indexOfChild(const QAccessibleInterface *child) const override;
    [[nodiscard]] QAccessibleInterface *childAt(int x, int y) const override;
    [[nodiscard]] QAccessibleInterface *focusChild() const override;

    /// Tells readers which row has the focus, if the table has it.
    static void tellFocus(TableView &table);
    /// The same after the rows have become other ones.
    static void tellReload(TableView &table);

    /// The item that has the focus while the table has it; -1: none.
    [[nodiscard]] int focusedItem() const;

    [[nodiscard]] TableView &table() const { return *static_cast<TableView *>(widget()); }
    using Data = TableView::Private;
    [[nodiscard]] const Data &data() const { return *table().d; }
    /// Chooses a row, in view or not, as a tap does.
    void press(const IndexPath &path);
    void focusRow(const IndexPath &path);

private:
    void forgetItems();

    mutable QHash<int, QAccessible::Id> m_items; // by their place; made when first asked for
};

} // namespace parloquin
