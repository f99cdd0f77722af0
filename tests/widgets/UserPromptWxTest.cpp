// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>
#include <gtk/gtk.h>
#include <wx/frame.h>

#include "widgets/CModalDriver.h"
#include "widgets/ui/CWxUserPrompt.h"

namespace {

bool IsDialogActive() {
    GList* windows = gtk_window_list_toplevels();
    const bool found =
        g_list_find_custom(windows, nullptr, [](gconstpointer window, gconstpointer) {
            auto* top = GTK_WINDOW(const_cast<gpointer>(window));
            return gtk_window_get_modal(top) && gtk_window_is_active(top) && gtk_window_get_focus(top) ? 0
                                                                                                       : 1;
        }) != nullptr;
    g_list_free(windows);
    return found;
}

TEST(UserPromptWxTest, EnterLosesNothing) {
    auto* frame = new wxFrame(nullptr, wxID_ANY, "main");
    CModalDriver::ShowFirst(*frame);
    for (const bool tabs : {false, true}) {
        std::deque<CModalDriver::CStep> steps{IsDialogActive, CModalDriver::Press(WXK_RETURN)};
        if (tabs) steps.insert(steps.begin() + 1, CModalDriver::Press(WXK_TAB));
        CModalDriver driver(std::move(steps));
        EXPECT_EQ(CWxUserPrompt().AskYesNo(L"Shall it be lost?"), tabs);
        EXPECT_TRUE(driver.IsDone());
    }
    frame->Destroy();
}

TEST(UserPromptWxTest, AHeldKeyDoesNotAnswerWhetherToSave) {
    auto* frame = new wxFrame(nullptr, wxID_ANY, "main");
    CModalDriver::ShowFirst(*frame);
    std::deque<CModalDriver::CStep> held{IsDialogActive};
    for (int i = 0; i < 4; ++i) held.push_back(CModalDriver::Press(WXK_SPACE));
    const auto answer = [&held](std::deque<CModalDriver::CStep> more) {
        more.insert(more.begin(), held.begin(), held.end());
        CModalDriver driver(std::move(more));
        const ESaveAnswer given = CWxUserPrompt().AskSave(L"Save it?");
        EXPECT_TRUE(driver.IsDone());
        return given;
    };
    EXPECT_EQ(answer({CModalDriver::Press(WXK_ESCAPE)}), ESaveAnswer::Cancel);
    wxStopWatch rest;
    EXPECT_EQ(answer({[&] { return rest.Start(), true; }, [&] { return rest.Time() > 800; },
                      CModalDriver::Press(WXK_SPACE)}),
              ESaveAnswer::Save);
    frame->Destroy();
}

}  // namespace
