// SPDX-License-Identifier: MIT
// Random batches of edits, taken back now and then. Whatever was done, the scene that is shown is the one that
// a reader of the saved file gets, and what was taken back leaves no trace in either.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <bit>
#include <random>
#include <utility>

#include "files/file_util_ex.h"
#include "model/edit/CEdited.h"
#include "picture/image_writer.h"
#include "row_name.h"
#include "scene_builder/large_scene.h"

namespace {

struct CRow {
    const char* name;
    CBytes (*file)(const CTestFolder& folder);
};

CBytes LargeFile(const CTestFolder& folder) {
    MakeLargeScene(800, folder / "large.3ds", "wood.png");
    return file_util_ex::ReadWholeFile(folder / "large.3ds").Value();
}

class EditsAndFileTest : public testing::TestWithParam<CRow> {
  protected:
    void SetUp() override {
        EXPECT_TRUE(image_codec::WritePng(m_folder / "wood.png", {1, 1, {90, 60, 30, 255}}, false));
        EXPECT_TRUE(image_codec::WritePng(m_folder / "glass.png", {1, 1, {0, 0, 99, 128}}, true));
        (void)m_folder.Add("square.3ds", SquareFile());
    }

    std::vector<CEdit> SomeEdits(CEdited& scene) {
        std::vector<CEdit> edits(Below(6));
        for (CEdit& edit : edits) edit = SomeEdit(scene);
        return edits;
    }

    CTestFolder m_folder;
    std::mt19937 m_random{7};

  private:
    std::size_t Below(std::size_t count) { return m_random() % count; }
    float Number(float most) { return most * static_cast<float>(Below(1001)) / 1000; }
    CVec3 Vector(float most) { return {Number(most), Number(most), Number(most)}; }

    CMaterialTarget SomeTarget(CEdited& scene, const std::string& node) {
        std::vector<std::string> names = scene.Edits().MaterialNamesOf(node);
        names.emplace_back();
        const std::string material = names[Below(names.size())];
        return {Below(3) > 0 ? node : "", material};
    }

    CEdit SomeEdit(CEdited& scene) {
        const std::vector<CPreparedNode>& nodes = scene.At().nodes;
        const std::string node = nodes.empty() ? "" : nodes[Below(nodes.size())].name;
        const CMaterialTarget target = SomeTarget(scene, node);
        const CEdit one[] = {CShininessEdit{target, Number(1)},
                             CTransparencyEdit{target, Number(1)},
                             CTextureEdit{target, m_folder / (Below(2) == 0 ? "wood.png" : "glass.png")},
                             CTextureEdit{target, ""},
                             CReplaceEdit{node, m_folder / "square.3ds", Below(2) == 0 ? "Square" : ""},
                             CDeleteEdit{node},
                             CMoveEdit{node, Vector(9)},
                             CRotateEdit{node, Vector(360)},
                             CColorEdit{target, Vector(1)},
                             CColorEdit{target, Vector(1)}};
        return one[Below(std::size(one))];
    }
};

/** One value after the other as text, exact; for looking for the first that differs. */
class CDump {
  public:
    template <class... T>
    void Add(const T&... values) {
        (One(values), ...);
    }
    std::vector<std::string> lines;

