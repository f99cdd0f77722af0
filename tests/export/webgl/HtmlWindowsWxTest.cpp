// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>
#include <gtk/gtk.h>
#include <signal.h>
#include <sys/resource.h>
#include <wx/checkbox.h>
#include <wx/dialog.h>
#include <wx/filedlg.h>
#include <wx/textctrl.h>

#include <cstdlib>
#include <filesystem>

#include "engine/C3dsDisplayWrap.h"
#include "engine/CGLCanvasI.h"
#include "export/webgl/CHtmlSettings.h"
#include "export/webgl/ui/CHtmlSettingsDlg.h"
#include "export/webgl/ui/html_export_command.h"
#include "files/CTestFolder.h"
#include "files/CZipReader.h"
#include "files/file_util_ex.h"
#include "settings/CLocalRegStore.h"
#include "view/CViewWindow.h"
#include "widgets/CModalDriver.h"
#include "widgets/ui/file_chooser.h"

namespace {

namespace fs = std::filesystem;
using CStep = CModalDriver::CStep;

TEST(CHtmlSettingsDlgWxTest, OkStoresAllAtOnceAndEscapeNothing) {
    const CTestFolder folder;
    CHtmlSettings settings(folder / "h.ini");
    auto* frame = new wxFrame(nullptr, wxID_ANY, "main");
    CModalDriver::ShowFirst(*frame);
    CModalDialogs dialogs;
    dialogs.Register();
    const auto change = [&] {
        wxDialog* dialog = dialogs.Last();
        if (!dialog || !gtk_window_is_active(GTK_WINDOW(dialog->GetHandle()))) return false;
        for (const char* flag : {"Minify files", "Use double sided material in all cases"}) {
            auto& box = dynamic_cast<wxCheckBox&>(*wxWindow::FindWindowByLabel(flag, dialog));
            box.SetValue(!box.GetValue());
        }
        auto& text =
            dynamic_cast<wxTextCtrl&>(*wxWindow::FindWindowByName("Additional JavaScript code", dialog));
        text.ChangeValue(wxString(L"a = '\u00e4\u20ac\U0001F600';\n// </script>"));
        return true;
    };
    const auto press = [&](int id) {
        return [&dialogs, id] {
            wxQueueEvent(dialogs.Last()->FindWindow(id), new wxCommandEvent(wxEVT_BUTTON, id));
            return true;
        };
    };
    for (const int button : {wxID_CANCEL, wxID_OK}) {
        CModalDriver driver({change, press(button)});
        EXPECT_EQ(CHtmlSettingsDlg(frame, settings).ShowModal(), button);
        EXPECT_TRUE(driver.IsDone());
        EXPECT_EQ(fs::exists(folder / "h.ini"), button == wxID_OK);
    }
    const CHtmlSettings read(folder / "h.ini");
    EXPECT_FALSE(read.GetMinify());
    EXPECT_TRUE(read.GetCombine());
    EXPECT_TRUE(read.GetDoubleSided());
    EXPECT_EQ(read.GetJavaScript(), "a = '\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80';\n// </script>");
    frame->Destroy();
}

/** A view with two boxes, and a desktop's opener that notes what it is given. */
class CHtmlExportWxTest : public testing::Test {
  protected:
    void SetUp() override {
        CLocalRegStore::Load(file_util_ex::ConvertFromUTF8W(folder / "settings.ini"));
        fs::permissions(folder.Add("xdg-open", "#!/bin/sh\necho \"$1\" >>'" + (folder / "opened") + "'\n"),
                        fs::perms::owner_all);
        setenv("PATH", folder.Path().c_str(), 1);
        ASSERT_TRUE(window.IsReady());
        SaveTwoBoxes(folder / "boxes.3ds");
        ASSERT_TRUE(window.View().OpenModel(file_util_ex::ConvertFromUTF8W(folder / "boxes.3ds").c_str()));
        fs::create_directory(folder / "out");
    }
    ~CHtmlExportWxTest() override { setenv("PATH", m_pathBefore.c_str(), 1); }
    CResult<std::wstring> Export(std::deque<CStep> steps) {
        CModalDriver driver(std::move(steps));
        wxWindow* parent = window.View().GetCanvas()->GetWindow()->GetParent();
        auto result = RunHtmlExport(window.View().GetPath(), L"boxes.orv", window.View(), *parent);
        EXPECT_TRUE(driver.IsDone());
        return result;
    }
    CStep ChooseFolder(const std::string& where) {
        return [where] {
            wxFileDialog* dialog = CModalDriver::FileDialog();
            if (!dialog || file_chooser::Name(*dialog) != "index.html") return false;
            file_chooser::SetFolder(*dialog, where);
            return true;
        };
    }
    [[nodiscard]] std::string Opened() const { return CTestFolder::TextOf(folder / "opened"); }

    CTestFolder folder;
    CLocalRegStore::CDefaultFileGuard store;
    CIdleToolState tools;
    CViewWindow window{&tools};

  private:
    std::string m_pathBefore = getenv("PATH");
};

TEST_F(CHtmlExportWxTest, WritesThePageItsArchiveAndOpensIt) {
    const std::string page = folder / "out/index.html";
    const auto saved = Export({ChooseFolder(folder / "out"), CModalDriver::Press(WXK_RETURN)});
    ASSERT_TRUE(saved) << saved.Error().Text();
    EXPECT_EQ(file_util_ex::ConvertToUTF8(saved.Value()), page);
    EXPECT_EQ(Opened(), page + "\n");
    EXPECT_NE(CTestFolder::TextOf(page).find("./boxes.orv.zip"), std::string::npos);
    auto archive = CZipReader::Open(file_util_ex::ReadWholeFile(folder / "out/boxes.orv.zip").Value());
    ASSERT_TRUE(archive);
    ASSERT_EQ(archive.Value().Entries().size(), 2u);
    EXPECT_EQ(archive.Value().Entries()[0].name, "boxes.3ds");
    EXPECT_EQ(archive.Value().Entries()[1].name, "preview.jpg");
}

TEST_F(CHtmlExportWxTest, AFailureMakesNoArchiveAndOpensNothing) {
    (void)::signal(SIGXFSZ, SIG_IGN);
    rlimit all{};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &all), 0);
    const CStep fillDisk = [&] {
        const rlimit little{100, all.rlim_max};
        return ::setrlimit(RLIMIT_FSIZE, &little) == 0;
    };
    const auto failed = Export({ChooseFolder(folder / "out"), fillDisk, CModalDriver::Press(WXK_RETURN)});
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &all), 0);
    ASSERT_FALSE(failed);
    EXPECT_EQ(failed.Error().code, EErrorCode::WriteFailed);
    EXPECT_TRUE(fs::is_empty(folder / "out"));
    EXPECT_EQ(Opened(), "");
}

TEST_F(CHtmlExportWxTest, CancelWritesNothing) {
    const auto cancelled = Export({ChooseFolder(folder / "out"), CModalDriver::Press(WXK_ESCAPE)});
    ASSERT_TRUE(cancelled);
    EXPECT_EQ(cancelled.Value(), L"");
    window.View().CloseModel();
    EXPECT_TRUE(Export({})) << "without a model nothing is asked";
    EXPECT_TRUE(fs::is_empty(folder / "out"));
    EXPECT_EQ(Opened(), "");
}

}  // namespace
