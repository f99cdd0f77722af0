// SPDX-License-Identifier: MIT
#pragma once

#include "process/file_access.h"
#include "process/process_limits.h"

/** What a process is held to that works on a stranger's file. */
struct CConfinement {
    CProcessLimits limits;
    CFileAccess files;
};

/** What of it the system could do. */
struct CConfined {
    bool limits = false;
    bool systemCalls = false;
    bool files = false;
};

/** The limits for drawing one picture with software OpenGL: far more than a sound scene needs, and less than would
 * hinder the person at the machine. */
[[nodiscard]] CProcessLimits LimitsForDrawing();

/** Holds this process to a confinement, for good. Call it before the first byte of the file is read, and before there is
 * another thread. What the system cannot do is left out. OpenGL is drawn in software from then on: a driver of
 * a graphics card would need what is denied. */
[[nodiscard]] CConfined ConfineProcess(const CConfinement& confinement);
