#include "Parloquin/Toolkit/Anchors.h"
#include "support/Widgets.h"

#include <initializer_list>

namespace {

class Anchors : public testing::Test {
protected:
    Anchors()
    {
        page->resize(390, 752);
        label->setNumberOfLines(0);
    }
    void layOut(Qt::LayoutDirection direction = Qt::LeftToRight) const
    {
        page->setLayoutDirection(direction);
        page->show();
        QCoreApplication::processEvents();
    }
    void textOverBox() const
    {
        activate(page,
            { leading(label) == leading(page) + 25, trailing(label) == trailing(page) - 25,
                top(label) == top(page) + 30 });
        activate(page,
            { leading(box) == leading(page), trailing(box) == trailing(page),
                top(box) == bottom(label) + 30, bottom(box) == bottom(page),
                leading(inner) == leading(box) + 20, trailing(inner) == trailing(box) - 20,
                top(inner) == top(box), height(inner) == height(box) });
        layOut();
    }
    static QWidget *named(const char *name, QWidget *parent)
    {
        auto *const widget = new QWidget(parent);
        widget->setObjectName(QLatin1String(name));
        return widget;
    }
    /// And begins anew with another box.
    void expectBox(std::initializer_list<Constraint> rows, QRect place, QRect mirrored)
    {
        activate(page, rows);
        layOut();
        EXPECT_EQ(box->geometry(), place);
        layOut(Qt::RightToLeft);
        EXPECT_EQ(box->geometry(), mirrored);
        delete box;
        box = named("viewBox", page);
        inner = named("viewInner", box);
    }

    const std::unique_ptr<QWidget> window = std::make_unique<QWidget>();
    QWidget *const page = window.get();
    QWidget *box = named("viewBox", page);
    QWidget *inner = named("viewInner", box);
    Label *const label = new Label(page);
};

TEST_F(Anchors, PlaceByRowsInEitherDirection)
{
    expectBox({ leading(box) == leading(page) + 20, trailing(box) == trailing(page) - 30,
                  top(box) == top(page) + 30, height(box) == 60 },
        { 20, 30, 340, 60 }, { 30, 30, 340, 60 });
    // By centre and size.
    expectBox({ centerX(box) == centerX(page) + 10, centerY(box) == centerY(page), width(box) == 80,
                  height(box) == width(box) },
        { 165, 336, 80, 80 }, { 145, 336, 80, 80 });
    // From any side of a row, in any order.
    expectBox(
        { bottom(page) - 25 == bottom(box), height(box) == height(inner) + 10, height(inner) == 20,
            width(inner) == 20, top(inner) == top(box), leading(inner) == leading(box),
            trailing(box) == trailing(page) - 15, width(box) == 100 },
        { 275, 697, 100, 30 }, { 15, 697, 100, 30 });
    // The size from edge and centre.
    expectBox({ leading(box) == leading(page) + 95, centerX(box) == centerX(page),
                  bottom(box) == bottom(page), centerY(box) == bottom(page) - 50 },
        { 95, 652, 200, 100 }, { 95, 652, 200, 100 });
    // At half a pixel it keeps its size, and a thin line a pixel.
    expectBox({ leading(box) == leading(page) + 10.5, width(box) == 54,
                  top(box) == top(page) + 10.5, height(box) == 54 },
        { 10, 10, 54, 54 }, { 326, 10, 54, 54 });
    expectBox({ leading(box) == leading(page), trailing(box) == trailing(page),
                  top(box) == top(page) + 5, height(box) == 0.5 },
        { 0, 5, 390, 1 }, { 0, 5, 390, 1 });
}

TEST_F(Anchors, AGrowingTextPushesWhatStandsBelow)
{
    textOverBox();
    EXPECT_EQ(box->y(), 60) << "an empty text takes no height";

    label->setFontSize(16);
    label->setText(u"One line"_s);
    EXPECT_SOON(box->y() == 80);
    label->setText(u"word "_s.repeated(40));
    EXPECT_SOON(box->y() >= 100);
    EXPECT_EQ((box->y() - 60) % 20, 0);
    EXPECT_EQ(inner->height(), box->height());

    const int before = box->y();
    page->resize(700, 752);
    EXPECT_LT(box->y(), before) << "wider, the text needs fewer lines";
    EXPECT_EQ(inner->geometry(), QRect(20, 0, 660, box->height()));
}

TEST(AnchorRows, MeanTheSameInAnyOrder)
{
    // The text's own size gives the others' place.
    const auto places = [](int turn, bool backwards) {
        QWidget page;
        page.resize(390, 752);
        Label label(&page);
        Label badge(&page);
        QWidget box(&page);
        label.setNumberOfLines(0);
        badge.setText(u"12"_s);
        label.setText(u"word "_s.repeated(40));
        QList<Constraint> table = { leading(&label) == leading(&page) + 10,
            top(&label) == top(&page), trailing(&label) == leading(&badge) - 8,
            trailing(&badge) == trailing(&page), width(&badge) == 40,
            centerY(&badge) == centerY(&label), top(&box) == bottom(&label),
            height(&box) == height(&badge), leading(&box) == leading(&badge), width(&box) == 30 };
        std::rotate(table.begin(), table.begin() + turn, table.end());
        if (backwards)
            std::reverse(table.begin(), table.end());
        for (const Constraint &row : table)
            activate(&page, { row });
        page.show();
        QCoreApplication::processEvents();
        return QList<QRect> { label.geometry(), badge.geometry(), box.geometry() };
    };
    const QList<QRect> expected = places(0, false);
    for (int turn = 0; turn < 10; ++turn) {
        EXPECT_EQ(places(turn, false), expected) << turn;
        EXPECT_EQ(places(turn, true), expected) << turn;
    }
}

struct CountedText : QWidget {
    using QWidget::QWidget;
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int) const override { return ++asked, tall; }
    void grow()
    {
        tall += 5;
        updateGeometry();
    }

