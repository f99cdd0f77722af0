// SPDX-License-Identifier: MIT
#pragma once

#include <string>

/** What the slideshow needs of the main window. */
class CSlideShowFrame {
  public:
    /** Opens the next model as the command does. */
    virtual void ShowNextModel() = 0;
    /** See CSlideShowHost for these four. Menus need not count. */
    [[nodiscard]] virtual bool IsShowHindered() const = 0;
    [[nodiscard]] virtual bool ListHoldsStep() const = 0;
    [[nodiscard]] virtual bool HasUnsavedEdits() const = 0;
    virtual void CancelTool() = 0;
    /** The show has started or stopped, or can no longer be started: menus are to follow. */
    virtual void ShowChanged() = 0;
    enum class EPicture { Follows, StaysUntilNext, Stays };
    /** What the view shows until the next model is there: its picture stays while there is nothing to draw, or stays in
     * any case. */
    virtual void KeepPicture(EPicture how) = 0;
    /** The text over the view; empty: none. */
    [[nodiscard]] virtual std::wstring Caption() const = 0;
    virtual void SetCaption(const std::wstring& text) = 0;
    [[nodiscard]] virtual bool FillsScreen() const = 0;
    virtual void FillScreen(bool fill) = 0;
    /** A line for people, and a message that they must see. */
    virtual void SayOfShow(const std::wstring& text) = 0;
    virtual void TellOfShow(const std::wstring& text) = 0;

  protected:
    ~CSlideShowFrame() = default;
};
