// SPDX-License-Identifier: MIT
#include "session/CSceneLoading.h"

#include <gtest/gtest.h>
#include <lib3ds/file.h>

#include <filesystem>
#include <thread>

#include "files/CTestFolder.h"
#include "files/file_util_ex.h"
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

TEST_F(CSceneLoadingTest, KeepsToItsLimit) {
    const std::wstring path = Large(20'000);
    const auto size = std::filesystem::file_size(folder / "large.3ds");
    const auto load = [&](std::uint64_t bytes) {
        return CSceneLoading(path, {.threads = 1, .bytes = bytes}).Take();
    };
    EXPECT_EQ(load(size / 2).Error().code, EErrorCode::TooLarge) << "not even the file";
    EXPECT_EQ(load(size + size / 10).Error().code, EErrorCode::TooLarge) << "not what is prepared";
    EXPECT_TRUE(load(size * 8));
}

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
    EXPECT_EQ(CFileStamp::Of(folder / "none"), std::nullopt);
}

}  // namespace
