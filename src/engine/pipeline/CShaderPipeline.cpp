// SPDX-License-Identifier: MIT
#include "engine/pipeline/CShaderPipeline.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "engine/gl/gl_api.h"
#include "engine/pipeline/CFrameLights.h"
#include "engine/pipeline/CFrameView.h"
#include "engine/pipeline/CMaterialLook.h"
#include "engine/pipeline/CTextureSet.h"
#include "model/prepare/CPreparedScene.h"

namespace {

void Set(int location, CVec3 v) {
    glUniform3f(location, v.x, v.y, v.z);
}
void Set(int location, CVec3 v, float w) {
    glUniform4f(location, v.x, v.y, v.z, w);
}

CVec3 BaseColor(const CMaterialLook& look, CVec3 ambientLight) {
    const CVec3 d = look.diffuse * look.selfIllumination, a = look.ambient;
    return d + CVec3{a.x * ambientLight.x, a.y * ambientLight.y, a.z * ambientLight.z};
}

/** Without mipmaps: where the angle of a reflection jumps by a whole turn, and at the poles, too coarse a
 * level would be chosen. */
ETextureFilter FilterFor(EMapKind kind, ETextureFilter wanted) {
    return kind == EMapKind::Reflection && wanted == ETextureFilter::Trilinear ? ETextureFilter::Bilinear
                                                                               : wanted;
}

/** Which channels make a map's value. */
std::array<float, 4> Weight(EMapKind kind, const CPreparedMap& map, const CPreparedMaterial& material) {
    switch (kind) {
        case EMapKind::Texture:
            return {0, 0, map.decal ? 1.0f : 0.0f, map.AlphaIsOpacity() ? 1.0f : 0.0f};
        case EMapKind::Texture2:
            return {0, 0, map.ignoreAlpha ? 0.0f : 1.0f, 0};
        case EMapKind::Specular:
            return {material.shininessStrength, 0, 0, 0};
        default:
            break;
    }
    if (map.alphaSource) return {0, 0, 0, 1};
    return {0.299f, 0.587f, 0.114f, 0};
}

}  // namespace

CShaderVariant CShaderPipeline::Variant(const CPreparedMaterial& material, const CSurfaceUse& use) const {
    CShaderVariant variant = CMaterialLook::From(material, m_frame->textures, use.hasTexCoords,
                                                 m_frame->asLines || IsWire(material))
                                 .surface;
    variant.lights = static_cast<int>(m_frame->lights.lights.size());
    variant.spots = m_frame->lights.anySpot;
    variant.ranges = m_frame->lights.anyRange;
    variant.part = use.part;
    variant.dimmed = use.dimmed;
    const bool needsPixels = variant.flat || variant.Has(EMapKind::Bump) || variant.Has(EMapKind::Reflection);
    variant.litByVertex = use.litByVertex && !needsPixels;
    return variant;
}

CResult<CShaderPipeline::CVariantProgram> CShaderPipeline::Build(CGlCurrent& gl,
                                                                 const CShaderVariant& variant) const {
    CResult<CGlProgram> built = m_build(gl, VertexShaderSource(variant), FragmentShaderSource(variant));
    if (!built) return built.Error();
    CVariantProgram result;
    result.program = std::move(built).Value();
    const std::array<std::pair<int*, const char*>, 17> names{{{&result.normal, "uNormal"},
                                                              {&result.toViewer, "uToViewer"},
                                                              {&result.viewer, "uViewer"},
                                                              {&result.base, "uBase"},
                                                              {&result.diffuse, "uDiffuse"},
                                                              {&result.ambient, "uAmbient"},
                                                              {&result.self, "uSelf"},
                                                              {&result.specular, "uSpecular"},
                                                              {&result.ambientLight, "uAmbientLight"},
                                                              {&result.lightPosition, "uLightPosition"},
                                                              {&result.lightDirection, "uLightDirection"},
                                                              {&result.lightColor, "uLightColor"},
                                                              {&result.lightRange, "uLightRange"},
                                                              {&result.mapS, "uMapS"},
                                                              {&result.mapT, "uMapT"},
                                                              {&result.mapValue, "uMapValue"},
                                                              {&result.mapWeight, "uMapWeight"}}};
    for (const auto& [location, name] : names) *location = result.program.Uniform(gl, name);
    result.program.Use(gl);
    for (int i = 0; i < kMapKinds; ++i) {
        glUniform1i(result.program.Uniform(gl, ("uMap" + std::to_string(i)).c_str()), i);
    }
    return result;
}

CStatus CShaderPipeline::Check(CGlCurrent& gl) {
    const CShaderVariant plain;
    CResult<CVariantProgram> built = Build(gl, plain);
    glUseProgram(0);
    if (!built) return built.Error();
    m_programs.emplace(plain.Key(), std::move(built).Value());
    return CDone{};
}

CShaderPipeline::CVariantProgram& CShaderPipeline::Program(CGlCurrent& gl, const CShaderVariant& variant) {
    const auto found = m_programs.find(variant.Key());
    if (found != m_programs.end()) return found->second;
    if (!m_rejected.contains(variant.Key())) {
        CResult<CVariantProgram> built = Build(gl, variant);
        if (built) return m_programs.emplace(variant.Key(), std::move(built).Value()).first->second;
        m_rejected.insert(variant.Key());  // or each drawing would spend the time to try again
    }
    // A driver that gives up on a long program (many maps) still draws the material without them.
    const CShaderVariant plain;
    return variant.Key() == plain.Key() ? m_programs[variant.Key()] : Program(gl, plain);
}

