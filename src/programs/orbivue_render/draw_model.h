// SPDX-License-Identifier: MIT
#pragma once

#include <span>
#include <string>

#include "base/CResult.h"
#include "picture/CImage.h"
#include "process/file_access.h"

class C3dsDisplayWrap;
class COffscreenContext;
struct CLoadLimits;
struct CRenderOptions;

/** Opens an input file (UTF-8) in an engine. */
[[nodiscard]] CStatus OpenInput(C3dsDisplayWrap& engine, const std::string& input, const CLoadLimits& limits);
/** Sets the engine's view as the options say. BadArgument: the scene has no camera of that name. */
[[nodiscard]] CStatus SetUp(C3dsDisplayWrap& engine, const CRenderOptions& options);
/** Draws the engine's scene into the context's picture, with the samples that the options or the size of the scene
 * ask for. */
[[nodiscard]] CResult<CImage> Draw(C3dsDisplayWrap& engine, COffscreenContext& context,
                                   const CRenderOptions& options);

/** The files that pictures of models in these folders need; inputs that lie in others are given by their own
 * paths. outputFolder may be empty. */
[[nodiscard]] CFileAccess FilesFor(std::span<const std::string> folders, const std::string& outputFolder);
