// SPDX-License-Identifier: MIT
#include "engine/C3DSWindowHandler.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "engine/C3dsDisplayWrap.h"
#include "engine/CGLCanvasI.h"

namespace {

class CRecordingCanvas : public CGLCanvasI {
  public:
    explicit CRecordingCanvas(std::vector<std::string>& log) : m_log(log) {}
    ~CRecordingCanvas() override { m_log.emplace_back("canvas gone"); }
    void BeginGL() override { m_log.emplace_back("begin"); }
    void EndGL() override { m_log.emplace_back("end"); }
    bool IsReady() const override { return true; }
    void SetRotating(bool) override {}
    wxWindow* GetWindow() override { return nullptr; }
    void OnModelOpened() override {}

  private:
    std::vector<std::string>& m_log;
};

class CRecordingEngine : public C3dsDisplayWrap {
  public:
    explicit CRecordingEngine(std::vector<std::string>& log) : m_log(log) {}
    ~CRecordingEngine() override { m_log.emplace_back("engine gone"); }
    void UpdateModelOnZoom() override { m_log.emplace_back("zoomed"); }

  private:
    std::vector<std::string>& m_log;
};

TEST(C3DSWindowHandlerTest, EndsWithTheContextCurrentAndTheCanvasLast) {
    std::vector<std::string> log;
    {
        C3DSWindowHandler handler(std::make_unique<CRecordingEngine>(log));
        handler.SetCanvas(std::make_unique<CRecordingCanvas>(log));
    }
    EXPECT_EQ(log, (std::vector<std::string>{"begin", "engine gone", "canvas gone"}));
}

TEST(C3DSWindowHandlerTest, WheelZoomsAwayBelowOneAndTowardsFromOneOn) {
    std::vector<std::string> log;
    C3DSWindowHandler handler(std::make_unique<CRecordingEngine>(log));
    const auto distance = [&] {
        const CViewCamera& camera = handler.GetEngine().SeenView().camera;
        return Length(camera.Eye() - camera.Target());
    };
    const float start = distance();
    handler.OnWheel(0);
    EXPECT_GT(distance(), start);
    handler.OnWheel(1);
    EXPECT_NEAR(distance(), start, 1e-4f);
    EXPECT_EQ(log, (std::vector<std::string>{"zoomed", "zoomed"}));
}

}  // namespace
