// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <charconv>
#include <cmath>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "programs/shared/CDrawOptions.h"
#include "programs/shared/option_table.h"

/** Values of options, and the options that several programs have. */
namespace option_values {

/** The whole text as a number; neither "1.5x" nor "nan" is one. */
template <class T>
[[nodiscard]] std::optional<T> Number(std::string_view text) {
    T value{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
    if constexpr (std::is_floating_point_v<T>) {
        if (!std::isfinite(value)) return std::nullopt;
    }
    return value;
}
[[nodiscard]] std::vector<std::string_view> Split(std::string_view text, char separator);

using option_table::COutcome;

[[nodiscard]] COutcome SetSize(CDrawOptions& options, std::string_view value);
[[nodiscard]] COutcome SetCamera(CDrawOptions& options, std::string_view value);
[[nodiscard]] COutcome SetScene(CDrawOptions& options, std::string_view value);
[[nodiscard]] COutcome SetFrame(CDrawOptions& options, std::string_view value);
[[nodiscard]] COutcome SetBackground(CDrawOptions& options, std::string_view value);

/** One of these for a program's own options. */
template <COutcome (*set)(CDrawOptions&, std::string_view), class Options>
[[nodiscard]] COutcome Drawn(Options& options, std::string_view value) {
    return set(options, value);
}

/** The name of an option of CSeenOptions, without the dashes. */
template <std::size_t length>
struct CSeenName {
    constexpr CSeenName(const char (&text)[length]) { std::copy_n(text, length, chars); }
    char chars[length]{};
};
template <CSeenName name, class Options>
[[nodiscard]] COutcome Seen(Options& options, std::string_view value) {
    return options.seen.Set(name.chars, value);
}

}  // namespace option_values
