// SPDX-License-Identifier: MIT
#include "update/ui/updates.h"

#include <memory>
#include <utility>

#include "update/ui/CUpdateChecks.h"
#include "update/update_feed.h"
#include "update/win_sparkle.h"

namespace {

/** From the start to the end of the program. */
std::unique_ptr<CUpdateChecks> s_checks;

}  // namespace

void StartUpdates(bool automatic, CHoldForWindow hold) {
    if (s_checks) return;
    s_checks = std::make_unique<CUpdateChecks>(std::move(hold));
    CUpdatePresenter::Set(s_checks.get());
    win_sparkle_set_app_details(L"Kestrane", L"Orbivue", L"" ORBIVUE_VERSION);
    win_sparkle_set_appcast_url(UpdateFeed().c_str());
    win_sparkle_set_automatic_check_for_updates(automatic ? 1 : 0);
    win_sparkle_init();
}

void StopUpdates() {
    if (!s_checks) return;
    win_sparkle_cleanup();
    CUpdatePresenter::Set(nullptr);
    s_checks.reset();
}
