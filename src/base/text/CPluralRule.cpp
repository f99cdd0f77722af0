// SPDX-License-Identifier: MIT
#include "base/text/CPluralRule.h"

#include <algorithm>
#include <charconv>

namespace {

constexpr std::size_t kMaxLength = 1000;
constexpr int kMaxDepth = 100;
constexpr std::size_t kMaxForms = 10;

struct COperator {
    std::string_view sign;
    int rank;  ///< the higher, the closer it binds
    std::uint64_t (*apply)(std::uint64_t, std::uint64_t);
};
// A sign that another begins with stands after that one.
constexpr COperator kOperators[] = {
    {"||", 1, [](std::uint64_t a, std::uint64_t b) -> std::uint64_t { return a != 0 || b != 0; }},
    {"&&", 2, [](std::uint64_t a, std::uint64_t b) -> std::uint64_t { return a != 0 && b != 0; }},
    {"==", 3, [](std::uint64_t a, std::uint64_t b) -> std::uint64_t { return a == b; }},
    {"!=", 3, [](std::uint64_t a, std::uint64_t b) -> std::uint64_t { return a != b; }},
    {"<=", 4, [](std::uint64_t a, std::uint64_t b) -> std::uint64_t { return a <= b; }},
    {">=", 4, [](std::uint64_t a, std::uint64_t b) -> std::uint64_t { return a >= b; }},
    {"<", 4, [](std::uint64_t a, std::uint64_t b) -> std::uint64_t { return a < b; }},
    {">", 4, [](std::uint64_t a, std::uint64_t b) -> std::uint64_t { return a > b; }},
    {"+", 5, [](std::uint64_t a, std::uint64_t b) -> std::uint64_t { return a + b; }},
    {"-", 5, [](std::uint64_t a, std::uint64_t b) -> std::uint64_t { return a - b; }},
    {"*", 6, [](std::uint64_t a, std::uint64_t b) -> std::uint64_t { return a * b; }},
    {"/", 6, [](std::uint64_t a, std::uint64_t b) -> std::uint64_t { return b == 0 ? 0 : a / b; }},
    {"%", 6, [](std::uint64_t a, std::uint64_t b) -> std::uint64_t { return b == 0 ? 0 : a % b; }},
};
constexpr int kLowestRank = 1;

/** Works an expression out while it reads it. */
class CExpression {
  public:
    CExpression(std::string_view text, std::uint64_t n) : m_rest(text), m_n(n) {}

    /** Nothing where the text is no expression. */
    std::optional<std::uint64_t> Whole() {
        const std::uint64_t value = Choice();
        SkipBlanks();
        return m_isSound && m_rest.empty() ? std::optional(value) : std::nullopt;
    }

  private:
    std::uint64_t Choice() {
        const std::uint64_t condition = Binary(kLowestRank);
        if (!Take("?")) return condition;
        const std::uint64_t first = Deeper(&CExpression::Choice);
        if (!Take(":")) return Fail();
        const std::uint64_t second = Deeper(&CExpression::Choice);
        return condition != 0 ? first : second;
    }
    std::uint64_t Binary(int lowest) {
        std::uint64_t value = Operand();
        while (const COperator* next = TakeOperator(lowest))
            value = next->apply(value, Binary(next->rank + 1));
        return value;
    }
    std::uint64_t Operand() {
        if (Take("!")) return Deeper(&CExpression::Operand) == 0 ? 1 : 0;
        if (Take("n")) return m_n;
        if (Take("(")) {
            const std::uint64_t value = Deeper(&CExpression::Choice);
            return Take(")") ? value : Fail();
        }
        std::uint64_t number = 0;
        SkipBlanks();
        const auto [end, error] = std::from_chars(m_rest.data(), m_rest.data() + m_rest.size(), number);
        if (error != std::errc()) return Fail();
        m_rest.remove_prefix(static_cast<std::size_t>(end - m_rest.data()));
        return number;
    }

    std::uint64_t Deeper(std::uint64_t (CExpression::*part)()) {
        if (m_depth >= kMaxDepth) return Fail();
        ++m_depth;
        const std::uint64_t value = (this->*part)();
        --m_depth;
        return value;
    }
    const COperator* TakeOperator(int lowest) {
        SkipBlanks();
        for (const COperator& entry : kOperators) {
            if (!m_rest.starts_with(entry.sign)) continue;
            if (entry.rank < lowest) return nullptr;
            m_rest.remove_prefix(entry.sign.size());
            return &entry;
        }
        return nullptr;
    }
    bool Take(std::string_view sign) {
        SkipBlanks();
        if (!m_rest.starts_with(sign)) return false;
        m_rest.remove_prefix(sign.size());
        return true;
    }
    void SkipBlanks() { m_rest.remove_prefix(std::min(m_rest.find_first_not_of(" \t"), m_rest.size())); }
    /** Nothing can follow, so all that is under way ends. */
    std::uint64_t Fail() {
        m_isSound = false;
        m_rest = {};
        return 0;
    }

    std::string_view m_rest;
    std::uint64_t m_n;
    int m_depth = 0;
    bool m_isSound = true;
};

/** What follows "name=" up to the next ";". */
std::optional<std::string_view> ValueOf(std::string_view text, std::string_view name) {
    const std::size_t at = text.find(name);
    if (at == text.npos) return std::nullopt;
    text.remove_prefix(at + name.size());
    return text.substr(0, text.find(';'));
}

}  // namespace

std::optional<CPluralRule> CPluralRule::Read(std::string_view text) {
    const auto forms = ValueOf(text, "nplurals=");
    const auto expression = ValueOf(text, " plural=");
    if (!forms || !expression || expression->size() > kMaxLength) return std::nullopt;
    CPluralRule rule;
    const char* end = forms->data() + forms->size();
    if (std::from_chars(forms->data(), end, rule.m_forms).ptr != end) return std::nullopt;
    if (rule.m_forms == 0 || rule.m_forms > kMaxForms) return std::nullopt;
    if (!CExpression(*expression, 0).Whole()) return std::nullopt;
    rule.m_expression = *expression;
    return rule;
}

std::size_t CPluralRule::FormOf(std::uint64_t count) const {
    const std::uint64_t form = CExpression(m_expression, count).Whole().value_or(0);
    return form < m_forms ? static_cast<std::size_t>(form) : 0;
}
