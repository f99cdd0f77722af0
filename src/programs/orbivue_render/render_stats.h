// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <span>
#include <string>

#include "process/confine.h"

class C3dsDisplayWrap;
struct CSceneNote;
struct CPreparedScene;

/** Durations of one run in milliseconds. */
struct CRenderTimes {
    double read = 0;
    double prepare = 0;
    double draw = 0;  ///< making buffers and textures, drawing, and fetching the pixels
    double write = 0;
    double total = 0;  ///< since the program's main function began
};

/** Facts about the engine's scene, its camera and the run, as a JSON object with a line end. more: notes besides
 * the scene's. confined: what the process is held to, if that was asked for. */
[[nodiscard]] std::string RenderStatsJson(const C3dsDisplayWrap& engine, std::span<const CSceneNote> more,
                                          const CRenderTimes& times, const std::string& renderer, int samples,
                                          const std::optional<CConfined>& confined);

/** How many nodes show something. */
[[nodiscard]] std::size_t DrawnNodes(const CPreparedScene& scene);

/** The peak memory of this process in MB of 1,000,000 bytes; 0 when the system does not tell. */
[[nodiscard]] double PeakMemoryMb();
