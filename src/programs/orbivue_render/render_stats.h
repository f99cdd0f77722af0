// SPDX-License-Identifier: MIT
#pragma once

#include <string>

class C3dsDisplayWrap;

/** Milliseconds of one run. */
struct CRenderTimes {
    double read = 0;
    double prepare = 0;
    double draw = 0;  ///< making buffers and textures, drawing, and fetching the pixels
    double write = 0;
    double total = 0;  ///< since the program's main function began
};

/** Facts about the scene that an engine shows, its camera and the run, as a JSON object with a line end. */
[[nodiscard]] std::string RenderStatsJson(const C3dsDisplayWrap& engine, const CRenderTimes& times,
                                          const std::string& renderer, int samples);

/** The most memory this process has ever held, in MB of 1,000,000 bytes; 0 where the system does not tell. */
[[nodiscard]] double PeakMemoryMb();
