// Lines at the ratio that the process runs with: whole pixels of the device, each like the others;
// and a press, on an app of any colour.
#include "Looks/Walk.h"

#include <QtCore/QtMath>
#include <QtGui/QScreen>

#include <utility>

namespace {

class Lines : public Walk {
protected:
    /// The rows of the device in which a field shows text, from its top on.
    [[nodiscard]] std::pair<int, int> inkedRows(const char *field) const
    {
        const QImage whole = picture();
        const qreal ratio = whole.devicePixelRatio();
        const QRectF at(frame(find(field)));
        const QImage image = whole.copy(QRectF(at.topLeft() * ratio, at.size() * ratio).toRect());
        const QRect text = around(image, [](QRgb color) { return qBlue(color) < 128; }); // no caret
        return { text.top(), text.bottom() };
    }

    /// A colour of the screens where this one is it but for a rounding; else this one.
    static QColor nearest(const QColor &color)
    {
        for (const QRgb known :
            { 0xffffffU, 0x000000U, 0x0000ffU, 0x808080U, 0x999999U, 0xd3d6e2U }) {
            if (std::abs(qRed(known) - color.red()) <= 1
                && std::abs(qGreen(known) - color.green()) <= 1
                && std::abs(qBlue(known) - color.blue()) <= 1)
                return known;
        }
        return color;
    }

    /// What is met on the way between two points of the container (px), the white between left
    /// out: "#000000 1, #999999 3, ".
    [[nodiscard]] static QString met(const QImage &picture, QPoint from, QPoint to)
    {
        const qreal ratio = picture.devicePixelRatio();
        const QPoint step = from.x() == to.x() ? QPoint(0, 1) : QPoint(1, 0);
        const QPoint end = (QPointF(to) * ratio).toPoint();
        QString runs;
        int length = 0;
        for (QPoint at = (QPointF(from) * ratio).toPoint(); at != end; at += step) {
            const QColor color = nearest(picture.pixelColor(at));
            ++length;
            if (at + step != end && nearest(picture.pixelColor(at + step)) == color)
                continue;
            if (color != Qt::white)
                runs += u"%1 %2, "_s.arg(color.name()).arg(length);
            length = 0;
        }
        return runs;
    }
};

TEST_F(Lines, CoverWholePixelsOfTheDevice)
{
    QApplication::setFont(QFont(u"Inter"_s)); // whose lines begin between pixels
    take([&](const std::string &stop) {
        const QImage now = picture();
        const int frame = qRound(now.devicePixelRatio()); // of a box, which is 1 px
        const QString caret = u"#0000ff %1, "_s.arg(qFloor(2 * now.devicePixelRatio()));
        const QString black = u"#000000 %1, "_s.arg(frame);
        const QString blue = u"#0000ff %1, "_s.arg(frame);
        if (stop == "app list") {
            EXPECT_EQ(met(now, { 10, 735 }, { 10, 745 }), u"#999999 1, ") << "the panel";
        } else if (stop == "phone entry") {
            EXPECT_EQ(met(now, { 28, 110 }, { 28, 280 }), black.repeated(4)) << "boxes";
            EXPECT_EQ(met(now, { 10, 135 }, { 380, 135 }), black.repeated(2)) << "sides";
            EXPECT_EQ(met(now, { 40, 280 }, { 40, 360 }).count(u'#'), 1) << "a button's edges";
        } else if (stop == "country picker") {
            // N has two rows: one line between them, and the one under the header.
            const QString lines = met(now, { 300, 93 }, { 300, 700 });
            EXPECT_EQ(lines.count(u"#d3d6e2 1, "_s), 5) << lines.toStdString();
        } else if (stop == "phone entry, filled") {
            find<QLineEdit>("txtCountryCode")->setText(find<QLineEdit>("txtPhoneNumber")->text());
            EXPECT_EQ(inkedRows("txtCountryCode"), inkedRows("txtPhoneNumber")) << "one base line";
            // Over the digits, where only the caret reaches.
            EXPECT_EQ(met(now, { 126, 223 }, { 350, 223 }), caret) << "of the number";
        } else if (stop == "code entry") {
            EXPECT_EQ(met(now, { 165, 160 }, { 295, 160 }), u"#808080 1, "_s.repeated(4))
                << "digits";
            EXPECT_EQ(met(now, { 110, 180 }, { 145, 180 }), caret) << "of a digit";
            EXPECT_EQ(met(now, { 30, 135 }, { 30, 225 }), blue.repeated(2)) << "frame";
        }
    });
}

TEST_F(Lines, OfAnEmptyListKeepClearOfTheOverlaysPlate)
{
    answer("/v1.0/init", R"({"result":{}})");
    server.pause();
    present();
    ASSERT_TRUE(waitForOverlay(true));
    for (const int width : { 195, 390, 844 }) {
        for (int height = 844; height >= 313; height -= 3) {
            container->resize(width, height);
            QCoreApplication::sendPostedEvents();
            const auto *const symbol = visible("imgEmpty");
            const QRect seen = frame(find("lblEmpty")) | (symbol ? frame(symbol) : QRect());
            EXPECT_FALSE(frame(find("loadingView")).intersects(seen)) << width << " x " << height;
            EXPECT_EQ(frame(find("container")), container->rect()) << "the overlay";
            const QRect list = frame(find("tblKits"));
            EXPECT_TRUE(height < 355 ? list.intersects(seen) : list.contains(seen))
                << width << " x " << height;
        }
    }
    container->hide(); // as it says another
    server.proceed();
    ASSERT_SOON(textOf(find("lblEmpty")) == u"No apps to show");
    container->show();
    EXPECT_EQ(frame(find("lblEmpty")).y(), 204);
}

TEST_F(Lines, OfAPageThatIsInsetReachNoFurther)
{
    present();
    container->setContentsMargins(11, 44, 13, 17);
    ASSERT_TRUE(settle(1));
    EXPECT_EQ(frame(find("navigationBar")), QRect(0, 0, 390, 92));
    EXPECT_EQ(frame(find("tblKits")), QRect(11, 172, 366, 550));
    EXPECT_EQ(frame(find("viewAlternativeKit")), QRect(11, 722, 366, 105));
    EXPECT_EQ(frame(find("container")), QRect(0, 0, 390, 844)) << "the overlay";
    EXPECT_EQ(met(picture(), { 5, 93 }, { 5, 843 }), u"") << "what is left free is white";
    EXPECT_EQ(container->minimumSizeHint(), QSize(320, 480));
    EXPECT_LE(container->sizeHint().height(), container->screen()->availableSize().height() - 27)
        << "of a window with a title bar and a border";
    EXPECT_EQ(container->sizeHint().width(), 390);
}

using Press = Walk;

TEST_F(Press, ShowsOnWhateverColourAnAppHas)
{
    answer("/v1.0/init", R"({"result":{"list":[{"bgColour":"000000"},{"bgColour":"3f3f3f"},
        {"bgColour":"404040"},{"bgColour":"ffffff"}]}})");
    presentLoaded();
    int at = 0;
    for (const int pressed : { 51, 101, 51, 204 }) { // the darkest become lighter
        auto *const app = row("tblKits", 0, at++);
        hands::press(app);
        EXPECT_EQ(qRed(app->grab().toImage().pixel(200, 40)), pressed) << "row " << at;
        hands::release(app);
    }
}

} // namespace
