#include "Sms/SmsRoad.h"

#include <QtGui/QClipboard>

namespace {

class PhoneEntry : public SmsRoad {
protected:
    void sendsOnly(const QString &number)
    {
        tap("btnContinue");
        ASSERT_TRUE(seen("btnCheck"));
        ASSERT_EQ(bodies("send-otp").size(), 1);
        EXPECT_EQ(bodies("send-otp").constFirst()[u"phoneNumber"].toString(), number);
    }
    void deletesTheKitUnderItsMenu() // as a host may, at any time
    {
        tap("txtPhoneNumber");
        hands::keys(u"4123"_s);
        hands::menuKey();
        ASSERT_NE(QApplication::activePopupWidget(), nullptr);
        container.reset();
        EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
    }
};

TEST_F(PhoneEntry, AFingerOnTheFieldTypesOrPastes)
{
    hands::Finger finger;
    auto *field = part<QLineEdit>("txtPhoneNumber");
    QApplication::clipboard()->setText(u"41 23"_s);
    for (int i = 0; i < 2; ++i) { // the second while the field is being edited
        finger.tap(field);
        EXPECT_TRUE(field->hasFocus()) << "tap " << i;
        hands::keys(u"4"_s);
    }
    EXPECT_EQ(field->text(), u"44") << "two taps, no double click";
    field->clear();
    const QWidget *menu = nullptr;
    const auto opens = [&] { return (menu = QApplication::activePopupWidget()) != nullptr; };
    EXPECT_FALSE(QTest::qWaitFor(opens, 900)) << "a tap that was none of a long press";
    finger.down(container.get(), QPoint(200, 700));
    finger.drag({ 0, -60 });
    finger.up();
    EXPECT_TRUE(field->hasFocus()) << "a drag over the bare page";
    finger.tap(container.get(), QPoint(200, 700));
    EXPECT_TRUE(page()->hasFocus());
    field->setFocus(Qt::TabFocusReason);
    finger.tap(container.get(), QPoint(200, 700)); // so soon that it is a double click
    EXPECT_TRUE(page()->hasFocus());

    const auto offers = [&] { // by a long press
        finger.down(field, field->rect().center());
        (void)QTest::qWaitFor(opens);
        finger.up();
        QStringList texts;
        if (menu)
            for (const auto *button : menu->findChildren<QAbstractButton *>())
                texts.append(button->text());
        return texts.join(u' ');
    };
    ASSERT_EQ(offers(), u"Paste");
    finger.tap(menu->findChild<QWidget *>(u"btnPaste"_s));
    EXPECT_EQ(field->text(), u"41 23");
    EXPECT_TRUE(field->hasFocus());
    ASSERT_EQ(offers(), u"Cut Copy Paste");
    hands::key(Qt::Key_Escape);
    EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
    EXPECT_TRUE(visible("btnContinue")) << "that went to the menu alone";
    ASSERT_EQ(offers(), u"Cut Copy Paste");
    finger.tap(menu->findChild<QWidget *>(u"btnCut"_s));
    EXPECT_EQ(field->text(), QString());
    EXPECT_EQ(QApplication::clipboard()->text(), u"41 23");
    pick(u"Norway"_s);
    sendsOnly(u"+4741 23"_s); // what was pasted has counted
}

TEST_F(PhoneEntry, TheMenuGoesWithTheKit) { deletesTheKitUnderItsMenu(); }

TEST_F(PhoneEntry, TheMenuGoesWithTheKitOfAPage)
{
    QWidget page;
    container->setParent(&page);
    container->show();
    page.show();
    ASSERT_TRUE(comesToFront(page));
    deletesTheKitUnderItsMenu();
}

TEST_F(PhoneEntry, TheMenuOpensAndIsUsedByKeysAlone)
{
    auto *const field = part<QLineEdit>("txtPhoneNumber");
    const auto menu = [] { return QApplication::activePopupWidget(); };
    tap("txtPhoneNumber");
    QApplication::clipboard()->clear();
    hands::menuKey();
    EXPECT_EQ(menu(), nullptr) << "nothing to be done";
    hands::keys(u"4123"_s);
    QApplication::clipboard()->setText(u"5"_s); // with two entries, on and back were the same
    for (const auto &[direction, width, y, onwards, back] :
        { std::tuple(Qt::LeftToRight, 195, 0, Qt::Key_Down, Qt::Key_Up),
            { Qt::RightToLeft, 390, -200, Qt::Key_Left, Qt::Key_Right },
            { Qt::LeftToRight, 390, 0, Qt::Key_Right, Qt::Key_Left } }) {
        if (menu())
            hands::key(Qt::Key_Escape);
        container->setLayoutDirection(direction);
        container->setGeometry(0, y, width, 844);
        const QRect at(field->mapToGlobal(QPoint()), field->size());
        hands::menuKey();
        ASSERT_NE(menu(), nullptr);
        EXPECT_TRUE(container->geometry().contains(menu()->geometry())) << "cut at " << width;
        const auto *const cut = menu()->findChild<QWidget *>(u"btnCut"_s);
        const auto *const copy = menu()->findChild<QWidget *>(u"btnCopy"_s);
        EXPECT_EQ(menu()->rect(), menu()->childrenRect()) << "no entry is cut";
        EXPECT_EQ(cut->width() == copy->width(), width < 390) << "a column is one block";
        EXPECT_FALSE(menu()->geometry().intersects(at)) << "over the field";
        EXPECT_EQ(menu()->y() > at.y(), y < 0) << "it goes where there is room";
        EXPECT_EQ(cut->x() <= copy->x(), direction == Qt::LeftToRight);
        EXPECT_TRUE(cut->hasFocus()) << "the first entry rings";
        const QImage rings = menu()->grab().toImage();
        menu()->setPalette(QPalette(Qt::darkBlue, Qt::darkBlue)); // a host's
        EXPECT_EQ(difference(menu()->grab().toImage(), rings), "") << "by its palette";
        hands::key(onwards);
        EXPECT_TRUE(copy->hasFocus());
        EXPECT_NE(menu()->grab().toImage(), rings);
        hands::key(back);
        EXPECT_TRUE(cut->hasFocus());
    }
    hands::key(Qt::Key_Return);
    EXPECT_EQ(menu(), nullptr);
    EXPECT_EQ(field->text(), QString());
    EXPECT_TRUE(field->hasFocus());
    hands::menuKey();
    ASSERT_NE(menu(), nullptr);
    EXPECT_EQ(menu()->findChild<QWidget *>(u"btnCut"_s), nullptr) << "of nothing";
    hands::Finger finger;
    finger.down(menu()->findChild<QWidget *>(u"btnPaste"_s), { 10, 10 });
    finger.cancel(); // by the system, and what Qt makes of it
    finger.up();
    EXPECT_EQ(field->text(), QString());
    hands::key(Qt::Key_Space);
    EXPECT_EQ(field->text(), u"4123");
    EXPECT_EQ(menu(), nullptr);
    ASSERT_SOON(QGuiApplication::focusWindow());
    hands::key(Qt::Key_Left, Qt::ShiftModifier);
    hands::menuKey();
    EXPECT_LT(menu()->geometry().center().x(), field->mapToGlobal(QPoint(60, 0)).x()) << "over it";
    hands::key(Qt::Key_Return); // cuts what was selected and no more
    EXPECT_EQ(field->text(), u"412");
    EXPECT_EQ(QApplication::clipboard()->text(), u"3");
}

} // namespace
