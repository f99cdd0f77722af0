// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>
#include <lib3ds/file.h>
#include <lib3ds/mesh.h>
#include <lib3ds/node.h>

#include <algorithm>
#include <numbers>
#include <tuple>

#include "export/gltf/CGltfReader.h"
#include "export/gltf/write_gltf.h"
#include "files/CTestFolder.h"
#include "model/open/load_scene.h"
#include "model/prepare/prepare_scene.h"
#include "row_name.h"
#include "scene_builder/CSceneBuilder.h"
#include "scene_builder/shapes.h"

// What is written is read again as another program would, and held against the prepared scene, at every frame.

using shapes::Box;

namespace {

struct CSceneCase {
    const char* name;
    void (*build)(CSceneBuilder&);
    int frames = 0;
    double normalDeg = 1.5;  ///< between shapes glTF blends normals
};

CShape Ball() {
    return shapes::Sphere(2, 10, true).Material("mapped");
}

void BuildHierarchy(CSceneBuilder& b) {
    Lib3dsNode& dummy = b.AddDummy("dummy", nullptr, {10, -4, 3});
    CSceneBuilder::SetTurn(dummy, 40, {1, 2, 3});
    CSceneBuilder::SetScale(dummy, {1, 2, 0.5F});  // its turned children are sheared
    Lib3dsNode& box = b.AddPart("box", Box({1, 2, 3}), &dummy, {2, 0, 0});
    CSceneBuilder::SetTurn(box, 30, {1, 1, 0});
    CSceneBuilder::SetPivot(box, {0.5F, 0, -1});
    b.AddPart("ball", Ball(), &box, {0, 0, 4});
    b.AddObject("box", &dummy, {-3, 1, 1}, "again");
}

void BuildMirrored(CSceneBuilder& b) {
    b.AddMesh("turned", Box({1, 2, 3}), true);
    CSceneBuilder::SetScale(b.AddObject("turned", nullptr, {5, 0, 0}), {-1, 1, 1});
    CSceneBuilder::SetScale(b.AddPart("ball", Ball(), nullptr, {0, 0, 9}), {1, -2, 1});
    CSceneBuilder::SetScale(b.AddPart("sheet", Ball(), nullptr, {0, 9, 0}), {1, 0, 1});
}

void BuildFarAway(CSceneBuilder& b) {
    b.AddPart("small", Ball().Scale({1e-4F, 1e-4F, 1e-4F}), nullptr, {1, 0, 0});
    b.AddPart("large", Ball().Scale({1e6F, 1e6F, 1e6F}), nullptr, {3e7F, 0, 0});
}

void BuildMoving(CSceneBuilder& b) {
    Lib3dsNode& arm = b.AddDummy("arm", nullptr, {0, 0, 1});
    b.Spin(arm, 2.5F, 10, {0, 1, 2});
    Lib3dsNode& box = b.AddPart("box", Box({1, 2, 3}), &arm, {2, 0, 0});
    CSceneBuilder::SetPivot(box, {0.5F, 0, -1});
    CSceneBuilder::MoveTo(box, 13, {4, 5, 6});
    CSceneBuilder::MoveTo(box, 30, {2, 0, 0});
    CSceneBuilder::HideFrom(b.AddPart("gone", Ball(), &box, {0, 3, 0}), 17);
    CSceneBuilder::HideFrom(b.AddPart("never", Ball(), nullptr, {0, 3, 0}), 0);
    b.AddMovingCamera("eye", {{{9, 0, 0}, {0, 0, 0}}, {{0, 9, 3}, {1, 0, 0}}, {{-9, 2, 1}, {0, 2, 0}}}, 50);
    b.AddSpot("lamp", {{0, 0, 9}, {1, 0, 0}}, {1, 1, 1}, {});
}

void BuildMorphing(CSceneBuilder& b) {
    CShape flat = Box({2, 2, 2}), tall = Box({2, 2, 6}), leaning = Box({2, 2, 4});
    for (CVec3& point : leaning.points) point.x += point.z;
    b.AddMesh("tall", tall);
    b.AddMesh("leaning", leaning);
    Lib3dsNode& node = b.AddPart("flat", flat, nullptr, {1, 2, 3});
    CSceneBuilder::MorphTo(node, 0, "flat");
    CSceneBuilder::MorphTo(node, 10, "tall");
    CSceneBuilder::MorphTo(node, 25, "leaning");
    CSceneBuilder::MorphTo(node, 40, "flat");
}

class GltfRoundTripTest : public testing::TestWithParam<std::tuple<CSceneCase, bool>> {
  protected:
    void SetUp() override {
        const CTestFolder folder;
        CSceneBuilder builder(Case().frames);
        builder.AddMaterial("mapped", {.texture = "missing.png"});
        Case().build(builder);
        builder.Save(folder / "scene.3ds");
        auto loaded = LoadScene(folder / "scene.3ds");
        ASSERT_TRUE(loaded);
        m_loaded.emplace(std::move(loaded).Value());
        CGltfOptions options;
        options.compress = std::get<bool>(GetParam());
        const auto glb = WriteGlb({Prepared(), m_loaded->scene.Textures(), &m_loaded->scene}, options);
        ASSERT_TRUE(glb);
        m_reader.emplace(glb.Value());
    }
    [[nodiscard]] static const CSceneCase& Case() { return std::get<CSceneCase>(GetParam()); }
    [[nodiscard]] CPreparedScene& Prepared() { return m_loaded->prepared; }

