// SPDX-License-Identifier: MIT
#include "engine/pipeline/shader_source.h"

#include <array>
#include <utility>

namespace {

constexpr std::array<const char*, kMapKinds> kMapMacros{"TEXTURE",   "TEXTURE2", "OPACITY", "SPECULAR_MAP",
                                                        "SHININESS", "SELF",     "BUMP",    "REFLECTION"};

// For a software renderer each varying costs as much as the set-up of a triangle; a plain part needs
// no position.
constexpr const char* kVertex = R"(
#ifdef POSITION
varying vec3 vPoint;
#endif
#ifndef FLAT
uniform mat3 uNormal;
#ifndef LIT_BY_VERTEX
varying vec3 vNormal;
#endif
#endif
#ifdef MAPS
varying vec2 vUv;
#endif
void main() {
    vec4 point = gl_ModelViewMatrix * gl_Vertex;
#ifdef POSITION
    vPoint = point.xyz;
#endif
#ifdef LIT_BY_VERTEX
    LightVertex(point.xyz, uNormal * gl_Normal);
#elif !defined(FLAT)
    vNormal = uNormal * gl_Normal;
#endif
#ifdef MAPS
    vUv = gl_MultiTexCoord0.xy;
#endif
    gl_Position = gl_ProjectionMatrix * point;
}
)";

// What lights give at a vertex; where there are no maps, the colour itself.
constexpr const char* kLitVaryings = R"(
#ifdef LIT_BY_VERTEX
varying vec3 vLit;
#if defined(SPECULAR) && defined(MAPS)
varying vec3 vShine;
#endif
#endif
)";

constexpr const char* kLightVertexBegin = R"(
uniform vec4 uViewer;
void LightVertex(vec3 point, vec3 N) {
    vec3 V = uViewer.xyz - uViewer.w * point;
    V *= inversesqrt(max(dot(V, V), 1e-30));
    N *= inversesqrt(max(dot(N, N), 1e-30));
#ifdef TWO_SIDED
    if (dot(N, V) < 0.0) N = -N;
#endif
    vec3 lit = vec3(0.0);
#ifdef SPECULAR
    vec3 shine = vec3(0.0);
#endif
#ifdef LIGHTS
    for (int i = 0; i < LIGHTS; ++i) {
#define POINT point
)";

constexpr const char* kLightVertexEnd = R"(
        lit += light * facing;
#ifdef SPECULAR
        shine += light * gloss;
#endif
    }
#else
    float facing = max(dot(N, V), 0.0);
    lit = vec3(facing);
#ifdef SPECULAR
    shine = vec3(pow(max(facing, 1e-4), uSpecular.w));
#endif
#endif
#ifdef MAPS
    vLit = lit;
#ifdef SPECULAR
    vShine = shine;
#endif
#else
    vLit = uBase + uDiffuse.rgb * lit;
#ifdef SPECULAR
    vLit += uSpecular.rgb * shine;
#endif
#endif
}
)";

constexpr const char* kPixelDeclarations = R"(
#ifdef POSITION
varying vec3 vPoint;
#endif
#if !defined(FLAT) && !defined(LIT_BY_VERTEX)
varying vec3 vNormal;
#endif
uniform mat3 uToViewer;
)";

constexpr const char* kDeclarations = R"(
uniform vec4 uDiffuse;
uniform vec3 uBase;
#ifdef SPECULAR
uniform vec4 uSpecular;
#endif
#ifdef LIGHTS
uniform vec4 uLightPosition[LIGHTS];
uniform vec3 uLightColor[LIGHTS];
#ifdef SPOTS
uniform vec4 uLightDirection[LIGHTS];
#endif
#ifdef RANGES
uniform vec2 uLightRange[LIGHTS];
#endif
#endif
)";

constexpr const char* kMapFunctions = R"(
varying vec2 vUv;
uniform vec3 uMapS[8];
uniform vec3 uMapT[8];
uniform vec4 uMapValue[8];
uniform vec4 uMapWeight[8];
uniform vec3 uAmbient;
uniform vec3 uAmbientLight;
uniform float uSelf;
vec2 Coordinates(int i, vec2 uv) {
    return vec2(dot(uMapS[i], vec3(uv, 1.0)), dot(uMapT[i], vec3(uv, 1.0)));
}
// The map's amount; 0 outside a decal.
float Amount(int i, vec2 at) {
    vec2 away = abs(at - 0.5);
    return uMapValue[i].w > 0.5 && max(away.x, away.y) > 0.5 ? 0.0 : uMapValue[i].x;
}
float Value(int i, vec4 color) {
    return dot(uMapWeight[i], color) * uMapValue[i].y + uMapValue[i].z;
}
vec3 Colour(int i, vec4 color) {
    return color.rgb * uMapValue[i].y + uMapValue[i].z;
}
)";

