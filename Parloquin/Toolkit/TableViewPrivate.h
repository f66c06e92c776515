#pragma once

#include "Parloquin/Toolkit/TableGeometry.h"
#include "Parloquin/Toolkit/TableParts.h"
#include "Parloquin/Toolkit/TableView.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QHash>
#include <QtCore/QPointer>

#include <map>
#include <optional>
#include <utility>

class QKeyEvent;
class QPainter;
class QTouchEvent;

namespace parloquin {

class EmptyLook;

/// \brief A table's state: what is in view, what waits for reuse, the finger and the keyboard.
struct TableView::Private {
    explicit Private(TableView *table);

    // Layout
    void reload();
    void setOffset(int value);
    [[nodiscard]] int maxOffset() const;
    [[nodiscard]] int contentWidth() const;
    void arrange();
    void placeCells();
    void paintGround(QPainter &painter) const;
    void placeHeaders();
    void recycle(TableCell *cell);
    void jumpToSection(int section);
    /// Scrolls as little as shows the whole row, clear of the stuck header.
    void reveal(const IndexPath &path);
    [[nodiscard]] int offsetShowing(const IndexPath &path) const;
    /// Of a section's title in the table: stuck to the top until the next section pushes it off.
    [[nodiscard]] int headerTop(const TableGeometry::Section &section) const;
    [[nodiscard]] QRect placeOfItem(int item) const;
    [[nodiscard]] int itemAt(const QPoint &point) const; // -1: none

    // Input
    void press(const QPointF &position);
    void stray(const QPointF &position);
    void cancelPress();
    void release();
    void select(const IndexPath &path);
    void moveCurrent(const IndexPath &path);
    void setCurrent(const std::optional<IndexPath> &path);
    /// The first row in view, where the current one is not.
    void startAtView();
    void updateStates();
    bool handleTouch(QTouchEvent *event);
    bool handleKey(QKeyEvent *event);
    bool typeAhead(QKeyEvent *event);
    [[nodiscard]] std::optional<IndexPath> find(const QString &beginning, bool afterCurrent) const;

    using Key = std::pair<int, int>; // section, row: in the order of the table

    TableView *table;
    TableViewDataSource *source = nullptr;
    TableViewDelegate *delegate = nullptr;
    TableGeometry geometry;
    int rowHeight = 44;
    SeparatorStyle separators = SeparatorStyle::singleLine;
    int offset = 0;

    QHash<QString, std::function<TableCell *()>> makers;
    QHash<QString, QList<TableCell *>> waiting;
    std::map<Key, TableCell *> cells;
    QList<TableHeader *> headers;
    TableShadow *shadow;
    TableIndex *index;
    TableThumb *thumb;
    EmptyLook *emptyLook;
    bool hasIndex = false;

    std::optional<int> finger; // that leads
    std::optional<IndexPath> pressed;
    QPointF pressedAt;
    std::optional<IndexPath> current;
    bool keyboardFocus = false;
    bool focusUntold = false; // a reader has yet to hear of the row that has it
    QString typed; // letters on the way to a row
    QElapsedTimer typedLast;
    bool arranging = false;
};

} // namespace parloquin
