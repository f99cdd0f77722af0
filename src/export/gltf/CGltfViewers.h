// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "export/gltf/parts/CGltfTransform.h"

class CGlbFile;
class CGltfNodes;
class CJsonText;
struct CPreparedCamera;
struct CPreparedLight;
struct CPreparedScene;

/** Something of the scene that stands at one place and looks at another: a light or a camera. */
struct CGltfViewer {
    int node = -1;                   ///< glTF's: placed, and turned so that it looks along its -Z
    int targetNode = -1;             ///< glTF's, for what it looks at; -1: none
    int eye = -1, target = -1;       ///< nodes of the scene that have its places; -1: it stays
    CVec3 position, targetPosition;  ///< at the scene's frame
    float rollDeg = 0;
    bool turns = false;  ///< where it looks matters

    /** The turn from one place to the other, as cameras of the file have it. */
    [[nodiscard]] static std::array<float, 4> TurnBetween(CVec3 position, CVec3 target, float rollDeg);
};

/** The cameras of a glTF file, and its lights by KHR_lights_punctual. Both stand in the file's coordinates. */
class CGltfViewers {
  public:
    CGltfViewers(const CPreparedScene& scene, CGltfNodes& nodes, CGlbFile& file);

    /** Those that may move. */
    [[nodiscard]] const std::vector<CGltfViewer>& All() const { return m_all; }
    /** Writes the member "cameras" and the file's "extensions". */
    void Write(CJsonText& json) const;
    /** Writes "lights" and "cameras" of the scene's extras, where there are any. */
    void WriteExtras(CJsonText& json) const;

  private:
    [[nodiscard]] CGltfViewer& Add(const std::string& name, CVec3 position, CVec3 target, bool hasTarget);
    void AddLight(const CPreparedLight& light);
    void AddCamera(const CPreparedCamera& camera);
    void FindNodes();
    void WriteExtraLights(CJsonText& json) const;
    void WriteCamera(CJsonText& json, const CPreparedCamera& camera) const;
    void WriteLight(CJsonText& json, const CPreparedLight& light) const;

    const CPreparedScene& m_scene;
    CGltfNodes& m_nodes;
    CGlbFile& m_file;
    std::vector<CGltfViewer> m_all;
    std::vector<const CPreparedLight*> m_lights;    ///< those that shine; as the first of m_all
    std::vector<const CPreparedCamera*> m_cameras;  ///< as the rest of m_all
    std::vector<const CPreparedLight*> m_standard;  ///< those that KHR_lights_punctual can say
};
