#include "Toolkit/Stack.h"

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
        item.setTitle(u"A title of more words"_s);
        bar.show(&item, false);
        bar.show(); // hidden it would put off what a size brings
        const int wanted = label->sizeHint().width();
        bar.resize(taken, 48); // none at first
        bar.resize(taken + wanted + 20, 48);
        EXPECT_EQ(label->geometry(), QRect(mirrored ? 16 : taken, 0, wanted + 4, 48)) << mirrored;
        bar.resize(taken + 16 + wanted * 4 / 5, 48);
        const QImage drawn = label->grab().toImage();
        item.setTitle(u"A title of more wordt"_s);
        EXPECT_TRUE(label->grab().toImage() != drawn) << "cut, where smaller it fits";
    }
}

INSTANTIATE_TEST_SUITE_P(Motion, Navigation, testing::Bool(),
    [](const auto &row) { return std::string(row.param ? "Sliding" : "AtOnce"); });

} // namespace
