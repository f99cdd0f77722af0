// SPDX-License-Identifier: MIT
#pragma once

#include <span>
#include <string>

#include "base/CResult.h"

/** The four arguments of the helper program. The folders are there; their paths are absolute. */
struct CUploadArguments {
    std::string modelFolder;     ///< holds the exported page
    std::string templateFolder;  ///< what surrounds it
    std::string uploadFolder;    ///< empty; what is uploaded is put there
    std::string modelName;       ///< the model's file name: any bytes, also those of an option
};

/** Reads the arguments, without the program's own name. None is an option, whatever it looks like. */
[[nodiscard]] CResult<CUploadArguments> ReadUploadArguments(std::span<const std::string> arguments);
