#pragma once

#include "sandbox/service/Scenario.h"

#include <vector>

namespace sandbox {

/// Every country of ISO 3166-1 that has telephone numbers of its own, by name.
const std::vector<Country> &allCountries();

}
