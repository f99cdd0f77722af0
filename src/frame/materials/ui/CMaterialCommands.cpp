// SPDX-License-Identifier: MIT
#include "frame/materials/ui/CMaterialCommands.h"

#include <wx/colour.h>

#include <cmath>
#include <utility>

#include "base/text/lng.h"
#include "base/text/utf8_text.h"
#include "engine/C3dsDisplayWrap.h"
#include "files/file_util_ex.h"
#include "frame/command_ids.h"
#include "frame/materials/shared_material.h"
#include "frame/materials/ui/CMaterialBar.h"
#include "frame/materials/ui/CReplaceDlg.h"
#include "session/CSession.h"
#include "view/ui/CViewer3DSWindowHandler.h"
#include "widgets/ui/CBXFileDialogI.h"

CMaterialCommands::CMaterialCommands(wxWindow& window, CMaterialTool& tool, CViewer3DSWindowHandler& view,
                                     CSession& session, CHost host)
    : m_window(window),
      m_tool(tool),
      m_view(view),
      m_session(session),
      m_host(std::move(host)),
      m_edits(session),
      m_saving(session, [this](const std::wstring& folder, const std::wstring& name) {
          return AskForScript(folder, name);
      }) {
    m_tool.SetActions({.stopSlideShow = m_host.stopSlideShow,
                       .changed = [this](EMaterialTool before) { OnToolChanged(before); },
                       .apply = [this](const std::string& node) { Apply(node); },
                       .miss =
                           [this] {
                               if (m_tool.Kind() == EMaterialTool::Filter) (void)Cancel();
                           }});
}

CMaterialCommands::~CMaterialCommands() {
    m_tool.SetActions({});
    m_tool.SetToolBars(nullptr, nullptr);
}

CMaterialBar* CMaterialCommands::MakeBar(wxColorPopupListener* listener, wxAuiToolBar& mainBar) {
    m_bar = new CMaterialBar(&m_window, listener,
                             {[this](EMaterialTool which, int position) { Slide(which, position); },
                              [this] { m_edits.EndFollowing(); }});
    m_bar->ShowValues(m_tool.Values());
    m_buttons = std::make_unique<CAuiToolButtons>(*m_bar);
    m_mainButtons = std::make_unique<CAuiToolButtons>(mainBar);
    m_tool.SetToolBars(m_buttons.get(), m_mainButtons.get());
    return m_bar;
}

// --- choosing a tool -------------------------------------------------------------------------------------

void CMaterialCommands::Choose(EMaterialTool kind, int identifier) {
    const bool isInUse = m_tool.Kind() == kind && m_tool.Identifier() == identifier;
    if (isInUse) {
        (void)Cancel();
    } else if (kind != EMaterialTool::Replace || AskForReplacement()) {
        (void)m_tool.SetTool(kind, identifier);
    }
}

bool CMaterialCommands::Cancel() {
    return m_tool.SetTool(EMaterialTool::None, CMaterialTool::kNoIdentifier);
}

bool CMaterialCommands::AskForReplacement() {
    const CTurns::CHold hold(m_session.Turns());
    const CDocument& document = m_session.Document();
    const std::wstring& file = document.modelPath.empty() ? document.path : document.modelPath;
    auto chosen = ::AskForReplacement(m_window, m_view, file_util_ex::GetFilePath(file), m_lastPressed);
    if (chosen) m_tool.SetReplacement(std::move(*chosen));
    return chosen.has_value();
}

void CMaterialCommands::OnToolChanged(EMaterialTool before) {
    m_edits.Forget();
    if (before == EMaterialTool::Filter) EndFilter();
    m_view.UpdateCursor();
    m_host.showStates();
    m_host.showMessage(ToolHint(m_tool.Kind()));
}

// --- using it --------------------------------------------------------------------------------------------

