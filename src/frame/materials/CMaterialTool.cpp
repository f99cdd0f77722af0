// SPDX-License-Identifier: MIT
#include "frame/materials/CMaterialTool.h"

#include <utility>

bool CMaterialTool::SetTool(EMaterialTool kind, int identifier) {
    if (kind == m_kind && identifier == m_identifier) return false;
    if (m_identifier != kNoIdentifier) Toggle(m_identifier, false);
    const EMaterialTool before = std::exchange(m_kind, kind);
    m_identifier = identifier;
    if (m_identifier != kNoIdentifier) {
        if (m_actions.stopSlideShow) m_actions.stopSlideShow();
        Toggle(m_identifier, true);
    }
    for (CToolButtons* bar : m_toolBars)
        if (bar) bar->Refresh();
    if (m_actions.changed) m_actions.changed(before);
    return true;
}

void CMaterialTool::Toggle(int identifier, bool on) {
    for (CToolButtons* bar : m_toolBars)
        if (bar && bar->HasTool(identifier)) bar->ToggleTool(identifier, on);
}

EToolCursor CMaterialTool::GetCursor() const {
    switch (m_kind) {
        case EMaterialTool::Color:
            return EToolCursor::Color;
        case EMaterialTool::Shininess:
            return EToolCursor::Shininess;
        case EMaterialTool::Transparency:
            return EToolCursor::Transparency;
        case EMaterialTool::Replace:
            return EToolCursor::ReplaceNode;
        case EMaterialTool::Filter:
            return EToolCursor::Filter;
        case EMaterialTool::None:
            break;
    }
    return EToolCursor::Standard;
}

void CMaterialTool::Apply(const char* nodeName) {
    if (!nodeName || !IsActive()) return;
    const std::string node = nodeName;  // a copy: the name goes with the scene that the edit changes
    if (m_actions.apply) m_actions.apply(node);
}

void CMaterialTool::Miss() {
    if (m_actions.miss) m_actions.miss();
}
