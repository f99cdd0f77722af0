// SPDX-License-Identifier: MIT
#include "update/ui/updates.h"

#include "update/update_feed.h"
#include "update/win_sparkle.h"

namespace {

bool s_isStarted = false;

}  // namespace

void StartUpdates(bool automatic) {
    if (s_isStarted) return;
    win_sparkle_set_app_details(L"Kestrane", L"Orbivue", L"" ORBIVUE_VERSION);
    win_sparkle_set_appcast_url(UpdateFeed().c_str());
    win_sparkle_set_automatic_check_for_updates(automatic ? 1 : 0);
    win_sparkle_init();
    s_isStarted = true;
}

void StopUpdates() {
    if (s_isStarted) win_sparkle_cleanup();
}
