// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>
#include <gtk/gtk.h>
#include <wx/filedlg.h>
#include <wx/frame.h>

#include <filesystem>
#include <memory>

#include "files/CTestFolder.h"
#include "files/file_util_ex.h"
#include "settings/CLocalRegStore.h"
#include "widgets/CModalDriver.h"
#include "widgets/CUserPrompt.h"
#include "widgets/ui/CBXFileDialogI.h"
#include "widgets/ui/file_chooser.h"

namespace {

constexpr wchar_t kPictures[] = L"JPG file (*.jpg)|*.jpg|PNG file (*.png)|*.png||";

/** Says No to the first question and Yes to the others. */
class CSecondThoughts final : public CUserPrompt {
  public:
    explicit CSecondThoughts(int& asked) : m_asked(asked) {}
    void ShowMessage(const std::wstring&) override {}
    bool AskYesNo(const std::wstring&) override { return ++m_asked > 1; }
    void BeginBusy() override {}
    void EndBusy() override {}

  private:
    int& m_asked;
};

class CSaveDialogWxTest : public testing::Test {
  protected:
    CSaveDialogWxTest() : before(CUserPrompt::Install(std::make_unique<CSecondThoughts>(asked))) {
        CModalDriver::ShowFirst(*frame);
    }
    ~CSaveDialogWxTest() override {
        CUserPrompt::Install(std::move(before));
        frame->Destroy();
    }
    /** Waits until the dialog proposes the name. */
    static CModalDriver::CStep Proposes(const std::string& name) {
        return [name] {
            wxFileDialog* dialog = CModalDriver::FileDialog();
            return dialog && file_chooser::Name(*dialog) == name;
        };
    }
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
    int asked = 0;
    std::unique_ptr<CUserPrompt> before;
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
    EXPECT_EQ(asked, 0);
}

TEST_F(CSaveDialogWxTest, AsksBeforeItReplacesWhatTheCompletedNameMeans) {
    folder.Add("there.jpg", "x");
    EXPECT_EQ(
        Save(L"there", wide,
             {Proposes("there"), CModalDriver::Press(WXK_RETURN),
              [this] { return asked == 1 && CModalDriver::FileDialog(); }, CModalDriver::Press(WXK_RETURN)}),
        wide + L"/there.jpg");
    EXPECT_EQ(asked, 2) << "a No leads back to the dialog";
}

}  // namespace
