// SPDX-License-Identifier: MIT
#include "model/edit/CSceneEdits.h"

#include <gtest/gtest.h>
#include <lib3ds/file.h>
#include <lib3ds/material.h>

#include "base/math/rotation_of_angles.h"
#include "model/edit/CEdited.h"
#include "model/edit/material_edits.h"
#include "model/save/lib3ds_util.h"
#include "picture/image_writer.h"

namespace {

using CNames = std::vector<std::string>;

/** What a node does to its mesh, told by four vertices. */
std::array<CVec3, 4> Marks(const CPreparedScene& scene, std::string_view name) {
    const CPreparedNode* node = NodeOf(scene, name);
    if (node == nullptr) return {};
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
CColorEdit Paint(const std::string& node, const std::string& material, CVec3 color) {
    return {{node, material}, color};
}

std::string AddPicture(const CTestFolder& folder, std::string_view name, std::uint8_t shade) {
    EXPECT_TRUE(image_codec::WritePng(folder / name, {1, 1, {shade, 0, 0, 255}}, false));
    return folder / name;
}
/** Red of the one pixel of the picture on a node; -1 without one. */
int ShadeOn(const CPreparedScene& scene, std::string_view node) {
    const CPreparedMap& map = MaterialOf(scene, node).texture;
    if (!map.HasEffect()) return -1;
    const CImage& image = scene.textures[static_cast<std::size_t>(map.texture)].image;
    return image.IsEmpty() ? -1 : image.rgba[0];
}

class CSceneEditsPlace : public testing::TestWithParam<std::string> {};

TEST_P(CSceneEditsPlace, MovesByTheOffsetAndTurnsAboutItsOwnOriginAtEveryFrameAndInTheFile) {
    for (const float frame : {0.0f, 4.0f, 10.0f}) {
        CEdited moved(ZooFile()), turned(ZooFile());
        const auto before = Marks(moved.At(frame), GetParam());
        CMat4 by = CMat4::Translation({0.5f, -4, 7});
        (void)moved.At();
        ASSERT_TRUE(moved.Do(CMoveEdit{GetParam(), {0.5f, -4, 7}}));
        ExpectMapped(before, Marks(moved.At(frame), GetParam()), by);
        ExpectMapped(before, Marks(moved.Reopened(frame), GetParam()), by);

        // A mesh whose matrix says nothing turns about its middle, which is the origin here.
        const CVec3 origin = NodeOf(turned.At(frame), GetParam())->world.TransformPoint({});
        by = CMat4::Translation(origin) * RotationOfAngles(30, -50, 110) * CMat4::Translation(-origin);
        (void)turned.At();
        ASSERT_TRUE(turned.Do(CRotateEdit{GetParam(), {30, -50, 110}}));
        ExpectMapped(before, Marks(turned.At(frame), GetParam()), by);
        ExpectMapped(before, Marks(turned.Reopened(frame), GetParam()), by);
        // What is turned twice turns about the same point.
        ASSERT_TRUE(turned.Do(CRotateEdit{GetParam(), {10, 0, 0}}));
        by = CMat4::Translation(origin) * RotationOfAngles(10, 0, 0) * CMat4::Translation(-origin) * by;
        ExpectMapped(before, Marks(turned.At(frame), GetParam()), by);
    }
}

INSTANTIATE_TEST_SUITE_P(Nodes, CSceneEditsPlace,
                         testing::Values("Keyed", "Animated", "Parent", "Unkeyed", "NoNode", "Half"),
                         [](const auto& row) { return row.param; });

TEST(CSceneEditsTest, ChildMovesInSceneCoordinatesWhateverItsParentIsAndFollowsIt) {
    CEdited scene(ZooFile());
    auto before = Marks(scene.At(), "Child");
    ASSERT_TRUE(scene.Do(CMoveEdit{"Child", {0, 0, 5}}));
    ExpectMapped(before, Marks(scene.At(), "Child"), CMat4::Translation({0, 0, 5}));
    // Turning its parent in the same batch counts for the child's way already.
    const CVec3 origin = NodeOf(scene.At(), "Parent")->world.TransformPoint({});
    const CMat4 turn = CMat4::Translation(origin) * RotationOfAngles(0, 0, 90) * CMat4::Translation(-origin);
    before = Marks(scene.At(), "Child");
    const std::vector<CEdit> both{CRotateEdit{"Parent", {0, 0, 90}}, CMoveEdit{"Child", {1, 2, 3}}};
    for (const CStatus& answer : scene.Edits().Apply(both)) EXPECT_TRUE(answer);
    ExpectMapped(before, Marks(scene.At(), "Child"), CMat4::Translation({1, 2, 3}) * turn);
}

TEST(CSceneEditsTest, WhatIsRefusedChangesNothingAndTheRestOfTheBatchIsApplied) {
    const CTestFolder folder;
    const std::string noPicture = folder.Add("text.png", "text"),
                      square = folder.Add("new.3ds", SquareFile());
    const float nan = std::nanf("");
    const std::vector<CEdit> edits{CMoveEdit{"keyed", {1, 1, 1}},
                                   CMoveEdit{"Keyed", {nan, 1, 1}},
                                   CRotateEdit{"Keyed", {1, INFINITY, 1}},
                                   CDeleteEdit{""},
                                   Paint("Keyed", "Green", {}),
                                   Paint("Keyed", "", {0, 1, 0}),
                                   Paint("", "Green", {}),
                                   Paint("", "", {}),
                                   Paint("", "Red", {nan, 0, 0}),
                                   CTextureEdit{{"Keyed", ""}, noPicture},
                                   CReplaceEdit{"Keyed", noPicture, ""},
                                   CReplaceEdit{"Keyed", square, "Nothing"},
                                   CReplaceEdit{"Nobody", square, ""}};
    CEdited scene(ZooFile());
    std::string codes;
    for (const CStatus& answer : scene.Edits().Apply(edits))
        codes += answer ? '+' : answer.Error().code == EErrorCode::NotFound ? 'n' : 'b';
    EXPECT_EQ(codes, "nbbnn+nnbbbnn");
    EXPECT_EQ(scene.At().materials.size(), 4u);  // Red and what "Keyed" got of it, Blue and none
    EXPECT_FALSE(scene.Edits().TakeBack(2));
    EXPECT_EQ(ColorOf(scene.At(), "Keyed"), (CVec3{0, 1, 0}));
    EXPECT_TRUE(scene.Edits().TakeBack(1));
    EXPECT_EQ(ColorOf(scene.At(), "Keyed"), (CVec3{1, 0, 0}));
}

TEST(CSceneEditsTest, EveryNodeCanBeDeletedAndItsChildrenStayInTheirPlace) {
    CEdited scene(ZooFile());
    const auto child = Marks(scene.At(), "Child"), other = Marks(scene.At(), "OfUnkeyed");
    std::size_t left = scene.At().triangleCount;
    for (const char* name :
         {"Parent", "Unkeyed", "Keyed", "NoNode", "Child", "OfUnkeyed", "Half", "Animated"}) {
        EXPECT_EQ(scene.At().animated, left > 0);
        ASSERT_TRUE(scene.Do(CDeleteEdit{name})) << name;
        left -= 12;
        EXPECT_EQ(scene.At().triangleCount, left) << name;
        EXPECT_FALSE(scene.Do(CDeleteEdit{name})) << name;
        EXPECT_EQ(scene.Reopened().triangleCount, left) << name;
        if (left < 4 * 12) continue;
        ExpectMapped(child, Marks(scene.At(), "Child"), {});
        ExpectMapped(child, Marks(scene.Reopened(), "Child"), {});
        ExpectMapped(other, Marks(scene.Reopened(), "OfUnkeyed"), {});
    }
    EXPECT_EQ(left, 0u);
    EXPECT_FALSE(scene.At().animated);
}

TEST(CSceneEditsTest, WhatADeletedNodeMorphedIntoDoesNotAppear) {
    CEdited scene(MorphFile());
    EXPECT_EQ(scene.At().triangleCount, 24u);
    ASSERT_TRUE(scene.Do(CDeleteEdit{"Shape"}));
    EXPECT_EQ(scene.At().triangleCount, 12u);
    EXPECT_EQ(scene.Reopened().triangleCount, 12u);
}

TEST(CSceneEditsTest, PaintingOrDeletingOneInstanceLeavesTheOther) {
    CEdited scene(TwinsFile());
    ASSERT_TRUE(scene.Do(Paint("Box.Two", "Red", {0, 1, 0})));
    ASSERT_TRUE(scene.Do(CTransparencyEdit{{"Box.Two", "Red"}, 0.5f}));
    EXPECT_EQ(ColorOf(scene.At(), "Box"), (CVec3{1, 0, 0}));
    EXPECT_EQ(ColorOf(scene.At(), "Box.Two"), (CVec3{0, 1, 0}));
    EXPECT_EQ(scene.At().materials.size(), 3u);  // Red, its copy and the default one: split once
    EXPECT_EQ(scene.Reopened().triangleCount, 36u);
    ASSERT_TRUE(scene.Do(CDeleteEdit{"Box"}));
    ASSERT_NE(NodeOf(scene.At(), "Box.Two"), nullptr);
    EXPECT_EQ(scene.Reopened().triangleCount, 24u);
}

TEST(CSceneEditsTest, MaterialsGoByTheNamesOfTheFileHoweverOftenTheyAreSplit) {
    CEdited scene(ZooFile());
    EXPECT_EQ(scene.Edits().MaterialNamesOf("Half"), (CNames{"Red", "Blue", ""}));
    ASSERT_TRUE(scene.Do(Paint("Keyed", "Red", {0, 0, 1})));
    ASSERT_TRUE(scene.Do(Paint("Half", "", {0, 1, 0})));
    EXPECT_EQ(MaterialOf(scene.At(), "Keyed").name, "Red#2");
    EXPECT_EQ(scene.Edits().MaterialNamesOf("Keyed"), CNames{"Red"});
    EXPECT_EQ(scene.Edits().MaterialNamesOf("Half"), (CNames{"Red", "Blue", ""}));
    for (const CPreparedBatch& batch : scene.At().meshes[7].batches)  // the part without a material, too
        EXPECT_EQ(scene.At().materials[batch.material].diffuse, (CVec3{0, 1, 0}));
    EXPECT_FALSE(scene.Do(Paint("Keyed", "Red#2", {1, 1, 1})));
    EXPECT_EQ(ColorOf(scene.At(), "Child"), (CVec3{1, 0, 0}));
    // The form that names a material alone reaches the split part, too.
    ASSERT_TRUE(scene.Do(Paint("", "Red", {1, 1, 0})));
    for (const char* node : {"Keyed", "Child", "Half"})
        EXPECT_EQ(ColorOf(scene.At(), node), (CVec3{1, 1, 0}));
}

TEST(CSceneEditsTest, ValuesAreClampedAndAColorIsNotHiddenByAPicture) {
    Lib3dsMaterial red{};
    std::fill_n(red.ambient, 3, 0.25f);
    std::fill_n(red.diffuse, 3, 0.5f);
    red.texture1_map.percent = 1;
    material_edits::SetColor(red, {2, -1, 0.5f}, material_edits::AmbientShare(red));
    EXPECT_TRUE(red.diffuse[0] == 1 && red.diffuse[1] == 0);
    EXPECT_FLOAT_EQ(red.ambient[0], 0.5f);  // half as bright, as before
    EXPECT_FLOAT_EQ(red.texture1_map.percent, 0);
    material_edits::SetShininess(red, 7);
    material_edits::SetTransparency(red, -3);
    EXPECT_TRUE(red.shininess == 1 && red.transparency == 0);
}

TEST(CSceneEditsTest, AColorLooksTheSameWhateverColorsCameBefore) {
    const auto painted = [](std::vector<CVec3> colors) {
        COpened opened(ZooFile(), {});
        Lib3dsMaterial& red = *opened.scene.Header()->materials;
        for (int i = 0; i < 3; ++i) red.ambient[i] = red.diffuse[i] / 3;
        CSceneEdits edits(opened.scene, opened.prepared);
        for (const CVec3 color : colors) {
            const CEdit edit = Paint("Keyed", "Red", color);
            EXPECT_TRUE(edits.Apply({&edit, 1}).front());
        }
        return MaterialOf(opened.prepared, "Keyed").ambient;
    };
    const CVec3 green{0.1f, 0.7f, 0.3f};
    EXPECT_LT(painted({green}).y, 0.3f);
    EXPECT_EQ(painted({{0, 0, 0}, green}), painted({green}));
    EXPECT_EQ(painted({{0.3f, 0.2f, 0.1f}, {0, 0, 0}, {0.9f, 0.8f, 0.7f}, green}), painted({green}));
}

TEST(CSceneEditsTest, PicturesFromElsewhereGetNamesOfTheirOwnAndStayWhenEndingsChange) {
    const CTestFolder folder;
    std::filesystem::create_directory(folder / "a");
    std::filesystem::create_directory(folder / "b");
    const std::string first = AddPicture(folder, "a/wood.png", 10);
    CEdited scene(ZooFile());
    for (const auto& [node, path] :
         {std::pair{"Keyed", first}, std::pair{"Animated", AddPicture(folder, "b/WOOD.png", 20)},
          std::pair{"Child", AddPicture(folder, std::string(90, 'x') + ".png", 30)},
          std::pair{"Parent", first}})
        EXPECT_TRUE(scene.Do(CTextureEdit{{node, ""}, path}));
    EXPECT_EQ(scene.At().textures.size(), 3u);
    const auto expectAll = [](const CPreparedScene& now) {
        const std::array shades{ShadeOn(now, "Keyed"), ShadeOn(now, "Animated"), ShadeOn(now, "Child"),
                                ShadeOn(now, "Parent")};
        EXPECT_EQ(shades, (std::array{10, 20, 30, 10}));
    };
    expectAll(scene.At());
    lib3ds_util::change_textures_ext(scene.Scene().Header(), "jpg");
    ASSERT_TRUE(scene.Do(CShininessEdit{{"", "Red"}, 0.5f}));
    expectAll(scene.At());
    expectAll(scene.Reopened());
    // A file that changed meanwhile is another picture.
    (void)AddPicture(folder, "a/wood.png", 40);
    ASSERT_TRUE(scene.Do(CTextureEdit{{"Keyed", ""}, first}));
    EXPECT_EQ(ShadeOn(scene.At(), "Keyed"), 40);
    EXPECT_EQ(ShadeOn(scene.At(), "Parent"), 10);
    ASSERT_TRUE(scene.Do(CTextureEdit{{"Keyed", ""}, ""}));
    EXPECT_EQ(ShadeOn(scene.At(), "Keyed"), -1);
}

class CSceneEditsReplace : public testing::TestWithParam<std::string> {};

TEST_P(CSceneEditsReplace, TakesTheMeshIntoThePlaceOfTheOldOne) {
    const CTestFolder folder;
    CEdited scene(ZooFile());
    const CMat4 place = NodeOf(scene.At(4), GetParam())->world;
    ASSERT_TRUE(scene.Do(CReplaceEdit{GetParam(), folder.Add("new.3ds", SquareFile()), "Square"}));
    EXPECT_EQ(scene.Edits().MaterialNamesOf(GetParam()), CNames{"Red"});
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
        EXPECT_EQ(ColorOf(now, GetParam() == "NoNode" ? "Keyed" : "NoNode"), (CVec3{1, 0, 0}));
    }
    // It answers to its old name, and without one the first node is taken.
    const std::size_t all = scene.At().triangleCount;
    ASSERT_TRUE(scene.Do(CReplaceEdit{GetParam(), folder / "new.3ds", ""}));
    EXPECT_EQ(scene.At().triangleCount, all + 10);
}

INSTANTIATE_TEST_SUITE_P(Nodes, CSceneEditsReplace,
                         testing::Values("Keyed", "Animated", "Child", "Unkeyed", "NoNode"),
                         [](const auto& row) { return row.param; });

/** Where things stand was decided at opening; an edit of one must not decide it anew for the others. */
TEST(CSceneEditsTest, ObjectsThatAnEditDoesNotNameStayWhereTheyAre) {
    CEdited twice(PlacedTwiceFile(false)), notTwice(PlacedTwiceFile(true));
    const auto a = Marks(twice.At(), "A"), b = Marks(twice.At(), "B");
    ASSERT_TRUE(twice.Do(CMoveEdit{"A", {0, 7, 0}}));
    ASSERT_TRUE(twice.Do(Paint("B", "", {1, 0, 0})));
    const auto other = Marks(notTwice.At(), "B");
    ASSERT_TRUE(notTwice.Do(CDeleteEdit{"Odd"}));  // the two that are left look like those of the first scene
    ExpectMapped(a, Marks(twice.Reopened(), "A"), CMat4::Translation({0, 7, 0}));
    ExpectMapped(b, Marks(twice.Reopened(), "B"), {});
    ExpectMapped(other, Marks(notTwice.Reopened(), "B"), {});
}

}  // namespace
