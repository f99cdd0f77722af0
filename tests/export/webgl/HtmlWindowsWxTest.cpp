// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <wx/checkbox.h>
#include <wx/dialog.h>
#include <wx/textctrl.h>

#include <filesystem>

#include "engine/C3dsDisplayWrap.h"
#include "engine/CGLCanvasI.h"
#include "export/webgl/CHtmlSettings.h"
#include "export/webgl/ui/CHtmlSettingsDlg.h"
#include "export/webgl/ui/html_export_command.h"
#include "files/CZipReader.h"
#include "files/file_util_ex.h"
#include "view/CViewWindow.h"
#include "widgets/CFakeOpener.h"
#include "widgets/file_dialog_steps.h"

namespace {

namespace fs = std::filesystem;
using CStep = CModalDriver::CStep;

TEST(CHtmlSettingsDlgWxTest, OkStoresAllAtOnceAndEscapeNothing) {
    const CTestFolder folder;
    CHtmlSettings settings(folder / "h.ini");
    auto* frame = new wxFrame(nullptr, wxID_ANY, "main");
    CModalDriver::ShowFirst(*frame);
    const CStep change = CModalDriver::With([](wxDialog& dialog) {
        for (const char* flag : {"Minify files", "Use double sided material in all cases"}) {
            auto& box = dynamic_cast<wxCheckBox&>(*wxWindow::FindWindowByLabel(flag, &dialog));
            box.SetValue(!box.GetValue());
        }
        auto& text =
            dynamic_cast<wxTextCtrl&>(*wxWindow::FindWindowByName("Additional JavaScript code", &dialog));
        text.ChangeValue(wxString(L"a = '\u00e4\u20ac\U0001F600';\n// </script>"));
    });
    for (const int button : {wxID_CANCEL, wxID_OK}) {
        CModalDriver driver({change, CModalDriver::Click(button)});
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
class CHtmlExportWxTest : public CTwoBoxesTest {
  protected:
    void SetUp() override {
        ASSERT_NO_FATAL_FAILURE(CTwoBoxesTest::SetUp());
        fs::create_directory(folder / "out");
    }
    CResult<std::wstring> Export(std::deque<CStep> steps) {
        CModalDriver driver(std::move(steps));
        auto result = RunHtmlExport(window.View().GetPath(), L"boxes.orv", window.View(), Parent());
        EXPECT_TRUE(driver.IsDone());
        return result;
    }

    const CFakeOpener opener;
    const CStep choose = file_dialog_steps::Rename("index.html", folder / "out", "index.html");
};

TEST_F(CHtmlExportWxTest, WritesThePageItsArchiveAndOpensIt) {
    const std::string page = folder / "out/index.html";
    const auto saved = Export({choose, CModalDriver::Press(WXK_RETURN)});
    ASSERT_TRUE(saved) << saved.Error().Text();
    EXPECT_EQ(file_util_ex::ConvertToUTF8(saved.Value()), page);
    EXPECT_EQ(opener.TakeOpened(), page + "\n");
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
    const auto failed = Export({choose, fillDisk, CModalDriver::Press(WXK_RETURN)});
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &all), 0);
    ASSERT_FALSE(failed);
    EXPECT_EQ(failed.Error().code, EErrorCode::WriteFailed);
    EXPECT_TRUE(fs::is_empty(folder / "out"));
    EXPECT_EQ(opener.TakeOpened(), "");
}

TEST_F(CHtmlExportWxTest, CancelWritesNothing) {
    const auto cancelled = Export({choose, CModalDriver::Press(WXK_ESCAPE)});
    ASSERT_TRUE(cancelled);
    EXPECT_EQ(cancelled.Value(), L"");
    window.View().CloseModel();
    EXPECT_TRUE(Export({})) << "without a model nothing is asked";
    EXPECT_TRUE(fs::is_empty(folder / "out"));
    EXPECT_EQ(opener.TakeOpened(), "");
}

}  // namespace
