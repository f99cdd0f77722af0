// SPDX-License-Identifier: MIT
#pragma once

/** True when the display draws OpenGL in software. False for hardware, and where nobody can tell. */
[[nodiscard]] bool IsDisplayDrawnInSoftware();
