// SPDX-License-Identifier: MIT
#include "model/textures/texture_name.h"

#include <algorithm>

#include "base/text/ascii_text.h"
#include "base/text/code_pages.h"
#include "base/text/utf8_text.h"
#include "picture/picture_formats.h"

namespace texture_name {
namespace {

// A lead byte that UTF-8 never has, so keys of undecodable names cannot meet those of text.
constexpr char kBytesKeyMark = '\xFF';

// The C library's towlower follows the locale, and knows only ASCII in the "C" locale that
// programs start with.
char32_t ToLower(char32_t c) {
    if (c < 0xC0) return ascii_text::Lower(c);
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
    for (const char32_t c : text) utf8_text::Append(key, ToLower(c));
    return key;
}

std::string FoldBytes(std::string_view bytes) {
    return kBytesKeyMark + ascii_text::Lowered(bytes);
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
    const auto text = utf8_text::Decode(name);
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
    std::size_t rank = 0;
    for (const CPictureFormat& format : PictureFormats()) {
        for (const std::string_view ending : format.endings) {
            if (!ending.empty() && ending == ext) return rank;
            ++rank;
        }
    }
    return kNoPicture;
}

bool SameButForEnding(std::string_view a, std::string_view b) {
    return SameKeyButForEnding(FoldKey(a), FoldKey(b));
}

bool SameKeyButForEnding(std::string_view a, std::string_view b) {
    const CParts partsA = Split(a), partsB = Split(b);
    return a == b ||
           (partsA.stem == partsB.stem && IsPictureExtension(partsA.ext) && IsPictureExtension(partsB.ext));
}

std::string WithAlpha(std::string_view name) {
    return name.ends_with(".jpg") ? std::string(name) + ".png" : std::string();
}

namespace {
constexpr std::size_t kDosStem = 8, kDosExt = 3, kLeastPrefix = 5;
constexpr std::size_t kNumberedPrefix = 6;  // before "~1"

std::string Joined(std::string_view prefix, std::string_view ext) {
    return std::string(prefix) + '.' + std::string(ext);
}
}  // namespace

std::optional<std::string> KeyOfCutDown(std::string_view cut) {
    const CParts parts = Split(cut);
    if (parts.stem.size() > kDosStem) return std::nullopt;
    const std::size_t tilde = parts.stem.rfind('~');
    const bool numbered = tilde != std::string_view::npos && tilde + 1 < parts.stem.size() &&
                          parts.stem.find_first_not_of("0123456789", tilde + 1) == std::string_view::npos;
    const std::string_view prefix = numbered ? parts.stem.substr(0, tilde) : parts.stem;
    if (prefix.size() < kLeastPrefix || (!numbered && prefix.size() != kDosStem)) return std::nullopt;
    return Joined(prefix, parts.ext);
}

std::vector<std::string> CutDownKeys(std::string_view key) {
    const CParts parts = Split(key);
    const std::string squeezed = Squeezed(parts.stem);
    const bool hadToBeCut =
        squeezed.size() > kDosStem || squeezed.size() != parts.stem.size() || parts.ext.size() > kDosExt;
    std::vector<std::string> keys;
    if (!hadToBeCut) return keys;
    for (const std::size_t length : {kLeastPrefix, kNumberedPrefix, kDosStem}) {
        if (squeezed.size() >= length)
            keys.push_back(
                Joined(std::string_view(squeezed).substr(0, length), parts.ext.substr(0, kDosExt)));
    }
    return keys;
}

}  // namespace texture_name

CTextureQuery::CTextureQuery(std::string_view reference) {
    constexpr std::size_t kMaxLength = 1024, kMaxFolders = 16;
    reference = reference.substr(0, reference.find('\0')).substr(0, kMaxLength);
    reference = ascii_text::Trimmed(reference, " \t\r\n\"");
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
    if (!steps.empty()) lastFolder = steps.back();
}

CTextureQuery CTextureQuery::BaseInFolder() const {
    CTextureQuery query = *this;
    if (lastFolder.empty()) return query;
    query.base = lastFolder + '/' + base;
    query.baseKeys = texture_name::ReferenceKeys(query.base);
    return query;
}
