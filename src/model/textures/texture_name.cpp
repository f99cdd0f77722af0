// SPDX-License-Identifier: MIT
#include "model/textures/texture_name.h"

#include <algorithm>
#include <array>
#include <optional>

#include "base/text/code_pages.h"

namespace texture_name {
namespace {

// A lead byte that UTF-8 never has, so keys of undecodable names cannot meet those of text.
constexpr char kBytesKeyMark = '\xFF';
constexpr std::array<std::string_view, 15> kPictureExtensions{"jpg", "jpeg", "png",  "tga", "bmp",
                                                              "gif", "tif",  "tiff", "pcx", "dds",
                                                              "sgi", "rgb",  "cel",  "jpe", "webp"};

std::optional<std::u32string> DecodeUtf8(std::string_view bytes) {
    std::u32string text;
    for (std::size_t i = 0; i < bytes.size();) {
        const auto lead = static_cast<unsigned char>(bytes[i]);
        const std::size_t length = lead < 0x80 ? 1 : lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
        if ((lead >= 0x80 && lead < 0xC2) || lead > 0xF4 || i + length > bytes.size()) return std::nullopt;
        char32_t c = length == 1 ? lead : lead & (0x7Fu >> length);
        for (std::size_t k = 1; k < length; ++k) {
            const auto next = static_cast<unsigned char>(bytes[i + k]);
            if ((next & 0xC0u) != 0x80u) return std::nullopt;
            c = (c << 6) | (next & 0x3Fu);
        }
        text.push_back(c);
        i += length;
    }
    return text;
}

void AppendUtf8(std::string& out, char32_t c) {
    const auto put = [&out](char32_t byte) {
        out.push_back(static_cast<char>(static_cast<unsigned char>(byte)));
    };
    if (c < 0x80) {
        put(c);
    } else if (c < 0x800) {
        put(0xC0u | (c >> 6));
        put(0x80u | (c & 0x3Fu));
    } else if (c < 0x10000) {
        put(0xE0u | (c >> 12));
        put(0x80u | ((c >> 6) & 0x3Fu));
        put(0x80u | (c & 0x3Fu));
    } else {
        put(0xF0u | ((c >> 18) & 7u));
        put(0x80u | ((c >> 12) & 0x3Fu));
        put(0x80u | ((c >> 6) & 0x3Fu));
        put(0x80u | (c & 0x3Fu));
    }
}

// The C library's towlower follows the locale, and knows only ASCII in the "C" locale that
// programs start with.
char32_t ToLower(char32_t c) {
    if (c >= U'A' && c <= U'Z') return c + 32;
    if (c < 0xC0) return c;
    if (c <= 0xDE) return c == 0xD7 ? c : c + 32;
    if (c >= 0x100 && c <= 0x17F) {
        const bool oddIsUpper = (c >= 0x139 && c <= 0x148) || (c >= 0x179 && c <= 0x17E);
        if (c == 0x178) return 0xFF;
        if (c == 0x130 || c == 0x131 || c == 0x138 || c == 0x149 || c == 0x17F) return c;
        return (c % 2 == 1) == oddIsUpper ? c + 1 : c;
    }
    if (c >= 0x391 && c <= 0x3A9) return c + 32;
    if (c >= 0x410 && c <= 0x42F) return c + 32;
    if (c >= 0x400 && c <= 0x40F) return c + 80;
    if (c >= 0x460 && c <= 0x4FF && !(c >= 0x482 && c <= 0x48A) && !(c >= 0x4C0 && c <= 0x4CF)) return c | 1u;
    return c;
}

std::string FoldText(const std::u32string& text) {
    std::string key;
    key.reserve(text.size());
    for (const char32_t c : text) AppendUtf8(key, ToLower(c));
    return key;
}

std::string FoldBytes(std::string_view bytes) {
    std::string key(1, kBytesKeyMark);
    for (const char c : bytes) key.push_back(c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c);
    return key;
}

/** A stem as the DOS short-name rule sees it: without blanks and dots. */
std::string Squeezed(std::string_view stem) {
    std::string out;
    std::copy_if(stem.begin(), stem.end(), std::back_inserter(out),
                 [](char c) { return c != ' ' && c != '.'; });
    return out;
}

}  // namespace

std::string FoldKey(std::string_view name) {
    const auto text = DecodeUtf8(name);
    return text ? FoldText(*text) : FoldBytes(name);
}

std::vector<std::string> ReferenceKeys(std::string_view name) {
    std::vector<std::string> keys{FoldKey(name)};
    if (std::all_of(name.begin(), name.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; }))
        return keys;
    for (std::size_t page = 0; page < code_pages::kCount; ++page) {
        std::string key = FoldText(code_pages::Decode(name, page));
        if (std::find(keys.begin(), keys.end(), key) == keys.end()) keys.push_back(std::move(key));
    }
    return keys;
}

