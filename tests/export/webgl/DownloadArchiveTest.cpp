// SPDX-License-Identifier: MIT
#include "export/webgl/download_archive.h"

#include <gtest/gtest.h>
#include <lib3ds/file.h>

#include "files/CTestFolder.h"
#include "files/CZipReader.h"
#include "files/file_util_ex.h"
#include "model/open/load_scene.h"
#include "model/prepare/prepare_scene.h"
#include "model/save/write_scene.h"
#include "model/textures/CLib3dsMatUtil.h"
#include "picture/image_writer.h"
#include "row_name.h"
#include "scene_builder/CSceneBuilder.h"
#include "scene_builder/shapes.h"

namespace {

namespace fs = std::filesystem;

struct CNameCase {
    const char* name;
    std::string model;
    std::string expected;
    void (*plant)(const CTestFolder&, const std::string& path) = [](auto&, auto&) {};
};
class ArchiveName : public testing::TestWithParam<CNameCase> {};

TEST_P(ArchiveName, IsFreeOrOurs) {
    const CTestFolder folder;
    const CNameCase& c = GetParam();
    c.plant(folder, folder / "cube.3ds.zip");
    const auto name = download_archive::NameFor(folder / "index.zip", c.model, CPreparedScene());
    ASSERT_TRUE(name);
    EXPECT_EQ(name.Value(), c.expected);
}
INSTANTIATE_TEST_SUITE_P(
    DownloadArchiveTest, ArchiveName,
    testing::ValuesIn({
        CNameCase{"OfTheModel", "cube.3ds", "cube.3ds.zip"},
        CNameCase{"WithoutFolders", "../../etc/cube.3ds", "cube.3ds.zip"},
        CNameCase{"NoName", "..", "model.zip"},
        CNameCase{"ThePages", "index", "index-2.zip"},
        CNameCase{"TooLong", std::string(400, 'x'), std::string(230, 'x') + ".zip"},
        CNameCase{"Foreign", "cube.3ds", "cube.3ds-2.zip", [](auto&, auto& p) { std::ofstream(p) << "x"; }},
        CNameCase{"Link", "cube.3ds", "cube.3ds-2.zip", [](auto&, auto& p) { fs::create_symlink("x", p); }},
        CNameCase{"Folder", "cube.3ds", "cube.3ds-2.zip", [](auto&, auto& p) { fs::create_directory(p); }},
    }),
    kRowName);

TEST(DownloadArchiveTest, HoldsTheModelAsItIsShownAndIsReplaced) {
    const CTestFolder folder;
    fs::create_directories(folder / "model/maps");
    const std::vector<std::uint8_t> grey(64, 200);
    ASSERT_TRUE(image_codec::WritePng(folder / "model/wood.png", {4, 4, grey}, true));
    ASSERT_TRUE(image_codec::WritePng(folder / "model/maps/stone.png", {4, 4, grey}, true));
    (void)folder.Add("secret.png", CTestFolder::TextOf(folder / "model/wood.png"));
    CSceneBuilder builder;
    for (const char* reference : {"wood.png", "C:\\x\\stone.tga", "..\\secret.png"}) {
        CMaterialValues values;
        values.texture = reference;
        builder.AddMaterial(reference, values);
        CShape box = shapes::Box({2, 2, 2});
        box.Material(reference);
        builder.AddPart(reference, box, nullptr, {0, 0, 0});
    }
    builder.Save(folder / "model/m.3ds");
    CResult<CLoadedScene> loaded = LoadScene(folder / "model/m.3ds");
    ASSERT_TRUE(loaded);
    CScene& scene = loaded.Value().scene;
    const CTexturesOfScene known(scene.File(), scene.Textures());
    const auto writePicture = [](std::string_view path) {
        return file_util_ex::WriteFileAtomically(path, std::string_view("jpg"));
    };
    download_archive::CContent content{
        scene.File(), [&](std::string_view path) { return WriteScene(scene, path); }, writePicture};
    for (int i = 0; i < 2; ++i) {
        ASSERT_TRUE(download_archive::Make(folder / "i.html", "m.orv", loaded.Value().prepared, content));
        std::set<std::string> names;
        auto archive = CZipReader::Open(file_util_ex::ReadWholeFile(folder / "m.orv.zip").Value());
        for (const CZipEntry& entry : archive.Value().Entries()) names.insert(entry.name);
        EXPECT_EQ(names, (std::set<std::string>{"m.3ds", "preview.jpg", "wood.png", "stone.png"}));
        EXPECT_EQ(folder.Count(), 3u) << "replaced";
        content.writePicture = [](std::string_view) -> CStatus { return CError{}; };
        EXPECT_TRUE(download_archive::Make(folder / "i.html", "m.orv", loaded.Value().prepared, content))
            << "without a picture, too";
        content.writePicture = writePicture;
    }
    const CResult<CLoadedScene> again = LoadScene(folder / "m.orv.zip");
    ASSERT_TRUE(again);
    std::size_t found = 0;
    for (const CPreparedTexture& texture : again.Value().prepared.textures) found += !texture.foundAt.empty();
    EXPECT_EQ(found, 2u);
}

}  // namespace
