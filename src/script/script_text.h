// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

#include "base/CResult.h"

/** The text of a scene script as its file has it. */
namespace script_text {

/** No larger file is read. */
inline constexpr std::size_t kMostBytes = 16 << 20;

/** The text of a file; UTF-16 with a mark is turned into UTF-8, and bytes of old code pages stay. Only a regular file
 * is opened, or what a link to one leads to. path is UTF-8. */
[[nodiscard]] CResult<std::string> Load(std::string_view path);

/** The UTF-8 form of a value that people read. One that is no UTF-8 is taken for the code page that its letters
 * are likeliest from. */
[[nodiscard]] std::string ForPeople(std::string_view value);

}  // namespace script_text
