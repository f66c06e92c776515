// The first screen as it stands: geometry, colours, texts.
#include "Parloquin/Cell/ThirdPartyKitTableCell.h"
#include "Screens/Container.h"
#include "support/Widgets.h"

#include <QtCore/QBuffer>

namespace {

class AppList : public ContainerTest {
protected:
    void present(const QByteArray &init)
    {
        answer("/v1.0/init", init);
        presentLoaded();
    }

    template <class T> [[nodiscard]] T *part(int at, const char *name) const
    {
        return row("tblKits", 0, at)->findChild<T *>(QLatin1String(name));
    }
};

// Neither the spinner's plate nor the words under it are read through the other.
TEST_F(AppList, SaysThatItWaitsBesideTheOverlaysPlate)
{
    server.pause();
    ContainerTest::present();
    ASSERT_TRUE(waitForOverlay(true));
    for (const QSize size :
        { QSize(320, 480), QSize(195, 422), QSize(320, 400), QSize(390, 844) }) {
        SCOPED_TRACE(std::to_string(size.width()) + " x " + std::to_string(size.height()));
        container->resize(size);
        QCoreApplication::sendPostedEvents();
        const QRect plate = frame(find("loadingView"));
        const QRect line = frame(find("lblEmpty"));
        const QRect symbol = frame(find("imgEmpty"));
        EXPECT_FALSE(line.isEmpty());
        EXPECT_TRUE(frame(find("tblKits")).contains(line));
        EXPECT_FALSE(plate.intersects(line)) << line.top() << '-' << line.bottom();
        if (size.width() >= 320 && size.height() >= 480) {
            EXPECT_TRUE(find("imgEmpty")->isVisible());
        }
        EXPECT_TRUE(!find("imgEmpty")->isVisible() || !plate.intersects(symbol));
    }
    server.proceed();
    ASSERT_TRUE(waitForOverlay(false));
}

TEST_F(AppList, ShowsTheColoursAndTextOfEachApp)
{
    present(R"({"result":{"list":[
        {"text":"Text","name":"Name","bgColour":"#1C7C4C","textColour":"FFD14A"},
        {"name":"Only a name"}, {"text":"<b>x</b>","bgColour":"#12345","textColour":"nonsensical"}]}})");
    const struct {
        QString text;
        QColor back;
        QColor ink;
    } rows[] = {
        { u"Text"_s, QColor(0x1c, 0x7c, 0x4c), QColor(0xff, 0xd1, 0x4a) },
        { {}, Qt::blue, Qt::white },
        { u"<b>x</b>"_s, QColor(1, 1, 0, 1), QColor(1, 1, 0, 1) },
    };
    for (int row = 0; row < 3; ++row) {
        SCOPED_TRACE(row);
        EXPECT_EQ(part<Label>(row, "lblKitName")->text(), rows[row].text);
        EXPECT_EQ(part<View>(row, "viewBack")->backgroundColor(), rows[row].back);
        EXPECT_EQ(part<Label>(row, "lblKitName")->textColor(), rows[row].ink);
    }
    const QImage screen = container->grab().toImage();
    const QPointF inside = frame(part<View>(0, "viewBack")).center() + QPointF(120, 0);
    EXPECT_EQ(screen.pixelColor((inside * screen.devicePixelRatio()).toPoint()), rows[0].back);

    auto *const first = row("tblKits", 0, 0);
    hands::press(first);
    EXPECT_SOON(part<View>(0, "viewBack")->backgroundColor() == QColor(0x16, 0x63, 0x3d));
    EXPECT_EQ(part<View>(1, "viewBack")->backgroundColor(), rows[1].back);
    hands::moveTo(first, { 195, 240 }); // let go elsewhere, it is no tap
    hands::release(first, { 195, 240 });
    EXPECT_SOON(part<View>(0, "viewBack")->backgroundColor() == rows[0].back);
    EXPECT_EQ(paths().size(), 1);
}

