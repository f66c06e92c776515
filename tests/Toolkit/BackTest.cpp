// Every way back a screen, and what the host hears of it.
#include "Toolkit/Stack.h"

#include <QtGui/QShortcut>

namespace {

/// Counts whatever the kit does not keep for itself, shortcuts too.
class Host : public QWidget {
public:
    Host()
    {
        for (const QKeySequence &keys :
            { QKeySequence(Qt::ALT | Qt::Key_Left), QKeySequence(Qt::Key_Return) }) {
            connect(new QShortcut(keys, this), &QShortcut::activated, this, [this] { ++heard; });
        }
    }
    int heard = 0;
    int released = 0;

protected:
    void keyPressEvent(QKeyEvent *event) override { heard += int(event->key() != Qt::Key_Alt); }
    void keyReleaseEvent(QKeyEvent *event) override
    {
        released += int(event->key() != Qt::Key_Alt);
    }
    void mousePressEvent(QMouseEvent *) override { ++heard; }
    void mouseMoveEvent(QMouseEvent *) override { ++heard; }
    void wheelEvent(QWheelEvent *) override { ++heard; }
    void mouseReleaseEvent(QMouseEvent *) override { ++released; }
};

/// Three pages beside a field of the host.
class Back : public Stack {
protected:
    ~Back() override { controller.reset(); }
    void present(bool moves = true)
    {
        begin(moves);
        auto *row = new QHBoxLayout(&host);
        row->setContentsMargins(0, 0, 0, 0);
        field = new QLineEdit;
        field->setFixedWidth(60);
        row->addWidget(field);
        row->addWidget(controller.get());
        host.resize(450, 700);
        ASSERT_TRUE(comesToFront(host));
        below = push(u"below"_s, false);
        top = push(u"top"_s, false);
        controller->setFocus();
        ASSERT_TRUE(rests());
        calls.clear();
    }

    Host host;
    QLineEdit *field = nullptr;
    Page *below = nullptr;
    Page *top = nullptr;
};

struct Way {
    const char *name;
    std::function<void(const NavigationController &)> go;
    bool ofTheHost = true; // on the first screen
};

class WaysBack : public Back, public testing::WithParamInterface<std::tuple<Way, bool>> { };

TEST_P(WaysBack, LeadOneScreenBackHoweverQuick)
{
    const auto &[way, moves] = GetParam();
    present(moves);
    way.go(*controller);
    way.go(*controller);
    EXPECT_EQ(depth(), 2);
    EXPECT_TRUE(controller->isAncestorOf(QApplication::focusWidget()));
    ASSERT_TRUE(rests());
    way.go(*controller);
    way.go(*controller);
    EXPECT_EQ(depth(), 1);
    EXPECT_EQ(host.heard + host.released, 0);
    ASSERT_TRUE(rests());
    way.go(*controller);
    EXPECT_EQ(host.heard > 0, way.ofTheHost) << "the first screen's Back is the host's";
}

const Way ways[] = {
    { "Escape", [](auto &) { hands::key(Qt::Key_Escape); } },
    { "Held", [](auto &) { hands::hold(Qt::Key_Escape); } },
    { "BackKey", [](auto &) { hands::key(Qt::Key_Back); } },
    { "AltLeft", [](auto &) { hands::key(Qt::Key_Left, Qt::AltModifier); } },
    { "MouseOnTable", [](auto &kit) { hands::click(&kit, QPoint(200, 400), Qt::BackButton); } },
    { "MouseOnButton", [](auto &kit) { hands::click(&kit, QPoint(150, 90), Qt::BackButton); } },
    { "MouseOnField", [](auto &kit) { hands::click(&kit, QPoint(20, 60), Qt::BackButton); } },
    { "Finger", [](auto &kit) { hands::Finger().tap(&kit, QPoint(20, 20)); }, false },
};

INSTANTIATE_TEST_SUITE_P(Ways, WaysBack, testing::Combine(testing::ValuesIn(ways), testing::Bool()),
    [](const auto &row) {
        return std::string(std::get<0>(row.param).name)
            + (std::get<1>(row.param) ? "Sliding" : "AtOnce");
    });

// Held, a key is whose it was when it was pressed.
TEST_F(Back, RepeatsAndReleasesGoWhereThePressWent)
{
    present();
    controller->topViewController()->setFocus(); // a page that does nothing with Enter
    hands::hold(Qt::Key_Enter);
    EXPECT_EQ(host.heard, 6);
    EXPECT_EQ(host.released, 1);
}

// A host's dialog would press its button for the Enter.
TEST_F(Back, AnEmptyTableKeepsItsKeysAndItsWheel)
{
    present();
    Countries none;
    none.sections = 0;
    top->table->setDataSource(&none);
    top->table->reloadData();
    top->table->setFocus(Qt::TabFocusReason);
    for (const auto key : { Qt::Key_Down, Qt::Key_End, Qt::Key_Return, Qt::Key_Enter, Qt::Key_Space,
             Qt::Key_PageUp, Qt::Key_A }) {
        hands::key(key);
        EXPECT_EQ(host.heard, 0) << key;
    }
    hands::wheel(top->table, QPoint(100, 100), {}, QPoint(0, -120));
    EXPECT_EQ(host.heard, 0) << "the wheel";
    hands::key(Qt::Key_F5);
    EXPECT_EQ(host.heard, 1);
    controller.reset();
}

// X11 repeats by releases and presses, and Qt does not always tell that these are one key held.
TEST_F(Back, AHeldKeyOfX11DoesWhatOnePressDoes)
{
    begin(false);
    ASSERT_TRUE(comesToFront(*controller)); // another, before
    present(false);
    quint64 time = 0; // ms
    const auto send = [&time](QEvent::Type type, Qt::Key key, int later) {
        QKeyEvent event(type, key, {});
        event.setTimestamp(time += static_cast<quint64>(later));
        QCoreApplication::sendEvent(QGuiApplication::focusWindow(), &event);
    };
    const auto hold = [&](Qt::Key key) {
        send(QEvent::KeyPress, key, 30);
        for (const int later : { 500, 40, 40 }) {
            ASSERT_TRUE(rests());
            send(QEvent::KeyRelease, key, later);
            send(QEvent::KeyPress, key, 0);
        }
        send(QEvent::KeyRelease, key, 40);
    };
    const QSignalSpy clicks(top->button, &QAbstractButton::clicked);
    top->button->setFocus();
    hold(Qt::Key_Space);
    EXPECT_EQ(clicks.count(), 1);
    hold(Qt::Key_Return);
    EXPECT_EQ(clicks.count(), 2);
    for (const int left : { 2, 1 }) {
        hold(Qt::Key_Escape);
        EXPECT_EQ(depth(), left);
    }
    EXPECT_EQ(host.heard + host.released, 0);
}

class Edge : public Back, public testing::WithParamInterface<std::tuple<bool, bool>> {
protected:
    void SetUp() override
    {
        // The page's own counts, whatever the application's is.
        QApplication::setLayoutDirection(mirrored() ? Qt::LeftToRight : Qt::RightToLeft);
        host.setLayoutDirection(mirrored() ? Qt::RightToLeft : Qt::LeftToRight);
    }

