#include "Parloquin/Toolkit/Label.h"
#include "Parloquin/Toolkit/TableParts.h"
#include "Parloquin/Toolkit/TableView.h"

#include <QtGui/QAccessible>
#include <QtGui/QWheelEvent>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>

#include <gtest/gtest.h>

#include <memory>

using namespace parloquin;

namespace {

class Countries : public TableViewDataSource, public TableViewDelegate {
public:
    int sections = 26;
    int rows = 10;
    QList<IndexPath> selected;

    [[nodiscard]] int numberOfSections(const TableView &) const override { return sections; }
    [[nodiscard]] int numberOfRows(const TableView &, int) const override { return rows; }
    TableCell *cellForRow(TableView &table, const IndexPath &path) override
    {
        auto *cell = table.dequeueReusableCell(QStringLiteral("Cell"));
        cell->setAccessibleName(QStringLiteral("%1/%2").arg(path.section).arg(path.row));
        return cell;
    }
    [[nodiscard]] QString titleForHeader(const TableView &, int section) const override
    {
        return QString(QChar(u'A' + section % 26));
    }
    [[nodiscard]] QStringList sectionIndexTitles(const TableView &table) const override
    {
        QStringList letters;
        for (int section = 0; section < sections; ++section)
            letters.append(titleForHeader(table, section));
        return letters;
    }
    void didSelectRow(TableView &, const IndexPath &path) override { selected.append(path); }
};

constexpr int rowHeight = 44;
constexpr int headerHeight = 28;

class Table : public testing::Test {
protected:
    void show(int sections = 26, int rows = 10)
    {
        source.sections = sections;
        source.rows = rows;
        table = std::make_unique<TableView>();
        table->resize(390, 600);
        table->setDataSource(&source); // cells may be registered later
        table->setDelegate(&source);
        table->setRowHeight(rowHeight);
        table->registerCell(QStringLiteral("Cell"), [] { return new TableCell; });
        table->show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(table.get()));
    }

    [[nodiscard]] int sectionTop(int section) const
    {
        return section * (headerHeight + source.rows * rowHeight);
    }

    [[nodiscard]] QStringList headersInView() const
    {
        QStringList found;
        for (const auto *header : table->findChildren<TableHeader *>()) {
            if (header->isVisible())
                found.append(QStringLiteral("%1 %2").arg(header->text()).arg(header->y()));
        }
        found.sort();
        return found;
    }

    [[nodiscard]] static QPoint middle(int y) { return { 100, y }; }

    Countries source;
    std::unique_ptr<TableView> table;
};

TEST_F(Table, TenThousandRowsNeedNoMoreWidgetsThanTwoHundredAndFifty)
{
    const auto widgetsAfterScrolling = [this](int rows) {
        show(25, rows);
        for (int offset = 0; offset < 30000; offset += 333)
            table->setContentOffset(offset);
        return table->findChildren<TableCell *>().size();
    };
    const auto few = widgetsAfterScrolling(10);
    const auto many = widgetsAfterScrolling(400);
    EXPECT_LE(many, few + 1);
    EXPECT_LE(many, 600 / rowHeight + 3);
}

TEST_F(Table, HeadersStickAndPushEachOtherOff)
{
    show();
    EXPECT_EQ(headersInView(), QStringList({ QStringLiteral("A 0"), QStringLiteral("B 468") }));
    table->setContentOffset(100);
    EXPECT_EQ(headersInView(), QStringList({ QStringLiteral("A 0"), QStringLiteral("B 368") }));
    table->setContentOffset(458);
    EXPECT_EQ(headersInView(),
        QStringList({ QStringLiteral("A -18"), QStringLiteral("B 10"), QStringLiteral("C 478") }));
}

