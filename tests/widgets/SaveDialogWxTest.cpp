// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>
#include <gtk/gtk.h>
#include <wx/filedlg.h>
#include <wx/frame.h>

#include "files/CTestFolder.h"
#include "files/file_util_ex.h"
#include "settings/CLocalRegStore.h"
#include "widgets/CRecordedPrompt.h"
#include "widgets/file_dialog_steps.h"
#include "widgets/ui/CBXFileDialogI.h"

using file_dialog_steps::Proposes;

namespace {

constexpr wchar_t kPictures[] = L"JPG file (*.jpg)|*.jpg|PNG file (*.png)|*.png||";

class CSaveDialogWxTest : public testing::Test {
  protected:
    CSaveDialogWxTest() { CModalDriver::ShowFirst(*frame); }
    ~CSaveDialogWxTest() override { frame->Destroy(); }
    static bool ChoosePng() {
        GtkFileChooser* chooser = GTK_FILE_CHOOSER(CModalDriver::FileDialog()->GetHandle());
        GSList* kinds = gtk_file_chooser_list_filters(chooser);
        gtk_file_chooser_set_filter(chooser, GTK_FILE_FILTER(g_slist_nth_data(kinds, 1)));
        g_slist_free(kinds);
        return true;
    }
    std::wstring Save(const std::wstring& name, const std::wstring& inFolder,
                      std::deque<CModalDriver::CStep> steps) {
        CModalDriver driver(std::move(steps));
        const std::wstring path =
            CBXFileDialogI::LaunchSaveDialog(frame, L"*.jpg", kPictures, L"Save", inFolder, name);
        EXPECT_TRUE(driver.IsDone());
        return path;
    }

    CLocalRegStore::CDefaultFileGuard store;
    CTestFolder folder;
    std::wstring wide = file_util_ex::ConvertFromUTF8W(folder.Path());
    wxFrame* frame = new wxFrame(nullptr, wxID_ANY, "main");
    CRecordedPrompt prompt;
};

TEST_F(CSaveDialogWxTest, RemembersTheFolderAndCompletesTheName) {
    EXPECT_EQ(CBXFileDialogI::SetRegEntry("save_img"), "");
    EXPECT_EQ(Save(L"/elsewhere/\u017Dlu\u0165 \u6A21", wide,
                   {Proposes("\u017Dlu\u0165 \u6A21"), CModalDriver::Press(WXK_RETURN)}),
              wide + L"/\u017Dlu\u0165 \u6A21.jpg");
    EXPECT_EQ(CLocalRegStore::GetString("save_img", "Path", L""), wide);
    {
        const CRegEntryGuard other("pov_out");
        EXPECT_EQ(Save(L"x", L"", {Proposes("x"), CModalDriver::Press(WXK_ESCAPE)}), L"");
        EXPECT_EQ(CLocalRegStore::GetString("pov_out", "Path", L"none"), L"none") << "cancelled";
    }
    EXPECT_EQ(Save(L"y.jpg", L"/missing",
                   {Proposes("y.jpg"), ChoosePng, Proposes("y.png"), CModalDriver::Press(WXK_RETURN)}),
              wide + L"/y.png");
    EXPECT_EQ(CBXFileDialogI::SetRegEntry(""), "save_img");
    EXPECT_TRUE(prompt.messages.empty());
}

TEST_F(CSaveDialogWxTest, AsksBeforeItReplacesWhatTheCompletedNameMeans) {
    folder.Add("there.jpg", "x");
    const auto changeOnesMind = [this] {
        return prompt.answer = prompt.messages.size() == 1 && CModalDriver::FileDialog();
    };
    const auto isAsked = [this] { return prompt.messages.size() == 1; };
    EXPECT_EQ(Save(L"there", wide,
                   {Proposes("there"), CModalDriver::PressUntil(WXK_RETURN, isAsked), changeOnesMind,
                    CModalDriver::Press(WXK_RETURN)}),
              wide + L"/there.jpg");
    EXPECT_EQ(prompt.messages.size(), 2u) << "a No leads back to the dialog";
}

}  // namespace
