// SPDX-License-Identifier: MIT
#pragma once

#include <span>
#include <string>
#include <vector>

#include "base/CResult.h"
#include "programs/orbivue_convert/output_kinds.h"
#include "programs/shared/CPictureOptions.h"

/** The options of the command line. Paths are as given. */
struct CConvertOptions : CPictureOptions {
    enum class EAction { Convert, Help, Version };
    enum class ETelling {
        Errors,    ///< nothing else
        Warnings,  ///< and how many things a model lacks
        All,       ///< and what, and each file that is written
    };

    EAction action = EAction::Convert;
    std::vector<std::string> inputs;
    std::string output;  ///< for one input; empty where the names are made
    std::string folder;  ///< for made names; empty: each beside its input
    std::string ending;  ///< of made names, without its dot
    EOutputKind kind = EOutputKind::Glb;
    bool force = false;  ///< made names may replace files
    ETelling telling = ETelling::Warnings;
    bool withTextures = true;
    bool compress = false;     ///< of glTF
    int textureSide = 0;       ///< of glTF: see CGltfOptions::maxTextureSide
    bool doubleSided = false;  ///< of glTF and pages
    bool camerasBar = true;    ///< these are of pages
    bool minify = true;
    bool combine = true;
    bool gzip = false;
    bool downloadLink = false;
    std::string scriptFile;
    std::string language = "en";
};

/** Reads the arguments after the program's name. Errors are BadArgument, with a message of one line. */
[[nodiscard]] CResult<CConvertOptions> ParseConvertOptions(std::span<const std::string> arguments);

/** The text of --help. */
[[nodiscard]] std::string ConvertHelp();
