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
    static QWidget *named(const char *name, QWidget *parent)
    {
        auto *const widget = new QWidget(parent);
        widget->setObjectName(QLatin1String(name));
        return widget;
    }
    /// By the rows from the last to the first, as screens have them in any order; and begins anew
    /// with another box: one that is gone takes its rows with it.
    void expectBox(std::initializer_list<Constraint> rows, QRect place, QRect mirrored)
    {
        for (auto row = std::rbegin(rows); row != std::rend(rows); ++row)
            activate(page, { *row });
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
}

struct CountedText : QWidget {
    using QWidget::QWidget;
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int) const override { return ++asked, tall; }

    mutable int asked = 0;
    int tall = 20;
};

TEST_F(Anchors, ManyTextsThatChangeAreLaidOutOnce)
{
    CountedText above(page);
    CountedText below(box);
    activate(page,
        { leading(&above) == leading(page), width(&above) == 100, top(&above) == top(page),
            leading(box) == leading(page), width(box) == 200, top(box) == bottom(&above),
            height(box) == height(&below), leading(&below) == leading(box), width(&below) == 100,
            top(&below) == top(box) });
    layOut();
    const int before = above.asked;
    for (auto *text : { &above, &below }) {
        text->tall += 5;
        text->updateGeometry();
    }
    QCoreApplication::processEvents();
    EXPECT_EQ(above.asked, before + 1);
    EXPECT_EQ(box->geometry(), QRect(0, 25, 200, 25));
}

TEST_F(Anchors, StopTheProgramOverAFaultNamingTheWidget)
{
    const auto layOutBy = [this](std::initializer_list<Constraint> rows) {
        activate(page, rows);
        layOut();
    };
    for (const int wide : { 100, 1000 })
        EXPECT_DEATH(layOutBy({ leading(box) == leading(page), trailing(box) == trailing(page),
                         width(box) == wide, top(box) == top(page), height(box) == 1 }),
            "viewBox is given two places");
    EXPECT_DEATH(
        layOutBy({ width(box) == 100, top(box) == top(page), bottom(box) == bottom(page) }),
        "nothing fixes where viewBox stands from side to side");
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
