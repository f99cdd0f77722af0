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
    const std::string keyA = FoldKey(a), keyB = FoldKey(b);
    const CParts partsA = Split(keyA), partsB = Split(keyB);
    const bool arePictures = IsPictureExtension(partsA.ext) && IsPictureExtension(partsB.ext);
    return keyA == keyB || (arePictures && partsA.stem == partsB.stem);
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
}