TEST_F(Table, TheIndexJumpsByTapAndByDrag)
{
    show();
    auto *index = table->findChild<TableIndex *>();
    ASSERT_TRUE(index && index->isVisible());
    EXPECT_TRUE(index->text().startsWith(QStringLiteral("A\nB\nC")));
    constexpr int top = (600 - 26 * 20) / 2;
    const auto letter = [](int at) { return QPoint(12, top + at * 20 + 10); };

    QTest::mouseClick(index, Qt::LeftButton, {}, letter(7));
    EXPECT_EQ(table->contentOffset(), sectionTop(7));
    QTest::mousePress(index, Qt::LeftButton, {}, letter(1));
    QMouseEvent drag(QEvent::MouseMove, QPointF(-15, letter(3).y()),
        index->mapToGlobal(QPointF(-15, letter(3).y())), Qt::NoButton, Qt::LeftButton, {});
    QApplication::sendEvent(index, &drag);
    EXPECT_EQ(table->contentOffset(), sectionTop(3)) << "a finger may stray a little";
    QMouseEvent away(QEvent::MouseMove, QPointF(-40, letter(5).y()),
        index->mapToGlobal(QPointF(-40, letter(5).y())), Qt::NoButton, Qt::LeftButton, {});
    QApplication::sendEvent(index, &away);
    EXPECT_EQ(table->contentOffset(), sectionTop(3)) << "but not that far";

    table->resize(390, 200); // too low for all letters: every one is still reached
    QTest::mouseClick(index, Qt::LeftButton, {}, QPoint(12, 199));
    EXPECT_EQ(table->contentOffset(), sectionTop(25));
}

TEST_F(Table, ATapSelectsAndAMovedFingerDoesNot)
{
    show();
    const int y = headerHeight + rowHeight + 5;
    QTest::mousePress(table->cellForRow({ 0, 1 }), Qt::LeftButton, {}, QPoint(50, 5));
    EXPECT_TRUE(table->cellForRow({ 0, 1 })->isPressed());
    QTest::mouseRelease(table.get(), Qt::LeftButton, {}, middle(y));
    EXPECT_EQ(source.selected, QList<IndexPath>({ { 0, 1 } }));
    EXPECT_FALSE(table->cellForRow({ 0, 1 })->isPressed());

    QTest::mousePress(table.get(), Qt::LeftButton, {}, middle(y));
    QMouseEvent move(QEvent::MouseMove, middle(y + 10), table->mapToGlobal(middle(y + 10)),
        Qt::NoButton, Qt::LeftButton, {});
    QApplication::sendEvent(table.get(), &move);
    EXPECT_FALSE(table->cellForRow({ 0, 1 })->isPressed());
    QTest::mouseRelease(table.get(), Qt::LeftButton, {}, middle(y));
    EXPECT_EQ(source.selected.size(), 1);

    table->setContentOffset(rowHeight);
    QTest::mouseClick(table.get(), Qt::LeftButton, {}, middle(headerHeight / 2));
    EXPECT_EQ(source.selected.size(), 1) << "the stuck header hides the row under it";
    QTest::mouseClick(table.get(), Qt::LeftButton, {}, middle(headerHeight + 2));
    EXPECT_EQ(source.selected.size(), 2);
}

TEST_F(Table, AFingerScrollsAndSelectsNothing)
{
    show();
    const std::unique_ptr<QPointingDevice> device(QTest::createTouchDevice());
    QPointingDevice *finger = device.get();
    QTest::touchEvent(table.get(), finger).press(1, middle(500), table.get());
    for (int y = 490; y >= 200; y -= 10)
        QTest::touchEvent(table.get(), finger).move(1, middle(y), table.get());
    EXPECT_GT(table->contentOffset(), 100);
    QTest::touchEvent(table.get(), finger).release(1, middle(200), table.get());
    EXPECT_TRUE(source.selected.isEmpty());

    table->reloadData();
    table->hide(); // ends the roll
    table->show();
    table->setContentOffset(0);
    QTest::touchEvent(table.get(), finger).press(1, middle(40), table.get());
    QTest::touchEvent(table.get(), finger).release(1, middle(40), table.get());
    EXPECT_EQ(source.selected, QList<IndexPath>({ { 0, 0 } }));
}

