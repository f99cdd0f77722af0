// SPDX-License-Identifier: MIT
#include "model/save/write_scene.h"

#include <gtest/gtest.h>
#include <lib3ds/file.h>
#include <lib3ds/mesh.h>

#include <string>

#include "files/CTestFolder.h"
#include "model/read_3ds/CReadScene.h"

namespace {

const std::string kLongName(63, 'n');

/** Long names, a mirrored mesh with and without keys, a hierarchy, an animation, and a mesh that changes its
 * shape. */
CBytes FullFile() {
    const CBytes mirrored = Matrix({-1, 0, 0, 0, 1, 0, 0, 0, 1, 4, 0, 0});
    const CBytes moving = Track(0xB020, 2, Key(0, {0, 0, 0}) + Key(20, {9, 0, 0}));
    const CBytes shapes =
        Dwords({0}) + Words({0}) + Text("Lump") + Dwords({20}) + Words({1}) + Floats({0.5f}) + Text("Shape");
    return Scene(
        Material(kLongName) + Cube(kLongName) + Mesh("Mirror", CubePoints() + CubeFaces() + mirrored) +
            Mesh("MirrorFree", CubePoints() + CubeFaces() + mirrored) + Cube("Lump") +
            Mesh("Shape", CubePoints(5, 6, 7) + CubeFaces()),
        Keyframer(ObjectNode(0, kLongName, 65535, moving) + ObjectNode(1, "Mirror", 0, AtPosition(1, 2, 3)) +
                  ObjectNode(2, "Lump", 65535, AtPosition(0, 0, 0) + Track(0xB026, 2, shapes))));
}

TEST(WriteSceneTest, SceneComesBackAsItWas) {
    CReadScene before(FullFile());
    const auto bytes = SceneTo3ds(before.scene);
    ASSERT_TRUE(bytes);
    CReadScene after(bytes.Value());
    ASSERT_EQ(after.prepared.nodes.size(), before.prepared.nodes.size());
    EXPECT_EQ(after.prepared.materials.front().name, kLongName);
    for (const float frame : {0.0f, 7.0f, 20.0f}) {
        for (std::size_t i = 0; i < before.prepared.nodes.size(); ++i) {
            const CPreparedNode &a = before.At(frame).nodes[i], &b = after.At(frame).nodes[i];
            EXPECT_EQ(b.name, a.name);
            EXPECT_EQ(b.mirrored, a.mirrored);
            EXPECT_LT(Length(b.worldBounds.min - a.worldBounds.min), 1e-4f);
            EXPECT_LT(Length(b.worldBounds.max - a.worldBounds.max), 1e-4f);
        }
    }
    EXPECT_EQ(SceneTo3ds(after.scene).Value(), bytes.Value());  // nothing drifts from one saving to the next
}

TEST(WriteSceneTest, FileIsReplacedAndStaysAsItWasOnFailure) {
    const CTestFolder folder;
    const std::string path = folder.Add("out.3ds", "old");
    CScene scene = CReadScene(FullFile()).scene;
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
