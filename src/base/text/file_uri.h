// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

#include "base/CResult.h"

/** Addresses of files on this machine ("file:///home/a%20b.3ds", RFC 8089). A path is any bytes but zero. */
namespace file_uri {

/** The address of an absolute path in the one form that all programs of a desktop give it: they look for a file's
 * thumbnail by it. Letters, digits and -._~!$&'()*+,=:@/ stand for themselves, all other bytes as %XX. */
[[nodiscard]] std::string Of(std::string_view path);
/** The path that an address names. BadArgument, with a sentence, unless it is that of a file on this machine: its scheme
 * is "file", it names no other machine, and its escapes are whole and hide neither a slash nor a zero. */
[[nodiscard]] CResult<std::string> PathOf(std::string_view address);
/** The path that an argument of a command line means: an address (something that begins with a scheme and "://",
 * or with "file:") or a path itself. */
[[nodiscard]] CResult<std::string> PathOfArgument(std::string_view argument);

}  // namespace file_uri
