// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>
#include <functional>

#include "model/prepare/CPreparedScene.h"

/** Prepared scenes made by hand, so that drawing is tested without reading files. */
namespace test_scenes {

/** A square of the given side in the plane z = 0, facing +z, texture coordinates 0..1 over it. */
[[nodiscard]] CPreparedMesh MakePlane(float side = 2);
/** A cube round the origin with hard edges; each face has texture coordinates 0..1. */
[[nodiscard]] CPreparedMesh MakeCube(float side = 2);
/** A smooth sphere round the origin, its poles on z, 2 * rings * rings segments; u goes round, v
 * from pole to pole. */
[[nodiscard]] CPreparedMesh MakeSphere(float radius = 1, int rings = 24);
/** Appends the triangles of another mesh as a batch of that material. Both must have 16-bit indices. */
void Append(CPreparedMesh& mesh, const CPreparedMesh& other, std::uint32_t material);
/** A picture filled point by point. */
[[nodiscard]] CImage MakeImage(int width, int height,
                               const std::function<std::array<std::uint8_t, 4>(int x, int y)>& color);
/** A small picture all of one colour. */
[[nodiscard]] CImage OneColorImage(std::array<std::uint8_t, 4> color);
/** Four colours, so that its orientation shows: top left red, top right green, bottom left blue,
 * bottom right white. */
[[nodiscard]] CImage QuarterImage(int side = 64);
/** A plain material of that colour, lit, without highlight. */
[[nodiscard]] CPreparedMaterial Plain(CVec3 color);

/** A white lamp of the file; its colour is scaled by the multiplier. */
[[nodiscard]] CPreparedLight LightAt(CVec3 position, float multiplier = 1);

/** Collects the parts of a scene and keeps its bounds right. */
class CBuilder {
  public:
    CBuilder();
    std::uint32_t AddMaterial(CPreparedMaterial material);
    CPreparedMap AddTexture(CImage image);
    int AddMesh(CPreparedMesh mesh);
    /** A node of its own mesh; all its batches get the material. */
    std::uint32_t Add(CPreparedMesh mesh, const CPreparedMaterial& material, const CMat4& place = {});
    std::uint32_t AddNode(int mesh, const CMat4& place);
    CPreparedScene& Scene() { return m_scene; }

  private:
    CPreparedScene m_scene;
};

}  // namespace test_scenes
