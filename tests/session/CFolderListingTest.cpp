// SPDX-License-Identifier: MIT
#include "session/CFolderListing.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>

#include "files/CTestFolder.h"
#include "files/file_util_ex.h"

namespace {

/** A folder whose last change lies some time back. */
class CFolderListingTest : public testing::Test {
  protected:
    void ChangeBefore(std::chrono::seconds time) {
        std::filesystem::last_write_time(folder.Path(), std::filesystem::file_time_type::clock::now() - time);
    }
    std::size_t Count() { return listing.Beside(file_util_ex::ConvertFromUTF8W(folder / "a.3ds")).size(); }
    CTestFolder folder;
    CFolderListing listing;
};

TEST_F(CFolderListingTest, SeesEachChange) {
    (void)folder.Add("a.3ds", "x");
    EXPECT_EQ(Count(), 1u);
    (void)folder.Add("b.3ds", "x");
    EXPECT_EQ(Count(), 2u);
    ChangeBefore(std::chrono::hours(1));
    EXPECT_EQ(Count(), 2u);
    std::filesystem::remove(folder / "b.3ds");
    EXPECT_EQ(Count(), 1u);
}

TEST_F(CFolderListingTest, IsKeptOnlyForAFolderThatHasRested) {
    using namespace std::chrono_literals;
    (void)folder.Add("a.3ds", "x");
    for (const std::chrono::seconds age : {std::chrono::seconds(3600), 0s, -3600s}) {
        std::filesystem::remove(folder / "b.3ds");
        ChangeBefore(age);
        EXPECT_EQ(Count(), 1u);
        // A change that the folder's time does not tell of.
        const auto time = std::filesystem::last_write_time(folder.Path());
        (void)folder.Add("b.3ds", "x");
        std::filesystem::last_write_time(folder.Path(), time);
        EXPECT_EQ(Count(), age > 0s ? 1u : 2u) << age.count();
    }
}

}  // namespace
