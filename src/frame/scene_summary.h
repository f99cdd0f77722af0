// SPDX-License-Identifier: MIT
#pragma once

#include <span>
#include <string>
#include <vector>

class CJobProgress;
struct CPreparedScene;
struct CSceneNote;

/** The status bar's texts about a scene, translated. */
struct CSceneSummary {
    std::wstring triangles;           ///< "Triangles: 1,234"
    std::wstring objects;             ///< "Objects: 12"
    std::wstring notes;               ///< "Notes: 3"; empty when there are none
    std::wstring place;               ///< see PlaceText
    std::vector<std::wstring> lines;  ///< the notes themselves, one line each
};
/** All but the place. more: further notes, which come first. */
[[nodiscard]] CSceneSummary SummaryOf(const CPreparedScene& scene, std::span<const CSceneNote> more = {});
/** The place of a file among the models of its folder: "3 of 46"; empty for place 0, which is none. */
[[nodiscard]] std::wstring PlaceText(unsigned place, unsigned count);

/** The progress of an opening, for the status bar. */
struct CProgressText {
    std::wstring text;
    int percent = -1;  ///< 0..100; -1 when not known
};
[[nodiscard]] CProgressText ProgressOf(const CJobProgress& progress);
