// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <filesystem>

#include "files/CTestFolder.h"
#include "files/file_util_ex.h"
#include "frame/model_list/CThumbnailLoader.h"
#include "picture/image_writer.h"

namespace {

class CThumbnailLoaderTest : public testing::Test {
  protected:
    /** The next news, waited for. */
    CThumbnailNews News() {
        std::unique_lock lock(guard);
        hasNews.wait(lock, [this] { return count > 0; });
        --count;
        lock.unlock();
        for (CThumbnailNews& news : loader.TakeNews()) waiting.push_back(std::move(news));
        CThumbnailNews first = std::move(waiting.front());
        waiting.pop_front();
        return first;
    }
    std::string AddPng(int side) {
        const CImage picture{side, side,
                             std::vector<std::uint8_t>(static_cast<std::size_t>(side * side * 4), 255)};
        EXPECT_TRUE(image_codec::WritePng(folder / "drawn.png", picture, false));
        return folder / "drawn.png";
    }

    CTestFolder folder;
    std::wstring model = file_util_ex::PathFromBytes(folder.Add("m\xFF.3ds", "MM"));
    std::mutex guard;
    std::condition_variable hasNews;
    int count = 0;
    std::deque<CThumbnailNews> waiting;
    CThumbnailLoader loader{CThumbnailCache(folder / "thumbnails"), 96, [this] {
                                const std::lock_guard lock(guard);
                                ++count;
                                hasNews.notify_one();
                            }};
};

TEST_F(CThumbnailLoaderTest, KeepsWhatWasDrawnForTheNextLook) {
    loader.Look(model);
    EXPECT_FALSE(News().picture);
    loader.KeepPicture(model, AddPng(128));
    const CThumbnailNews drawn = News();
    EXPECT_TRUE(drawn.wasDrawn);
    ASSERT_TRUE(drawn.picture);
    EXPECT_EQ(drawn.picture->width, 96);
    EXPECT_FALSE(std::filesystem::exists(folder / "drawn.png"));
    loader.Look(model);
    EXPECT_EQ(News().picture->width, 96);
}

TEST_F(CThumbnailLoaderTest, KeepsALastingFailureOnly) {
    for (const bool forGood : {false, true}) {
        loader.Look(model);
        EXPECT_FALSE(News().problem);
        loader.KeepFailure(model, "no good", forGood);
        EXPECT_EQ(News().problem, "no good");
    }
    loader.Look(model);
    EXPECT_EQ(News().problem, "no good");
}

TEST_F(CThumbnailLoaderTest, TakesNoPictureLargerThanItAskedFor) {
    loader.Look(model);
    (void)News();
    loader.KeepPicture(model, AddPng(129));
    const CThumbnailNews drawn = News();
    EXPECT_FALSE(drawn.picture);
    EXPECT_TRUE(drawn.problem);
}

TEST_F(CThumbnailLoaderTest, ShowsAPictureThatCannotBeKept) {
    folder.Add("thumbnails", "a file in the cache's place");
    loader.Look(model);
    (void)News();
    loader.KeepPicture(model, AddPng(64));
    EXPECT_EQ(News().picture->width, 64);
}

TEST_F(CThumbnailLoaderTest, SaysThatAFileHasGone) {
    loader.Look(L"/no/such/file.3ds");
    EXPECT_TRUE(News().problem);
}

}  // namespace
