// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "engine/draw/CPacedDrawing.h"

class CGlCurrent;
struct CPreparedScene;

/** How a scene is drawn, apart from the matrices. */
struct CDrawOptions {
    bool useFileLights = true;   ///< false, or none in the file: one headlight at the eye
    int textureRenderMode = 0;   ///< 0 trilinear with anisotropy; 1 bilinear, 2 nearest, 3 no textures
    bool fixedFunction = false;  ///< draw without shaders, as on a context that has none
    bool exact = false;          ///< for a picture to keep: all is lit by pixel
    /** By node, true for those of which only a ghost is drawn, so that the others stand out, also behind them. Empty:
     * none; nodes beyond its end are not dimmed, either. */
    std::vector<bool> dimmed;
};

/** Draws a prepared scene: GPU buffers, textures, the GLSL 1.20 program with its fixed-function fall-back.
 *
 * The caller sets both matrices: projection (with the camera on it, as gluLookAt multiplied there) and
 * model-view (the turn of the model alone). Lighting happens in model-view space; the eye is derived from the
 * projection matrix. CMaterialLook.h describes what materials mean, CFrameLights.h what lights mean. The
 * scene is drawn with the caller's polygon mode (wire frame). All GL state is restored. */
class CSceneRenderer {
  public:
    /** arraysStay: from Upload until the next Upload or Clear the arrays of meshes stay where they are; where something was
     * changed, Refresh is called before the next drawing. A software renderer then reads them there, without a copy. */
    explicit CSceneRenderer(bool arraysStay = false);
    ~CSceneRenderer();
    CSceneRenderer(const CSceneRenderer&) = delete;
    CSceneRenderer& operator=(const CSceneRenderer&) = delete;

    /** Creates the scene's buffers and textures and deletes those of the scene before. */
    void Upload(CGlCurrent& gl, const CPreparedScene& scene);
    /** To be called after an edit: uploads what is new. Meshes and pictures whose data is still at the same
     * address are not uploaded again. Those whose data in memory was freed after the upload keep their
     * buffers and textures. */
    void Refresh(CGlCurrent& gl, const CPreparedScene& scene);
    /** True where what was uploaded is still read from the meshes' arrays: these must not be freed. */
    [[nodiscard]] bool ReadsArrays() const;
    /** Deletes the scene's buffers and textures. Keeps the shader programs for the next scene in the
     * same context. */
    void Clear(CGlCurrent& gl);

    /** Draws the opaque parts, then the transparent parts from back to front. scene must be the
     * one uploaded. pace: whether, in software, only what fits into a frame's time is drawn, or what was kept of the picture
     * before is used. False when the picture is not the full one, or not whole. */
    bool Draw(CGlCurrent& gl, const CPreparedScene& scene, const CDrawOptions& options,
              const CDrawPace& pace = {});
    /** To be called when what lies behind the scene, the background, has changed: nothing of the picture before is used then.
     * All else the renderer sees itself. */
    void ForgetKept();
    /** How the picture is to be drawn so that it ends in time: 0 as it is; of a full one see CPixelWork::ReductionFor, of a
     * moving one CMovingReduction. Always 0 on hardware. The viewport is the picture's. What it plans serves the next Draw of
     * the same view, so the scene must not change between the two. */
    [[nodiscard]] int ReductionFor(CGlCurrent& gl, const CPreparedScene& scene, const CDrawOptions& options,
                                   const CDrawPace& pace = {});
    /** One step of what is done in idle time, in software and after a whole picture that took long: builds a program
     * that moving frames need, or takes over what was made of a mesh. True while more is to come. Draws pixels of
     * the current framebuffer. */
    bool WorkOnLevels(CGlCurrent& gl, const CPreparedScene& scene, const CDrawOptions& options);
    /** To be called, as often as it returns true, before a scene like kinds is uploaded: draws one pixel of one of its kinds
     * of items that it has not drawn yet, so that no program is new when the scene is there. Does nothing on hardware. */
    bool GetReadyFor(CGlCurrent& gl, const CPreparedScene& kinds, const CDrawOptions& options);
    /** While paused, no level of a further mesh is begun. */
    void PauseLevels(bool paused);
    /** For GL_SELECT: loads each drawn node's index with glLoadName and draws its triangles plainly,
     * leaving out nodes whose bounds do not meet the view volume (the pick region, when the projection is
     * restricted to it). */
    void DrawForSelection(CGlCurrent& gl, const CPreparedScene& scene);

    /** Bytes of GPU memory in buffers and textures at present. */
    [[nodiscard]] std::size_t GpuBytes() const;

  private:
    struct CState;
    std::unique_ptr<CState> m_state;
};
