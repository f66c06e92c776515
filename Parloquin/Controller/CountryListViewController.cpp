#include "Parloquin/Controller/CountryListViewController.h"

#include "Parloquin/Cell/CountryTableCell.h"
#include "Parloquin/Extension/ClassName.h"
#include "Parloquin/Networking/Request/Request.h"
#include "Parloquin/Platform/Fatal.h"
#include "Parloquin/Platform/MainQueue.h"
#include "Parloquin/Protocol/CountryProtocol.h"
#include "Parloquin/Toolkit/BarButtonItem.h"
#include "Parloquin/Toolkit/NavigationController.h"

#include <QtCore/QCoreApplication>

namespace parloquin {

CountryListViewController::CountryListViewController(QWidget *parent)
    : BaseViewController(parent)
{
}

CountryListViewController::~CountryListViewController() = default;

void CountryListViewController::setBinding()
{
    connect(&requiredViewModel().listState, &ListState::settled, this, [this] { showEmptyLook(); });
    showEmptyLook();
    ApiRequest::country(requiredViewModel().getCountries());
}

void CountryListViewController::setLocalization()
{
    setTitle(QCoreApplication::translate("Parloquin", "Country List"));
}

void CountryListViewController::viewWillDisappear(bool animated)
{
    BaseViewController::viewWillDisappear(animated);
    // Unlike the other screens, the picker leaves its Back in the bar.
    navigationItem().setRightBarButtonItem(nullptr);
}

void CountryListViewController::actionButtonClose()
{
    if (NavigationController *navigation = navigationController())
        navigation->popViewController(true);
}

void CountryListViewController::rebindData()
{
    onMain([self = QPointer(this)] {
        if (self)
            self->tblCountries->reloadData();
    });
}

const QString &CountryListViewController::sectionTitle(int section) const
{
    const QStringList &titles = requiredViewModel().countrySectionTitleList;
    if (section < 0 || section >= titles.size())
        fatal(QStringLiteral("Country list: there is no section %1 of %2")
                  .arg(section)
                  .arg(titles.size()));
    return titles.at(section);
}

QList<CountryModel> CountryListViewController::countriesOf(int section) const
{
    return requiredViewModel().countrySectionList.value(sectionTitle(section));
}

int CountryListViewController::numberOfSections(const TableView &) const
{
    return static_cast<int>(requiredViewModel().countrySectionTitleList.size());
}

int CountryListViewController::numberOfRows(const TableView &, int section) const
{
    return static_cast<int>(countriesOf(section).size());
}

QString CountryListViewController::titleForHeader(const TableView &, int section) const
{
    return sectionTitle(section);
}

QStringList CountryListViewController::sectionIndexTitles(const TableView &) const
{
    return requiredViewModel().countrySectionTitleList;
}

CountryModel CountryListViewController::countryAt(const IndexPath &path) const
{
    const QList<CountryModel> countries = countriesOf(path.section);
    if (path.row < 0 || path.row >= countries.size())
        fatal(QStringLiteral("Country list: there is no row %1 of %2 in section %3")
                  .arg(path.row)
                  .arg(countries.size())
                  .arg(path.section));
    return countries.at(path.row);
}

bool CountryListViewController::isCurrent(const CountryModel &country) const
{
    return country.countryCode == currentCountryCode;
}

QString CountryListViewController::nameOfRow(const TableView &, const IndexPath &path) const
{
    const CountryModel country = countryAt(path);
    const QString title = CountryTableCell::titleOf(country);
    const QString code = country.phoneCode.value_or(QString());
    return code.isEmpty() ? title : QStringLiteral("%1, %2").arg(title, code);
}

bool CountryListViewController::isRowChecked(const TableView &, const IndexPath &path) const
{
    return isCurrent(countryAt(path));
}

TableCell *CountryListViewController::cellForRow(TableView &table, const IndexPath &path)
{
    const CountryModel country = countryAt(path);
    auto *cell = qobject_cast<CountryTableCell *>(
        table.dequeueReusableCell(nameOfClass<CountryTableCell>()));
    cell->setSelectedState(isCurrent(country));
    cell->setCell(country);
    return cell;
}

void CountryListViewController::didSelectRow(TableView &table, const IndexPath &path)
{
    const auto *cell = qobject_cast<CountryTableCell *>(table.cellForRow(path));
    if (!cell || !cell->countryModel())
        return;
    // From the event loop: the pop takes the table away that is still telling of the tap.
    onMain([self = QPointer(this), country = *cell->countryModel()] {
        if (!self)
            return;
        if (const auto receiver = self->countryProtocol.lock())
            receiver->setCountry(country);
        self->actionButtonClose();
    });
}

} // namespace parloquin
