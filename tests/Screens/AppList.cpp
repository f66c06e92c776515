// The first screen as it stands: geometry, colours, texts.
#include "Parloquin/Cell/ThirdPartyKitTableCell.h"
#include "Screens/Container.h"
#include "support/Widgets.h"

#include <QtCore/QBuffer>

namespace {

class AppList : public ContainerTest {
protected:
    template <class T> [[nodiscard]] T *part(int at, const char *name) const
    {
        return row("tblKits", 0, at)->findChild<T *>(QLatin1String(name));
    }
};

// Far down and back: a row's widget is another row's by then.
TEST_F(AppList, EachRowShowsItsOwnWhereverItsWidgetHasBeen)
{
    constexpr int count = 10000;
    const auto color = [](int row) { return QColor(row == 1 ? 0x111111 : 0x28c8 + 97 * row); };
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
    answer("/v1.0/init", R"({"result":{"list":[)" + list.chopped(1) + "]}}");
    presentLoaded();
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
                (row == 1 && each->isPressed() ? QColor(65, 65, 65) : color(row)).name());
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
    const auto back = [this] { return part<View>(0, "viewBack")->backgroundColor(); };
    hands::press(row("tblKits", 0, 0));
    EXPECT_SOON(back() == color(0).darker(125));
    hands::moveTo(container.get(), { 195, 500 }); // let go elsewhere, it is no tap
    hands::release(container.get(), { 195, 500 });
    EXPECT_SOON(back() == color(0)) << back().name().toStdString();
    EXPECT_EQ(paths().count("/v1.0/start"), 0);
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
    present();
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

} // namespace