void CMaterialCommands::Apply(const std::string& node) {
    m_lastPressed = node;
    if (m_tool.Kind() == EMaterialTool::Filter) return ShowFilter(node);
    const CStatus used = m_edits.Use(m_tool.Kind(), node, m_tool.Values());
    if (used)
        m_host.showMessage(ToolMessage(m_tool.Kind(), node, m_tool.Values()));
    else
        m_host.showMessage(AboutNode(node, lng::Text(used.Error())));
}

bool CMaterialCommands::ApplyAgain() {
    if (!m_tool.IsActive() || m_session.IsBusy()) return false;
    if (m_lastPressed.empty()) {
        const C2DRect& size = m_view.GetEngine().GetPreviewSize();
        const char* middle = m_view.PickNode(static_cast<int>((size.right - size.left) / 2),
                                             static_cast<int>((size.bottom - size.top) / 2));
        if (middle) m_lastPressed = middle;
    }
    if (m_lastPressed.empty())
        m_host.showMessage(lng::Text("There is no part in the middle of the view."));
    else
        Apply(std::string(m_lastPressed));
    m_view.Redraw();
    return true;
}

void CMaterialCommands::Follow(EMaterialTool which) {
    if (!m_edits.Follow(which, m_tool.Values())) return;
    m_host.showMessage(ToolMessage(which, m_edits.LastNode(), m_tool.Values()));
    m_view.RedrawQuickly();
}

void CMaterialCommands::Slide(EMaterialTool which, int position) {
    const bool isShininess = which == EMaterialTool::Shininess;
    if (isShininess)
        m_tool.SetShininess(position);
    else
        m_tool.SetTransparency(position);
    Follow(which);
}

void CMaterialCommands::OnColorChosen(const wxColour& color) {
    m_tool.SetColor({color.Red(), color.Green(), color.Blue()});
    Follow(EMaterialTool::Color);
}

// --- saving ----------------------------------------------------------------------------------------------

void CMaterialCommands::SaveEdits() {
    m_edits.EndFollowing();
    if (m_saving.Save())
        m_host.showMessage(
            lng::Text("The edits are saved in %s.",
                      file_util_ex::ShownName(file_util_ex::GetFileName(m_session.EditsScript()))));
}

bool CMaterialCommands::MayLoseEdits() {
    m_edits.EndFollowing();
    if (m_saving.MayLose()) return true;
    // Its next step would ask again.
    if (m_host.stopSlideShow) m_host.stopSlideShow();
    return false;
}

std::wstring CMaterialCommands::AskForScript(const std::wstring& folder, const std::wstring& name) {
    const CRegEntryGuard entry({});  // beside the model, wherever the last one was saved
    return CBXFileDialogI::LaunchSaveDialog(&m_window, L"orv", lng::Text("Scene scripts (*.orv)|*.orv||"),
                                            lng::Text("Save the edits to a script"), folder, name);
}

// --- the filter ------------------------------------------------------------------------------------------

void CMaterialCommands::ShowFilter(const std::string& node) {
    const CPreparedScene* scene = m_view.GetEngine().Prepared();
    if (!scene) return;
    const CMaterialShare share = ShareOf(*scene, node);
    m_filtered = node;
    m_view.GetEngine().SetEmphasis(share.nodes);
    m_view.Redraw();
    m_host.showMessage(AboutNode(node, share.nodes.size() < 2
                                           ? lng::Text("no other part has its material")
                                           : lng::TextN("its material is on %s part",
                                                        "its material is on %s parts", share.nodes.size())));
}

void CMaterialCommands::EndFilter() {
    m_filtered.clear();
    m_view.GetEngine().SetEmphasis(std::nullopt);
    m_view.Redraw();
}

// --- what happens meanwhile ------------------------------------------------------------------------------

void CMaterialCommands::OnOpened() {
    m_edits.Forget();
    m_lastPressed.clear();
    m_filtered.clear();
    m_view.GetEngine().SetEmphasis(std::nullopt);
}

void CMaterialCommands::OnEdited() {
    const CPreparedScene* scene = m_view.GetEngine().Prepared();
    if (!m_filtered.empty() && scene) m_view.GetEngine().SetEmphasis(ShareOf(*scene, m_filtered).nodes);
}
