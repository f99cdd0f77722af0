// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "base/CResult.h"

/** Removes the options that GTK handles itself when it opens windows, such as --display. The first argument
 * is the program's name. */
[[nodiscard]] std::vector<wchar_t*> WithoutToolkitOptions(std::span<wchar_t* const> arguments);

/** The files that -c reads and writes. */
struct CConversionPaths {
    std::wstring input, output;
};
/** Takes the parameters beside -c: input and output, or only the input; the output is then the input with the
 * extension "pov". Nothing for any other number of parameters. */
[[nodiscard]] std::optional<CConversionPaths> ConversionPathsOf(std::span<const std::wstring> parameters);

/** Joins a path that a shell split at its blanks: adds parameters, with one blank between, until the
 * result names a file, and ignores the rest. The whole is returned even if it names no file. Empty for
 * no parameters. */
[[nodiscard]] std::wstring JoinModelPath(std::span<const std::wstring> parameters,
                                         const std::function<bool(const std::wstring&)>& doesFileExist);

/** The path that a parameter names: for a "file:" address of this machine its path with %XX decoded; any
 * other parameter unchanged. */
[[nodiscard]] std::wstring PathOfParameter(const std::wstring& parameter);

/** The absolute path of the model that a path of the command line names: the file itself, or the first model
 * of a folder. If the path does not exist, the error has an empty message, and callers ignore it. NotFound
 * for a folder without a model. */
[[nodiscard]] CResult<std::wstring> ModelToOpen(const std::wstring& path);
