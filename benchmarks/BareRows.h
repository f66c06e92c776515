#pragma once

#include <QtCore/QStringList>
#include <QtWidgets/QWidget>

#include <utility>
#include <vector>

/// \brief The picker's look by bare widgets: recycled rows of a name and a code, headers that
/// stick, the strip of letters.
class BareRows : public QWidget {
public:
    using Row = std::pair<QString, QString>; // name, code

    void addSection(const QString &title, const std::vector<Row> &rows);
    void setOffset(int offset);
    [[nodiscard]] int maxOffset() const { return m_height - height(); }

private:
    class Cell;
    class Header;
    class Letters;
    struct Section {
        QString title;
        int top;
        int end;
        std::vector<Row> rows;
    };
    /// The widget number `index` of its kind, made where there is none yet.
    template <class T> T *part(std::vector<T *> &parts, std::size_t index);

    std::vector<Section> m_sections;
    std::vector<Cell *> m_cells;
    std::vector<Header *> m_headers;
    Letters *m_letters = nullptr;
    int m_height = 0;
};
