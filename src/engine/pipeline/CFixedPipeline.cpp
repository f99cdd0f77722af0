// SPDX-License-Identifier: MIT
#include "engine/pipeline/CFixedPipeline.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "engine/gl/gl_api.h"
#include "engine/pipeline/CFrameLights.h"
#include "engine/pipeline/CFrameView.h"
#include "engine/pipeline/CMaterialLook.h"
#include "engine/pipeline/CTextureSet.h"
#include "model/prepare/CPreparedScene.h"

namespace {

using CVec4 = std::array<float, 4>;

CVec4 Four(CVec3 v, float w = 1) {
    return {v.x, v.y, v.z, w};
}

void SetLightColors(GLenum light, CVec3 color) {
    const CVec4 black{0, 0, 0, 1};
    glLightfv(light, GL_AMBIENT, black.data());
    glLightfv(light, GL_DIFFUSE, Four(color).data());
    glLightfv(light, GL_SPECULAR, Four(color).data());
}

/** The exponent that halves the light half-way between hotspot and falloff. */
float SpotExponent(const CFrameLight& light) {
    if (light.cosInner - light.cosOuter < 0.02f) return 0;
    const float middle = std::clamp((light.cosInner + light.cosOuter) * 0.5f, 0.01f, 0.9999f);
    return std::clamp(std::log(0.5f) / std::log(middle), 0.0f, 128.0f);
}

void SetLight(GLenum name, const CFrameLight& light) {
    SetLightColors(name, light.color);
    glLightfv(name, GL_POSITION, Four(light.position).data());
    const float halfDeg =
        std::acos(std::clamp(light.cosOuter, -1.0f, 1.0f)) * 180 / std::numbers::pi_v<float>;
    const bool cone = light.spot && halfDeg <= 90;
    glLightf(name, GL_SPOT_CUTOFF, cone ? halfDeg : 180);
    glLightf(name, GL_SPOT_EXPONENT, cone ? SpotExponent(light) : 0);
    if (cone) glLightfv(name, GL_SPOT_DIRECTION, Four(light.direction).data());
    // The formula cannot give a linear falloff; half the light in the middle of the range comes nearest.
    const float middle = (light.innerRange + light.outerRange) * 0.5f;
    glLightf(name, GL_CONSTANT_ATTENUATION, 1);
    glLightf(name, GL_LINEAR_ATTENUATION, 0);
    glLightf(name, GL_QUADRATIC_ATTENUATION, middle < 1e20f ? 1 / (middle * middle) : 0);
}

float OpacityOf(const CSurfaceUse& use) {
    return use.dimmed ? kDimmedOpacity : 1.0f;
}

void UsePart(const CSurfaceUse& use) {
    if (use.part == ESurfacePart::Whole) {
        glDisable(GL_ALPHA_TEST);
        return;
    }
    glEnable(GL_ALPHA_TEST);
    glAlphaFunc(use.part == ESurfacePart::Solid ? GL_GEQUAL : GL_LESS,
                (static_cast<float>(kSolidAlpha) - 0.5f) / 255.0f * OpacityOf(use));
}

}  // namespace

void CFixedPipeline::Begin(CGlCurrent&, const CFrame& frame) {
    m_frame.emplace(frame);
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    glEnable(GL_LIGHTING);
    glEnable(GL_NORMALIZE);
    glDisable(GL_COLOR_MATERIAL);
    glLightModeli(GL_LIGHT_MODEL_LOCAL_VIEWER, frame.view.perspective);
    glLightModeli(GL_LIGHT_MODEL_COLOR_CONTROL, GL_SEPARATE_SPECULAR_COLOR);
    glLightModelfv(GL_LIGHT_MODEL_AMBIENT, Four(frame.lights.ambient).data());
    for (GLenum i = 0; i < CFrameLights::kMaxLights; ++i) glDisable(GL_LIGHT0 + i);
    if (frame.lights.Headlight()) {
        SetLight(GL_LIGHT0, CFrameLight{{}, {}, {1, 1, 1}});
        glLightfv(GL_LIGHT0, GL_POSITION, frame.view.viewer.data());
        glEnable(GL_LIGHT0);
    }
    GLenum name = GL_LIGHT0;
    for (const CFrameLight& light : frame.lights.lights) {
        SetLight(name, light);
        glEnable(name++);
    }
}

