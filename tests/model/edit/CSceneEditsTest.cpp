// SPDX-License-Identifier: MIT
#include "model/edit/CSceneEdits.h"

#include <gtest/gtest.h>
#include <lib3ds/file.h>
#include <lib3ds/material.h>
#include <lib3ds/mesh.h>

#include <optional>

#include "base/math/rotation_of_angles.h"
#include "files/CTestFolder.h"
#include "model/edit/material_edits.h"
#include "model/read_3ds/CReadScene.h"
#include "model/save/write_scene.h"

namespace {

constexpr float kHalfPi = 1.57079633f;

CBytes Group(std::string_view material, std::initializer_list<std::uint16_t> faces) {
    return Chunk(0x4130, Text(material) + Words({static_cast<std::uint16_t>(faces.size())}) + Values(faces));
}
CBytes AllFaces(std::string_view material) {
    return Group(material, {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11});
}
CBytes RedCube(std::string_view name, const CBytes& parts = {}) {
    return Mesh(name, CubePoints() + CubeFaces(AllFaces("Red")) + parts);
}
CBytes Rotation(std::initializer_list<CBytes> keys) {
    CBytes all;
    std::uint32_t frame = 0;
    for (const CBytes& key : keys) {
        all = all + Dwords({frame}) + Words({0}) + key;
        frame += 10;
    }
    return Track(0xB021, static_cast<std::uint32_t>(keys.size()), all);
}
CBytes Instance(std::string_view name) {
    return Chunk(0xB011, Text(name));
}
CBytes DiffuseColor(std::uint8_t r, std::uint8_t g, std::uint8_t b) {
    return Chunk(0xA020, Chunk(0x0011, Values<std::uint8_t>({r, g, b})));
}

/** One node of each kind that is moved in its own way. "Child" hangs on a turned and stretched parent. */
CBytes ZooFile() {
    const CBytes meshes = Material("Red", DiffuseColor(255, 0, 0)) + Material("Blue") + RedCube("Keyed") +
                          RedCube("Animated") + RedCube("Parent") + RedCube("Child") +
                          RedCube("Unkeyed", Matrix({1, 0, 0, 0, 1, 0, 0, 0, 1, 5, 6, 7})) +
                          RedCube("NoNode");
    const CBytes turned = Rotation({Floats({0.5f, 0, 0, 1})}) + Track(0xB022, 1, Key(0, {2, 1, 3}));
    const CBytes moving = Track(0xB020, 2, Key(0, {10, 0, 0}) + Key(10, {20, 5, 0})) +
                          Rotation({Floats({0.3f, 1, 0, 0}), Floats({kHalfPi, 0, 1, 0})});
    return Scene(meshes,
                 Keyframer(ObjectNode(0, "Keyed", 65535, AtPosition(1, 2, 3)) +
                           ObjectNode(1, "Animated", 65535, moving) +
                           ObjectNode(2, "Parent", 65535, AtPosition(-9, 0, 0) + turned) +
                           ObjectNode(3, "Child", 2, AtPosition(3, 0, 0)) + ObjectNode(4, "Unkeyed", 65535)));
}

/** A scene under edit, as the engine keeps it. */
class CEdited {
  public:
    explicit CEdited(const CBytes& file) : m_read(file), m_edits(m_read.scene, m_read.prepared) {}

    CSceneEdits& Edits() { return m_edits; }
    CScene& Scene() { return m_read.scene; }
    /** Brought up to date and evaluated. */
    const CPreparedScene& At(float frame = 0) {
        if (m_edits.NeedsPreparing()) {
            m_read.prepared = PrepareScene(m_read.scene);
            m_edits.Renew(m_read.prepared);
        }
        return m_read.At(frame);
    }
    /** The scene as it comes back from a file. */
    const CPreparedScene& Reopened(float frame = 0) {
        const auto bytes = SceneTo3ds(m_read.scene);
        EXPECT_TRUE(bytes.HasValue());
        return m_reopened.emplace(bytes.Value()).At(frame);
    }

