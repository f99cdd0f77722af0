// SPDX-License-Identifier: MIT
#include "modeldb/protocol/read_json.h"

#include <nlohmann/json.hpp>

#include "base/text/lng.h"
#include "modeldb/bytes/calc_crc.h"

namespace read_json {

namespace {

using CJson = nlohmann::json;

/** Counts values and depth without building anything; of texts that are no JSON it may count too many. */
class CCounter {
  public:
    /** False where a bound is passed. */
    bool Count(std::string_view text, std::size_t mostValues) {
        for (const char c : text) {
            if (m_inText) {
                CountText(c);
                continue;
            }
            m_inText = c == '"';
            if (c == '[' || c == '{') ++m_depth;
            if (c == ']' || c == '}') --m_depth;
            m_values += c == '[' || c == '{' || c == ',' ? 1u : 0u;
            if (m_depth > kDepth || m_values > mostValues) return false;
        }
        return true;
    }

  private:
    void CountText(char c) {
        m_inText = m_escaped || c != '"';
        m_escaped = !m_escaped && c == '\\';
    }

    std::size_t m_values = 0;
    int m_depth = 0;
    bool m_inText = false, m_escaped = false;
};

}  // namespace

CResult<CJson> Parse(std::string_view text, const CJsonBounds& bounds) {
    if (text.size() > bounds.bytes || !CCounter().Count(text, bounds.values))
        return CError{EErrorCode::TooLarge, lng::Mark("the other side sends more than is allowed"), {}};
    CJson json = CJson::parse(text, nullptr, /*allow_exceptions=*/false);
    if (json.is_discarded())
        return CError{EErrorCode::BadFormat, lng::Mark("what arrived is no valid JSON"), {}};
    return json;
}

std::optional<std::string> TextOf(const CJson& value, std::size_t mostBytes) {
    if (!value.is_string()) return std::nullopt;
    const auto& text = value.get_ref<const std::string&>();
    if (text.size() > mostBytes || text.find('\0') != text.npos) return std::nullopt;
    return text;
}

std::optional<std::string> NameOf(const CJson& value, std::size_t mostBytes) {
    std::optional<std::string> text = TextOf(value, mostBytes);
    return text && text->empty() ? std::nullopt : text;
}

std::optional<std::uint64_t> NumberOf(const CJson& value, std::uint64_t most) {
    if (!value.is_number_unsigned()) return std::nullopt;
    const auto number = value.get<std::uint64_t>();
    return number > most ? std::nullopt : std::optional(number);
}

std::optional<std::uint32_t> KeyOf(const CJson& value) {
    return value.is_string() ? model_key::FromText(value.get_ref<const std::string&>()) : std::nullopt;
}

std::optional<CBlobHash> HashOf(const CJson& value) {
    return value.is_string() ? CBlobHash::FromHex(value.get_ref<const std::string&>()) : std::nullopt;
}

const CJson& Member(const CJson& value, const char* name) {
    static const CJson none;
    if (!value.is_object()) return none;
    const auto found = value.find(name);
    return found == value.end() ? none : *found;
}

}  // namespace read_json
