// Every screen, in states that a person reaches, against the approved pictures. tests/Looks/gallery
// takes them in other sizes and at other ratios, to be looked at.
#include "support/Approved.h"

#include "Looks/Walk.h"
#include "Parloquin/Toolkit/TableParts.h"
#include "support/Clock.h"

#include <QtCore/QBuffer>
#include <QtCore/QTranslator>

#include <set>

using namespace std::chrono_literals;

namespace {

struct Kind {
    std::string name;
    Qt::LayoutDirection direction;
    QSize size;
    const char *language = nullptr; ///< of the kit's own texts
};

/// Those with pictures; or any, as "195x422 320x480", in both directions and in German.
std::vector<Kind> kinds()
{
    const QStringList sizes = qEnvironmentVariable("SIZES").split(u' ', Qt::SkipEmptyParts);
    std::vector<Kind> all;
    for (const QString &each : sizes) {
        const QSize size(each.section(u'x', 0, 0).toInt(), each.section(u'x', 1).toInt());
        all.push_back({ each.toStdString() + "ltr", Qt::LeftToRight, size });
        all.push_back({ each.toStdString() + "rtl", Qt::RightToLeft, size, "ar" });
        all.push_back({ each.toStdString() + "de", Qt::LeftToRight, size, "de" });
    }
    const QString ratio = qEnvironmentVariable("QT_SCALE_FACTOR").remove(u'.');
    if (sizes.isEmpty() && !ratio.isEmpty())
        all = { { "Ratio" + ratio.toStdString(), Qt::RightToLeft, { 320, 480 } } };
    else if (sizes.isEmpty())
        all = { { "LeftToRight", Qt::LeftToRight, { 390, 844 } },
            { "RightToLeft", Qt::RightToLeft, { 320, 480 } },
            { "TwiceTheScale", Qt::LeftToRight, { 195, 422 } }, // of 390 x 844
            { "Arabic", Qt::RightToLeft, { 195, 422 }, "ar" },
            { "German", Qt::LeftToRight, { 195, 422 }, "de" } };
    return all;
}

class Approved : public Walk, public testing::WithParamInterface<Kind> {
protected:
    void SetUp() override
    {
        Walk::SetUp();
        approved::setFont();
        QApplication::setLayoutDirection(GetParam().direction);
        size = GetParam().size;
        if (const QLatin1String language(GetParam().language); !language.isEmpty()) {
            ASSERT_TRUE(m_texts.load(QStringLiteral(TRANSLATIONS "/parloquin_") + language));
            QCoreApplication::installTranslator(&m_texts);
        }
    }

    /// In a language beside English only where most of its words are.
    void expectApproved(const std::string &stop) const
    {
        static const std::set<std::string> wordy { "overlay", "app list",
            "phone entry, ring at number", "code entry, ring at again", "code entry, offered",
            "country picker, empty", "motion turned on the way" };
        if (HasFailure()) // a walk that went wrong ends there
            return;
        if (qEnvironmentVariableIsSet("SIZES") || !GetParam().language || wordy.contains(stop))
            approved::expect(GetParam().name + '-' + stop, [this] { return picture(); });
    }

    void expectChanged(const std::string &stop) const;
    void answerMuch();
    void presentMuch();
    void takeFurther();
    void takeMotion();

