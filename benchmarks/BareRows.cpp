#include "BareRows.h"

#include "Parloquin/Toolkit/Style.h"

#include <QtGui/QPainter>

#include <algorithm>

using namespace parloquin;

namespace {

constexpr int rowHeight = 44; // px
constexpr int headerHeight = 28;
constexpr int stripWidth = 24;
constexpr int margin = 15;

} // namespace

class BareRows::Cell : public QWidget {
public:
    explicit Cell(QWidget *parent)
        : QWidget(parent)
    {
        setFont(Style::font(17, QFont::Normal));
    }

    void show(const Row *row, bool hasLine)
    {
        if (m_row != row || m_hasLine != hasLine)
            update();
        m_row = row;
        m_hasLine = hasLine;
        setVisible(true);
    }

protected:
    void paintEvent(QPaintEvent * /*event*/) override
    {
        QPainter painter(this);
        painter.setPen(QColor(0x11, 0x13, 0x22));
        painter.drawText(rect().adjusted(margin, 0, -102, 0), Qt::AlignVCenter, m_row->first);
        painter.setPen(QColor(0x4a, 0x4f, 0x66));
        painter.drawText(rect().adjusted(width() - 68, 0, -margin, 0),
            Qt::AlignVCenter | Qt::AlignRight, m_row->second);
        painter.setRenderHint(QPainter::Antialiasing);
        if (m_hasLine)
            painter.fillRect(
                QRectF(margin, height() - 0.5, width() - margin, 0.5), QColor(0xd3, 0xd6, 0xe2));
    }

private:
    const Row *m_row = nullptr;
    bool m_hasLine = false;
};

class BareRows::Header : public QWidget {
public:
    explicit Header(QWidget *parent)
        : QWidget(parent)
    {
        setFont(Style::font(14, QFont::DemiBold));
    }

    void show(const QString &title)
    {
        if (m_title != title)
            update();
        m_title = title;
        setVisible(true);
    }

protected:
    void paintEvent(QPaintEvent * /*event*/) override
    {
        QPainter painter(this);
        painter.fillRect(rect(), QColor(0xf1, 0xf2, 0xf8));
        painter.setRenderHint(QPainter::Antialiasing);
        painter.fillRect(QRectF(0, height() - 0.5, width(), 0.5), QColor(0xd3, 0xd6, 0xe2));
        painter.setPen(QColor(0x3c, 0x40, 0x58));
        painter.drawText(rect().adjusted(margin, 0, -margin, 0), Qt::AlignVCenter, m_title);
    }

private:
    QString m_title;
};

class BareRows::Letters : public QWidget {
public:
    explicit Letters(BareRows *rows)
        : QWidget(rows)
        , m_rows(rows)
    {
        setFont(Style::font(12, QFont::DemiBold));
    }

protected:
    void paintEvent(QPaintEvent * /*event*/) override
    {
        QPainter painter(this);
        painter.setPen(Qt::blue);
        const auto count = static_cast<double>(m_rows->m_sections.size());
        const double pitch = std::min(20.0, height() / count);
        double y = (height() - pitch * count) / 2;
        for (const Section &section : m_rows->m_sections) {
            painter.drawText(QRectF(0, y, width(), pitch), Qt::AlignCenter, section.title);
            y += pitch;
        }
    }

private:
    BareRows *m_rows;
};

void BareRows::addSection(const QString &title, const std::vector<Row> &rows)
{
    const int end = m_height + headerHeight + static_cast<int>(rows.size()) * rowHeight;
    m_sections.push_back({ title, m_height, end, rows });
    m_height = end;
}

template <class T> T *BareRows::part(std::vector<T *> &parts, std::size_t index)
{
    if (index == parts.size())
        parts.push_back(new T(this));
    return parts[index];
}

void BareRows::setOffset(int offset)
{
    if (!m_letters) {
        m_letters = new Letters(this);
        m_letters->setGeometry(width() - stripWidth, 0, stripWidth, height());
        m_letters->show();
    }
    std::size_t headers = 0;
    std::vector<bool> taken(m_cells.size());
    const int bottom = offset + height();
    for (const Section &section : m_sections) {
        if (section.end <= offset || section.top >= bottom)
            continue;
        const int rowsTop = section.top + headerHeight;
        const int count = static_cast<int>(section.rows.size());
        for (int row = std::max(0, (offset - rowsTop) / rowHeight);
             row < count && rowsTop + row * rowHeight < bottom; ++row) {
            // A row keeps its widget while it is in view: by its number, as many as fit and one.
            const auto slots = static_cast<std::size_t>(height() / rowHeight + 2);
            while (m_cells.size() < slots) {
                part(m_cells, m_cells.size());
                taken.push_back(false);
            }
            const auto slot =
                static_cast<std::size_t>((rowsTop + row * rowHeight) / rowHeight) % slots;
            taken[slot] = true;
            m_cells[slot]->setGeometry(
                0, rowsTop + row * rowHeight - offset, width() - stripWidth, rowHeight);
            m_cells[slot]->show(&section.rows[static_cast<std::size_t>(row)], row + 1 < count);
        }
        Header *const header = part(m_headers, headers++);
        header->show(section.title);
        header->setGeometry(0,
            std::max(section.top - offset, std::min(0, section.end - headerHeight - offset)),
            width(), headerHeight);
        header->raise();
    }
    for (std::size_t slot = 0; slot < m_cells.size(); ++slot) {
        if (!taken[slot])
            m_cells[slot]->hide();
    }
    for (; headers < m_headers.size(); ++headers)
        m_headers[headers]->hide();
    m_letters->raise();
}
