// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>
#include <gtk/gtk.h>
#include <wx/checkbox.h>
#include <wx/dialog.h>
#include <wx/filedlg.h>
#include <wx/radiobut.h>
#include <wx/textctrl.h>

#include <filesystem>

#include "engine/C3dsDisplayWrap.h"
#include "engine/CGLCanvasI.h"
#include "export/pov/C3ds2Pov.h"
#include "export/pov/ui/CPOVRaySettingsDlg.h"
#include "export/pov/ui/CPovExportDialog.h"
#include "export/pov/ui/pov_export_command.h"
#include "files/CTestFolder.h"
#include "files/file_util_ex.h"
#include "settings/CSettingsGuard.h"
#include "view/CViewWindow.h"
#include "widgets/CFakeOpener.h"
#include "widgets/CModalDriver.h"
#include "widgets/CRecordedPrompt.h"

namespace {

namespace fs = std::filesystem;
using CStep = CModalDriver::CStep;

/** Settings, messages and the dialog that is open. */
class CPovWindowWxTest : public testing::Test {
  protected:
    CPovWindowWxTest() { dialogs.Register(); }

    template <class Control>
    Control& Get(const wxString& labelOrName) {
        wxWindow* found = wxWindow::FindWindowByLabel(labelOrName, dialogs.Last());
        if (!found) found = wxWindow::FindWindowByName(labelOrName, dialogs.Last());
        return dynamic_cast<Control&>(*found);
    }
    /** A step: once the dialog can be typed into. */
    static CStep When(const std::function<void()>& work) {
        return CModalDriver::With([work](wxDialog&) { work(); });
    }
    void Click(int id) { wxQueueEvent(dialogs.Last()->FindWindow(id), new wxCommandEvent(wxEVT_BUTTON, id)); }
    bool IsEnabled(int id) { return dialogs.Last() && dialogs.Last()->FindWindow(id)->IsEnabled(); }

    CSettingsGuard guard;
    CSettings& settings = CSettings::Instance();
    CRecordedPrompt prompt;
    CModalDialogs dialogs;
};

class COptionsWxTest : public CPovWindowWxTest {
  protected:
    COptionsWxTest() { CModalDriver::ShowFirst(*frame); }
    ~COptionsWxTest() override { frame->Destroy(); }
    int Show(std::deque<CStep> steps) {
        CModalDriver driver(std::move(steps));
        const int code = CPOVRaySettingsDlg(frame).ShowModal();
        EXPECT_TRUE(driver.IsDone());
        return code;
    }
    void ChangeAll() {
        Get<wxCheckBox>("Output Textures").SetValue(false);
        Get<wxCheckBox>("Use last pov file name").SetValue(true);
        Get<wxCheckBox>("Enable radiosity").SetValue(true);
        Get<wxRadioButton>("Use preview backgroud").SetValue(true);
        Get<wxTextCtrl>("Diffuse value").ChangeValue("0.25");
    }

    wxFrame* frame = new wxFrame(nullptr, wxID_ANY, "main");
};

TEST_F(COptionsWxTest, EnterStoresAndEscapeDoesNot) {
    const CSettings defaults = settings;
    EXPECT_EQ(Show({When([&] { ChangeAll(); }), CModalDriver::Press(WXK_ESCAPE)}), wxID_CANCEL);
    EXPECT_EQ(settings, defaults);
    EXPECT_EQ(Show({When([&] { ChangeAll(); }), CModalDriver::Press(WXK_RETURN)}), 5100);
    CSettings changed = defaults;
    changed.povOutputTex = false;
    changed.povUseLastName = changed.povRadiosity = changed.povPreviewBack = true;
    changed.povDiffuse = 0.25F;
    EXPECT_EQ(settings, changed);
    // All of it is shown again; the defaults are stored by OK.
    EXPECT_EQ(Show({When([&] {
                        EXPECT_EQ(Get<wxTextCtrl>("Diffuse value").GetValue(), "0.250");
                        EXPECT_TRUE(Get<wxRadioButton>("Use preview backgroud").GetValue());
                        Click(Get<wxWindow>("Restore Defaults").GetId());
                    }),
                    [this] { return Get<wxTextCtrl>("Diffuse value").GetValue() == "0.600"; },
                    When([&] { Click(CPOVRaySettingsDlg::kIdOk); })}),
              5100);
    EXPECT_EQ(settings, CSettings());
}

TEST_F(COptionsWxTest, AWrongNumberIsToldAndLeadsBackToItsField) {
    const wxString field = "Self illumination diffuse value";
    EXPECT_EQ(Show({When([&] { Get<wxTextCtrl>(field).Clear(); }), CModalDriver::Press(WXK_RETURN),
                    [this] { return !prompt.messages.empty(); }, When([&] {
                        EXPECT_TRUE(Get<wxTextCtrl>(field).HasFocus());
                        Click(wxID_CANCEL);
                    })}),
              wxID_CANCEL);
    EXPECT_EQ(prompt.messages.at(0),
              L"Self illumination diffuse value:\nPlease enter a number in the range 0 \u2013 1.");
}

/** A view with two boxes, looked at from above and turned. */
class CExportWxTest : public CPovWindowWxTest {
  protected:
    void SetUp() override {
        ASSERT_TRUE(window.IsReady());
        SaveTwoBoxes(folder / "boxes.3ds");
        ASSERT_TRUE(window.View().OpenModel(file_util_ex::ConvertFromUTF8W(folder / "boxes.3ds").c_str()));
        window.View().SetTopCamera();
        window.Engine().UpdateRotAngles(30, 20);
        window.Engine().SetBkColors(0.25F, 0.5F, 0.75F);
        settings.povUseLastName = true;
        settings.povPreviewBack = true;
        settings.povDiffuse = 0.3F;
        settings.povLastName = file_util_ex::ConvertFromUTF8W(output);
    }
    void Export(std::deque<CStep> steps) {
        CModalDriver driver(std::move(steps));
        wxWindow* parent = window.View().GetCanvas()->GetWindow()->GetParent();
        RunPovExport(window.View().GetPath(), window.View(), *parent);
        EXPECT_TRUE(driver.IsDone());
    }
    CStep IsFinished() {
        return
            [this] { return IsEnabled(CPovExportDialog::kIdOpen) && IsEnabled(CPovExportDialog::kIdClose); };
    }

