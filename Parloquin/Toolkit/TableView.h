#pragma once

#include "Parloquin/Toolkit/Holdable.h"
#include "Parloquin/Toolkit/Pane.h"
#include "Parloquin/Toolkit/PressFade.h"

#include <QtCore/QStringList>

#include <functional>
#include <memory>

namespace parloquin {

class TableView;

struct IndexPath {
    int section = 0;
    int row = 0;

    friend bool operator==(const IndexPath &, const IndexPath &) = default;
};

/// \brief A recycled row. Subclasses lay out their contents in themselves.
class TableCell : public Pane {
    Q_OBJECT
public:
    explicit TableCell(QWidget *parent = nullptr);

    /// Where the row stands now; meaningless while the cell waits for reuse.
    [[nodiscard]] IndexPath indexPath() const { return m_path; }
    [[nodiscard]] bool isPressed() const { return m_pressed; }
    [[nodiscard]] bool hasKeyboardFocus() const { return m_focused; }
    /// How strongly the press shows, 0..1: it fades out when it ends.
    [[nodiscard]] qreal pressStrength() const { return m_fade.strength(); }
    /// Selects the row, as a tap does.
    void select();

protected:
    /// Pressed or keyboard focus has changed; the default repaints.
    virtual void stateChanged() { update(); }

private:
    friend class TableView;
    void setState(bool pressed, bool focused);
    void showStrength();

    PressFade m_fade;
    QString m_identifier;
    IndexPath m_path;
    bool m_pressed = false;
    bool m_focused = false;
};

/// \brief What a table shows.
class TableViewDataSource {
public:
    virtual ~TableViewDataSource() = default;

    [[nodiscard]] virtual int numberOfSections(const TableView &) const { return 1; }
    [[nodiscard]] virtual int numberOfRows(const TableView &, int section) const = 0;
    /// \return a cell from TableView::dequeueReusableCell, filled for the path
    [[nodiscard]] virtual TableCell *cellForRow(TableView &, const IndexPath &) = 0;
    /// Empty: no header.
    [[nodiscard]] virtual QString titleForHeader(const TableView &, int /*section*/) const
    {
        return {};
    }
    /// What a screen reader says of a row, its title first: typed letters look for that.
    [[nodiscard]] virtual QString nameOfRow(const TableView &, const IndexPath &) const
    {
        return {};
    }
    /// Whether the row bears a tick.
    [[nodiscard]] virtual bool isRowChecked(const TableView &, const IndexPath &) const
    {
        return false;
    }
    /// Letters of the index strip, one a section; empty: no strip.
    [[nodiscard]] virtual QStringList sectionIndexTitles(const TableView &) const { return {}; }
};

/// \brief What a table tells of taps.
class TableViewDelegate {
public:
    virtual ~TableViewDelegate() = default;
    virtual void didSelectRow(TableView &, const IndexPath &) = 0;
};

/// \brief A plain table: recycled rows, sticking section headers, an index strip, kinetic
/// scrolling.
///
/// Only rows in view exist as widgets, whatever the count; a screen reader finds all of them.
/// Touch, wheel and keyboard (arrows, Page, Home, End, Enter, Space, and the first letters of a
/// row) work. Main thread only; data source and delegate are borrowed and outlive the table.
class TableView : public Pane, public Holdable {
    Q_OBJECT
public:
    /// With lines the table shows a press too; a row without shows its own.
    enum class SeparatorStyle { none, singleLine };

    explicit TableView(QWidget *parent = nullptr);
    ~TableView() override;

    void setDataSource(TableViewDataSource *source);
    void setDelegate(TableViewDelegate *delegate);
    void setRowHeight(int height); // px, the same for all rows
    void setSeparatorStyle(SeparatorStyle style);
    /// \brief What the table shows, and says to a reader, while it has no rows.
    /// \param image one of the kit's own
    /// \param text empty: nothing
    /// \param isBesidePlate keeps clear of the progress overlay's plate
    void setEmptyLook(const QString &image, const QString &text, bool isBesidePlate = false);

    /// \param make creates a new cell; called when none of this identifier waits for reuse
    void registerCell(const QString &identifier, std::function<TableCell *()> make);
    /// An identifier that was never registered stops the program.
    [[nodiscard]] TableCell *dequeueReusableCell(const QString &identifier);

    /// Asks the data source for everything again; keeps the scroll position where it can.
    void reloadData();

    /// Null when the row is out of view.
    [[nodiscard]] TableCell *cellForRow(const IndexPath &path) const;
    [[nodiscard]] QList<TableCell *> visibleCells() const; // top to bottom
    /// A row rings, or would if there were one.
    [[nodiscard]] bool hasKeyboardFocus() const;
    void letGo() override;
    [[nodiscard]] int contentOffset() const; // px from the top
    void setContentOffset(int offset);

protected:
    bool event(QEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    struct Private;
    friend class AccessibleTable;
    friend class TableCell;
    std::unique_ptr<Private> d;
};

} // namespace parloquin
