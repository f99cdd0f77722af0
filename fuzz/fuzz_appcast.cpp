// SPDX-License-Identifier: MIT
// Lists of versions: whatever comes of a text is bounded and may be shown, an address is one for a browser, and versions have one
// order.
#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "update/CVersionNumber.h"
#include "update/find_update.h"
#include "update/plain_text.h"

namespace {

void Require(bool holds) {
    if (!holds) std::abort();
}

bool MayBeShown(wchar_t c) {
    const bool turns =
        (c >= 0x202A && c <= 0x202E) || (c >= 0x2066 && c <= 0x2069) || c == 0x200E || c == 0x200F;
    return c == L'\n' || (c >= L' ' && c < 0x7F) ||
           (c >= 0xA1 && c <= 0x10FFFF && !turns && !(c >= 0xD800 && c < 0xE000));
}

void CheckText(const std::wstring& text, std::size_t most) {
    Require(text.size() <= most && std::ranges::all_of(text, MayBeShown));
    Require(text.find(L"\n\n\n") == text.npos && !text.starts_with(L'\n'));
}

void CheckItem(const CAppcastItem& item) {
    const auto isPlain = [](char c) { return c > ' ' && c < 0x7f; };
    Require(item.page.empty() || item.page.size() <= 2'000);
    Require(std::ranges::all_of(item.page, isPlain));
    Require(item.page.empty() || item.page.substr(4).starts_with("://") ||
            item.page.substr(5).starts_with("://"));
    CheckText(item.notes, 20'000);
    CheckText(item.shownVersion, 64);
    Require(!item.version.empty() && item.version.size() <= 4 * 65 && !item.systems.empty());
}

/** Three parts of the text as versions. */
void CheckOrder(std::string_view text) {
    std::array<std::optional<CVersionNumber>, 3> parts;
    for (auto& part : parts) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        part = CVersionNumber::Parse(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    const auto& [a, b, c] = parts;
    if (!a || !b || !c) return;
    Require(*a == *a && ((*a < *b) == (*b > *a)) && ((*a == *b) == (*b == *a)));
    if (*a <= *b && *b <= *c) Require(*a <= *c);
    if (*a == *b) Require((*a <=> *c) == (*b <=> *c));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    CheckOrder(text);
    CheckText(PlainNotes(text), 20'000);
    const CResult<CAppcast> list = ReadAppcast(text);
    if (!list) return 0;
    for (const CAppcastItem& item : list.Value().items) CheckItem(item);
    if (const auto update = FindUpdate(list.Value(), {"1.9.5", "6.1", "x86_64"}))
        Require(IsNewerVersion(update->version, "1.9.5"));
    return 0;
}
