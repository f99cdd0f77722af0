// SPDX-License-Identifier: MIT
#include "frame/materials/node_picture.h"

#include <gtest/gtest.h>

#include <chrono>
#include <limits>
#include <thread>

#include "base/jobs/CJobProgress.h"
#include "frame/materials/CNodePictures.h"
#include "model/prepare/CPreparedScene.h"

namespace {

/** A node "Plate" whose triangle lies flat, `count` times, and a dummy. */
CPreparedScene Plate(float size, std::uint32_t count = 1) {
    CPreparedScene scene;
    scene.materials.resize(2);
    scene.materials[0].diffuse = {1, 0, 0};
    CPreparedMesh& mesh = scene.meshes.emplace_back();
    for (const CVec3 p : {CVec3{0, 0, 0}, CVec3{size, 0, 0}, CVec3{0, size, 0}})
        mesh.vertices.push_back({{p.x, p.y, p.z}, {}});
    for (std::uint32_t i = 0; i < count; ++i) mesh.indices16.insert(mesh.indices16.end(), {0, 1, 2});
    mesh.batches.push_back({0, 0, 3 * count});
    scene.nodes.resize(2);
    scene.nodes[0].name = "Dummy";
    scene.nodes[1].name = "Plate";
    scene.nodes[1].mesh = 0;
    return scene;
}

int CountDrawn(const CImage& image) {
    int drawn = 0;
    for (std::size_t i = 3; i < image.rgba.size(); i += 4) drawn += image.rgba[i] > 0;
    return drawn;
}

TEST(NodePictureTest, FillsThePictureInTheColourOfTheMaterial) {
    const CImage image = DrawNodePicture(Plate(1000), 1, 64, CJobProgress());
    ASSERT_EQ(image.rgba.size(), 64u * 64 * 4);
    EXPECT_GT(CountDrawn(image), 400);
    const std::uint8_t* plate = image.Pixel(22, 32);
    EXPECT_GT(plate[0], 100);
    EXPECT_EQ(plate[1], 0);
    EXPECT_EQ(plate[3], 255);
    EXPECT_EQ(image.Pixel(0, 0)[3], 0) << "the ground is clear";
}

TEST(NodePictureTest, SurvivesNumbersThatAreNone) {
    for (const float size : {0.0f, 1e-38f, 3e38f, std::numeric_limits<float>::infinity(),
                             std::numeric_limits<float>::quiet_NaN()})
        EXPECT_EQ(DrawNodePicture(Plate(size), 1, 32, CJobProgress()).width, 32) << size;
}

TEST(NodePictureTest, IsBoundedAndCanBeCancelled) {
    const CPreparedScene heavy = Plate(1, 1'500'000);
    const auto start = std::chrono::steady_clock::now();
    EXPECT_GT(CountDrawn(DrawNodePicture(heavy, 1, 128, CJobProgress())), 0);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20)) << "unbounded: minutes";
    CJobProgress cancelled;
    cancelled.Cancel();
    EXPECT_TRUE(DrawNodePicture(heavy, 1, 128, cancelled).IsEmpty());
}

TEST(NodePictureTest, ProposesTheNodeOfTheSameName) {
    const std::vector<CChoice> choices{{4, "wheel", 1}, {5, "Door", 1}, {6, "Wheel", 1}};
    EXPECT_EQ(ChoiceFor(choices, "Wheel"), 2);
    EXPECT_EQ(ChoiceFor(choices, "DOOR"), 1);
    EXPECT_EQ(ChoiceFor(choices, "Roof"), 0);
    EXPECT_EQ(ChoiceFor({}, "Roof"), -1);
    EXPECT_EQ(ChoicesIn(Plate(1)), (std::vector<CChoice>{{1, "Plate", 1}})) << "a dummy is no choice";
}

TEST(CNodePicturesTest, MakesWhatIsWantedBesideTheCaller) {
    const CPreparedScene scene = Plate(1);
    CNodePictures pictures(scene, 32);
    std::vector<CNodePictures::CPicture> made;
    for (int round = 0; round < 2; ++round) {
        pictures.Want({1});
        for (int i = 0; i < 500 && made.size() < static_cast<std::size_t>(round + 1); ++i) {
            for (auto& picture : pictures.Take()) made.push_back(std::move(picture));
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
    }
    ASSERT_EQ(made.size(), 2u);
    EXPECT_EQ(made[1].first, 1u);
    EXPECT_GT(CountDrawn(made[1].second), 0);
}

}  // namespace
