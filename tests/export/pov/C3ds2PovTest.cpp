// SPDX-License-Identifier: MIT
#include "export/pov/C3ds2Pov.h"

#include <gtest/gtest.h>
#include <lib3ds/file.h>

#include <filesystem>
#include <future>
#include <stdexcept>
#include <thread>

#include "export/pov/C3ds2PovExportFlow.h"
#include "files/CTestFolder.h"
#include "files/file_util_ex.h"
#include "model/open/CSceneReader.h"
#include "model/textures/CLib3dsMatUtil.h"
#include "picture/image_writer.h"
#include "row_name.h"
#include "scene_builder/CSceneBuilder.h"
#include "scene_builder/shapes.h"

namespace {

/** A mapped box with names that would do harm if they were written as they are. */
std::string AddModel(const CTestFolder& folder) {
    CImage image{4, 4, std::vector<std::uint8_t>(64, 200)};
    EXPECT_TRUE(image_codec::WritePng(folder / "wood.png", image, true).HasValue());
    CSceneBuilder builder;
    CMaterialValues values;
    values.texture = "WOOD.PNG";
    builder.AddMaterial("*/\n#error \"x\"\n\xE4", values);
    CShape box = shapes::Box({2, 2, 2});
    box.Material("*/\n#error \"x\"\n\xE4");
    builder.AddPart("\"\n}\\", box, nullptr, {0, 0, 0});
    builder.Save(folder / "model.3ds");
    return folder / "model.3ds";
}

class CFlow final : public C3ds2PovExportFlow {
  public:
    /** Throws at that call, counted from 1; 0: never. */
    explicit CFlow(int throwAt = 0) : m_throwAt(throwAt) {}
    void Begin(int steps) override {
        total = steps;
        Called();
    }
    void Step() override {
        ++done;
        Called();
    }
    void Finished() override { ++finished; }
    void Message(int value) override {
        message = value;
        Called();
    }
    void Work(const std::function<void()>& work) override {
        ++works;
        std::async(std::launch::async, work).get();
    }

    int total = 0, done = 0, finished = 0, message = 0, callsAfterFinished = 0, elsewhere = 0, works = 0;

