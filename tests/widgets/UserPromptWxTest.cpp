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
    {
        CModalDriver driver({IsQuestionActive, CModalDriver::Press(WXK_RETURN)});
        EXPECT_FALSE(CWxUserPrompt().AskYesNo(L"Shall it be lost?"));
        EXPECT_TRUE(driver.IsDone());
    }
    {
        CModalDriver driver(
            {IsQuestionActive, CModalDriver::Press(WXK_TAB), CModalDriver::Press(WXK_RETURN)});
        EXPECT_TRUE(CWxUserPrompt().AskYesNo(L"Shall it be lost?"));
        EXPECT_TRUE(driver.IsDone());
    }
    frame->Destroy();
}

}  // namespace
