#include "Looks/Walk.h"

#include "Parloquin/Toolkit/ActivityIndicator.h"

void Walk::SetUp()
{
    ContainerTest::SetUp();
    QApplication::setStyle(new ParloquinTest::PacedStyle(0));
    QApplication::setCursorFlashTime(0);
    answerWell();
}

void Walk::answerWell()
{
    answer("/v1.0/init", threeApps);
    answer("/v1.0/country", R"({"result":{"list":[
        {"title":"Norway","countryCode":"NO","phoneCode":"+47"},
        {"title":"Nauru","countryCode":"NR","phoneCode":"+674"},
        {"title":"Chad","countryCode":"TD","phoneCode":"+235"},
        {"title":"Dominica","countryCode":"DM","phoneCode":"+1 767 767"},
        {"title":"A country of a name that no row of any phone can hold","countryCode":"XA"}]}})");
    answer("/v1.0/send-otp", R"({"result":{"reference":"ref-1"}})");
}

QImage Walk::picture() const
{
    for (auto *const each : container->findChildren<ActivityIndicator *>()) {
        EXPECT_TRUE(each->isVisible() || !each->isAnimating()) << "nobody sees it turn";
        if (each->isAnimating())
            each->startAnimating(); // where each turn begins
    }
    return onScreen(*container);
}

void Walk::presentWaiting(const Stop &stop)
{
    server.pause();
    present(page);
    if (page)
        container->setContentsMargins(6, 44, 6, 6); // beside the pages its own ground shows
    else if (size.width() > size.height())
        container->setContentsMargins({}); // a desktop has no status area
    container->resize(size);
    ASSERT_TRUE(QTest::qWaitForWindowActive(container->window()));
    ASSERT_TRUE(waitForOverlay(true));
    ASSERT_SOON(!find("container")->graphicsEffect());
    stop("overlay");
    server.proceed();
    ASSERT_TRUE(waitForOverlay(false));
}

void Walk::take(const Stop &stop)
{
    presentWaiting(stop);
    (void)row("tblKits", 0, 0);
    stop("app list");
    const auto *const app = row("tblKits", 0, 0);
    hands::press(app);
    stop("app list, pressed");
    hands::moveTo(app, { 0, -60 }); // let go of there, it is no tap
    hands::release(app, { 0, -60 });
    toTheCode(stop);
    container.reset();
}

void Walk::takeEmpty(const Stop &stop)
{
    answer("/v1.0/init", R"({"result":{"alternativeValidation":"otp",
        "alternativeValidationDescription":"Get a code by SMS instead"}})");
    answer("/v1.0/country", R"({"result":{}})");
    presentWaiting(stop);
    stop("app list, empty");
    tap("viewAlternativeKit");
    server.pause();
    tap("viewCountryBack");
    const auto *look = qobject_cast<Label *>(visible("lblEmpty"));
    ASSERT_NE(look, nullptr);
    const QString waiting = look->text();
    stop("country picker, waiting");
    server.proceed();
    ASSERT_SOON(look->text() != waiting);
    stop("country picker, empty");
    container.reset();
}

void Walk::toTheCode(const Stop &stop)
{
    tap("viewAlternativeKit");
    stop("phone entry");
    tap("viewCountryBack");
    (void)row("tblCountries", 3, 0);
    stop("country picker");
    hands::press(row("tblCountries", 3, 0)); // sizes may have given it another widget
    stop("country picker, pressed");
    const QPoint beside(size.width() / 2, 100);
    hands::moveTo(container.get(), beside);
    hands::release(container.get(), beside);
    hands::key(Qt::Key_Down); // rings there alone
    tap(row("tblCountries", 3, 0));
    ASSERT_SOON(!find("tblCountries"));
    stop("phone entry, back in it");
    const bool mirrored = container->isRightToLeft();
    hands::Finger finger;
    finger.down(container.get(), { mirrored ? size.width() - 4 : 4, 300 });
    finger.drag({ mirrored ? -120 : 120, 0 });
    stop("phone entry, drawn aside");
    finger.cancel();

    tap("txtPhoneNumber");
    stop("phone entry, caret");
    hands::keys(u"41234567"_s);
    stop("phone entry, filled");

    tap("btnContinue");
    ASSERT_SOON(find("txtCode0") && find("txtCode0")->hasFocus() && !overlayIsUp());
    stop("code entry");
    hands::keys(u"7k"_s);
    stop("code entry, filled");
    hands::key(Qt::Key_Home); // selects what is in the box
    // As when a message has come.
    auto *offer = find<Button>("btnMessageCode");
    ASSERT_NE(offer, nullptr);
    offer->setText(
        QCoreApplication::translate("Parloquin", "Fill in %1 from your message").arg(u"7K2"_s));
    offer->show();
    QCoreApplication::sendPostedEvents(); // it is as high as its text needs
    stop("code entry, offered");
    hands::wheel(container.get(), beside, {}, { 0, -60 });
    container->resize(size - QSize(0, 3));
    stop("code entry, offered, scrolled");
    hands::wheel(container.get(), beside, {}, { 0, 1200 });
    container->resize(size);
    hands::key(Qt::Key_Tab); // it is the next
    hands::press(offer);
    stop("code entry, offer pressed");
}