    bool isHeld = false; ///< by a finger: the host changes nothing
    bool isScrolled = false; ///< it changes nothing that scrolls

private:
    QTranslator m_texts;
};

/// As expectApproved(), and until the next stop its host has changed what it may at any time.
void Approved::expectChanged(const std::string &stop) const
{
    const auto &[name, direction, size, language] = GetParam();
    QApplication::setLayoutDirection(direction);
    approved::setFont();
    qApp->setStyleSheet({});
    container->setContentsMargins(0, 44, 0, 0);
    QCoreApplication::sendPostedEvents();
    if (!isScrolled && !stop.ends_with("aside")) { // it was wider before
        container->resize(2 * size.width(), container->height());
        (void)picture();
        container->resize(size.width(), container->height());
    }
    expectApproved(stop);
    if (isHeld)
        return;
    if (name == "RightToLeft" && !isScrolled)
        QApplication::setLayoutDirection(Qt::LeftToRight);
    else if (language)
        qApp->setStyleSheet(u"* { font: bold 20px; color: red; padding: 9px; min-height: 70px }"_s);
    else if (name == "LeftToRight" && !isScrolled)
        container->setContentsMargins(5, 60, 9, 40);
    else
        QApplication::setFont({ u"Noto Serif"_s });
}

/// Apps and countries that fill more than a screen.
void Approved::answerMuch()
{
    QImage icon(QStringLiteral(ICON)); // no square of it
    QBuffer bytes;
    ASSERT_TRUE(icon.copy(0, 0, icon.width(), icon.height() * 3 / 5).save(&bytes, "PNG"));
    server.answer("/icon.png", RawServer::http(200, bytes.data(), "Content-Type: image/png\r\n"));
    QStringList apps; // all with one icon, as a late one comes to whichever app has its row by then
    QStringList countries;
    const QString inks[] = { u"FFD14A"_s, u"2040A0"_s, u"FFFFFF"_s };
    for (int i = 0; i < 14; ++i) {
        const QString ground = QString::number(i % 3 == 1 ? 0xffffff : 0x204080 + i * 0x0a0805, 16);
        apps.append( // a line break in a name is a blank
            uR"({"app":"a%1","text":"Verify with%5app %1","bgColour":"#%2","textColour":"#%3","icon":"%4"})"_s
                .arg(QString::number(i), ground, inks[i % 3], server.url(u"/icon.png"_s),
                    i % 2 == 0 ? uR"(\n)"_s : uR"(\u2028)"_s));
    }
    for (int i = 0; i < 75; ++i) {
        const QString code = i == 4 ? QString() : u"\"countryCode\":\"C%1\","_s.arg(i); // ticked
        countries.append(uR"({"title":"%1land %2",%3"phoneCode":"+%4"})"_s.arg(
            QString(QChar(u'A' + i / 3)), QString::number(i), code, QString::number(30 + i * 7)));
    }
    answer("/v1.0/init",
        uR"({"result":{"alternativeValidation":"otp",
            "description":"Pick the app that you use most. Its message is ready, you only send\nit from there.",
            "alternativeValidationDescription":"Get a code by SMS instead","list":[%1]}})"_s
            .arg(apps.join(u','))
            .toUtf8());
    answer("/v1.0/country", uR"({"result":{"list":[%1]}})"_s.arg(countries.join(u',')).toUtf8());
}

void Approved::presentMuch()
{
    answerMuch();
    present();
    container->resize(size);
    ASSERT_TRUE(QTest::qWaitForWindowActive(container->window()));
    ASSERT_TRUE(waitForOverlay(false));
}

void Approved::takeFurther()
{
    presentMuch();
    isScrolled = true;
    expectChanged("many apps");
    // It would go by the clock, and a busy machine be late to look.
    auto *const thumb = visible("tblKits")->findChild<TableThumb *>();
    ASSERT_NE(thumb, nullptr);
    thumb->findChild<QTimer *>()->setInterval(1h);
    hands::key(Qt::Key_End);
    expectChanged("many apps, the last");
    hands::key(Qt::Key_Home);
    expectChanged("many apps, the first");

    tap("viewAlternativeKit");
    ASSERT_TRUE(seen("viewCountryBack"));
    for (const char *field : { "country", "number", "continue", "back" }) {
        hands::key(Qt::Key_Tab);
        expectChanged(std::string("phone entry, ring at ") + field);
    }
    tap("viewCountryBack");
    (void)row("tblCountries", 1, 0);
    expectChanged("countries");
    hands::wheel(visible("tblCountries"), { 100, 200 }, {}, { 0, -1000 });
    expectChanged("countries, amid");
    hands::key(Qt::Key_End);
    expectChanged("countries, the last");
    hands::key(Qt::Key_Home);
    hands::key(Qt::Key_Down);
    expectChanged("countries, the second");
    hands::key(Qt::Key_Return);
    ASSERT_TRUE(seen("viewCountryBack"));
    expectChanged("phone entry, chosen");
    tap("viewCountryBack");
    (void)row("tblCountries", 1, 0);
    hands::key(Qt::Key_Escape);
    ASSERT_TRUE(seen("viewCountryBack"));
    tap("txtPhoneNumber");
    hands::keys(u"41234567"_s);
    hands::key(Qt::Key_A, Qt::ControlModifier);
    hands::press(visible("btnContinue"));
    expectChanged("phone entry, pressed");
    hands::release(visible("btnContinue"));
    ASSERT_SOON(find("txtCode0") && find("txtCode0")->hasFocus() && !overlayIsUp());
    hands::keys(u"7K2"_s);
    expectChanged("code entry, whole");
    for (const char *button : { "again", "back" }) {
        hands::key(Qt::Key_Tab);
        expectChanged(std::string("code entry, ring at ") + button);
    }
    hands::press(visible("btnTryAgain"));
    expectChanged("code entry, ring at back"); // a link shows no press
    hands::release(container.get(), { size.width() / 2, 60 });
    server.pause();
    tap("btnCheck");
    ASSERT_TRUE(waitForOverlay(true));
    expectChanged("code entry, waiting");
    server.proceed();
    ASSERT_TRUE(waitForOverlay(false));
    expectChanged("code entry, refused");
    tap("txtCode1");
    hands::compose(u"W"_s);
    expectChanged("code entry, composing");
    tap("btnBack");
    ASSERT_TRUE(seen("txtPhoneNumber"));
    expectChanged("phone entry, again");
    tap("btnContinue");
    ASSERT_SOON(find("txtCode0") && find("txtCode0")->hasFocus() && !overlayIsUp());
    expectChanged("code entry, again");
    answer("/v1.0/country",
        R"({"result":{"list":[{"title":"A country of a name that no field of any phone holds"}]}})");
    tap("btnBack");
    ASSERT_TRUE(seen("viewCountryBack"));
    tap("viewCountryBack");
    tap(row("tblCountries", 0, 0));
    ASSERT_TRUE(seen("viewCountryBack"));
    expectChanged("phone entry, of a long name");
}

