// SPDX-License-Identifier: MIT
#include "model/save/save_scene.h"

#include <gtest/gtest.h>
#include <lib3ds/file.h>
#include <lib3ds/material.h>

#include <algorithm>
#include <filesystem>

#include "files/CTestFolder.h"
#include "files/CZipReader.h"
#include "files/file_util_ex.h"
#include "model/open/CSceneReader.h"
#include "model/prepare/prepare_scene.h"
#include "model/save/write_scene.h"
#include "model/scene/CScene.h"
#include "model/textures/CLib3dsMatUtil.h"
#include "picture/image_writer.h"
#include "scene_builder/CSceneBuilder.h"
#include "scene_builder/shapes.h"

namespace {

/** A square picture of one colour. */
CImage Picture(int side, std::uint8_t red, std::uint8_t alpha = 255) {
    CImage image{side, side, {}};
    for (int i = 0; i < side * side; ++i) image.rgba.insert(image.rgba.end(), {red, 0, 0, alpha});
    return image;
}

/** A model whose pictures lie in several folders, under names of several kinds, and the archive made of it. */
class SaveSceneTest : public testing::Test {
  protected:
    void Write(const std::string& name, const CImage& image) {
        std::filesystem::create_directories(std::filesystem::path(m_folder / name).parent_path());
        ASSERT_TRUE(image_codec::WritePng(m_folder / name, image, true));
    }
    void AddMaterial(const std::string& name, const std::string& reference, bool isUsed = true) {
        CMaterialValues values;
        values.texture = reference;
        m_builder.AddMaterial(name, values);
        CShape shape = shapes::Box({1, 1, 1});
        shape.materials = {name};
        if (isUsed) m_builder.AddPart("on " + name, shape, nullptr, {0, 0, 0});
    }
    std::vector<std::string> Pack() {
        Lib3dsFile& file = m_builder.File();
        const CTexturesOfScene known(&file, CTextureLocator::BesideModel(m_folder / "model.3ds"));
        CScene scene = CScene::Borrow(file);
        const auto write = [&](std::string_view path) { return WriteScene(scene, path); };
        const CStatus saved = SaveSceneZip(&file, write, Picture(1, 0), m_folder / "packed.zip");
        EXPECT_TRUE(saved) << saved.Error().Text();
        std::vector<std::string> names;
        auto archive = CZipReader::Open(file_util_ex::ReadWholeFile(m_folder / "packed.zip").Value());
        for (const CZipEntry& entry : archive.Value().Entries()) names.push_back(entry.name);
        std::sort(names.begin(), names.end());
        return names;
    }
    CPreparedTexture TextureOf(const CPreparedScene& prepared, const std::string& material) {
        for (const CPreparedMaterial& m : prepared.materials) {
            if (m.name == material) return prepared.textures.at(static_cast<std::size_t>(m.texture.texture));
        }
        return {};
    }

    CTestFolder m_folder;
    CSceneBuilder m_builder;
};

using CNames = std::vector<std::string>;

TEST_F(SaveSceneTest, EachPictureIsThereOnceAndFoundAgain) {
    Write("red/hull.png", Picture(2, 200));
    Write("blue/HULL.png", Picture(3, 100));
    Write("w\xC3\xA4nd.png", Picture(4, 50));
    Write("leaf.png", Picture(5, 50, 100));
    Write("secret.png", Picture(6, 50));
    AddMaterial("Red", "RED\\hull.jpg");
    AddMaterial("Again", "red/HULL.tga");
    AddMaterial("Blue", "blue/hull.jpg");
    AddMaterial("Wall", "W\x84ND.JPG");  // code page 437
    AddMaterial("Leaf", "leaf.jpg");
    AddMaterial("Unused", "secret.jpg", false);
    EXPECT_EQ(Pack(), (CNames{"HULL.jpg", "hull_2.jpg", "leaf.jpg", "leaf.jpg.png", "packed.3ds",
                              "preview.png", "w\xC3\xA4nd.jpg"}));
    EXPECT_STREQ(m_builder.File().materials->texture1_map.name, "red/HULL.tga")
        << "the scene keeps its names";

    const auto scene = CSceneReader::ReadFile(m_folder / "packed.zip");
    ASSERT_TRUE(scene);
    const CPreparedScene prepared = PrepareScene(scene.Value());
    EXPECT_EQ(TextureOf(prepared, "Red").image.width, 2);
    EXPECT_EQ(TextureOf(prepared, "Again").image.width, 2);
    EXPECT_EQ(TextureOf(prepared, "Blue").image.width, 3);
    EXPECT_EQ(TextureOf(prepared, "Wall").image.width, 4);
    EXPECT_EQ(TextureOf(prepared, "Wall").reference, "w\xC3\xA4nd.jpg") << "as other programs look for it";
    EXPECT_TRUE(TextureOf(prepared, "Leaf").hasTranslucency);
}

TEST_F(SaveSceneTest, NamesThatNoFileMayHaveAreMadeSound) {
    Write("a\nb:c'$(x).png", Picture(2, 200));
    const std::string longName(63, 'n');
    Write(longName, Picture(3, 100));
    AddMaterial("Odd", "a\nb:c'$(x).jpg");
    AddMaterial("Long", longName);
    EXPECT_EQ(Pack(), (CNames{"a_b_c'$(x).jpg", "packed.3ds", "preview.png", "texture.jpg"}));
}

}  // namespace
