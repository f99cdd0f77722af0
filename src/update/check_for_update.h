// SPDX-License-Identifier: MIT
#pragma once

#include "base/CResult.h"
#include "update/CAppcast.h"
#include "update/fetch_feed.h"
#include "update/find_update.h"

enum class EUpdateOutcome { News, UpToDate, NoFeed, Failed };

/** What became of a check. */
struct CUpdateOutcome {
    EUpdateOutcome kind = EUpdateOutcome::NoFeed;
    CAppcastItem item{};  ///< the news
    CError error{};       ///< of a check that failed
};

/** Gets the list of versions and looks for an update in it. Without an address nothing is asked of the network. Any thread. */
[[nodiscard]] CUpdateOutcome CheckForUpdate(const CFeedRequest& request, const CUpdateTarget& target,
                                            const std::atomic<bool>& cancelled);

/** One sentence, or two, for the user. version: the program's. isPackaged: the package manager of a system updates it. */
[[nodiscard]] std::wstring SentenceOf(const CUpdateOutcome& outcome, std::wstring_view version,
                                      bool isPackaged);
