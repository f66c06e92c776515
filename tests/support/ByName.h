#pragma once

#include <gtest/gtest.h>

#include <string>

/// Names the cases of a table.
inline const auto byName = [](const auto &row) { return std::string(row.param.name); };

/// A row that failed shows its name, not its bytes.
template <typename Row>
requires requires(const Row &row) { std::string(row.name); }
class testing::internal::UniversalPrinter<Row> {
public:
    static void Print(const Row &row, std::ostream *out) { *out << row.name; }
};
