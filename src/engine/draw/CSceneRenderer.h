// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <memory>

class CGlCurrent;
struct CPreparedScene;

/** What a frame is drawn with, apart from the matrices. */
struct CDrawOptions {
    bool useFileLights = true;   ///< false, or none in the file: one headlight at the eye
    int textureRenderMode = 0;   ///< 0 trilinear with anisotropy; 1 bilinear, 2 nearest, 3 no textures
    bool fixedFunction = false;  ///< draw without shaders, as on a context that has none
};

/** Draws a prepared scene: GPU buffers, textures, the GLSL 1.20 program with its fixed-function fall-back.
 *
 * The caller sets both matrices: projection (with the camera on it, as gluLookAt multiplied there) and
 * model-view (the turn of the model alone). Lighting happens in model-view space; the eye is derived from the
 * projection matrix. What materials mean is said in CMaterialLook.h, what lights mean in CFrameLights.h. The
 * polygon mode that the caller set is kept (wire frame). All other GL state is left as it was found. */
class CSceneRenderer {
  public:
    CSceneRenderer();
    ~CSceneRenderer();
    CSceneRenderer(const CSceneRenderer&) = delete;
    CSceneRenderer& operator=(const CSceneRenderer&) = delete;

    /** Makes buffers and textures of the scene, dropping those of the one before. */
    void Upload(CGlCurrent& gl, const CPreparedScene& scene);
    /** After an edit changed materials, textures, batches or nodes: makes what is new. A mesh whose vertices
     * still lie where they lay, and a picture likewise, is not uploaded again; one that was given back since
     * (empty now) stays. */
    void Refresh(CGlCurrent& gl, const CPreparedScene& scene);
    /** Deletes everything it made of a scene; its programs stay for the next one, in the same context. */
    void Clear(CGlCurrent& gl);

    /** What is opaque, then what is transparent from back to front. scene must be the one uploaded. */
    void Draw(CGlCurrent& gl, const CPreparedScene& scene, const CDrawOptions& options);
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
