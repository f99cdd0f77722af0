// SPDX-License-Identifier: MIT
// The bars around the view: what stands where, and which are shown.
#include <wx/aui/auibar.h>
#include <wx/menu.h>
#include <wx/wupdlock.h>

#include <algorithm>
#include <functional>
#include <vector>

#include "base/text/lng.h"
#include "engine/CGLCanvasI.h"
#include "frame/materials/ui/CMaterialBar.h"
#include "frame/materials/ui/CMaterialCommands.h"
#include "frame/model_list/ui/CModelListControl.h"
#include "frame/model_list/ui/CModelsLstToolBar.h"
#include "frame/slideshow/ui/CSlideShow.h"
#include "frame/ui/CAViewerFrame.h"
#include "frame/ui/CAnimationBar.h"
#include "frame/ui/CSceneStatusBar.h"
#include "frame/ui/command_menus.h"
#include "frame/ui/command_tool_bar.h"
#include "modeldb/ui/CModelsDlg.h"
#include "settings/CSettings.h"
#include "view/ui/CViewer3DSWindowHandler.h"
#include "widgets/access/ui/accessible_role.h"

namespace {

constexpr char kToolBarPane[] = "toolbar";
constexpr char kMaterialPane[] = "materials";
constexpr char kAnimationPane[] = "animation";
constexpr char kModelListPane[] = "models";

wxAuiPaneInfo ToolPane(const char* name) {
    return wxAuiPaneInfo().Name(name).ToolbarPane().Top().Gripper(false).Resizable().Floatable(false);
}

/** A bar as wide as the window, hidden at first. */
wxAuiPaneInfo BarBelow(const char* name, const wxWindow& bar) {
    return wxAuiPaneInfo()
        .Name(name)
        .Bottom()
        .CaptionVisible(false)
        .CloseButton(false)
        .PaneBorder(false)
        .DockFixed()
        .BestSize(bar.GetBestSize())
        .Hide();
}

}  // namespace

void CAViewerFrame::MakePanes() {
    m_aui.SetManagedWindow(this);
    m_menuBar = MakeMenuBar().release();
    SetMenuBar(m_menuBar);
    AlignHelpRight(*m_menuBar);
    SetAcceleratorTable(MakeAcceleratorTable());
    m_statusBar = new CSceneStatusBar(this, [this] { ShowNotes(); });
    SetStatusBar(m_statusBar);
    m_toolBar = MakeToolBar(this);
    m_animationBar = new CAnimationBar(
        this, {[this](bool play) { PlayAnimation(play); }, [this](int frame) { ShowFrame(frame); }});
    wxWindow* canvas = m_view->GetCanvas()->GetWindow();
    SetAccessibleRole(*canvas, EAccessibleRole::View);
    MakeMaterialPane();
    MakeSlideShow();
    m_state.isToolBarShown = CSettings::Instance().showToolBar;
    m_aui.AddPane(canvas, wxAuiPaneInfo().CenterPane().PaneBorder(false));
    m_aui.AddPane(m_toolBar, ToolPane(kToolBarPane).Show(m_state.isToolBarShown));
    m_aui.AddPane(m_animationBar, BarBelow(kAnimationPane, *m_animationBar));
    MakeModelList();
}

void CAViewerFrame::MakeModelList() {
    wxWindow* canvas = m_view->GetCanvas()->GetWindow();
    m_modelList = std::make_unique<CModelListControl>(
        *this, *m_session,
        CModelListControl::CActions{[canvas] { canvas->SetFocus(); },
                                    [this](int keyCode) {
                                        const bool isUsed = keyCode == WXK_SPACE || keyCode == WXK_BACK;
                                        if (isUsed) OnViewKeyDown(keyCode);
                                        return isUsed;
                                    }});
    m_state.isModelListShown = CSettings::Instance().showModelList;
    m_aui.AddPane(&m_modelList->Bar(), BarBelow(kModelListPane, m_modelList->Bar()).Layer(1));
}

void CAViewerFrame::MakeMaterialPane() {
    m_materialBar = m_materials->MakeBar(this, *m_toolBar);
    m_state.isMaterialBarShown = CSettings::Instance().showMaterialBar;
    m_aui.AddPane(m_materialBar, ToolPane(kMaterialPane).Row(1).Position(1).Show(m_state.isMaterialBarShown));
}

void CAViewerFrame::ToggleFullScreen() {
    ShowFullScreen(!IsFullScreen(), wxFULLSCREEN_ALL);
    FollowFullScreen();
}

