// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <concepts>
#include <ostream>
#include <string>

/** A row of a table of cases. */
template <class T>
concept CNamedRow = requires(const T& row) {
    { row.name } -> std::convertible_to<std::string>;
};

/** Names each row, INSTANTIATE_TEST_SUITE_P's last argument, by its member "name". */
inline constexpr auto kRowName = [](const auto& row) { return std::string(row.param.name); };

// Printed by its name, too. The documented ways, PrintTo and <<, would be needed beside every table.
template <CNamedRow T>
class testing::internal::UniversalPrinter<T> {
  public:
    static void Print(const T& row, std::ostream* out) { *out << row.name; }
};
