// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>
#include <gtk/gtk.h>
#include <wx/frame.h>

#include "widgets/CModalDriver.h"
#include "widgets/ui/CWxUserPrompt.h"

namespace {

bool IsQuestionActive() {
    GList* windows = gtk_window_list_toplevels();
    const bool found =
        g_list_find_custom(windows, nullptr, [](gconstpointer window, gconstpointer) {
            return GTK_IS_MESSAGE_DIALOG(window) && gtk_window_is_active(GTK_WINDOW(window)) ? 0 : 1;
        }) != nullptr;
    g_list_free(windows);
    return found;
}

TEST(UserPromptWxTest, EnterLosesNothing) {
    auto* frame = new wxFrame(nullptr, wxID_ANY, "main");
    CModalDriver::ShowFirst(*frame);
    for (const bool tabs : {false, true}) {
        std::deque<CModalDriver::CStep> steps{IsQuestionActive, CModalDriver::Press(WXK_RETURN)};
        if (tabs) steps.insert(steps.begin() + 1, CModalDriver::Press(WXK_TAB));
        CModalDriver driver(std::move(steps));
        EXPECT_EQ(CWxUserPrompt().AskYesNo(L"Shall it be lost?"), tabs);
        EXPECT_TRUE(driver.IsDone());
    }
    frame->Destroy();
}

}  // namespace
