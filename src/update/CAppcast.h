// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "base/CResult.h"

/** One version of a list of versions. Nothing in it is trusted; all of it is text of a bounded length, without control
 * characters. */
struct CAppcastItem {
    std::string version;               ///< what is compared
    std::wstring shownVersion;         ///< what people read
    std::string minimumSystem;         ///< a version of the system; empty: any
    std::vector<std::string> systems;  ///< what it is made for, in lower case; "" stands for any. Never empty
    std::string page;                  ///< an address (http or https) for the browser; empty: none was given
    std::wstring notes;                ///< lines of plain text
};

struct CAppcast {
    std::vector<CAppcastItem> items;
};

/** Reads a list of versions, RSS 2 with the namespace "sparkle". Of each item counts: sparkle:version and
 * sparkle:shortVersionString (or the enclosures' attributes of these names), sparkle:minimumSystemVersion, the enclosures'
 * sparkle:os, link, and description as the notes. Left out: items without a version, and those of a sparkle:channel, which are
 * for people who asked for it. BadFormat: it is no such list, or one without a
 * version. */
[[nodiscard]] CResult<CAppcast> ReadAppcast(std::string_view xml);
