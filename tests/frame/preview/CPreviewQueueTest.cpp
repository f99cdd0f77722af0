// SPDX-License-Identifier: MIT
#include "frame/preview/CPreviewQueue.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <string>

#include "frame/preview/CPreviewCache.h"
#include "frame/preview/CPreviewDisplay.h"
#include "frame/preview/CPreviewWorker.h"
#include "row_name.h"

using namespace std::chrono_literals;

namespace {

/** What happens to a queue, word by word, and what it does then, told after " > ".
 * A name selects a file ("a2" once it has changed), "-" nothing; a number lets as many milliseconds pass; "!" ends
 * the drawing with a picture, "?" without one; "forget" leaves out what was told so far. */
struct CStory {
    const char* name;
    std::string events, told;
    bool canStart = true;
};

class CPreviewQueueTest : public testing::TestWithParam<CStory>,
                          protected CPreviewWorker,
                          protected CPreviewDisplay {
  protected:
    bool Start(const CPreviewRequest& request) override {
        Note("start " + request.path);
        return GetParam().canStart;
    }
    void Kill() override { Note("kill"); }
    void ShowNothing() override { Note("nothing"); }
    void ShowWaiting(const CPreviewRequest& request) override { Note("wait " + request.path); }
    void ShowResult(const CPreviewRequest& request, const CPreviewResult& result) override {
        Note((result.png.empty() ? "problem " : "picture ") + request.path);
    }
    void Note(const std::string& text) { told += (told.empty() ? "" : ", ") + text; }

    /** Lets time pass, and serves the queue whenever it wants to be. */
    void Pass(std::chrono::milliseconds period) {
        const CPreviewQueue::CTime end = now + period;
        for (int served = 0; queue.NextTime() && *queue.NextTime() <= end; ++served) {
            ASSERT_LT(served, 100) << "it wants to be served without end";
            now = std::max(now, *queue.NextTime());
            queue.OnTime(now);
        }
        now = end;
    }
    void Select(const std::string& name) {
        CPreviewRequest request;
        request.path = name.substr(0, 1);
        request.modelPath = name == "s" ? "" : name;  // a script that names no model
        request.changedNs = name.ends_with('2') ? 2 : 1;
        queue.Select(request, now);
    }
    void Do(const std::string& event) {
        CPreviewResult result;
        result.png.resize(event == "!" ? 1 : 0);
        if (event == "-") {
            queue.Select(std::nullopt, now);
        } else if (event == "!" || event == "?") {
            queue.OnEnded(result, now);
        } else if (event == "forget") {
            told.clear();
        } else if (std::isdigit(static_cast<unsigned char>(event[0]))) {
            Pass(std::chrono::milliseconds(std::stoi(event)));
        } else {
            Select(event);
        }
    }

    std::string told;
    CPreviewQueue::CTime now{1h};
    CPreviewCache cache;
    CPreviewQueue queue{*this, *this, cache};
};

TEST_P(CPreviewQueueTest, Tells) {
    std::istringstream events(GetParam().events);
    for (std::string event; events >> event;) Do(event);
    EXPECT_EQ(told, GetParam().told);
}

/** Each file of so many letters is drawn to its end. */
std::string Drawn(std::string_view names) {
    std::string events;
    for (const char name : names) events += std::string(1, name) + " 60 ! ";
    return events;
}

const CStory kStories[] = {
    {"NotYetSettled", "a 59", "wait a"},
    {"DrawsWhatStaysSelectedOnce", "a 60 ! a 60000", "wait a, start a, picture a"},
    {"WalksThroughAFolder", "a 30 b 30 c 30 forget 30", "start c"},
    {"KillsOnceAndDrawsTheNewestNext", "a 100 b c 1000 ! ! a",
     "wait a, start a, kill, wait b, wait c, start c, picture c, wait a"},
    {"OneAtATime", "a 100 b forget 1000", ""},
    {"ComesBackToWhatWasKilled", "a 60 b a forget ? 59", ""},
    {"DrawsWhatWasKilledAgain", "a 60 b a forget ? 60 !", "start a, picture a"},
    {"NothingBeforeItSettled", "a - 1000", "wait a, nothing"},
    {"NothingWhileDrawn", "a 60 - ! 60000", "wait a, start a, kill, nothing"},
    {"Patient", "a 10059", "wait a, start a"},
    {"GivesUp", "a 60 forget 10000 60000 ! 60000", "kill, problem a"},
    {"TriesAgainWhatTookTooLong", "a 10060 ! forget b a", "wait b, wait a"},
    {"ShowsWhatItKnowsAtOnce", "a 60 ! b 60 ? forget a b a2", "picture a, problem b, wait a"},
    {"KeepsTheLastDozen", Drawn("abcdefghijkl") + "a " + Drawn("m") + "forget b a c",
     "wait b, picture a, picture c"},
    {"CannotStart", "a 60000", "wait a, start a, problem a", false},
    {"NoModel", "s 60000", "problem s"},
};
INSTANTIATE_TEST_SUITE_P(Stories, CPreviewQueueTest, testing::ValuesIn(kStories), kRowName);

}  // namespace
