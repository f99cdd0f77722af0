// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "base/CResult.h"
#include "base/math/CVec.h"
#include "camera/CSeenOptions.h"
#include "engine/overlay/overlays.h"

/** The options of the command line. Paths are as given. */
struct CRenderOptions {
    enum class EAction { Draw, Help, Version };

    EAction action = EAction::Draw;
    std::string input;
    std::string output;  ///< empty: no picture is written
    int width = 1024;
    int height = 768;
    std::size_t scene = 0;  ///< of a scene script, from 0 on
    std::optional<std::string>
        camera;  ///< see C3dsDisplayWrap::SetCameraOfName; when not given, the scene's, or iso
    CSeenOptions seen;
    std::optional<float> frame;             ///< the file's current frame when not given
    CVec3 background{0.24f, 0.26f, 0.30f};  ///< where a scene says nothing
    std::optional<int> samples;             ///< when not given, chosen by the size of the scene
    std::optional<int>
        textureMode;  ///< see C3dsDisplayWrap::SetTextureRenderMode; when not given, the scene's, or 0
    COverlays overlays;
    bool wire = false;
    bool fileLights = true;
    bool stats = false;
    bool confined = false;  ///< hold the process to what one picture needs

    bool isThumbnail = false;  ///< the input was perhaps given by its address

    bool batch = false;  ///< draw many models: `inputs`, or those that standard input names where it is empty
    std::vector<std::string> inputs;
    std::string into;            ///< the folder for a batch's pictures; it replaces 1.png, 2.png ... there
    bool nullSeparated = false;  ///< names on standard input end in a zero byte, not in a line end
};

constexpr int kMaxPictureSide = 16384;
constexpr int kMaxThumbnailSide = 2048;

/** Reads the arguments after the program's name. Errors are BadArgument, with a message of one line. */
[[nodiscard]] CResult<CRenderOptions> ParseRenderOptions(std::span<const std::string> arguments);

/** The text of --help. */
[[nodiscard]] std::string RenderHelp();