void CAViewerFrame::FollowFullScreen() {
    m_state.isFullScreen = IsFullScreen();
    // If the desktop makes the window full screen, the toolkit does not hide its bars.
    m_menuBar->Show(!m_state.isFullScreen);
    m_statusBar->Show(!m_state.isFullScreen);
    SendSizeEvent();
    if (!m_state.isFullScreen && GetMenuBar() != m_menuBar) SetMenuBar(m_menuBar);
    ShowPanes();
    m_slideShow->OnFullScreen();
    ShowCommandStates();
}

/** In full screen only the view is shown; the panes return together with the menus. */
void CAViewerFrame::ShowPanes() {
    const bool restored = RestoreBrowser();
    const auto show = [this](const char* name, bool wanted) {
        wxAuiPaneInfo& pane = m_aui.GetPane(name);
        const bool changes = pane.IsShown() != (wanted && !m_state.isFullScreen);
        if (changes) pane.Show(!pane.IsShown());
        return changes;
    };
    const bool toolBar = show(kToolBarPane, m_state.isToolBarShown);
    const bool slideShow = show(kSlideShowPane, m_state.isToolBarShown);
    const bool materials = show(kMaterialPane, m_state.isMaterialBarShown);
    const bool animation = show(kAnimationPane, m_state.isAnimated);
    const bool modelList = show(kModelListPane, m_state.isModelListShown);
    const bool browser = m_browser && show(kBrowserPane, m_state.isBrowserShown);
    m_modelList->SetShown(m_state.isModelListShown && !m_state.isFullScreen);
    if (!toolBar && !slideShow && !materials && !animation && !modelList && !browser && !restored) return;
    // A hidden control would keep the keyboard focus.
    const bool isBrowsing = m_state.isBrowserShown && m_browser && m_browser->IsDescendant(FindFocus());
    if (wxWindow* canvas = m_view->GetCanvas()->GetWindow();
        (animation || materials || slideShow || modelList || browser) && !isBrowsing && !canvas->HasFocus())
        canvas->SetFocus();
    // The manager would paint the view at once, although a repaint follows anyway.
    const wxWindowUpdateLocker noPainting(m_view->GetCanvas()->GetWindow());
    m_aui.Update();
}

void CAViewerFrame::StepPane(bool back) {
    struct CStop {
        wxWindow* pane;
        std::function<void()> focus;
    };
    wxWindow* canvas = m_view->GetCanvas()->GetWindow();
    std::vector<CStop> stops{{canvas, [canvas] { canvas->SetFocus(); }}};
    const auto add = [&stops](wxWindow* pane, const std::function<void()>& focus) {
        if (pane && pane->IsShownOnScreen()) stops.push_back({pane, focus});
    };
    add(m_browser, [this] { m_browser->TakeFocus(); });
    add(&m_modelList->Bar(), [this] { m_modelList->TakeFocus(); });
    add(m_animationBar, [this] { m_animationBar->TakeFocus(); });
    for (wxWindow* bar : std::initializer_list<wxWindow*>{m_toolBar, m_slideShow->Bar(), m_materialBar})
        add(bar, [bar] { bar->SetFocus(); });
    wxWindow* focus = FindFocus();
    const auto here = std::ranges::find_if(
        stops, [focus](const CStop& stop) { return stop.pane == focus || stop.pane->IsDescendant(focus); });
    const std::size_t from = here == stops.end() ? 0 : static_cast<std::size_t>(here - stops.begin());
    stops[(from + (back ? stops.size() - 1 : 1)) % stops.size()].focus();
}

void CAViewerFrame::ToggleToolBar() {
    CSettings& settings = CSettings::Instance();
    settings.showToolBar = !settings.showToolBar;
    m_state.isToolBarShown = settings.showToolBar;
    ShowPanes();
}

void CAViewerFrame::ToggleMaterialBar() {
    CSettings& settings = CSettings::Instance();
    settings.showMaterialBar = !settings.showMaterialBar;
    m_state.isMaterialBarShown = settings.showMaterialBar;
    ShowPanes();
}

void CAViewerFrame::ToggleModelList() {
    CSettings& settings = CSettings::Instance();
    settings.showModelList = !settings.showModelList;
    m_state.isModelListShown = settings.showModelList;
    ShowPanes();
    if (m_state.isModelListShown) m_modelList->TakeFocus();
}
