// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>
#include <gtk/gtk.h>
#include <wx/checkbox.h>
#include <wx/dialog.h>
#include <wx/filedlg.h>
#include <wx/radiobut.h>
#include <wx/textctrl.h>
#include <wx/uiaction.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "base/math/rotation_of_angles.h"
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
#include "widgets/CModalDriver.h"
#include "widgets/CUserPrompt.h"

namespace {

namespace fs = std::filesystem;
using CStep = CModalDriver::CStep;

/** Keeps what would have been shown. */
class CMessages final : public CUserPrompt {
  public:
    explicit CMessages(std::vector<std::wstring>& shown) : m_shown(shown) {}
    void ShowMessage(const std::wstring& text) override { m_shown.push_back(text); }
    bool AskYesNo(const std::wstring&) override { return false; }
    void BeginBusy() override {}
    void EndBusy() override {}

  private:
    std::vector<std::wstring>& m_shown;
};

/** Settings, messages and the dialog that is open. */
class CPovWindowWxTest : public testing::Test {
  protected:
    CPovWindowWxTest() : before(CUserPrompt::Install(std::make_unique<CMessages>(messages))) {
        dialogs.Register();
    }
    ~CPovWindowWxTest() override { CUserPrompt::Install(std::move(before)); }

    template <class Control>
    Control& Get(const wxString& labelOrName) {
        wxWindow* found = wxWindow::FindWindowByLabel(labelOrName, dialogs.Last());
        if (!found) found = wxWindow::FindWindowByName(labelOrName, dialogs.Last());
        return dynamic_cast<Control&>(*found);
    }
    /** A step: once the dialog can be typed into. */
    CStep When(const std::function<void()>& work) {
        return [this, work] {
            wxDialog* dialog = dialogs.Last();
            if (!dialog || !gtk_window_is_active(GTK_WINDOW(dialog->GetHandle()))) return false;
            work();
            return true;
        };
    }
    void Click(int id) { wxQueueEvent(dialogs.Last()->FindWindow(id), new wxCommandEvent(wxEVT_BUTTON, id)); }
    bool IsEnabled(int id) { return dialogs.Last() && dialogs.Last()->FindWindow(id)->IsEnabled(); }

    CSettingsGuard guard;
    CSettings& settings = CSettings::Instance();
    std::vector<std::wstring> messages;
    std::unique_ptr<CUserPrompt> before;
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
    CStep Type(const wxString& field, const char* text) {
        return When([this, field, text] {
            auto& control = Get<wxTextCtrl>(field);
            control.SetFocus();
            control.SelectAll();
            for (const char* key = text; *key; ++key) wxUIActionSimulator().Char(*key);
        });
    }
    CStep Shows(const wxString& field, const wxString& text) {
        return [this, field, text] { return Get<wxTextCtrl>(field).GetValue() == text; };
    }
    void ChangeAll() {
        Get<wxCheckBox>("Output Textures").SetValue(false);
        Get<wxCheckBox>("Use last pov file name").SetValue(true);
        Get<wxCheckBox>("Enable radiosity").SetValue(true);
        Get<wxRadioButton>("Use preview backgroud").SetValue(true);
    }

