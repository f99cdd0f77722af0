// SPDX-License-Identifier: MIT
#include "model/read_obj/mtl_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>
#include <vector>

namespace {

constexpr std::size_t kMaxLine = 4096;
constexpr std::string_view kBlanks = " \t\r";

enum class EKind { Color, Number, Dissolve, Transparency, Map };
struct CKeyword {
    std::string_view lower, canonical;
    EKind kind;
};
constexpr std::array<CKeyword, 20> kKeywords{{
    {"ka", "Ka", EKind::Color},           {"kd", "Kd", EKind::Color},
    {"ks", "Ks", EKind::Color},           {"ke", "Ke", EKind::Color},
    {"ns", "Ns", EKind::Number},          {"illum", "illum", EKind::Number},
    {"d", "d", EKind::Dissolve},          {"tr", "Tr", EKind::Transparency},
    {"map_ka", "map_Ka", EKind::Map},     {"map_kd", "map_Kd", EKind::Map},
    {"map_ks", "map_Ks", EKind::Map},     {"map_ns", "map_Ns", EKind::Map},
    {"map_ke", "map_Ke", EKind::Map},     {"map_d", "map_d", EKind::Map},
    {"map_opacity", "map_d", EKind::Map}, {"map_bump", "map_bump", EKind::Map},
    {"bump", "bump", EKind::Map},         {"map_refl", "refl", EKind::Map},
    {"refl", "refl", EKind::Map},         {"map_reflection", "refl", EKind::Map},
}};

struct COption {
    std::string_view name;
    std::size_t values;
    std::string_view missing;  ///< stands for numbers that are left out; empty: all are always there
    bool keep;
};
constexpr std::array<COption, 14> kOptions{{
    {"-s", 3, "1", true},
    {"-o", 3, "0", true},
    {"-t", 3, "0", false},
    {"-mm", 2, "", false},
    {"-bm", 1, "", true},
    {"-clamp", 1, "", true},
    {"-imfchan", 1, "", true},
    {"-blendu", 1, "", false},
    {"-blendv", 1, "", false},
    {"-boost", 1, "", false},
    {"-cc", 1, "", false},
    {"-type", 1, "", false},
    {"-texres", 1, "", false},
    {"-colorspace", 1, "", false},
}};

std::string_view Trimmed(std::string_view text) {
    const std::size_t first = text.find_first_not_of(kBlanks);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

/** The first word; text keeps the rest. */
std::string_view TakeWord(std::string_view& text) {
    text = Trimmed(text);
    const std::string_view word = text.substr(0, text.find_first_of(kBlanks));
    text = Trimmed(text.substr(word.size()));
    return word;
}

std::optional<double> ToNumber(std::string_view word) {
    if (word.starts_with('+')) word.remove_prefix(1);
    double value = 0;
    const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), value);
    if (error != std::errc{} || end != word.data() + word.size() || word.empty()) return std::nullopt;
    return value;
}

const COption* FindOption(std::string_view word) {
    const auto found =
        std::find_if(kOptions.begin(), kOptions.end(), [&](const COption& o) { return o.name == word; });
    return found == kOptions.end() ? nullptr : &*found;
}

std::string_view PeekWord(std::string_view text) {
    return TakeWord(text);
}

/** Reads an option's values from text, and writes it with all of them. */
void CopyOption(const COption& option, std::string_view& text, std::string& out) {
    std::string written(option.name);
    for (std::size_t i = 0; i < option.values; ++i) {
        const bool present = option.missing.empty() || ToNumber(PeekWord(text));
        written.append(" ").append(present ? TakeWord(text) : option.missing);
    }
    if (option.keep) out.append(written).push_back(' ');
}

void CopyOptions(std::string_view& text, std::string& out) {
    while (const COption* option = FindOption(PeekWord(text))) {
        (void)TakeWord(text);
        CopyOption(*option, text, out);
    }
}

