// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>
#include <stdlib.h>
#include <wx/button.h>
#include <wx/image.h>
#include <wx/listctrl.h>

#include "files/CTestFolder.h"
#include "programs/upload_prepare/ui/CUploadDlg.h"
#include "widgets/CFakeOpener.h"
#include "widgets/CModalDriver.h"

namespace fs = std::filesystem;
using EState = CUpload::EState;

namespace {

/** The window with rclone itself, whose remote is a folder of this test. */
class UploadDlgWxTest : public testing::Test {
  protected:
    UploadDlgWxTest() {
        [[maybe_unused]] static const bool s_once = (wxInitAllImageHandlers(), true);
        ::setenv("XDG_CONFIG_HOME", folder.Path().c_str(), 1);
        setup.moreArguments = {
            "--config", folder.Add("rclone.conf", "[d]\ntype = alias\nremote = " + drive.Path() + "\n")};
        setup.remoteType = "alias";
        content.folder = upload.Path();
        content.files = {{"index.html", 7}};
        content.outside = {{"/else/x.png"}};
        (void)upload.Add("index.html", "landing");
    }
    /** A step: waits for a state. */
    CModalDriver::CStep Is(EState state) {
        return [this, state] { return dialog->Upload().State() == state; };
    }
    CModalDriver::CStep Do(const std::function<void()>& work) {
        return CModalDriver::With([work](wxDialog&) { work(); });
    }
    /** A step: gives the list of files the focus, and waits until it has it. */
    CModalDriver::CStep FilesHaveFocus() {
        return [this] {
            wxWindow* list = wxWindow::FindWindowByName("Files to upload", dialog);
            list->SetFocus();
            const wxWindow* focus = wxWindow::FindFocus();
            return dialog->IsActive() && focus && (focus == list || focus->GetParent() == list);
        };
    }
    void Click(int id) {
        auto* button = dynamic_cast<wxButton*>(dialog->FindWindow(id));
        ASSERT_TRUE(button && button->IsShown() && button->IsEnabled()) << id;
        wxCommandEvent event(wxEVT_BUTTON, id);
        event.SetEventObject(button);
        button->GetEventHandler()->ProcessEvent(event);
    }
    void Run(std::deque<CModalDriver::CStep> steps) {
        CUploadDlg shown(nullptr, setup, content, "chess.3ds");
        dialog = &shown;
        const CModalDriver driver(std::move(steps));
        shown.ShowModal();
        EXPECT_TRUE(driver.IsDone());
    }

    const CTestFolder folder, upload, drive;
    CRcloneSetup setup;
    CUploadContent content;
    CUploadDlg* dialog = nullptr;
};

}  // namespace

TEST_F(UploadDlgWxTest, UploadsOnlyWhatWasConfirmed) {
    Run({Is(EState::Ready), FilesHaveFocus(), CModalDriver::Press(WXK_RETURN), FilesHaveFocus(), Do([&] {
             EXPECT_EQ(dialog->Upload().State(), EState::Ready);
             EXPECT_EQ(drive.Count(), 0u);
             Click(CUploadDlg::kIdUpload);
         }),
         Is(EState::Done), Do([&] { Click(wxID_CANCEL); })});
    ASSERT_TRUE(fs::exists(drive / "Orbivue"));
    EXPECT_NE(CTestFolder::TextOf(folder / "orbivue/upload.ini").find("remote=d"), std::string::npos);
}

TEST_F(UploadDlgWxTest, TriesAgainAfterAFailure) {
    (void)drive.Add("Orbivue", "in the way");
    Run({Is(EState::Ready), Do([&] { Click(CUploadDlg::kIdUpload); }), Is(EState::Failed), Do([&] {
             fs::remove(drive / "Orbivue");
             Click(CUploadDlg::kIdAgain);
             Click(CUploadDlg::kIdUpload);
         }),
         Is(EState::Done), Do([&] { dialog->Close(); })});
}

TEST_F(UploadDlgWxTest, OpensFolderAndDriveWhereThereIsNoRemote) {
    setup.remoteType = "drive";
    const CFakeOpener opener;
    Run({Is(EState::NoDrive), Do([&] { Click(CUploadDlg::kIdOpen); }), Do([&] { Click(wxID_CANCEL); })});
    EXPECT_EQ(opener.TakeOpened(), upload.Path() + "\nhttps://drive.google.com/drive/my-drive\n");
}
