// SPDX-License-Identifier: MIT
#pragma once

#include <span>
#include <string>

/** A .htaccess that makes Apache pack the files of these names (any bytes) as it sends them, and no others. A server without
 * mod_deflate ignores it. */
[[nodiscard]] std::string MakeHtaccess(std::span<const std::string> names);
