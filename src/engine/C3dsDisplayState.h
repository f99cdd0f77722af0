// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
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
    CTexturesOfScene knownTextures;      ///< of scene, for those who got its Lib3dsFile
    CPreparedScene prepared;             ///< ask Fresh() for it
    std::unique_ptr<CSceneEdits> edits;  ///< refers to scene; made by the first edit
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
    /** The prepared scene, prepared anew when edits made it out of date. A scene must be open. */
    CPreparedScene& Fresh();
    /** Evaluates nodes at the current frame; the file's camera in use moves along. */
    void Evaluate();
    void SyncGpu(CGlCurrent& gl);
    void DropWhatWasUploaded();
    void SetPreview(const C2DRect& rect);
    void SetFrame(float frame);
    void SetPreset(ECameraPreset preset);
    /** Keeps the failure for LastError. */
    bool Fail(CError error);
    bool Answer(const CStatus& status);
    /** Runs an edit of the open scene; without one, and on any exception, it fails. */
    bool Edit(const std::function<CStatus(CSceneEdits&)>& edit);
    /** Changes a material: of one node, or of the whole scene where node is null. */
    bool EditMaterial(const char* node, const char* material, const CSceneEdits::CMaterialChange& change);
    bool EditTexture(const char* node, const char* material, const CStdStr<wchar_t>& imagePath);

  private:
    void PrepareAgain();
};
