// SPDX-License-Identifier: MIT
#pragma once

/** What a character does to the text around it: the one list that texts of strangers are cleaned by. Each place decides for itself
 * what becomes of a kind (replaced, left out, a blank). Sources: the general categories of Unicode 15 (Cc, Cf, Cs, Cn, Zl, Zp) and
 * the formatting characters of its bidirectional algorithm (UAX #9, section 2). */
namespace character_kind {

enum class EKind {
    Plain,    ///< is shown, or joins or parts what is (U+200C, U+200D, marks and variation selectors)
    LineEnd,  ///< ends a line: LF, CR, NEL, U+2028, U+2029
    Control,  ///< Cc otherwise, for instance what begins a terminal's commands
    Direction,  ///< embeds, overrides or isolates the text behind it, up to the end of the line: UAX #9, 2.1 to 2.5
    DirectionMark,  ///< like an unseen letter, turns only neutral characters beside it: UAX #9, 2.6
    Unseen,  ///< Cf otherwise, of those that nothing is seen of, and what plane 14 keeps for more of them
    None,    ///< no character: a surrogate, a noncharacter, or beyond U+10FFFF
};

[[nodiscard]] EKind Of(char32_t character);

/** Wide texts hold one character in each element. */
[[nodiscard]] inline EKind Of(wchar_t character) {
    return Of(static_cast<char32_t>(character));
}

/** Whether it reaches beyond its own place: what a terminal obeys, what ends a line, and what turns round the text behind it. */
template <typename Character>
[[nodiscard]] bool ReachesBeyondItself(Character character) {
    const EKind kind = Of(character);
    return kind == EKind::Control || kind == EKind::LineEnd || kind == EKind::Direction;
}

}  // namespace character_kind
