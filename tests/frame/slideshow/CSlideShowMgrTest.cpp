// SPDX-License-Identifier: MIT
#include "frame/slideshow/CSlideShowMgr.h"

#include <gtest/gtest.h>

#include <functional>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include "row_name.h"

namespace {

/** A main window that opens models of a folder, with a clock that the test moves. */
class CStage final : public CSlideShowHost {
  public:
    class CTimer final : public CSlideShowTimer {
      public:
        explicit CTimer(CStage& stage) : m_stage(stage) {}
        ~CTimer() override {
            if (m_stage.timer == this) m_stage.timer = nullptr;
        }

      private:
        CStage& m_stage;
    };

    std::unique_ptr<CSlideShowTimer> StartTimer(int periodMs) override {
        EXPECT_EQ(timer, nullptr) << "a second timer runs";
        auto made = std::make_unique<CTimer>(*this);
        timer = made.get();
        due = now + periodMs;
        return made;
    }
    void ShowNext() override {
        EXPECT_FALSE(busy || edited || held);
        if (next) return next();
        if (models.empty()) return;
        place = (place + 1) % static_cast<int>(models.size());
        Open(models[static_cast<std::size_t>(place)]);
    }
    bool IsBusy() const override { return busy; }
    bool HoldsStep() const override { return held; }
    bool HasUnsavedEdits() const override { return edited; }
    void CancelTool() override { ++toolsCancelled; }
    void ShowButton(EShowButton shown) override { button = shown; }
    void Tell(EShowEnd why) override { told = why; }

    /** How long a model takes to open; below 0 it cannot be opened. */
    void Open(int loadMs) {
        now += loadMs < 0 ? 1 : loadMs;
        if (loadMs < 0) return show.OnOpenFailed(static_cast<int>(models.size()));
        openedAt.push_back(now);
        show.OnPlainModel();
        show.OnModelOpened(static_cast<int>(models.size()));
    }
    void Wait(int ms) {
        const int until = now + ms;
        while (timer && due <= until) {
            now = std::max(now, due);
            due = until + 1;  // it reports once
            show.OnTimer();
        }
        now = std::max(now, until);
    }
    bool Runs() const { return show.IsRunning(); }