    [[nodiscard]] CGltfReader::CTriangle TriangleOf(const CPreparedNode& node, std::uint32_t first) const {
        const CPreparedMesh& mesh = m_loaded->prepared.meshes[static_cast<std::size_t>(node.mesh)];
        const std::array<float, 9> turn = node.meshToWorld.NormalMatrix();
        CGltfReader::CTriangle triangle;
        for (std::uint32_t i = 0; i < 3; ++i) {
            const std::uint32_t v = mesh.Index(first + i);
            triangle[i].position =
                CMatrix4d::From(node.meshToWorld).TransformPoint(Double(mesh.vertices[v].Position()));
            const CVec3 n = mesh.vertices[v].Normal();
            triangle[i].normal = Normalized(Double({turn[0] * n.x + turn[3] * n.y + turn[6] * n.z,
                                                    turn[1] * n.x + turn[4] * n.y + turn[7] * n.z,
                                                    turn[2] * n.x + turn[5] * n.y + turn[8] * n.z}));
            if (!mesh.texCoords.empty()) triangle[i].uv = {mesh.texCoords[v].x, 1 - mesh.texCoords[v].y};
        }
        return triangle;
    }
    [[nodiscard]] static CVec3d Double(CVec3 v) { return {v.x, v.y, v.z}; }

    /** How far apart the corners of two triangles are at most, whichever corner each begins with. */
    [[nodiscard]] static std::pair<double, std::size_t> Apart(const CGltfReader::CTriangle& a,
                                                              const CGltfReader::CTriangle& b) {
        std::pair<double, std::size_t> best{1e300, 0};
        for (std::size_t turn = 0; turn < 3; ++turn) {
            double farthest = 0;
            for (std::size_t i = 0; i < 3; ++i)
                farthest = std::max(farthest, Length(a[i].position - b[(i + turn) % 3].position));
            best = std::min(best, std::pair{farthest, turn});
        }
        return best;
    }

    void ExpectSame(const CPreparedNode& node, double tolerance) {
        SCOPED_TRACE(node.name);
        std::vector<CGltfReader::CTriangle> left = m_reader->TrianglesOf(m_reader->Find(node.name));
        const CPreparedMesh& mesh = Prepared().meshes[static_cast<std::size_t>(node.mesh)];
        ASSERT_EQ(left.size(), mesh.IndexCount() / 3);
        const bool isFlattened = std::abs(node.meshToWorld.Determinant3()) < 1e-30;
        for (std::uint32_t i = 0; i < mesh.IndexCount(); i += 3) {
            const CGltfReader::CTriangle wanted = TriangleOf(node, i);
            const auto found = std::min_element(left.begin(), left.end(), [&](const auto& a, const auto& b) {
                return Apart(wanted, a).first < Apart(wanted, b).first;
            });
            const auto [apart, turn] = Apart(wanted, *found);
            ASSERT_LE(apart, tolerance) << "triangle " << i / 3;
            for (std::size_t k = 0; k < 3 && !isFlattened; ++k) {
                const double cosine = Dot(wanted[k].normal, (*found)[(k + turn) % 3].normal);
                ASSERT_GE(cosine, std::cos(Case().normalDeg * std::numbers::pi / 180))
                    << "triangle " << i / 3;
            }
            for (std::size_t k = 0; k < 3; ++k) {
                ASSERT_NEAR(wanted[k].uv[0], (*found)[(k + turn) % 3].uv[0], 1e-3);
                ASSERT_NEAR(wanted[k].uv[1], (*found)[(k + turn) % 3].uv[1], 1e-3);
            }
            left.erase(found);
        }
    }

