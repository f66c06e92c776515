#pragma once

#include <string_view>

namespace sandbox {

/// The name of a country in another language than English, from iso-codes when this was built.
/// \param country two upper-case letters
/// \return empty when it is not known
std::string_view countryName(std::string_view country, std::string_view language);

}
