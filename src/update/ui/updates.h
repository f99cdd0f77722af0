// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

/** Runs work that shows a modal window, and holds back meanwhile what must not happen below one; or does nothing, if the program is
 * busy. */
using CHoldForWindow = std::function<void(const std::function<void()>& work)>;

/** Starts the update service, once in the life of the process: call it when the main window is shown. automatic: whether it
 * checks by itself; what that shows on the user's demand is run by hold. The command "Check for updates..." is
 * win_sparkle_check_update_with_ui, whose caller holds back what he wants to. */
void StartUpdates(bool automatic, CHoldForWindow hold = {});

/** Ends the service, if it was started; call it at the end of the program. */
void StopUpdates();
