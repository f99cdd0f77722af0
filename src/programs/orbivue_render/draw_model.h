// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <span>
#include <string>

#include "base/CResult.h"
#include "picture/CImage.h"
#include "process/file_access.h"

class C3dsDisplayWrap;
class COffscreenContext;
struct COpenedInput;
struct CRenderOptions;

/** Sets the engine's view as the options say, and as the input's scene does where they leave it open; a scene's background
 * colour counts before that of the options. BadArgument: the options name a camera that the model lacks. */
[[nodiscard]] CStatus SetUp(C3dsDisplayWrap& engine, const CRenderOptions& options, COpenedInput& opened);
/** Draws the engine's scene into the context's picture, with the samples that the options or the size of the scene
 * ask for. */
[[nodiscard]] CResult<CImage> Draw(C3dsDisplayWrap& engine, COffscreenContext& context,
                                   const CRenderOptions& options);

/** The files that pictures of these inputs need. outputFolder may be empty. Call it while there is one thread, see
 * FilesNamedBy. */
[[nodiscard]] CFileAccess FilesFor(std::span<const std::string> inputs, const std::string& outputFolder,
                                   std::size_t scene);
