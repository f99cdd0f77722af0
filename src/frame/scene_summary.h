// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

class CJobProgress;
struct CPreparedScene;

/** The status bar's texts about a scene, translated. */
struct CSceneSummary {
    std::wstring triangles;           ///< "Triangles: 1,234"
    std::wstring objects;             ///< "Objects: 12"
    std::wstring notes;               ///< "Notes: 3"; empty when there are none
    std::vector<std::wstring> lines;  ///< the notes themselves, one line each
};
[[nodiscard]] CSceneSummary SummaryOf(const CPreparedScene& scene);

/** The progress of an opening, for the status bar. */
struct CProgressText {
    std::wstring text;
    int percent = -1;  ///< 0..100; -1 when not known
};
[[nodiscard]] CProgressText ProgressOf(const CJobProgress& progress);
