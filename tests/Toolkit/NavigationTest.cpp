#include "Toolkit/Stack.h"

#include <QtCore/QElapsedTimer>

namespace {

class Navigation : public Stack, public testing::WithParamInterface<bool> {
protected:
    void SetUp() override { begin(GetParam()); }
};

TEST_P(Navigation, OnlyTheTopScreenIsInViewAtTheEndAndEachIsToldInOrder)
{
    EXPECT_TRUE(calls.isEmpty()) << "nothing loads before the container is shown";
    ASSERT_TRUE(comesToFront(*controller));
    const QPointer<Page> second(push(u"second"_s));
    EXPECT_EQ(second->navigationController(), controller.get());
    EXPECT_SOON(!root->isVisible());
    const auto buttons = controller->findChildren<BarButtonItem *>();
    EXPECT_EQ(std::ranges::count_if(buttons, &QWidget::isVisible), 2) << "another's stays there";

    pop();
    EXPECT_EQ(second->navigationController(), nullptr);
    EXPECT_SOON(second.isNull()) << "a popped screen is deleted once it is out";
    EXPECT_TRUE(root->isVisible());
    EXPECT_EQ(root->pos(), QPoint());
    EXPECT_SOON(controller->findChildren<BarButtonItem *>().size() == 2);
    pop(); // the root stays
    const QPointer<Page> third(push(u"third"_s));
    controller->hide(); // by the host, as a press leads back
    pop();
    EXPECT_EQ(third->navigationController(), nullptr);
    controller->show();
    EXPECT_SOON(third.isNull());
    controller.reset();
    EXPECT_TRUE(calls.startsWith(
        u"root load, root appear, second load, root disappear, second appear, second disappear, "
        "root appear, third load, root disappear, third appear, third disappear, root appear, "_s))
        << qPrintable(calls);
}

TEST(NavigationBar, GivesItsTitleTheRoomBesideAButtonAndShrinksIt)
{
    for (const bool mirrored : { false, true }) {
        NavigationItem item;
        NavigationBar bar;
        auto *button = new BarButtonItem(u"Cancel it"_s, u"btnCancel"_s);
        item.setLeftBarButtonItem(button);
        const int taken = button->sizeHint().width();
        bar.setLayoutDirection(mirrored ? Qt::RightToLeft : Qt::LeftToRight);
        auto *const label = bar.findChild<Label *>(u"lblTitle"_s);
        item.setTitle(u"A title"_s);
        bar.show(&item, false);
        bar.show(); // hidden it would put off what a size brings
        const int wanted = label->sizeHint().width();
        bar.resize(taken + wanted + 20, 48);
        EXPECT_EQ(label->geometry(), QRect(mirrored ? 16 : taken, 0, wanted + 4, 48)) << mirrored;
        bar.resize(taken + 16 + wanted * 4 / 5, 48);
        const QImage drawn = label->grab().toImage();
        item.setTitle(u"A titlf"_s);
        EXPECT_TRUE(label->grab().toImage() != drawn) << "cut, where smaller it fits";
    }
}

TEST(NavigationBar, FadesFromTitleToTitle)
{
    QApplication::setStyle(new ParloquinTest::PacedStyle(200));
    NavigationItem items[2];
    items[0].setTitle(u"SMS"_s);
    NavigationBar bar;
    bar.show();
    QImage looks[2];
    int at = 0;
    for (const int each : { 0, 1 }) {
        bar.show(&items[at = each], false);
        looks[at] = bar.grab().toImage();
    }
    const auto isBetween = [&] {
        const QImage now = bar.grab().toImage();
        if (now == looks[at]) { // at rest: again, as a busy machine may sleep through a fade
            bar.rememberLook();
            bar.show(&items[at = 1 - at], true);
        }
        return now != looks[0] && now != looks[1];
    };
    EXPECT_TRUE(QTest::qWaitFor(isBetween)) << "one title jumps into the other's place";
}

INSTANTIATE_TEST_SUITE_P(Motion, Navigation, testing::Bool(),
    [](const auto &row) { return std::string(row.param ? "Sliding" : "AtOnce"); });

class Slides : public Stack,
               public testing::WithParamInterface<std::tuple<bool, Qt::LayoutDirection>> { };

TEST_P(Slides, LeadInFromTheTrailingSideAndOutToIt)
{
    const auto &[in, direction] = GetParam();
    QApplication::setLayoutDirection(direction);
    begin(true);
    ASSERT_TRUE(comesToFront(*controller));
    const QPointer<Page> second(push(u"second"_s, in));
    if (!in)
        pop();
    const QSignalSpy clicks((in ? second.data() : root)->button, &QAbstractButton::clicked);
    QElapsedTimer time;
    time.start();

    const int side = direction == Qt::LeftToRight ? 1 : -1;
    std::vector<int> upper; // where they stand, px towards the trailing side
    std::vector<int> lower;
    std::vector<int> light; // of the lower one
    ASSERT_TRUE(QTest::qWaitFor([&] {
        if (second && second->x() != 0) {
            upper.push_back(second->x() * side);
            lower.push_back(root->x() * side);
            const QRect bare(side > 0 ? 0 : 389, 790, 1, 1);
            light.push_back(qGray(controller->grab(bare).toImage().pixel(0, 0)));
            if (upper.size() == 1) { // and not late, when a busy machine has them at rest meanwhile
                hands::click(controller.get(), QPoint(50, 60)); // a field of both, where they rest
                hands::key(Qt::Key_Return);
                hands::key(Qt::Key_Space);
            }
        }
        return controller->isAtRest();
    }));
    EXPECT_GE(time.elapsed(), 250);
    ASSERT_GT(upper.size(), 2U) << "there was no motion";
    if (in)
        std::reverse(upper.begin(), upper.end());
    else
        std::ranges::reverse(lower), std::ranges::reverse(light);
    EXPECT_TRUE(std::is_sorted(light.rbegin(), light.rend())) << testing::PrintToString(light);
    EXPECT_GT(light.front(), light.back()) << "the more the other covers it, the darker";
    EXPECT_TRUE(std::is_sorted(upper.begin(), upper.end())) << testing::PrintToString(upper);
    EXPECT_TRUE(std::is_sorted(lower.rbegin(), lower.rend())) << testing::PrintToString(lower);
    EXPECT_NEAR(upper.back(), 296, 95) << "more than half of the page's width, 390";
    EXPECT_NEAR(lower.back(), -89, 28) << "more than half of three tenths of it";
    EXPECT_FALSE(qobject_cast<QLineEdit *>(QApplication::focusWidget())) << "tapped on the way";
    EXPECT_EQ(clicks.count(), 0) << "pressed by a key on the way";
    hands::key(Qt::Key_Space);
    EXPECT_EQ(clicks.count(), 1);
    hands::click(controller.get(), QPoint(50, 60));
    EXPECT_TRUE((in ? second.data() : root)->field->hasFocus());
}

TEST_P(Slides, CutShortLeaveTheScreenInItsPlace)
{
    const auto &[in, direction] = GetParam();
    QApplication::setLayoutDirection(direction);
    const auto turned = direction == Qt::LeftToRight ? Qt::RightToLeft : Qt::LeftToRight;
    const std::pair<const char *, std::function<void()>> cuts[] = {
        { "resized", [this] { controller->resize(420, 700); } },
        { "mirrored", [this, turned] { controller->setLayoutDirection(turned); } },
        { "closed", [this] { controller->close(), controller->show(); } },
    };
    for (const auto &[name, cut] : cuts) {
        begin(true);
        ASSERT_TRUE(comesToFront(*controller));
        push(u"second"_s, in);
        if (!in)
            pop();
        const auto *const screen = controller->topViewController();
        ASSERT_NE(screen->x(), 0) << "there is no motion";
        cut();
        EXPECT_EQ(screen->geometry(), screen->parentWidget()->rect()) << name;
    }
}

INSTANTIATE_TEST_SUITE_P(Directions, Slides,
    testing::Combine(testing::Bool(), testing::Values(Qt::LeftToRight, Qt::RightToLeft)),
    [](const auto &row) {
        return std::string(std::get<0>(row.param) ? "In" : "Out")
            + (std::get<1>(row.param) == Qt::LeftToRight ? "LeftToRight" : "RightToLeft");
    });

} // namespace
