// SPDX-License-Identifier: MIT
#pragma once

#include <compare>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/** A version such as "1.9.5", "2.0-beta1" or "2.0rc1+debian". Numbers count field by field, and those that are missing are 0.
 * What follows them, a word or a part behind "-", makes it a version before the one without; of two such parts the numbers
 * and the words in them are compared one by one. What follows a "+" does not count, nor does a "v" in front. */
class CVersionNumber {
  public:
    /** Nothing for a text that is no version: over 64 bytes, over 8 fields, a number over 64 bits, a field that is empty or
     * negative, or other characters than ASCII letters, digits and "._~-+". */
    [[nodiscard]] static std::optional<CVersionNumber> Parse(std::string_view text);

    [[nodiscard]] std::strong_ordering operator<=>(const CVersionNumber& other) const;
    [[nodiscard]] bool operator==(const CVersionNumber& other) const { return std::is_eq(*this <=> other); }

  private:
    std::vector<std::uint64_t> m_fields;  ///< without zeros at the end
    std::string m_before;                 ///< lower case; empty for the version itself
};

/** True if both are versions and the first is the later one. */
[[nodiscard]] bool IsNewerVersion(std::string_view text, std::string_view than);
