// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

/** Changing values in the text of an ini file, as CIniFile reads it, and nothing else: comments, order, line ends and all other
 * lines stay byte for byte. */
namespace script_lines {

struct CChange {
    std::string_view key;
    std::optional<std::string> value;  ///< none: the key is taken out
};

/** The text with the changes in a section. The new lines stand where the first old one stood, else at the end of
 * the section; a section that is not there is added at the end of the text. */
[[nodiscard]] std::string Changed(std::string_view text, std::string_view section,
                                  std::span<const CChange> changes);

}  // namespace script_lines
