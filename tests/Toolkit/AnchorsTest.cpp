#include "Parloquin/Toolkit/Anchors.h"
#include "Parloquin/Toolkit/Label.h"
#include "Soon.h"

#include <QtTest/QTest>
#include <QtWidgets/QWidget>

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

using namespace parloquin;

namespace {

struct AnchoredPage : QWidget {
    AnchoredPage()
        : box(new QWidget(this))
        , inner(new QWidget(box))
        , label(new Label(this))
    {
        resize(390, 752);
        box->setObjectName(QStringLiteral("viewBox"));
        inner->setObjectName(QStringLiteral("viewInner"));
        label->setObjectName(QStringLiteral("lblText"));
        label->setNumberOfLines(0);
    }

    void layOut(Qt::LayoutDirection direction = Qt::LeftToRight)
    {
        setLayoutDirection(direction);
        show();
        QCoreApplication::processEvents();
    }

    QWidget *box;
    QWidget *inner;
    Label *label;
};

struct Row {
    const char *name;
    std::function<void(AnchoredPage &)> table;
    QRect box;
    QRect mirrored;
};

void PrintTo(const Row &row, std::ostream *out) { *out << row.name; }

class AnchorTables : public testing::TestWithParam<Row> { };

const Row rows[] = {
    { "EdgesAndHeight",
        [](AnchoredPage &p) {
            activate(&p,
                { leading(p.box) == leading(&p) + 20, trailing(p.box) == trailing(&p) - 30,
                    top(p.box) == top(&p) + 30, height(p.box) == 60 });
        },
        { 20, 30, 340, 60 }, { 30, 30, 340, 60 } },
    { "CentreAndSize",
        [](AnchoredPage &p) {
            activate(&p,
                { centerX(p.box) == centerX(&p) + 10, centerY(p.box) == centerY(&p),
                    width(p.box) == 80, height(p.box) == width(p.box) });
        },
        { 165, 336, 80, 80 }, { 145, 336, 80, 80 } },
    { "RowsInAnyOrderAndDirection",
        [](AnchoredPage &p) {
            activate(&p,
                { bottom(&p) - 25 == bottom(p.box), height(p.box) == height(p.inner) + 10,
                    height(p.inner) == 20, width(p.inner) == 20, top(p.inner) == top(p.box),
                    leading(p.inner) == leading(p.box), trailing(p.box) == trailing(&p) - 15,
                    width(p.box) == 100 });
        },
        { 275, 697, 100, 30 }, { 15, 697, 100, 30 } },
    { "EdgeAndCentreGiveSize",
        [](AnchoredPage &p) {
            activate(&p,
                { leading(p.box) == leading(&p) + 95, centerX(p.box) == centerX(&p),
                    bottom(p.box) == bottom(&p), centerY(p.box) == bottom(&p) - 50 });
        },
        { 95, 652, 200, 100 }, { 95, 652, 200, 100 } },
    { "HalfAPixelKeepsSize",
        [](AnchoredPage &p) {
            activate(&p,
                { leading(p.box) == leading(&p) + 10.5, width(p.box) == 54,
                    top(p.box) == top(&p) + 10.5, height(p.box) == 54 });
        },
        { 10, 10, 54, 54 }, { 326, 10, 54, 54 } },
    { "ThinLineKeepsAPixel",
        [](AnchoredPage &p) {
            activate(&p,
                { leading(p.box) == leading(&p), trailing(p.box) == trailing(&p),
                    top(p.box) == top(&p) + 5, height(p.box) == 0.5 });
        },
        { 0, 5, 390, 1 }, { 0, 5, 390, 1 } },
};

TEST_P(AnchorTables, PlaceAndMirror)
{
    AnchoredPage page;
    GetParam().table(page);
    page.layOut();
    EXPECT_EQ(page.box->geometry(), GetParam().box);
    page.layOut(Qt::RightToLeft);
    EXPECT_EQ(page.box->geometry(), GetParam().mirrored);
}

INSTANTIATE_TEST_SUITE_P(Rows, AnchorTables, testing::ValuesIn(rows),
    [](const auto &row) { return std::string(row.param.name); });

void textOverBox(AnchoredPage &p)
{
    activate(&p,
        { leading(p.label) == leading(&p) + 25, trailing(p.label) == trailing(&p) - 25,
            top(p.label) == top(&p) + 30 });
    activate(&p,
        { leading(p.box) == leading(&p), trailing(p.box) == trailing(&p),
            top(p.box) == bottom(p.label) + 30, bottom(p.box) == bottom(&p) });
    activate(&p,
        { leading(p.inner) == leading(p.box) + 20, trailing(p.inner) == trailing(p.box) - 20,
            top(p.inner) == top(p.box), height(p.inner) == height(p.box) });
}

TEST(Anchors, AGrowingTextPushesWhatStandsBelow)
{
    AnchoredPage page;
    textOverBox(page);
    page.layOut();
    EXPECT_EQ(page.box->y(), 60) << "an empty text takes no height";

    page.label->setFontSize(16);
    page.label->setText(QStringLiteral("One line"));
    EXPECT_SOON(page.box->y() == 80);
    page.label->setText(QStringLiteral("word ").repeated(40));
    EXPECT_SOON(page.box->y() >= 100);
    EXPECT_EQ((page.box->y() - 60) % 20, 0);
    EXPECT_EQ(page.inner->height(), page.box->height());

    const int before = page.box->y();
    page.resize(700, 752);
    EXPECT_LT(page.box->y(), before) << "wider, the text needs fewer lines";
    EXPECT_EQ(page.inner->geometry(), QRect(20, 0, 660, page.box->height()));
}

TEST(Anchors, RowsMeanTheSameInAnyOrder)
{
    const auto places = [](int turn, bool backwards) {
        AnchoredPage page;
        Label badge(&page);
        badge.setText(QStringLiteral("12"));
        page.label->setText(QStringLiteral("word ").repeated(40));
        QList<Constraint> table = { leading(page.label) == leading(&page) + 10,
            top(page.label) == top(&page), trailing(page.label) == leading(&badge) - 8,
            trailing(&badge) == trailing(&page), width(&badge) == 40,
            centerY(&badge) == centerY(page.label), top(page.box) == bottom(page.label),
            height(page.box) == height(&badge), leading(page.box) == leading(&badge),
            width(page.box) == 30 };
        std::rotate(table.begin(), table.begin() + turn, table.end());
        if (backwards)
            std::reverse(table.begin(), table.end());
        for (const Constraint &row : table)
            activate(&page, { row });
        page.layOut();
        return QList<QRect> { page.label->geometry(), badge.geometry(), page.box->geometry() };
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

TEST(Anchors, ManyTextsThatChangeAreLaidOutOnce)
{
    AnchoredPage page;
    CountedText above(page.box);
    CountedText below(page.inner);
    activate(&page,
        { leading(page.box) == leading(&page), width(page.box) == 300, top(page.box) == top(&page),
            bottom(page.box) == bottom(page.inner), leading(&above) == leading(page.box),
            width(&above) == 100, top(&above) == top(page.box),
            leading(page.inner) == leading(page.box), width(page.inner) == 200,
            top(page.inner) == bottom(&above), height(page.inner) == height(&below),
            leading(&below) == leading(page.inner), width(&below) == 100,
            top(&below) == top(page.inner) });
    page.layOut();
    const int before = above.asked;
    above.grow();
    below.grow();
    QCoreApplication::processEvents();
    EXPECT_EQ(above.asked, before + 1);
    EXPECT_EQ(page.box->height(), 50);
}

TEST(Anchors, AWidgetThatIsGoneTakesItsRowsWithIt)
{
    AnchoredPage page;
    textOverBox(page);
    page.layOut();
    delete page.inner;
    page.resize(500, 700);
    EXPECT_EQ(page.box->width(), 500);
}

struct Fault {
    const char *name;
    std::function<void(AnchoredPage &)> table;
    const char *message;
};

void PrintTo(const Fault &fault, std::ostream *out) { *out << fault.name; }

class AnchorFaults : public testing::TestWithParam<Fault> { };

const Fault faults[] = {
    { "Contradiction",
        [](AnchoredPage &p) {
            activate(&p,
                { leading(p.box) == leading(&p), trailing(p.box) == trailing(&p),
                    width(p.box) == 100, top(p.box) == top(&p), height(p.box) == 1 });
        },
        "viewBox is given two places" },
    { "OpenAcross",
        [](AnchoredPage &p) {
            activate(
                &p, { width(p.box) == 100, top(p.box) == top(&p), bottom(p.box) == bottom(&p) });
        },
        "nothing fixes where viewBox stands from side to side" },
    { "OpenDown",
        [](AnchoredPage &p) {
            activate(&p,
                { leading(p.inner) == leading(&p), trailing(p.inner) == trailing(&p),
                    top(p.inner) == top(&p) });
        },
        "nothing fixes where viewInner stands from top to bottom" },
    { "TextsThatShareOneRoom",
        [](AnchoredPage &p) {
            auto *const other = new Label(&p);
            activate(&p,
                { leading(p.label) == leading(&p), trailing(p.label) == trailing(&p),
                    top(p.label) == top(&p), leading(other) == leading(&p),
                    trailing(other) == trailing(&p), top(other) == bottom(p.label),
                    bottom(other) == bottom(&p) });
        },
        "rows tie the size of .* to another text's" },
    { "Stranger",
        [](AnchoredPage &p) {
            static QWidget stranger;
            stranger.setObjectName(QStringLiteral("viewStranger"));
            activate(&p, { leading(&stranger) == leading(&p) });
        },
        "viewStranger is not inside" },
};

TEST_P(AnchorFaults, StopTheProgramNamingTheWidget)
{
    const auto layOut = [] {
        AnchoredPage page;
        GetParam().table(page);
        page.layOut();
    };
    EXPECT_DEATH(layOut(), GetParam().message);
}

INSTANTIATE_TEST_SUITE_P(Faults, AnchorFaults, testing::ValuesIn(faults),
    [](const auto &row) { return std::string(row.param.name); });

} // namespace
