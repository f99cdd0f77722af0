// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "base/text/lng.h"
#include "programs/shared/CPictureOptions.h"
#include "programs/shared/option_table.h"

/** Values of options, and the options that several programs have. */
namespace option_values {

/** The whole text as a number; neither "1.5x" nor "nan" is one. */
template <class T>
[[nodiscard]] std::optional<T> Number(std::string_view text) {
    T value{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
    if constexpr (std::is_floating_point_v<T>) {
        if (!std::isfinite(value)) return std::nullopt;
    }
    return value;
}
[[nodiscard]] std::vector<std::string_view> Split(std::string_view text, char separator);

using option_table::COutcome;

[[nodiscard]] COutcome SetSize(CPictureOptions& options, std::string_view value);
[[nodiscard]] COutcome SetCamera(CPictureOptions& options, std::string_view value);
[[nodiscard]] COutcome SetScene(CPictureOptions& options, std::string_view value);
[[nodiscard]] COutcome SetFrame(CPictureOptions& options, std::string_view value);
[[nodiscard]] COutcome SetBackground(CPictureOptions& options, std::string_view value);
[[nodiscard]] COutcome SetWire(CPictureOptions& options, std::string_view value);

/** One of these for a program's own options. */
template <COutcome (*set)(CPictureOptions&, std::string_view), class Options>
[[nodiscard]] COutcome Drawn(Options& options, std::string_view value) {
    return set(options, value);
}

/** The name of an option of CSeenOptions, without the dashes. */
template <std::size_t length>
struct CSeenName {
    constexpr CSeenName(const char (&text)[length]) { std::copy_n(text, length, chars); }
    char chars[length]{};
};
template <CSeenName name, class Options>
[[nodiscard]] COutcome Seen(Options& options, std::string_view value) {
    return options.seen.Set(name.chars, value);
}

/** The options that say what is seen of a model: the rows of every program that draws one. Options holds a CPictureOptions by
 * inheritance. */
template <class Options>
constexpr std::array<option_table::CEntry<Options>, 14> kSeenOptions{{
    {"size", "WxH", Drawn<SetSize>, lng::Mark("size of the picture or the view in pixels (1024x768)")},
    {"camera", "NAME", Drawn<SetCamera>,
     lng::Mark("top, left, right, front, back, iso, or a camera of the file (iso)")},
    {"scene", "N", Drawn<SetScene>, lng::Mark("scene of a scene script (1)")},
    {"angles", "X,Y,Z", Seen<"angles">, lng::Mark("turns the model about Z, then Y, then X, by degrees")},
    {"turn", "X,Y,Z", Seen<"turn">, lng::Mark("turns it once more about X, Y and Z, as the mouse does")},
    {"orbit", "DEGREES", Seen<"orbit">, lng::Mark("turns the eye about the axis that belongs to the camera")},
    {"pivot", "X,Y,Z", Seen<"pivot">, lng::Mark("moves the point that --turn and --scale work around")},
    {"scale", "X,Y,Z", Seen<"scale">, lng::Mark("stretches the turned model")},
    {"pan", "DX,DY", Seen<"pan">, lng::Mark("moves the model by pixels, to the right and down")},
    {"zoom-box", "L,T,R,B", Seen<"zoom-box">, lng::Mark("pixels of the picture that are to fill it")},
    {"zoom", "STEP", Seen<"zoom">, lng::Mark("as the wheel: 20 for each notch away from the model")},
    {"frame", "N", Drawn<SetFrame>, lng::Mark("frame of the animation (the file's current one)")},
    {"background", "R,G,B", Drawn<SetBackground>,
     lng::Mark("background colour, 0 to 255 each (61,66,77); a script's own counts more")},
    {"wire", "", Drawn<SetWire>, lng::Mark("draw the edges of the triangles only")},
}};

}  // namespace option_values
