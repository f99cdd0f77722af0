// SPDX-License-Identifier: MIT
#include "model/prepare/load_textures.h"

#include <gtest/gtest.h>

#include <span>
#include <string_view>

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

TEST(LoadTexturesTest, WhatTakesLongToDecodeIsLeftOut) {
    // Headers of 28 million pixels and nothing behind them: what is decoded at all is found damaged.
    const auto claim = [](const char* name) {
        constexpr std::string_view header(
            "\x89PNG\r\n\x1a\n\0\0\0\rIHDR\0\0\x1b\x58\0\0\x0f\xa0\x08\2\0\0\0\0\0\0\0", 33);
        const auto bytes = std::as_bytes(std::span(header));
        return CImageDataText{name, {bytes.begin(), bytes.end()}};
    };
    const CPreparedScene scene =
        Prepared({"a.png", "b.png", "c.png", "s.tga"},
                 {claim("a.png"), claim("b.png"), claim("c.png"), Picture("s.tga", 16)}, 512 << 20);
    ASSERT_EQ(scene.notes.size(), 3u);
    EXPECT_NE(scene.notes[1].reason, "all pictures together are too large");
    EXPECT_EQ(scene.notes[2].subject, "c.png");
    EXPECT_EQ(scene.notes[2].reason, "all pictures together are too large");
    EXPECT_EQ(scene.textures[3].image.width, 16);
}
}  // namespace
