// SPDX-License-Identifier: MIT
#include "export/gltf/CGltfWriter.h"

#include <utility>

#include "base/jobs/CJobProgress.h"
#include "model/prepare/CPreparedScene.h"

CGltfWriter::CGltfWriter(const CGltfSource& source, const CGltfOptions& options)
    : m_source(source),
      m_options(options),
      m_file(options.compress),
      m_materials(source.scene, options),
      m_meshes(source.scene, m_materials, m_file) {}

CResult<std::vector<std::byte>> CGltfWriter::Write(CJobProgress* progress) {
    const CPreparedScene& scene = m_source.scene;
    const std::vector<bool> shown = ShownNodes(scene);
    std::vector<bool> used(scene.meshes.size());
    for (std::size_t n = 0; n < shown.size(); ++n) {
        if (shown[n]) used[static_cast<std::size_t>(scene.nodes[n].mesh)] = true;
    }
    if (CStatus status = m_meshes.Add(used, progress); !status) return status.Error();
    m_nodes.AddObjects(scene, m_meshes, shown);
    m_json.BeginObject();
    WriteAsset();
    WriteScene();
    m_nodes.Write(m_json);
    m_meshes.Write(m_json);
    m_materials.Write(m_json);
    auto result = m_file.Finish(std::move(m_json), progress);
    if (result && progress) progress->SetShare(1);
    return result;
}

void CGltfWriter::WriteAsset() {
    m_json.Key("asset").BeginObject().Member("version", "2.0").Member("generator", "Orbivue").EndObject();
    if (!m_file.Packs()) return;
    for (const char* key : {"extensionsUsed", "extensionsRequired"}) {
        m_json.Key(key).BeginArray().Value("KHR_mesh_quantization").Value("EXT_meshopt_compression");
        m_json.EndArray();
    }
}

void CGltfWriter::WriteScene() {
    m_json.Member("scene", 0).Key("scenes").BeginArray().BeginObject();
    m_json.Key("nodes").BeginArray().Value(0).EndArray();
    m_json.EndObject().EndArray();
}
