// SPDX-License-Identifier: MIT
#pragma once

#include <string>

/** Names each row of a table of cases, INSTANTIATE_TEST_SUITE_P's last argument, by its member "name". */
inline constexpr auto kRowName = [](const auto& row) { return std::string(row.param.name); };
