// SPDX-License-Identifier: MIT
#pragma once

#include "base/math/CVec.h"

struct CSphere {
    CVec3 center;
    float radius = 0;
};
