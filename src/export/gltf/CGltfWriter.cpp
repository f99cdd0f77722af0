// SPDX-License-Identifier: MIT
#include "export/gltf/CGltfWriter.h"

#include <utility>

#include "base/jobs/CJobProgress.h"
#include "camera/framing.h"
#include "export/gltf/CGltfAnimation.h"
#include "export/gltf/CGltfViewers.h"
#include "model/prepare/CPreparedScene.h"

CGltfWriter::CGltfWriter(const CGltfSource& source, const CGltfOptions& options)
    : m_source(source),
      m_options(options),
      m_file(options.compress),
      m_pictures(source, options),
      m_materials(source.scene, options, m_pictures, m_file),
      m_meshes(source.scene, m_materials, m_file) {}

CResult<std::vector<std::byte>> CGltfWriter::Write(CJobProgress* progress) {
    const CPreparedScene& scene = m_source.scene;
    const std::vector<bool> shown = ShownNodes(scene);
    std::vector<bool> used(scene.meshes.size());
    for (std::size_t n = 0; n < shown.size(); ++n) {
        if (shown[n]) used[static_cast<std::size_t>(scene.nodes[n].mesh)] = true;
    }
    CGltfMeshes::CMorphs morphs;
    if (m_source.model != nullptr && scene.animated) morphs = MorphsOf(*m_source.model, scene, shown);
    if (CStatus status = m_meshes.Add(used, std::move(morphs), progress); !status) return status.Error();
    m_nodes.AddObjects(scene, m_meshes, shown);
    const CGltfViewers viewers(scene, m_nodes, m_file);
    CGltfAnimation animation(scene, m_nodes, viewers, m_meshes, m_file);
    if (CStatus status = animation.Sample(progress); !status) return status.Error();

    m_json.BeginObject();
    m_json.Key("asset").BeginObject().Member("version", "2.0").Member("generator", "Orbivue").EndObject();
    WriteScene(viewers);
    m_nodes.Write(m_json);
    m_meshes.Write(m_json);
    viewers.Write(m_json);
    animation.Write(m_json);
    m_materials.Write(m_json);
    if (CStatus status = m_pictures.Encode(m_file, progress); !status) return status.Error();
    m_pictures.Write(m_json);
    auto result = m_file.Finish(std::move(m_json), progress);
    if (result && progress) progress->SetShare(1);
    return result;
}

void CGltfWriter::WriteScene(const CGltfViewers& viewers) {
    m_json.Member("scene", 0).Key("scenes").BeginArray().BeginObject();
    m_json.Key("nodes").BeginArray().Value(0).EndArray();
    if (m_options.withExtras) {
        m_json.Key("extras").BeginObject().Key("orbivue").BeginObject();
        WriteExtras();
        viewers.WriteExtras(m_json);
        m_json.EndObject().EndObject();
    }
    m_json.EndObject().EndArray();
}

void CGltfWriter::WriteExtras() {
    const CPreparedScene& scene = m_source.scene;
    const CSphere framed = FramingSphere(scene);
    const auto vector = [&](const char* key, CVec3 v) {
        m_json.Key(key).BeginArray().Value(v.x).Value(v.y).Value(v.z).EndArray();
    };
    m_json.Member("version", 1).Key("bounds").BeginObject();
    vector("center", framed.center);
    m_json.Member("radius", framed.radius).EndObject();
    if (!(scene.ambientLight == CVec3{})) vector("ambientLight", scene.ambientLight);
    if (scene.headlightJoins) m_json.Member("headlight", true);
    m_json.Key("frames").BeginObject().Member("first", scene.firstFrame).Member("last", scene.lastFrame);
    m_json.Member("current", scene.currentFrame).EndObject();
    if (scene.animated) m_json.Member("animated", true);
}
