// SPDX-License-Identifier: MIT
#include "model/textures/CLib3dsMatUtil.h"

#include <gtest/gtest.h>
#include <lib3ds/file.h>
#include <lib3ds/material.h>
#include <lib3ds/mesh.h>

#include <cstring>

#include "files/CTestFolder.h"
#include "model/scene/CScene.h"

namespace {

CLib3dsFilePtr SceneWithMaps() {
    CLib3dsFilePtr file(lib3ds_file_new());
    for (const char* name : {"one", "two"}) {
        Lib3dsMaterial* material = lib3ds_material_new();
        std::strcpy(material->name, name);
        std::strcpy(material->texture1_map.name, "SKIN.JPG");
        lib3ds_file_insert_material(file.get(), material);
    }
    std::strcpy(file->materials->bump_mask.name, "skin.jpg");
    std::strcpy(file->materials->reflection_map.name, "C:\\MAPS\\SKY.RGB");
    std::strcpy(file->materials->opacity_map.name, "gone.tga");
    Lib3dsMesh* mesh = lib3ds_mesh_new("m");
    lib3ds_mesh_new_face_list(mesh, 1);
    std::strcpy(mesh->faceL[0].material, file->materials->name);
    lib3ds_file_insert_mesh(file.get(), mesh);
    return file;
}

TEST(CLib3dsMatUtilTest, ListsAndGetsWhatTravelsByThePictureFound) {
    const CTestFolder folder;
    std::filesystem::create_directories(folder / "car/red");
    std::filesystem::create_directories(folder / "maps");
    for (const char* file : {"car/skin.jpg", "car/red/skin.jpg", "maps/w\xC3\xA4nd.png", "car/unused.png"})
        (void)folder.Add(file, file);
    CLib3dsFilePtr file = SceneWithMaps();
    Lib3dsMaterial* other = lib3ds_material_new();
    std::strcpy(other->name, "no face has it");
    std::strcpy(other->texture1_map.name, "unused.png");
    lib3ds_file_insert_material(file.get(), other);
    Lib3dsMaterial& first = *lib3ds_file_material_by_name(file.get(), file->meshes->faceL[0].material);
    std::strcpy(first.texture2_map.name, "RED\\SKIN.BMP");
    std::strcpy(first.specular_map.name, "W\x84ND.TGA");  // code page 437
    const CTextureLocator locator = CTextureLocator::BesideModel(folder / "car/a.3ds");

    std::string told;
    for (const CScenePicture& picture : CLib3dsMatUtil::PicturesOf(*file, locator)) {
        told += picture.name + (picture.hit.outsideModelFolder ? " outside" : "");
        for (const std::string& reference : picture.references) told += " " + reference;
        told += "; ";
    }
    EXPECT_EQ(told,
              "SKIN.JPG SKIN.JPG skin.jpg; SKIN.jpg RED\\SKIN.BMP; w\xC3\xA4nd.png outside W\x84ND.TGA; ");
    CImageDataTextVec textures;
    CLib3dsMatUtil::GetMatTextures(file.get(), textures, locator);
    ASSERT_EQ(textures.size(), 3u);
    EXPECT_EQ(textures[1].name, "RED/SKIN.jpg");
    EXPECT_EQ(CTestFolder::TextOf(textures[1].data), "car/red/skin.jpg");
}

TEST(CLib3dsMatUtilTest, KnowsTheSceneAsLongAsSomebodyHoldsItsTextures) {
    const CLib3dsFilePtr file = SceneWithMaps();
    const auto count = [&] {
        CImageDataTextVec textures;
        CLib3dsMatUtil::GetMatTextures(file.get(), textures);
        return textures.size();
    };
    const CTextureLocator one = CTextureLocator::InMemory({{"skin.jpg", {std::byte{1}}}});
    const CTextureLocator none = CTextureLocator::InMemory({});
    EXPECT_EQ(count(), 0u);
    {
        CTexturesOfScene first(file.get(), one);
        CTexturesOfScene moved = std::move(first);
        EXPECT_EQ(count(), 1u);
        const CTexturesOfScene later(file.get(), none);
        EXPECT_EQ(count(), 0u);
        moved = CTexturesOfScene(file.get(), one);
        EXPECT_EQ(count(), 1u);
    }
    EXPECT_EQ(count(), 0u);
}

}  // namespace
