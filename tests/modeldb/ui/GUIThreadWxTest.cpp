// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <memory>
#include <vector>

#include "modeldb/transfer/ui/transfer_events.h"
#include "widgets/CModalDriver.h"
#include "widgets/threads/ui/wxGUIThreadEx.h"

namespace {

std::atomic<int> living = 0;

struct CPayload final : wxClientData {
    CPayload() { ++living; }
    ~CPayload() override { --living; }
};

/** Posts a value and a payload, then works until it is stopped. */
class CWorker final : public wxGUIThreadEx {
  public:
    explicit CWorker(wxEvtHandler* target) : wxGUIThreadEx(target, wxEVT_MY_CUSTOM_COMMAND) {}
    std::atomic<bool> wasPosted = false, hasEnded = false;

  private:
    void Entry() override {
        auto payload = std::make_unique<CPayload>();
        wasPosted = PostEvent(1, -7) && PostEvent(2, payload.get());
        if (wasPosted) (void)payload.release();
        while (DoContinue()) std::this_thread::sleep_for(std::chrono::milliseconds(1));
        hasEnded = true;
    }
};

TEST(GUIThreadWxTest, PostsToTheWindowsThreadAndStops) {
    wxEvtHandler target;
    std::vector<int> values;
    std::unique_ptr<CPayload> taken;
    target.Bind(wxEVT_MY_CUSTOM_COMMAND, [&](wxGUIThreadEvent& event) {
        values.push_back(event.Value());
        if (event.GetId() == 2) taken = event.Take<CPayload>();
    });
    CWorker worker(&target);
    ASSERT_TRUE(worker.RunThread());
    EXPECT_TRUE(CModalDriver::WaitFor([&] { return taken != nullptr; }));
    EXPECT_EQ(values, (std::vector<int>{-7, 0}));
    EXPECT_FALSE(worker.hasEnded);
    worker.StopPainting();
    EXPECT_TRUE(worker.hasEnded);
    taken.reset();
    EXPECT_EQ(living, 0);
}

TEST(GUIThreadWxTest, FreesWhatNobodyTakes) {
    auto target = std::make_unique<wxEvtHandler>();
    CWorker worker(target.get()), unheard(nullptr);
    ASSERT_TRUE(worker.RunThread() && unheard.RunThread());
    EXPECT_TRUE(CModalDriver::WaitFor([&] { return worker.wasPosted.load(); }));
    for (CWorker* each : {&worker, &unheard}) {
        each->StartKill();
        each->Wait();
    }
    EXPECT_FALSE(unheard.wasPosted);
    target.reset();  // with the events in its queue
    EXPECT_EQ(living, 0);
}

}  // namespace
