// SPDX-License-Identifier: MIT
#pragma once

/** What the mouse pointer looks like over the view: one look for each tool. */
enum class EToolCursor { Standard, Color, Shininess, Transparency, ReplaceNode, Filter };

/** The tool that a press in the view uses on the node under the mouse. If no tool is active, a long press
 * deletes the node. A view without a tool state has no long press. */
class CViewToolState {
  public:
    virtual ~CViewToolState() = default;
    [[nodiscard]] virtual bool IsActive() const = 0;
    [[nodiscard]] virtual EToolCursor GetCursor() const = 0;
    /** Uses the active tool on a node. nodeName is the engine's name of it and valid until the scene
     * is edited. */
    virtual void Apply(const char* nodeName) = 0;
    /** A click with the active tool where no node is; a press that becomes a drag is none. */
    virtual void Miss() {}
};

/** A tool state that never has an active tool: the mouse turns, zooms, and deletes by a long press. */
class CIdleToolState final : public CViewToolState {
  public:
    [[nodiscard]] bool IsActive() const override { return false; }
    [[nodiscard]] EToolCursor GetCursor() const override { return EToolCursor::Standard; }
    void Apply(const char*) override {}
};