  private:
    CReadScene m_read;
    CSceneEdits m_edits;
    std::optional<CReadScene> m_reopened;
};

const CPreparedNode* NodeOf(const CPreparedScene& scene, std::string_view name) {
    for (const CPreparedNode& node : scene.nodes) {
        if (node.name == name) return &node;
    }
    return nullptr;
}

/** What a node does to a point of its mesh, told by four points. */
std::array<CVec3, 4> Marks(const CPreparedScene& scene, std::string_view name) {
    const CPreparedNode* node = NodeOf(scene, name);
    if (node == nullptr) return {};
    // Corners are known by their distance order in the file; the mesh's points are the same before and after.
    const CPreparedMesh& mesh = scene.meshes[static_cast<std::size_t>(node->mesh)];
    std::array<CVec3, 4> marks;
    for (std::size_t i = 0; i < 4; ++i)
        marks[i] = node->meshToWorld.TransformPoint(mesh.vertices[i * 5].Position());
    return marks;
}

void ExpectMapped(const std::array<CVec3, 4>& before, const std::array<CVec3, 4>& after, const CMat4& by) {
    for (std::size_t i = 0; i < before.size(); ++i)
        EXPECT_LT(Length(after[i] - by.TransformPoint(before[i])), 2e-4f);
}

const CPreparedMaterial& MaterialOf(const CPreparedScene& scene, std::string_view node) {
    const CPreparedMesh& mesh = scene.meshes[static_cast<std::size_t>(NodeOf(scene, node)->mesh)];
    return scene.materials[mesh.batches.front().material];
}
CVec3 ColorOf(const CPreparedScene& scene, std::string_view node) {
    return MaterialOf(scene, node).diffuse;
}
CSceneEdits::CMaterialChange Paint(CVec3 color) {
    return [color](Lib3dsMaterial& m) { material_edits::SetColor(m, color); };
}

class CSceneEditsPlace : public testing::TestWithParam<const char*> {};

TEST_P(CSceneEditsPlace, MovesByTheOffsetAndTurnsAboutItsOwnOriginAtEveryFrameAndInTheFile) {
    for (const float frame : {0.0f, 4.0f, 10.0f}) {
        CEdited moved(ZooFile()), turned(ZooFile());
        const auto before = Marks(moved.At(frame), GetParam());
        CMat4 by = CMat4::Translation({0.5f, -4, 7});
        ASSERT_TRUE(moved.Edits().MoveNode(moved.At(0), GetParam(), {0.5f, -4, 7}));
        ExpectMapped(before, Marks(moved.At(frame), GetParam()), by);
        ExpectMapped(before, Marks(moved.Reopened(frame), GetParam()), by);

        // A mesh whose matrix says nothing turns about its middle, which is the origin here.
        const CVec3 origin = NodeOf(turned.At(frame), GetParam())->world.TransformPoint({});
        by = CMat4::Translation(origin) * RotationOfAngles(30, -50, 110) * CMat4::Translation(-origin);
        ASSERT_TRUE(turned.Edits().RotateNode(turned.At(0), GetParam(), {30, -50, 110}));
        ExpectMapped(before, Marks(turned.At(frame), GetParam()), by);
        ExpectMapped(before, Marks(turned.Reopened(frame), GetParam()), by);
    }
}

INSTANTIATE_TEST_SUITE_P(Nodes, CSceneEditsPlace,
                         testing::Values("Keyed", "Animated", "Parent", "Unkeyed", "NoNode"),
                         [](const auto& row) { return std::string(row.param); });

TEST(CSceneEditsTest, ChildMovesInSceneCoordinatesWhateverItsParentIsAndFollowsIt) {
    CEdited scene(ZooFile());
    auto before = Marks(scene.At(), "Child");
    ASSERT_TRUE(scene.Edits().MoveNode(scene.At(), "Child", {0, 0, 5}));
    ExpectMapped(before, Marks(scene.At(), "Child"), CMat4::Translation({0, 0, 5}));
    const CVec3 origin = NodeOf(scene.At(), "Child")->world.TransformPoint({});
    ASSERT_TRUE(scene.Edits().RotateNode(scene.At(), "Child", {0, 0, 90}));
    EXPECT_LT(Length(NodeOf(scene.At(), "Child")->world.TransformPoint({}) - origin), 1e-4f);
    before = Marks(scene.At(), "Child");
    ASSERT_TRUE(scene.Edits().MoveNode(scene.At(), "Parent", {1, 2, 3}));
    ExpectMapped(before, Marks(scene.At(), "Child"), CMat4::Translation({1, 2, 3}));
}

TEST(CSceneEditsTest, UnknownNodesAndNumbersThatAreNoneAreRefused) {
    CEdited scene(ZooFile());
    const float nan = std::nanf("");
    EXPECT_EQ(scene.Edits().MoveNode(scene.At(), "keyed", {1, 1, 1}).Error().code, EErrorCode::NotFound);
    EXPECT_EQ(scene.Edits().MoveNode(scene.At(), "Keyed", {nan, 1, 1}).Error().code, EErrorCode::BadArgument);
    EXPECT_EQ(scene.Edits().RotateNode(scene.At(), "Keyed", {1, INFINITY, 1}).Error().code,
              EErrorCode::BadArgument);
    EXPECT_FALSE(scene.Edits().DeleteNode(""));
    EXPECT_FALSE(scene.Edits().ChangeNodeMaterial("Keyed", "Green", Paint({})));
    EXPECT_FALSE(scene.Edits().ChangeMaterial("Green", Paint({})));
    EXPECT_FALSE(scene.Edits().NeedsPreparing());
}

TEST(CSceneEditsTest, EveryNodeCanBeDeletedAndItsChildrenStayInTheirPlace) {
    CEdited scene(ZooFile());
    const auto child = Marks(scene.At(), "Child");
    std::size_t left = scene.At().triangleCount;
    for (const char* name : {"Parent", "Keyed", "NoNode", "Child", "Unkeyed", "Animated"}) {
        ASSERT_TRUE(scene.Edits().DeleteNode(name)) << name;
        left -= 12;
        EXPECT_EQ(scene.At().triangleCount, left) << name;
        EXPECT_FALSE(scene.Edits().DeleteNode(name)) << name;
        EXPECT_EQ(scene.Reopened().triangleCount, left) << name;
        if (left < 3 * 12) continue;
        ExpectMapped(child, Marks(scene.At(), "Child"), {});
        ExpectMapped(child, Marks(scene.Reopened(), "Child"), {});
    }
    EXPECT_EQ(left, 0u);
}

/** Two nodes that show one mesh. */
CBytes TwinsFile() {
    return Scene(Material("Red", DiffuseColor(255, 0, 0)) + RedCube("Box"),
                 Keyframer(ObjectNode(0, "Box", 65535, AtPosition(0, 0, 0)) +
                           ObjectNode(1, "Box", 65535, AtPosition(5, 0, 0) + Instance("Two"))));
}

TEST(CSceneEditsTest, PaintingOrDeletingOneInstanceLeavesTheOther) {
    CEdited scene(TwinsFile());
    ASSERT_TRUE(scene.Edits().ChangeNodeMaterial("Box.Two", "Red", Paint({0, 1, 0})));
    // By the names of before, as a list of edits has them.
    ASSERT_TRUE(scene.Edits().ChangeNodeMaterial(
        "Box.Two", "Red", [](Lib3dsMaterial& m) { material_edits::SetTransparency(m, 0.5f); }));
    EXPECT_EQ(ColorOf(scene.At(), "Box"), (CVec3{1, 0, 0}));
    EXPECT_EQ(ColorOf(scene.At(), "Box.Two"), (CVec3{0, 1, 0}));
    EXPECT_EQ(scene.At().materials.size(), 3u);  // Red, its copy and the default one: split once
    EXPECT_EQ(scene.Reopened().triangleCount, 24u);
    ASSERT_TRUE(scene.Edits().DeleteNode("Box"));
    ASSERT_NE(NodeOf(scene.At(), "Box.Two"), nullptr);
    EXPECT_EQ(scene.Reopened().triangleCount, 12u);
}

TEST(CSceneEditsTest, SharedMaterialIsSplitForTheNodeAndOnlyThen) {
    CEdited scene(ZooFile());
    ASSERT_TRUE(scene.Edits().ChangeNodeMaterial("Keyed", "", Paint({0, 0, 1})));
    EXPECT_EQ(ColorOf(scene.At(), "Keyed"), (CVec3{0, 0, 1}));
    EXPECT_EQ(ColorOf(scene.At(), "Child"), (CVec3{1, 0, 0}));
    const std::string own = MaterialOf(scene.At(), "Keyed").name;
    ASSERT_TRUE(scene.Edits().ChangeNodeMaterial("Keyed", "", Paint({0, 1, 1})));
    EXPECT_EQ(MaterialOf(scene.At(), "Keyed").name, own);
    EXPECT_EQ(ColorOf(scene.Reopened(), "Keyed"), (CVec3{0, 1, 1}));
    EXPECT_EQ(ColorOf(scene.Reopened(), "Child"), (CVec3{1, 0, 0}));
    // The form that names a material alone reaches the split part too.
    ASSERT_TRUE(scene.Edits().ChangeMaterial("Red", Paint({1, 1, 0})));
    EXPECT_EQ(ColorOf(scene.At(), "Keyed"), (CVec3{1, 1, 0}));
    EXPECT_EQ(ColorOf(scene.At(), "Child"), (CVec3{1, 1, 0}));
}

TEST(CSceneEditsTest, FacesWithoutAMaterialGetOneOfTheirOwn) {
    CEdited scene(
        Scene(Mesh("Half", CubePoints() + CubeFaces(Group("Red", {0, 1}))) + Material("Red") + Cube("Bare")));
    ASSERT_TRUE(scene.Edits().ChangeNodeMaterial("Half", "", Paint({0, 1, 0})));
    const CPreparedScene& now = scene.At();
    for (const CPreparedBatch& batch : now.meshes[0].batches)
        EXPECT_EQ(now.materials[batch.material].diffuse, (CVec3{0, 1, 0}));
    EXPECT_NE(ColorOf(now, "Bare"), (CVec3{0, 1, 0}));
}

TEST(CSceneEditsTest, ValuesAreClampedAndAColorIsNotHiddenByAPicture) {
    Lib3dsMaterial red{};
    std::fill_n(red.ambient, 3, 0.25f);
    std::fill_n(red.diffuse, 3, 0.5f);
    red.texture1_map.percent = 1;
    material_edits::SetColor(red, {2, -1, 0.5f});
    EXPECT_FLOAT_EQ(red.diffuse[0], 1);
    EXPECT_FLOAT_EQ(red.diffuse[1], 0);
    EXPECT_FLOAT_EQ(red.ambient[0], 0.5f);  // half as bright, as before
    EXPECT_FLOAT_EQ(red.texture1_map.percent, 0);
    material_edits::SetShininess(red, 7);
    material_edits::SetTransparency(red, -3);
    EXPECT_FLOAT_EQ(red.shininess, 1);
    EXPECT_FLOAT_EQ(red.transparency, 0);
}

TEST(CSceneEditsTest, TexturesFromElsewhereAreFoundUnderNamesOfTheirOwn) {
    const CTestFolder folder;
    std::filesystem::create_directory(folder / "a");
    std::filesystem::create_directory(folder / "b");
    const std::string first = folder.Add("a/wood.png", "first"), second = folder.Add("b/wood.png", "second");
    CEdited scene(ZooFile());
    const auto one = material_edits::AddTextureFile(scene.Scene(), first);
    ASSERT_TRUE(one);
    EXPECT_EQ(one.Value(), "wood.png");
    material_edits::SetTexture(*lib3ds_file_material_by_name(scene.Scene().Header(), "Red"), one.Value());
    const auto two = material_edits::AddTextureFile(scene.Scene(), second);
    ASSERT_TRUE(two);
    EXPECT_EQ(two.Value(), "wood#2.png");
    EXPECT_EQ(material_edits::AddTextureFile(scene.Scene(), first).Value(), "wood.png");  // known already
    EXPECT_EQ(scene.Scene().Textures().Find("wood#2.png")->data->size(), 6u);
    EXPECT_FALSE(material_edits::AddTextureFile(scene.Scene(), folder / "none.png"));
    const auto longName =
        material_edits::AddTextureFile(scene.Scene(), folder.Add(std::string(90, 'x') + ".png", "long"));
    ASSERT_TRUE(longName);
    EXPECT_EQ(longName.Value().size(), 63u);
    EXPECT_TRUE(longName.Value().ends_with(".png"));
}

/** Another file's node: a flat square round (0.5, 0.5, 0), red as well, but of another red. */
std::string AddReplacement(const CTestFolder& folder) {
    const CBytes points = Points({0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0});
    const CBytes faces = Faces({0, 1, 2, 0, 2, 3}, Group("Red", {0, 1}));
    const CBytes file =
        Scene(Material("Red", DiffuseColor(128, 0, 0)) + Cube("Other") + Mesh("Square", points + faces),
              Keyframer(ObjectNode(0, "Other", 65535, AtPosition(0, 0, 0)) +
                        ObjectNode(1, "Square", 65535,
                                   AtPosition(50, 60, 70) + Chunk(0xB013, Floats({0.5f, 0.5f, 0})))));
    return folder.Add("new.3ds", file);
}

class CSceneEditsReplace : public testing::TestWithParam<const char*> {};

TEST_P(CSceneEditsReplace, TakesTheMeshIntoThePlaceOfTheOldOne) {
    const CTestFolder folder;
    CEdited scene(ZooFile());
    const CMat4 place = NodeOf(scene.At(4), GetParam())->world;
    ASSERT_TRUE(scene.Edits().ReplaceNode(GetParam(), AddReplacement(folder), "Square"));
    for (const CPreparedScene& now : {scene.At(4), scene.Reopened(4)}) {
        const CPreparedNode* node = NodeOf(now, GetParam());
        ASSERT_NE(node, nullptr);
        CBox expected;
        for (const float x : {-0.5f, 0.5f}) {
            for (const float y : {-0.5f, 0.5f}) expected.Add(place.TransformPoint({x, y, 0}));
        }
        EXPECT_LT(Length(node->worldBounds.min - expected.min), 1e-3f);
        EXPECT_LT(Length(node->worldBounds.max - expected.max), 1e-3f);
        EXPECT_NEAR(ColorOf(now, GetParam()).x, 0.502f, 1e-3f);
        EXPECT_EQ(ColorOf(now, "NoNode" == std::string(GetParam()) ? "Keyed" : "NoNode"), (CVec3{1, 0, 0}));
    }
    // It answers to its old name.
    EXPECT_TRUE(scene.Edits().MoveNode(scene.At(), GetParam(), {1, 0, 0}));
    EXPECT_TRUE(scene.Edits().DeleteNode(GetParam()));
}

INSTANTIATE_TEST_SUITE_P(Nodes, CSceneEditsReplace,
                         testing::Values("Keyed", "Animated", "Child", "Unkeyed", "NoNode"),
                         [](const auto& row) { return std::string(row.param); });

TEST(CSceneEditsTest, ReplacementIsChosenByNameOrElseTheFirst) {
    const CTestFolder folder;
    const std::string file = AddReplacement(folder);
    CEdited scene(ZooFile());
    EXPECT_EQ(scene.Edits().ReplaceNode("Keyed", file, "Nothing").Error().code, EErrorCode::NotFound);
    EXPECT_FALSE(scene.Edits().ReplaceNode("Keyed", folder / "none.3ds", ""));
    EXPECT_FALSE(scene.Edits().ReplaceNode("Nobody", file, ""));
    EXPECT_EQ(scene.At().triangleCount, 72u);
    ASSERT_TRUE(scene.Edits().ReplaceNode("Keyed", file, ""));
    EXPECT_EQ(scene.At().triangleCount, 72u);  // "Other", as large as what it replaced
    ASSERT_TRUE(scene.Edits().ReplaceNode("Keyed", file, "Square"));
    EXPECT_EQ(scene.At().triangleCount, 62u);
}

}  // namespace
