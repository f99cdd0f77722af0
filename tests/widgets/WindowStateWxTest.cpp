// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>
#include <wx/display.h>
#include <wx/frame.h>

#include "settings/CLocalRegStore.h"
#include "widgets/CModalDriver.h"
#include "widgets/ui/wx_window_state.h"

namespace {

constexpr char kName[] = "WindowState";

class CWindowStateWxTest : public testing::Test {
  protected:
    ~CWindowStateWxTest() override {
        for (wxFrame* frame : frames) frame->Destroy();
    }
    wxFrame& NewFrame() {
        frames.push_back(new wxFrame(nullptr, wxID_ANY, "main", wxPoint(50, 60), wxSize(420, 310)));
        return *frames.back();
    }
    static void ExpectRect(const wxFrame& frame, const wxRect& expected) {
        EXPECT_TRUE(CModalDriver::WaitFor([&] { return frame.GetRect() == expected; }));
    }
    static void ExpectMaximized(const wxFrame& frame) {
        ASSERT_TRUE(CModalDriver::WaitFor([&] { return frame.IsMaximized() && frame.GetSize().x > 1000; }));
    }
    wxFrame& LoadedFrame() {
        wxFrame& frame = NewFrame();
        frame.SetSize(90, 80, 600, 500);
        EXPECT_TRUE(wx_window_state::LoadState(&frame, kName));
        CModalDriver::ShowFirst(frame);
        return frame;
    }

    CLocalRegStore::CDefaultFileGuard store;
    std::vector<wxFrame*> frames;
};

TEST_F(CWindowStateWxTest, ComesBackWhereItWas) {
    wxFrame& first = NewFrame();
    EXPECT_FALSE(wx_window_state::LoadState(&first, kName));
    CModalDriver::ShowFirst(first);
    first.SetSize(120, 140, 500, 400);
    ExpectRect(first, {120, 140, 500, 400});
    wx_window_state::SaveState(&first, kName);

    const wxFrame& second = LoadedFrame();
    ExpectRect(second, {120, 140, 500, 400});
    EXPECT_FALSE(second.IsMaximized());
}

TEST_F(CWindowStateWxTest, KeepsTheNormalPlaceOfAMaximisedWindow) {
    wxFrame& first = NewFrame();
    (void)wx_window_state::LoadState(&first, kName);
    wx_window_state::MaximizeFrame(&first);
    CModalDriver::ShowFirst(first);
    ExpectMaximized(first);
    wx_window_state::SaveState(&first, kName);

    wxFrame& second = LoadedFrame();
    ExpectMaximized(second);
    second.Maximize(false);
    EXPECT_TRUE(CModalDriver::WaitFor([&] { return second.GetSize() == wxSize(420, 310); }));
}

TEST_F(CWindowStateWxTest, IsBroughtBackFromAScreenThatIsGone) {
    const std::pair<const char*, int> stored[] = {
        {"Left", 50'000}, {"Top", -50'000}, {"Width", 500}, {"Height", 400}};
    for (const auto& [key, value] : stored) CLocalRegStore::WriteInt(kName, key, value);
    wxFrame& frame = LoadedFrame();
    const wxRect screen = wxDisplay(0u).GetClientArea();
    EXPECT_TRUE(CModalDriver::WaitFor([&] { return screen.Contains(frame.GetRect()); }));
    EXPECT_EQ(frame.GetSize(), wxSize(500, 400));
    CLocalRegStore::WriteInt(kName, "Width", 0);
    EXPECT_FALSE(wx_window_state::LoadState(&frame, kName)) << "no size is no place";
}

}  // namespace
