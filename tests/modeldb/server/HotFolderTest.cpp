// SPDX-License-Identifier: MIT

#include "files/CTestFolder.h"
#include "modeldb/server/cache/CHotFolder.h"
#include "modeldb/server/cache/CPageCache.h"

namespace {

CHotFolder::CFill Giving(const std::string& text) {
    return [text](const CHotFolder::CWrite& write) { return write(std::as_bytes(std::span(text))); };
}

std::string ContentOf(const CHotFile& file) {
    std::string text(file.bytes, '\0');
    EXPECT_EQ(::pread(file.file->Get(), text.data(), text.size(), 0), static_cast<ssize_t>(text.size()));
    return text;
}

std::unique_ptr<CHotFolder> Open(const CTestFolder& folder, std::uint64_t bytes = 1000) {
    return std::move(CHotFolder::Open({folder / "cache", bytes, 1000})).Value();
}

TEST(HotFolderTest, DropsWhatWasNotAskedForLongest) {
    const CTestFolder folder;
    const auto hot = Open(folder);
    ASSERT_TRUE(hot->Put("aaaa", Giving(std::string(400, 'a'))));
    ASSERT_TRUE(hot->Put("bbbb", Giving(std::string(400, 'b'))));
    const std::optional<CHotFile> kept = hot->Find("aaaa");
    ASSERT_TRUE(kept);
    ASSERT_TRUE(hot->Put("cccc", Giving(std::string(400, 'c'))));
    EXPECT_FALSE(hot->Find("bbbb"));
    EXPECT_TRUE(hot->Find("cccc"));
    EXPECT_EQ(hot->Counts().bytes, 800U);
    ASSERT_TRUE(hot->Put("dddd", Giving(std::string(5000, 'd'))));
    EXPECT_EQ(hot->Counts().files, 1U);
    EXPECT_EQ(ContentOf(*kept), std::string(400, 'a')) << "a file that is being sent went away";
}

TEST(HotFolderTest, LeavesNothingOfWhatFails) {
    const CTestFolder folder;
    const auto hot = Open(folder);
    const auto failed = hot->Put("aaaa", [](const CHotFolder::CWrite& write) -> CStatus {
        EXPECT_TRUE(write(std::as_bytes(std::span("half"))));
        return CError{EErrorCode::BadFormat, "damaged", {}};
    });
    EXPECT_EQ(failed.Error().message, "damaged");
    EXPECT_FALSE(hot->Find("aaaa"));
    EXPECT_TRUE(std::filesystem::is_empty(folder / "cache/hot-0"));
}

TEST(HotFolderTest, HasAFolderOfItsOwnAndEmptiesIt) {
    const CTestFolder folder;
    std::filesystem::create_directories(folder / "cache/hot-0/aa");
    (void)folder.Add("cache/hot-0/aa/aaaa", std::string("from an earlier server"));
    (void)folder.Add("outside", std::string("not ours"));
    std::filesystem::create_directory_symlink(folder.Path(), folder / "cache/hot-0/link");
    auto one = Open(folder);
    EXPECT_TRUE(std::filesystem::is_empty(folder / "cache/hot-0"));
    EXPECT_FALSE(one->Find("aaaa"));
    EXPECT_TRUE(std::filesystem::exists(folder / "outside"));
    ASSERT_TRUE(one->Put("aaaa", Giving("one")));
    const auto two = Open(folder);
    EXPECT_FALSE(two->Find("aaaa"));
    EXPECT_EQ(ContentOf(*one->Find("aaaa")), "one");
    one.reset();
    EXPECT_TRUE(std::filesystem::is_empty(folder / "cache/hot-0"));
}

TEST(HotFolderTest, FollowsNoLinkAndSeesWhatWasChanged) {
    const CTestFolder folder;
    const auto hot = Open(folder);
    (void)folder.Add("secret", std::string("12345"));
    for (const char* name : {"aaaa", "bbbb", "cccc"}) ASSERT_TRUE(hot->Put(name, Giving("12345")));
    for (int i = 100; i < 400; ++i)  // so many that the first ones are closed
        ASSERT_TRUE(hot->Put("dd" + std::to_string(i), Giving("1")));
    std::filesystem::remove(folder / "cache/hot-0/aa/aaaa");
    std::filesystem::create_symlink(folder / "secret", folder / "cache/hot-0/aa/aaaa");
    std::filesystem::resize_file(folder / "cache/hot-0/bb/bbbb", 3);
    EXPECT_FALSE(hot->Find("aaaa"));
    EXPECT_FALSE(hot->Find("bbbb"));
    EXPECT_TRUE(hot->Find("cccc"));
}

TEST(PageCacheTest, KeepsToItsRoomAndKnowsVersions) {
    CPageCache cache(10'000);
    const auto page = [](char c) { return std::make_shared<const std::string>(1500, c); };
    for (char c = 'a'; c < 'f'; ++c) cache.Keep(std::string(1, c), "1", page(c));
    EXPECT_TRUE(cache.Find("a", "1"));
    EXPECT_FALSE(cache.Find("a", "2"));
    cache.Keep("f", "1", page('f'));
    EXPECT_FALSE(cache.Find("b", "1"));
    EXPECT_TRUE(cache.Find("a", "1"));
    EXPECT_LE(cache.Bytes(), 10'000U);
    cache.Keep("a", "2", page('A'));
    EXPECT_EQ(cache.Find("a", "2")->front(), 'A');
    cache.Keep("huge", "1", std::make_shared<const std::string>(5000, 'h'));
    EXPECT_FALSE(cache.Find("huge", "1"));
}

}  // namespace
