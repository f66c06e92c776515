#include "Parloquin/Toolkit/Style.h"
#include "Parloquin/Toolkit/TappableView.h"
#include "support/Widgets.h"

#include <QtWidgets/QProxyStyle>

namespace {

TEST(Label, TakesTheSpacingOfItsLines)
{
    const struct {
        int pixels;
        int limit;
        QByteArray text;
        int height; ///< at a width of 300
    } rows[] = { { 18, 0, "", 0 }, { 16, 0, "one", 20 }, { 17, 1, "one", 22 }, { 20, 1, "one", 25 },
        { 16, 0, "رمز", 28 }, { 16, 0, "one\ntwo\nthree", 60 }, { 16, 2, "one\ntwo\nthree", 40 },
        { 16, 2, "one\ntwo\n", 40 }, { 16, 1, "one\n", 20 }, { 16, 0, "<b>one</b><br>two", 20 },
        { 16, 0, QByteArray("i\n").repeated(2047), 20 * 2048 }, // all of it, and no more than that
        { 16, 0, QByteArray("i\n").repeated(2060), 20 * 2049 } };
    for (const auto &[pixels, limit, text, height] : rows) {
        Label label;
        label.setFontSize(pixels);
        label.setNumberOfLines(limit);
        label.setText(QString::fromUtf8(text));
        EXPECT_EQ(label.heightForWidth(300), height)
            << text.left(40).data() << ", " << limit << " of " << pixels;
    }
}

TEST(Label, KeepsAFullStopAtTheEndOfItsText)
{
    Label label;
    label.resize(300, 30);
    label.setLayoutDirection(Qt::RightToLeft);
    const auto drawn = [&label](const QString &text) {
        label.setText(text);
        return label.grab().toImage();
    };
    EXPECT_EQ(difference(drawn(u"رمز."_s), drawn(u"\u2067رمز.\u2069"_s)), "");
}

TEST(Label, IsOfTheApplicationsFamily)
{
    Label label;
    label.setText(u"Verify"_s);
    const int own = label.sizeHint().width();
    const QFont before = QApplication::font();
    QApplication::setFont(QFont(u"DejaVu Sans Mono"_s));
    EXPECT_NE(label.sizeHint().width(), own) << "it is another by now";
    QApplication::setFont(before);
}

class ControlsPage : public Screen {
public:
    ControlsPage()
    {
        resize(390, 700);
        field = new TextField(this);
        field->setGeometry(35, 40, 320, 40);
        other = new TextField(this);
        other->setGeometry(20, 110, 54, 54);
        button = new Button(Button::Kind::filled, u"Go"_s, this);
        button->setGeometry(20, 184, 350, 55);
        EXPECT_TRUE(comesToFront(*this));
        ring = findChild<QWidget *>(u"focusRing"_s);
    }