    std::optional<CLoadedScene> m_loaded;
    std::optional<CGltfReader> m_reader;
};

// Also each triangle's winding: a mirrored one would lie three corners apart.
TEST_P(GltfRoundTripTest, ShowsTheSameTriangles) {
    for (const CPreparedNode& node : Prepared().nodes) {
        if (node.mesh < 0 || !node.visible) continue;
        const CBox& box = Prepared().meshes[static_cast<std::size_t>(node.mesh)].bounds;
        // A step of a 14-bit number, and what floats lose far from the middle.
        const CBox placed = node.worldBounds;
        const double size =
            std::max(Length(Double(placed.max - placed.min)), Length(Double(box.max - box.min)));
        ExpectSame(node, size / 16383 + Length(Double(placed.Center())) * 1e-6);
    }
}

TEST_P(GltfRoundTripTest, MovesAsTheScene) {
    const double radius = Prepared().boundingSphere.radius;
    for (int frame = 0; frame <= Case().frames; ++frame) {
        SCOPED_TRACE(frame);
        EvaluateNodes(Prepared(), m_loaded->scene, static_cast<float>(frame));
        m_reader->SetTime(frame / 30.0);
        for (const CPreparedNode& node : Prepared().nodes) {
            if (node.mesh < 0 || node.isLeftOut) continue;
            if (node.visible) {
                ExpectSame(node, radius * 1e-3);
                continue;
            }
            const int number = m_reader->Find(node.name);
            if (number < 0) continue;  // what is never shown is not there
            for (const auto& triangle : m_reader->TrianglesOf(number))
                ASSERT_LE(Length(triangle[0].position - triangle[1].position), 1e-6)
                    << node.name << " is hidden";
        }
        for (const CPreparedCamera& camera : Prepared().cameras) {
            const CMatrix4d eye = m_reader->WorldOf(m_reader->Find(camera.name));
            EXPECT_LE(Length(eye.TransformPoint({}) - Double(camera.position)), radius * 1e-3);
            const CVec3d sight = Normalized(Double(camera.target) - Double(camera.position));
            EXPECT_GE(Dot(eye.TransformDirection({0, 0, -1}), sight), 1 - 1e-5);
            EXPECT_NEAR(eye.TransformDirection({1, 0, 0}).z, 0, 1e-3) << "rolled";
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Scenes, GltfRoundTripTest,
                         testing::Combine(testing::Values(CSceneCase{"Hierarchy", BuildHierarchy},
                                                          CSceneCase{"Mirrored", BuildMirrored},
                                                          CSceneCase{"FarAway", BuildFarAway},
                                                          CSceneCase{"Moving", BuildMoving, 30},
                                                          CSceneCase{"Morphing", BuildMorphing, 40, 180}),
                                          testing::Bool()),
                         [](const auto& row) {
                             return std::string(std::get<0>(row.param).name) +
                                    (std::get<1>(row.param) ? "Packed" : "Plain");
                         });

/** Boxes that jump at every frame, so that no sample can be left out. */
struct CJumpCase {
    const char* name;
    int frames, boxes;
    bool repeats;                 ///< four keys again and again, or one for each frame
    std::size_t atLeast, atMost;  ///< samples of a track
};
class GltfAnimationBudgetTest : public testing::TestWithParam<CJumpCase> {};

TEST_P(GltfAnimationBudgetTest, LeavesOutFramesAndKeepsTheLength) {
    const auto [name, frames, boxes, repeats, atLeast, atMost] = GetParam();
    const CTestFolder folder;
    CSceneBuilder builder(frames);
    for (int i = 0; i < boxes; ++i) {
        Lib3dsNode& box = builder.AddPart("box" + std::to_string(i), Box({1, 1, 1}), nullptr, {});
        for (int frame = 1; frame <= (repeats ? 3 : frames); ++frame)
            CSceneBuilder::MoveTo(box, frame,
                                  {static_cast<float>(frame * frame % 7), static_cast<float>(frame % 5), 1});
        if (repeats) box.data.object.pos_track.flags = LIB3DS_REPEAT;
    }
    builder.Save(folder / "scene.3ds");
    auto loaded = LoadScene(folder / "scene.3ds");
    ASSERT_TRUE(loaded);
    const auto glb =
        WriteGlb({loaded.Value().prepared, loaded.Value().scene.Textures(), &loaded.Value().scene}, {});
    ASSERT_TRUE(glb);
    const CGltfReader reader(glb.Value());
    const auto& json = reader.Json();
    ASSERT_EQ(json["animations"][0]["samplers"].size(), static_cast<std::size_t>(boxes));
    for (const auto& sampler : json["animations"][0]["samplers"]) {
        const auto& times = json["accessors"][sampler["input"].get<std::size_t>()];
        EXPECT_GE(times["count"].get<std::size_t>(), atLeast);
        EXPECT_LE(times["count"].get<std::size_t>(), atMost);
        EXPECT_NEAR(times["max"][0].get<double>(), frames / 30.0, 1.0) << "it ends when it did";
    }
}

const CJumpCase kJumps[] = {
    {"Enough", 3000, 1, true, 2000, 3001},
    {"TooManyFrames", 200'000, 1, true, 25'000, 50'001},
    {"TooManyKeys", 30'000, 1, false, 3000, 6001},
    {"TooMuchIsLeft", 8000, 300, true, 2000, 4001},
};
INSTANTIATE_TEST_SUITE_P(Jumps, GltfAnimationBudgetTest, testing::ValuesIn(kJumps), kRowName);

}  // namespace
