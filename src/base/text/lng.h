// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "base/CResult.h"

/** The texts that people see: each is an English literal at its point of use, looked up in the catalogue of
 * the language in force (gettext's .mo files). scripts/update_languages collects the literals. */

/** The catalogue that texts are looked up in. */
struct CLanguageDomain {
    std::string catalogue;  ///< its file name without the ending; empty: none, and all texts stay English
};

namespace lng_util_internal {

/** Binds a domain to a catalogue by name. */
void SetDomain(CLanguageDomain& domain, std::string_view catalogue);
/** The text in the language in force; the English one (UTF-8) itself where the catalogue has none. Thread of
 * the windows only. */
[[nodiscard]] std::wstring DoGetResourceString(const char* englishText, const CLanguageDomain& domain);

}  // namespace lng_util_internal

namespace lng {

/** The program's domain; made at the first call, and it lives until the end. */
[[nodiscard]] CLanguageDomain& Domain();
/** DoGetResourceString in the program's domain. */
[[nodiscard]] std::wstring Text(const char* englishText);
/** Text with its first "%s" replaced. */
[[nodiscard]] std::wstring Text(const char* englishText, std::wstring_view value);
/** An error's line for people, "where: message", the message in the language in force as
 * far as it is ours. */
[[nodiscard]] std::wstring Text(const CError& error);
/** Marks a literal of a table for the catalogue; Text looks it up where it is shown. */
[[nodiscard]] constexpr const char* Mark(const char* englishText) {
    return englishText;
}
/** A whole number with its thousands set apart as the language does it. */
[[nodiscard]] std::wstring Number(std::uint64_t number);
[[nodiscard]] std::wstring ConvertFromUTF8(std::string_view text);

}  // namespace lng