/** Steps of main() in order, each with the macro that it needs. */
constexpr const char* kMain = R"(
void main() {
#ifndef LIT_BY_VERTEX
    vec3 V = uToViewer * vec3(gl_FragCoord.xy, 1.0);
    V *= inversesqrt(dot(V, V));
#ifdef FLAT
    vec3 N = normalize(cross(dFdx(vPoint), dFdy(vPoint)));
#else
    // A zero normal stays zero instead of becoming undefined.
    vec3 N = vNormal * inversesqrt(max(dot(vNormal, vNormal), 1e-30));
#ifdef TWO_SIDED
    // By the normal, not by the winding: neighbours of such surfaces are often wound against each other.
    if (dot(N, V) < 0.0) N = -N;
#endif
#endif
#endif
    float opacity = uDiffuse.w;
    vec3 diffuse = uDiffuse.rgb;
#ifdef SPECULAR
    vec3 specular = uSpecular.rgb;
#endif
#ifdef MAPS
    vec3 ambient = uAmbient;
    float self = uSelf;
#endif
#ifdef BUMP
    {
        vec2 at = Coordinates(6, vUv);
        vec2 stepX = dFdx(at), stepY = dFdy(at);
        float here = Value(6, texture2D(uMap6, at));
        float right = Value(6, texture2D(uMap6, at + stepX)) - here;
        float up = Value(6, texture2D(uMap6, at + stepY)) - here;
        vec3 alongX = dFdx(vPoint), alongY = dFdy(vPoint);
        vec3 fromX = cross(alongY, N), fromY = cross(N, alongX);
        float area = dot(alongX, fromX);
        // Heights are measured in tiles of the map, so a bump looks the same whatever the model's units are.
        float tile = sqrt(abs(area) / max(abs(stepX.x * stepY.y - stepX.y * stepY.x), 1e-20));
        vec3 slope = (area < 0.0 ? -1.0 : 1.0) * (right * fromX + up * fromY);
        vec3 bent = abs(area) * N - BUMP_HEIGHT * Amount(6, at) * tile * slope;
        N = bent * inversesqrt(max(dot(bent, bent), 1e-30));
    }
#endif
#ifdef TEXTURE
    {
        vec2 at = Coordinates(0, vUv);
        vec4 color = texture2D(uMap0, at);
        // Colours are premultiplied where alpha counts, so that transparent pixels do not bleed into the edges.
        color.rgb /= max(mix(1.0, color.a, uMapWeight[0].z + uMapWeight[0].w), 0.004);
        float amount = Amount(0, at) * mix(1.0, color.a, uMapWeight[0].z);
        diffuse = mix(diffuse, Colour(0, color), amount);
        ambient = mix(ambient, Colour(0, color), amount);
        opacity *= mix(1.0, color.a, amount * uMapWeight[0].w);
    }
#endif
#ifdef TEXTURE2
    {
        vec2 at = Coordinates(1, vUv);
        vec4 color = texture2D(uMap1, at);
        color.rgb /= max(mix(1.0, color.a, uMapWeight[1].z), 0.004);
        float amount = Amount(1, at) * mix(1.0, color.a, uMapWeight[1].z);
        diffuse = mix(diffuse, Colour(1, color), amount);
        ambient = mix(ambient, Colour(1, color), amount);
    }
#endif
#ifdef OPACITY
    {
        vec2 at = Coordinates(2, vUv);
        opacity = mix(opacity, Value(2, texture2D(uMap2, at)), Amount(2, at));
    }
#endif
#ifdef SPECULAR
#ifdef SPECULAR_MAP
    {
        vec2 at = Coordinates(3, vUv);
        specular = mix(specular, Colour(3, texture2D(uMap3, at)) * uMapWeight[3].x, Amount(3, at));
    }
#endif
#ifdef SHININESS
    {
        vec2 at = Coordinates(4, vUv);
        specular *= mix(1.0, Value(4, texture2D(uMap4, at)), Amount(4, at));
    }
#endif
#ifdef TINTED
    specular *= diffuse;
#endif
#endif
#ifdef SELF
    {
        vec2 at = Coordinates(5, vUv);
        self = mix(self, Value(5, texture2D(uMap5, at)), Amount(5, at));
    }
#endif
#ifdef SOLID
    if (opacity * 255.0 < SOLID_FROM) discard;
    opacity = 1.0;
#endif
#ifdef TRANSLUCENT
    if (opacity * 255.0 >= SOLID_FROM) discard;
#endif
#ifdef MAPS
    vec3 color = self * diffuse + uAmbientLight * ambient;
#else
    vec3 color = uBase;
#endif
#if defined(LIT_BY_VERTEX) && !defined(MAPS)
    color = vLit;
#elif defined(LIT_BY_VERTEX)
    color += diffuse * vLit;
#ifdef SPECULAR
    color += specular * vShine;
#endif
#elif defined(LIGHTS)
    for (int i = 0; i < LIGHTS; ++i) {
#define POINT vPoint
)";

/** The light of one lamp at a place (POINT) with a normal (N), for a viewer (V). */
constexpr const char* kOneLight = R"(
        vec3 L = uLightPosition[i].xyz - POINT;
        float distance = length(L);
        L /= max(distance, 1e-20);
        vec3 light = uLightColor[i];
#ifdef SPOTS
        light *= smoothstep(uLightPosition[i].w, uLightDirection[i].w, -dot(L, uLightDirection[i].xyz));
#endif
#ifdef RANGES
        light *= clamp((uLightRange[i].y - distance) / (uLightRange[i].y - uLightRange[i].x), 0.0, 1.0);
#endif
        float facing = max(dot(N, L), 0.0);
#ifdef SPECULAR
        vec3 H = L + V;
        float highlight = max(dot(N, H * inversesqrt(max(dot(H, H), 1e-20))), 1e-4);
        float gloss = facing > 0.0 ? pow(highlight, uSpecular.w) : 0.0;
#endif
)";

