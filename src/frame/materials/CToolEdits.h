// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "base/CResult.h"
#include "frame/materials/tool_values.h"

class CSession;

/** Turns what the material tools do into steps of the session's edits: a press on a part is one, and so is a movement
 * of a slider from its beginning to its end, however many values it passes through. */
class CToolEdits {
  public:
    /** session must outlive it. */
    explicit CToolEdits(CSession& session) : m_session(session) {}

    /** A press on a node. Doing the same once more makes no further step. */
    CStatus Use(EMaterialTool tool, const std::string& node, const CToolValues& values);
    /** A value changes under the user's hand: changes the node that the tool was last used on. False when there is
     * none, or the edit fails; then the values wait for the next press. */
    bool Follow(EMaterialTool tool, const CToolValues& values);
    /** The movement has ended; what follows is another step. */
    void EndFollowing() { m_following.reset(); }
    /** Another scene is shown, or another tool is chosen: nothing follows the values. */
    void Forget();
    /** The node that follows the values; empty when none does. */
    [[nodiscard]] const std::string& LastNode() const { return m_node; }

  private:
    void Used(EMaterialTool tool, const std::string& node, const CToolValues& values);

    CSession& m_session;
    EMaterialTool m_tool = EMaterialTool::None;
    std::string m_node;
    CToolValues m_values;                      ///< that the node got last
    std::optional<std::uint64_t> m_state;      ///< of the log when it got them
    std::optional<std::uint64_t> m_following;  ///< the step that the movement under way has made
};
