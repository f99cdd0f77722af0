// SPDX-License-Identifier: MIT
#include "model/write_scene.h"

#include <gtest/gtest.h>
#include <lib3ds/file.h>
#include <lib3ds/mesh.h>

#include <string>

#include "model/C3dsBytes.h"
#include "model/CPreparedScene.h"
#include "model/CScene.h"
#include "model/CSceneReader.h"
#include "model/prepare_scene.h"
#include "platform/CTestFolder.h"

namespace {

CScene Read(const CBytes& file) {
    auto read = CSceneReader::ReadBytes(file);
    EXPECT_TRUE(read.HasValue());
    return std::move(read).Value();
}

const std::string kLongName(63, 'n');

/** Long names, a mirrored mesh with and without keys, a hierarchy and an animation. */
CBytes FullFile() {
    const CBytes mirrored = Matrix({-1, 0, 0, 0, 1, 0, 0, 0, 1, 4, 0, 0});
    const CBytes moving = Track(0xB020, 2, Key(0, {0, 0, 0}) + Key(20, {9, 0, 0}));
    return Scene(
        Material(kLongName) + Cube(kLongName) + Mesh("Mirror", CubePoints() + CubeFaces() + mirrored) +
            Mesh("MirrorFree", CubePoints() + CubeFaces() + mirrored),
        Keyframer(ObjectNode(0, kLongName, 65535, moving) + ObjectNode(1, "Mirror", 0, AtPosition(1, 2, 3))));
}

TEST(write_scene, SceneComesBackAsItWas) {
    CScene scene = Read(FullFile());
    const auto bytes = SceneTo3ds(scene);
    ASSERT_TRUE(bytes);
    CScene again = Read(bytes.Value());
    CPreparedScene before = PrepareScene(scene), after = PrepareScene(again);
    ASSERT_EQ(after.nodes.size(), before.nodes.size());
    EXPECT_EQ(after.materials.front().name, kLongName);
    for (const float frame : {0.0f, 7.0f, 20.0f}) {
        EvaluateNodes(before, scene, frame);
        EvaluateNodes(after, again, frame);
        for (std::size_t i = 0; i < before.nodes.size(); ++i) {
            EXPECT_EQ(after.nodes[i].name, before.nodes[i].name);
            EXPECT_EQ(after.nodes[i].mirrored, before.nodes[i].mirrored);
            EXPECT_LT(Length(after.nodes[i].worldBounds.min - before.nodes[i].worldBounds.min), 1e-4f);
            EXPECT_LT(Length(after.nodes[i].worldBounds.max - before.nodes[i].worldBounds.max), 1e-4f);
        }
    }
    EXPECT_EQ(SceneTo3ds(again).Value(), bytes.Value());  // nothing drifts from one saving to the next
}

TEST(write_scene, FileIsReplacedAndStaysAsItWasOnFailure) {
    const CTestFolder folder;
    const std::string path = folder.Add("out.3ds", "old");
    CScene scene = Read(FullFile());
    Lib3dsMesh* mesh = scene.File()->meshes;
    const Lib3dsDword points = mesh->points;
    mesh->points = 70000;  // what an OBJ file may hold and a 3DS file may not
    EXPECT_EQ(WriteScene(scene, path).Error().code, EErrorCode::Unsupported);
    mesh->points = points;
    EXPECT_EQ(CTestFolder::TextOf(path), "old");
    EXPECT_FALSE(WriteScene(scene, folder / "no/such/folder.3ds"));
    EXPECT_TRUE(WriteScene(scene, path));
    EXPECT_GT(CTestFolder::TextOf(path).size(), 500u);
    EXPECT_EQ(folder.Count(), 1u);
}

}  // namespace