    mutable int asked = 0;
    int tall = 20;
};

TEST_F(Anchors, ManyTextsThatChangeAreLaidOutOnce)
{
    CountedText above(box);
    CountedText below(inner);
    activate(page,
        { leading(box) == leading(page), width(box) == 300, top(box) == top(page),
            bottom(box) == bottom(inner), leading(&above) == leading(box), width(&above) == 100,
            top(&above) == top(box), leading(inner) == leading(box), width(inner) == 200,
            top(inner) == bottom(&above), height(inner) == height(&below),
            leading(&below) == leading(inner), width(&below) == 100, top(&below) == top(inner) });
    layOut();
    const int before = above.asked;
    above.grow();
    below.grow();
    QCoreApplication::processEvents();
    EXPECT_EQ(above.asked, before + 1);
    EXPECT_EQ(box->height(), 50);
}

TEST_F(Anchors, AWidgetThatIsGoneTakesItsRowsWithIt)
{
    textOverBox();
    delete inner;
    page->resize(500, 700);
    EXPECT_EQ(box->width(), 500);
}

TEST_F(Anchors, StopTheProgramOverAFaultNamingTheWidget)
{
    const auto layOutBy = [this](std::initializer_list<Constraint> rows) {
        activate(page, rows);
        layOut();
    };
    EXPECT_DEATH(layOutBy({ leading(box) == leading(page), trailing(box) == trailing(page),
                     width(box) == 100, top(box) == top(page), height(box) == 1 }),
        "viewBox is given two places");
    EXPECT_DEATH(
        layOutBy({ width(box) == 100, top(box) == top(page), bottom(box) == bottom(page) }),
        "nothing fixes where viewBox stands from side to side");
    EXPECT_DEATH(layOutBy({ leading(inner) == leading(page), trailing(inner) == trailing(page),
                     top(inner) == top(page) }),
        "nothing fixes where viewInner stands from top to bottom");
    auto *const other = new Label(page);
    EXPECT_DEATH(layOutBy({ leading(label) == leading(page), trailing(label) == trailing(page),
                     top(label) == top(page), leading(other) == leading(page),
                     trailing(other) == trailing(page), top(other) == bottom(label),
                     bottom(other) == bottom(page) }),
        "rows tie the size of .* to another text's");
    QWidget stranger;
    stranger.setObjectName(u"viewStranger"_s);
    EXPECT_DEATH(layOutBy({ leading(&stranger) == leading(page) }), "viewStranger is not inside");
}

} // namespace
