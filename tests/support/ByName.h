#pragma once

#include <string>

/// Names the cases of a table.
inline const auto byName = [](const auto &row) { return std::string(row.param.name); };
