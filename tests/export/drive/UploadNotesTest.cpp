// SPDX-License-Identifier: MIT
#include "export/drive/upload_notes.h"

#include <gtest/gtest.h>
#include <lib3ds/file.h>
#include <lib3ds/material.h>
#include <lib3ds/mesh.h>

#include <cstring>

#include "files/CTestFolder.h"
#include "model/scene/CScene.h"
#include "model/textures/CTextureLocator.h"
#include "row_name.h"

namespace {

struct CNotesCase {
    const char* name;
    std::string text;
};
std::string EmptyNames(int count) {
    std::string text;
    for (int i = 0; i < count; ++i) text += R"(,"")";
    return text;
}

class DamagedNotesTest : public testing::TestWithParam<CNotesCase> {};

TEST_P(DamagedNotesTest, AreNotTakenForNone) {
    const CTestFolder folder;
    (void)folder.Add(kUploadNotesFile, GetParam().text);
    const CResult<CUploadNotes> notes = ReadUploadNotes(folder.Path());
    ASSERT_FALSE(notes);
    EXPECT_EQ(notes.Error().code, EErrorCode::BadFormat);
}

const CNotesCase kDamaged[] = {
    {"Empty", ""},
    {"CutShort", R"({"version": 1, "outside": [)"},
    {"NoObject", "[]"},
    {"OtherVersion", R"({"version": 2, "outside": []})"},
    {"NoList", R"({"version": 1})"},
    {"NoText", R"({"version": 1, "outside": ["a", 2]})"},
    {"EndlessPath", R"({"version": 1, "outside": [")" + std::string(1 << 20, 'x') + R"("]})"},
    {"EndlessList", R"({"version": 1, "outside": ["")" + EmptyNames(20'000) + "]}"},
    {"DeepList", R"({"version": 1, "outside": )" + std::string(1 << 20, '[')},
};
INSTANTIATE_TEST_SUITE_P(Notes, DamagedNotesTest, testing::ValuesIn(kDamaged), kRowName);

}  // namespace

TEST(UploadNotesTest, SurviveTheirFile) {
    const CTestFolder folder;
    const CUploadNotes notes{{"/a \"b\"\n\\c.png", "/w\xC3\xA4nd.jpg"}};
    ASSERT_TRUE(WriteUploadNotes(folder.Path(), notes));
    EXPECT_EQ(ReadUploadNotes(folder.Path()).Value(), notes);
    ASSERT_TRUE(WriteUploadNotes(folder.Path(), {{"/w\xE4nd.jpg"}}));
    EXPECT_EQ(ReadUploadNotes(folder.Path()).Value().outside.front(), "/w\xEF\xBF\xBDnd.jpg");
}

TEST(UploadNotesTest, NamePicturesFromOutsideTheModelsFolder) {
    const CTestFolder folder;
    std::filesystem::create_directories(folder / "car");
    std::filesystem::create_directories(folder / "maps");
    (void)folder.Add("car/inside.png", "x");
    const std::string outside = folder.Add("maps/outside.png", "x");
    const CLib3dsFilePtr file(lib3ds_file_new());
    Lib3dsMaterial* material = lib3ds_material_new();
    std::strcpy(material->name, "m");
    std::strcpy(material->texture1_map.name, "INSIDE.PNG");
    std::strcpy(material->bump_map.name, "OUTSIDE.PNG");
    lib3ds_file_insert_material(file.get(), material);
    Lib3dsMesh* mesh = lib3ds_mesh_new("mesh");
    lib3ds_mesh_new_face_list(mesh, 1);
    std::strcpy(mesh->faceL[0].material, material->name);
    lib3ds_file_insert_mesh(file.get(), mesh);
    EXPECT_EQ(UploadNotesOf(*file, CTextureLocator::BesideModel(folder / "car/a.3ds")).outside,
              std::vector<std::string>{outside});
}
