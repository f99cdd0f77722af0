// SPDX-License-Identifier: MIT
#include "frame/preview/CPreviewQueue.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <utility>

#include "frame/preview/CPreviewCache.h"
#include "frame/preview/CPreviewDisplay.h"
#include "frame/preview/CPreviewWorker.h"

using namespace std::chrono_literals;

namespace {

CPreviewRequest File(const std::string& name, std::int64_t changedNs = 1) {
    CPreviewRequest request;
    request.path = request.modelPath = name;
    request.changedNs = changedNs;
    return request;
}

CPreviewResult Picture(int triangles) {
    CPreviewResult result;
    result.png.resize(1);
    result.triangles = triangles;
    return result;
}

/** Notes what the queue does, and keeps the time. */
class CPreviewQueueTest : public testing::Test, protected CPreviewWorker, protected CPreviewDisplay {
  protected:
    bool Start(const CPreviewRequest& request) override {
        Note("start " + request.path);
        return canStart;
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
    void Select(const CPreviewRequest& request) { queue.Select(request, now); }
    void End(const CPreviewResult& result) { queue.OnEnded(result, now); }
    void SelectAndDraw(const CPreviewRequest& request) {
        Select(request);
        Pass(60ms);
        End(Picture(1));
    }
    std::string Told() { return std::exchange(told, {}); }

    bool canStart = true;
    std::string told;
    CPreviewQueue::CTime now{1h};
    CPreviewCache cache;
    CPreviewQueue queue{*this, *this, cache};
};

TEST_F(CPreviewQueueTest, DrawsWhatStaysSelected) {
    Select(File("a"));
    Pass(59ms);
    EXPECT_EQ(Told(), "wait a");
    Pass(1ms);
    EXPECT_EQ(Told(), "start a");
    End(Picture(1));
    EXPECT_EQ(Told(), "picture a");
    EXPECT_FALSE(queue.NextTime()) << "nothing is left to do";
    Select(File("a"));
    EXPECT_EQ(Told(), "") << "the same selection told again";
}

TEST_F(CPreviewQueueTest, WalkingThroughAFolderDrawsOnlyWhereItRests) {
    for (int i = 0; i < 300; ++i) {
        Select(File(std::to_string(i)));
        Pass(30ms);
    }
    EXPECT_EQ(Told().find("start"), std::string::npos);
    Pass(30ms);
    EXPECT_EQ(Told(), "start 299");
}

TEST_F(CPreviewQueueTest, KillsWhatIsNoLongerWantedAndDrawsTheNewestNext) {
    Select(File("a"));
    Pass(100ms);
    Select(File("b"));
    Select(File("c"));
    EXPECT_EQ(Told(), "wait a, start a, kill, wait b, wait c") << "it is killed once";
    Pass(1s);
    EXPECT_EQ(Told(), "") << "one at a time";
    End(Picture(1));
    EXPECT_EQ(Told(), "start c") << "what was killed shows nothing, whatever it says";
    End(Picture(2));
    EXPECT_EQ(Told(), "picture c");
    Select(File("a"));
    EXPECT_EQ(Told(), "wait a") << "what was killed is not kept";
}

TEST_F(CPreviewQueueTest, ComesBackToAFileWhoseDrawingWasKilled) {
    Select(File("a"));
    Pass(60ms);
    Select(File("b"));
    Select(File("a"));
    Told();
    End({});
    EXPECT_EQ(Told(), "") << "it has not settled";
    Pass(60ms);
    End(Picture(1));
    EXPECT_EQ(Told(), "start a, picture a");
}

TEST_F(CPreviewQueueTest, SelectsNothing) {
    Select(File("a"));
    queue.Select(std::nullopt, now);
    Pass(1s);
    EXPECT_EQ(Told(), "wait a, nothing");
    Select(File("a"));
    Pass(60ms);
    queue.Select(std::nullopt, now);
    End(Picture(1));
    Pass(1min);
    EXPECT_EQ(Told(), "wait a, start a, kill, nothing");
}

TEST_F(CPreviewQueueTest, GivesUpOnWhatTakesTooLong) {
    Select(File("a"));
    Pass(60ms + 9'999ms);
    EXPECT_EQ(Told(), "wait a, start a");
    Pass(1ms);
    EXPECT_EQ(Told(), "kill, problem a");
    Pass(1min);
    End(Picture(1));
    Pass(1min);
    EXPECT_EQ(Told(), "") << "the late end changes nothing and starts nothing";
    Select(File("b"));
    Select(File("a"));
    EXPECT_EQ(Told(), "wait b, wait a") << "another try, as the machine may have been busy";
}

TEST_F(CPreviewQueueTest, ShowsWhatItKnowsAtOnce) {
    SelectAndDraw(File("a"));
    Select(File("b"));
    Pass(60ms);
    CPreviewResult broken;
    broken.problem = L"no";
    End(broken);
    Told();
    Select(File("a"));
    Select(File("b"));
    EXPECT_EQ(Told(), "picture a, problem b");
    Select(File("a", 2));
    EXPECT_EQ(Told(), "wait a") << "the file has changed";
}

TEST_F(CPreviewQueueTest, KeepsTheLastDozen) {
    for (int i = 0; i < 13; ++i) {
        SelectAndDraw(File(std::to_string(i)));
        if (i == 11) Select(File("0"));  // looked at again, so "1" has to go
    }
    Told();
    Select(File("1"));
    EXPECT_EQ(Told(), "wait 1");
    Select(File("0"));
    Select(File("2"));
    EXPECT_EQ(Told(), "picture 0, picture 2");
}

TEST_F(CPreviewQueueTest, SaysWhenThereIsNoPreviewToBeHad) {
    canStart = false;
    Select(File("a"));
    Pass(1min);
    EXPECT_EQ(Told(), "wait a, start a, problem a") << "no second try";
    CPreviewRequest script = File("s");
    script.modelPath.clear();
    Select(script);
    Pass(1min);
    EXPECT_EQ(Told(), "problem s");
}

}  // namespace
