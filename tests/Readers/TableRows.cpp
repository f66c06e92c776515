// A table as a screen reader finds it: its list, its events, its actions.
#include "Readers/Heard.h"
#include "Toolkit/Countries.h"

namespace {

class TableReaders : public CountryTable {
protected:
    [[nodiscard]] QAccessibleInterface *list() const
    {
        return QAccessible::queryAccessibleInterface(table.get());
    }
    [[nodiscard]] QAccessibleInterface *row(const IndexPath &path) const
    {
        return list()->child(path.section * (1 + source.rows) + 1 + path.row);
    }
    void act(const IndexPath &path, const QString &action) const
    {
        row(path)->actionInterface()->doAction(action);
    }
    /// What has been heard since this was asked last.
    std::string takeEvents()
    {
        QCoreApplication::processEvents();
        return std::exchange(Heard::events, {}).join(u"; "_s).toStdString();
    }

    const Heard heard;
};

TEST_F(TableReaders, FindUnderAFingerWhatIsSeenThere)
{
    show();
    table->setContentOffset(headerHeight + rowHeight + 30);
    const std::pair<int, QString> rows[] = { { 5, u"A"_s }, { headerHeight + 2, u"Ac land, +02"_s },
        { sectionTop(1) - table->contentOffset() + 3, u"B"_s },
        { sectionTop(1) - table->contentOffset() + 40, u"Ba land, +10"_s } };
    for (const auto &[y, name] : rows) {
        const QPoint at = table->mapToGlobal(QPoint(100, y));
        const auto *item = list()->childAt(at.x(), at.y());
        ASSERT_TRUE(item) << y;
        EXPECT_EQ(item->text(QAccessible::Name), name);
    }
    EXPECT_EQ(list()->childAt(-1, -1), nullptr);
    EXPECT_EQ(list()->child(-1), nullptr);
    EXPECT_EQ(list()->child(list()->childCount()), nullptr);
}

// Recycled widgets change names, places and visibility with each step; no reader is to hear it.
TEST_F(TableReaders, HearOneFocusEventAKey)
{
    show(26, 400);
    table->setAccessibleName(u"Countries"_s);
    table->clearFocus();
    takeEvents();
    table->setFocus(); // nothing rings, but it has been heard: the first key goes on
    EXPECT_EQ(takeEvents(), "focus Countries; focus Aa land, +00");
    const std::pair<Qt::Key, IndexPath> steps[] = { { Qt::Key_Down, { 0, 1 } },
        { Qt::Key_End, { 25, 399 } }, { Qt::Key_M, { 12, 0 } } };
    for (const auto &[key, at] : steps) {
        press(key);
        EXPECT_EQ(takeEvents(), "focus " + source.nameOfRow(*table, at).toStdString()) << key;
        EXPECT_EQ(list()->focusChild(), row(at));
    }
    press(Qt::Key_Home);
    takeEvents();
    press(Qt::Key_Up);
    EXPECT_EQ(takeEvents(), "") << "nothing has moved";
    table->setContentOffset(5000);
    EXPECT_EQ(takeEvents(), "") << "nor has the focus";
}

TEST_F(TableReaders, PressRowsInAndOutOfView)
{
    show();
    for (const IndexPath path : { IndexPath { 0, 2 }, IndexPath { 25, 9 }, IndexPath { 0, 0 } }) {
        SCOPED_TRACE(place(path));
        act(path, QAccessibleActionInterface::pressAction());
        EXPECT_EQ(place(source.selected.last()), place(path));
        ASSERT_TRUE(table->cellForRow(path)) << "chosen, and not to be seen";
        EXPECT_GE(table->cellForRow(path)->y(), headerHeight);
    }
    act({ 7, 7 }, QAccessibleActionInterface::setFocusAction());
    EXPECT_EQ(source.selected.size(), 3);
    EXPECT_TRUE(table->hasFocus());
    EXPECT_TRUE(row({ 7, 7 })->state().focused);
    press(Qt::Key_Down);
    EXPECT_TRUE(row({ 7, 8 })->state().focused) << "the first key only woke it up";
    EXPECT_EQ(list()->child(0)->actionInterface(), nullptr) << "a title is not pressed";
}

TEST_F(TableReaders, HearOfOtherRowsAndLoseTheOldOnes)
{
    show();
    focusByTab();
    press(Qt::Key_End);
    const auto old = QAccessible::uniqueId(row({ 0, 3 }));
    takeEvents();
    source.sections = 2;
    table->reloadData();
    EXPECT_EQ(takeEvents(), "other rows ; focus Bj land, +19");
    EXPECT_EQ(QAccessible::accessibleInterface(old), nullptr);
    EXPECT_TRUE(row({ 0, 3 })) << "and find none in their place";
}

} // namespace
