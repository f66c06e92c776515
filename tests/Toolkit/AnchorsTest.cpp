#include "Parloquin/Toolkit/Anchors.h"
#include "Parloquin/Toolkit/Label.h"
#include "Soon.h"

#include <QtTest/QTest>
#include <QtWidgets/QWidget>

#include <gtest/gtest.h>

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