/** Options behind the name, as some programs write them, are moved before it. */
std::string_view WithoutTrailingOptions(std::string_view name, std::string& out) {
    for (std::size_t at = name.find(" -"); at != std::string_view::npos; at = name.find(" -", at + 1)) {
        std::string_view rest = name.substr(at);
        if (!FindOption(PeekWord(rest))) continue;
        CopyOptions(rest, out);
        return Trimmed(name.substr(0, at));
    }
    return name;
}

/** A picture's path below the model's folder, with slashes: packages keep pictures of one name in several
 * folders. The name alone where the path leads elsewhere or is longer than what a material holds. */
std::string PicturePath(std::string_view path) {
    constexpr std::size_t kMaxLength = 63;
    std::string name(path);
    std::replace(name.begin(), name.end(), '\\', '/');
    const bool absolute = name.starts_with('/') || (name.size() > 1 && name[1] == ':');
    const std::size_t upwards = ("/" + name).rfind("/../");
    if (upwards != std::string::npos) name.erase(0, upwards + 3);
    if (absolute || name.size() > kMaxLength) name.erase(0, name.rfind('/') + 1);
    return name;
}

std::string MapValue(std::string_view text) {
    std::string options;
    CopyOptions(text, options);
    std::string_view name = WithoutTrailingOptions(text, options);
    if (name.size() >= 2 && name.front() == '"' && name.back() == '"') name = name.substr(1, name.size() - 2);
    const std::string path = PicturePath(name);
    return path.empty() ? std::string() : options + path;
}

std::string ColorValue(std::string_view text) {
    const std::string_view first = TakeWord(text);
    if (!ToNumber(first)) return {};
    const std::string_view second = TakeWord(text), third = TakeWord(text);
    const std::string r(first);
    return ToNumber(second) && ToNumber(third) ? r + " " + std::string(second) + " " + std::string(third)
                                               : r + " " + r + " " + r;
}

class CMtlWriter {
  public:
    void Add(std::string_view line) {
        line = Trimmed(line);
        std::string word(TakeWord(line));
        std::transform(word.begin(), word.end(), word.begin(),
                       [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
        const auto found = std::find_if(kKeywords.begin(), kKeywords.end(),
                                        [&](const CKeyword& k) { return k.lower == word; });
        if (found != kKeywords.end()) Add(*found, line);
    }

    std::string Finish() {
        if (!m_dissolve && m_transparency && *m_transparency < 1) Put("Tr", m_transparencyText);
        return std::move(m_text);
    }

  private:
    void Add(const CKeyword& keyword, std::string_view rest) {
        switch (keyword.kind) {
            case EKind::Color:
                return Put(keyword.canonical, ColorValue(rest));
            case EKind::Map:
                return Put(keyword.canonical, MapValue(rest));
            case EKind::Number:
                return PutNumber(keyword.canonical, rest);
            case EKind::Dissolve:
                if (PeekWord(rest) == "-halo") (void)TakeWord(rest);
                m_dissolve = m_dissolve || ToNumber(PeekWord(rest));
                return PutNumber(keyword.canonical, rest);
            case EKind::Transparency:
                m_transparencyText = TakeWord(rest);
                m_transparency = ToNumber(m_transparencyText);
        }
    }
    void PutNumber(std::string_view keyword, std::string_view rest) {
        const std::string_view word = TakeWord(rest);
        if (ToNumber(word)) Put(keyword, std::string(word));
    }
    void Put(std::string_view keyword, const std::string& value) {
        if (!value.empty()) m_text.append(keyword).append(" ").append(value).push_back('\n');
    }

    std::string m_text, m_transparencyText;
    std::optional<double> m_transparency;
    bool m_dissolve = false;
};

}  // namespace

std::string CanonicalMtl(std::string_view material) {
    CMtlWriter writer;
    while (!material.empty()) {
        const std::size_t end = std::min(material.find_first_of("\r\n"), material.size());
        if (end <= kMaxLine) writer.Add(material.substr(0, end));
        material.remove_prefix(std::min(end + 1, material.size()));
    }
    return writer.Finish();
}
