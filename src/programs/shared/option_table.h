// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <array>
#include <functional>
#include <initializer_list>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/CResult.h"

/** Command lines that are read by a table of long options; also "-h" where the table has "help". */
namespace option_table {

/** What is wrong with a value: the rest of a sentence that begins with the option. Nothing: it was taken. */
using COutcome = std::optional<std::string>;

template <class Options>
struct CEntry {
    const char* name = nullptr;
    std::string_view value;  ///< what to call it in the help; empty when the option takes none
    COutcome (*set)(Options&, std::string_view) = nullptr;
    const char* help = nullptr;  ///< English, in the catalogue
};

/** An entry without what it sets. */
struct CName {
    const char* name;
    std::string_view value;
    const char* help;
};

/** BadArgument; the message is in the user's language already. */
[[nodiscard]] CError Wrong(const std::string& message);

/** Calls take with the number and the value of each option, in their order, and returns the arguments that are none.
 * Errors are BadArgument with a message of one line. */
[[nodiscard]] CResult<std::vector<std::string>> Walk(
    std::span<const CName> names, std::span<const std::string> arguments,
    const std::function<COutcome(std::size_t option, std::string_view value)>& take);
/** How a program is started: a line for each way. */
[[nodiscard]] std::string Usage(std::initializer_list<std::string_view> ways);
/** A line for each option, in the user's language. */
[[nodiscard]] std::string Help(std::span<const CName> names);

template <class Options, std::size_t count>
[[nodiscard]] std::vector<CName> NamesOf(const std::array<CEntry<Options>, count>& table) {
    std::vector<CName> names;
    names.reserve(count);
    for (const CEntry<Options>& entry : table) names.push_back({entry.name, entry.value, entry.help});
    return names;
}

/** The rows of two tables, one after the other. */
template <class Options, std::size_t first, std::size_t second>
[[nodiscard]] constexpr std::array<CEntry<Options>, first + second> Joined(
    const std::array<CEntry<Options>, first>& head, const std::array<CEntry<Options>, second>& tail) {
    std::array<CEntry<Options>, first + second> table{};
    std::copy(head.begin(), head.end(), table.begin());
    std::copy(tail.begin(), tail.end(), table.begin() + first);
    return table;
}

/** Sets options by a table, and returns the arguments that are none. See Walk. */
template <class Options, std::size_t count>
[[nodiscard]] CResult<std::vector<std::string>> Read(const std::array<CEntry<Options>, count>& table,
                                                     std::span<const std::string> arguments,
                                                     Options& options) {
    return Walk(NamesOf(table), arguments, [&](std::size_t option, std::string_view value) {
        return table[option].set(options, value);
    });
}

}  // namespace option_table
