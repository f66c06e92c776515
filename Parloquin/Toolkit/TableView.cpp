#include "Parloquin/Toolkit/TableView.h"

#include "Parloquin/Platform/Fatal.h"
#include "Parloquin/Toolkit/Accessibility.h"
#include "Parloquin/Toolkit/AccessibleTable.h"
#include "Parloquin/Toolkit/DevicePixels.h"
#include "Parloquin/Toolkit/EmptyLook.h"
#include "Parloquin/Toolkit/Style.h"
#include "Parloquin/Toolkit/TableViewPrivate.h"

#include <QtCore/QEvent>
#include <QtCore/QScopedValueRollback>
#include <QtGui/QPainter>
#include <QtGui/QShowEvent>
#include <QtWidgets/QScroller>

#include <algorithm>
#include <iterator>

namespace parloquin {

namespace {
constexpr int separatorMargin = 15; // px
}

TableView::Private::Private(TableView *owner)
    : table(owner)
    , shadow(new TableShadow(owner))
    , index(new TableIndex(owner))
    , thumb(new TableThumb(owner))
    , emptyLook(new EmptyLook(owner))
{
    shadow->hide();
    index->hide();
    connect(index, &TableIndex::chosen, table, [this](int letter) { jumpToSection(letter); });
}

void TableView::Private::reload()
{
    cancelPress();
    for (const auto &[key, cell] : cells)
        recycle(cell);
    cells.clear();
    geometry.load(*table, source, rowHeight);
    const auto letters = source ? source->sectionIndexTitles(*table) : QStringList();
    hasIndex = !letters.isEmpty();
    index->setLetters(letters);
    index->setVisible(hasIndex);
    emptyLook->setVisible(geometry.items() == 0);
    if (current && !geometry.contains(*current))
        current = geometry.last();
    offset = std::clamp(offset, 0, maxOffset());
    arrange();
    if (table->hasFocus()) {
        startAtView();
        updateStates();
    }
    AccessibleTable::tellReload(*table);
}

int TableView::Private::maxOffset() const
{
    return std::max(geometry.height() - table->height(), 0);
}

int TableView::Private::contentWidth() const
{
    return std::max(table->width() - (hasIndex ? TableIndex::stripWidth : 0), 0);
}

void TableView::Private::setOffset(int value)
{
    value = std::clamp(value, 0, maxOffset());
    if (value == offset)
        return;
    offset = value;
    arrange();
    if (!hasIndex)
        thumb->showFor(offset, geometry.height());
}

void TableView::Private::arrange()
{
    // Out of view no row is needed yet (its cell may not even be registered); showing asks again.
    // And a cell being filled may ask for what is under way.
    if (arranging || !table->isVisible())
        return;
    const QScopedValueRollback guard(arranging, true);
    placeCells();
    placeHeaders();
    if (hasIndex) {
        const bool mirrored = table->layoutDirection() == Qt::RightToLeft;
        index->setGeometry(
            mirrored ? 0 : contentWidth(), 0, TableIndex::stripWidth, table->height());
        index->raise();
    }
    updateStates();
    table->update();
}

void TableView::Private::recycle(TableCell *cell)
{
    cell->m_fade.reset();
    cell->m_pressed = false;
    cell->m_focused = false;
    cell->hide();
    waiting[cell->m_identifier].append(cell);
}

void TableView::Private::placeCells()
{
    const int bottom = offset + table->height();
    for (auto it = cells.begin(); it != cells.end();) {
        const int y = geometry.topOf({ it->first.first, it->first.second });
        if (y + rowHeight <= offset || y >= bottom) {
            recycle(it->second);
            it = cells.erase(it);
        } else {
            ++it;
        }
    }
    const bool mirrored = table->layoutDirection() == Qt::RightToLeft;
    const int x = mirrored && hasIndex ? TableIndex::stripWidth : 0;
    for (int section = geometry.sectionAt(offset);
         section >= 0 && section < static_cast<int>(geometry.sections().size()); ++section) {
        const auto &found = geometry.sections()[static_cast<std::size_t>(section)];
        const int rowsTop = found.top + found.header;
        if (found.top >= bottom)
            break;
        for (int row = std::max((offset - rowsTop) / rowHeight, 0); row < found.rows; ++row) {
            const int y = rowsTop + row * rowHeight;
            if (y >= bottom)
                break;
            auto &cell = cells[{ section, row }];
            if (!cell) {
                cell = source->cellForRow(*table, { section, row });
                cell->m_path = { section, row };
                cell->lower();
            }
            cell->setGeometry(x, y - offset, contentWidth(), rowHeight);
            cell->show();
        }
    }
}

// A plain row's press reaches both edges of the table, also beside an index; the lines between the
// rows end where its contents do, and give way to it.
void TableView::Private::paintGround(QPainter &painter) const
{
    const int from = table->layoutDirection() == Qt::RightToLeft ? table->width() - contentWidth()
                                                                 : separatorMargin;
    for (auto it = cells.begin(); it != cells.end(); ++it) {
        const auto &[key, cell] = *it;
        const QRect row(0, cell->y(), table->width(), rowHeight);
        qreal strength = cell->pressStrength();
        painter.setOpacity(strength);
        if (strength > 0)
            painter.fillRect(row, Style::pressedRow);
        // None under a section's last row: what follows is a header or nothing.
        if (key.second == geometry.sections()[static_cast<std::size_t>(key.first)].rows - 1)
            continue;
        if (const auto next = std::next(it); next != cells.end())
            strength = std::max(strength, next->second->pressStrength());
        painter.setOpacity(1 - strength);
        DevicePixels::drawHairline(painter,
            QRectF(from, row.top(), contentWidth() - separatorMargin, row.height()), Qt::BottomEdge,
            Style::hairline);
    }
}

int TableView::Private::headerTop(const TableGeometry::Section &section) const
{
    return std::max(section.top - offset, std::min(0, section.end - section.header - offset));
}

void TableView::Private::placeHeaders()
{
    int used = 0;
    shadow->hide();
    for (int section = geometry.sectionAt(offset);
         section >= 0 && section < static_cast<int>(geometry.sections().size()); ++section) {
        const auto &found = geometry.sections()[static_cast<std::size_t>(section)];
        if (found.top >= offset + table->height())
            break;
        if (found.header == 0)
            continue;
        const int y = headerTop(found);
        if (used == headers.size())
            headers.append(new TableHeader(table));
        auto *header = headers[used++];
        header->setText(found.title);
        header->setGeometry(0, y, table->width(), found.header);
        header->raise();
        header->show();
        if (found.top < offset) {
            shadow->setGeometry(0, y + found.header, table->width(), TableShadow::reach);
            shadow->raise();
            shadow->show();
        }
    }
    for (; used < headers.size(); ++used)
        headers[used]->hide();
}

void TableView::Private::jumpToSection(int section)
{
    if (section < 0 || section >= static_cast<int>(geometry.sections().size()))
        return;
    QScroller::scroller(table)->stop();
    cancelPress();
    setOffset(geometry.sections()[static_cast<std::size_t>(section)].top);
}

void TableView::Private::reveal(const IndexPath &path)
{
    QScroller::scroller(table)->stop();
    setOffset(offsetShowing(path));
}

int TableView::Private::offsetShowing(const IndexPath &path) const
{
    const int top = geometry.topOf(path);
    const int header = geometry.sections()[static_cast<std::size_t>(path.section)].header;
    const int least = std::max(offset, top + rowHeight - table->height());
    return std::clamp(std::min(least, top - header), 0, maxOffset());
}

QRect TableView::Private::placeOfItem(int item) const
{
    if (geometry.items() == 0)
        return table->rect();
    if (const auto row = geometry.rowOfItem(item)) {
        const bool mirrored = table->layoutDirection() == Qt::RightToLeft;
        return { mirrored ? table->width() - contentWidth() : 0, geometry.topOf(*row) - offset,
            contentWidth(), rowHeight };
    }
    const auto at = static_cast<std::size_t>(geometry.sectionOfItem(item));
    const auto &section = geometry.sections()[at];
    return { 0, headerTop(section), table->width(), section.header };
}

int TableView::Private::itemAt(const QPoint &point) const
{
    if (!table->rect().contains(point))
        return -1;
    if (geometry.items() == 0)
        return 0;
    for (auto at = static_cast<std::size_t>(geometry.sectionAt(offset));
         at < geometry.sections().size(); ++at) {
        const auto &section = geometry.sections()[at];
        const int top = headerTop(section);
        if (top > point.y())
            break;
        if (point.y() < top + section.header)
            return section.firstItem;
    }
    const auto row = geometry.rowAt(point.y() + offset);
    return row ? geometry.itemOf(*row) : -1;
}

TableView::TableView(QWidget *parent)
    : Pane(parent)
    , d(std::make_unique<Private>(this))
{
    installAccessibility();
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_AcceptTouchEvents);
    auto *scroller = QScroller::scroller(this);
    auto properties = scroller->scrollerProperties();
    // Stretched past its ends, a table under a fixed panel looks torn off.
    properties.setScrollMetric(
        QScrollerProperties::VerticalOvershootPolicy, QScrollerProperties::OvershootAlwaysOff);
    properties.setScrollMetric(
        QScrollerProperties::HorizontalOvershootPolicy, QScrollerProperties::OvershootAlwaysOff);
    scroller->setScrollerProperties(properties);
    connect(scroller, &QScroller::stateChanged, this, [this](QScroller::State state) {
        if (state == QScroller::Dragging || state == QScroller::Scrolling)
            d->cancelPress();
    });
}

