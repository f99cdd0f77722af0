// SPDX-License-Identifier: MIT
#include "session/folder_models.h"

#include <gtest/gtest.h>

#include "files/CTestFolder.h"
#include "files/file_util_ex.h"

namespace {

using namespace folder_models;

TEST(FolderModelsTest, StepsRoundTheFolder) {
    const CTestFolder folder;
    for (const char* name : {"a.3ds", "b.ZIP", "c.3ds", "d.obj", "e.jpg"}) folder.Add(name, "x");
    const auto path = [&](const char* name) { return file_util_ex::ConvertFromUTF8W(folder / name); };
    const std::vector<std::wstring> models = ListBeside(path("a.3ds"));
    ASSERT_EQ(models.size(), 3u);
    EXPECT_EQ(ListInside(file_util_ex::ConvertFromUTF8W(folder.Path())), models);
    const struct {
        const char* from;
        EStep step;
        const char* to;
    } rows[] = {{"c.3ds", EStep::Next, "a.3ds"},
                {"a.3ds", EStep::Previous, "c.3ds"},
                {"a.3ds", EStep::Next, "b.ZIP"},
                {"A.3DS", EStep::Next, "a.3ds"},
                {"A.3DS", EStep::Previous, "c.3ds"}};
    for (const auto& row : rows)
        EXPECT_EQ(Neighbour(models, path(row.from), row.step), path(row.to)) << row.from;
    EXPECT_EQ(Neighbour({path("a.3ds")}, path("a.3ds"), EStep::Next), L"");
    EXPECT_TRUE(ListBeside(L"/nowhere/at/all.3ds").empty());
}

}  // namespace