    CTestFolder folder;
    CIdleToolState tools;
    CViewWindow window{&tools};
    const std::string output = folder / "out.pov";
};

TEST_F(CExportWxTest, WritesWhatTheViewShowsAndClosesOnlyThen) {
    window.Engine().SetTurn(CRotation::About({0, 1, 0}, 1), 0);
    bool wasRunning = false;
    const CStep closeTooEarly = [&] {
        wxDialog* dialog = dialogs.Last();
        if (!dialog) return false;
        wasRunning = !IsEnabled(CPovExportDialog::kIdClose);
        Click(CPovExportDialog::kIdClose);
        dialog->Close();
        dialog->EndModal(wxID_CANCEL);
        return true;
    };
    Export({closeTooEarly, IsFinished(), [&] {
                EXPECT_TRUE(fs::exists(output));
                EXPECT_TRUE(dialogs.Last()->FindWindow(CPovExportDialog::kIdOpen)->HasFocus());
                EXPECT_EQ(dialogs.Last()->GetTitle(), "3ds File Export Status -" + output);
                dialogs.Last()->Close();
                return true;
            }});
    EXPECT_TRUE(wasRunning);
    C3ds2Pov::COutFormat format;
    format.diffuse = 0.3F;
    format.bkRed = 0.25F;
    format.bkGreen = 0.5F;
    format.bkBlue = 0.75F;
    C3dsDisplayWrap& engine = window.Engine();
    EXPECT_EQ(engine.GetCameraName(), "top_cam");
    ASSERT_TRUE(C3ds2Pov::TryExport({*engine.Prepared(), engine.GetTextures(), engine.SeenView()},
                                    folder / "expected.pov", format, nullptr));
    EXPECT_EQ(CTestFolder::TextOf(output), CTestFolder::TextOf(folder / "expected.pov"));
}

TEST_F(CExportWxTest, HandsTheFileToTheDesktopOnceOrTellsWhatIsMissing) {
    const CFakeOpener desktop(true);
    // A double click, as events: the second one finds the dialog on its way out.
    const auto exportOnce = [&] {
        Export({IsFinished(), When([&] {
                    Click(CPovExportDialog::kIdOpen);
                    Click(CPovExportDialog::kIdOpen);
                })});
    };
    static int asserts;
    asserts = 0;
    const wxAssertHandler_t assertsBefore = wxSetAssertHandler(
        [](const wxString&, int, const wxString&, const wxString&, const wxString&) { ++asserts; });
    exportOnce();
    EXPECT_EQ(desktop.TakeOpened(), output + "\n");
    EXPECT_TRUE(prompt.messages.empty());
    desktop.Does("exit 3");
    exportOnce();
    wxSetAssertHandler(assertsBefore);
    EXPECT_EQ(asserts, 0);
    ASSERT_EQ(prompt.messages.size(), 1u);
    EXPECT_TRUE(prompt.messages[0].starts_with(L"Unable to find POV-RAY executable."));
}

TEST_F(CExportWxTest, AsksForANameWhereThereIsNoLastOne) {
    settings.povLastName.clear();
    Export({[] { return CModalDriver::FileDialog() != nullptr; }, CModalDriver::Press(WXK_ESCAPE)});
    EXPECT_EQ(settings.povLastName, L"");
    window.View().CloseModel();
    settings.povLastName = file_util_ex::ConvertFromUTF8W(output);
    Export({});
    EXPECT_FALSE(fs::exists(output)) << "without a model there is nothing to export";
}

}  // namespace
