// Colours, class names and pictures from the network.
#include "Parloquin/Extension/QColor+Extension.h"
#include "Parloquin/Extension/QImage+Extension.h"
#include "Parloquin/Networking/Router/ServiceEndpoint.h"
#include "Screens/Container.h"
#include "support/Widgets.h"

#include <QtCore/QBuffer>

namespace {

TEST(HexColour, ReadsThreeFormsAndFallsBackToNothing)
{
    const QColor fallback(1, 1, 0, 1);
    const std::pair<const char *, QColor> rows[] = {
        { "1a0", QColor(17, 170, 0) },
        { "  #12aBcD; ", QColor(0x12, 0xab, 0xcd) },
        { "80FF0000", QColor(255, 0, 0, 128) },
        { "00FFFFFF", QColor(255, 255, 255, 0) },
        { "#GG0000", QColor(0, 0, 0) },
        { "12345G", QColor(0x01, 0x23, 0x45) },
        { "0x12ff", QColor(0, 0, 0) },
        { "12 456", QColor(0, 0, 0x12) },
        { "12345", fallback },
        { "123456789", fallback },
        { "###", fallback },
        { "\u00e9\u00e9\u00e9\u00e9\u00e9", fallback },
    };
    for (const auto &[text, color] : rows)
        EXPECT_EQ(colorFromHexString(QString::fromUtf8(text)).name(QColor::HexArgb),
            color.name(QColor::HexArgb))
            << text;
}

QByteArray picture(QSize size, const char *format)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::red);
    QBuffer bytes;
    bytes.open(QIODevice::WriteOnly);
    image.save(&bytes, format);
    return bytes.data();
}

QByteArray padded(QByteArray png, qsizetype size) { return png.append(size - png.size(), '\0'); }

void fetch(ImageView *view, const RawServer &server, const char *path)
{
    download(view, QUrl(server.url(QLatin1String(path))), ContentMode::aspectFit, serviceTimeout());
}

struct PictureRow {
    const char *name;
    int status;
    QByteArray type;
    QByteArray body;
    QSize shown; ///< empty: the view stays as it was
};

class Picture : public testing::TestWithParam<PictureRow> { };

TEST_P(Picture, IsShownWhenItIsOneAndSmall)
{
    const auto &[name, status, type, body, shown] = GetParam();
    RawServer server;
    server.answer("/a", RawServer::http(status, body, "Content-Type: " + type + "\r\n"));
    server.answer(
        "/last", RawServer::http(200, picture({ 7, 7 }, "PNG"), "Content-Type: image/png\r\n"));
    ImageView view;
    ImageView witness;
    QImage before(3, 3, QImage::Format_RGB32);
    before.fill(Qt::green);
    view.setImage(before);

    fetch(&view, server, "/a");
    EXPECT_EQ(view.contentMode(), ContentMode::aspectFit);
    ASSERT_TRUE(server.waitForRequests(1));
    if (const QSize size = shown; !size.isEmpty()) {
        EXPECT_TRUE(QTest::qWaitFor([&] { return view.image().size() == size; }));
        return;
    }
    // Refused answers leave no trace: wait until a later one has made the same way.
    ASSERT_TRUE(QTest::qWaitFor([&] {
        if (witness.image().isNull())
            fetch(&witness, server, "/last");
        return !witness.image().isNull();
    }));
    EXPECT_EQ(difference(view.image(), before), "");
}

const qsizetype mebi = 1024 * 1024;
const PictureRow pictureRows[] = {
    { "Png", 200, "image/png", picture({ 25, 25 }, "PNG"), { 25, 25 } },
    { "JpegUnderAnotherName", 200, "image/anything; q=1", picture({ 9, 5 }, "JPEG"), { 9, 5 } },
    { "LargestSide", 200, "image/png", picture({ 1024, 1 }, "PNG"), { 1024, 1 } },
    { "LargestFile", 200, "image/png", padded(picture({ 4, 4 }, "PNG"), mebi), { 4, 4 } },
    { "SideTooLong", 200, "image/png", picture({ 1025, 1 }, "PNG"), {} },
    { "SideTooHigh", 200, "image/png", picture({ 1, 1025 }, "PNG"), {} },
    { "FileTooLong", 200, "image/png", padded(picture({ 4, 4 }, "PNG"), mebi + 1), {} },
    { "NotFound", 404, "image/png", picture({ 4, 4 }, "PNG"), {} },
    { "Partial", 206, "image/png", picture({ 4, 4 }, "PNG"), {} },
    { "Text", 200, "text/plain", picture({ 4, 4 }, "PNG"), {} },
    { "Svg", 200, "image/svg+xml", "<svg xmlns='http://www.w3.org/2000/svg'/>", {} },
    { "Bmp", 200, "image/bmp", picture({ 4, 4 }, "BMP"), {} },
    { "Cut", 200, "image/png", picture({ 4, 4 }, "PNG").left(40), {} },
    { "Empty", 200, "image/png", "", {} },
};
INSTANTIATE_TEST_SUITE_P(Rows, Picture, testing::ValuesIn(pictureRows), byName);

TEST(LatePicture, ArrivesInAViewThatHasAnotherByNow)
{
    RawServer server;
    const auto type = QByteArrayLiteral("Content-Type: image/png\r\n");
    server.answer("/slow", RawServer::http(200, picture({ 5, 5 }, "PNG"), type));
    server.answer("/fast", RawServer::http(200, picture({ 6, 6 }, "PNG"), type));
    auto view = std::make_unique<ImageView>();
    const auto load = [&](const char *path) { fetch(view.get(), server, path); };
    load("/fast");
    ASSERT_TRUE(QTest::qWaitFor([&] { return view->image().width() == 6; }));
    server.pause();
    load("/slow");
    ASSERT_TRUE(server.waitForRequests(2));
    view->setImage({}); // reused for another row
    server.proceed();
    EXPECT_TRUE(QTest::qWaitFor([&] { return view->image().width() == 5; }));

    server.pause();
    load("/slow");
    ASSERT_TRUE(server.waitForRequests(3));
    view.reset(); // gone: skipped
    server.proceed();
    view = std::make_unique<ImageView>();
    load("/fast");
    EXPECT_TRUE(QTest::qWaitFor([&] { return view->image().width() == 6; }));
}

} // namespace
