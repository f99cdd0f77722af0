// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "base/CResult.h"

/** The texts that people see: each is an English literal at its point of use, looked up in the catalogue of
 * the current language (gettext's .mo files). scripts/update_languages collects the literals. */

/** The catalogue that texts are looked up in. */
struct CLanguageDomain {
    std::string catalogue;  ///< its file name without the ending; empty: none, and all texts stay English
};

namespace lng_util_internal {

/** Binds a domain to a catalogue by name. */
void SetDomain(CLanguageDomain& domain, std::string_view catalogue);
/** The text in the current language; the English text itself (UTF-8) where the catalogue has none. Main
 * thread only. */
[[nodiscard]] std::wstring DoGetResourceString(const char* englishText, const CLanguageDomain& domain);

}  // namespace lng_util_internal

namespace lng {

/** The program's domain. The first call creates it; it lives until the process ends. */
[[nodiscard]] CLanguageDomain& Domain();
/** DoGetResourceString in the program's domain. */
[[nodiscard]] std::wstring Text(const char* englishText);
/** Text with its first "%s" replaced. */
[[nodiscard]] std::wstring Text(const char* englishText, std::wstring_view value);
/** An error as people see it, "where: message". The message is translated if it is one of our literals. */
[[nodiscard]] std::wstring Text(const CError& error);
/** Marks a literal for the catalogue, for instance one in a table; Text translates it where it is shown. */
[[nodiscard]] constexpr const char* Mark(const char* englishText) {
    return englishText;
}
/** A whole number with the current language's separator between its thousands. */
[[nodiscard]] std::wstring Number(std::uint64_t number);
[[nodiscard]] std::wstring ConvertFromUTF8(std::string_view text);

}  // namespace lng
