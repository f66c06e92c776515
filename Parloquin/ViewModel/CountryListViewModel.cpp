#include "Parloquin/ViewModel/CountryListViewModel.h"

#include "Parloquin/Extension/QString+Characters.h"
#include "Parloquin/Networking/Model/Response/CountryResponseModel.h"
#include "Parloquin/ViewModel/Base/Answer.h"

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
    return [origin = AnswerOrigin(weak_from_this(), presentedViewController)](
               const Result<CountryResponseModel> &result) {
        const auto *const envelope = printed(result);
        if (!envelope) {
            settleList(origin);
            return;
        }
        origin.onMainThread([origin, answer = envelope->result](CountryListViewModel &self) {
            self.countryList = answer && answer->list ? *answer->list : QList<CountryModel>();
            self.splitCountriesWithSections();
            settleList(origin); // behind the reload that the screen has just queued
        });
    };
}

void CountryListViewModel::splitCountriesWithSections()
{
    for (const CountryModel &country : std::as_const(countryList)) {
        if (country.title)
            countrySectionList[firstCharacter(*country.title)].append(country);
    }
    for (QList<CountryModel> &section : countrySectionList)
        section.squeeze(); // as long as the picker is there, nothing is added

    countrySectionTitleList = countrySectionList.keys();
    std::stable_sort(
        countrySectionTitleList.begin(), countrySectionTitleList.end(), caseInsensitiveCollator());
    rebindScreen();
}

} // namespace parloquin
