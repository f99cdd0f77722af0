// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "base/CResult.h"
#include "model/scene/CSceneNote.h"
#include "script/CSceneScript.h"

class C3dsDisplayWrap;
struct CLoadLimits;

/** What an input asks for beside its model. */
struct COpenedInput {
    std::optional<CScriptScene> scene;  ///< of a scene script
    std::vector<CSceneNote> notes;      ///< what of the script could not be used
};

/** For Viewing the engine is told so, see C3dsDisplayWrap::SetViewingOnly. */
enum class EOpenFor { Viewing, Saving };

/** Opens an input file (UTF-8) in an engine: a model, or the model of a scene script with the edits of
 * one of its scenes, which are counted from 0. BadArgument: the script has no such scene. */
[[nodiscard]] CResult<COpenedInput> OpenInput(C3dsDisplayWrap& engine, const std::string& input,
                                              const CLoadLimits& limits, std::size_t scene,
                                              EOpenFor use = EOpenFor::Viewing);
[[nodiscard]] bool IsScript(const std::string& path);

/** What a script names: UTF-8 paths. */
struct CNamedFiles {
    std::vector<std::string> files;   ///< templates and pictures
    std::vector<std::string> models;  ///< whose surroundings are needed, too
};
/** Reads a script in a process of its own, which may read and do nothing else, so that this one can be confined before
 * it sees a byte of it. Nothing where it cannot be read. Call it while there is one thread. */
[[nodiscard]] CNamedFiles FilesNamedBy(const std::string& script, std::size_t scene);
