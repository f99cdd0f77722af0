// SPDX-License-Identifier: MIT
#include "session/ahead/CReadyScene.h"

#include <gtest/gtest.h>
#include <lib3ds/file.h>
#include <sys/stat.h>

#include <filesystem>
#include <future>
#include <thread>

#include "files/CTestFolder.h"
#include "files/file_util_ex.h"
#include "scene_builder/large_scene.h"

namespace {

class CReadySceneTest : public testing::Test {
  protected:
    std::wstring Large(int triangles) {
        const std::string path = folder / "large.3ds";
        MakeLargeScene(triangles, path, kPicture);
        return file_util_ex::ConvertFromUTF8W(path);
    }
    CTestFolder folder;
    static constexpr char kPicture[] = "DOT.TGA";
};

TEST_F(CReadySceneTest, KnowsTheFilesThatItWasMadeOf) {
    // One pixel.
    const std::string dot("\0\0\2\0\0\0\0\0\0\0\0\0\1\0\1\0\x18\0abc", 21);
    (void)folder.Add(kPicture, dot);
    const std::wstring path = Large(20'000);
    CJobProgress progress;
    CResult<CReadyScene> loaded = LoadReadyScene(path, progress, {.threads = 1});
    ASSERT_TRUE(loaded) << loaded.Error().Text();
    const CReadyScene ready = std::move(loaded).Value();
    EXPECT_GE(ready.scene.prepared.triangleCount, 20'000u);
    EXPECT_EQ(progress.Share(), 1);
    ASSERT_EQ(ready.files.size(), 2u) << "the model and its picture";
    EXPECT_TRUE(ready.IsCurrent());
    (void)folder.Add(kPicture, dot + "more");
    EXPECT_FALSE(ready.IsCurrent());
}

TEST_F(CReadySceneTest, EndsSoonWhenItIsCancelled) {
    const std::wstring path = Large(1'000'000);
    for (const bool isPreparing : {false, true}) {
        CJobProgress progress;
        auto loading =
            std::async(std::launch::async, [&] { return LoadReadyScene(path, progress, {.threads = 1}); });
        while (isPreparing && progress.Share() == 0) std::this_thread::yield();
        progress.Cancel();
        const CResult<CReadyScene> ready = loading.get();
        ASSERT_FALSE(ready) << isPreparing;
        EXPECT_EQ(ready.Error().code, EErrorCode::Cancelled) << ready.Error().Text();
        EXPECT_LT(progress.Share(), 1);
    }
}

TEST_F(CReadySceneTest, TouchesNothingButRegularFiles) {
    const std::string pipe = folder / "pipe.3ds";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    for (const std::string& path : {pipe, folder.Path(), std::string("/dev/zero"), folder / "gone.3ds"}) {
        CJobProgress progress;
        const CResult<CReadyScene> ready = LoadReadyScene(file_util_ex::PathFromBytes(path), progress);
        ASSERT_FALSE(ready) << path;
        EXPECT_EQ(ready.Error().code, EErrorCode::NotFound) << ready.Error().Text();
        EXPECT_STREQ(progress.Phase(), "") << "it was not even begun";
    }
}

TEST_F(CReadySceneTest, KeepsToItsLimit) {
    const std::wstring path = Large(20'000);
    const auto size = std::filesystem::file_size(folder / "large.3ds");
    const auto load = [&](std::uint64_t bytes) {
        CJobProgress progress;
        return LoadReadyScene(path, progress, {.threads = 1, .bytes = bytes});
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
