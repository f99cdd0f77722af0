// SPDX-License-Identifier: MIT
#include "frame/materials/CToolEdits.h"

#include <vector>

#include "base/text/lng.h"
#include "session/CSession.h"

CStatus CToolEdits::Use(EMaterialTool tool, const std::string& node, const CToolValues& values) {
    const std::optional<CEdit> edit = ToolEdit(tool, node, values);
    if (!edit) return CError{EErrorCode::BadArgument, lng::Mark("no tool is chosen"), {}};
    EndFollowing();
    const bool isRepeat =
        m_state == m_session.Edits().State() && m_tool == tool && m_node == node && m_values == values;
    if (isRepeat) return CDone{};
    const std::vector<CStatus> answers = m_session.Apply({*edit}, ToolStepName(tool, node));
    if (answers.front()) Used(tool, node, values);
    return answers.front();
}

void CToolEdits::Used(EMaterialTool tool, const std::string& node, const CToolValues& values) {
    m_tool = tool;
    m_node = node;
    m_values = values;
    m_state = m_session.Edits().State();
}

bool CToolEdits::Follow(EMaterialTool tool, const CToolValues& values) {
    if (m_node.empty() || m_tool != tool || m_values == values) return false;
    const std::optional<CEdit> edit = ToolEdit(tool, m_node, values);
    if (!edit) return false;
    const std::uint64_t before = m_session.Edits().State();
    const bool isSameStep = m_following == before;
    const std::vector<CStatus> answers =
        isSameStep ? m_session.Amend(before, {*edit}) : m_session.Apply({*edit}, ToolStepName(tool, m_node));
    if (answers.empty() || !answers.front()) return false;
    m_values = values;
    m_following = m_state = m_session.Edits().State();
    return true;
}

void CToolEdits::Forget() {
    m_tool = EMaterialTool::None;
    m_node.clear();
    m_state.reset();
    EndFollowing();
}
