// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>
#include <lib3ds/file.h>
#include <lib3ds/material.h>
#include <lib3ds/mesh.h>
#include <sys/stat.h>

#include <filesystem>

#include "files/CTestFolder.h"
#include "model/read_obj/CConverted.h"
#include "row_name.h"

namespace {

TEST(CObjConv3ds, ReadsMaterials) {
    const CConverted c =
        Convert(kSquare + "usemtl Red  paint \nf 1 2 3\nusemtl\tglass\nf 1 2 4\nusemtl gone\nf 2 3 4\n",
                "newmtl Red  paint\nKa 0.1 0.2 0.3\nKd 1 0.5 0.25\nKs 1 1 1\nNs 1024\nillum 2\n"
                "newmtl glass\nKD 0.5\nTr 0.75\nKe 0 0.5 0\nKa 1 1 1\n");
    ASSERT_TRUE(c.file) << c.error;
    const auto materials = c.Materials();
    ASSERT_EQ(materials.size(), 3u);
    EXPECT_STREQ(materials[0]->name, "Red  paint");
    EXPECT_FLOAT_EQ(materials[0]->ambient[2], 0.3f);
    EXPECT_FLOAT_EQ(materials[0]->diffuse[1], 0.5f);
    EXPECT_FLOAT_EQ(materials[0]->shininess, 1.0f);
    EXPECT_FLOAT_EQ(materials[0]->shin_strength, 1.0f);
    EXPECT_TRUE(materials[0]->two_sided);
    EXPECT_FLOAT_EQ(materials[1]->diffuse[2], 0.5f);
    EXPECT_FLOAT_EQ(materials[1]->ambient[0], 0.5f);
    EXPECT_FLOAT_EQ(materials[1]->transparency, 0.75f);
    EXPECT_FLOAT_EQ(materials[1]->self_ilpct, 0.5f);
    EXPECT_FLOAT_EQ(materials[1]->shin_strength, 0.0f);
    EXPECT_FLOAT_EQ(materials[2]->diffuse[0], 0.588f);
    EXPECT_STREQ(c.file->meshes->faceL[2].material, "gone");
    ASSERT_EQ(c.notes.size(), 1u);
    EXPECT_EQ(c.notes[0], (CSceneNote{CSceneNote::EKind::Missing, "Material not found", "gone"}));
}

struct CMapCase {
    const char* name;
    std::string line;
    std::string file;
    float scaleU, offsetU;
    bool tiled = true;
};
class MapOf : public testing::TestWithParam<CMapCase> {};
TEST_P(MapOf, Diffuse) {
    const CConverted c = Convert(kSquare + "usemtl a\nf 1 2 3\n", "newmtl a\n" + GetParam().line + "\n");
    ASSERT_TRUE(c.file) << c.error;
    const Lib3dsTextureMap& map = c.file->materials->texture1_map;
    EXPECT_EQ(map.name, GetParam().file);
    EXPECT_FLOAT_EQ(map.scale[0], GetParam().scaleU);
    EXPECT_EQ((map.flags & LIB3DS_NO_TILE) == 0, GetParam().tiled);
    // At u = 0 the picture is met at the file's offset.
    EXPECT_NEAR(map.scale[0] * (0 - 0.5f - map.offset[0]) + 0.5f, GetParam().offsetU, 1e-6);
}
const CMapCase kMapOfRows[] = {
    {"Plain", "map_Kd wood.jpg", "wood.jpg", 1, 0},
    {"DosPath", "map_Kd C:\\maps\\wood.jpg", "wood.jpg", 1, 0},
    {"Quotes", "map_Kd \"a/wood.jpg\"", "a/wood.jpg", 1, 0},
    {"Folders", "map_Kd .\\tex\\oak\\wood.jpg", "./tex/oak/wood.jpg", 1, 0},
    {"OtherFolder", "map_Kd x/../../maps/wood.jpg", "maps/wood.jpg", 1, 0},
    {"LongFolders", "map_Kd " + std::string(70, 'a') + "/b/wood.jpg", "wood.jpg", 1, 0},
    {"ScaleAndOffset", "map_Kd -s 2 2 1 -o 0.25 0 0 wood.jpg", "wood.jpg", 2, 0.25f},
    {"OptionsOfNoUse", "map_Kd -cc on -mm 0 1 -texres 64 wood.jpg", "wood.jpg", 1, 0},
    {"OptionsBehind", "map_Kd my wood.jpg -s 3 3", "my wood.jpg", 3, 0},
    {"LaterLineAlone", "map_Kd -s 4 4 oak.jpg\nmap_Kd wood.jpg", "wood.jpg", 1, 0},
    {"AmbientMapInstead", "map_Ka wood.jpg", "wood.jpg", 1, 0},
    {"Clamped", "map_Kd -clamp on wood.jpg", "wood.jpg", 1, 0, false},
    {"AbsurdScale", "map_Kd -s 0 0 0 wood.jpg", "wood.jpg", 1, 0},
};
INSTANTIATE_TEST_SUITE_P(CObjConv3ds, MapOf, testing::ValuesIn(kMapOfRows), kRowName);

TEST(CObjConv3ds, ReadsTheOtherMaps) {
    const CConverted c =
        Convert(kSquare + "usemtl a\nf 1 2 3\n",
                "newmtl a\nmap_Kd leaf.png\nmap_d leaf.png\nmap_Ks s.png\nbump -bm 0.5 b.png\n"
                "refl -type sphere sky.jpg\nmap_Ns n.png\nmap_Ke e.png\n");
    ASSERT_TRUE(c.file);
    const Lib3dsMaterial& m = *c.file->materials;
    EXPECT_STREQ(m.opacity_map.name, "leaf.png");
    EXPECT_TRUE(m.opacity_map.flags & LIB3DS_ALPHA_SOURCE);
    EXPECT_STREQ(m.specular_map.name, "s.png");
    EXPECT_STREQ(m.bump_map.name, "b.png");
    EXPECT_FLOAT_EQ(m.bump_map.percent, 0.5f);
    EXPECT_STREQ(m.reflection_map.name, "sky.jpg");
    EXPECT_STREQ(m.shininess_map.name, "n.png");
    EXPECT_STREQ(m.self_illum_map.name, "e.png");
}

TEST(CObjConv3ds, ReadsTransparency) {
    for (const auto& [line, transparency] : {std::pair{"d 0.25", 0.75f},
                                             {"d -halo 0.5", 0.5f},
                                             {"Tr 1\nd 1", 0.0f},
                                             {"Tr 1.0", 0.0f},  // who writes that alone means opaque
                                             {"d x", 0.0f},
                                             {"d 7", 0.0f}}) {
        const CConverted c =
            Convert(kSquare + "usemtl a\nf 1 2 3\n", "newmtl a\n" + std::string(line) + "\n");
        ASSERT_TRUE(c.file);
        EXPECT_FLOAT_EQ(c.file->materials->transparency, transparency) << line;
    }
}

TEST(CObjConv3ds, FindsMaterialFilesBesideTheModelOrWhereTheLineLeads) {
    const CTestFolder folder;
    const auto convert = [&](std::string_view mtllib) {
        const std::string path =
            folder.Add("models/sub.obj", std::string(mtllib) + "\n" + kSquare + "usemtl a\nf 1 2 3\n");
        std::vector<CSceneNote> notes;
        CResult<CLib3dsFilePtr> file = CObjConv3ds::ConvertResult(path, notes);
        return file ? file.Value()->materials->diffuse[0] : -1.0f;
    };
    std::filesystem::create_directories(folder / "models/below/model");
    std::filesystem::create_directories(folder / "mtl");
    const std::pair<const char*, const char*> files[] = {
        {"models/Paint.MTL", "newmtl a\nKd 0.25 0 0\n"},
        {"models/my paint.mtl", "newmtl a\nKd 0.5 0 0\n"},
        {"models/below/b.mtl", "newmtl a\nKd 0.75 0 0\n"},
        {"models/both.mtl", "newmtl a\nKd 0.5 0 0\n"},
        {"models/mark.mtl", "\xEF\xBB\xBFnewmtl a\nKd 0.25 0 0\n"},
        {"mtl/both.mtl", "newmtl a\nKd 0.375 0 0\n"},
        {"mtl/c.mtl", "newmtl a\nKd 0.125 0 0\n"},
    };
    for (const auto& [name, text] : files) (void)folder.Add(name, text);
    ASSERT_EQ(mkfifo((folder / "models/pipe.mtl").c_str(), 0600), 0);
    constexpr float kNone = 0.588f;
    const std::pair<const char*, float> lines[] = {
        {"mtllib paint.mtl", 0.25f},
        {"mtllib C:\\work\\paint.mtl", 0.25f},
        {"mtllib my paint.mtl", 0.5f},
        {"mtllib none.mtl paint.mtl", 0.25f},
        {"mtllib none.mtl my paint.mtl both.mtl", 0.5f},
        {"mtllib below/b.mtl", 0.75f},
        {"mtllib ../mtl/C.mtl", 0.125f},
        {"mtllib ..\\MTL\\c.mtl", 0.125f},
        {"mtllib ../mtl/both.mtl", 0.375f},
        {"mtllib mark.mtl", 0.25f},
        {"mtllib mtl/c.mtl", kNone},
        {"mtllib b.mtl", kNone},
        {"mtllib sub.obj", kNone},
        {"mtllib pipe.mtl", kNone},
        {"mtllib /dev/zero ../x .. ../../../../../../../../../dev/zero", kNone},
    };
    for (const auto& [line, red] : lines) EXPECT_FLOAT_EQ(convert(line), red) << line;
    (void)folder.Add("models/sub.mtl", "newmtl a\nKd 1 0 0\n");
    EXPECT_FLOAT_EQ(convert("mtllib renamed.mtl"), 1.0f);
}

}  // namespace
