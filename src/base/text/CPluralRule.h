// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/** Which form of a text goes with a count: the "Plural-Forms" of a gettext catalogue, an expression of C in n. */
class CPluralRule {
  public:
    /** English: one form for 1, another for all else. */
    CPluralRule() = default;
    /** Reads "nplurals=3; plural=n%10==1 ? 0 : ...;". Nothing for what is no such text, too long or too deep. */
    [[nodiscard]] static std::optional<CPluralRule> Read(std::string_view text);

    /** The number of the form, 0 to Forms() - 1. Where the expression divides by zero or gives another number: 0. */
    [[nodiscard]] std::size_t FormOf(std::uint64_t count) const;
    [[nodiscard]] std::size_t Forms() const { return m_forms; }

  private:
    std::size_t m_forms = 2;
    std::string m_expression = "n != 1";
};
