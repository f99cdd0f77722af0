// SPDX-License-Identifier: MIT
#pragma once

#include <wx/event.h>
#include <wx/timer.h>

#include <memory>
#include <optional>
#include <string>

#include "frame/slideshow/CSlideShowMgr.h"
#include "frame/slideshow/ui/CPointerHider.h"
#include "frame/slideshow/ui/CScreenSaverHold.h"

class CSlideShowBar;
class CSlideShowFrame;

/** The slideshow of the main window: its rules (CSlideShowMgr), its toolbar, and the full-screen show.
 *
 * In full screen a running show hides the pointer, keeps the screen saver away and shows each model's name for a
 * moment, unless the model brings a caption. */
class CSlideShow final : private CSlideShowHost {
  public:
    /** A model that was opened, or could not be. */
    struct COpening {
        bool hasFailed = false;
        int models = 0;  ///< in its folder
        std::wstring name;
        /** Of a script's scene; see CSlideShowMgr::OnScriptScene. */
        struct CScene {
            int timeMs = 0;
            std::wstring script;
            std::size_t index = 0, count = 1;
            int loop = 0;
        };
        std::optional<CScene> scene;
    };

    /** The bar becomes a child of parent; view is the window of the 3D view. All outlive it. */
    CSlideShow(CSlideShowFrame& frame, wxWindow& parent, wxWindow& view);
    ~CSlideShow() override;

    [[nodiscard]] wxWindow* Bar() const;
    [[nodiscard]] bool IsRunning() const { return m_manager.IsRunning(); }
    /** There is another model to go to. */
    [[nodiscard]] bool CanStart() const { return m_button != EShowButton::StartDisabled; }
    void Start() { m_manager.Start(); }
    void Stop() { m_manager.Stop(); }
    void StartFullScreen();
    /** Leaves full screen and ends the show, if it is, or was, one in full screen; else returns false. */
    bool LeaveFullScreen();

    /** A model is about to be opened; OnOpened follows. */
    void OnOpening();
    void OnOpened(const COpening& opening);
    /** The number of models in the folder has changed without an opening. */
    void OnCounted(int models);
    /** The window has entered or left full screen. */
    void OnFullScreen();
    /** The left button was pressed in the view, or a tool was chosen. */
    void OnTakenInHand();
    /** The right button was pressed in the view and has cancelled no tool. */
    void OnLookedAt() { m_manager.Rearm(); }

  private:
    [[nodiscard]] std::unique_ptr<CSlideShowTimer> StartTimer(int periodMs) override;
    void ShowNext() override;
    [[nodiscard]] bool IsBusy() const override;
    [[nodiscard]] bool HoldsStep() const override;
    [[nodiscard]] bool HasUnsavedEdits() const override;
    void CancelTool() override;
    void ShowButton(EShowButton button) override;
    void Tell(EShowEnd why) override;

    void KeepPicture();
    void ShowName(const std::wstring& name);
    void Follow();

    CSlideShowFrame& m_frame;
    wxWindow& m_view;
    CSlideShowMgr m_manager{*this};
    CSlideShowBar* m_bar = nullptr;
    EShowButton m_button = EShowButton::StartDisabled;
    bool m_ownsFullScreen = false;  ///< the window is in full screen for the show
    std::optional<CPointerHider> m_pointer;
    std::optional<CScreenSaverHold> m_screenSaver;
    std::wstring m_name;  ///< that is shown as the caption
    wxTimer m_nameTimer;
};
