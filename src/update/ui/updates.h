// SPDX-License-Identifier: MIT
#pragma once

/** Starts the update service, once in the life of the process: call it when the main window is shown. automatic: whether it
 * checks by itself. The command "Check for updates..." is win_sparkle_check_update_with_ui. */
void StartUpdates(bool automatic);

/** Ends the service, if it was started; call it at the end of the program. */
void StopUpdates();