CParts Split(std::string_view key) {
    const std::size_t dot = key.rfind('.');
    if (dot == std::string_view::npos || dot == 0) return {key, {}};
    return {key.substr(0, dot), key.substr(dot + 1)};
}

std::size_t PictureRank(std::string_view ext) {
    const auto found = std::find(kPictureExtensions.begin(), kPictureExtensions.end(), ext);
    if (found == kPictureExtensions.end()) return kNoPicture;
    return static_cast<std::size_t>(found - kPictureExtensions.begin());
}

bool IsTruncationOf(std::string_view cut, std::string_view name) {
    constexpr std::size_t kDosStem = 8, kDosExt = 3, kLeastPrefix = 5;
    const CParts cutParts = Split(cut), nameParts = Split(name);
    if (!IsPictureExtension(nameParts.ext) || cutParts.ext != nameParts.ext.substr(0, kDosExt)) return false;
    const std::size_t tilde = cutParts.stem.rfind('~');
    const bool numbered = tilde != std::string_view::npos && tilde + 1 < cutParts.stem.size() &&
                          cutParts.stem.find_first_not_of("0123456789", tilde + 1) == std::string_view::npos;
    const std::string_view prefix = numbered ? cutParts.stem.substr(0, tilde) : cutParts.stem;
    if (prefix.size() < kLeastPrefix || cutParts.stem.size() > kDosStem) return false;
    if (!numbered && prefix.size() != kDosStem) return false;
    const std::string squeezed = Squeezed(nameParts.stem);
    const bool hadToBeCut = squeezed.size() > kDosStem || squeezed.size() != nameParts.stem.size() ||
                            nameParts.ext.size() > kDosExt;
    return hadToBeCut && squeezed.starts_with(prefix);
}

}  // namespace texture_name

CTextureQuery::CTextureQuery(std::string_view reference) {
    constexpr std::size_t kMaxLength = 1024, kMaxFolders = 16;
    reference = reference.substr(0, reference.find('\0')).substr(0, kMaxLength);
    const auto trim = [&reference](std::string_view unwanted) {
        const std::size_t first = reference.find_first_not_of(unwanted);
        if (first == std::string_view::npos) return reference = {}, void();
        reference = reference.substr(first, reference.find_last_not_of(unwanted) - first + 1);
    };
    trim(" \t\r\n\"");
    if (reference.size() >= 2 && reference[1] == ':') {
        absolute = true;
        reference.remove_prefix(2);
    }
    absolute = absolute || reference.starts_with('/') || reference.starts_with('\\');
    std::vector<std::string_view> steps;
    while (!reference.empty()) {
        const std::size_t end = std::min(reference.find_first_of("/\\"), reference.size());
        const std::string_view step = reference.substr(0, end);
        reference.remove_prefix(std::min(end + 1, reference.size()));
        if (step == "..") {
            steps.clear();
        } else if (!step.empty() && step != ".") {
            steps.push_back(step);
        }
    }
    if (steps.empty()) return;
    base = steps.back();
    baseKeys = texture_name::ReferenceKeys(base);
    steps.pop_back();
    if (steps.size() > kMaxFolders) steps.erase(steps.begin(), steps.end() - kMaxFolders);
    for (const std::string_view step : steps) folders.push_back(texture_name::ReferenceKeys(step));
}
