// The progress overlay: where it lies, what it swallows, when it goes.
#include "Parloquin/Manager/HudManager.h"
#include "Parloquin/Protocol/Updateable.h"
#include "Parloquin/Toolkit/ActivityIndicator.h"
#include "Screens/Container.h"
#include "support/Widgets.h"

#include <QtGui/QShortcut>
#include <QtWidgets/QGraphicsOpacityEffect>

#include <thread>

namespace {

class PlainScreen : public Screen, public Updateable {
public:
    void rebindData() override { }
};

/// The kit's overlay over a screen of the test, in a host's window beside a field of the host.
class Overlay : public testing::Test {
protected:
    void SetUp() override
    {
        auto *const row = new QHBoxLayout(&host);
        hostField.setFixedWidth(100);
        row->addWidget(&hostField);
        navigation = new NavigationController(screen);
        row->addWidget(navigation, 1);
        field = new QLineEdit(screen);
        field->show();
        host.resize(700, 500);
        ASSERT_TRUE(comesToFront(host));
    }

    void show() { HudManager::shared().show(screen->weakReference()); }
    void hide() { HudManager::shared().hide(screen->weakReference()); }
    [[nodiscard]] QWidget *veil() const { return host.findChild<QWidget *>(u"container"_s); }
    [[nodiscard]] bool isUp() const { return veil() && veil()->isVisible(); }
    [[nodiscard]] bool comesUp(bool up = true) const
    {
        return QTest::qWaitFor([=, this] { return isUp() == up; });
    }
    [[nodiscard]] bool goes() const { return comesUp(false); }

