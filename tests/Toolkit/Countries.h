#pragma once

#include "Parloquin/Cell/CountryTableCell.h"
#include "support/Widgets.h"

/// \brief Sections A, B, ... with rows "Aa land", "Ab land", ..., each with a prefix of its own.
class Countries : public parloquin::TableViewDataSource, public parloquin::TableViewDelegate {
public:
    int sections = 26;
    int rows = 10;
    bool titled = true;
    std::optional<parloquin::IndexPath> ticked;
    QList<parloquin::IndexPath> selected;

    using Table = parloquin::TableView;
    using Path = parloquin::IndexPath;

    [[nodiscard]] parloquin::CountryModel country(const Path &path) const
    {
        parloquin::CountryModel model;
        model.title = letter(path.section) + QChar(u'a' + path.row % 26) + QStringLiteral(" land");
        model.phoneCode = QStringLiteral("+%1%2").arg(path.section).arg(path.row);
        return model;
    }
    static QString letter(int section) { return QString(QChar(u'A' + section % 26)); }

    int numberOfSections(const Table &) const override { return sections; }
    int numberOfRows(const Table &, int) const override { return rows; }
    QString titleForHeader(const Table &, int section) const override
    {
        return titled ? letter(section) : QString();
    }
    QStringList sectionIndexTitles(const Table &) const override
    {
        QStringList letters;
        for (int section = 0; titled && section < sections; ++section)
            letters.append(letter(section));
        return letters;
    }
    QString nameOfRow(const Table &, const Path &path) const override
    {
        return *country(path).title + QStringLiteral(", ") + *country(path).phoneCode;
    }
    bool isRowChecked(const Table &, const Path &path) const override { return ticked == path; }
    parloquin::TableCell *cellForRow(Table &table, const Path &path) override
    {
        auto *cell = qobject_cast<parloquin::CountryTableCell *>(
            table.dequeueReusableCell(QStringLiteral("Cell")));
        cell->setSelectedState(ticked == path);
        cell->setCell(country(path));
        return cell;
    }
    void didSelectRow(Table &, const Path &path) override { selected.append(path); }
};

/// \brief A table of countries, 390 x 600, as a window.
class CountryTable : public testing::Test {
protected:
    static constexpr int rowHeight = 44;
    static constexpr int headerHeight = 28;

    [[nodiscard]] std::unique_ptr<parloquin::TableView> makeTable()
    {
        auto made = std::make_unique<parloquin::TableView>();
        made->resize(390, 600);
        made->setDataSource(&source); // cells may be registered later
        made->setDelegate(&source);
        made->setRowHeight(rowHeight);
        made->registerCell(QStringLiteral("Cell"), [] { return new parloquin::CountryTableCell; });
        return made;
    }
    void show(int sections = 26, int rows = 10)
    {
        source.sections = sections;
        source.rows = rows;
        table = makeTable();
        ASSERT_TRUE(comesToFront(*table));
    }
    [[nodiscard]] int sectionTop(int section) const
    {
        return section * (headerHeight + source.rows * rowHeight);
    }
    /// As Tab does it; a window gives its only widget the focus unasked, and without a ring.
    void focusByTab() const
    {
        table->clearFocus();
        table->setFocus(Qt::TabFocusReason);
    }
    void press(Qt::Key key) const { QTest::keyClick(table->windowHandle(), key); }
    void type(const QString &letters) const
    {
        for (const QChar letter : letters)
            QTest::sendKeyEvent(QTest::Click, table->windowHandle(),
                Qt::Key(letter.toUpper().unicode()), letter, Qt::NoModifier);
    }

    Countries source;
    std::unique_ptr<parloquin::TableView> table;
};

/// For messages: "12/0".
inline std::string place(const std::optional<parloquin::IndexPath> &path)
{
    return path ? std::to_string(path->section) + '/' + std::to_string(path->row) : "none";
}

namespace parloquin {
inline void PrintTo(const IndexPath &path, std::ostream *out) { *out << place(path); }
}
