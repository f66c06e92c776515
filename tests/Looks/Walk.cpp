#include "Looks/Walk.h"

#include "Parloquin/Toolkit/NavigationController.h"
#include "Parloquin/Toolkit/Screen.h"
#include "Parloquin/Toolkit/TableView.h"
#include "TestKit/PacedStyle.h"

#include <QtCore/QDir>
#include <QtGui/QWindow>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>

#include <sstream>

using namespace parloquin;

void Walk::SetUp()
{
    ContainerTest::SetUp();
    QApplication::setStyle(new ParloquinTest::PacedStyle(0));
    QApplication::setCursorFlashTime(0);
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
    QCoreApplication::sendPostedEvents(); // layouts that are still to be made
    return container->grab().toImage();
}

void Walk::take(const std::function<void(const std::string &stop)> &stop)
{
    server.pause();
    present();
    ASSERT_TRUE(QTest::qWaitForWindowActive(container->window()));
    ASSERT_TRUE(waitForOverlay(true));
    ASSERT_TRUE(QTest::qWaitFor([this] { return find("container")->graphicsEffect() == nullptr; }));
    stop("overlay");
    server.proceed();
    ASSERT_TRUE(waitForOverlay(false));
    ASSERT_TRUE(QTest::qWaitFor([this] { return find("viewBack") != nullptr; }));
    stop("app list");
    toTheCode(stop);
    container.reset();
}

void Walk::toTheCode(const std::function<void(const std::string &stop)> &stop)
{
    const auto type = [this](const char *keys) {
        for (const char *key = keys; *key != '\0'; ++key)
            QTest::keyClick(container->window()->windowHandle(), *key);
    };
    tap(find("viewAlternativeKit"));
    ASSERT_NE(find("txtPhoneNumber"), nullptr);
    stop("phone entry");

    tap(find("viewCountryBack"));
    const auto *countries = find<TableView>("tblCountries");
    ASSERT_NE(countries, nullptr);
    ASSERT_TRUE(QTest::qWaitFor([=] { return countries->visibleCells().size() == 5; }));
    stop("country picker");
    tap(countries->cellForRow({ 3, 0 }));
    ASSERT_TRUE(QTest::qWaitFor([this] { return find("tblCountries") == nullptr; }));

    tap(find("txtPhoneNumber"));
    type("41234567");
    stop("phone entry, filled");

    tap(find("btnContinue"));
    ASSERT_TRUE(QTest::qWaitFor([this] {
        const auto *first = find("txtCode0");
        return first && first->hasFocus() && !overlayIsUp();
    }));
    stop("code entry");
    type("7k");
    stop("code entry, filled");
}

std::string difference(const QImage &seen, const QImage &expected)
{
    std::ostringstream text;
    if (seen.size() != expected.size()) {
        text << seen.width() << " x " << seen.height() << ", not " << expected.width() << " x "
             << expected.height();
        return text.str();
    }
    int count = 0;
    QPoint first;
    for (int y = 0; y < seen.height(); ++y) {
        for (int x = 0; x < seen.width(); ++x) {
            if (seen.pixel(x, y) == expected.pixel(x, y))
                continue;
            if (count++ == 0)
                first = { x, y };
        }
    }
    if (count == 0)
        return {};
    text << count << " of " << seen.width() * seen.height() << " pixels, first at " << first.x()
         << ',' << first.y() << ": " << seen.pixelColor(first).name().toStdString() << ", not "
         << expected.pixelColor(first).name().toStdString();
    return text.str();
}
