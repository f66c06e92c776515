#pragma once

#include <string_view>

namespace sandbox {

/// The picture of an app of the built-in scenario, as PNG; empty when there is none of that name.
/// Compiled in, so that the program needs no files beside it.
std::string_view iconNamed(std::string_view name);

}
