#include "Parloquin/Toolkit/Style.h"
#include "Parloquin/Toolkit/TableParts.h"
#include "Toolkit/Countries.h"

#include <QtGui/QStyleHints>
#include <QtWidgets/QScroller>

namespace {

class Table : public CountryTable {
protected:
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

TEST_F(Table, ATapSelectsAndAMovedFingerDoesNot)
{
    show();
    const int y = headerHeight + rowHeight + 5;
    hands::press(table.get(), middle(y));
    hands::release(table.get(), middle(y - 6)); // trembles over its edge
    EXPECT_EQ(source.selected, QList<IndexPath>({ { 0, 1 } }));
    hands::press(table.get(), middle(y + 2 * rowHeight));
    hands::moveTo(table.get(), middle(y + 10));
    EXPECT_FALSE(table->cellForRow({ 0, 1 })->isPressed());
    hands::release(table.get(), middle(y));
    EXPECT_EQ(source.selected.size(), 1);

    table->setContentOffset(400); // the third title comes in, and goes
    table->setContentOffset(rowHeight);
    for (const int place : { headerHeight / 2, headerHeight + 2, 540 })
        hands::click(table.get(), middle(place));
    EXPECT_EQ(source.selected.size(), 3) << "the stuck header, alone, hides the row under it";
    hands::Finger finger;
    finger.down(table.get(), middle(100));
    table->reloadData();
    finger.up();
    EXPECT_EQ(source.selected.size(), 3) << "another row has come beneath it";
    finger.tap(table.get(), { 380, 590 }); // a letter
    EXPECT_EQ(table->contentOffset(), sectionTop(26) - 600);
}

TEST_F(Table, ASecondFingerAndACancelledTouchMeanNothing)
{
    show();
    hands::Finger finger;
    finger.down(table.get(), middle(500));
    EXPECT_TRUE(table->cellForRow({ 1, 0 })->isPressed());
    finger.drag({ 0, -100 });
    EXPECT_FALSE(table->cellForRow({ 1, 0 })->isPressed());
    EXPECT_SOON(std::abs(table->contentOffset() - 100) <= 30) << table->contentOffset();
    const int offset = table->contentOffset();
    finger.beside(QPoint(100, 50));
    finger.up();
    finger.liftOther();
    ASSERT_SOON(QScroller::scroller(table.get())->state() == QScroller::Inactive);
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
    ASSERT_SOON(QScroller::scroller(table.get())->state() == QScroller::Inactive);
    const auto rows = table->visibleCells(); // wherever it stopped, amid the page one stands whole
    finger.tap(rows[rows.size() / 2]); // the next one means a row
    EXPECT_EQ(source.selected.size(), 1);
}

const Brake brakes[] = {
    { "AFinger", [](auto &table) { hands::Finger().tap(&table, QPoint(100, 300)); } },
    { "ALetter", [](auto &table) { hands::click(&table, QPoint(380, 300)); } },
    { "AnArrow", [](auto &) { hands::key(Qt::Key_Down); } },
    { "AWheel", [](auto &table) { hands::wheel(&table, QPoint(9, 300), {}, QPoint(0, -120)); } },
    { "AWord", [](auto &) { hands::key(Qt::Key_M); } },
    { "GoingOutOfView", [](auto &table) { table.hide(); } },
};
INSTANTIATE_TEST_SUITE_P(Brakes, RollingTable, testing::ValuesIn(brakes), byName);

TEST_F(Table, WheelsAndTouchpadsStopAtTheEnds)
{
    show();
    const auto roll = [this](QPoint pixels, QPoint angle) {
        hands::wheel(table.get(), middle(100), pixels, angle);
    };
    roll({ 0, -37 }, { 0, -120 });
    EXPECT_EQ(table->contentOffset(), 37);
    hands::press(table.get(), middle(100)); // a row that the wheel takes from under the pointer
    roll({}, { 0, 120 });
    hands::release(table.get(), middle(100));
    EXPECT_TRUE(source.selected.isEmpty());
    EXPECT_EQ(table->contentOffset(), 0);
    roll({}, { 0, -1200000 });
    EXPECT_EQ(table->contentOffset(), sectionTop(26) - 600);
    source.titled = false; // without letters a thumb says where one is, for a while
    table->reloadData();
    roll({}, { 0, 120 });
    auto *const thumb = table->findChild<TableThumb *>();
    EXPECT_TRUE(thumb->isVisible());
    roll({}, { 0, -120 });
    EXPECT_EQ(thumb->geometry(), QRect(385, 598 - 36, 3, 36)); // never shorter
    roll({}, { 0, 1200000 });
    EXPECT_EQ(thumb->geometry(), QRect(385, 2, 3, 36));
    table->setLayoutDirection(Qt::RightToLeft);
    roll({}, { 0, -120 });
    EXPECT_EQ(thumb->x(), 2);
    const auto drawn = [thumb] {
        QImage image(thumb->size(), QImage::Format_RGB32);
        image.fill(Qt::white);
        thumb->render(&image, {}, {}, QWidget::DrawChildren);
        return image;
    };
    const QImage plain = drawn();
    table->setPalette(QPalette(Qt::darkBlue, Qt::darkBlue));
    EXPECT_EQ(difference(drawn(), plain), "") << "by a host's palette";
    QDeadlineTimer half(Style::scrollThumb / 2);
    EXPECT_SOON(half.hasExpired());
    roll({}, { 0, -120 }); // as long again, from then on
    half.setRemainingTime(Style::scrollThumb * 3 / 4);
    EXPECT_SOON(!thumb->isVisible());
    EXPECT_TRUE(half.hasExpired()) << "it blinks amid scrolling";
    roll({}, { 0, -120 });
    table->resize(table->size() - QSize(9, 9)); // where it stood says nothing any more
    EXPECT_FALSE(thumb->isVisible());
}

// To a reader it has been said at once: tests/Readers/walks/Lists.txt.
TEST_F(Table, TheFirstKeyShowsWhichRowItIs)
{
    show();
    table->setFocus(Qt::MouseFocusReason);
    EXPECT_EQ(place(ringed()), "none") << "a tap rings nothing";
    press(Qt::Key_Return);
    EXPECT_TRUE(source.selected.isEmpty()) << "nobody chooses what is not seen";
    EXPECT_EQ(place(ringed()), "0/0");
    press(Qt::Key_Down);
    EXPECT_EQ(place(ringed()), "0/1");
    for (const auto key : { Qt::Key_Return, Qt::Key_Space, Qt::Key_Select }) {
        source.selected.clear();
        hands::hold(key, 9);
        EXPECT_EQ(source.selected, QList<IndexPath>({ { 0, 1 } })) << key << " chooses once";
    }
}

TEST_F(Table, APauseBeginsTheLettersAnew)
{
    show();
    focusByTab();
    const auto typeSlowly = [this](const QString &letters, int interval, int pause) {
        QGuiApplication::styleHints()->setKeyboardInputInterval(interval);
        for (const QChar letter : letters) {
            const QDeadlineTimer end(pause);
            EXPECT_SOON(end.hasExpired());
            type(letter);
        }
    };
    typeSlowly(u"mc"_s, 20, 25);
    EXPECT_EQ(place(ringed()), "2/0");
    typeSlowly(u"d"_s, 20, 25);
    typeSlowly(u"b "_s, 1000, 550); // it counts from the last letter, or a blank would choose
    EXPECT_EQ(place(ringed()), "3/1");
    EXPECT_TRUE(source.selected.isEmpty());
    QGuiApplication::styleHints()->setKeyboardInputInterval(400);
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
    for (const auto *header : table->findChildren<TableHeader *>())
        EXPECT_FALSE(header->isVisible());
    press(Qt::Key_Down);
}

// As a table does that has never shown anything else: titles, rows, ticks, lines and all.
TEST_F(Table, DrawsAtEachPlaceWhatAFreshOneDraws)
{
    source.ticked = IndexPath { 13, 4 };
    show();
    const int ticked = sectionTop(13) + 4 * rowHeight;
    const auto fresh = [this](int offset) {
        const auto other = makeTable();
        other->setLayoutDirection(table->layoutDirection());
        other->show();
        other->setContentOffset(offset);
        return other->grab().toImage();
    };
    for (const int offset : { 0, 300, ticked, 100000, ticked - 300, 458, ticked + 44, 5, 0 }) {
        table->setContentOffset(offset);
        EXPECT_EQ(difference(table->grab().toImage(), fresh(table->contentOffset())), "") << offset;
        for (auto *cell : table->visibleCells()) {
            EXPECT_EQ(qobject_cast<CountryTableCell *>(cell)->countryModel()->title,
                source.country(cell->indexPath()).title)
                << "what a tap gives at " << offset;
        }
    }
    table->setLayoutDirection(Qt::RightToLeft);
    EXPECT_EQ(difference(table->grab().toImage(), fresh(0)), "") << "turned";
    EXPECT_LT(table->findChildren<TableCell *>().size(), 40);
}

} // namespace