    struct : QWidget {
        int backs = 0; ///< times that the button goes down or up
        bool event(QEvent *event) override
        {
            const auto *mouse = dynamic_cast<QMouseEvent *>(event);
            backs += int(mouse && mouse->button() == Qt::BackButton);
            return QWidget::event(event);
        }
    } host;
    QLineEdit hostField;
    PlainScreen *const screen = new PlainScreen;
    NavigationController *navigation = nullptr;
    QLineEdit *field = nullptr;
};

TEST_F(Overlay, ComesAndGoesInTheOrderOfCallsFromAnyThread)
{
    const auto elsewhere = [](const std::function<void()> &calls) { std::thread(calls).join(); };
    hostField.setFocus();
    elsewhere([this] {
        show();
        show();
    });
    EXPECT_FALSE(isUp()); // never within the call
    EXPECT_TRUE(comesUp());
    EXPECT_TRUE(hostField.hasFocus()); // the keyboard is the host's all along
    elsewhere([this] {
        hide();
        show();
    });
    QCoreApplication::processEvents();
    EXPECT_TRUE(isUp());
    elsewhere([this] { hide(); });
    EXPECT_TRUE(goes()) << "shows are not counted";
    EXPECT_TRUE(hostField.hasFocus());
}

TEST_F(Overlay, SwallowsTapsAndKeysMeantForWhatItCovers)
{
    auto *const button = new BarButtonItem(u"Go"_s, u"btnGo"_s);
    screen->navigationItem().setRightBarButtonItem(button);
    const QSignalSpy clicks(button, &QAbstractButton::clicked);
    QCoreApplication::processEvents();
    hands::click(button);
    ASSERT_EQ(clicks.count(), 1);
    QLineEdit last(&host);
    last.show();
    field->setFocus();

    show();
    ASSERT_TRUE(comesUp());
    hands::click(button);
    hands::click(field);
    hands::key(Qt::Key_A);
    field->setFocus(); // a screen that is not finished yet may ask for the keyboard
    hands::key(Qt::Key_B);
    EXPECT_EQ(clicks.count(), 1);
    EXPECT_EQ(field->text(), QString());

    // The host's own widgets are no business of the overlay.
    const std::pair<Qt::Key, QWidget *> steps[] = { { Qt::Key_Tab, &last },
        { Qt::Key_Backtab, veil() }, { Qt::Key_Backtab, &hostField }, { Qt::Key_Tab, veil() } };
    for (const auto &[key, to] : steps) {
        hands::key(key);
        EXPECT_EQ(QApplication::focusWidget(), to) << key;
        hands::key(Qt::Key_H);
    }
    EXPECT_EQ(hostField.text(), u"h"_s);

    hide();
    ASSERT_TRUE(goes());
    EXPECT_TRUE(field->hasFocus());
    hands::key(Qt::Key_C);
    EXPECT_EQ(field->text(), u"c"_s);
    hands::click(button);
    EXPECT_EQ(clicks.count(), 2);
}

TEST_F(Overlay, FadesInEachTimeAndCoversFromTheFirstMoment)
{
    QApplication::setStyle(new ParloquinTest::PacedStyle(200));
    for (const bool goesHalfWay : { false, true, false }) {
        show();
        ASSERT_TRUE(comesUp());
        hands::click(field);
        hands::key(Qt::Key_A);
        std::vector<qreal> seen;
        const auto isWhole = [&] {
            const auto *effect = qobject_cast<QGraphicsOpacityEffect *>(veil()->graphicsEffect());
            if (effect)
                seen.push_back(effect->opacity());
            return !effect || (goesHalfWay && effect->opacity() > 0.4);
        };
        EXPECT_TRUE(QTest::qWaitFor(isWhole));
        ASSERT_FALSE(seen.empty()) << "there was no fade";
        EXPECT_LT(seen.front(), 0.5);
        EXPECT_TRUE(std::is_sorted(seen.begin(), seen.end())) << testing::PrintToString(seen);
        hide();
        EXPECT_TRUE(goes());
        EXPECT_EQ(field->text(), QString());
    }
}

TEST_F(Overlay, LeavesTheWayOutOfTheFirstScreenToTheHost)
{
    const QShortcut escape(Qt::Key_Escape, &host);
    const QSignalSpy heard(&escape, &QShortcut::activated);
    navigation->setFocus();
    show();
    ASSERT_TRUE(comesUp());
    hands::key(Qt::Key_Escape);
    const auto back = [this] {
        QTest::mouseDClick(host.windowHandle(), Qt::BackButton, {}, QPoint(400, 250));
    };
    back();
    EXPECT_EQ(heard.count() + host.backs, 1 + 4);
    navigation->pushViewController(new PlainScreen, false);
    hands::key(Qt::Key_Escape);
    back();
    EXPECT_EQ(heard.count() + host.backs, 1 + 4) << "from the others it leads back, and not now";
    EXPECT_EQ(navigation->viewControllers().size(), 2);
    hide();
    ASSERT_TRUE(goes());
    EXPECT_TRUE(navigation->isAncestorOf(QApplication::focusWidget()));
    hands::key(Qt::Key_Escape);
    EXPECT_EQ(navigation->viewControllers().size(), 1);
}

TEST_F(Overlay, CoversAScreenWithoutNavigationAndDiesWithIt)
{
    show();
    ASSERT_TRUE(comesUp());
    {
        PlainScreen alone;
        QLineEdit own(&alone);
        own.setFocus();
        alone.resize(200, 300);
        ASSERT_TRUE(comesToFront(alone));
        HudManager::shared().show(alone.weakReference());
        EXPECT_TRUE(goes()); // moves over there
        const auto *there = alone.findChild<QWidget *>(u"container"_s);
        ASSERT_NE(there, nullptr);
        EXPECT_EQ(there->geometry(), alone.rect());
        EXPECT_TRUE(there->hasFocus());
        HudManager::shared().hide(alone.weakReference());
        EXPECT_SOON(own.hasFocus());
        HudManager::shared().show(alone.weakReference());
    } // gone with the overlay on it and another show on the way
    hide();
    QCoreApplication::processEvents();
    show();
    EXPECT_TRUE(comesUp());
    auto *const indicator = veil()->findChild<ActivityIndicator *>();
    const QImage first = indicator->grab().toImage();
    EXPECT_SOON(indicator->grab().toImage() != first) << "it turns";
    QElapsedTimer turn;
    turn.start();
    EXPECT_SOON(indicator->grab().toImage() == first);
    EXPECT_LT(turn.elapsed(), 5000) << "it stands, for who looks at it";
}

} // namespace
