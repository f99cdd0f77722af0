// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

struct CAppcastItem;

/** What settings.ini keeps of updates. It is written at once, as another copy of the program may run. */
namespace kept_choices {

/** True if a check without being asked is due at a time (seconds since 1970), and it was written down that it is made now. */
[[nodiscard]] bool TakeTurn(std::int64_t now);

[[nodiscard]] bool IsSkipped(const CAppcastItem& item);
void Skip(const CAppcastItem& item);

}  // namespace kept_choices
