// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "engine/meshes/CShape.h"
#include "engine/plan/CMeshSample.h"

/** The meshes of a scene on the GPU, with the levels that were made of them. */
class CSceneMeshes {
  public:
    /** How one mesh can be drawn, finest first: the mesh itself, with an error of 0, then its levels. */
    struct CForm {
        float error;  ///< in the mesh's units
        float cost;   ///< see CFrameBudget
    };

    /** Uploads what is new, and drops the levels of meshes that are not the same as before. True when a mesh is not the
     * same. */
    bool Update(CGlCurrent& gl, const CPreparedScene& scene, EArrays arrays = EArrays::Copied);
    void Clear();
    void SetLevels(CGlCurrent& gl, const CPreparedScene& scene, std::size_t mesh, CMeshLevels levels);

    [[nodiscard]] std::size_t Count() const { return m_meshes.size(); }
    [[nodiscard]] bool HasTexCoords(std::size_t mesh) const { return m_meshes[mesh].buffers.HasTexCoords(); }
    /** level: 0 for the mesh itself, or one of its Forms, or kBoxLevel. */
    [[nodiscard]] CShape Shape(const CPreparedScene& scene, std::size_t mesh, int level) const;
    [[nodiscard]] const std::vector<CForm>& Forms(std::size_t mesh) const { return m_meshes[mesh].forms; }
    /** The cost of a whole frame, see CFrameBudget. */
    [[nodiscard]] double CostInFull(const CPreparedScene& scene) const;
    /** See GrainsOf; a huge value where it is not known. */
    [[nodiscard]] float Grain(std::size_t mesh, int level, std::size_t batch) const;
    /** How often a batch covers its mesh's bounds, seen from anywhere, about: 1 for what is as large as its box, thousands
     * for surfaces that lie in one another. */
    [[nodiscard]] float Layers(std::size_t mesh, std::size_t batch) const {
        return batch < m_meshes[mesh].layers.size() ? m_meshes[mesh].layers[batch] : 1;
    }
    /** Triangles that stand for all of a mesh; chosen by the first call, which reads all of the mesh. Empty where its arrays
     * were freed before. */
    [[nodiscard]] const CMeshSample& Sample(const CPreparedScene& scene, std::size_t mesh);
    /** True when the levels of the mesh as it is now were set. */
    [[nodiscard]] bool HasLevelsSet(std::size_t mesh) const { return m_meshes[mesh].levelsSet; }
    [[nodiscard]] std::size_t Bytes() const;

  private:
    struct CEntry {
        CMeshBuffers buffers;
        std::vector<CLevelBuffers> levels;
        std::vector<float> grains;
        std::vector<float> layers;
        std::optional<CMeshSample> sample;
        std::vector<CForm> forms;
        bool levelsSet = false;
    };
    bool Take(CGlCurrent& gl, const CPreparedMesh& mesh, std::vector<CEntry>& before, std::size_t place,
              EArrays arrays);
    static void MeasureSurface(CEntry& entry, const CPreparedMesh& mesh);
    static void DropLevels(CEntry& entry);
    static void Measure(CEntry& entry, const CPreparedScene& scene, const CPreparedMesh& mesh);

    std::vector<CEntry> m_meshes;
    CMeshBuffers m_box;               ///< from -1 to 1
    std::uint32_t m_mostSamples = 1;  ///< of a batch
};

/** The matrix that takes the box of kBoxLevel to a mesh's bounds. */
[[nodiscard]] CMat4 BoxPlacement(const CBox& bounds);
