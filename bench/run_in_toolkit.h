// SPDX-License-Identifier: MIT
#pragma once

#include <wx/app.h>
#include <wx/evtloop.h>
#include <wx/image.h>
#include <wx/init.h>

#include <functional>

#include "base/process_memory.h"

/** Runs work with the toolkit ready and an event loop active, as the program has it, and returns its result; 1
 * without a display. */
inline int RunInToolkit(char** argv, const std::function<int()>& work) {
    process_memory::KeepFreedBlocks();
    int toolkitArguments = 1;
    wxApp::SetInstance(new wxApp);
    if (!wxEntryStart(toolkitArguments, argv)) return 1;
    wxInitAllImageHandlers();
    wxEventLoop loop;
    int result = 0;
    {
        const wxEventLoopActivator active(&loop);
        result = work();
    }
    wxEntryCleanup();
    return result;
}
