// Every screen in many sizes and both directions, tiled into one picture each, to be looked at.
#include "Looks/Walk.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QTranslator>
#include <QtGui/QPainter>

#include <utility>

namespace {

constexpr int gap = 12; // device pixels between two tiles
constexpr int perRow = 7;

const QByteArray latinApps = R"({"result":{
    "description":"Choose an app to verify your phone number with. Do you use none of them? There is a code by SMS.",
    "alternativeValidation":"otp","alternativeValidationDescription":"Get a code by SMS instead",
    "list":[{"app":"a","text":"Verify with Parlo","bgColour":"#1C7C4C","textColour":"#FFFFFF","icon":"%1"},
            {"app":"b","text":"Verify with Kite","icon":"%1"},
            {"app":"c","text":"An app of a name that no phone can hold","bgColour":"#FFD14A","textColour":"#111322"},
            {"app":"d","text":"Murmur","bgColour":"#7A2E8E","icon":"%1"},
            {"app":"e","text":"Wrenly","bgColour":"#333333","icon":"%1"},
            {"app":"f","text":"Hushbell","icon":"%1"}]}})";
const QByteArray arabicApps = R"({"result":{
    "description":"اختر تطبيقًا للتحقق من رقم هاتفك. لا تستخدم أيًا منها؟ هناك رمز عبر رسالة نصية.",
    "alternativeValidation":"otp","alternativeValidationDescription":"احصل على رمز عبر رسالة نصية",
    "list":[{"app":"a","text":"تحقق عبر Parlo","bgColour":"#1C7C4C","textColour":"#FFFFFF","icon":"%1"},
            {"app":"b","text":"تحقق عبر Kite","icon":"%1"},
            {"app":"c","text":"Is this one English?","bgColour":"#FFD14A","textColour":"#111322"},
            {"app":"d","text":"همسة","bgColour":"#7A2E8E","icon":"%1"},
            {"app":"e","text":"Wrenly","bgColour":"#333333","icon":"%1"},
            {"app":"f","text":"Hushbell","icon":"%1"}]}})";
const QByteArray arabicCountries = R"({"result":{"list":[
    {"title":"ألمانيا","countryCode":"DE","phoneCode":"+49"},
    {"title":"إسبانيا","countryCode":"ES","phoneCode":"+34"},
    {"title":"بلجيكا","countryCode":"BE","phoneCode":"+32"},
    {"title":"النرويج","countryCode":"NO","phoneCode":"+1 767 767"},
    {"title":"بلد لا يتسع له أي سطر في أي هاتف مهما كان عريضًا","countryCode":"XA"}]}})";

using Size = std::pair<int, int>;

class Gallery : public Walk, public testing::WithParamInterface<std::tuple<Size, bool>> {
protected:
    void SetUp() override
    {
        Walk::SetUp();
        QFont font;
        font.setFamilies({ u"Inter"_s, u"Noto Sans Arabic"_s });
        QApplication::setFont(font);
        const auto &[extent, mirrored] = GetParam();
        size = { extent.first, extent.second };
        QFile icon(QStringLiteral(ICON));
        ASSERT_TRUE(icon.open(QIODevice::ReadOnly));
        server.answer(
            "/icon.png", RawServer::http(200, icon.readAll(), "Content-Type: image/png\r\n"));
        answer("/v1.0/init",
            QByteArray(mirrored ? arabicApps : latinApps)
                .replace("%1", server.url(u"/icon.png"_s).toUtf8()));
        QApplication::setLayoutDirection(mirrored ? Qt::RightToLeft : Qt::LeftToRight);
        if (!mirrored)
            return;
        answer("/v1.0/country", arabicCountries);
        ASSERT_TRUE(m_texts.load(QStringLiteral(TRANSLATIONS "/parloquin_ar.qm")));
        QCoreApplication::installTranslator(&m_texts);
    }

    static void tile(const QList<QImage> &tiles, const QString &file)
    {
        const int columns = std::min<int>(perRow, static_cast<int>(tiles.size()));
        const auto rows = (tiles.size() + columns - 1) / columns;
        const QSize step = tiles.front().size() + QSize(gap, gap);
        QImage sheet(QSize(step.width() * columns, step.height() * static_cast<int>(rows)),
            QImage::Format_RGB32);
        sheet.fill(QColor(0x60, 0x68, 0x80));
        QPainter painter(&sheet);
        for (int i = 0; i < tiles.size(); ++i) {
            QImage image = tiles[i];
            image.setDevicePixelRatio(1);
            painter.drawImage(i % columns * step.width(), i / columns * step.height(), image);
        }
        EXPECT_TRUE(sheet.save(file)) << qPrintable(file);
    }

private:
    QTranslator m_texts;
};

TEST_P(Gallery, OfEveryScreen)
{
    QList<QImage> tiles;
    const Stop keep = [&](const std::string &) {
        QTest::qWait(100); // the icons come when they come
        tiles.append(picture());
    };
    take(keep);
    takeEmpty(keep);
    ASSERT_EQ(tiles.size(), 15);
    const QString name =
        u"%1-%2-%3.png"_s.arg(tiles.front().devicePixelRatio())
            .arg(size.width(), 4, 10, QLatin1Char('0'))
            .arg(std::get<1>(GetParam()) ? QLatin1String("rtl") : QLatin1String("ltr"));
    tile(tiles, QDir(qEnvironmentVariable("PICTURES", u"."_s)).filePath(name));
}

INSTANTIATE_TEST_SUITE_P(All, Gallery,
    testing::Combine(testing::Values(Size(195, 422), Size(320, 480), Size(390, 844), Size(480, 900),
                         Size(1280, 720)),
        testing::Bool()));

} // namespace
