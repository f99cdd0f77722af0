// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "base/math/CVec.h"

struct CPreparedBatch;
struct CPreparedMesh;

/** A triangle that stands for weight triangles like it. */
struct CSampleTriangle {
    std::array<CVec3, 3> corners;
    float weight = 1;
};

/** A few triangles that stand for all of a mesh, batch by batch. */
class CMeshSample {
  public:
    CMeshSample() = default;
    /** most: triangles for each batch; a batch that has no more is kept whole. Of a larger one, half of them are chosen
     * evenly by area and half by number, so neither a few huge triangles nor many small ones go unseen. The choice
     * depends on the mesh alone. */
    CMeshSample(const CPreparedMesh& mesh, std::uint32_t most);

    [[nodiscard]] std::span<const CSampleTriangle> OfBatch(std::size_t batch) const;

  private:
    void Add(const CPreparedMesh& mesh, const CPreparedBatch& batch, std::uint32_t most);

    std::vector<CSampleTriangle> m_triangles;
    std::vector<std::uint32_t> m_ends;  ///< of each batch, in m_triangles
};
