// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/CResult.h"
#include "base/math/CVec.h"
#include "model/edit/CEdit.h"
#include "model/scene/CSceneNote.h"

/** One section of a scene script that shows a model. Paths are wide, absolute and those of files that were
 * found, except that a model which is not there keeps the path where it should be. */
struct CScriptScene {
    std::string section;  ///< its name, UTF-8
    std::wstring path;    ///< of the model; never empty
    /** Pictures; empty: none. They lie in the surroundings of the script or of the model. */
    std::wstring backgroundImage, icon;
    std::optional<bool> wire, rotate, fullScreen;  ///< nothing: as it is
    int renderMode = 0;                            ///< see C3dsDisplayWrap::SetTextureRenderMode
    std::optional<CVec3> background;               ///< 0..1
    int timeMs = 0;                                ///< in a show; 0 or less: the script starts none
    int loop = 0;                                  ///< the value of the file less one, at least 0
    std::wstring camera;                           ///< a preset's name or that of a camera of the model
    std::wstring text;                             ///< the caption
    std::optional<CVec3d> pivot, scale;            ///< finite, of a size that can be shown
    std::vector<CEdit> edits;                      ///< in the order in which they are applied
    std::vector<CSceneNote> notes;  ///< what of this section could not be used; a bounded number
};

/** A scene script: an ini file that names models and says how to show them. docs/scene-scripts.md describes the
 * format. */
struct CSceneScript {
    std::vector<CScriptScene> scenes;  ///< in the order of the file; never empty
    std::vector<CSceneNote> notes;     ///< what of the file as a whole could not be used
    std::vector<std::string> files;    ///< the script and its templates: UTF-8, without links
};

/** How many scenes of a script are shown. */
inline constexpr std::size_t kMostScriptScenes = 1000;

/** Reads a script with its templates. path is UTF-8 and must lead to a regular file; so must all that the script names,
 * nothing else is opened. Takes time in proportion to the size of the script. Fails for what cannot be read as
 * an ini file, and for one without a section that names a model. Any thread may call it. */
[[nodiscard]] CResult<CSceneScript> ReadScript(std::string_view path);

/** The path of the model of a script's first scene, as ReadScript finds it (UTF-8), and nothing else. */
[[nodiscard]] CResult<std::string> FirstModelOf(std::string_view path);

/** The keys of a section, in the order in which they are read. */
[[nodiscard]] std::vector<std::string_view> ScriptKeys();
