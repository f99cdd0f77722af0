// SPDX-License-Identifier: MIT
#pragma once

#ifndef __cplusplus
#include <wchar.h>
#endif

// NOLINTBEGIN(readability-identifier-naming,modernize-redundant-void-arg): fixed names, in C
/* The update service as six C functions. Whoever starts it sets all details before win_sparkle_init; what is set later waits
 * for the next init. Windows are a CUpdatePresenter's; without one nothing is shown and nothing checked. All functions
 * belong to the thread of the windows. */
#ifdef __cplusplus
extern "C" {
#endif

/** Who made which program in which version. Null counts as "". */
void win_sparkle_set_app_details(const wchar_t* company, const wchar_t* program, const wchar_t* version);
/** The address of the list of versions (an XML appcast), which must be https; "" or null: there is none. */
void win_sparkle_set_appcast_url(const char* url);
/** 1: checks by itself, once a day at most; 0: only when it is asked. */
void win_sparkle_set_automatic_check_for_updates(int state);
/** Starts the service. Does not wait for anything; does nothing when it runs already. */
void win_sparkle_init(void);
/** Checks now, with windows that tell of progress and outcome. Returns when they are closed; does nothing when the
 * service does not run. */
void win_sparkle_check_update_with_ui(void);
/** Ends the service, and a check that is going on. Does nothing when the service does not run. */
void win_sparkle_cleanup(void);

#ifdef __cplusplus
}
#endif
// NOLINTEND(readability-identifier-naming,modernize-redundant-void-arg)
