// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <optional>

#include "camera/CSeenView.h"
#include "engine/C3dsDisplayWrap.h"
#include "engine/draw/CSceneRenderer.h"
#include "engine/overlay/overlays.h"
#include "model/edit/CSceneEdits.h"
#include "model/open/load_scene.h"
#include "model/prepare/CPreparedScene.h"
#include "model/scene/CScene.h"
#include "model/textures/CLib3dsMatUtil.h"

/** What C3dsDisplayWrap holds; private to its sources. */
struct C3dsDisplayWrap::CState {
    enum class EGpu { Nothing, NeedsUpload, NeedsRefresh, Ready };

    std::optional<CScene> scene;
    CTexturesOfScene knownTextures;  ///< of scene, for those who got its Lib3dsFile
    CPreparedScene prepared;
    std::unique_ptr<CSceneEdits> edits;  ///< refers to both; made by the first edit
    CSphere framing{{}, 1};              ///< what presets are placed round; edits do not change it
    bool viewingOnly = false;
    double readMs = 0, prepareMs = 0;
    CError lastError;

    CSceneRenderer renderer;
    EGpu gpu = EGpu::Nothing;
    CDrawOptions options;
    COverlays overlays;
    CDepthRange depthRange;  ///< of the last InitDrawings

    CSeenView seen;
    C2DRect preview{0, 0, 640, 480};

    void Show(CLoadedScene loaded);
    /** Evaluates nodes at the current frame; the file's camera in use moves along. */
    void Evaluate();
    void FollowFileCamera();
    void SyncGpu(CGlCurrent& gl);
    void DropWhatWasUploaded();
    void SetPreview(const C2DRect& rect);
    void SetFrame(float frame);
    void SetPreset(ECameraPreset preset);
    /** Keeps the failure for LastError. */
    bool Fail(CError error);
    bool Answer(const CStatus& status);
    /** The edits of the open scene; null where none can be made. */
    CSceneEdits* Edits();
    /** One edit; LastError() tells why it failed. */
    bool Edit(const CEdit& edit);
    /** The same, refused where its node has no name: that would mean the whole scene. */
    bool EditNode(const char* node, const CEdit& edit);
    /** One answer for each edit, whatever happens. */
    std::vector<CStatus> Apply(std::span<const CEdit> all);
    /** Where nothing is edited: what presets are placed round at the frame that is shown. */
    void DecideFraming();
    /** After the prepared scene was changed. */
    void SceneChanged();
};
