// SPDX-License-Identifier: MIT
#pragma once

/** A toolbar as the tool state sees it: buttons that show whether their tool is in use. */
class CToolButtons {
  public:
    CToolButtons() = default;
    CToolButtons(const CToolButtons&) = delete;
    CToolButtons& operator=(const CToolButtons&) = delete;
    virtual ~CToolButtons() = default;

    /** identifier: the number of a command, see command_ids.h. */
    [[nodiscard]] virtual bool HasTool(int identifier) const = 0;
    virtual void ToggleTool(int identifier, bool on) = 0;
    virtual void Refresh() = 0;
};
