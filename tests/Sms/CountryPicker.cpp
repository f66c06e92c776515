#include "Parloquin/Controller/CountryListViewController.h"
#include "Sms/SmsRoad.h"

#include <QtCore/QLocale>

namespace {

class CountryPicker : public SmsRoad {
protected:
    /// Opens the picker on countries of these titles, `-` being one without.
    void openOn(const QStringList &titles)
    {
        QByteArray list;
        for (const QString &title : titles) {
            list += list.isEmpty() ? "" : ",";
            list += title == u"-" ? "{}" : "{\"title\":\"" + title.toUtf8() + "\"}";
        }
        on("country", ok("{\"list\":[" + list + "]}"));
        openPicker();
        screen = dynamic_cast<CountryListViewController *>(page());
        table = part<TableView>("tblCountries");
        ASSERT_SOON(titles.isEmpty() || !table->visibleCells().isEmpty());
    }
    /// "A: Albania, Austria; B: Benin"
    QString sections() const
    {
        QStringList all;
        for (int s = 0; s < screen->numberOfSections(*table); ++s) {
            QStringList rows;
            for (int r = 0; r < screen->numberOfRows(*table, s); ++r)
                rows.append(screen->nameOfRow(*table, { s, r }));
            EXPECT_EQ(
                screen->titleForHeader(*table, s), screen->sectionIndexTitles(*table).value(s));
            all.append(screen->titleForHeader(*table, s) + u": "_s + rows.join(u", "_s));
        }
        return all.join(u"; "_s);
    }

    CountryListViewController *screen = nullptr;
    TableView *table = nullptr;
};

struct Sections {
    const char *name;
    QStringList titles;
    QString sections;
};

class CountrySections : public CountryPicker, public testing::WithParamInterface<Sections> { };

TEST_P(CountrySections, GroupByFirstCharacterAsWritten)
{
    openOn(GetParam().titles);
    EXPECT_EQ(sections(), GetParam().sections);
    EXPECT_EQ(screen->sectionIndexTitles(*table).size(), screen->numberOfSections(*table));
}

const Sections sectionRows[] = {
    { "CaseAndAccentsKept", { u"Åland"_s, u"Zambia"_s, u"algeria"_s, u"Albania"_s },
        u"A: Albania; a: algeria; Å: Åland; Z: Zambia"_s },
    { "RowsAsReceived", { u"Benin"_s, u"Austria"_s, u"Belize"_s, u"Albania"_s },
        u"A: Austria, Albania; B: Benin, Belize"_s },
    { "WithoutTitleInNone", { u"-"_s, u"Chad"_s, u"-"_s }, u"C: Chad"_s },
    { "EmptyTitleFirst", { u"Chad"_s, u""_s }, u": ; C: Chad"_s },
    { "WholeCharacters", { u"🇳🇴 Norway"_s, u"🇳🇷 Nauru"_s, u"e\u0301a"_s, u"ea"_s },
        u"🇳🇴: 🇳🇴 Norway; 🇳🇷: 🇳🇷 Nauru; e: ea; e\u0301: e\u0301a"_s },
    { "ThreeKindsOfAlef", { u"الأردن"_s, u"إيطاليا"_s, u"أيرلندا"_s },
        u"أ: أيرلندا; إ: إيطاليا; ا: الأردن"_s },
};

INSTANTIATE_TEST_SUITE_P(Titles, CountrySections, testing::ValuesIn(sectionRows), byName);

using CountryPickerOrder = CountryPicker;

// Runs a second time under a Swedish locale.
TEST_F(CountryPickerOrder, FollowsTheLanguage)
{
    openOn({ u"Zambia"_s, u"Åland"_s, u"Benin"_s });
    const bool swedish = QLocale::system().language() == QLocale::Swedish;
    EXPECT_EQ(screen->sectionIndexTitles(*table).join(u""), swedish ? u"BZÅ"_s : u"ÅBZ"_s);
}

TEST_F(CountryPicker, WithoutAListShowsNoneAndFetchesAfreshNextTime)
{
    on("country", dropped);
    openPicker();
    ASSERT_SOON(bodies("country").size() == 1);
    hands::key(Qt::Key_Return); // nothing to choose
    EXPECT_SOON(text("lblEmpty") == u"No countries to show") << text("lblEmpty").toStdString();
    tap("btnClose");
    ASSERT_TRUE(seen("btnContinue"));
    openOn({ u"Chad"_s });
    EXPECT_FALSE(visible("lblEmpty"));
    choose(u"Chad"_s);
    EXPECT_EQ(text("txtCountryName"), u"Chad"_s);
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
    openOn({ u"Chad"_s });
    EXPECT_DEATH((void)screen->numberOfRows(*table, 1), "no section 1");
    EXPECT_DEATH((void)screen->titleForHeader(*table, -1), "no section -1");
    EXPECT_DEATH((void)screen->cellForRow(*table, { 0, 1 }), "no row 1");
}

} // namespace
