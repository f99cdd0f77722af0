// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

/** A timer that runs: it reports once, when its time is over. Its deletion ends it. */
class CSlideShowTimer {
  public:
    virtual ~CSlideShowTimer() = default;
};

/** How the button that starts and stops the show looks. */
enum class EShowButton {
    Start,
    StartDisabled,  ///< there is no other model to go to
    Stop,
};

/** Why a show stops by itself. */
enum class EShowEnd {
    NothingOpens,  ///< every model of the folder was tried in vain
    UnsavedEdits,  ///< the model shown has been edited; another one would drop that
    Finished,      ///< a presentation has been played as often as it says
    NoOther,       ///< there is nothing to step to
};

/** What a slideshow needs of the main window. All calls come from one thread. */
class CSlideShowHost {
  public:
    virtual ~CSlideShowHost() = default;
    /** Starts a timer that calls CSlideShowMgr::OnTimer once, in so many milliseconds, at least 1. */
    [[nodiscard]] virtual std::unique_ptr<CSlideShowTimer> StartTimer(int periodMs) = 0;
    /** Opens the next model. CSlideShowMgr::OnModelOpened or OnOpenFailed is called before it returns, unless
     * nothing was opened. */
    virtual void ShowNext() = 0;
    /** True while no model may be opened, or nobody would see it: a dialog, an export or a menu is open, or the window
     * is minimised. */
    [[nodiscard]] virtual bool IsBusy() const = 0;
    /** The model list holds the step back. */
    [[nodiscard]] virtual bool HoldsStep() const = 0;
    [[nodiscard]] virtual bool HasUnsavedEdits() const = 0;
    /** Takes the tool that edits materials out of the user's hand. */
    virtual void CancelTool() = 0;
    virtual void ShowButton(EShowButton button) = 0;
    virtual void Tell(EShowEnd why) = 0;
};
