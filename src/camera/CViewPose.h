// SPDX-License-Identifier: MIT
#pragma once

#include "camera/CViewCamera.h"

/** Everything about how the engine looks at a scene, to be kept over a reload. */
struct CViewPose {
    CViewCamera camera;
    float rotX = 0, rotY = 0, rotZ = 0;  ///< degrees
    float frame = 0;
};
