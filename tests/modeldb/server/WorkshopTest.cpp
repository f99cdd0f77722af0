// SPDX-License-Identifier: MIT
#include "modeldb/server/work/CWorkshop.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <thread>

#include "../../model/read_3ds/C3dsBytes.h"
#include "../store/CTestStore.h"
#include "export/webgl/C3ds2WebGL.h"
#include "modeldb/server/work/CPreviewQueue.h"
#include "modeldb/server/work/CViewPages.h"
#include "picture/image_probe.h"

namespace {

using namespace std::chrono_literals;

CBytes GoodModel(float at = 0) {
    return Scene(Mesh("Cube", CubePoints(at) + CubeFaces()));
}

CWorkshop::COptions Options() {
    CWorkshop::COptions options;
    options.program = ORBIVUE_MODELDB;
    return options;
}

CModelInput InputOf(const CBytes& bytes, std::string name = "a model") {
    CResult<CModelInput> input = CModelInput::OfBytes(bytes);
    EXPECT_TRUE(input) << input.Error().Text();
    input.Value().name = std::move(name);
    return std::move(input).Value();
}

std::string ContentOf(const CMadePage& page) {
    std::string text(page.bytes, '\0');
    EXPECT_EQ(::pread(page.file->Get(), text.data(), text.size(), 0), static_cast<ssize_t>(text.size()));
    return text;
}

std::string ErrorOf(EErrorCode code) {
    return "error " + std::to_string(static_cast<int>(code));
}
/** What "refused: " or an error's code says; empty for a sound model. */
std::string Outcome(const CResult<CInspected>& result) {
    if (!result) return ErrorOf(result.Error().code);
    return result.Value().sound ? "" : "refused: " + result.Value().reason;
}

/** As a transfer that broke off leaves it: the viewer reads what is there. */
CBytes CutShort(CBytes bytes) {
    bytes.resize(bytes.size() - 10);
    return bytes;
}

struct CFileRow {
    std::string name;
    CBytes bytes;
    bool sound;
};
class InspectTest : public testing::TestWithParam<CFileRow> {};
INSTANTIATE_TEST_SUITE_P(
    , InspectTest,
    testing::Values(CFileRow{"Cube", GoodModel(), true}, CFileRow{"Empty", {}, false},
                    CFileRow{"Text", Text("<html>"), false},
                    CFileRow{"Archive", Text("PK\3\4 not a model"), false},
                    CFileRow{"HeaderAlone", Chunk(0x4D4D), false},
                    CFileRow{"PointsAlone", Scene(Mesh("Points", CubePoints())), false},
                    CFileRow{"SizesThatLie", Chunk(0x4D4D, Chunk(0x3D3D, Cube(), 0x7FFFFFFF), 0x7FFFFFFF),
                             false},
                    CFileRow{"CutShort", CutShort(GoodModel()), false}),
    kRowName);

TEST_P(InspectTest, SaysWhatTheReaderSays) {
    CWorkshop workshop(Options());
    const auto result = workshop.Inspect(InputOf(GetParam().bytes));
    ASSERT_TRUE(result) << result.Error().Text();
    EXPECT_EQ(result.Value().sound, GetParam().sound) << result.Value().reason;
    EXPECT_EQ(result.Value().reason.empty(), GetParam().sound);
}

/** A program that stands in for the reading process: a script of the shell. */
struct CProgramRow {
    std::string name, script, inspected, previewed;
};
class WorkerTest : public testing::TestWithParam<CProgramRow> {
  protected:
    CTestFolder folder;
    CWorkshop::COptions With(const std::string& script) {
        const std::string path = folder.Add("worker", "#!/bin/sh\n" + script + "\n");
        EXPECT_EQ(::chmod(path.c_str(), 0700), 0);
        CWorkshop::COptions options;
        options.program = path;
        options.patience = 1500ms;
        return options;
    }
};
const std::string kEnds = "refused: reading it ends the reading process";
const std::string kSlow = "refused: reading it takes too long";
const std::string kBad = ErrorOf(EErrorCode::BadFormat), kLarge = ErrorOf(EErrorCode::TooLarge),
                  kBusy = ErrorOf(EErrorCode::Busy);
const CProgramRow kWorkerTestRows[] = {
    {"Hangs", "exec sleep 60", kSlow, kLarge},
    {"HangsWithItsAnswerClosed", "printf d; exec sleep 60 >&-", kSlow, kLarge},
    {"SaysNothing", "exit 0", kEnds, kBad},
    {"Fails", "printf d; exit 3", kEnds, kBad},
    {"Crashes", "kill -SEGV $$", kEnds, kBad},
    {"IsKilledByTheSystem", "kill -KILL $$", kBusy, kBusy},
    {"UsesTheProcessorUp", "kill -XCPU $$", kSlow, kLarge},
    {"NeverStopsTalking", "exec cat /dev/zero", kEnds, kBad},
    {"TalksNonsense", "printf dxx", kEnds, kBad},
    {"RefusesWithControls", R"(printf 'r\033[2Jno\n')", "refused: ?[2Jno?", kBad},
    {"LacksSomething", "printf fmemory", kBusy, kBusy},
    // Nothing of ours but what it needs.
    {"HasFourFilesAndNoSecret",
     "printf r$ORBIVUE_TEST_SECRET; for n in 0 1 2 3 4 5 6 7 8 9; do "
     "[ ! -e /proc/$$/fd/$n ] || printf $n; done",
     "refused: 0123", kBad},
};
INSTANTIATE_TEST_SUITE_P(, WorkerTest, testing::ValuesIn(kWorkerTestRows), kRowName);

TEST_P(WorkerTest, IsNotBelieved) {
    ASSERT_EQ(::setenv("ORBIVUE_TEST_SECRET", "secret", 1), 0);
    const CFileDescriptor kept(::open("/dev/null", O_RDONLY));  // one that programs would get
    CWorkshop workshop(With(GetParam().script));
    const CModelInput input = InputOf(GoodModel());
    EXPECT_EQ(Outcome(workshop.Inspect(input)), GetParam().inspected);
    const auto preview = workshop.DrawPreview(input);
    EXPECT_EQ(preview ? "a picture" : ErrorOf(preview.Error().code), GetParam().previewed);
}

TEST_F(WorkerTest, TakesWhatIsTooMuchForLater) {
    CWorkshop::COptions options = With("echo >>" + (folder / "started") + "; exec sleep 60");
    options.processes = 2;
    options.waiting = 50ms;
    options.patience = 60s;
    CWorkshop workshop(options);
    const CModelInput input = InputOf(GoodModel());
    std::vector<std::string> outcomes(2);
    std::jthread first([&] { outcomes[0] = Outcome(workshop.Inspect(input)); });
    std::jthread second([&] { outcomes[1] = Outcome(workshop.Inspect(input)); });
    std::error_code error;
    const auto until = std::chrono::steady_clock::now() + 30s;
    while (std::filesystem::file_size(folder / "started", error) != 2 &&
           std::chrono::steady_clock::now() < until)
        std::this_thread::sleep_for(5ms);
    EXPECT_EQ(Outcome(workshop.Inspect(input)), ErrorOf(EErrorCode::Busy));
    workshop.Stop();
    first.join();
    second.join();
    EXPECT_EQ(outcomes, std::vector<std::string>(2, ErrorOf(EErrorCode::Cancelled)));
    EXPECT_EQ(Outcome(workshop.Inspect(input)), ErrorOf(EErrorCode::Cancelled));
}

TEST(WorkshopTest, DrawsAPreviewWithTexturesOfAnyName) {
    CBytes bytes = GoodModel();
    CModelInput input = InputOf(bytes + Text("no picture"));
    input.model.bytes = bytes.size();
    for (const char* name : {"../../etc/passwd", "/etc/passwd", "", "a\nb", "wood.jpg"})
        input.textures.push_back({name, {bytes.size(), 10}});
    CWorkshop workshop(Options());
    const auto picture = workshop.DrawPreview(input);
    ASSERT_TRUE(picture) << picture.Error().Text();
    const auto claim = image_probe::ClaimOf(picture.Value(), {});
    ASSERT_TRUE(claim);
    EXPECT_EQ(claim.Value().width, 256u);
    EXPECT_EQ(claim.Value().height, 256u);
    EXPECT_GT(picture.Value().size(), 2000u) << "nothing is drawn";
}

TEST(WorkshopTest, MakesAPageThatHoldsNoMarkupOfTheName) {
    CWorkshop workshop(Options());
    const auto page = workshop.MakePage(InputOf(GoodModel(), "</title><script>alert(1)</script>"));
    ASSERT_TRUE(page) << page.Error().Text();
    const std::string text = ContentOf(page.Value());
    EXPECT_TRUE(text.starts_with("<!DOCTYPE html>"));
    EXPECT_NE(text.find("<title>&lt;\u2215title&gt;&lt;script&gt;"), std::string::npos);
    EXPECT_EQ(text.find("<script>alert"), std::string::npos);
    EXPECT_NE(text.find('"' + C3ds2WebGL::CombinedPagePolicy(true) + '"'), std::string::npos)
        << "what a server sends with it must let it run";
    EXPECT_LT(::write(page.Value().file->Get(), "x", 1), 0) << "those who send it cannot change it";
}

TEST(ViewPagesTest, MakesAPageOnceAndForgetsTheOldest) {
    const CTestPlace place({"Sqlite"});
    CModelStore store = place.Open();
    std::vector<CModelRecord> records;
    for (const CBytes& file : {GoodModel(0), GoodModel(5), Text("no model")}) {
        const auto added = store.AddModel(ModelOf("g", "m", CTestFolder::TextOf(file)));
        ASSERT_TRUE(added);
        records.push_back(store.Model(added.Value().key).Value());
    }
    CWorkshop workshop(Options());
    CViewPages pages(workshop, {.pages = 1});
    const auto first = pages.Get(store, records[0]);
    ASSERT_TRUE(first) << first.Error().Text();
    EXPECT_EQ(pages.Get(store, records[0]).Value().file, first.Value().file);
    ASSERT_TRUE(pages.Get(store, records[1]));
    EXPECT_NE(pages.Get(store, records[0]).Value().file, first.Value().file);
    EXPECT_EQ(ContentOf(first.Value()).size(), first.Value().bytes) << "one that is sent stays";
    EXPECT_EQ(pages.Get(store, records[2]).Error().code, EErrorCode::BadFormat);
}

TEST(PreviewQueueTest, DrawsWhatItIsToldOfAndWhatTheStoreLacks) {
    const CTestPlace place({"Sqlite"});
    CModelStore store = place.Open();
    std::vector<std::uint32_t> keys;
    for (const CBytes& file : {GoodModel(0), GoodModel(1), Text("no model")})
        keys.push_back(store.AddModel(ModelOf("g", "m", CTestFolder::TextOf(file))).Value().key);
    CWorkshop workshop(Options());
    const auto wait = [](const CPreviewQueue& queue, std::uint64_t drawn, std::uint64_t failed) {
        const auto until = std::chrono::steady_clock::now() + 60s;
        while (queue.Counts().drawn < drawn || queue.Counts().failed < failed) {
            if (std::chrono::steady_clock::now() > until) break;
            std::this_thread::sleep_for(5ms);
        }
        EXPECT_EQ(queue.Counts().drawn, drawn);
        EXPECT_EQ(queue.Counts().failed, failed);
    };
    {
        CPreviewQueue queue(place.Address(), workshop, {.sweeps = false});
        queue.Add(keys[1]);
        wait(queue, 1, 0);
    }
    EXPECT_FALSE(store.PreviewOf(keys[0]).Value());
    EXPECT_TRUE(store.PreviewOf(keys[1]).Value());
    CPreviewQueue queue(place.Address(), workshop, {.pause = 1ms});
    wait(queue, 1, 1);
    EXPECT_TRUE(store.PreviewOf(keys[0]).Value());
}

}  // namespace
