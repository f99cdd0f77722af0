// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "view/CViewGestures.h"

namespace gesture_steps {

/** One step of a table, a word with two numbers: mostly the place. */
inline void Do(CViewGestures& gestures, const std::string& what, int x, int y) {
    if (what == "down" || what == "control-down") return gestures.LeftDown(x, y, what == "control-down");
    if (what == "move" || what == "move-up") return gestures.Move(x, y, what == "move");
    if (what == "up") return gestures.LeftUp(x, y);
    if (what == "pan-down") return gestures.PanDown(x, y);
    if (what == "pan-up") return void(gestures.PanUp());
    if (what == "double") return gestures.DoubleClick(x, y);
    if (what == "long") return gestures.LongPress(x, y);
    if (what == "wheel") return gestures.Wheel(x);
    if (what == "alt-wheel") return gestures.WheelAt(x, y, 120);
    if (what == "alt-wheel-back") return gestures.WheelAt(x, y, -120);
    if (what == "pinch") return gestures.Pinch(x, y, 1.002);
    if (what == "pinch-double") return gestures.Pinch(x, y, 2);
    // Keys: x says whether finely.
    if (what == "right") return gestures.Key(EViewKey::TurnRight, x == 1);
    if (what == "up-key") return gestures.Key(EViewKey::TurnUp, x == 1);
    if (what == "pan-right") return gestures.Key(EViewKey::PanRight, x == 1);
    if (what == "pan-up-key") return gestures.Key(EViewKey::PanUp, x == 1);
    if (what == "plus") return gestures.Key(EViewKey::ZoomIn, x == 1);
    if (what == "minus") return gestures.Key(EViewKey::ZoomOut, x == 1);
    if (what == "reset") return gestures.ResetTrackBall();
    ADD_FAILURE() << "a slip in the table: " << what;
}

}  // namespace gesture_steps
