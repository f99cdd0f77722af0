// SPDX-License-Identifier: MIT
#pragma once

#include "base/CResult.h"
#include "picture/CImage.h"

class C3dsDisplayWrap;
class COffscreenContext;
struct COpenedInput;
struct CPictureOptions;

/** Sets the engine's view as the options say, and as the input's scene does where they leave it open; a scene's background
 * colour counts before that of the options. BadArgument: the options name a camera that the model lacks. */
[[nodiscard]] CStatus SetUp(C3dsDisplayWrap& engine, const CPictureOptions& options, COpenedInput& opened);
/** Draws the engine's scene into the context's picture, with the samples that the options or the size of the scene
 * ask for. */
[[nodiscard]] CResult<CImage> Draw(C3dsDisplayWrap& engine, COffscreenContext& context,
                                   const CPictureOptions& options);
