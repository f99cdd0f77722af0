// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <functional>
#include <optional>

#include "engine/draw/CDrawList.h"
#include "engine/draw/CFramePlan.h"
#include "engine/draw/CRehearsal.h"
#include "engine/draw/CSceneRenderer.h"
#include "engine/gl/CGlCapabilities.h"
#include "engine/gl/CKeptPixels.h"
#include "engine/meshes/CSceneLevels.h"
#include "engine/meshes/CSceneMeshes.h"
#include "engine/meshes/CSortedBatches.h"
#include "engine/pipeline/CFixedPipeline.h"
#include "engine/pipeline/CFrameView.h"
#include "engine/pipeline/CShaderPipeline.h"
#include "engine/pipeline/CTextureSet.h"
#include "engine/plan/CEqualMeshes.h"
#include "engine/plan/CFollowedEdit.h"
#include "engine/plan/CFrameBudget.h"
#include "engine/plan/CMovingReduction.h"

/** A plan in full, with the view that it was made for. */
struct CPlanned {
    CMatrix4d projection, modelView;
    std::array<int, 4> viewport;
    CFramePlan plan;
};

/** What one drawing of the view is given. Refers to it. */
struct CDrawing {
    CGlCurrent& gl;
    const CPreparedScene& scene;
    const CDrawOptions& options;
    const CDrawPace& pace;
    const CFrameView& view;
    CDrawPipeline& pipeline;
};

/** What CSceneRenderer holds; private to its sources. */
struct CSceneRenderer::CState {
    std::optional<CGlCapabilities> can;
    bool shadersWork = false;
    bool arraysStay = false;  ///< see the constructor
    CShaderPipeline shaders;
    CFixedPipeline fixed;
    CTextureSet textures;
    CTextureSet noTextures;
    CSceneMeshes meshes;
    CEqualMeshes equal;
    CSortedBatches sorted;
    CSceneLevels levels;
    CFrameBudget budget;
    CMovingReduction movingReduction;
    CFrameBudget followBudget;  ///< of pictures that are drawn onto kept ones
    CFollowedEdit followed;
    bool canKeep = true;              ///< false once the system has refused
    CKeptPixels kept;                 ///< of what followed does not change
    std::optional<CPlanned> planned;  ///< for the next drawing
    float allowedError = 0;           ///< of the last moving frame, see ChooseLevels
    float followError = 0;            ///< the same of those that are drawn onto kept ones
    bool isSlow = false;              ///< the last whole frame was
    bool runsLate = false;            ///< the clock has ended a frame since all was at rest
    CRehearsal tried;                 ///< of moving frames, in idle time
    CRehearsal ready;                 ///< of scenes to come
    bool madeTextures = false;        ///< for these

    void Learn(CGlCurrent& gl);
    [[nodiscard]] bool IsSoftware() const { return can->software; }
    /** Prepares all for drawing the scene, and calls draw. */
    void InFrame(CGlCurrent& gl, const CPreparedScene& scene, const CDrawOptions& options,
                 const std::function<void(const CFrameView&, CDrawPipeline&)>& draw);
    /** Draws what the view shows, in full or, while something moves, what fits. False when that is not all. */
    [[nodiscard]] bool DrawAll(const CDrawing& d);
    [[nodiscard]] CFramePlan Plan(const CPreparedScene& scene, const CFrameView& view,
                                  const CDrawOptions& options, bool moving);
    /** The one that ReductionFor made of this view, or a new one. */
    [[nodiscard]] CFramePlan PlanInFull(const CPreparedScene& scene, const CFrameView& view);
    /** drawn: the share of what was planned; 1 unless it has ended early. */
    void LearnFrom(const CFramePlan& plan, double drawn, double ms);
    // An edit that follows the user's hand: in CSceneRenderer_follow.cpp.
    /** The same while only values of some materials change: what the others show is drawn once, and kept. */
    [[nodiscard]] bool DrawFollowing(const CDrawing& d);
    /** Draws the opaque surfaces that do not change, and keeps them if all of them were drawn. */
    void DrawRest(const CDrawing& d);
    /** Draws what changes, and all that is seen through. */
    void DrawChanging(const CDrawing& d);
    void Rested(const CDrawing& d);
    [[nodiscard]] CDrawList ListOfChanging(const CDrawing& d, const CFramePlan& plan);
    /** Has the driver compile what shrinks pictures. Nothing more is to be done then. */
    [[nodiscard]] bool MakeFirstTexture(CGlCurrent& gl, const CPreparedScene& kinds);
    bool TryNextKind(CGlCurrent& gl, const CPreparedScene& scene, const CDrawOptions& options);
};
