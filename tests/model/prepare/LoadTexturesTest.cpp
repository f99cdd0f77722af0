// SPDX-License-Identifier: MIT
#include "model/prepare/load_textures.h"

#include <gtest/gtest.h>

#include "model/prepare/prepare_scene.h"
#include "model/read_3ds/CReadScene.h"

namespace {
/** A picture of one colour, as TGA of 32 bits. */
CImageDataText Picture(std::string name, std::uint16_t side) {
    CBytes bytes = Values<std::uint8_t>({0, 0, 2, 0, 0, 0, 0, 0, 0, 0, 0, 0}) + Words({side, side}) +
                   Values<std::uint8_t>({32, 8});
    bytes.resize(bytes.size() + std::size_t{4} * side * side, std::byte{255});
    return {std::move(name), std::move(bytes)};
}

CBytes Textured(std::initializer_list<std::string_view> names) {
    CBytes materials;
    for (const std::string_view name : names)
        materials = std::move(materials) + Material(name, Chunk(0xA200, Chunk(0xA300, Text(name))));
    return Scene(materials + Cube());
}

CPreparedScene Prepared(std::initializer_list<std::string_view> names, CImageDataTextVec pictures,
                        std::uint64_t budget = 1 << 20) {
    auto scene = CSceneReader::ReadBytes(Textured(names), CTextureLocator::InMemory(std::move(pictures)));
    EXPECT_TRUE(scene);
    return PrepareScene(scene.Value(), {.pictureBytes = budget});
}

TEST(LoadTexturesTest, NamesOfOnePictureShareIt) {
    const CPreparedScene scene = Prepared({"A.TGA", "none.tga", "a.jpg", "b.tga", "sub/a.tga"},
                                          {Picture("a.tga", 4), Picture("b.tga", 2)});
    ASSERT_EQ(scene.textures.size(), 3u);
    const int expected[] = {0, 1, 0, 2, 0};
    for (std::size_t i = 0; i < 5; ++i) EXPECT_EQ(scene.materials[i].texture.texture, expected[i]) << i;
    EXPECT_EQ(scene.textures[0].image.width, 4);
    EXPECT_TRUE(scene.textures[1].image.IsEmpty());
    EXPECT_EQ(scene.textures[2].image.width, 2);
}

TEST(LoadTexturesTest, LargestPicturesGiveWayToTheBudget) {
    // 64 KB, 16 KB and 1 KB decoded; both large ones must be at a half.
    const CPreparedScene scene =
        Prepared({"s.tga", "m.tga", "l.tga"},
                 {Picture("s.tga", 16), Picture("m.tga", 64), Picture("l.tga", 128)}, 10 << 10);
    ASSERT_EQ(scene.textures.size(), 3u);
    const int sides[] = {16, 32, 32};
    for (std::size_t i = 0; i < 3; ++i) EXPECT_EQ(scene.textures[i].image.width, sides[i]) << i;
    ASSERT_EQ(scene.notes.size(), 2u);
    EXPECT_EQ(scene.notes[0].subject, "m.tga");
    EXPECT_EQ(scene.notes[1].subject, "l.tga");
}

TEST(LoadTexturesTest, WhatDoesNotFitAtAllIsLeftOut) {
    const CPreparedScene scene =
        Prepared({"s.tga", "l.tga"}, {Picture("s.tga", 16), Picture("l.tga", 256)}, 3 << 10);
    EXPECT_EQ(scene.textures[0].image.width, 16);
    EXPECT_TRUE(scene.textures[1].image.IsEmpty());
    ASSERT_EQ(scene.notes.size(), 1u);
    EXPECT_EQ(scene.notes[0].reason, "all pictures together are too large");
}

/** A picture of one colour, as run-length TGA of 32 bits: a byte for 102 decoded. */
CImageDataText PackedPicture(std::string name, std::uint16_t side) {
    CBytes bytes = Values<std::uint8_t>({0, 0, 10, 0, 0, 0, 0, 0, 0, 0, 0, 0}) + Words({side, side}) +
                   Values<std::uint8_t>({32, 8});
    for (int runs = side * side / 128; runs > 0; --runs)
        bytes = std::move(bytes) + Values<std::uint8_t>({0xFF, 1, 2, 3, 255});
    return {std::move(name), std::move(bytes)};
}

TEST(LoadTexturesTest, OfManyPicturesThatSmallFilesClaimTheLargestAreLeftOut) {
    // Each has 95 KB beyond 64 times its file, the small one 6 KB; twice the budget is 300 KB.
    const CPreparedScene scene =
        Prepared({"1.tga", "2.tga", "3.tga", "4.tga", "s.tga", "t.tga"},
                 {PackedPicture("1.tga", 256), PackedPicture("2.tga", 256), PackedPicture("3.tga", 256),
                  PackedPicture("4.tga", 256), PackedPicture("s.tga", 64), Picture("t.tga", 64)},
                 150 << 10);
    const bool isShown[] = {true, true, true, false, true, true};
    for (std::size_t i = 0; i < 6; ++i) EXPECT_EQ(!scene.textures[i].image.IsEmpty(), isShown[i]) << i;
}
}  // namespace
