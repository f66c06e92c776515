#include "Parloquin/Toolkit/TableGeometry.h"

#include <algorithm>

namespace parloquin {

void TableGeometry::load(const TableView &table, const TableViewDataSource *source, int rowHeight)
{
    m_sections.clear();
    m_items = 0;
    m_rowHeight = rowHeight;
    if (!source)
        return;
    int y = 0;
    const int count = source->numberOfSections(table);
    for (int index = 0; index < count; ++index) {
        Section section;
        section.title = source->titleForHeader(table, index);
        section.rows = source->numberOfRows(table, index);
        section.top = y;
        section.header = section.title.isEmpty() ? 0 : headerHeight;
        section.end = y + section.header + section.rows * rowHeight;
        y = section.end;
        section.firstItem = m_items;
        m_items += section.rows + (section.header > 0 ? 1 : 0);
        m_sections.push_back(section);
    }
}

int TableGeometry::topOf(const IndexPath &path) const
{
    const auto &section = m_sections[static_cast<std::size_t>(path.section)];
    return section.top + section.header + path.row * m_rowHeight;
}

bool TableGeometry::contains(const IndexPath &path) const
{
    return path.section >= 0 && path.section < static_cast<int>(m_sections.size()) && path.row >= 0
        && path.row < m_sections[static_cast<std::size_t>(path.section)].rows;
}

int TableGeometry::sectionAt(int y) const
{
    if (m_sections.empty())
        return -1;
    const auto after = std::upper_bound(m_sections.begin(), m_sections.end(), y,
        [](int value, const Section &section) { return value < section.end; });
    const auto found = static_cast<int>(after - m_sections.begin());
    return std::min(found, static_cast<int>(m_sections.size()) - 1);
}

std::optional<IndexPath> TableGeometry::rowAt(int y) const
{
    const int section = sectionAt(y);
    if (section < 0 || y < 0)
        return {};
    const auto &found = m_sections[static_cast<std::size_t>(section)];
    const int inside = y - found.top - found.header;
    if (inside < 0 || inside >= found.rows * m_rowHeight)
        return {};
    return IndexPath { section, inside / m_rowHeight };
}

std::optional<IndexPath> TableGeometry::first() const
{
    for (std::size_t section = 0; section < m_sections.size(); ++section) {
        if (m_sections[section].rows > 0)
            return IndexPath { static_cast<int>(section), 0 };
    }
    return {};
}

std::optional<IndexPath> TableGeometry::last() const
{
    for (auto section = m_sections.size(); section-- > 0;) {
        if (m_sections[section].rows > 0)
            return IndexPath { static_cast<int>(section), m_sections[section].rows - 1 };
    }
    return {};
}

int TableGeometry::itemOf(const IndexPath &path) const
{
    const auto &section = m_sections[static_cast<std::size_t>(path.section)];
    return section.firstItem + (section.header > 0 ? 1 : 0) + path.row;
}

int TableGeometry::sectionOfItem(int item) const
{
    const auto after = std::upper_bound(m_sections.begin(), m_sections.end(), item,
        [](int value, const Section &section) { return value < section.firstItem; });
    return static_cast<int>(after - m_sections.begin()) - 1;
}

std::optional<IndexPath> TableGeometry::rowOfItem(int item) const
{
    if (item < 0 || item >= m_items)
        return {};
    const int index = sectionOfItem(item);
    const auto &section = m_sections[static_cast<std::size_t>(index)];
    const int row = item - section.firstItem - (section.header > 0 ? 1 : 0);
    if (row < 0)
        return {};
    return IndexPath { index, row };
}

IndexPath TableGeometry::moved(IndexPath path, int by) const
{
    const int step = by < 0 ? -1 : 1;
    for (int left = std::abs(by); left > 0; --left) {
        IndexPath next { path.section, path.row + step };
        while (!contains(next)) {
            next.section += step;
            if (next.section < 0 || next.section >= static_cast<int>(m_sections.size()))
                return path;
            next.row = step > 0 ? 0 : m_sections[static_cast<std::size_t>(next.section)].rows - 1;
        }
        path = next;
    }
    return path;
}

} // namespace parloquin
