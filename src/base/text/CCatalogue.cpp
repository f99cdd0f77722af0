// SPDX-License-Identifier: MIT
#include "base/text/CCatalogue.h"

#include <cstring>
#include <utility>

namespace {

constexpr std::uint32_t kMagic = 0x950412DE;
constexpr std::size_t kRevisionAt = 4, kCountAt = 8, kOriginalsAt = 12, kTranslationsAt = 16;
constexpr std::size_t kEntrySize = 8;
constexpr char kContextEnd = '\4';

std::uint32_t Swapped(std::uint32_t value) {
    return value >> 24 | (value >> 8 & 0xFF00U) | (value << 8 & 0xFF0000U) | value << 24;
}

/** The part before the first zero: a text with plural forms holds one after each form. */
std::string_view FirstForm(std::string_view text) {
    return text.substr(0, text.find('\0'));
}

}  // namespace

CResult<CCatalogue> CCatalogue::Read(std::vector<std::byte> bytes) {
    CCatalogue catalogue;
    catalogue.m_bytes = std::move(bytes);
    if (!catalogue.ReadTables() || !catalogue.ReadHeader())
        return CError{EErrorCode::BadFormat, "this is no catalogue of texts", {}};
    return catalogue;
}

std::optional<std::uint32_t> CCatalogue::Number(std::size_t offset) const {
    std::uint32_t number = 0;
    if (offset > m_bytes.size() || m_bytes.size() - offset < sizeof number) return std::nullopt;
    std::memcpy(&number, m_bytes.data() + offset, sizeof number);
    return m_isSwapped ? Swapped(number) : number;
}

std::optional<std::string_view> CCatalogue::Entry(std::size_t offset) const {
    const std::optional<std::size_t> length = Number(offset), at = Number(offset + sizeof(std::uint32_t));
    if (!length || !at || *at >= m_bytes.size() || m_bytes.size() - *at <= *length) return std::nullopt;
    if (m_bytes[*at + *length] != std::byte{0}) return std::nullopt;
    return std::string_view(reinterpret_cast<const char*>(m_bytes.data()) + *at, *length);
}

bool CCatalogue::ReadTables() {
    const std::optional<std::uint32_t> magic = Number(0);
    if (!magic) return false;
    m_isSwapped = *magic == Swapped(kMagic);
    if (*magic != kMagic && !m_isSwapped) return false;
    const auto revision = Number(kRevisionAt), count = Number(kCountAt);
    const std::optional<std::size_t> originals = Number(kOriginalsAt), translations = Number(kTranslationsAt);
    if (!revision || *revision >> 16 > 1 || !count || !originals || !translations) return false;
    for (std::size_t i = 0; i < *count; ++i) {
        const auto original = Entry(*originals + i * kEntrySize);
        const auto translation = Entry(*translations + i * kEntrySize);
        if (!original || !translation) return false;
        m_texts.emplace(FirstForm(*original), *translation);
    }
    return true;
}

bool CCatalogue::ReadHeader() {
    const auto header = m_texts.find(std::string_view());
    if (header == m_texts.end() || header->second.find("charset=UTF-8") == std::string_view::npos)
        return false;
    constexpr std::string_view kPluralForms = "Plural-Forms:";
    const std::size_t at = header->second.find(kPluralForms);
    if (at == std::string_view::npos) return true;
    const std::string_view line = header->second.substr(at + kPluralForms.size());
    const std::optional<CPluralRule> rule = CPluralRule::Read(line.substr(0, line.find('\n')));
    if (rule) m_rule = *rule;
    return rule.has_value();
}

std::optional<std::string_view> CCatalogue::Find(std::string_view key) const {
    const auto found = m_texts.find(key);
    if (key.empty() || found == m_texts.end()) return std::nullopt;
    const std::string_view text = FirstForm(found->second);
    return text.empty() ? std::nullopt : std::optional(text);
}

std::optional<std::string_view> CCatalogue::Find(std::string_view key, std::uint64_t count) const {
    const auto found = m_texts.find(key);
    if (key.empty() || found == m_texts.end()) return std::nullopt;
    std::string_view forms = found->second;
    for (std::size_t form = m_rule.FormOf(count); form > 0; --form) {
        const std::size_t end = forms.find('\0');
        if (end == forms.npos) return std::nullopt;
        forms.remove_prefix(end + 1);
    }
    forms = FirstForm(forms);
    return forms.empty() ? std::nullopt : std::optional(forms);
}

std::string CCatalogue::Key(std::string_view context, std::string_view text) {
    return std::string(context) + kContextEnd + std::string(text);
}
