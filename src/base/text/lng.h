// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>

#include "base/CResult.h"
#include "base/text/CCatalogue.h"

/** The texts that people see: each is an English literal at its point of use, looked up in the catalogue of
 * the current language (gettext's .mo files). scripts/update_languages collects the literals. */

/** The catalogue that texts are looked up in. */
struct CLanguageDomain {
    void (*load)(CLanguageDomain&) = nullptr;  ///< loads the texts before the first is looked up
    std::string catalogue;                     ///< its file name without the ending
    std::string language = "en";               ///< of the texts below, such as "pt_BR"
    CCatalogue texts;                          ///< without a text where all stay English
};

namespace lng_util_internal {

/** The domain, with its catalogue loaded. */
[[nodiscard]] CLanguageDomain& Loaded(CLanguageDomain& domain);
/** Binds a domain to a catalogue by name. What was loaded before is dropped: texts are English. */
void SetDomain(CLanguageDomain& domain, std::string_view catalogue);
/** The text in the current language; the English text itself (UTF-8) where the catalogue has none. */
[[nodiscard]] std::wstring DoGetResourceString(const char* englishText, CLanguageDomain& domain);

}  // namespace lng_util_internal

namespace lng {

/** The program's domain. Any thread may look texts up once its language is chosen. The first call creates it; it lives until the process ends. */
[[nodiscard]] CLanguageDomain& Domain();
/** DoGetResourceString in the program's domain. */
[[nodiscard]] std::wstring Text(const char* englishText);
/** Text with its first "%s" replaced by a value, Isolated. */
[[nodiscard]] std::wstring Text(const char* englishText, std::wstring_view value);
/** For a terminal: Text in UTF-8 with its "%s" replaced one after the other. */
[[nodiscard]] std::string TextUtf8(const char* englishText,
                                   std::initializer_list<std::string_view> values = {});
/** A name and what is told of it, "knot.3ds: no such file", with the language's colon. */
[[nodiscard]] std::wstring Labelled(std::wstring_view name, std::wstring_view text);
/** An error as people see it, "where: message". The message is translated if it is one of our literals. */
[[nodiscard]] std::wstring Text(const CError& error);
/** The form of a text that goes with a count; its first "%s" becomes Number(count). one and many are the English forms
 * for 1 and for any other count. */
[[nodiscard]] std::wstring TextN(const char* one, const char* many, std::uint64_t count);
/** The same with a second value for its second "%s". */
[[nodiscard]] std::wstring TextN(const char* one, const char* many, std::uint64_t count,
                                 std::wstring_view second);
/** A text that means different things in different places; context tells translators, not users, which is meant. */
[[nodiscard]] std::wstring TextIn(const char* context, const char* englishText);
/** Marks a literal for the catalogue, for instance one in a table; Text translates it where it is shown. */
[[nodiscard]] constexpr const char* Mark(const char* englishText) {
    return englishText;
}
/** True where the current language is written from right to left. */
[[nodiscard]] bool IsRightToLeft();
/** A file name, path or other text of unknown direction, made safe to stand inside a sentence: each character that reaches beyond
 * itself (character_kind) becomes U+FFFD, save for isolates (U+2068) that end inside of it. In a language that runs from right to
 * left it is isolated, too, so that it keeps its order. */
[[nodiscard]] std::wstring Isolated(std::wstring_view foreign);
/** A whole number with the current language's separator between its thousands. */
[[nodiscard]] std::wstring Number(std::uint64_t number);
/** A number with so many decimals (0..17), and the current language's decimal point before them. */
[[nodiscard]] std::wstring Decimal(double number, int decimals);
/** "812 bytes", "12.3 kB", "4.0 MB": steps of 1,000. */
[[nodiscard]] std::wstring Size(std::uint64_t bytes);
[[nodiscard]] std::wstring ConvertFromUTF8(std::string_view text);

}  // namespace lng
