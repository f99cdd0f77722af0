// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>
#include <wx/app.h>
#include <wx/evtloop.h>
#include <wx/init.h>

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    wxApp::SetInstance(new wxApp);
    if (!wxEntryStart(argc, argv)) return 1;
    wxEventLoop loop;
    int result = 0;
    {
        const wxEventLoopActivator active(&loop);
        result = RUN_ALL_TESTS();
    }
    wxEntryCleanup();
    return result;
}
