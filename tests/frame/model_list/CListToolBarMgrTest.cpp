// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "frame/model_list/CListToolBarMgr.h"
#include "frame/model_list/CTypeAhead.h"
#include "frame/model_list/batch_answer.h"
#include "row_name.h"

namespace {

using folder_models::EStep;
using std::chrono::milliseconds;
using std::chrono::steady_clock;

class CListToolBarMgrTest : public testing::Test {
  protected:
    steady_clock::time_point now{std::chrono::hours(1)};
    std::vector<std::pair<std::wstring, CListToolBarMgr::EReason>> opened;
    CListToolBarMgr manager{
        [this](const std::wstring& path, CListToolBarMgr::EReason why) { opened.emplace_back(path, why); },
        [this] { return now; }};
};

struct CStepCase {
    const char* name;
    std::vector<std::wstring> entries;
    const wchar_t* current;
    EStep step;
    const wchar_t* expected;  ///< null: the list takes no step
};
class ListToolBarStep : public CListToolBarMgrTest, public testing::WithParamInterface<CStepCase> {};

TEST_P(ListToolBarStep, OpensAndSelectsTheNeighbour) {
    manager.SetEntries(GetParam().entries);
    manager.SetCurrent(GetParam().current);
    ASSERT_EQ(manager.Step(GetParam().step), GetParam().expected != nullptr);
    ASSERT_EQ(opened.size(), GetParam().expected ? 1u : 0u);
    if (!GetParam().expected) return;
    EXPECT_EQ(opened[0], std::pair(std::wstring(GetParam().expected), CListToolBarMgr::EReason::Step));
    EXPECT_EQ(manager.List().Path(*manager.List().Current()), GetParam().expected);
}

const CStepCase kSteps[] = {
    {"Next", {L"/a", L"/b", L"/c"}, L"/b", EStep::Next, L"/c"},
    {"Previous", {L"/a", L"/b", L"/c"}, L"/b", EStep::Previous, L"/a"},
    {"NextOfLast", {L"/a", L"/b", L"/c"}, L"/c", EStep::Next, L"/a"},
    {"PreviousOfFirst", {L"/a", L"/b", L"/c"}, L"/a", EStep::Previous, L"/c"},
    {"NoCurrentCountsAsFirst", {L"/a", L"/b", L"/c"}, L"/x", EStep::Next, L"/b"},
    {"NoCurrentPrevious", {L"/a", L"/b", L"/c"}, L"", EStep::Previous, L"/c"},
    {"Empty", {}, L"/a", EStep::Next, nullptr},
};
INSTANTIATE_TEST_SUITE_P(Steps, ListToolBarStep, testing::ValuesIn(kSteps), kRowName);

TEST_F(CListToolBarMgrTest, HoldsAStepWhileTheListIsUsed) {
    manager.SetEntries({L"/a", L"/b"});
    EXPECT_FALSE(manager.HoldsStep());
    manager.SetPressed(true);
    now += std::chrono::minutes(5);
    EXPECT_TRUE(manager.HoldsStep());
    manager.SetPressed(false);
    now += CListToolBarMgr::kInUse - milliseconds(1);
    EXPECT_TRUE(manager.HoldsStep());
    now += milliseconds(1);
    EXPECT_FALSE(manager.HoldsStep());
}

TEST_F(CListToolBarMgrTest, KeepsItsPlacesWhenTheFolderChanges) {
    manager.SetEntries({L"/a", L"/b", L"/c", L"/d"});
    manager.SetCurrent(L"/b");
    manager.SetCursor(3);
    manager.SetEntries({L"/0", L"/a", L"/b", L"/c"});  // the entry of the keyboard has gone
    EXPECT_EQ(manager.List().Current(), 2u);
    EXPECT_EQ(manager.List().Cursor(), 3u);
    manager.SetEntries({L"/c"});
    EXPECT_EQ(manager.List().Current(), std::nullopt);
    manager.SetEntries({L"/b", L"/c"});
    EXPECT_EQ(manager.List().Current(), 0u) << "it is open all the time";
    manager.MoveCursor(-9);
    EXPECT_EQ(manager.List().Cursor(), 0u);
    manager.SetEntries({});
    manager.MoveCursor(1);
    manager.Choose(0);
    EXPECT_TRUE(opened.empty());
}

TEST_F(CListToolBarMgrTest, FindsNamesWhileTheyAreTyped) {
    CTypeAhead typed;
    manager.SetEntries({L"/x/apple.3ds", L"/x/\u00C4pfel.3ds", L"/x/Azure.3ds", L"/x/boat a.3ds"});
    const auto type = [&](wchar_t letter) {
        const auto found = typed.Type(letter, manager.List(), now);
        if (found) manager.SetCursor(*found);
        return found;
    };
    EXPECT_EQ(type(L'a'), 2u) << "behind the cursor";
    EXPECT_EQ(type(L'a'), 0u) << "round the end";
    now += CTypeAhead::kPause;
    EXPECT_EQ(type(L'\u00E4'), 1u);
    now += CTypeAhead::kPause;
    for (const wchar_t c : {L'b', L'o', L'a', L't', L' '}) EXPECT_EQ(type(c), 3u);
    EXPECT_EQ(type(L'x'), std::nullopt);
    EXPECT_TRUE(typed.IsTyping(now));
    EXPECT_FALSE(typed.IsTyping(now + CTypeAhead::kPause));
}

struct CAnswerCase {
    const char* name;
    const char* line;
    bool isAnswer;
    const char* problem = "";
    bool isPassing = false;
};
class BatchAnswer : public testing::TestWithParam<CAnswerCase> {};

TEST_P(BatchAnswer, IsReadWhateverItHolds) {
    const auto answer = ReadBatchAnswer(GetParam().line);
    ASSERT_EQ(answer.has_value(), GetParam().isAnswer);
    if (!answer) return;
    EXPECT_EQ(answer->number, 7u);
    EXPECT_EQ(answer->problem, GetParam().problem);
    EXPECT_EQ(answer->isPassing, GetParam().isPassing);
}

const CAnswerCase kAnswers[] = {
    {"Picture", R"({"number":7,"output":"7.png","triangles":12})", true},
    {"Icon", R"({"number":7,"output":"7.png"})", true},
    {"NoOutput", R"({"number":7})", true, "There is nothing to see in this file."},
    {"Nothing", R"({"number":7,"output":"7.png","triangles":0})", true,
     "There is nothing to see in this file."},
    {"Failure", R"({"number":7,"error":"/a: no\u001b[31m good"})", true, "/a: no [31m good"},
    {"Passing", R"({"number":7,"error":"slow","passing":true})", true, "slow", true},
    {"NoNumber", R"({"output":"7.png"})", false},
    {"NegativeNumber", R"({"number":-7})", false},
    {"NoObject", "[7]", false},
    {"NoJson", "Segmentation fault", false},
};
INSTANTIATE_TEST_SUITE_P(Lines, BatchAnswer, testing::ValuesIn(kAnswers), kRowName);

}  // namespace
