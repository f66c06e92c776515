#include "Parloquin/ViewModel/CountryListViewModel.h"

#include "Parloquin/Extension/Encodable+Extension.h"
#include "Parloquin/Extension/QString+Characters.h"
#include "Parloquin/Extension/RawValues.h"
#include "Parloquin/Manager/LogManager.h"
#include "Parloquin/Platform/MainQueue.h"

#include <QtCore/QCollator>

#include <algorithm>

namespace parloquin {

namespace {
QCollator caseInsensitiveCollator()
{
    QLocale locale = QLocale::system().collation();
    // The C locale would sort by code points, with Å behind Z.
    if (locale.language() == QLocale::C)
        locale = QLocale::English;
    QCollator collator(locale);
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    return collator;
}
}

Completion<CountryResponseModel> CountryListViewModel::getCountries()
{
    return [weak = weak_from_this()](const Result<CountryResponseModel> &result) {
        if (const ApiError *error = result.error()) {
            print(rawValue(*error));
            return;
        }
        const auto &envelope = *result.response();
        print(dump(envelope));
        onMain([weak, answer = envelope.result] {
            const auto self = weak.lock();
            if (!self)
                return;
            self->countryList = answer && answer->list ? *answer->list : QList<CountryModel>();
            self->splitCountriesWithSections();
        });
    };
}

void CountryListViewModel::splitCountriesWithSections()
{
    for (const CountryModel &country : std::as_const(countryList)) {
        if (country.title)
            countrySectionList[firstCharacter(*country.title)].append(country);
    }

    countrySectionTitleList = countrySectionList.keys();
    std::stable_sort(
        countrySectionTitleList.begin(), countrySectionTitleList.end(), caseInsensitiveCollator());
    rebindScreen();
}

} // namespace parloquin
