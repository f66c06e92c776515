#pragma once

#include <string_view>

namespace sandbox {

struct LocalName {
    std::string_view text; ///< empty where it is not known
    int place = 0; ///< among all countries, by the alphabet of the language
};

/// The name of a country in another language than English, from iso-codes when this was built.
/// \param country two upper-case letters
LocalName countryName(std::string_view country, std::string_view language);

}
