// SPDX-License-Identifier: MIT
#pragma once

#include <wx/aui/auibar.h>
#include <wx/timer.h>

#include <functional>

#include "frame/command_states.h"
#include "frame/materials/tool_values.h"

struct CCommand;
class wxColorPopupListener;
class wxColourCombo;
class wxSlider;
class wxStaticText;

/** The toolbar of the material tools: a button for each, with the colour and the two sliders beside theirs. The buttons
 * send menu events. */
class CMaterialBar final : public wxAuiToolBar {
  public:
    struct CActions {
        /** A slider has another position; called again and again while it is moved. */
        std::function<void(EMaterialTool which, int position)> slide;
        /** The movement is over. */
        std::function<void()> slideEnd;
    };
    /** listener must outlive it. */
    CMaterialBar(wxWindow* parent, wxColorPopupListener* listener, CActions actions);

    /** The colours are open, and keys are for them. */
    [[nodiscard]] bool IsPopupShown() const;
    void ShowValues(const CToolValues& values);
    void ShowStates(const std::function<CCommandState(const CCommand&)>& stateOf);

  private:
    struct CSlider {
        wxSlider* slider = nullptr;
        wxStaticText* text = nullptr;
    };
    void AddCommand(int id);
    [[nodiscard]] CSlider AddSlider(EMaterialTool which, const std::wstring& name);
    void OnSlide(EMaterialTool which, const CSlider& slider);
    void EndSlide();

    CActions m_actions;
    wxColourCombo* m_color = nullptr;
    CSlider m_shininess, m_transparency;
    wxTimer m_slideTimer;  ///< a slide by keys ends when none has come for a while
};
