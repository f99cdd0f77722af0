// SPDX-License-Identifier: MIT
#pragma once

#include <span>
#include <string>
#include <vector>

#include "base/CResult.h"
#include "programs/shared/CPictureOptions.h"

/** The options of the command line. Paths are as given. */
struct CRenderOptions : CPictureOptions {
    enum class EAction { Draw, Help, Version };

    EAction action = EAction::Draw;
    std::string input;
    std::string output;  ///< empty: no picture is written
    bool stats = false;
    bool confined = false;  ///< hold the process to what one picture needs

    bool isThumbnail = false;  ///< the input was perhaps given by its address

    bool batch = false;  ///< draw many models: `inputs`, or those that standard input names where it is empty
    std::vector<std::string> inputs;
    std::string into;            ///< the folder for a batch's pictures; it replaces 1.png, 2.png ... there
    bool nullSeparated = false;  ///< names on standard input end with a NUL byte, not in a line end
};

constexpr int kMaxThumbnailSide = 2048;

/** Reads the arguments after the program's name. Errors are BadArgument, with a message of one line. */
[[nodiscard]] CResult<CRenderOptions> ParseRenderOptions(std::span<const std::string> arguments);

/** The text of --help. */
[[nodiscard]] std::string RenderHelp();
