// SPDX-License-Identifier: MIT
#include "frame/model_list/ui/CModelsLstToolBar.h"

#include <wx/sizer.h>

#include <utility>

#include "base/text/lng.h"
#include "frame/model_list/CListToolBarMgr.h"
#include "frame/model_list/ui/CScrollButton.h"
#include "widgets/ui/accessible_name.h"

CModelsLstToolBar::CModelsLstToolBar(wxWindow* parent, CListToolBarMgr& manager, CActions actions)
    : wxPanel(parent, wxID_ANY, wxDefaultPosition, wxDefaultSize, wxBORDER_NONE) {
    SetAccessibleName(*this, lng::Text("Model list"));
    m_back = MakeButton(manager, false);
    m_strip = new CModelStrip(this, manager, {std::move(actions.leave), std::move(actions.viewKey), [this] {
                                                  ShowWhatIsUseful();
                                              }});
    m_on = MakeButton(manager, true);
    auto* row = new wxBoxSizer(wxHORIZONTAL);  // from the right where the language is written so
    row->Add(m_back, wxSizerFlags().Expand());
    row->Add(m_strip, wxSizerFlags(1).Expand());
    row->Add(m_on, wxSizerFlags().Expand());
    SetSizerAndFit(row);
    ShowWhatIsUseful();
}

CScrollButton* CModelsLstToolBar::MakeButton(CListToolBarMgr& manager, bool towardsEnd) {
    const bool fromRight = GetLayoutDirection() == wxLayout_RightToLeft;
    const std::wstring name =
        towardsEnd ? lng::Text("Scroll to later models") : lng::Text("Scroll to earlier models");
    return new CScrollButton(this, towardsEnd != fromRight, name,
                             {[this, towardsEnd] {
                                  const long step = m_strip->Cells().CellWidth() / 3;
                                  m_strip->ScrollBy(towardsEnd ? step : -step);
                              },
                              [&manager](bool pressed) { manager.SetPressed(pressed); }});
}

void CModelsLstToolBar::ShowWhatIsUseful() {
    if (!m_back || !m_on) return;  // while it is made
    const CStripLayout& layout = m_strip->Cells();
    m_back->SetUseful(layout.Offset() > 0);
    m_on->SetUseful(layout.Offset() < layout.MaxOffset());
}