void CFixedPipeline::End(CGlCurrent&) {
    m_frame.reset();
    glDisable(GL_TEXTURE_2D);
}

std::uint32_t CFixedPipeline::SortKey(const CPreparedMaterial& material, const CSurfaceUse& use) const {
    CShaderVariant surface =
        CMaterialLook::From(material, m_frame->textures, use.hasTexCoords, m_frame->asLines).surface;
    surface.part = use.part;
    surface.dimmed = use.dimmed;
    return surface.Key();
}

void CFixedPipeline::UseMaterial(CGlCurrent& gl, const CPreparedMaterial& material, const CSurfaceUse& use) {
    const CMaterialLook look =
        CMaterialLook::From(material, m_frame->textures, use.hasTexCoords, m_frame->asLines);
    const bool metal = material.shading == EShading::Metal && look.surface.tintedSpecular;
    const CVec3 d = look.diffuse, s = look.specular;
    const CVec3 specular = metal ? CVec3{s.x * d.x, s.y * d.y, s.z * d.z} : s;
    // A texture replaces the colour by its amount; the rest of the colour is added evenly.
    const bool textured = look.surface.Has(EMapKind::Texture);
    const float kept = textured ? 1 - material.texture.amount : 1;
    const auto blend = [&](CVec3 color) {
        return textured ? color * kept + CVec3{1, 1, 1} * material.texture.amount : color;
    };
    const float opacity = look.opacity * OpacityOf(use);
    glMaterialfv(GL_FRONT_AND_BACK, GL_AMBIENT, Four(blend(look.ambient), opacity).data());
    glMaterialfv(GL_FRONT_AND_BACK, GL_DIFFUSE, Four(blend(d), opacity).data());
    glMaterialfv(GL_FRONT_AND_BACK, GL_SPECULAR, Four(specular).data());
    glMaterialfv(GL_FRONT_AND_BACK, GL_EMISSION, Four(blend(d) * look.selfIllumination).data());
    glMaterialf(GL_FRONT_AND_BACK, GL_SHININESS, std::min(look.exponent, 128.0f));
    glLightModeli(GL_LIGHT_MODEL_TWO_SIDE, material.twoSided);
    glShadeModel(look.surface.flat ? GL_FLAT : GL_SMOOTH);
    UseTexture(gl, material, look);
    UsePart(use);
}

void CFixedPipeline::UseTexture(CGlCurrent& gl, const CPreparedMaterial& material,
                                const CMaterialLook& look) {
    if (!look.surface.Has(EMapKind::Texture)) {
        glDisable(GL_TEXTURE_2D);
        return;
    }
    CGlTexture& texture = *m_frame->textures.Find(EMapKind::Texture, material.texture);
    texture.Bind(gl, 0, m_frame->filter);
    if (!material.texture.tile) texture.SetBorder(gl, Four(look.diffuse));
    glEnable(GL_TEXTURE_2D);
    glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_MODULATE);
    const CMapRows rows = MapRows(material.texture);
    const std::array<float, 16> matrix{rows.s[0], rows.t[0], 0, 0, rows.s[1], rows.t[1], 0, 0,
                                       0,         0,         1, 0, rows.s[2], rows.t[2], 0, 1};
    glMatrixMode(GL_TEXTURE);
    glLoadMatrixf(matrix.data());
    glMatrixMode(GL_MODELVIEW);
}

void CFixedPipeline::UseTransform(CGlCurrent&, const CMatrix4d& eyeModelView) {
    glLoadMatrixf(eyeModelView.ToFloat().data());
}
