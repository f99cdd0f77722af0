// SPDX-License-Identifier: MIT
#pragma once

#include <wx/gdicmn.h>

#include <functional>
#include <memory>
#include <string>

#include "frame/materials/CEditSaving.h"
#include "frame/materials/CMaterialTool.h"
#include "frame/materials/CToolEdits.h"
#include "frame/materials/ui/CAuiToolButtons.h"

class CMaterialBar;
class CSession;
class CViewer3DSWindowHandler;
class wxColorPopupListener;
class wxColour;
class wxWindow;

/** What the material tools do in the main window: joins their state, their toolbar, the view and the session. */
class CMaterialCommands {
  public:
    /** What the main window does for it. */
    struct CHost {
        std::function<void(const std::wstring&)> showMessage;  ///< in the status bar
        std::function<void()> showStates;                      ///< of menus and toolbars
        std::function<void()> stopSlideShow = {};              ///< may be empty
    };
    /** All must outlive it. */
    CMaterialCommands(wxWindow& window, CMaterialTool& tool, CViewer3DSWindowHandler& view, CSession& session,
                      CHost host);
    ~CMaterialCommands();

    /** Makes the toolbar; window owns it. mainBar: another toolbar, which shows the tools that it has. */
    CMaterialBar* MakeBar(wxColorPopupListener* listener, wxAuiToolBar& mainBar);

    // --- commands ------------------------------------------------------------------------------------------
    /** Takes a tool up, or puts it down when it is in use. */
    void Choose(EMaterialTool kind, int identifier);
    void SaveEdits();
    /** See CSessionFrame::MayLoseEdits. */
    [[nodiscard]] bool MayLoseEdits();
    /** Puts the tool in use down. False when none is. */
    bool Cancel();
    /** Uses the tool on the node that was pressed last, or without one on what is in the middle of the view; false when
     * no tool is in use. */
    bool ApplyAgain();

    // --- what the window is told ---------------------------------------------------------------------------
    void OnColorChosen(const wxColour& color);
    void OnColorPopupClosed() { m_edits.EndFollowing(); }
    /** Another scene is shown, or none. */
    void OnOpened();
    /** The scene was edited, undone or redone. */
    void OnEdited();

  private:
    void OnToolChanged(EMaterialTool before);
    void Apply(const std::string& node);
    void Follow(EMaterialTool which);
    void Slide(EMaterialTool which, int position);
    void ShowFilter(const std::string& node);
    void EndFilter();
    [[nodiscard]] bool AskForReplacement();
    [[nodiscard]] std::wstring AskForScript(const std::wstring& folder, const std::wstring& name);

    wxWindow& m_window;
    CMaterialTool& m_tool;
    CViewer3DSWindowHandler& m_view;
    CSession& m_session;
    CHost m_host;
    CToolEdits m_edits;
    CEditSaving m_saving;
    std::string m_filtered;  ///< the node whose materials are shown; empty: all is
    std::string m_lastPressed;
    CMaterialBar* m_bar = nullptr;
    std::unique_ptr<CAuiToolButtons> m_buttons, m_mainButtons;
};
