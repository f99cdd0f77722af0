// SPDX-License-Identifier: MIT
#include "engine/plan/CStillScene.h"

CStillScene CStillScene::Of(const CPreparedScene& scene, const CFrameView& view) {
    CStillScene still;
    still.projection = view.projection;
    still.modelView = view.modelView;
    for (const CPreparedNode& node : scene.nodes)
        still.nodes.push_back({node.visible, node.mirrored, node.mesh, node.meshToWorld});
    for (const CPreparedMesh& mesh : scene.meshes)
        still.meshes.push_back({mesh.stamp, mesh.vertices.data(), mesh.batches});
    for (const CPreparedTexture& texture : scene.textures)
        still.pictures.push_back(texture.image.rgba.data());
    still.lights = scene.lights;
    still.ambientLight = scene.ambientLight;
    still.headlightJoins = scene.headlightJoins;
    return still;
}
