// SPDX-License-Identifier: MIT
#pragma once

class CAViewerFrame;

/** What the commands of the table do. */
struct CCommandHandlers {
    using CHandler = void (*)(CAViewerFrame& frame);
    /** Null for a command that does nothing yet. */
    [[nodiscard]] static CHandler Find(int id);
};