TEST_F(Table, WheelsAndTouchpadsStopAtTheEnds)
{
    show();
    const auto roll = [this](QPoint pixels, QPoint angle) {
        QWheelEvent event(QPointF(100, 100), table->mapToGlobal(QPointF(100, 100)), pixels, angle,
            Qt::NoButton, {}, Qt::NoScrollPhase, false);
        QApplication::sendEvent(table.get(), &event);
    };
    roll({ 0, -37 }, { 0, -120 });
    EXPECT_EQ(table->contentOffset(), 37);
    roll({}, { 0, 120 });
    EXPECT_EQ(table->contentOffset(), 0);
    roll({}, { 0, -1200000 });
    EXPECT_EQ(table->contentOffset(), sectionTop(26) - 600);
}

TEST_F(Table, TheKeyboardWalksRingsAndSelects)
{
    show();
    table->setFocus(Qt::MouseFocusReason);
    EXPECT_FALSE(table->cellForRow({ 0, 0 })->hasKeyboardFocus()) << "a tap rings nothing";
    table->clearFocus();
    table->setFocus(Qt::TabFocusReason);
    EXPECT_TRUE(table->cellForRow({ 0, 0 })->hasKeyboardFocus());
    const struct {
        Qt::Key key;
        IndexPath path;
    } steps[] = { { Qt::Key_Down, { 0, 1 } }, { Qt::Key_End, { 25, 9 } }, { Qt::Key_Up, { 25, 8 } },
        { Qt::Key_Home, { 0, 0 } }, { Qt::Key_Up, { 0, 0 } }, { Qt::Key_PageDown, { 1, 2 } },
        { Qt::Key_M, { 12, 0 } }, { Qt::Key_Up, { 11, 9 } } };
    for (const auto &step : steps) {
        QTest::keyClick(table.get(), step.key);
        const auto *cell = table->cellForRow(step.path);
        ASSERT_TRUE(cell) << step.key << " leaves its row out of view";
        EXPECT_TRUE(cell->hasKeyboardFocus()) << step.key;
        EXPECT_GE(cell->y(), headerHeight) << step.key << " leaves its row under the header";
        EXPECT_LE(cell->geometry().bottom(), 599) << step.key;
    }
    QTest::keyClick(table.get(), Qt::Key_Return);
    QTest::keyClick(table.get(), Qt::Key_Space);
    EXPECT_EQ(source.selected, QList<IndexPath>({ { 11, 9 }, { 11, 9 } }));
}

TEST_F(Table, ReloadKeepsThePlaceWhereItCan)
{
    show();
    table->setContentOffset(3000);
    table->reloadData();
    EXPECT_EQ(table->contentOffset(), 3000);
    source.sections = 2;
    table->reloadData();
    EXPECT_EQ(table->contentOffset(), sectionTop(2) - 600);
    source.sections = 0;
    table->reloadData();
    EXPECT_TRUE(table->visibleCells().isEmpty());
    EXPECT_TRUE(headersInView().isEmpty());
    QTest::keyClick(table.get(), Qt::Key_Down);
}

TEST_F(Table, RightToLeftPutsTheIndexAtTheLeft)
{
    show();
    EXPECT_EQ(table->visibleCells().first()->geometry().right(), 365);
    table->setLayoutDirection(Qt::RightToLeft);
    EXPECT_EQ(table->findChild<TableIndex *>()->x(), 0);
    EXPECT_EQ(table->visibleCells().first()->geometry(), QRect(24, headerHeight, 366, rowHeight));
}

TEST_F(Table, AScreenReaderFindsAListAndPressesItsRows)
{
    show();
    EXPECT_EQ(QAccessible::queryAccessibleInterface(table.get())->role(), QAccessible::List);
    auto *row = QAccessible::queryAccessibleInterface(table->cellForRow({ 0, 2 }));
    EXPECT_EQ(row->role(), QAccessible::ListItem);
    EXPECT_EQ(row->text(QAccessible::Name), QStringLiteral("0/2"));
    row->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(source.selected, QList<IndexPath>({ { 0, 2 } }));
}

} // namespace
