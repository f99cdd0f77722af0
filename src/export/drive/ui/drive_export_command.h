// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string>

#include "base/CResult.h"

class CViewer3DSWindowHandler;

/** What is exported beside what the view knows. */
struct CDriveModel {
    std::wstring fileName;            ///< of the file that is open, which may be a script
    std::wstring backgroundPicture;   ///< path of the picture behind the scene; empty for none
    std::function<void()> whenReady;  ///< called when the page is ready, before the helper runs
};

/** Exports what the view shows as a web page for Google Drive, and has the helper program prepare and upload it. Returns
 * when the helper has ended; windows handle events meanwhile, so the caller holds the session's turn. A failure shows
 * nothing; the status holds its reason. Does nothing without a model. */
[[nodiscard]] CStatus RunDriveExport(const CDriveModel& model, CViewer3DSWindowHandler& view);
