#pragma once

#include "Parloquin/Controller/Base/BaseViewController.h"
#include "Parloquin/Protocol/Updateable.h"
#include "Parloquin/Toolkit/TableView.h"
#include "Parloquin/ViewModel/CountryListViewModel.h"

#include <QtCore/QPointer>

namespace parloquin {

class BarButtonItem;
class CountryProtocol;

/// \brief The picker of countries: fetches them once, hands the chosen one back and leaves.
///
/// Main thread only.
class CountryListViewController : public BaseViewController<CountryListViewModel>,
                                  public Updateable,
                                  public TableViewDataSource,
                                  public TableViewDelegate {
    Q_OBJECT
public:
    explicit CountryListViewController(QWidget *parent = nullptr);
    ~CountryListViewController() override;

    // Set before the push.
    std::weak_ptr<CountryProtocol> countryProtocol; ///< receiver of the choice
    std::optional<QString> currentCountryCode; ///< whose row bears the tick

    void actionButtonClose();

    /// Reloads the table, from the event loop.
    void rebindData() override;

    // A section or row that does not exist stops the program.
    [[nodiscard]] int numberOfSections(const TableView &table) const override;
    [[nodiscard]] int numberOfRows(const TableView &table, int section) const override;
    [[nodiscard]] QString titleForHeader(const TableView &table, int section) const override;
    [[nodiscard]] QStringList sectionIndexTitles(const TableView &table) const override;
    [[nodiscard]] QString nameOfRow(const TableView &table, const IndexPath &path) const override;
    [[nodiscard]] bool isRowChecked(const TableView &table, const IndexPath &path) const override;
    [[nodiscard]] TableCell *cellForRow(TableView &table, const IndexPath &path) override;
    void didSelectRow(TableView &table, const IndexPath &path) override;

protected:
    void setBinding() override;
    void setLocalization() override;
    void setUI() override;
    void viewWillDisappear(bool animated) override;

private:
    void setCloseButton();
    void setTableView();
    void setAnchorsForTableView();
    void setupTableView();
    void showEmptyLook();
    [[nodiscard]] const QString &sectionTitle(int section) const;
    [[nodiscard]] QList<CountryModel> countriesOf(int section) const;
    [[nodiscard]] CountryModel countryAt(const IndexPath &path) const;
    [[nodiscard]] bool isCurrent(const CountryModel &country) const;

    QPointer<BarButtonItem> btnClose;
    TableView *tblCountries = nullptr;
};

} // namespace parloquin
