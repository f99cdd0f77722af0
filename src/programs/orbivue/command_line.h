// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "base/CResult.h"

/** The arguments, of which the first is the program's name, without those that the desktop's toolkit takes for itself
 * where it opens windows, such as --display. */
[[nodiscard]] std::vector<wchar_t*> WithoutToolkitOptions(std::span<wchar_t* const> arguments);

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

/** The path that a parameter names: of a "file:" address of this machine its path, with %XX made the bytes that they
 * stand for; every other parameter as it is. */
[[nodiscard]] std::wstring PathOfParameter(const std::wstring& parameter);

/** What a path of the command line leads to: the file, or of a folder the first model in it, as an absolute path.
 * Nothing, with an empty message, where there is no such file: that is ignored. NotFound for a folder without a
 * model. */
[[nodiscard]] CResult<std::wstring> ModelToOpen(const std::wstring& path);
