// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

#include "base/math/C2DRect.h"
#include "camera/CSeenView.h"

/** What a command line says of how a scene is seen, apart from its camera: the same as the mouse and a script
 * do in the window. */
struct CSeenOptions {
    CVec3 anglesDeg;  ///< the rotation angles
    CVec3 turnDeg;    ///< the trackball's turn, as RotationOfAngles takes angles
    double orbitDeg = 0;
    std::optional<C2DRect> zoomBox;  ///< pixels, origin top left
    int zoom = 0;                    ///< a step as CViewCamera::Zoom takes it, after the box
    CVec3d pivot;
    CVec3d scale{1, 1, 1};

    static constexpr std::array<const char*, 7> kNames{"angles", "turn",     "orbit", "pivot",
                                                       "scale",  "zoom-box", "zoom"};
    /** Takes the value of the option of that name. What is wrong with it, if something is; a value that is wrong
     * changes nothing. */
    [[nodiscard]] std::optional<std::string> Set(std::string_view name, std::string_view value);
    /** Changes what is seen; camera and view size must be set already. */
    void Apply(CSeenView& seen) const;
};
