// SPDX-License-Identifier: MIT
#pragma once

#include <wx/evtloop.h>
#include <wx/frame.h>
#include <wx/uiaction.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "engine/CGLCanvasI.h"
#include "files/CTestFolder.h"
#include "files/file_util_ex.h"
#include "picture/CImage.h"
#include "settings/CLocalRegStore.h"
#include "view/CKeyDownListener.h"
#include "view/ui/CViewer3DSWindowHandler.h"

/** A view in a real window, driven by real events of the display server. */
class CViewWindow final : private CKeyDownListener {
  public:
    /** Waits until the view has painted; IsReady says whether it did. */
    explicit CViewWindow(CViewToolState* tools);
    ~CViewWindow();

    [[nodiscard]] bool IsReady() const { return m_ready; }
    [[nodiscard]] CViewer3DSWindowHandler& View() { return *m_view; }
    [[nodiscard]] C3dsDisplayWrap& Engine() { return m_view->GetEngine(); }
    [[nodiscard]] wxUIActionSimulator& Hand() { return m_hand; }

    /** Serves events until the condition holds; false when it does not within 30 seconds. */
    [[nodiscard]] static bool WaitFor(const std::function<bool()>& condition);
    /** Serves events until all have been served and no paint followed for a while. */
    void Settle();
    /** Serves events, sleeping when there are none, for a time in which nothing should happen. */
    static void Rest(int periodMs);

    /** Moves the mouse to a point of the canvas. */
    void MoveTo(int x, int y);
    /** The view's picture, when all events have been served. Not while something moves. */
    [[nodiscard]] CImage Picture();
    [[nodiscard]] int Paints() const { return m_paints; }
    /** "key 32", "left", "right", in the order in which the view told them. */
    std::vector<std::string> told;

  private:
    void OnViewKeyDown(int keyCode) override { told.push_back("key " + std::to_string(keyCode)); }
    void OnViewLeftButtonDown() override { told.emplace_back("left"); }
    void OnViewRightButtonDown() override { told.emplace_back("right"); }

    wxFrame* m_frame;
    std::unique_ptr<CViewer3DSWindowHandler> m_view;
    wxUIActionSimulator m_hand;
    int m_paints = 0;
    bool m_ready = false;
};

/** Two boxes, "Left" and "Right", seen apart from any of the horizontal cameras. frames > 0: Left moves. */
void SaveTwoBoxes(const std::string& path, int frames = 0);

/** A test with a view of two boxes, "boxes.3ds" in its folder, and settings of its own. */
class CTwoBoxesTest : public testing::Test {
  protected:
    void SetUp() override {
        CLocalRegStore::Load(At("settings.ini"));
        ASSERT_TRUE(window.IsReady());
        SaveTwoBoxes(folder / "boxes.3ds");
        ASSERT_TRUE(window.View().OpenModel(At("boxes.3ds").c_str()));
    }
    [[nodiscard]] std::wstring At(const std::string& name) const {
        return file_util_ex::ConvertFromUTF8W(folder / name);
    }
    [[nodiscard]] wxWindow& Parent() { return *window.View().GetCanvas()->GetWindow()->GetParent(); }

    CTestFolder folder;
    CLocalRegStore::CDefaultFileGuard store;
    CIdleToolState tools;
    CViewWindow window{&tools};
};
