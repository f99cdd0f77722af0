// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>

/** What -c is to read and to write. */
struct CConversionPaths {
    std::wstring input, output;
};
/** Of the parameters beside -c: one or two. With one the output is the input with the extension "pov".
 * Nothing for any other number of them. */
[[nodiscard]] std::optional<CConversionPaths> ConversionPathsOf(std::span<const std::wstring> parameters);

/** Puts a path together again that a shell split at its blanks: parameters are joined with one blank
 * each until what is joined names a file; the rest is ignored. No check is made after the last one.
 * Empty for no parameters. */
[[nodiscard]] std::wstring JoinModelPath(std::span<const std::wstring> parameters,
                                         const std::function<bool(const std::wstring&)>& doesFileExist);

/** True when the arguments (without the program's name) ask for nothing that needs a window. */
[[nodiscard]] bool NeedsNoWindow(std::span<const std::wstring> arguments);
