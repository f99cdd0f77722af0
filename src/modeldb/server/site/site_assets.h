// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

/** Files that the build puts into the program. */
namespace site_assets {

[[nodiscard]] std::string_view Style();
[[nodiscard]] std::string_view Icon();

}  // namespace site_assets
