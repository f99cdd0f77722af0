// SPDX-License-Identifier: MIT
#include "base/text/character_kind.h"

#include <algorithm>
#include <iterator>

namespace character_kind {
namespace {

struct CRange {
    char32_t first, last;
    EKind kind;
};

// In ascending order; what lies between is plain.
constexpr CRange kRanges[] = {
    {0x0, 0x9, EKind::Control},
    {0xA, 0xA, EKind::LineEnd},
    {0xB, 0xC, EKind::Control},
    {0xD, 0xD, EKind::LineEnd},
    {0xE, 0x1F, EKind::Control},
    {0x7F, 0x84, EKind::Control},
    {0x85, 0x85, EKind::LineEnd},
    {0x86, 0x9F, EKind::Control},
    {0xAD, 0xAD, EKind::Unseen},  // soft hyphen
    {0x61C, 0x61C, EKind::DirectionMark},
    {0x180E, 0x180E, EKind::Unseen},
    {0x200B, 0x200B, EKind::Unseen},
    {0x200E, 0x200F, EKind::DirectionMark},
    {0x2028, 0x2029, EKind::LineEnd},
    {0x202A, 0x202E, EKind::Direction},  // embeddings, overrides and their end
    {0x2060, 0x2065, EKind::Unseen},
    {0x2066, 0x2069, EKind::Direction},  // isolates and their end
    {0x206A, 0x206F, EKind::Unseen},
    {0xD800, 0xDFFF, EKind::None},
    {0xFDD0, 0xFDEF, EKind::None},
    {0xFEFF, 0xFEFF, EKind::Unseen},  // byte order mark
    {0xFFF9, 0xFFFB, EKind::Unseen},
    {0xFFFE, 0xFFFF, EKind::None},
    {0x1BCA0, 0x1BCA3, EKind::Unseen},
    {0x1D173, 0x1D17A, EKind::Unseen},
    {0xE0000, 0xE00FF, EKind::Unseen},  // tags, and what the standard keeps for their like
    {0xE0100, 0xE01EF, EKind::Plain},   // variation selectors, which choose a character's form
    {0xE01F0, 0xE0FFF, EKind::Unseen},
    {0x110000, 0xFFFFFFFF, EKind::None},
};
static_assert(std::ranges::is_sorted(kRanges, {}, &CRange::first));

constexpr bool IsNoncharacterOfAPlane(char32_t character) {
    return (character & 0xFFFE) == 0xFFFE;
}

}  // namespace

EKind Of(char32_t character) {
    if (character >= 0x20 && character < 0x7F) return EKind::Plain;
    const auto* const beyond = std::ranges::upper_bound(kRanges, character, {}, &CRange::first);
    const CRange& range = *std::prev(beyond);
    if (character <= range.last) return range.kind;
    return IsNoncharacterOfAPlane(character) ? EKind::None : EKind::Plain;
}

}  // namespace character_kind
