// Steps of the transcript far down a list, by a reader's own hands, and amid what moves.
#include "Readers/Transcript.h"
#include "support/Clock.h"

#include <QtCore/QMetaEnum>

// clang-format off
// Lists of many screens.
void Transcript::far()
{
    answerBothRoads();
    QString many;
    for (int i = 0; i < 104; ++i)
        many += uR"({"title":"%1land %2","countryCode":"%2"},)"_s.arg(QChar(u'A' + i / 4)).arg(i);
    answer("/v1.0/country", R"({"result":{"list":[)" + many.chopped(1).toUtf8() + "]}}");
    step(u"another, of many countries"_s, [this] { container->setParent(nullptr); present(&page); }, 1);
    tapped(u"on to the number"_s, "viewAlternativeKit");
    step(u"far too many countries"_s, [this] { openPicker(); (void)row("tblCountries", 0, 0); }, 1);
    step(u"Down, held"_s, [] { hands::hold(Qt::Key_Down, 40); });
    step(u"thrown, and stopped at the end"_s, [this] {
        hands::Finger finger;
        finger.down(container.get(), { 195, 700 });
        finger.drag({ 0, -500 });
        finger.up();
        EXPECT_FALSE(isAtRest());
        hands::key(Qt::Key_End);
    });
    key(u"to the end"_s, Qt::Key_End);
    step(u"Page up, held"_s, [] { hands::hold(Qt::Key_PageUp, 4); });
    step(u"a wheel"_s, [this] { hands::wheel(visible("tblCountries"), { 100, 300 }, {}, { 0, 360 }); });
    step(u"narrow and low there"_s, [this] { container->resize(195, 422); });
    step(u"the last letter, low"_s, [this] { hands::click(visible("sectionIndex"), { 12, 329 }); });
    step(u"upright again"_s, [this] { container->resize(390, 844); });
    step(u"hidden there, and shown"_s, [this] { container->hide(); container->show(); });
    step(u"a tap there"_s, [this] { tap(qobject_cast<TableView *>(visible("tblCountries"))->visibleCells()[3]); }, 0, [this] { return visible("txtPhoneNumber"); });
}

// What moves, stopped at parts of its way.
void Transcript::onTheWay()
{
    QApplication::setStyle(new ParloquinTest::PacedStyle(60));
    answer("/v1.0/country", R"({"result":{"list":[{"title":"Chad"},{"title":"Chile"},{"title":"Oman"}]}})");
    Clock clock;
    m_moves = true;
    const auto part = [&](const QString &name, int milliseconds = 80) { step(name, [&clock, milliseconds] { clock.goOn(milliseconds); }); };
    step(u"Send, slowly, and a code on the way"_s, [&] {
        tap("txtPhoneNumber");
        hands::keys(u"7723\r"_s);
        EXPECT_SOON(visible("btnCheck"));
        offerCode();
        clock.goOn(400);
        EXPECT_SOON(Heard::events.contains(u"says Fill in 7K2 from your message"_s));
        Heard::events.removeAll(u"name Fill in 7K2 from your message"_s); // early or late, but not said then
    }, 1);
    step(u"back from there"_s, [&] { (void)rests(); tap("btnBack"); clock.goOn(400); (void)rests(); });
    step(u"to the countries, slowly"_s, [this] { tap("viewCountryBack"); (void)row("tblCountries", 0, 1); }, 1);
    part(u"a quarter of the way"_s);
    part(u"half of it"_s);
    EXPECT_FALSE(isAtRest());
    for (const auto each : { Qt::Key_Tab, Qt::Key_Escape, Qt::Key_Space, Qt::Key_Return })
        key(QString::fromLatin1(QMetaEnum::fromType<Qt::Key>().valueToKey(each)) + u" on the way"_s, each);
    step(u"a tap on the way"_s, [this] { hands::click(container.get(), { 195, 250 }); });
    part(u"there"_s, 400);
    step(u"a row pressed"_s, [this] { hands::press(row("tblCountries", 0, 1)); });
    step(u"the finger off it"_s, [this] { hands::moveTo(container.get(), { 195, 20 }); });
    part(u"it fades"_s);
    step(u"lifted"_s, [this] { hands::release(container.get(), { 195, 20 }); });
    tapped(u"back, slowly"_s, "btnClose");
    part(u"a part of the way back"_s);
    step(u"turned on the way"_s, [this] { container->resize(844, 390); });
    part(u"later"_s, 400);
    step(u"upright once more"_s, [this] { container->resize(390, 844); });
    step(u"hidden on the way"_s, [&] { (void)rests(); tap("btnBack"); clock.goOn(80); container->hide(); });
    step(u"shown in the end"_s, [this] { container->show(); });
    part(u"at rest"_s, 400);
    step(u"shut on the way"_s, [&] { (void)rests(); tap("viewAlternativeKit"); clock.goOn(80); page.setEnabled(false); });
    step(u"opened on the way"_s, [&] { page.setEnabled(true); });
    part(u"at last"_s, 400);
    step(u"mirrored on the way"_s, [&] { (void)rests(); tap("btnBack"); clock.goOn(80); container->setLayoutDirection(GetParam() == Qt::LeftToRight ? Qt::RightToLeft : Qt::LeftToRight); });
    m_moves = false;
    step(u"and back"_s, [&] { container->setLayoutDirection(GetParam()); clock.goOn(400); });
}
// clang-format on
