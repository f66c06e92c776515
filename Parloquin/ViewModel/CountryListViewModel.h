#pragma once

#include "Parloquin/Model/CountryModel.h"
#include "Parloquin/Networking/Client/Result.h"
#include "Parloquin/ViewModel/Base/BaseViewModel.h"
#include "Parloquin/ViewModel/Base/ListState.h"

#include <QtCore/QList>
#include <QtCore/QMap>
#include <QtCore/QStringList>

#include <memory>

namespace parloquin {

struct CountryResponseModel;

/// \brief The countries of the picker, grouped by the first character of their names. Main thread
/// only.
class CountryListViewModel : public BaseViewModel,
                             public std::enable_shared_from_this<CountryListViewModel> {
public:
    using BaseViewModel::BaseViewModel;

    QList<CountryModel> countryList; ///< as received
    QStringList countrySectionTitleList; ///< sorted as the user's language sorts
    QMap<QString, QList<CountryModel>> countrySectionList; ///< each in the order received
    ListState listState;

    /// \return completion of the country call, for any thread; does nothing once this is gone
    [[nodiscard]] Completion<CountryResponseModel> getCountries();

private:
    void splitCountriesWithSections();
};

} // namespace parloquin
