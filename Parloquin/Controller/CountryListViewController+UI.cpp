#include "Parloquin/Controller/CountryListViewController.h"

#include "Parloquin/Cell/CountryTableCell.h"
#include "Parloquin/Extension/ClassName.h"
#include "Parloquin/Toolkit/Anchors.h"
#include "Parloquin/Toolkit/BarButtonItem.h"

#include <QtCore/QCoreApplication>

namespace parloquin {

namespace {
constexpr int rowHeight = 44; // px
}

void CountryListViewController::setUI()
{
    setCloseButton();
    setTableView();
    setAnchorsForTableView();
    setupTableView();
}

void CountryListViewController::setCloseButton()
{
    btnClose = new BarButtonItem(
        QCoreApplication::translate("Parloquin", "Back"), QStringLiteral("btnClose"));
    connect(btnClose, &BarButtonItem::clicked, this, [this] { actionButtonClose(); });
    navigationItem().setLeftBarButtonItem(btnClose);
}

void CountryListViewController::setTableView()
{
    tblCountries = new TableView(this);
    tblCountries->setObjectName(QStringLiteral("tblCountries"));
    tblCountries->setAccessibleName(QCoreApplication::translate("Parloquin", "Country List"));
    tblCountries->setRowHeight(rowHeight);
    tblCountries->setSeparatorStyle(TableView::SeparatorStyle::singleLine);
}

void CountryListViewController::setAnchorsForTableView()
{
    // clang-format off
    activate(this, {
        leading(tblCountries)  == leading(this),
        trailing(tblCountries) == trailing(this),
        top(tblCountries)      == top(this),
        bottom(tblCountries)   == bottom(this),
    });
    // clang-format on
}

void CountryListViewController::setupTableView()
{
    tblCountries->registerCell(
        nameOfClass<CountryTableCell>(), [] { return new CountryTableCell; });
    tblCountries->setDelegate(this);
    tblCountries->setDataSource(this);
}

void CountryListViewController::showEmptyLook()
{
    if (requiredViewModel().listState.isAwaited())
        tblCountries->setEmptyLook(QStringLiteral("icon-list-awaited"),
            QCoreApplication::translate("Parloquin", "Loading the countries…"));
    else
        tblCountries->setEmptyLook(QStringLiteral("icon-list-empty"),
            QCoreApplication::translate("Parloquin", "No countries to show"));
}

} // namespace parloquin
