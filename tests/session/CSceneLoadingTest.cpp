// SPDX-License-Identifier: MIT
#include "session/CSceneLoading.h"

#include <gtest/gtest.h>
#include <lib3ds/file.h>

#include <filesystem>
#include <thread>

#include "files/CTestFolder.h"
#include "files/file_util_ex.h"
#include "row_name.h"
#include "scene_builder/large_scene.h"

namespace {

class CSceneLoadingTest : public testing::Test {
  protected:
    std::wstring Large(int triangles) {
        const std::string path = folder / "large.3ds";
        MakeLargeScene(triangles, path, "CHECKER.JPG");
        return file_util_ex::ConvertFromUTF8W(path);
    }
    CTestFolder folder;
};

TEST_F(CSceneLoadingTest, LoadsOnAThreadOfItsOwn) {
    const std::wstring path = Large(20'000);
    CSceneLoading loading(path, {.threads = 1});
    CResult<CReadyScene> ready = loading.Take();
    ASSERT_TRUE(ready) << ready.Error().Text();
    EXPECT_GE(ready.Value().scene.prepared.triangleCount, 20'000u);
    EXPECT_EQ(loading.Progress().Share(), 1);
    EXPECT_EQ(ready.Value().stamp, CFileStamp::Of(folder / "large.3ds"));
    EXPECT_TRUE(loading.IsDone());
    EXPECT_FALSE(loading.Take()) << "it is given once";
}

TEST_F(CSceneLoadingTest, EndsSoonWhenItIsCancelled) {
    const std::wstring path = Large(1'000'000);
    for (const bool isPreparing : {false, true}) {
        CSceneLoading loading(path, {.threads = 1});
        while (isPreparing && loading.Progress().Share() == 0) std::this_thread::yield();
        loading.Cancel();
        const CResult<CReadyScene> ready = loading.Take();
        ASSERT_FALSE(ready) << isPreparing;
        EXPECT_EQ(ready.Error().code, EErrorCode::Cancelled) << ready.Error().Text();
        EXPECT_LT(loading.Progress().Share(), 1);
    }
}

struct CLimitCase {
    const char* name;
    double shareOfFile;  ///< the limit, of the file's size
    bool succeeds;
};

class CLoadLimitsTest : public CSceneLoadingTest, public testing::WithParamInterface<CLimitCase> {};

TEST_P(CLoadLimitsTest, AreKept) {
    const std::wstring path = Large(20'000);
    const auto size = static_cast<double>(std::filesystem::file_size(folder / "large.3ds"));
    const CResult<CReadyScene> ready =
        CSceneLoading(path,
                      {.threads = 1, .bytes = static_cast<std::uint64_t>(size * GetParam().shareOfFile)})
            .Take();
    EXPECT_EQ(ready.HasValue(), GetParam().succeeds);
    EXPECT_TRUE(ready || ready.Error().code == EErrorCode::TooLarge);
}

constexpr CLimitCase kLimits[] = {
    {"NotEvenTheFile", 0.5, false}, {"NotWhatIsPrepared", 1.1, false}, {"AllOfIt", 8, true}};
INSTANTIATE_TEST_SUITE_P(All, CLoadLimitsTest, testing::ValuesIn(kLimits), kRowName);

TEST(CFileStampTest, TellsWhenAFileIsAnother) {
    const CTestFolder folder;
    const std::string path = folder.Add("a.3ds", "one");
    const auto stamp = CFileStamp::Of(path);
    ASSERT_TRUE(stamp);
    EXPECT_EQ(CFileStamp::Of(path), stamp);
    // Another file in its place, of the same size and time.
    const auto time = std::filesystem::last_write_time(path);
    const std::string other = folder.Add("b.3ds", "two");
    std::filesystem::last_write_time(other, time);
    std::filesystem::rename(other, path);
    EXPECT_NE(CFileStamp::Of(path), stamp);
    EXPECT_EQ(CFileStamp::Of(folder.Path()), std::nullopt);
    EXPECT_EQ(CFileStamp::Of(folder / "none"), std::nullopt);
}

}  // namespace
