// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>

#include "base/CResult.h"

/** Values by name, UTF-8. */
using CTemplateValues = std::map<std::string, std::string, std::less<>>;

/** Fills a page's template: "{{name}}" becomes the value, escaped for HTML text and quoted attributes; what stands between
 * "{{?name}}" and "{{/name}}" stays where the value is not empty. Values are put in as they are and not looked at again,
 * so no value can name another. BadFormat: a name that values lack, or a mark without its end. */
[[nodiscard]] CResult<std::string> FillTemplate(std::string_view text, const CTemplateValues& values);

/** Text for HTML, also between the quotes of an attribute. */
[[nodiscard]] std::string EscapedForHtml(std::string_view text);
/** A relative path, UTF-8 or any bytes, as an address: all but letters, digits, "-._~" and "/" as %XX. */
[[nodiscard]] std::string EscapedForAddress(std::string_view path);
