// SPDX-License-Identifier: MIT
#include "frame/materials/ui/CMaterialBar.h"

#include <wx/slider.h>
#include <wx/stattext.h>

#include <utility>

#include "base/text/lng.h"
#include "frame/command_table.h"
#include "frame/materials/ui/wxColourCombo.h"
#include "widgets/tools/ui/CToolBarKeys.h"
#include "widgets/tools/ui/tool_bar_art.h"
#include "widgets/tools/ui/tool_icon.h"
#include "widgets/ui/accessible_name.h"

namespace {

constexpr int kSlideEndMs = 800;

/** Stands behind its slider. The toolkit would take it for the label of what follows. */
class CValueText final : public wxStaticText {
  public:
    using wxStaticText::wxStaticText;
    [[nodiscard]] bool GTKWidgetNeedsMnemonic() const override { return false; }
};

}  // namespace

CMaterialBar::CMaterialBar(wxWindow* parent, wxColorPopupListener* listener, CActions actions)
    : wxAuiToolBar(parent, wxID_ANY, wxDefaultPosition, wxDefaultSize,
                   wxAUI_TB_DEFAULT_STYLE | wxAUI_TB_OVERFLOW | wxAUI_TB_HORIZONTAL),
      m_actions(std::move(actions)),
      m_slideTimer(this) {
    SetArtProvider(MakeToolBarArt());
    CToolBarKeys::Give(*this);
    SetAccessibleName(*this, lng::Text("Material toolbar"));
    SetToolBitmapSize(parent->FromDIP(wxSize(kToolIconSize, kToolIconSize)));
    AddCommand(kCmdToolColor);
    m_color = new wxColourCombo(this, listener);
    AddControl(m_color);
    AddSeparator();
    AddCommand(kCmdToolShininess);
    m_shininess = AddSlider(EMaterialTool::Shininess, lng::Text("Shininess"));
    AddSeparator();
    AddCommand(kCmdToolTransparency);
    m_transparency = AddSlider(EMaterialTool::Transparency, lng::Text("Transparency"));
    AddSeparator();
    for (const int id : {kCmdToolReplace, kCmdToolFilter}) AddCommand(id);
    AddSeparator();
    AddCommand(kCmdSaveEdits);
    Realize();
    ShowArrowWhereNeeded(*this);
    Bind(
        wxEVT_TIMER,
        [this](wxTimerEvent&) {
            // A hand that rests on the slider has not let go.
            if (wxGetMouseState().LeftIsDown())
                m_slideTimer.StartOnce(kSlideEndMs);
            else
                EndSlide();
        },
        m_slideTimer.GetId());
}

void CMaterialBar::AddCommand(int id) {
    const CCommand& command = *FindCommand(id);
    const wxString tip = lng::Text(command.toolTip);
    AddTool(WidgetIdOf(id), tip, LoadIcon(command.icon), LoadFadedIcon(command.icon),
            command.isToggle ? wxITEM_CHECK : wxITEM_NORMAL, tip, tip, nullptr);
}

CMaterialBar::CSlider CMaterialBar::AddSlider(EMaterialTool which, const std::wstring& name) {
    const CSlider made{new wxSlider(this, wxID_ANY, 0, 0, CToolValues::kSliderMax, wxDefaultPosition,
                                    FromDIP(wxSize(110, -1))),
                       new CValueText(this, wxID_ANY, SliderText(CToolValues::kSliderMax))};
    made.text->SetMinSize(made.text->GetBestSize());
    SetAccessibleName(*made.slider, name);
    made.slider->SetToolTip(name);
    made.slider->SetPageSize(1);  // the wheel and the page keys go by steps, too
    made.slider->Bind(wxEVT_SLIDER, [this, which, made](wxCommandEvent&) { OnSlide(which, made); });
    made.slider->Bind(wxEVT_SCROLL_THUMBRELEASE, [this](wxScrollEvent& event) {
        EndSlide();
        event.Skip();
    });
    made.slider->Bind(wxEVT_KILL_FOCUS, [this](wxFocusEvent& event) {
        EndSlide();
        event.Skip();
    });
    AddControl(made.slider);
    AddControl(made.text);
    return made;
}

void CMaterialBar::OnSlide(EMaterialTool which, const CSlider& slider) {
    const int position = slider.slider->GetValue();
    slider.text->SetLabel(SliderText(position));
    m_slideTimer.StartOnce(kSlideEndMs);
    if (m_actions.slide) m_actions.slide(which, position);
}

void CMaterialBar::EndSlide() {
    m_slideTimer.Stop();
    if (m_actions.slideEnd) m_actions.slideEnd();
}

bool CMaterialBar::IsPopupShown() const {
    return m_color->IsPopupShown();
}

void CMaterialBar::ShowValues(const CToolValues& values) {
    m_color->SetColour(wxColour(values.color.r, values.color.g, values.color.b));
    const auto show = [](const CSlider& slider, int position) {
        slider.slider->SetValue(position);
        slider.text->SetLabel(SliderText(position));
    };
    show(m_shininess, values.shininess);
    show(m_transparency, values.transparency);
}

void CMaterialBar::ShowStates(const std::function<CCommandState(const CCommand&)>& stateOf) {
    for (const int id : MaterialBarTools()) {
        const CCommandState state = stateOf(*FindCommand(id));
        EnableTool(WidgetIdOf(id), state.enabled);
        wxAuiToolBarItem* tool = FindTool(WidgetIdOf(id));
        tool->SetState(state.checked ? tool->GetState() | wxAUI_BUTTON_STATE_CHECKED
                                     : tool->GetState() & ~wxAUI_BUTTON_STATE_CHECKED);
    }
    Refresh(false);
    CToolBarKeys::Of(*this)->ToolsChanged();
}
