// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

#include "base/CResult.h"

/** What a failure of the server means, by its five-letter code (SQLSTATE; empty: the connection failed). where: see
 * CStoreAddress::Shown. The server's own words may hold values, so they are left out. */
[[nodiscard]] CError PostgresError(std::string_view sqlState, std::string_view where);
/** True where others were quicker: the same transaction may succeed when it is done again. */
[[nodiscard]] bool IsConflict(std::string_view sqlState);
/** True for the failure of a server that cannot be reached, among all that are Busy. */
[[nodiscard]] bool IsUnreachable(const CError& error);
