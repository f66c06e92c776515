#include "Parloquin/Toolkit/Label.h"
#include "Parloquin/Toolkit/TableParts.h"
#include "Parloquin/Toolkit/TableView.h"
#include "Toolkit/Countries.h"
#include "support/ByName.h"
#include "support/Hands.h"

#include <QtGui/QStyleHints>
#include <QtGui/QWheelEvent>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QScroller>

#include <gtest/gtest.h>

using namespace parloquin;

namespace {

class Table : public CountryTable {
protected:
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

    /// The row that rings.
    [[nodiscard]] std::optional<IndexPath> ringed() const
    {
        for (const auto *cell : table->visibleCells()) {
            if (cell->hasKeyboardFocus())
                return cell->indexPath();
        }
        return {};
    }

    [[nodiscard]] static QPoint middle(int y) { return { 100, y }; }
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

    hands::click(index, letter(7));
    EXPECT_EQ(table->contentOffset(), sectionTop(7));
    hands::press(index, letter(1));
    hands::moveTo(index, { -15, letter(3).y() });
    EXPECT_EQ(table->contentOffset(), sectionTop(3)) << "a finger may stray a little";
    hands::moveTo(index, { -40, letter(5).y() });
    EXPECT_EQ(table->contentOffset(), sectionTop(3)) << "but not that far";
    hands::release(index, { -40, letter(5).y() });

    table->resize(390, 200); // too low for all letters: every one is still reached
    hands::click(index, { 12, 199 });
    EXPECT_EQ(table->contentOffset(), sectionTop(25));
}

TEST_F(Table, ATapSelectsAndAMovedFingerDoesNot)
{
    show();
    const int y = headerHeight + rowHeight + 5;
    hands::press(table.get(), middle(y));
    EXPECT_TRUE(table->cellForRow({ 0, 1 })->isPressed());
    hands::release(table.get(), middle(y));
    EXPECT_EQ(source.selected, QList<IndexPath>({ { 0, 1 } }));
    EXPECT_FALSE(table->cellForRow({ 0, 1 })->isPressed());

    hands::press(table.get(), middle(y));
    hands::moveTo(table.get(), middle(y + 10));
    EXPECT_FALSE(table->cellForRow({ 0, 1 })->isPressed());
    hands::release(table.get(), middle(y));
    EXPECT_EQ(source.selected.size(), 1);

    table->setContentOffset(rowHeight);
    hands::click(table.get(), middle(headerHeight / 2));
    EXPECT_EQ(source.selected.size(), 1) << "the stuck header hides the row under it";
    hands::click(table.get(), middle(headerHeight + 2));
    EXPECT_EQ(source.selected.size(), 2);
}

TEST_F(Table, AFingerScrollsAndSelectsNothing)
{
    show();
    hands::Finger finger;
    finger.down(table.get(), middle(500));
    EXPECT_TRUE(table->cellForRow({ 1, 0 })->isPressed());
    finger.drag({ 0, -300 });
    EXPECT_FALSE(table->cellForRow({ 1, 0 })->isPressed());
    const auto goesTo = [this](int offset) {
        return QTest::qWaitFor([&] { return std::abs(table->contentOffset() - offset) <= 30; });
    };
    EXPECT_TRUE(goesTo(300)) << "the rows go with the finger, not to " << table->contentOffset();
    finger.drag({ 0, 300 });
    EXPECT_TRUE(goesTo(0)) << table->contentOffset();
    finger.up();
    EXPECT_TRUE(source.selected.isEmpty());
}

TEST_F(Table, ASecondFingerAndACancelledTouchMeanNothing)
{
    show();
    hands::Finger finger;
    finger.down(table.get(), middle(500));
    finger.drag({ 0, -100 });
    const int offset = table->contentOffset();
    EXPECT_GT(offset, 50);
    finger.upBeside(QPoint(100, 50));
    ASSERT_TRUE(QTest::qWaitFor(
        [this] { return QScroller::scroller(table.get())->state() == QScroller::Inactive; }));
    EXPECT_LT(table->contentOffset(), offset + 200) << "it jumped to the other finger";
    EXPECT_TRUE(source.selected.isEmpty());

    table->setContentOffset(0);
    finger.down(table.get(), middle(40));
    EXPECT_TRUE(table->cellForRow({ 0, 0 })->isPressed());
    finger.cancel();
    EXPECT_FALSE(table->cellForRow({ 0, 0 })->isPressed());
    EXPECT_EQ(QScroller::scroller(table.get())->state(), QScroller::Inactive);
    EXPECT_TRUE(source.selected.isEmpty());
}

struct Brake {
    const char *name;
    std::function<void(TableView &)> act;
};

void PrintTo(const Brake &row, std::ostream *out) { *out << row.name; }

class RollingTable : public Table, public testing::WithParamInterface<Brake> { };

TEST_P(RollingTable, IsStoppedAndNoRowIsChosenByThat)
{
    show();
    hands::Finger finger;
    finger.down(table.get(), middle(500));
    finger.drag({ 0, -300 });
    finger.up();
    const int let = table->contentOffset();
    ASSERT_TRUE(QTest::qWaitFor([&] { return table->contentOffset() > let + 20; })) << "no fling";
    GetParam().act(*table);
    const int at = table->contentOffset();
    EXPECT_FALSE(QTest::qWaitFor([&] { return table->contentOffset() != at; }, 100)) << "rolls on";
    EXPECT_EQ(source.selected, QList<IndexPath>());
    for (const auto *cell : table->visibleCells())
        EXPECT_FALSE(cell->isPressed()) << place(cell->indexPath());
    table->show();
    finger.tap(table.get(), middle(300)); // the next one means a row
    EXPECT_EQ(source.selected.size(), 1);
}

const Brake brakes[] = {
    { "AFinger", [](auto &table) { hands::Finger().tap(&table, QPoint(100, 300)); } },
    { "ALetter", [](auto &table) { hands::click(&table, QPoint(380, 300)); } },
    { "AnArrow", [](auto &) { hands::key(Qt::Key_Down); } },
    { "AWord", [](auto &) { hands::key(Qt::Key_M); } },
    { "GoingOutOfView", [](auto &table) { table.hide(); } },
};
INSTANTIATE_TEST_SUITE_P(Brakes, RollingTable, testing::ValuesIn(brakes), byName);

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
    EXPECT_EQ(place(ringed()), "none") << "a tap rings nothing";
    press(Qt::Key_Return);
    EXPECT_TRUE(source.selected.isEmpty()) << "nobody chooses what is not seen";
    EXPECT_EQ(place(ringed()), "0/0");
    focusByTab();
    EXPECT_EQ(place(ringed()), "0/0");
    const struct {
        Qt::Key key;
        const char *row;
    } steps[] = { { Qt::Key_Down, "0/1" }, { Qt::Key_End, "25/9" }, { Qt::Key_Down, "25/9" },
        { Qt::Key_Up, "25/8" }, { Qt::Key_Home, "0/0" }, { Qt::Key_Up, "0/0" },
        { Qt::Key_PageDown, "1/2" }, { Qt::Key_PageUp, "0/0" }, { Qt::Key_M, "12/0" },
        { Qt::Key_Up, "11/9" } };
    for (const auto &step : steps) {
        press(step.key);
        ASSERT_EQ(place(ringed()), step.row) << step.key;
        const auto *cell = table->cellForRow(*ringed());
        EXPECT_GE(cell->y(), headerHeight) << step.key << " leaves its row under the header";
        EXPECT_LE(cell->geometry().bottom(), 599) << step.key;
    }
    press(Qt::Key_Return);
    press(Qt::Key_Space);
    EXPECT_EQ(source.selected, QList<IndexPath>({ { 11, 9 }, { 11, 9 } }));
}