  private:
    void One(const std::string& text) { lines.push_back(text); }
    template <class T>
    requires(std::is_arithmetic_v<T> || std::is_enum_v<T>) void One(T value) {
        One(std::to_string(std::bit_cast<std::uint64_t>(static_cast<double>(value))));
    }
    void One(CVec3 v) { Add(v.x, v.y, v.z); }
    void One(const CMat4& matrix) {
        for (const float value : matrix.m) One(value);
    }
    void One(const CPreparedMap& map) { Add(map.texture, map.amount, map.scale.x, map.tile); }
};

std::vector<std::string> Dumped(const CPreparedScene& scene) {
    CDump to;
    for (const CPreparedNode& n : scene.nodes) {
        to.Add(n.name, n.kind, n.parent, n.mesh, n.pivot, n.fixedWorld, n.meshToNode, n.meshToWorld,
               n.worldBounds.min);
    }
    for (const CPreparedMesh& mesh : scene.meshes) {
        to.Add(mesh.name, mesh.bounds.max, mesh.toLocal, mesh.texCoords.size());
        for (const CPreparedVertex& vertex : mesh.vertices) to.Add(vertex.Position(), vertex.Normal());
        for (const CPreparedBatch& batch : mesh.batches) to.Add(batch.material, batch.indexCount);
    }
    for (const CPreparedMaterial& m : scene.materials) {
        to.Add(m.name, m.ambient, m.diffuse, m.specular, m.shininess, m.shininessStrength, m.transparency,
               m.twoSided, m.needsBlending, m.texture, m.opacity);
    }
    for (const CPreparedTexture& texture : scene.textures) to.Add(texture.reference, texture.foundAt);
    to.Add(scene.triangleCount, scene.vertexCount, scene.notes.size(), scene.animated, scene.lastFrame,
           scene.bounds.min, scene.bounds.max);
    return to.lines;
}

/** Colours are saved in 255 steps, other values in hundredths. */
void ExpectSameLook(const CPreparedScene& a, std::uint32_t materialA, const CPreparedScene& b,
                    std::uint32_t materialB) {
    const CPreparedMaterial &ours = a.materials[materialA], &theirs = b.materials[materialB];
    EXPECT_LT(Length(ours.diffuse - theirs.diffuse), 0.005f) << ours.name;
    EXPECT_LT(Length(ours.ambient - theirs.ambient), 0.005f) << ours.name;
    EXPECT_NEAR(ours.shininess, theirs.shininess, 0.0051f) << ours.name;
    EXPECT_NEAR(ours.transparency, theirs.transparency, 0.0051f) << ours.name;
    // A reader shows both sides of what is turned away altogether.
    EXPECT_TRUE(theirs.twoSided || !ours.twoSided) << ours.name;
    EXPECT_EQ(ours.texture.HasEffect(), theirs.texture.HasEffect()) << ours.name;
    if (!ours.texture.HasEffect() || !theirs.texture.HasEffect()) return;
    EXPECT_EQ(a.textures[static_cast<std::size_t>(ours.texture.texture)].image.rgba,
              b.textures[static_cast<std::size_t>(theirs.texture.texture)].image.rgba);
}

struct CTriangle {
    CVec3 middle;
    CVec3 front;  ///< where its front looks, as long as twice its area
};

CTriangle TriangleOf(const CPreparedScene& scene, const CPreparedNode& node, std::uint32_t first) {
    const CPreparedMesh& mesh = scene.meshes[static_cast<std::size_t>(node.mesh)];
    std::array<CVec3, 3> p;
    for (std::uint32_t k = 0; k < 3; ++k)
        p[k] = node.meshToWorld.TransformPoint(mesh.vertices[mesh.Index(first + k)].Position());
    return {(p[0] + p[1] + p[2]) * (1.0f / 3),
            Cross(p[1] - p[0], p[2] - p[0]) * (node.mirrored ? -1.0f : 1.0f)};
}

void ExpectSameShape(const CPreparedScene& a, const CPreparedNode& nodeA, const CPreparedScene& b,
                     const CPreparedNode& nodeB) {
    const CPreparedMesh &ours = a.meshes[static_cast<std::size_t>(nodeA.mesh)],
                        &theirs = b.meshes[static_cast<std::size_t>(nodeB.mesh)];
    ASSERT_EQ(ours.IndexCount(), theirs.IndexCount()) << nodeA.name;
    ASSERT_EQ(ours.batches.size(), theirs.batches.size()) << nodeA.name;
    const float size = a.boundingSphere.radius + Length(a.boundingSphere.center);
    for (std::uint32_t i = 0; i < ours.IndexCount(); i += 3) {
        const CTriangle t = TriangleOf(a, nodeA, i), u = TriangleOf(b, nodeB, i);
        ASSERT_LT(Length(t.middle - u.middle), 1e-4f * size) << nodeA.name;
        ASSERT_LT(Length(t.front - u.front), 1e-4f * size * size) << nodeA.name;
    }
    for (std::size_t i = 0; i < ours.batches.size(); ++i)
        ExpectSameLook(a, ours.batches[i].material, b, theirs.batches[i].material);
}

/** Nodes in the file's order, then those that only a mesh stands for, by name. */
std::vector<const CPreparedNode*> Shown(const CPreparedScene& scene) {
    std::vector<const CPreparedNode*> shown;
    for (const CPreparedNode& node : scene.nodes) {
        if (node.mesh >= 0 && scene.meshes[static_cast<std::size_t>(node.mesh)].IndexCount() > 0)
            shown.push_back(&node);
    }
    const auto loose = std::stable_partition(
        shown.begin(), shown.end(), [](const CPreparedNode* node) { return node->source != nullptr; });
    std::sort(loose, shown.end(), [](const auto* a, const auto* b) { return a->name < b->name; });
    return shown;
}

void ExpectSameScene(const CPreparedScene& ours, const CPreparedScene& theirs) {
    EXPECT_EQ(ours.triangleCount, theirs.triangleCount);
    EXPECT_EQ(ours.animated, theirs.animated);
    EXPECT_TRUE(!ours.animated || ours.lastFrame == theirs.lastFrame);
    const auto a = Shown(ours), b = Shown(theirs);
    ASSERT_EQ(a.size(), b.size());
    for (std::size_t i = 0; i < a.size(); ++i) ExpectSameShape(ours, *a[i], theirs, *b[i]);
}

TEST_P(EditsAndFileTest, FileHoldsWhatIsShownAndWhatIsTakenBackLeavesNoTrace) {
    CEdited scene(GetParam().file(m_folder), CTextureLocator::BesideModel(m_folder / "model.3ds"));
    const auto opened = Dumped(scene.At());
    const CBytes untouched = scene.Saved();
    std::size_t inForce = 0;
    for (int round = 0; round < 40; ++round) {
        const std::vector<CEdit> edits = SomeEdits(scene);
        const auto apply = [&] {
            std::size_t good = 0;
            for (const CStatus& answer : scene.Edits().Apply(edits)) good += answer ? 1u : 0u;
            return good;
        };
        const auto before = Dumped(scene.At());
        const std::size_t good = apply();
        const auto after = Dumped(scene.At());
        // Some rounds save, and so fill the file's own arrays, sooner than others.
        if (round % 3 == 2) ExpectSameScene(scene.At(), scene.Reopened());
        ASSERT_TRUE(scene.Edits().TakeBack(good));
        ASSERT_EQ(Dumped(scene.At()), before);
        ASSERT_EQ(apply(), good);
        ASSERT_EQ(Dumped(scene.At()), after);
        inForce += good;
        if (round % 8 != 7) continue;
        EXPECT_FALSE(scene.Edits().TakeBack(inForce + 1));
        ASSERT_TRUE(scene.Edits().TakeBack(std::exchange(inForce, 0)));
        ASSERT_EQ(Dumped(scene.At()), opened);
        EXPECT_EQ(scene.Saved(), untouched);
    }
}

constexpr CRow kRows[] = {
    {"Zoo", [](const CTestFolder&) { return ZooFile(); }},
    {"Twins", [](const CTestFolder&) { return TwinsFile(); }},
    {"Mirrors", [](const CTestFolder&) { return MirrorsFile(); }},
    {"PlacedTwice", [](const CTestFolder&) { return PlacedTwiceFile(false); }},
    {"NotPlacedTwice", [](const CTestFolder&) { return PlacedTwiceFile(true); }},
    {"Large", LargeFile},
};
INSTANTIATE_TEST_SUITE_P(Files, EditsAndFileTest, testing::ValuesIn(kRows), kRowName);

}  // namespace
