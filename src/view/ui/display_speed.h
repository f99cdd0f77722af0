// SPDX-License-Identifier: MIT
#pragma once

/** True when the display draws OpenGL in software. False for hardware, and when it cannot be determined. */
[[nodiscard]] bool IsDisplayDrawnInSoftware();
