// SPDX-License-Identifier: MIT
#include <fcntl.h>
#include <sys/stat.h>

#include "../store/CTestStore.h"
#include "modeldb/client/cache/CModelCache.h"

namespace {

CStoredBlob PlainBlob(std::string_view text) {
    return {CBlobHash::Of(BytesOf(text)), text.size(), text.size(), EBlobCodec::Plain};
}

class ModelCacheTest : public testing::Test {
  protected:
    [[nodiscard]] static std::string Put(const CModelCache& cache, std::string_view text) {
        CResult<CCachePart> part = cache.Begin(PlainBlob(text));
        std::vector<std::byte> target(text.size());
        if (CStatus added = part.Value().Append(BytesOf(text).subspan(part.Value().Size())); !added)
            return added.Error().message;
        return Complaint(part.Value().Finish(target));
    }
    [[nodiscard]] static bool Has(const CModelCache& cache, std::string_view text) {
        std::vector<std::byte> target(text.size());
        return cache.Read(PlainBlob(text), target) && CTestFolder::TextOf(target) == text;
    }
    [[nodiscard]] std::string PathOf(std::string_view text, std::string_view suffix = "") const {
        return m_path + "/" + PlainBlob(text).hash.ToHex() + std::string(suffix);
    }

    CTestFolder m_folder;
    std::string m_path = m_folder / "cache/models";
    CModelCache m_cache{m_path};
};

TEST_F(ModelCacheTest, KeepsWhatIsWholeAndTheBeginningOfWhatIsNot) {
    {
        CResult<CCachePart> part = m_cache.Begin(PlainBlob("hello"));
        ASSERT_TRUE(part && part.Value().Append(BytesOf("hel")));
        EXPECT_EQ(m_cache.Begin(PlainBlob("hello")).Value().Size(), 0U) << "somebody else is at it";
    }
    EXPECT_FALSE(Has(m_cache, "hello"));
    EXPECT_EQ(m_cache.Begin(PlainBlob("hello")).Value().Size(), 3U);
    EXPECT_EQ(Put(m_cache, "hello"), "");
    EXPECT_TRUE(Has(m_cache, "hello"));
    EXPECT_FALSE(std::filesystem::exists(PathOf("hello", ".part")));
    EXPECT_EQ(std::filesystem::status(m_path).permissions(), std::filesystem::perms::owner_all);
}

TEST_F(ModelCacheTest, DamagedBytesAreNeitherKeptNorRead) {
    EXPECT_EQ(Put(m_cache, "hello"), "");
    std::ofstream(PathOf("hello")) << "hullo";
    EXPECT_FALSE(Has(m_cache, "hello"));
    EXPECT_FALSE(std::filesystem::exists(PathOf("hello")));
    CResult<CCachePart> part = m_cache.Begin(PlainBlob("hello"));
    std::vector<std::byte> target(5);
    ASSERT_TRUE(part.Value().Append(BytesOf("hullo")));
    EXPECT_EQ(Complaint(part.Value().Append(BytesOf("o"))), "the server sends more than was expected");
    EXPECT_EQ(Complaint(part.Value().Finish(target)), "the bytes that arrived are damaged");
    EXPECT_EQ(part.Value().Size(), 0U);
}

TEST_F(ModelCacheTest, LinksAreNotFollowed) {
    const std::string foreign = m_folder.Add("foreign", "foreign");
    EXPECT_EQ(Put(m_cache, "there"), "");  // makes the folder
    for (const char* suffix : {"", ".part"}) {
        std::filesystem::create_symlink(foreign, PathOf("linked", suffix));
        std::filesystem::create_hard_link(foreign, PathOf("hard", suffix));
    }
    for (const char* text : {"linked", "hard"}) {
        EXPECT_FALSE(Has(m_cache, text));
        EXPECT_EQ(Put(m_cache, text), "") << "in memory";
    }
    EXPECT_EQ(CTestFolder::TextOf(foreign), "foreign");
    std::filesystem::create_directory_symlink(m_path, m_folder / "link");
    const CModelCache byLink(m_folder / "link");
    EXPECT_FALSE(Has(byLink, "there"));
    byLink.Clear();
    EXPECT_TRUE(Has(m_cache, "there"));
}

TEST_F(ModelCacheTest, ClearEmptiesItAndNothingElse) {
    EXPECT_EQ(Put(m_cache, "hello"), "");
    ASSERT_TRUE(m_cache.Begin(PlainBlob("half")).Value().Append(BytesOf("ha")));
    const std::string foreign = m_folder.Add("cache/models/note.txt", "mine");
    const std::string target = m_folder.Add("target", "mine");
    std::filesystem::create_symlink(target, PathOf("linked"));
    m_cache.Clear();
    EXPECT_TRUE(std::filesystem::exists(foreign));
    EXPECT_TRUE(std::filesystem::exists(target));
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(m_path), {}), 1);
}

TEST_F(ModelCacheTest, WhatWasNotUsedForTheLongestTimeGoes) {
    CModelCache small(m_path, 10 * 4096);
    for (char c = 'a'; c < 'm'; ++c) {
        const std::string text(100, c);
        EXPECT_EQ(Put(small, text), "");
        const timespec used[2] = {{100 + c, 0}, {100 + c, 0}};
        ASSERT_EQ(::utimensat(AT_FDCWD, PathOf(text).c_str(), used, 0), 0);
    }
    EXPECT_TRUE(Has(small, std::string(100, 'b')));  // used now
    small.Grow(100);
    std::string left;
    for (char c = 'a'; c < 'm'; ++c)
        if (Has(small, std::string(100, c))) left += c;
    EXPECT_EQ(left, "befghijkl");
}

TEST_F(ModelCacheTest, AFileThatCannotGrowIsLeftForMemory) {
    ASSERT_TRUE(m_cache.Begin(PlainBlob("hello")).Value().Append(BytesOf("hel")));
    const std::string path = PathOf("hello", ".part");
    CCachePart part(PlainBlob("hello"), CFileDescriptor(::open(m_path.c_str(), O_RDONLY)),
                    CFileDescriptor(::open(path.c_str(), O_RDONLY)), std::filesystem::path(path).filename(),
                    3);
    EXPECT_EQ(Complaint(part.Append(BytesOf("lo"))), "");
    std::vector<std::byte> target(5);
    EXPECT_EQ(Complaint(part.Finish(target)), "");
    EXPECT_EQ(CTestFolder::TextOf(target), "hello");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(m_path), {}), 0);
}

}  // namespace
