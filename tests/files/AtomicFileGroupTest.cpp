// SPDX-License-Identifier: MIT
#include "files/CAtomicFileGroup.h"

#include <gtest/gtest.h>

#include "error_code_of.h"
#include "files/CTestFolder.h"

namespace {

/** Three new files for the names a, b and c. */
CAtomicFileGroup Staged(const CTestFolder& folder) {
    CAtomicFileGroup group;
    for (const char* name : {"a", "b", "c"}) {
        auto file = CAtomicFile::Create(folder / name);
        EXPECT_TRUE(file);
        EXPECT_TRUE(file.Value().Write(std::string(100'000, 'n')));
        EXPECT_TRUE(group.Add(std::move(file).Value()));
    }
    return group;
}

TEST(AtomicFileGroupTest, AllGetTheirNames) {
    const CTestFolder folder;
    folder.Add("b", "old");
    EXPECT_TRUE(Staged(folder).Commit());
    EXPECT_EQ(folder.Count(), 3u);
    for (const char* name : {"a", "b", "c"})
        EXPECT_EQ(CTestFolder::TextOf(folder / name), std::string(100'000, 'n'));
}

TEST(AtomicFileGroupTest, WhereOneFailsAllIsAsBefore) {
    const CTestFolder folder;
    const std::string old(200'000, 'o');
    folder.Add("b", old);
    CAtomicFileGroup group = Staged(folder);
    std::filesystem::create_directory(folder / "c");  // nobody can name a file so now
    EXPECT_EQ(CodeOf(group.Commit()), EErrorCode::WriteFailed);
    EXPECT_FALSE(std::filesystem::exists(folder / "a"));
    EXPECT_EQ(CTestFolder::TextOf(folder / "b"), old);
    EXPECT_EQ(folder.Count(), 2u);
}

}  // namespace