TEST_F(Table, HeldKeysWalkOnAndChooseOnce)
{
    show();
    focusByTab();
    const struct {
        Qt::Key key;
        int repeats;
        const char *row;
        int chosen; ///< in all
    } holds[] = { { Qt::Key_Down, 11, "1/2", 0 }, { Qt::Key_Return, 9, "1/2", 1 },
        { Qt::Key_Up, 3, "0/8", 1 }, { Qt::Key_Space, 9, "0/8", 2 },
        { Qt::Key_PageDown, 1, "3/2", 2 }, { Qt::Key_Enter, 9, "3/2", 3 },
        { Qt::Key_Select, 9, "3/2", 4 }, { Qt::Key_PageUp, 8, "0/0", 4 },
        { Qt::Key_End, 5, "25/9", 4 }, { Qt::Key_Home, 5, "0/0", 4 } };
    for (const auto &[key, repeats, row, chosen] : holds) {
        hands::hold(key, repeats);
        EXPECT_EQ(place(ringed()), row) << key;
        ASSERT_EQ(source.selected.size(), chosen) << key;
    }
}

TEST_F(Table, EnterOnARowOutOfViewBringsItBackAndTheNextChooses)
{
    show();
    focusByTab();
    press(Qt::Key_Down);
    ASSERT_EQ(place(ringed()), "0/1");
    for (const int offset : { 5000, headerHeight + rowHeight, 1 }) { // far, under the header, cut
        SCOPED_TRACE(offset);
        source.selected.clear();
        table->setContentOffset(offset);
        const bool whole = offset == 1;
        press(Qt::Key_Return);
        EXPECT_EQ(source.selected.size(), whole ? 1 : 0);
        EXPECT_EQ(place(ringed()), "0/1");
        press(Qt::Key_Return);
        EXPECT_EQ(source.selected.size(), whole ? 2 : 1);
    }
    table->resize(390, 60); // too low for a title and a row
    press(Qt::Key_End);
    press(Qt::Key_Return);
    EXPECT_EQ(place(source.selected.last()), "25/9");
}

