// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <vector>

#include "model/scene/CSceneNote.h"
#include "picture/CImage.h"

struct CScriptScene;

/** The background picture of a scene, decoded within the usual limits; null for none. One that cannot be read is
 * noted. The view shares it with others that show the scene. Any thread may call it. */
[[nodiscard]] std::shared_ptr<const CImage> ReadBackground(const CScriptScene& scene,
                                                           std::vector<CSceneNote>& notes);