TableView::~TableView() = default;

void TableView::setDataSource(TableViewDataSource *source)
{
    d->source = source;
    d->reload();
}

void TableView::setDelegate(TableViewDelegate *delegate) { d->delegate = delegate; }

void TableView::setRowHeight(int height)
{
    d->rowHeight = std::max(height, 1);
    d->reload();
}

void TableView::setSeparatorStyle(SeparatorStyle style)
{
    d->separators = style;
    update();
}

void TableView::setEmptyLook(const QString &image, const QString &text, bool isBesidePlate)
{
    if (!d->emptyLook->set(image, text, isBesidePlate) || d->geometry.items() > 0)
        return;
    AccessibleTable::tellReload(*this);
}

void TableView::registerCell(const QString &identifier, std::function<TableCell *()> make)
{
    d->makers[identifier] = std::move(make);
}

TableCell *TableView::dequeueReusableCell(const QString &identifier)
{
    auto &waiting = d->waiting[identifier];
    if (!waiting.isEmpty())
        return waiting.takeLast();
    const auto maker = d->makers.constFind(identifier);
    if (maker == d->makers.constEnd()) {
        fatal(QStringLiteral("the table %1 knows no cell \"%2\"; register it first")
                  .arg(objectName(), identifier));
    }
    auto *cell = (*maker)();
    cell->setParent(this);
    cell->m_identifier = identifier;
    return cell;
}

void TableView::reloadData() { d->reload(); }

TableCell *TableView::cellForRow(const IndexPath &path) const
{
    const auto found = d->cells.find({ path.section, path.row });
    return found == d->cells.end() ? nullptr : found->second;
}

QList<TableCell *> TableView::visibleCells() const
{
    QList<TableCell *> cells;
    for (const auto &[key, cell] : d->cells)
        cells.append(cell);
    return cells;
}

int TableView::contentOffset() const { return d->offset; }

void TableView::setContentOffset(int offset) { d->setOffset(offset); }

void TableView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    if (d->separators == SeparatorStyle::singleLine)
        d->paintGround(painter);
}

void TableView::resizeEvent(QResizeEvent *)
{
    d->offset = std::clamp(d->offset, 0, d->maxOffset());
    d->thumb->hide();
    d->emptyLook->setGeometry(rect());
    d->arrange();
}

void TableView::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::LayoutDirectionChange)
        d->arrange();
}

void TableView::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    if (!event->spontaneous())
        d->reload();
}

void TableView::hideEvent(QHideEvent *event)
{
    QWidget::hideEvent(event);
    d->cancelPress();
    QScroller::scroller(this)->stop();
}

} // namespace parloquin
