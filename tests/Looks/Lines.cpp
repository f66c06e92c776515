// Lines at the ratio that the process runs with: whole pixels of the device, each like the others.
#include "Looks/Walk.h"

#include <QtGui/QColor>
#include <QtGui/QScreen>

#include <algorithm>
#include <vector>

namespace {

struct Stretch {
    QString color;
    int length = 0;

    friend bool operator==(const Stretch &, const Stretch &) = default;
};

std::ostream &operator<<(std::ostream &out, const Stretch &run)
{
    return out << run.length << " x " << run.color.toStdString();
}

class Lines : public Walk {
protected:
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

    /// What is met on the way between two points of the container (px), the white between left out.
    [[nodiscard]] std::vector<Stretch> met(const QImage &picture, QPoint from, QPoint to) const
    {
        const qreal ratio = picture.devicePixelRatio();
        const QPoint step = from.x() == to.x() ? QPoint(0, 1) : QPoint(1, 0);
        const QPoint end = (QPointF(to) * ratio).toPoint();
        std::vector<Stretch> runs;
        for (QPoint at = (QPointF(from) * ratio).toPoint(); at != end; at += step) {
            const QString color = nearest(picture.pixelColor(at)).name();
            if (runs.empty() || runs.back().color != color)
                runs.push_back({ color, 0 });
            ++runs.back().length;
        }
        std::erase_if(
            runs, [](const Stretch &run) { return run.color == QLatin1String("#ffffff"); });
        return runs;
    }
};

TEST_F(Lines, CoverWholePixelsOfTheDevice)
{
    const auto times = [](int count, const char *color, int length) {
        return std::vector<Stretch>(
            static_cast<std::size_t>(count), { QString::fromLatin1(color), length });
    };
    take([&](const std::string &stop) {
        const QImage now = picture();
        const int frame = qRound(now.devicePixelRatio()); // of a box, which is 1 px
        if (stop == "app list") {
            EXPECT_EQ(met(now, { 10, 735 }, { 10, 745 }), times(1, "#999999", 1)) << "the panel";
        } else if (stop == "phone entry") {
            EXPECT_EQ(met(now, { 28, 110 }, { 28, 280 }), times(4, "#000000", frame)) << "boxes";
            EXPECT_EQ(met(now, { 10, 135 }, { 380, 135 }), times(2, "#000000", frame)) << "sides";
        } else if (stop == "country picker") {
            // N has two rows: one line between them, and the one under the header.
            const auto lines = met(now, { 300, 93 }, { 300, 700 });
            const auto hairlines =
                std::count(lines.cbegin(), lines.cend(), Stretch { QStringLiteral("#d3d6e2"), 1 });
            EXPECT_EQ(hairlines, 5) << testing::PrintToString(lines);
        } else if (stop == "phone entry, filled") {
            // Over the digits, where only the caret reaches.
            const auto caret = met(now, { 126, 223 }, { 350, 223 });
            ASSERT_EQ(caret.size(), 1) << testing::PrintToString(caret);
            EXPECT_EQ(caret.front().color, QStringLiteral("#0000ff"));
        } else if (stop == "code entry") {
            EXPECT_EQ(met(now, { 165, 160 }, { 295, 160 }), times(4, "#808080", 1)) << "digits";
            EXPECT_EQ(met(now, { 30, 135 }, { 30, 225 }), times(2, "#0000ff", frame)) << "frame";
        }
    });
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
    EXPECT_TRUE(met(picture(), { 5, 93 }, { 5, 843 }).empty()) << "what is left free is white";
    EXPECT_EQ(container->minimumSizeHint(), QSize(320, 480));
    EXPECT_LE(container->sizeHint().height(), container->screen()->availableSize().height() - 27)
        << "of a window with a title bar and a border";
    EXPECT_EQ(container->sizeHint().width(), 390);
}

} // namespace