    // From the leading edge, in pixels inwards.
    [[nodiscard]] QPoint from(int inwards, int y) const
    {
        return { mirrored() ? controller->width() - inwards - 1 : inwards, y };
    }
    [[nodiscard]] QPoint by(int inwards, int down = 0) const
    {
        return { mirrored() ? -inwards : inwards, down };
    }
    void drag(int inwards)
    {
        finger.down(controller.get(), from(18, height()));
        finger.drag(by(inwards));
    }
    [[nodiscard]] static bool mirrored() { return std::get<0>(GetParam()); }
    [[nodiscard]] static int height() { return std::get<1>(GetParam()) ? 400 : 200; } // a table's

    hands::Finger finger;
};

TEST_P(Edge, ADragFromItGoesBackAndGivenUpChangesNothing)
{
    present();
    top->setFocus();
    top->button->setFocus(Qt::TabFocusReason);
    drag(250);
    EXPECT_NEAR(top->x(), by(250).x(), 1) << "it follows the finger";
    EXPECT_TRUE(below->isVisible());
    for (const auto *cell : top->table->visibleCells())
        EXPECT_FALSE(cell->isPressed()) << "row " << cell->indexPath().row << " stays pressed";
    hands::key(Qt::Key_Tab);
    EXPECT_TRUE(top->button->hasFocus()) << "nothing is where it seems to be";
    finger.drag(by(-200));
    finger.up();
    ASSERT_TRUE(rests());
    EXPECT_EQ(depth(), 3);
    EXPECT_EQ(calls, u"");
    EXPECT_EQ(top->pos(), QPoint());
    EXPECT_FALSE(below->isVisible());
    EXPECT_TRUE(top->button->hasFocus());
    EXPECT_TRUE(top->button->hasKeyboardFocus());
    EXPECT_EQ(top->table->contentOffset(), 0);

    // Thrown, it goes where it was thrown; slowly, as far as it was drawn.
    const std::tuple<int, quint64, int> rows[] = { { 350, 10, -100 }, { 150, 50, 5 } };
    for (const auto &[way, pace, last] : rows) {
        finger.pace = pace;
        drag(way);
        finger.drag(by(last), 1);
        finger.up();
        ASSERT_TRUE(rests());
        ASSERT_EQ(depth(), 3) << "went by " << way << ", " << last << " at the end";
    }

    // From elsewhere, be it the bar, and along the edge, it is none.
    for (const QPoint elsewhere : { from(21, height()), from(5, 47) }) {
        finger.down(controller.get(), elsewhere);
        finger.drag(by(250));
        EXPECT_EQ(top->pos(), QPoint());
        finger.up();
    }
    finger.down(controller.get(), from(5, height()));
    finger.drag(by(5, -100));
    finger.drag(by(200));
    EXPECT_EQ(top->pos(), QPoint());
    finger.up();
    ASSERT_TRUE(rests());

    finger.down(controller.get(), from(5, height()));
    finger.beside(QPoint(300, height() + 10));
    finger.drag(by(300));
    finger.up();
    EXPECT_EQ(depth(), 2);
    EXPECT_GE(std::abs(top->x()), 299) << "it goes from where it was";
    finger.liftOther();
    EXPECT_EQ(calls, u"top disappear, below appear, ");
    ASSERT_TRUE(rests());
    EXPECT_TRUE(below->isVisible());
    EXPECT_EQ(below->pos(), QPoint());
    EXPECT_SOON(controller->findChildren<Screen *>().size() == 2) << "it lies over what is below";
    finger.pace = 10;
    drag(100);
    finger.drag(by(40), 1);
    finger.up();
    EXPECT_EQ(depth(), 1) << "thrown";
    ASSERT_TRUE(rests());
    drag(300);
    EXPECT_EQ(root->pos(), QPoint()) << "the first screen leads nowhere";
    controller->hide(); // under the finger
    finger.up();
    EXPECT_EQ(host.heard + host.released, 0);
}

TEST_P(Edge, AScreenThatComesUnderTheFingerIsNotTakenAway)
{
    present();
    for (const bool dragged : { true, false }) { // or only at rest on the edge
        finger.down(controller.get(), from(5, height()));
        if (dragged)
            finger.drag(by(300));
        auto *next = push(u"next"_s);
        ASSERT_TRUE(dragged || rests());
        if (!dragged)
            finger.drag(by(300));
        finger.up();
        ASSERT_TRUE(rests());
        EXPECT_EQ(controller->topViewController(), next);
        EXPECT_EQ(next->pos(), QPoint());
        EXPECT_FALSE(below->isVisible());
    }
}

TEST_P(Edge, WhatTakesADragAwayGivesItUp)
{
    present();
    const auto turn = [this](bool back) {
        controller->setLayoutDirection(mirrored() == back ? Qt::RightToLeft : Qt::LeftToRight);
    };
    const std::function<void()> ways[] = { [this] { controller->letGo(); },
        [this] { controller->resize(380, 690); }, [=] { turn(false), turn(true); },
        [this] { controller->hide(), controller->show(), calls.clear(); },
        [this] { finger.cancel(); } };
    // What a page gets in place of touches is the mouse's, which no system takes away.
    for (int way = height() == 400 ? 4 : 3; way >= 0; --way) {
        SCOPED_TRACE(way);
        drag(300);
        ways[way]();
        if (way < 4) {
            finger.drag(by(20)); // which leads nothing any more
            finger.up();
        }
        ASSERT_TRUE(rests());
        EXPECT_EQ(depth(), 3);
        EXPECT_EQ(calls, u"");
        EXPECT_EQ(top->pos(), QPoint());
    }
}

INSTANTIATE_TEST_SUITE_P(
    Drags, Edge, testing::Combine(testing::Bool(), testing::Bool()), [](const auto &row) {
        return std::string(std::get<0>(row.param) ? "RightToLeft" : "LeftToRight")
            + (std::get<1>(row.param) ? "Table" : "Page");
    });

TEST_F(Back, NothingRingsWhereAHostHidesWhatHadTheKeyboard)
{
    present();
    field->setFocus();
    field->hide(); // Qt goes on to what follows, as by Tab
    EXPECT_TRUE(top->button->hasFocus());
    EXPECT_FALSE(top->button->hasKeyboardFocus());
    hands::key(Qt::Key_Tab);
    EXPECT_TRUE(top->table->hasKeyboardFocus());
    auto *const back = top->navigationItem().leftBarButtonItem();
    back->setFocus(Qt::TabFocusReason);
    field->show();
    field->setFocus();
    delete back; // a host's automation may do anything
    host.resize(440, 690);
    controller->setFocus();
    EXPECT_TRUE(top->button->hasFocus()) << "what had the keyboard before is gone";
}

} // namespace