struct Typed {
    const char *name;
    QString letters;
    const char *row;
};

class TypeAhead : public Table, public testing::WithParamInterface<Typed> { };

TEST_P(TypeAhead, FindsTheRow)
{
    source.named = { { { 0, 4 }, QStringLiteral("Åland") }, { { 8, 3 }, QStringLiteral("Aland") },
        { { 9, 3 }, QStringLiteral("Élan") } };
    show();
    focusByTab();
    type(GetParam().letters);
    EXPECT_EQ(place(ringed()), GetParam().row);
    EXPECT_TRUE(source.selected.isEmpty());
}

INSTANTIATE_TEST_SUITE_P(Letters, TypeAhead,
    testing::Values(Typed { "One", QStringLiteral("m"), "12/0" },
        Typed { "OneInCapitals", QStringLiteral("M"), "12/0" },
        Typed { "Several", QStringLiteral("mc"), "12/2" },
        Typed { "ASpaceWithin", QStringLiteral("md l"), "12/3" },
        Typed { "NoneLikeThat", QStringLiteral("mcx"), "12/2" },
        Typed { "TheSameAgain", QStringLiteral("mm"), "12/1" },
        Typed { "BackToTheFirst", QStringLiteral("aa"), "0/0" },
        Typed { "AsWrittenBeforeBare", QStringLiteral("al"), "8/3" },
        Typed { "Accented", QStringLiteral("ål"), "0/4" },
        Typed { "WithoutItsAccent", QStringLiteral("ela"), "9/3" }),
    byName);

TEST_F(Table, APauseBeginsTheLettersAnew)
{
    QGuiApplication::styleHints()->setKeyboardInputInterval(20);
    show();
    focusByTab();
    type(QStringLiteral("m"));
    QElapsedTimer pause;
    pause.start();
    EXPECT_TRUE(QTest::qWaitFor([&] { return pause.hasExpired(25); }));
    type(QStringLiteral("c"));
    EXPECT_EQ(place(ringed()), "2/0");
    QGuiApplication::styleHints()->setKeyboardInputInterval(400);
}

// A host's dialog would press its button for the Enter.
TEST_F(Table, KeepsItsKeysWhileItIsEmpty)
{
    class Host : public QWidget {
    public:
        QStringList keys;

    protected:
        void keyPressEvent(QKeyEvent *event) override
        {
            keys.append(QVariant::fromValue(Qt::Key(event->key())).toString());
        }
    } host;
    source.sections = 0;
    table = makeTable();
    table->setParent(&host);
    host.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&host));
    focusByTab();
    for (const auto key : { Qt::Key_Down, Qt::Key_End, Qt::Key_Return, Qt::Key_Enter, Qt::Key_Space,
             Qt::Key_PageUp, Qt::Key_A, Qt::Key_Escape })
        QTest::keyClick(host.windowHandle(), key);
    EXPECT_EQ(host.keys, QStringList(QStringLiteral("Key_Escape")));
    table.reset();
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
    press(Qt::Key_Down);
}

TEST_F(Table, RightToLeftPutsTheIndexAtTheLeft)
{
    show();
    EXPECT_EQ(table->visibleCells().constFirst()->geometry().right(), 365);
    table->setLayoutDirection(Qt::RightToLeft);
    EXPECT_EQ(table->findChild<TableIndex *>()->x(), 0);
    EXPECT_EQ(
        table->visibleCells().constFirst()->geometry(), QRect(24, headerHeight, 366, rowHeight));
}

// As a table does that has never shown anything else: titles, rows, ticks, lines and all.
TEST_F(Table, DrawsAtEachPlaceWhatAFreshOneDraws)
{
    source.ticked = IndexPath { 13, 4 };
    show();
    const int ticked = sectionTop(13) + 4 * rowHeight;
    const auto fresh = [this](int offset) {
        const auto other = makeTable();
        other->show();
        other->setContentOffset(offset);
        return other->grab().toImage();
    };
    for (const int offset : { 0, 300, ticked, 100000, ticked - 300, 458, ticked + 44, 5, 0 }) {
        table->setContentOffset(offset);
        EXPECT_EQ(table->grab().toImage(), fresh(table->contentOffset())) << "at " << offset;
    }
    // A press that scrolls away does not come back with the row's widget.
    hands::press(table.get(), middle(100));
    table->setContentOffset(sectionTop(3));
    EXPECT_EQ(table->cellForRow({ 3, 1 })->pressStrength(), 0);
    hands::release(table.get(), middle(100));
}

} // namespace