// What moves, at the beginning and at parts of its way.
void Approved::takeMotion()
{
    presentMuch();
    QApplication::setStyle(new ParloquinTest::PacedStyle(200));
    Clock clock;
    const auto expectParts = [&](const std::string &way, const char *shown, int length) {
        ASSERT_SOON(visible(shown) && !isAtRest()); // it has begun
        for (const char *part : { "begun", "a quarter", "a half", "three quarters" }) {
            clock.goOn(part[0] == 'b' ? 0 : length / 4);
            expectApproved("motion " + way + ", " + part);
        }
    };
    const auto ends = [&](const char *shown) {
        const auto rests = [&] { return clock.goOn(400), visible(shown) && isAtRest(); };
        EXPECT_TRUE(QTest::qWaitFor(rests)) << shown;
    };
    const auto expectFade = [&](const std::string &name, const QWidget *pressed) {
        for (const auto *const round : { "", " anew" }) { // while it fades
            hands::press(pressed);
            clock.goOn(45);
            expectApproved("motion " + name + " pressed" + round);
            hands::moveTo(container.get(), { size.width() / 2, 60 });
            clock.goOn(45);
            expectApproved("motion " + name + " let go" + round);
            hands::release(container.get(), { size.width() / 2, 60 });
        }
        clock.goOn(400);
    };
    expectFade("app", row("tblKits", 0, size.width() < 280 ? 0 : 1)); // one that is seen
    tap("viewAlternativeKit");
    expectParts("in", "viewCountryBack", 320);
    ends("viewCountryBack");
    hands::key(Qt::Key_Escape);
    expectParts("out", "viewAlternativeKit", 280);
    ends("viewAlternativeKit");
    tap("viewAlternativeKit");
    ASSERT_SOON(visible("viewCountryBack"));
    clock.goOn(80);
    container->resize(size.transposed());
    expectApproved("motion turned on the way");
    for (const char *field : { "number", "continue" }) {
        hands::key(Qt::Key_Tab);
        expectApproved(std::string("turned, ring at ") + field); // in a page that may have scrolled
    }
    container->resize(size);
    ends("viewCountryBack");
    tap("viewCountryBack");
    ends("tblCountries");
    expectFade("country", row("tblCountries", 1, 1)); // under a line
    hands::press(row("tblCountries", 1, 1));
    hands::wheel(visible("tblCountries"), { 100, 200 }, {}, { 0, -1000 });
    expectApproved("motion country rolled away"); // and its cell shows another
    hands::wheel(visible("tblCountries"), { 100, 200 }, {}, { 0, 1000 });
    hands::release(container.get(), { size.width() / 2, 60 });
    clock.goOn(400);
    hands::Finger finger;
    finger.pace = 40; // not thrown
    const bool mirrored = GetParam().direction == Qt::RightToLeft;
    finger.down(container.get(), { mirrored ? size.width() - 4 : 4, 300 });
    finger.drag({ (mirrored ? -1 : 1) * size.width() / 3, 0 });
    finger.up();
    expectParts("given up", "tblCountries", 93);
    ends("tblCountries");
    tap(row("tblCountries", 1, 0));
    EXPECT_SOON(!isAtRest()) << "it slides out";
    ends("viewCountryBack");
    expectFade("button", visible("btnContinue"));
    expectFade("back", visible("btnBack"));
    tap("txtPhoneNumber");
    hands::keys(u"41234567"_s);
    server.pause();
    hands::key(Qt::Key_Return);
    ASSERT_TRUE(waitForOverlay(true));
    clock.goOn(60);
    expectApproved("motion overlay, a half");
}

TEST_P(Approved, AlongTheRoads)
{
    const Stop stop = [this](const std::string &name) {
        isHeld = name == "phone entry, back in it"; // a finger begins to draw it
        expectChanged(name);
    };
    take(stop);
    takeEmpty(stop);
}

TEST_P(Approved, InFurtherStates) { takeFurther(); }

TEST_P(Approved, InMotion) { takeMotion(); }

INSTANTIATE_TEST_SUITE_P(All, Approved, testing::ValuesIn(kinds()), byName);

} // namespace
