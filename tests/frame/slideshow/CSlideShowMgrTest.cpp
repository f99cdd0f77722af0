// SPDX-License-Identifier: MIT
#include "frame/slideshow/CSlideShowMgr.h"

#include <gtest/gtest.h>

#include <functional>
#include <optional>
#include <string>
#include <utility>
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
    std::function<void(CStage&)> happens;
    std::vector<int> openedAt;
    bool runs;
    EShowButton button;
    std::optional<EShowEnd> told = std::nullopt;
};

using enum EShowButton;

const CShowCase kShows[] = {
    {"StepsByTheInterval",
     [](CStage& s) {
         s.show.Start();
         s.Wait(9500);
     },
     {3000, 6000, 9000},
     true,
     Stop},
    {"LoadingDelaysTheNextStep",
     [](CStage& s) {
         s.models = {0, 7000, 50};
         s.show.Start();
         s.Wait(14000);
     },
     {3000 + 7000, 13000 + 50},
     true,
     Stop},
    {"WithoutAnIntervalNothingRuns",
     [](CStage& s) {
         s.show.SetInterval(0);
         s.show.Start();
         s.Wait(99999);
         s.show.Stop();
         EXPECT_EQ(s.show.Interval(), 3000);
     },
     {},
     false,
     Start},
    {"StopsAndGoesOn",
     [](CStage& s) {
         s.show.Toggle();
         s.Wait(2000);
         s.show.Toggle();
         s.Wait(9000);
         s.show.Toggle();
         s.Wait(3500);
     },
     {14000},
     true,
     Stop},
    {"RearmingCountsAnew",
     [](CStage& s) {
         s.show.Start();
         s.Wait(2900);
         s.show.Rearm();
         s.Wait(2900);
         s.show.Rearm();
         s.Wait(3000);
     },
     {8800},
     true,
     Stop},
    {"RearmingStartsNothing",
     [](CStage& s) {
         s.show.Rearm();
         s.Wait(9000);
         s.show.Stop();
     },
     {},
     false,
     Start},
    {"OneModelLeavesTheButtonDisabled",
     [](CStage& s) {
         s.models = {0};
         s.Open(0);
     },
     {0},
     false,
     StartDisabled},
    {"OpeningFromNowhereStops",
     [](CStage& s) {
         s.show.Start();
         s.models.clear();
         s.Open(0);
     },
     {0},
     false,
     StartDisabled},
    {"APersonsStepCountsAnew",
     [](CStage& s) {
         s.show.Start();
         s.Wait(2000);
         s.ShowNext();
         s.Wait(2900);
     },
     {2000},
     true,
     Stop},
    {"PassesOverWhatCannotBeOpened",
     [](CStage& s) {
         s.models = {0, -1, -1, 0};
         s.show.Start();
         s.Wait(3300);
     },
     {3000 + 1 + 30 + 1 + 30},
     true,
     Stop},
    {"NothingOpens",
     [](CStage& s) {
         s.models = std::vector<int>(46, -1);
         s.show.Start();
         s.Wait(60000);
         EXPECT_EQ(s.place, 0) << "not each was tried once";
     },
     {},
     false,
     Start,
     EShowEnd::NothingOpens},
    {"NothingToStepTo",
     [](CStage& s) {
         s.show.Start();
         s.models.clear();
         s.Wait(3000);
     },
     {},
     false,
     Start,
     EShowEnd::NoOther},
    {"WaitsWhileBusy",
     [](CStage& s) {
         s.show.Start();
         s.busy = true;
         s.Wait(20000);
         s.busy = false;
         s.Wait(3000);
     },
     {21000},
     true,
     Stop},
    {"WaitsWhileTheListHoldsIt",
     [](CStage& s) {
         s.show.SetInterval(1000);
         s.show.Start();
         s.held = true;
         s.Wait(5500);
         s.held = false;
         s.Wait(1000);
     },
     {6000},
     true,
     Stop},
    {"StopsBeforeUnsavedEdits",
     [](CStage& s) {
         s.show.Start();
         s.edited = true;
         s.Wait(3000);
     },
     {},
     false,
     Start,
     EShowEnd::UnsavedEdits},
};

class SlideShowTest : public testing::TestWithParam<CShowCase> {};

TEST_P(SlideShowTest, ShowsModelsInTime) {
    CStage stage;
    GetParam().happens(stage);
    EXPECT_EQ(stage.openedAt, GetParam().openedAt);
    EXPECT_EQ(stage.Runs(), GetParam().runs);
    EXPECT_EQ(stage.button, GetParam().button);
    EXPECT_EQ(stage.told, GetParam().told);
}

INSTANTIATE_TEST_SUITE_P(, SlideShowTest, testing::ValuesIn(kShows), kRowName);

TEST(SlideShowToolTest, StartTakesTheToolAway) {
    CStage stage;
    stage.show.SetInterval(0);
    stage.show.Start();
    EXPECT_EQ(stage.toolsCancelled, 1);
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
