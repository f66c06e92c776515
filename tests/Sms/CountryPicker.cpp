#include "Parloquin/Controller/CountryListViewController.h"
#include "Sms/SmsRoad.h"

#include <QtCore/QLocale>

namespace {

class CountryPicker : public SmsRoad {
protected:
    void open(const QByteArray &countries)
    {
        on("country", ok("{\"list\":[" + countries + "]}"));
        openPicker();
        screen = dynamic_cast<CountryListViewController *>(page());
        table = part<TableView>("tblCountries");
        ASSERT_SOON(!table->visibleCells().isEmpty());
    }
    CountryListViewController *screen = nullptr;
    TableView *table = nullptr;
};

using CountryPickerOrder = CountryPicker;

// Runs a second time under a Swedish locale.
TEST_F(CountryPickerOrder, FollowsTheLanguage)
{
    open(R"({"title":"Zambia"},{"title":"Åland"},{"title":"Benin"})");
    const bool swedish = QLocale::system().language() == QLocale::Swedish;
    EXPECT_EQ(screen->sectionIndexTitles(*table).join(u""), swedish ? u"BZÅ"_s : u"ÅBZ"_s);
}

TEST_F(CountryPicker, TicksTheCurrentCountry)
{
    on("country", ok(R"({"list":[{"title":"Chad","countryCode":"TD"},{"title":"Corsica"},
        {"title":"Ceuta","countryCode":""},{"title":"Zambia","countryCode":"ZM"}]})"));
    const std::pair<std::optional<QString>, QString> rows[] = { { u"TD"_s, u"Chad"_s },
        { {}, u"Corsica"_s }, { u""_s, u"Ceuta"_s }, { u"td"_s, {} } };
    for (const auto &[current, expected] : rows) {
        auto *picker = new CountryListViewController;
        picker->currentCountryCode = current;
        container->findChild<NavigationController *>()->pushViewController(picker, false);
        table = picker->findChild<TableView *>();
        ASSERT_SOON(!table->visibleCells().isEmpty());
        QStringList ticked;
        for (TableCell *cell : table->visibleCells()) {
            if (cell->findChild<QWidget *>(u"iconTick"_s)->isVisible())
                ticked.append(titleOf(cell));
        }
        EXPECT_EQ(ticked.join(u','), expected);
    }
}

TEST_F(CountryPicker, OutOfRangeStopsTheProgram)
{
    open(R"({"title":"Chad"})");
    EXPECT_DEATH((void)screen->numberOfRows(*table, 1), "no section 1");
    EXPECT_DEATH((void)screen->titleForHeader(*table, -1), "no section -1");
    EXPECT_DEATH((void)screen->cellForRow(*table, { 0, 1 }), "no row 1");
}

} // namespace
