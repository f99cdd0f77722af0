// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

#include "base/math/C2DRect.h"
#include "camera/CSeenView.h"

/** The options of a command line that decide how a scene is seen, apart from its camera. Each has the effect
 * that the mouse or a script has in the main window. */
struct CSeenOptions {
    CVec3 anglesDeg;  ///< the rotation angles
    CVec3 turnDeg;    ///< the trackball's turn, as RotationOfAngles takes angles
    double orbitDeg = 0;
    std::optional<C2DRect> zoomBox;  ///< pixels, origin top left
    int zoom = 0;                    ///< a step as CViewCamera::Zoom takes it, after the box
    CVec3d pivot;
    CVec3d scale{1, 1, 1};
    std::array<double, 2> pan{};  ///< pixels to the right and down, before the box

    static constexpr std::array<const char*, 8> kNames{"angles", "turn", "orbit",    "pivot",
                                                       "scale",  "pan",  "zoom-box", "zoom"};
    /** Sets the option `name`, one of kNames, from the text of its value. Returns what is wrong with the
     * value, which then changes nothing, or nothing on success. */
    [[nodiscard]] std::optional<std::string> Set(std::string_view name, std::string_view value);
    /** Applies the options to a seen view whose camera and view size are set. */
    void Apply(CSeenView& seen) const;
};
