// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cmath>
#include <span>
#include <string_view>
#include <unordered_set>
#include <utility>

#include "base/text/lng.h"
#include "engine/C3dsDisplayState.h"
#include "engine/gl/CGlCapabilities.h"
#include "engine/gl/CGlCurrent.h"
#include "engine/gl/CPictureTarget.h"
#include "engine/gl/gl_api.h"

namespace {

constexpr float kPickPixels = 5;

int Pixels(double extent) {
    return static_cast<int>(std::clamp(std::abs(extent), 1.0, 65536.0));
}

/** Frees the memory, which neither clear() nor the assignment of {} does. */
template <class T>
void Release(std::vector<T>& vector) {
    std::vector<T>().swap(vector);
}

/** Blows the pixels round a point, in OpenGL's bottom-up coordinates, up to the whole view. */
void RestrictTo(float x, float y, int width, int height) {
    const float w = static_cast<float>(width), h = static_cast<float>(height);
    glTranslatef((w - 2 * x) / kPickPixels, (h - 2 * y) / kPickPixels, 0);
    glScalef(w / kPickPixels, h / kPickPixels, 1);
}

/** Widens the depth range of the projection matrix during its lifetime if the spheres, moved by the
 * model-view matrix, would be cut off. The old matrix is saved here because the matrix stack may be full. */
class CWidenedDepth {
  public:
    CWidenedDepth(CDepthRange range, std::span<const CSphere> spheres) {
        glGetFloatv(GL_PROJECTION_MATRIX, m_projection.m.data());
        CMat4 model;
        glGetFloatv(GL_MODELVIEW_MATRIX, model.m.data());
        const CDepthRange needed = WidenedFor(range, m_projection, model, spheres);
        if (needed.nearPlane >= range.nearPlane && needed.farPlane <= range.farPlane) return;
        const double n = static_cast<double>(needed.nearPlane), f = static_cast<double>(needed.farPlane);
        const float scale = static_cast<float>((f + n) / (f - n));
        CMat4 widened = m_projection;
        for (std::size_t column = 0; column < 4; ++column) {
            widened.m[column * 4 + 2] = scale * m_projection.m[column * 4 + 3];
        }
        widened.m[14] -= static_cast<float>(2 * f * n / (f - n));
        Load(widened);
    }
    CWidenedDepth(const CWidenedDepth&) = delete;
    CWidenedDepth& operator=(const CWidenedDepth&) = delete;
    ~CWidenedDepth() { Load(m_projection); }

  private:
    static void Load(const CMat4& projection) {
        glMatrixMode(GL_PROJECTION);
        glLoadMatrixf(projection.m.data());
        glMatrixMode(GL_MODELVIEW);
    }

    CMat4 m_projection;
};

/** Makes a picture the target of drawing during its lifetime, then the window again, with its state. */
class CIntoPicture {
  public:
    CIntoPicture() { glPushAttrib(GL_ALL_ATTRIB_BITS); }
    CIntoPicture(const CIntoPicture&) = delete;
    CIntoPicture& operator=(const CIntoPicture&) = delete;
    ~CIntoPicture() {
        glBindFramebuffer(GL_FRAMEBUFFER, 0);
        glPopAttrib();
    }
};

/** Sets another seen view during its lifetime, and draws it exactly, with nothing dimmed unless it is of
 * the screen. */
template <class State>
class CShownMeanwhile {
  public:
    CShownMeanwhile(State& state, const CSeenView& seen, EPictureOf what)
        : m_state(state),
          m_seen(state.seen),
          m_preview(state.preview),
          m_overlays(state.overlays),
          m_dimmed(state.options.dimmed),
          m_wholeFrame(state.wholeFrame) {
        const CViewCamera& camera = seen.camera;
        state.options.exact = true;
        if (what != EPictureOf::Screen) state.options.dimmed.clear();
        Show(seen, C2DRect(0, 0, camera.ViewWidth(), camera.ViewHeight()),
             what == EPictureOf::Model ? COverlays{} : state.overlays);
    }
    CShownMeanwhile(const CShownMeanwhile&) = delete;
    CShownMeanwhile& operator=(const CShownMeanwhile&) = delete;
    ~CShownMeanwhile() {
        m_state.options.exact = false;
        m_state.options.dimmed = std::move(m_dimmed);
        m_state.wholeFrame = m_wholeFrame;
        Show(m_seen, m_preview, m_overlays);
    }

  private:
    void Show(const CSeenView& seen, const C2DRect& preview, const COverlays& overlays) {
        const float frame = m_state.seen.frame;
        m_state.seen = seen;
        m_state.preview = preview;
        m_state.overlays = overlays;
        if (frame != seen.frame) m_state.SetFrame(seen.frame);
    }

    State& m_state;
    CSeenView m_seen;
    C2DRect m_preview;
    COverlays m_overlays;
    std::vector<bool> m_dimmed;
    bool m_wholeFrame;
};

}  // namespace

void C3dsDisplayWrap::CState::SyncGpu(CGlCurrent& gl) {
    if (gpu == EGpu::NeedsRefresh) {
        renderer.Refresh(gl, prepared);
    } else if (gpu == EGpu::NeedsUpload) {
        renderer.Upload(gl, prepared);
    }
    keepsArrays = keepsArrays || gpu != EGpu::Ready;
    gpu = EGpu::Ready;
}

