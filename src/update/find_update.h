// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "update/CAppcast.h"

/** For what an update is sought. */
struct CUpdateTarget {
    std::string version;  ///< of the program
    std::string system;   ///< the version of the system's kernel, as far as it is numbers
    std::string machine;  ///< as uname -m tells it

    /** This machine. */
    [[nodiscard]] static CUpdateTarget Here(std::string version);
};

/** The newest item that is newer than the program and made for the system: for any ("" or no enclosure), for "linux", or for
 * "linux-" and the machine. */
[[nodiscard]] std::optional<CAppcastItem> FindUpdate(const CAppcast& list, const CUpdateTarget& target);

/** Whether the user wants to hear no more of an item. skippedVersion: "" for none. */
[[nodiscard]] bool IsSkipped(const CAppcastItem& item, std::string_view skippedVersion);

/** Whether a check without being asked is due: a day after the last one. lastCheck: seconds since 1970 as text; one that is no
 * number, or still to come, is none. */
[[nodiscard]] bool IsCheckDue(std::string_view lastCheck, std::int64_t now);
