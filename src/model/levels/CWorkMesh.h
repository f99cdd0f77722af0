// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "model/prepare/CPreparedScene.h"

/** A mesh as it is simplified. Each vertex belongs to one batch: a corner that two materials share is two vertices of one
 * place, so both sides of the border move together. Places are whole numbers, in cells of 1/2^18 of the mesh's largest
 * side: what differs by rounding only is one place. */
class CWorkMesh {
  public:
    /** Welded: corners of one place and batch that differ by their normals only become one vertex. Empty for a mesh
     * without extent or with places that are not finite. */
    CWorkMesh(const CPreparedMesh& mesh, bool welded);

    [[nodiscard]] bool IsEmpty() const { return m_triangles.empty(); }
    [[nodiscard]] const std::vector<CVec3>& Places() const { return m_places; }
    /** Three vertices each; none without area through equal vertices. */
    [[nodiscard]] const std::vector<std::uint32_t>& Triangles() const { return m_triangles; }
    [[nodiscard]] std::uint32_t BatchOf(std::uint32_t vertex) const { return m_batch[vertex]; }
    /** The length of a cell in the mesh's units. */
    [[nodiscard]] float Cell() const { return m_cell; }
    /** The mesh's vertices that stand best for a triangle's corners: where several were welded, those whose normals
     * are nearest to the triangle's. */
    [[nodiscard]] std::array<std::uint32_t, 3> CornersOf(const CPreparedMesh& mesh,
                                                         const std::uint32_t* triangle) const;

  private:
    [[nodiscard]] bool FindGrid(const CPreparedMesh& mesh);
    void AddTriangle(std::array<std::uint32_t, 3> corners);
    void Split(const CPreparedMesh& mesh);
    void Weld(const CPreparedMesh& mesh);
    void ListCandidates(const std::vector<std::uint32_t>& vertices,
                        const std::vector<std::uint32_t>& weldedTo);
    [[nodiscard]] CVec3 PlaceOf(const CPreparedVertex& vertex) const;

    CVec3 m_low;
    float m_cell = 0;
    std::vector<CVec3> m_places;
    std::vector<std::uint32_t> m_batch;
    std::vector<std::uint32_t> m_triangles;
    /** The mesh's vertices that vertex v stands for: m_sources[m_first[v]] to m_sources[m_first[v + 1] - 1]; where
     * m_first is empty, m_sources[v] alone. */
    std::vector<std::uint32_t> m_sources, m_first;
};
