// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "camera/CSeenView.h"
#include "engine/C3dsDisplayWrap.h"
#include "engine/CBackdrop.h"
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
    /** What lies behind the scene. */
    struct CBehind {
        CVec3 color;
        std::shared_ptr<const CImage> image;
        friend bool operator==(const CBehind&, const CBehind&) = default;
    };

    std::optional<CScene> scene;
    CTexturesOfScene knownTextures;  ///< the scene's textures, for callers that hold its Lib3dsFile
    CPreparedScene prepared;
    std::unique_ptr<CSceneEdits> edits;  ///< refers to scene and prepared; created by the first edit
    CSphere framing{{}, 1};              ///< the sphere that preset cameras frame; edits do not change it
    bool viewingOnly = false;
    bool keepsArrays = false;  ///< of the scene that was uploaded; see DropWhatWasUploaded
    double readMs = 0, prepareMs = 0;
    CError lastError;

    CSceneRenderer renderer{true};
    CBackdrop backdrop;
    EGpu gpu = EGpu::Nothing;
    CDrawOptions options;
    COverlays overlays;
    std::optional<std::vector<std::string>> emphasis;  ///< see SetEmphasis
    CDepthRange depthRange;                            ///< of the last InitDrawings
    bool moving = false, following = false;
    CBehind behind;                      ///< of the last drawing
    bool wholeFrame = true;              ///< of the last drawing
    int reduction = 0;                   ///< of the last drawing, see GetLastReduction
    std::function<bool()> interrupt;     ///< see SetInterrupt; may be empty
    std::function<double()> frameClock;  ///< see SetFrameClock; may be empty

    CSeenView seen;
    C2DRect preview{0, 0, 640, 480};

    void Show(CLoadedScene loaded);
    /** Moves the nodes, and the file's camera if one is in use, to the current frame. */
    void Evaluate();
    void FollowFileCamera();
    void SyncGpu(CGlCurrent& gl);
    /** For programs that only draw: frees what was copied for drawing and that no drawing needs again. */
    void DropWhatWasUploaded();
    /** How a drawing keeps to time now. */
    [[nodiscard]] CDrawPace Pace() const;
    /** Draws what lies behind the scene, over the background's colour. */
    void DrawBackground(CGlCurrent& gl);
    /** Draws the scene and its overlays with the current matrices. */
    void DrawScene(CGlCurrent& gl);
    /** The same, coarser where that would take too long. */
    void DrawInTime(CGlCurrent& gl);
    void SetPreview(const C2DRect& rect);
    void SetFrame(float frame);
    void SetPreset(ECameraPreset preset);
    /** Stores the error for LastError(); returns false. */
    bool Fail(CError error);
    bool Answer(const CStatus& status);
    /** The edits of the open scene; null when it cannot be edited. */
    CSceneEdits* Edits();
    /** One edit; LastError() tells why it failed. */
    bool Edit(const CEdit& edit);
    /** As Edit, but fails for a node without a name, which would mean the whole scene. */
    bool EditNode(const char* node, const CEdit& edit);
    /** Returns one status for each edit, also when no edit can be made. */
    std::vector<CStatus> Apply(std::span<const CEdit> all);
    /** Sets framing from the frame that is shown, unless the scene has been edited. */
    void DecideFraming();
    /** Marks the nodes to be dimmed. */
    void Emphasize();
    /** To be called after every change of the prepared scene. */
    void SceneChanged();
};
