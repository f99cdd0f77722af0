// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "base/math/CBox.h"
#include "base/math/CSphere.h"
#include "model/scene/CSceneNote.h"
#include "picture/CImage.h"

struct Lib3dsNode;

/** A scene made ready to be drawn, picked and exported: all code that uses geometry reads it in this form.
 *
 * Meshes hold vertices split by smoothing group and texture seam and triangles batched by material. Nodes
 * carry the hierarchy; PrepareScene evaluates them at the file's current frame, EvaluateNodes at any other.
 * Everything is a value: no OpenGL, no lib3ds structures except the Lib3dsNode each node came from. */

/** One vertex as it is uploaded: position in the file's coordinates, normal as signed 16-bit fractions. */
struct CPreparedVertex {
    float position[3];
    std::int16_t normal[4];  ///< x, y, z scaled by 32767 (zero for a degenerate corner); [3] is padding

    [[nodiscard]] CVec3 Position() const { return {position[0], position[1], position[2]}; }
    [[nodiscard]] CVec3 Normal() const {
        constexpr float k = 1.0f / 32767.0f;
        return {static_cast<float>(normal[0]) * k, static_cast<float>(normal[1]) * k,
                static_cast<float>(normal[2]) * k};
    }
};
static_assert(sizeof(CPreparedVertex) == 20);

/** A run of triangles of one material: indices [firstIndex, firstIndex + indexCount) of the mesh. */
struct CPreparedBatch {
    std::uint32_t material = 0;  ///< index into CPreparedScene::materials, always valid
    std::uint32_t firstIndex = 0;
    std::uint32_t indexCount = 0;
    friend bool operator==(const CPreparedBatch&, const CPreparedBatch&) = default;
};

/** Indices are 16-bit where the mesh has at most 65,536 prepared vertices, else 32-bit; exactly one of the
 * two vectors is filled. texCoords is empty or has one entry for each vertex (v upwards, as in the file). */
struct CPreparedMesh {
    static constexpr double kUnknownArea = std::numeric_limits<double>::infinity();

    std::string name;
    std::vector<CPreparedVertex> vertices;
    std::vector<CVec2> texCoords;
    std::vector<std::uint16_t> indices16;
    std::vector<std::uint32_t> indices32;
    std::vector<CPreparedBatch> batches;
    CBox bounds;                 ///< of the vertices, in the file's coordinates
    double area = kUnknownArea;  ///< of all triangles, as far as it is known
    CMat4 toLocal;               ///< file coordinates to object coordinates; see ResolveMirroring
    bool matrixMirrors = false;  ///< the mesh matrix has a negative determinant
    std::uint64_t stamp = 0;     ///< changes whenever vertices or indices are made anew

    [[nodiscard]] std::uint32_t IndexCount() const {
        return static_cast<std::uint32_t>(indices16.empty() ? indices32.size() : indices16.size());
    }
    [[nodiscard]] std::uint32_t Index(std::uint32_t i) const {
        return indices16.empty() ? indices32[i] : indices16[i];
    }
};

enum class ENodeKind { Object, Dummy, Camera, CameraTarget, Light, SpotTarget, Ambient };

/** A key of a morph track: the mesh whose shape the node's mesh has at a frame. */
struct CMorphKey {
    float frame = 0;
    std::size_t mesh = 0;  ///< index into meshes; as many points as the node's own
};
/** A shape between two others: share 0 is the first, 1 the second. */
struct CMorphShape {
    std::size_t from = 0, to = 0;  ///< indices into meshes
    float share = 0;
    friend bool operator==(const CMorphShape&, const CMorphShape&) = default;
};
/** How a node's mesh changes its shape; no other node shows that mesh. */
struct CPreparedMorph {
    std::vector<CMorphKey> keys;  ///< by frame; empty: it does not change
    bool repeats = false;         ///< begins again behind the last key
    CMorphShape shape;            ///< that the mesh with this stamp has
    std::uint64_t stamp = 0;
};

/** One node of the hierarchy. Parents stand before their children. Object nodes with a mesh are what is
 * drawn; several nodes may share one mesh (instances). */
struct CPreparedNode {
    /** Unique among object nodes: the file's name, with ".instance" where the file names an instance, and
     * with "#2", "#3", ... where two are still alike. */
    std::string name;
    ENodeKind kind = ENodeKind::Object;
    int parent = -1;               ///< index into nodes, or -1
    int mesh = -1;                 ///< index into meshes, or -1
    Lib3dsNode* source = nullptr;  ///< not owned; null for a node made up for a mesh without one
    /** No keys say where the node is: fixedWorld does, and shows the points as the file has them. */
    bool isPlacedByMesh = false;
    CMat4 fixedWorld;       ///< world when isPlacedByMesh
    CVec3 pivot;            ///< in object coordinates
    CMat4 meshToNode;       ///< T(-pivot) * mesh.toLocal; constant
    CMat4 world;            ///< node coordinates to scene, at the evaluated frame
    CMat4 meshToWorld;      ///< world * meshToNode: what the vertices are multiplied with
    bool mirrored = false;  ///< meshToWorld has a negative determinant: front faces are clockwise
    bool visible = true;    ///< not hidden by its hide track at this frame, and within the budget
    /** Never visible: the nodes before it draw as much as a scene may, or others change into its shape. */
    bool isLeftOut = false;
    CPreparedMorph morph;
    CBox worldBounds;  ///< of the vertices at this frame; see EvaluateBounds; empty without a mesh
    std::uint64_t boundsStamp = 0;  ///< of the mesh that worldBounds were worked out for, 0: none
};