constexpr const char* kMainAfterLight = R"(
        vec3 reflected = diffuse * facing;
#ifdef SPECULAR
        reflected += specular * gloss;
#endif
        color += light * reflected;
    }
#else
    float facing = max(dot(N, V), 0.0);
    color += diffuse * facing;
#ifdef SPECULAR
    color += specular * pow(max(facing, 1e-4), uSpecular.w);
#endif
#endif
#ifdef REFLECTION
    {
        vec3 R = reflect(-V, N);
        vec2 at = vec2(atan(R.y, R.x) * 0.15915494, asin(clamp(R.z, -1.0, 1.0)) * 0.31830989);
        at = Coordinates(7, at + 0.5);
        color += Colour(7, texture2D(uMap7, at)) * Amount(7, at);
    }
#endif
#ifdef DIMMED
    color = min(color, 1.0);  // or highlights would outshine what is not dimmed
    opacity *= DIMMED;
#endif
    // Multiplied here, as a colour is clipped at white before the blending: highlights on glass would lose theirs.
    gl_FragColor = vec4(color * opacity, opacity);
}
)";

/** Height of white over black, in widths of one tile of the map. */
constexpr const char* kBumpHeight = "0.03";

void Define(std::string& text, const std::string& name, const std::string& value = "1") {
    text += "#define " + name + " " + value + "\n";
}

std::string Head(const CShaderVariant& variant) {
    std::string text = "#version 120\n";
    for (unsigned i = 0; i < kMapMacros.size(); ++i) {
        if (variant.maps >> i & 1u) Define(text, kMapMacros[i]);
    }
    const bool position =
        (variant.lights > 0 && !variant.litByVertex) || variant.flat || variant.Has(EMapKind::Bump);
    const bool solid = variant.part == ESurfacePart::Solid;
    const bool translucent = variant.part == ESurfacePart::Translucent;
    const std::array<std::pair<bool, const char*>, 11> flags{{{position, "POSITION"},
                                                              {variant.maps != 0, "MAPS"},
                                                              {variant.spots, "SPOTS"},
                                                              {variant.ranges, "RANGES"},
                                                              {variant.specular, "SPECULAR"},
                                                              {variant.tintedSpecular, "TINTED"},
                                                              {variant.flat, "FLAT"},
                                                              {variant.twoSided, "TWO_SIDED"},
                                                              {variant.litByVertex, "LIT_BY_VERTEX"},
                                                              {solid, "SOLID"},
                                                              {translucent, "TRANSLUCENT"}}};
    for (const auto& [wanted, name] : flags) {
        if (wanted) Define(text, name);
    }
    if (variant.lights > 0) Define(text, "LIGHTS", std::to_string(variant.lights));
    Define(text, "BUMP_HEIGHT", kBumpHeight);
    if (variant.dimmed) Define(text, "DIMMED", std::to_string(kDimmedOpacity));
    // Between two values that a picture can have, so that rounding does not matter.
    if (solid || translucent) Define(text, "SOLID_FROM", std::to_string(kSolidAlpha - 1) + ".5");
    return text;
}

}  // namespace

std::uint32_t CShaderVariant::Key() const {
    const auto bit = [](bool value, unsigned at) { return static_cast<std::uint32_t>(value) << at; };
    return maps | bit(litByVertex, 20) | bit(dimmed, 21) | bit(spots, 8) | bit(ranges, 9) |
           bit(specular, 10) | bit(tintedSpecular, 11) | bit(flat, 12) | bit(twoSided, 13) |
           static_cast<std::uint32_t>(part) << 14 | static_cast<std::uint32_t>(lights) << 16;
}

std::string VertexShaderSource(const CShaderVariant& variant) {
    std::string text = Head(variant);
    if (variant.litByVertex)
        text += std::string(kDeclarations) + kLitVaryings + kLightVertexBegin + kOneLight + kLightVertexEnd;
    return text + kVertex;
}

std::string FragmentShaderSource(const CShaderVariant& variant) {
    std::string text = Head(variant) + kPixelDeclarations + kDeclarations + kLitVaryings;
    if (variant.maps != 0) {
        text += kMapFunctions;
        for (int i = 0; i < kMapKinds; ++i) {
            if (variant.maps >> static_cast<unsigned>(i) & 1u)
                text += "uniform sampler2D uMap" + std::to_string(i) + ";\n";
        }
    }
    return text + kMain + kOneLight + kMainAfterLight;
}
