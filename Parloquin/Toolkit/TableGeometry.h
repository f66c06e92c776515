#pragma once

#include "Parloquin/Toolkit/TableView.h"

#include <QtCore/QString>

#include <optional>
#include <vector>

namespace parloquin {

/// \brief Where sections, headers and rows stand in a table's content, px from its top.
class TableGeometry {
public:
    static constexpr int headerHeight = 28; // px

    struct Section {
        QString title;
        int rows = 0;
        int top = 0; // of the header, or of the first row without one
        int header = 0; // its height
        int end = 0;
        int firstItem = 0; // its title's place in the list that is read, or its first row's
    };

    /// Asks the source for its sections, rows and titles; null: nothing.
    void load(const TableView &table, const TableViewDataSource *source, int rowHeight);

    [[nodiscard]] const std::vector<Section> &sections() const { return m_sections; }
    [[nodiscard]] int rowHeight() const { return m_rowHeight; }
    [[nodiscard]] int height() const { return m_sections.empty() ? 0 : m_sections.back().end; }
    [[nodiscard]] int topOf(const IndexPath &path) const;
    [[nodiscard]] bool contains(const IndexPath &path) const;
    /// The row at this height; none on a header or past the end.
    [[nodiscard]] std::optional<IndexPath> rowAt(int y) const;
    /// The section at this height, the nearest one past the ends; -1 without sections.
    [[nodiscard]] int sectionAt(int y) const;
    [[nodiscard]] std::optional<IndexPath> first() const;
    [[nodiscard]] std::optional<IndexPath> last() const;
    /// The row so many after (or before) path, stopping at the ends.
    [[nodiscard]] IndexPath moved(IndexPath path, int by) const;

    // As read: one after another, titles and rows.
    [[nodiscard]] int items() const { return m_items; }
    [[nodiscard]] int itemOf(const IndexPath &path) const;
    [[nodiscard]] int sectionOfItem(int item) const;
    /// None where the item is a section's title.
    [[nodiscard]] std::optional<IndexPath> rowOfItem(int item) const;

private:
    std::vector<Section> m_sections;
    int m_rowHeight = 44;
    int m_items = 0;
};

} // namespace parloquin