    int now = 0, due = 0;
    CTimer* timer = nullptr;
    std::vector<int> models{0, 0, 0};
    int place = 0;
    std::vector<int> openedAt;
    bool busy = false, held = false, edited = false;
    std::function<void()> next;  ///< instead of the next of models
    int toolsCancelled = 0;
    std::optional<EShowButton> button;
    std::optional<EShowEnd> told;
    CSlideShowMgr show{*this};
};

// --- when models are shown, and what ends a show ------------------------------------------------------------

struct CShowCase {
    const char* name;
    const char* steps;  ///< of Do
    std::vector<int> openedAt;
    EShowButton button;  ///< "Stop" while the show runs
    std::optional<EShowEnd> told = std::nullopt;
    std::vector<int> models{0, 0, 0};
};

/** A number lets so many milliseconds pass. */
void Do(CStage& stage, const std::string& what) {
    if (what == "start") return stage.show.Start();
    if (what == "stop") return stage.show.Stop();
    if (what == "toggle") return stage.show.Toggle();
    if (what == "rearm") return stage.show.Rearm();
    if (what == "never" || what == "eachSecond") return stage.show.SetInterval(what == "never" ? 0 : 1000);
    if (what == "step") return stage.ShowNext();
    if (what == "empty") return stage.models.clear();
    if (what == "open") return stage.Open(0);
    if (what == "busy") stage.busy = true;
    if (what == "held") stage.held = true;
    if (what == "edited") stage.edited = true;
    if (what == "free") stage.busy = stage.held = false;
    if (std::isdigit(static_cast<unsigned char>(what[0]))) stage.Wait(std::stoi(what));
}

using enum EShowButton;

const CShowCase kShows[] = {
    {"StepsByTheInterval", "start 9500", {3000, 6000, 9000}, Stop},
    {"LoadingDelaysTheNextStep", "start 14000", {10000, 13050}, Stop, {}, {0, 7000, 50}},
    {"WithoutAnIntervalNothingRuns", "never start 99999 stop", {}, Start},
    {"StopsAndGoesOn", "toggle 2000 toggle 9000 toggle 3500", {14000}, Stop},
    {"RearmingCountsAnew", "start 2900 rearm 2900 rearm 3000", {8800}, Stop},
    {"RearmingStartsNothing", "rearm 9000 stop", {}, Start},
    {"OneModelLeavesTheButtonDisabled", "open", {0}, StartDisabled, {}, {0}},
    {"OpeningFromNowhereStops", "start empty open", {0}, StartDisabled},
    {"APersonsStepCountsAnew", "start 2000 step 2900", {2000}, Stop},
    {"PassesOverWhatCannotBeOpened", "start 3300", {3000 + 1 + 30 + 1 + 30}, Stop, {}, {0, -1, -1, 0}},
    {"NothingOpens", "start 60000", {}, Start, EShowEnd::NothingOpens, std::vector<int>(46, -1)},
    {"NothingToStepTo", "start empty 3000", {}, Start, EShowEnd::NoOther},
    {"WaitsWhileBusy", "start busy 20000 free 3000", {21000}, Stop},
    {"WaitsWhileTheListHoldsIt", "eachSecond start held 5500 free 1000", {6000}, Stop},
    {"StopsBeforeUnsavedEdits", "start edited 3000", {}, Start, EShowEnd::UnsavedEdits},
};

class SlideShowTest : public testing::TestWithParam<CShowCase> {};

TEST_P(SlideShowTest, ShowsModelsInTime) {
    const CShowCase& row = GetParam();
    CStage stage;
    stage.models = row.models;
    std::istringstream steps(row.steps);
    for (std::string what; steps >> what;) Do(stage, what);
    EXPECT_EQ(stage.openedAt, row.openedAt);
    EXPECT_EQ(stage.Runs(), row.button == Stop);
    EXPECT_EQ(stage.button, row.button);
    EXPECT_EQ(stage.told, row.told);
    EXPECT_TRUE(row.told != EShowEnd::NothingOpens || stage.place == 0) << "not each was tried once";
}

INSTANTIATE_TEST_SUITE_P(, SlideShowTest, testing::ValuesIn(kShows), kRowName);

TEST(SlideShowToolTest, StartTakesTheToolAwayAndBringsTheInterval) {
    CStage stage;
    stage.show.SetInterval(0);
    stage.show.Start();
    EXPECT_EQ(stage.toolsCancelled, 1);
    stage.show.Stop();
    EXPECT_EQ(stage.show.Interval(), 3000);
}

// --- scripts ----------------------------------------------------------------------------------------------

struct CScene {
    int timeMs = 0, loop = 0;
};
struct CScriptCase {
    const char* name;
    std::vector<CScene> scenes;
    bool startsByHand;
    int shown;   ///< scenes, until the show rests; 50: it never does
    int restMs;  ///< when it does
};

const CScriptCase kScripts[] = {
    {"PlayedOnceWithoutLoop", {{1000}, {2000}, {1000}}, false, 3, 4000},
    {"AsOftenAsLoopSays", {{1000, 2}, {1000}}, false, 6, 6000},
    {"TheLargestLoopCounts", {{1000, 0}, {1000, 3}}, false, 8, 8000},
    {"SceneWithoutTimeGetsTheUsualOne", {{500}, {0}, {-7}, {800}}, false, 4, 7300},
    {"OneSceneIsAPictureOfItsFolder", {{1000, 1}}, false, 50, 49000},
    {"WithoutTimeNothingStarts", {{}, {}}, false, 1, 0},
    {"StartedByHandItRestsToo", {{}, {}}, true, 2, 6000},
};

class ScriptShowTest : public testing::TestWithParam<CScriptCase> {};

TEST_P(ScriptShowTest, PlaysAsLongAsItsScriptSays) {
    const CScriptCase& row = GetParam();
    CStage stage;
    int shown = 0;
    stage.next = [&] {
        const std::size_t index = static_cast<std::size_t>(shown++) % row.scenes.size();
        const CScene& scene = row.scenes[index];
        stage.show.OnScriptScene(scene.timeMs, L"/a.orv", index, row.scenes.size(), scene.loop);
        stage.show.OnModelOpened(2);
    };
    stage.next();
    if (row.startsByHand) stage.show.Start();
    while (stage.timer && shown < 50) stage.Wait(stage.due - stage.now);
    EXPECT_EQ(shown, row.shown);
    EXPECT_EQ(stage.now, row.restMs);
}

INSTANTIATE_TEST_SUITE_P(, ScriptShowTest, testing::ValuesIn(kScripts), kRowName);

TEST(ScriptShowStepsTest, StoppedOneStaysStoppedWithinItsScript) {
    CStage stage;
    stage.show.OnScriptScene(1000, L"/a.orv", 0, 3, 0);
    EXPECT_TRUE(stage.Runs());
    stage.show.Stop();
    stage.show.OnScriptScene(1000, L"/a.orv", 1, 3, 0);
    EXPECT_FALSE(stage.Runs());
    stage.show.OnScriptScene(1000, L"/b.orv", 0, 1, 0);
    EXPECT_TRUE(stage.Runs());
}

}  // namespace