    wxFrame* frame = new wxFrame(nullptr, wxID_ANY, "main");
};

TEST_F(COptionsWxTest, EnterStoresAndEscapeDoesNot) {
    const CSettings defaults = settings;
    EXPECT_EQ(Show({When([&] { ChangeAll(); }), Type("Diffuse value", "0.2"), Shows("Diffuse value", "0.2"),
                    CModalDriver::Press(WXK_ESCAPE)}),
              wxID_CANCEL);
    EXPECT_EQ(settings, defaults);
    // Letters are refused, and a comma counts as a point.
    EXPECT_EQ(Show({When([&] { ChangeAll(); }), Type("Diffuse value", "x0,25"),
                    Shows("Diffuse value", "0.25"), CModalDriver::Press(WXK_RETURN)}),
              5100);
    CSettings changed = defaults;
    changed.povOutputTex = false;
    changed.povUseLastName = changed.povRadiosity = changed.povPreviewBack = true;
    changed.povDiffuse = 0.25F;
    EXPECT_EQ(settings, changed);
}

TEST_F(COptionsWxTest, DefaultsAreShownAndStoredByOkOnly) {
    settings.povOutputTex = false;
    settings.povPreviewBack = true;
    settings.povSelfDiff = 0.9F;
    const CSettings own = settings;
    const CStep restore = When([&] {
        EXPECT_EQ(Get<wxTextCtrl>("Self illumination diffuse value").GetValue(), "0.900");
        EXPECT_TRUE(Get<wxRadioButton>("Use preview backgroud").GetValue());
        Click(Get<wxWindow>("Restore Defaults").GetId());
    });
    const CStep restored = Shows("Self illumination diffuse value", "0.100");
    EXPECT_EQ(Show({restore, restored, When([&] { Click(wxID_CANCEL); })}), wxID_CANCEL);
    EXPECT_EQ(settings, own);
    EXPECT_EQ(Show({restore, restored, When([&] { Click(CPOVRaySettingsDlg::kIdOk); })}), 5100);
    EXPECT_EQ(settings, CSettings());
}

TEST_F(COptionsWxTest, AWrongNumberIsToldAndLeadsBackToItsField) {
    const CSettings defaults = settings;
    const auto told = [&](std::size_t count) {
        return CStep([this, count] { return messages.size() == count; });
    };
    const wxString field = "Self illumination diffuse value";
    EXPECT_EQ(Show({When([&] {
                        ChangeAll();
                        Get<wxTextCtrl>(field).Clear();
                    }),
                    CModalDriver::Press(WXK_RETURN), told(1), When([&] {
                        EXPECT_TRUE(Get<wxTextCtrl>(field).HasFocus());
                        Get<wxTextCtrl>(field).ChangeValue("1.5");
                        Click(CPOVRaySettingsDlg::kIdOk);
                    }),
                    told(2), When([&] { Click(wxID_CANCEL); })}),
              wxID_CANCEL);
    EXPECT_EQ(settings, defaults);
    EXPECT_EQ(messages[0],
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
    static std::string Read(const std::string& path) {
        std::ostringstream text;
        text << std::ifstream(path).rdbuf();
        return text.str();
    }

    CTestFolder folder;
    CIdleToolState tools;
    CViewWindow window{&tools};
    const std::string output = folder / "out.pov";
};

TEST_F(CExportWxTest, WritesWhatTheViewShowsAndClosesOnlyThen) {
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
    format.cameraName = "top_cam";
    format.bkRed = 0.25F;
    format.bkGreen = 0.5F;
    format.bkBlue = 0.75F;
    format.angleY = -20;
    format.angleZ = -120;
    ASSERT_TRUE(C3ds2Pov::TryExport(window.Engine().Get3dsFile(), folder / "expected.pov", format, nullptr));
    EXPECT_EQ(Read(output), Read(folder / "expected.pov"));
    EXPECT_TRUE(messages.empty());
}

TEST_F(CExportWxTest, WritesAModelThatTheMouseTurnedAsItIsSeen) {
    const CTrackBall& ball = window.View().GetTrackBall();
    const wxSize canvas = window.View().GetCanvas()->GetWindow()->GetClientSize();
    window.MoveTo(canvas.x / 2, canvas.y / 2);
    window.Hand().MouseDown();
    ASSERT_TRUE(CViewWindow::WaitFor([&] { return window.View().GetDragState() == EDragState::Dragging; }));
    window.MoveTo(canvas.x / 2 + 40, canvas.y / 2 + 30);
    ASSERT_TRUE(CViewWindow::WaitFor([&] { return ball.Matrix()[0] < 0.99F; }));
    window.Hand().MouseUp();
    ASSERT_TRUE(CViewWindow::WaitFor([&] { return window.View().GetDragState() == EDragState::Idle; }));
    Export({IsFinished(), CModalDriver::Press(WXK_ESCAPE)});

    // The camera goes round the model the other way: it stands where what is seen from above turns up from.
    const std::string text = Read(output);
    const std::size_t eye = text.find("Eye=Center+");
    ASSERT_NE(eye, std::string::npos);
    CVec3 back;
    ASSERT_EQ(std::sscanf(&text[eye], "Eye=Center+<%f,%f,%f>", &back.x, &back.y, &back.z), 3);
    const CVec3 above = (CMat4{ball.Matrix()} * RotationOfAngles(20, 0, 30)).TransformDirection(back);
    EXPECT_NEAR(above.x, 0, 1e-3F);
    EXPECT_NEAR(above.y, 0, 1e-3F);
    EXPECT_NEAR(above.z, 1, 1e-3F);
}

TEST_F(CExportWxTest, AFailureEndsAsSilentlyAsASuccess) {
    settings.povLastName = file_util_ex::ConvertFromUTF8W(folder / "missing/out.pov");
    Export({IsFinished(), CModalDriver::Press(WXK_ESCAPE)});
    EXPECT_FALSE(fs::exists(folder / "missing/out.pov"));
    EXPECT_TRUE(messages.empty());
    // Only who wants to open it is told that there is nothing.
    Export({IsFinished(), When([&] { Click(CPovExportDialog::kIdOpen); })});
    ASSERT_EQ(messages.size(), 1u);
    EXPECT_EQ(messages[0].find(L"POV-R"), std::wstring::npos);
}

TEST_F(CExportWxTest, HandsTheFileToTheDesktopOnceOrTellsWhatIsMissing) {
    const char* path = getenv("PATH");
    const std::string pathBefore = path ? path : "";
    const auto addProgram = [&](const char* name, const std::string& text) {
        fs::permissions(folder.Add(name, "#!/bin/sh\n" + text), fs::perms::owner_all);
    };
    // A double click, as events: the second one finds the dialog on its way out.
    const auto export2 = [&] {
        setenv("PATH", folder.Path().c_str(), 1);
        Export({IsFinished(), When([&] {
                    Click(CPovExportDialog::kIdOpen);
                    Click(CPovExportDialog::kIdOpen);
                })});
        setenv("PATH", pathBefore.c_str(), 1);
    };
    static int asserts;
    asserts = 0;
    const wxAssertHandler_t assertsBefore = wxSetAssertHandler(
        [](const wxString&, int, const wxString&, const wxString&, const wxString&) { ++asserts; });
    addProgram("xdg-open", "echo \"$1\" >>'" + (folder / "opened") + "'\n");
    export2();
    EXPECT_EQ(Read(folder / "opened"), output + "\n");
    EXPECT_TRUE(messages.empty());
    addProgram("xdg-open", "exit 3\n");
    export2();
    addProgram("povray", "");
    export2();
    fs::remove(folder / "xdg-open");
    export2();
    wxSetAssertHandler(assertsBefore);
    EXPECT_EQ(asserts, 0);
    ASSERT_EQ(messages.size(), 3u);
    EXPECT_EQ(
        messages[0].find(L"Unable to find POV-RAY executable. Please download POV-RAY from the: https://"),
        0u);
    EXPECT_NE(messages[1].find(L"not associated"), std::wstring::npos);
    EXPECT_NE(messages[2].find(L"xdg-utils"), std::wstring::npos);
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
