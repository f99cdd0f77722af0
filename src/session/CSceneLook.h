// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>

#include "base/math/CVec.h"
#include "picture/CImage.h"
#include "session/CShowState.h"

/** How a scene is shown apart from its camera and frame; nothing of it is stored in the settings. */
struct CSceneLook {
    CShowState show;
    int textureMode = 0;  ///< see C3dsDisplayWrap::SetTextureRenderMode
    CVec3d pivot;
    CVec3d scale{1, 1, 1};
    std::shared_ptr<const CImage> backgroundImage;  ///< shared with the view; null: none
    std::wstring caption;
};