void CShaderPipeline::Begin(CGlCurrent&, const CFrame& frame) {
    std::array<int, 4> viewport{};
    glGetIntegerv(GL_VIEWPORT, viewport.data());
    m_toViewer = frame.view.PixelToViewer(viewport);
    m_frame.emplace(frame);
    m_current = nullptr;
    ++m_frameNumber;
}

void CShaderPipeline::End(CGlCurrent&) {
    m_frame.reset();
    m_current = nullptr;
    glUseProgram(0);
}

std::uint32_t CShaderPipeline::SortKey(const CPreparedMaterial& material, const CSurfaceUse& use) const {
    return Variant(material, use).Key();
}

void CShaderPipeline::UseMaterial(CGlCurrent& gl, const CPreparedMaterial& material, const CSurfaceUse& use) {
    CVariantProgram& program = Program(gl, Variant(material, use));
    if (m_current != &program) program.program.Use(gl);
    m_current = &program;
    if (program.frame != m_frameNumber) {
        SetFrame(program);
        program.frame = m_frameNumber;
    }
    const CMaterialLook look = CMaterialLook::From(material, m_frame->textures, use.hasTexCoords,
                                                   m_frame->asLines || IsWire(material));
    SetLook(program, look);
    if (look.surface.maps != 0) SetMaps(gl, program, material, look);
}

void CShaderPipeline::SetFrame(const CVariantProgram& program) const {
    // For Mesa the rows of a window count upwards and those of a framebuffer object downwards. Mesa notices a
    // change between the two only when the program or one of its uniforms changes.
    constexpr std::array<float, 9> kNone{};
    glUniformMatrix3fv(program.toViewer, 1, GL_FALSE, kNone.data());
    glUniformMatrix3fv(program.toViewer, 1, GL_FALSE, m_toViewer.data());
    glUniform4fv(program.viewer, 1, m_frame->view.viewer.data());
    Set(program.ambientLight, m_frame->lights.ambient);
    std::vector<float> position, direction, color, range;
    for (const CFrameLight& light : m_frame->lights.lights) {
        position.insert(position.end(),
                        {light.position.x, light.position.y, light.position.z, light.cosOuter});
        direction.insert(direction.end(),
                         {light.direction.x, light.direction.y, light.direction.z, light.cosInner});
        color.insert(color.end(), {light.color.x, light.color.y, light.color.z});
        range.insert(range.end(), {light.innerRange, light.outerRange});
    }
    const auto count = static_cast<GLsizei>(m_frame->lights.lights.size());
    if (count == 0) return;
    glUniform4fv(program.lightPosition, count, position.data());
    glUniform4fv(program.lightDirection, count, direction.data());
    glUniform3fv(program.lightColor, count, color.data());
    glUniform2fv(program.lightRange, count, range.data());
}

void CShaderPipeline::SetLook(const CVariantProgram& program, const CMaterialLook& look) const {
    Set(program.diffuse, look.diffuse, look.opacity);
    Set(program.base, BaseColor(look, m_frame->lights.ambient));
    Set(program.ambient, look.ambient);
    Set(program.specular, look.specular, look.exponent);
    glUniform1f(program.self, look.selfIllumination);
}

void CShaderPipeline::SetMaps(CGlCurrent& gl, const CVariantProgram& program,
                              const CPreparedMaterial& material, const CMaterialLook& look) const {
    std::array<std::array<float, 3>, kMapKinds> s{}, t{};
    std::array<std::array<float, 4>, kMapKinds> value{}, weight{};
    const std::array<const CPreparedMap*, kMapKinds> maps = MapsOf(material);
    for (int i = 0; i < kMapKinds; ++i) {
        const auto at = static_cast<std::size_t>(i);
        const auto kind = static_cast<EMapKind>(i);
        const CPreparedMap& map = *maps[at];
        if (!look.surface.Has(kind)) continue;
        m_frame->textures.Find(kind, map)->Bind(gl, i, FilterFor(kind, m_frame->filter));
        const CMapRows rows = MapRows(map);
        s[at] = rows.s;
        t[at] = rows.t;
        const float sign = map.negative ? -1.0f : 1.0f;
        value[at] = {map.amount, sign, map.negative ? 1.0f : 0.0f, map.tile ? 0.0f : 1.0f};
        weight[at] = Weight(kind, map, material);
    }
    glUniform3fv(program.mapS, kMapKinds, s.front().data());
    glUniform3fv(program.mapT, kMapKinds, t.front().data());
    glUniform4fv(program.mapValue, kMapKinds, value.front().data());
    glUniform4fv(program.mapWeight, kMapKinds, weight.front().data());
}

void CShaderPipeline::UseTransform(CGlCurrent&, const CMatrix4d& eyeModelView) {
    glLoadMatrixf(eyeModelView.ToFloat().data());
    if (m_current && m_current->normal >= 0) {
        glUniformMatrix3fv(m_current->normal, 1, GL_FALSE, eyeModelView.NormalMatrix().data());
    }
}
