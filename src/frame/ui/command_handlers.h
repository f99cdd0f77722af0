// SPDX-License-Identifier: MIT
#pragma once

class CAViewerFrame;

/** The functions that run the commands of the table. */
struct CCommandHandlers {
    using CHandler = void (*)(CAViewerFrame& frame);
    /** Null for a command that is not implemented. */
    [[nodiscard]] static CHandler Find(int id);
};
