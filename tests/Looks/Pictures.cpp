// Pictures at the ratio that the process runs with, to the pixel.
#include "Looks/Walk.h"
#include "Parloquin/Extension/QImage+Extension.h"
#include "Parloquin/Networking/Router/ServiceEndpoint.h"

#include <QtCore/QBuffer>
#include <QtGui/QPainter>

namespace {

/// Each quarter of another colour, as read from the left and from the top.
QImage quarters(QSize size)
{
    QImage image(size, QImage::Format_RGB32);
    QPainter painter(&image);
    for (const auto &[x, y, color] : { std::tuple(0, 0, Qt::red), std::tuple(1, 0, Qt::green),
             std::tuple(0, 1, Qt::blue), std::tuple(1, 1, Qt::black) })
        painter.fillRect(x * size.width() / 2, y * size.height() / 2, size.width() / 2,
            size.height() / 2, color);
    return image;
}

/// What stands near the corners and in the middles of the edges of a picture, row by row: the
/// letters of the colours, `.` where nothing was drawn.
std::string lookOf(QWidget &view)
{
    QImage drawn(view.size() * view.devicePixelRatioF(), QImage::Format_RGB32);
    drawn.setDevicePixelRatio(view.devicePixelRatioF());
    drawn.fill(Qt::white);
    view.render(&drawn, {}, {}, QWidget::DrawChildren);
    std::string look;
    for (const double down : { 0.06, 0.35, 0.65, 0.94 }) {
        for (const double across : { 0.06, 0.35, 0.65, 0.94 }) {
            const QColor color = drawn.pixelColor(
                static_cast<int>(drawn.width() * across), static_cast<int>(drawn.height() * down));
            const bool r = color.red() > 128;
            const bool g = color.green() > 64;
            const bool b = color.blue() > 128;
            look += r && g && b ? '.' : r ? 'r' : g ? 'g' : b ? 'b' : 'k';
        }
        look += '/';
    }
    return look;
}

constexpr auto fit = ContentMode::aspectFit;
constexpr auto fill = ContentMode::scaleToFill;

TEST(Pictures, KeepTheirShape)
{
    const struct {
        QSize picture;
        ContentMode mode;
        std::string look; ///< in a view of 40 x 40
    } rows[] = {
        { { 80, 20 }, fill, "rrgg/rrgg/bbkk/bbkk/" },
        { { 80, 40 }, fit, "..../rrgg/bbkk/..../" },
        { { 20, 40 }, fit, ".rg./.rg./.bk./.bk./" },
        { { 4, 4 }, fit, "rrgg/rrgg/bbkk/bbkk/" },
    };
    for (const auto &[picture, mode, look] : rows) {
        ImageView view;
        view.resize(40, 40);
        view.setContentMode(mode);
        view.setImage(quarters(picture));
        EXPECT_EQ(lookOf(view), look);
    }
}

TEST(Pictures, CoverThePixelsOfTheDeviceOneByOne)
{
    QWidget page;
    ImageView view;
    view.resize(20, 20);
    const int side = qRound(20 * view.devicePixelRatioF());
    QImage fine(side, side, QImage::Format_RGB32);
    for (int y = 0; y < side; ++y) {
        for (int x = 0; x < side; ++x)
            fine.setPixelColor(x, y, (x + y) % 2 == 0 ? Qt::black : QColor(7 * x % 256, 0, 255));
    }
    view.setImage(fine);
    const QImage drawn = view.grab().toImage().convertToFormat(QImage::Format_RGB32);
    EXPECT_EQ(difference(drawn, fine), "");

    // Nor are its edges soft where it ends between two of them.
    view.setParent(&page);
    view.setGeometry(1, 1, 25, 25);
    QImage whole(50, 50, QImage::Format_RGB32);
    whole.fill(Qt::black);
    view.setImage(whole);
    QImage seen = page.grab({ 0, 0, 30, 30 }).toImage().convertToFormat(QImage::Format_RGB32);
    const QRgb ground = seen.pixel(0, 0);
    for (int at = 0; at < seen.width(); ++at) {
        const QRgb pixel = seen.pixel(at, seen.height() / 2);
        EXPECT_TRUE(pixel == ground || pixel == qRgb(0, 0, 0))
            << QColor(pixel).name().toStdString() << " at " << at;
    }
}

/// A JPEG whose file says how to turn it.
QByteArray turned(char orientation)
{
    QByteArray jpeg;
    QBuffer device(&jpeg);
    quarters({ 80, 40 }).save(&device, "JPEG", 100);
    QByteArray exif("\xff\xe1\0\x22"
                    "Exif\0\0MM\0\x2a\0\0\0\x08\0\x01\x01\x12\0\x03\0\0\0\x01\0?\0\0\0\0\0\0",
        36);
    exif[exif.indexOf('?')] = orientation;
    return jpeg.insert(2, exif);
}

TEST(Pictures, TurnAsTheirFileSays)
{
    RawServer server;
    const std::pair<char, std::string> rows[] = { { 1, "..../rrgg/bbkk/..../" },
        { 2, "..../ggrr/kkbb/..../" }, { 3, "..../kkbb/ggrr/..../" }, { 6, ".br./.br./.kg./.kg./" },
        { 8, ".gk./.gk./.rb./.rb./" } };
    for (const auto &[orientation, look] : rows) {
        server.answer(
            "/a", RawServer::http(200, turned(orientation), "Content-Type: image/jpeg\r\n"));
        ImageView view;
        view.resize(40, 40);
        download(&view, QUrl(server.url(u"/a"_s)), fit, serviceTimeout());
        ASSERT_TRUE(QTest::qWaitFor([&] { return !view.image().isNull(); })) << int(orientation);
        EXPECT_EQ(lookOf(view), look) << "orientation " << int(orientation);
    }
}

} // namespace