    TextField *field;
    TextField *other;
    Button *button;
    QWidget *ring;
};

TEST(FocusRing, GoesWithWhatHasTheFocus)
{
    ControlsPage page;
    page.button->setFocus(Qt::TabFocusReason);
    EXPECT_TRUE(page.ring->isVisible());
    delete page.button;
    EXPECT_SOON(!page.ring->isVisible() || page.ring->geometry().height() < 70);
}

TEST(TextField, TurnsOnAPageFromRightToLeft)
{
    ControlsPage page;
    page.setLayoutDirection(Qt::RightToLeft);
    page.field->setText(u"رقم"_s);
    EXPECT_EQ(page.field->layoutDirection(), Qt::RightToLeft);
}

TEST(TextField, CaretStandsStillAndKeepsOffTheDigits)
{
    QApplication::setCursorFlashTime(0);
    ControlsPage page;
    page.field->setFocus();
    const auto caret = [&page](const char *typed, int before = 0) {
        page.field->setText(QLatin1String(typed));
        page.field->setCursorPosition(before);
        QCoreApplication::processEvents();
        const QRect at(page.field->mapTo(&page, QPoint()), page.field->size());
        return around(page.grab(at).toImage(), [](QRgb color) { return color == qRgb(0, 0, 255); });
    };
    const QRect empty = caret("");
    EXPECT_EQ(empty, QRect(0, empty.y(), 2, empty.height()));
    EXPECT_EQ(caret("88"), empty) << "not on the first digit";
    EXPECT_EQ(caret("88", 1).x(), caret("8", 1).x() - 2) << "amid the gap";
    EXPECT_EQ(caret(""), empty) << "it blinks, asked to stand still";
    QApplication::setCursorFlashTime(100);
    page.field->setText(u"8"_s); // shows it
    const QImage shown = page.field->grab().toImage();
    EXPECT_SOON(page.field->grab().toImage() != shown) << "it does not blink";
    EXPECT_SOON(page.field->grab().toImage() == shown);
}

TEST(TextField, ShowsWhatIsNotCommittedYetAsWhatIs)
{
    ControlsPage page;
    page.field->setPlaceholderText(u"Number"_s);
    page.field->setFocus();
    for (const auto side : { Qt::AlignLeft, Qt::AlignHCenter }) {
        page.field->clear();
        page.field->setAlignment(side);
        int caret[2]; // within it, and behind it
        for (const int at : { 0, 1 }) {
            QInputMethodEvent composed(u"4"_s, { { QInputMethodEvent::Cursor, at, 1 } });
            QCoreApplication::sendEvent(page.field, &composed);
            caret[at] = page.field->inputMethodQuery(Qt::ImCursorRectangle).toRect().x();
        }
        EXPECT_LT(caret[0], caret[1]);
        const QImage before = page.field->grab().toImage();
        hands::commit(u"4"_s);
        EXPECT_EQ(difference(page.field->grab().toImage(), before), "") << side;
        QInputMethodEvent composed(u"8"_s, {}); // and its input method says no more of it
        QCoreApplication::sendEvent(page.field, &composed);
        page.field->setText(u"4"_s);
        EXPECT_EQ(difference(page.field->grab().toImage(), before), "") << "replaced, " << side;
    }
}

TEST(TextField, ComesToRestHoweverNarrow)
{
    class Paints : public QObject {
        bool eventFilter(QObject *, QEvent *event) override
        {
            count += event->type() == QEvent::Paint ? 1 : 0;
            return false;
        }

    public:
        int count = 0;
    } paints;
    ControlsPage page;
    page.setLayoutDirection(Qt::RightToLeft);
    page.field->setFocus();
    hands::keys(u"41234567"_s);
    hands::key(Qt::Key_Home);
    (void)page.field->grab(); // scrolls it to its beginning
    page.field->installEventFilter(&paints);
    page.field->resize(1, 40);
    EXPECT_FALSE(QTest::qWaitFor([&] { return paints.count > 5; }, 200)) << paints.count;
}

TEST(TextField, TakesEachPressAsALineEdit)
{
    ControlsPage page;
    for (const auto &[button, presses, selected] : { std::tuple(Qt::LeftButton, 1, u""_s),
             { Qt::LeftButton, 2, u"412"_s }, { Qt::MiddleButton, 1, u""_s } }) {
        page.other->setText(u"412"_s); // which puts the cursor behind it
        hands::click(page.other, { 1, 20 }, button);
        if (presses == 2)
            QTest::mouseDClick(page.windowHandle(), button, {}, hands::placeOf(page.other));
        EXPECT_EQ(page.other->selectedText(), selected) << button << presses;
        EXPECT_EQ(page.other->cursorPosition(), selected.size()) << button << presses;
        hands::click(page.button); // no press of the next row's
    }
}

TEST(TextField, ADragThroughItIsNoLongPress)
{
    ControlsPage page;
    page.other->setText(u"412"_s);
    const auto *const toMenu = page.other->findChild<QTimer *>();
    hands::press(page.other, { 1, 20 });
    EXPECT_TRUE(toMenu->isActive());
    hands::moveTo(page.other, { 50, 20 });
    EXPECT_FALSE(toMenu->isActive()) << "its menu comes all the same";
    EXPECT_EQ(page.other->selectedText(), u"412"_s);
}

TEST(TextField, AsksForAnOnScreenKeyboardAsAFingerTapsIt)
{
    class Asked : public QProxyStyle {
        int styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
            QStyleHintReturn *more) const override
        {
            count += hint == SH_RequestSoftwareInputPanel ? 1 : 0;
            return QProxyStyle::styleHint(hint, option, widget, more);
        }

    public:
        mutable int count = 0;
    } style;
    ControlsPage page;
    page.field->setStyle(&style);
    hands::Finger finger;
    finger.down(page.field, { 60, 20 });
    finger.drag({ 0, 40 });
    finger.up();
    EXPECT_EQ(style.count, 0) << "it was on its way elsewhere";
    finger.tap(page.field);
    EXPECT_GT(style.count, 0);
}

TEST(ImageView, StopsOverAnUnknownName)
{
    EXPECT_DEATH(ImageView().setImageNamed(u"icon-none"_s), "icon-none");
}

} // namespace
