// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <functional>
#include <string>

#include "frame/materials/CToolButtons.h"
#include "frame/materials/tool_values.h"
#include "view/CViewToolState.h"

/** The state of the material tools: which one is in use, with what values, and on which toolbars its button shows it.
 * The view asks it what a press does. */
class CMaterialTool final : public CViewToolState {
  public:
    static constexpr int kNoIdentifier = -1;

    /** What the state causes; each may be empty. */
    struct CActions {
        std::function<void()> stopSlideShow;  ///< a tool is chosen
        /** Another tool is in use, or none; the buttons and GetCursor() are up to date. */
        std::function<void(EMaterialTool before)> changed;
        std::function<void(const std::string& node)> apply;  ///< the tool is used on a node
        std::function<void()> miss;                          ///< it is used where nothing is
    };
    void SetActions(CActions actions) { m_actions = std::move(actions); }
    /** The toolbars with the tools' buttons; not owned, either may be null. */
    void SetToolBars(CToolButtons* first, CToolButtons* second) { m_toolBars = {first, second}; }

    /** Chooses a tool by its kind and the number of its command: releases the button of the one before, presses its
     * own, and stops a slideshow. (None, kNoIdentifier) ends all. False, and nothing happens, for the one that is
     * in use. */
    bool SetTool(EMaterialTool kind, int identifier);
    [[nodiscard]] EMaterialTool Kind() const { return m_kind; }
    [[nodiscard]] int Identifier() const { return m_identifier; }

    [[nodiscard]] bool IsActive() const override { return m_kind != EMaterialTool::None; }
    [[nodiscard]] EToolCursor GetCursor() const override;
    void Apply(const char* nodeName) override;
    void Miss() override;

    void SetColor(CToolColor color) { m_values.color = color; }
    void SetShininess(int position) { m_values.shininess = position; }
    void SetTransparency(int position) { m_values.transparency = position; }
    void SetReplacement(CReplacement replacement) { m_values.replacement = std::move(replacement); }
    [[nodiscard]] const CToolValues& Values() const { return m_values; }

  private:
    void Toggle(int identifier, bool on);

    EMaterialTool m_kind = EMaterialTool::None;
    int m_identifier = kNoIdentifier;
    CToolValues m_values;
    CActions m_actions;
    std::array<CToolButtons*, 2> m_toolBars{};
};