void C3dsDisplayWrap::CState::DropWhatWasUploaded() {
    if (!viewingOnly || !std::exchange(keepsArrays, false)) return;
    for (CPreparedTexture& texture : prepared.textures) Release(texture.image.rgba);
    if (renderer.ReadsArrays()) return;
    for (CPreparedMesh& mesh : prepared.meshes) {
        const auto blends = [this](const CPreparedBatch& batch) {
            return prepared.materials[batch.material].needsBlending;
        };
        if (std::any_of(mesh.batches.begin(), mesh.batches.end(), blends))
            continue;  // sorted anew for each view
        Release(mesh.vertices);
        Release(mesh.texCoords);
        Release(mesh.indices16);
        Release(mesh.indices32);
    }
}

bool C3dsDisplayWrap::InitDrawings(int renderMode, int x, int y) {
    CGlCurrent gl;
    const int width = Pixels(m_state->preview.right - m_state->preview.left);
    const int height = Pixels(m_state->preview.bottom - m_state->preview.top);
    glViewport(0, 0, width, height);
    const CVec3 background = m_state->seen.background;
    glClearColor(background.x, background.y, background.z, 1);
    glClearDepth(1);
    glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE);
    glDepthMask(GL_TRUE);
    glDisable(GL_SCISSOR_TEST);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    glEnable(GL_DEPTH_TEST);
    glDepthFunc(GL_LESS);
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    if (!m_state->scene) return false;

    m_state->SyncGpu(gl);
    if (renderMode == GL_SELECT) {
        RestrictTo(static_cast<float>(x) + 0.5f, static_cast<float>(height - y) - 0.5f, width, height);
    } else {
        m_state->DrawBackground(gl);
    }
    const CSeenView& seen = m_state->seen;
    m_state->depthRange = seen.DepthRange(m_state->prepared.boundingSphere,
                                          OverlayExtents(m_state->prepared, m_state->overlays));
    glMultMatrixf(seen.ProjectionMatrix(m_state->depthRange).m.data());
    return true;
}

void C3dsDisplayWrap::DrawModel(int renderMode) {
    if (!m_state->scene) return;
    CGlCurrent gl;
    m_state->SyncGpu(gl);
    const CPreparedScene& scene = m_state->prepared;
    glPushAttrib(GL_TRANSFORM_BIT);
    glMatrixMode(GL_MODELVIEW);
    glPushMatrix();
    glMultMatrixf(m_state->seen.AnglesMatrix().m.data());
    {
        std::vector<CSphere> extents = OverlayExtents(scene, m_state->overlays);
        extents.push_back(scene.boundingSphere);
        const CWidenedDepth depth(m_state->depthRange, extents);
        if (renderMode == GL_SELECT) {
            m_state->renderer.DrawForSelection(gl, scene);
        } else {
            m_state->DrawInTime(gl);
        }
    }
    glPopMatrix();
    glPopAttrib();
}

void C3dsDisplayWrap::PaintModel() {
    if (!InitDrawings(GL_RENDER, -1, -1)) return;
    const CSeenView& seen = m_state->seen;
    glMultMatrixf(seen.ViewMatrix().m.data());
    glMatrixMode(GL_MODELVIEW);
    glLoadMatrixf(seen.PlacingMatrix().m.data());
    glPushAttrib(GL_POLYGON_BIT);
    glPolygonMode(GL_FRONT_AND_BACK, seen.wire ? GL_LINE : GL_FILL);
    DrawModel(GL_RENDER);
    glPopAttrib();
    glLoadIdentity();
}

CResult<CImage> C3dsDisplayWrap::TakePicture(const CSeenView& seen, EPictureOf what,
                                             const std::function<void()>& drawOver) {
    CGlCurrent gl;
    const CGlCapabilities can = CGlCapabilities::Query(gl);
    if (!can.framebuffers)
        return CError{EErrorCode::NoGraphics, lng::Mark("OpenGL is too old to draw into memory"), ""};
    int samples = 4;
    if (what == EPictureOf::Screen) glGetIntegerv(GL_SAMPLES, &samples);
    const CShownMeanwhile<CState> shown(*m_state, seen, what);
    const CIntoPicture intoPicture;
    CResult<CPictureTarget> target = CPictureTarget::Create(gl, Pixels(seen.camera.ViewWidth()),
                                                            Pixels(seen.camera.ViewHeight()), samples);
    if (!target) return target.Error();
    PaintModel();
    if (what != EPictureOf::Model && drawOver && m_state->scene) drawOver();
    return target.Value().ReadPixels(gl);
}

void C3dsDisplayWrap::SetBkColors(float r, float g, float b) {
    const CVec3 color{r, g, b};
    if (!IsFinite(color)) return;
    m_state->seen.background = {std::clamp(r, 0.0f, 1.0f), std::clamp(g, 0.0f, 1.0f),
                                std::clamp(b, 0.0f, 1.0f)};
}

void C3dsDisplayWrap::SetTextureRenderMode(int mode) {
    m_state->options.textureRenderMode = mode;
}
void C3dsDisplayWrap::SetUseFileLights(bool use) {
    m_state->options.useFileLights = use;
}
void C3dsDisplayWrap::SetOverlays(const COverlays& overlays) {
    m_state->overlays = overlays;
}
void C3dsDisplayWrap::SetEmphasis(std::optional<std::vector<std::string>> nodes) {
    m_state->emphasis = std::move(nodes);
    m_state->Emphasize();
}

void C3dsDisplayWrap::CState::Emphasize() {
    options.dimmed.clear();
    if (!emphasis) return;
    const std::unordered_set<std::string_view> named(emphasis->begin(), emphasis->end());
    for (const CPreparedNode& node : prepared.nodes) options.dimmed.push_back(!named.contains(node.name));
}

const COverlays& C3dsDisplayWrap::Overlays() const {
    return m_state->overlays;
}