  private:
    void Called() {
        callsAfterFinished += finished;
        elsewhere += std::this_thread::get_id() != m_own;
        if (++m_calls == m_throwAt) throw std::runtime_error("enough");
    }
    int m_throwAt, m_calls = 0;
    std::thread::id m_own = std::this_thread::get_id();
};

TEST(C3ds2PovTest, WritesSceneAndPicturesAndTellsTheFlow) {
    const CTestFolder folder;
    const std::string model = AddModel(folder);
    CFlow flow;
    ASSERT_TRUE(C3ds2Pov::TryExport(model, folder / "\xC3\xA4.pov", {}, &flow).HasValue());
    EXPECT_GT(flow.total, 0);
    EXPECT_EQ(flow.done, flow.total);
    EXPECT_EQ(flow.finished, 1);
    EXPECT_EQ(flow.callsAfterFinished, 0);
    EXPECT_EQ(flow.message, 12);
    EXPECT_GE(folder.Count(), 4u);  // model, picture, scene, its picture

    const std::string text = CTestFolder::TextOf(folder / "\xC3\xA4.pov");
    const std::size_t name = text.find("#error");
    ASSERT_NE(name, std::string::npos);
    EXPECT_EQ(text.compare(text.rfind('\n', name) + 1, 3, "// "), 0);
    for (const char c : text) ASSERT_TRUE(c == '\n' || (c >= 32 && c < 127));
    const std::size_t picture = text.find("file_exists(\"") + 13;
    ASSERT_NE(picture, std::string::npos + 13);
    EXPECT_TRUE(
        file_util_ex::DoesFileExist(folder / text.substr(picture, text.find('"', picture) - picture)));
}

// From the path or the scene, with a window that repaints while work goes on elsewhere or without; what the flow
// is told comes to the window's own thread.
TEST(C3ds2PovTest, EveryRoadWritesTheSame) {
    const CTestFolder folder;
    const std::string model = AddModel(folder), output = folder / "a.pov";
    auto scene = CSceneReader::ReadFile(model);
    ASSERT_TRUE(scene.HasValue());
    Lib3dsFile* file = scene.Value().File();
    const CTexturesOfScene known(file, scene.Value().Textures());
    ASSERT_TRUE(C3ds2Pov::TryExport(file, output, {}, nullptr).HasValue());
    const std::string plain = CTestFolder::TextOf(output);
    EXPECT_NE(plain.find("image_map"), std::string::npos);
    CFlow flow, none;
    EXPECT_FALSE(C3ds2Pov::Export(static_cast<Lib3dsFile*>(nullptr), L"a.pov", {}, &none));
    EXPECT_EQ(none.finished, 1) << "ends without a scene, too";
    ASSERT_TRUE(C3ds2Pov::TryExport(file, output, {}, &flow).HasValue());
    EXPECT_GE(flow.works, 5);  // preparing, the meshes, writing them, pictures, names
    EXPECT_EQ(flow.elsewhere, 0);
    EXPECT_EQ(CTestFolder::TextOf(output), plain);
    EXPECT_TRUE(C3ds2Pov::Export(file_util_ex::ConvertFromUTF8W(model),
                                 file_util_ex::ConvertFromUTF8W(output), {}, nullptr));
    EXPECT_EQ(CTestFolder::TextOf(output), plain);
}

class C3ds2PovCancelTest : public testing::TestWithParam<int> {};

// Whichever call of the flow ends the export, all is as before.
TEST_P(C3ds2PovCancelTest, LeavesNothingBehind) {
    const CTestFolder folder;
    const std::string model = AddModel(folder);
    folder.Add("out.pov", "old");
    const std::size_t before = folder.Count();
    CFlow flow(GetParam());
    const CStatus status = C3ds2Pov::TryExport(model, folder / "out.pov", {}, &flow);
    ASSERT_FALSE(status.HasValue());
    EXPECT_EQ(status.Error().message, "the export was ended");
    EXPECT_EQ(flow.finished, 1);
    EXPECT_EQ(folder.Count(), before);
    EXPECT_EQ(CTestFolder::TextOf(folder / "out.pov"), "old");
}
INSTANTIATE_TEST_SUITE_P(Calls, C3ds2PovCancelTest, testing::Range(1, 6));

struct CRefused {
    const char* name;
    const char* input;
    const char* output;
    EErrorCode code;
};
class C3ds2PovRefusesTest : public testing::TestWithParam<CRefused> {};

TEST_P(C3ds2PovRefusesTest, EndsTheFlowAndTouchesNothing) {
    const CTestFolder folder;
    const std::string model = AddModel(folder);
    folder.Add("broken.3ds", "no model");
    const std::string picture = folder / "wood.png";
    const std::string library = folder.Add("model.mtl", "newmtl a\nKd 1 0 0\n");
    folder.Add("model.obj", "mtllib model.mtl\nv 0 0 0\nv 1 0 0\nv 0 1 0\nusemtl a\nf 1 2 3\n");
    std::filesystem::create_symlink(library, folder / "link.pov");
    const auto all = [&] {
        return std::pair(folder.Count(), CTestFolder::TextOf(model) + CTestFolder::TextOf(picture) +
                                             CTestFolder::TextOf(library));
    };
    const auto before = all();
    CFlow flow;
    const CStatus status =
        C3ds2Pov::TryExport(folder / GetParam().input, folder / GetParam().output, {}, &flow);
    ASSERT_FALSE(status.HasValue());
    EXPECT_EQ(status.Error().code, GetParam().code) << status.Error().Text();
    EXPECT_EQ(flow.finished, 1);
    EXPECT_EQ(all(), before);
}
const CRefused kRefused[] = {{"TheModelItself", "model.3ds", "./model.3ds", EErrorCode::BadArgument},
                             {"APictureOfIt", "model.3ds", "wood.png", EErrorCode::BadArgument},
                             {"AMaterialFile", "model.obj", "model.mtl", EErrorCode::BadArgument},
                             {"ALinkToOne", "model.obj", "link.pov", EErrorCode::BadArgument},
                             {"NoModel", "broken.3ds", "a.pov", EErrorCode::BadFormat},
                             {"MissingModel", "none.3ds", "a.pov", EErrorCode::NotFound},
                             {"NoFolder", "model.3ds", "none/a.pov", EErrorCode::WriteFailed}};
INSTANTIATE_TEST_SUITE_P(Outputs, C3ds2PovRefusesTest, testing::ValuesIn(kRefused), kRowName);

// The folder of an output that is taken away at the last moment: pictures that were there must stay.
TEST(C3ds2PovTest, ANameThatCannotBeHadLeavesThePicturesAsTheyWere) {
    struct CTakesTheName final : C3ds2PovExportFlow {
        void Begin(int) override {}
        void Step() override {}
        void Finished() override {}
        void Message(int) override { std::filesystem::create_directory(path); }
        std::string path;
    };
    const CTestFolder folder;
    const std::string model = AddModel(folder);
    const std::string picture = folder.Add("out-t0.png", "old");
    CTakesTheName flow;
    flow.path = folder / "out.pov";
    EXPECT_FALSE(C3ds2Pov::TryExport(model, folder / "out.pov", {}, &flow));
    EXPECT_EQ(CTestFolder::TextOf(picture), "old");
    EXPECT_EQ(folder.Count(), 4u);  // the model, its picture, this one and the folder
}

}  // namespace