/** One map of a material. Amount 0 or texture -1 means that it has no effect. */
struct CPreparedMap {
    int texture = -1;  ///< index into textures
    float amount = 1;  ///< 0..1, the map's percentage
    CVec2 scale{1, 1};
    CVec2 offset;
    float rotationDeg = 0;     ///< about the middle of the map, counter-clockwise
    bool tile = true;          ///< false: the map is drawn once and the material's own colour shows beside it
    bool decal = false;        ///< where the picture's alpha is low the material's own colour shows
    bool mirror = false;       ///< every other tile is mirrored
    bool negative = false;     ///< the picture's values are inverted
    bool alphaSource = false;  ///< the value is the picture's alpha, not its intensity
    bool ignoreAlpha = false;  ///< the picture's alpha is not used

    /** Texture coordinates of the file to those of the picture, as a column-major affine 2x3: s = t[0] u +
     * t[2] v + t[4], t = t[1] u + t[3] v + t[5]. */
    [[nodiscard]] std::array<float, 6> UvTransform() const;
    [[nodiscard]] bool HasEffect() const { return texture >= 0 && amount > 0; }
    /** For the diffuse map: its picture's alpha makes the surface transparent, as game models expect, unless
     * the file says that alpha is ignored or lets the material's colour through (decal). */
    [[nodiscard]] bool AlphaIsOpacity() const { return !ignoreAlpha && !decal; }
    friend bool operator==(const CPreparedMap&, const CPreparedMap&) = default;
};

enum class EShading { Wire, Flat, Gouraud, Phong, Metal };

/** Colours are 0..1 red, green, blue. */
struct CPreparedMaterial {
    std::string name;
    CVec3 ambient{0.588f, 0.588f, 0.588f};
    CVec3 diffuse{0.588f, 0.588f, 0.588f};
    CVec3 specular{0.898f, 0.898f, 0.898f};
    float shininess = 0.1f;       ///< 0..1; the Blinn exponent is 2^(10 * shininess)
    float shininessStrength = 0;  ///< 0..1; scales specular
    float transparency = 0;       ///< 0 opaque .. 1 invisible
    float selfIllumination = 0;   ///< 0..1
    EShading shading = EShading::Phong;
    bool twoSided = false;
    bool wire = false;  ///< drawn as lines
    float wireSizePx = 1;
    bool additive = false;
    CPreparedMap texture;  ///< diffuse and ambient colour
    CPreparedMap texture2;
    CPreparedMap opacity;
    CPreparedMap specularMap;
    CPreparedMap shininessMap;
    CPreparedMap selfIlluminationMap;
    CPreparedMap bump;
    CPreparedMap reflection;  ///< spherical environment map

    /** True where any part may be seen through: sorted and drawn after the opaque ones. */
    bool needsBlending = false;
    friend bool operator==(const CPreparedMaterial&, const CPreparedMaterial&) = default;
};

/** One picture that materials refer to. Not found or not readable: the image is empty and a note says so. */
struct CPreparedTexture {
    std::string reference;         ///< as the file has it
    std::string foundAt;           ///< path or archive entry; empty when not found
    CImage image;                  ///< rows top to bottom
    bool hasTranslucency = false;  ///< some alpha is below 255
};

/** Values at the evaluated frame. */
struct CPreparedLight {
    std::string name;
    bool spot = false;
    bool off = false;
    CVec3 position;
    CVec3 target;          ///< spots only
    CVec3 color{1, 1, 1};  ///< without the multiplier
    float multiplier = 1;
    float hotspotDeg = 45;  ///< full cone angle of full light
    float falloffDeg = 46;  ///< full cone angle where light ends, >= hotspotDeg
    bool attenuate = false;
    float innerRange = 0, outerRange = 0;
    friend bool operator==(const CPreparedLight&, const CPreparedLight&) = default;
};

/** Values at the evaluated frame. */
struct CPreparedCamera {
    std::string name;
    CVec3 position;
    CVec3 target;  ///< never equal to position
    float rollDeg = 0;
    float fovDeg = 45;  ///< as the file has it: horizontal, of a picture of 4:3
    float nearRange = 0, farRange = 0;
};

struct CPreparedScene {
    std::vector<CPreparedMesh> meshes;  ///< an empty one stands where an edit took one out
    std::vector<CPreparedNode> nodes;
    std::vector<CPreparedMaterial> materials;  ///< the last one is the default for faces without a material
    std::vector<CPreparedTexture> textures;    ///< edits may leave some that no material uses
    std::vector<CPreparedLight> lights;
    std::vector<CPreparedCamera> cameras;
    std::vector<CSceneNote> notes;
    std::vector<std::string> sourceFiles;  ///< what the model was read from, pictures apart; may be empty
    CVec3 ambientLight;
    /** The lights of the file leave it in the dark: who lights it by them adds a white light at the eye. */
    bool headlightJoins = false;
    CVec3 backgroundColor;
    bool hasBackgroundColor = false;
    float firstFrame = 0, lastFrame = 0, currentFrame = 0;
    bool animated = false;           ///< something changes between firstFrame and lastFrame
    CBox bounds;                     ///< of what is drawn at currentFrame
    CSphere boundingSphere;          ///< round bounds; radius 0 only for a scene without triangles
    std::uint64_t shapeChanges = 0;  ///< grows when EvaluateNodes gives a mesh another shape
    std::size_t triangleCount = 0;   ///< drawn triangles, instances counted each
    std::size_t vertexCount = 0;     ///< vertices as the file has them, each mesh once
};