// Far down and back: a row's widget is another row's by then.
TEST_F(AppList, EachRowShowsItsOwnWhereverItsWidgetHasBeen)
{
    constexpr int count = 10000;
    const auto color = [](int row) { return QColor(row % 256, 40 + row / 256, 200); };
    const auto hasIcon = [](int row) { return row % 3 != 1; };
    QByteArray list;
    for (int row = 0; row < count; ++row) {
        const QByteArray name = color(row).name().mid(1).toLatin1();
        QImage icon(1, 1, QImage::Format_RGB32);
        icon.fill(color(row));
        QBuffer png;
        icon.save(&png, "PNG");
        server.answer('/' + name, RawServer::http(200, png.data(), "Content-Type: image/png\r\n"));
        list += R"({"text":"Row )" + QByteArray::number(row) + R"(","bgColour":")" + name + '"';
        if (hasIcon(row))
            list += R"(,"icon":")" + server.url(u"/"_s).toLatin1() + name + '"';
        list += "},";
    }
    present(R"({"result":{"list":[)" + list.chopped(1) + "]}}");
    auto *const table = find<TableView>("tblKits");
    hands::press(row("tblKits", 0, 1)); // a press that is scrolled away
    for (const int place : { 0, 1, 2, 7, 5000, 9999, 9990, 5003, 4, 0 }) {
        table->scrollToRow({ 0, place }, false);
        QCoreApplication::processEvents();
        for (auto *const each : table->visibleCells()) {
            const int row = each->indexPath().row;
            SCOPED_TRACE("row " + std::to_string(row) + " at " + std::to_string(place));
            EXPECT_EQ(part<Label>(row, "lblKitName")->text(), u"Row %1"_s.arg(row));
            EXPECT_EQ(part<View>(row, "viewBack")->backgroundColor().name(),
                (row == 1 && each->isPressed() ? color(row).darker(125) : color(row)).name());
            const auto *icon = part<ImageView>(row, "imgKitIcon");
            const auto shows = [&] {
                return icon->image().isNull() ? QColor() : icon->image().pixelColor(0, 0);
            };
            EXPECT_TRUE(shows() == color(row) || !shows().isValid())
                << "another's: " << shows().name().toStdString();
            (void)QTest::qWaitFor([&] { return shows().isValid(); }, hasIcon(row) ? 5000 : 0);
            EXPECT_EQ(shows(), hasIcon(row) ? color(row) : QColor());
        }
    }
    hands::release(container.get(), { 5, 5 });
    EXPECT_LT(table->findChildren<ThirdPartyKitTableCell *>().size(), 20);
}

TEST_F(AppList, TellsAutomationWhenItIsAtRest)
{
    QApplication::setStyle(new ParloquinTest::PacedStyle(200));
    QByteArray list;
    for (int row = 0; row < 50; ++row)
        list += R"({"text":"Row"},)";
    answer("/v1.0/init",
        R"({"result":{"alternativeValidation":"otp","list":[)" + list.chopped(1) + "]}}");
    ContainerTest::present();
    EXPECT_TRUE(waitForOverlay(true));
    EXPECT_FALSE(isAtRest());
    ASSERT_TRUE(settle(1));
    EXPECT_TRUE(isAtRest());

    hands::Finger finger;
    finger.down(container.get(), { 200, 600 });
    finger.drag({ 0, -300 });
    finger.up();
    EXPECT_FALSE(isAtRest()) << "it rolls on by itself";
    EXPECT_TRUE(rests());

    tap("viewAlternativeKit");
    EXPECT_FALSE(isAtRest());
    EXPECT_TRUE(rests());
    EXPECT_FALSE(find("tblKits")->isVisible()) << "the slide is over";
}

TEST_F(AppList, PushesALongDescriptionsTableDownWithoutOverlap)
{
    present(R"({"result":{"description":")" + QByteArray("Some words that wrap. ").repeated(12)
        + R"(","list":[{"text":"An app whose name is much longer than its row is wide, by far"}]}})");
    const QRect text = frame(find("lblDescription"));
    EXPECT_GT(text.height(), 60);
    EXPECT_EQ(frame(find("tblKits")).top(), text.top() + text.height() + 30);
    EXPECT_EQ(frame(find("tblKits")).top() + find("tblKits")->height(), 739);
    EXPECT_EQ(part<Label>(0, "lblKitName")->width(), 265);
}

} // namespace
