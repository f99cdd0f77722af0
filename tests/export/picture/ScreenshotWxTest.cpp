// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>
#include <wx/app.h>
#include <wx/clipbrd.h>
#include <wx/dataobj.h>

#include <array>
#include <cstdlib>

#include "engine/C3dsDisplayWrap.h"
#include "engine/CGLCanvasI.h"
#include "export/picture/ui/screenshot_command.h"
#include "files/CTestFolder.h"
#include "files/file_util_ex.h"
#include "picture/decode/image_codec.h"
#include "settings/CLocalRegStore.h"
#include "view/CViewWindow.h"
#include "widgets/CRecordedPrompt.h"
#include "widgets/file_dialog_steps.h"

namespace {

/** Red, green and blue alone: a window's alpha is nobody's. */
std::vector<std::uint8_t> Colours(const CImage& image) {
    std::vector<std::uint8_t> colours;
    for (std::size_t i = 0; i < image.rgba.size(); ++i)
        if (i % 4 != 3) colours.push_back(image.rgba[i]);
    return colours;
}

std::size_t CountApart(const std::vector<std::uint8_t>& a, const std::vector<std::uint8_t>& b) {
    std::size_t apart = a.size() == b.size() ? 0 : a.size() + b.size();
    for (std::size_t i = 0; a.size() == b.size() && i < a.size(); ++i) apart += a[i] != b[i];
    return apart;
}

/** A view of two boxes with all that a picture on the screen may have, but nothing that moves. */
class ScreenshotWxTest : public CTwoBoxesTest {
  protected:
    [[nodiscard]] CImage Saved(const std::string& name) {
        if (!window.View().SaveScreenshot(At(name))) return {};
        auto read = image_codec::ReadImageFile(folder / name);
        return read ? std::move(read.Value().image) : CImage{};
    }
    [[nodiscard]] CModalDriver::CStep Rename(const std::string& proposed, const std::string& name) {
        return file_dialog_steps::Rename(proposed, folder.Path(), name);
    }
    [[nodiscard]] CResult<std::wstring> Run(std::deque<CModalDriver::CStep> steps) {
        CModalDriver driver(std::move(steps));
        CResult<std::wstring> result = RunScreenshot(At("boxes.3ds"), window.View(), Parent());
        EXPECT_TRUE(driver.IsDone());
        return result;
    }
    [[nodiscard]] static std::string Clipboard() {
        wxCustomDataObject data{wxDataFormat("image/png")};
        const wxClipboardLocker lock;
        if (!wxTheClipboard->GetData(data)) return {};
        return {static_cast<const char*>(data.GetData()), data.GetSize()};
    }

    CRecordedPrompt prompt;
};

TEST_F(ScreenshotWxTest, HoldsThePixelsOfTheWindow) {
    CViewer3DSWindowHandler& view = window.View();
    CShowState show = view.Shown();
    show.bounds = show.axes = true;
    const std::array<std::function<void()>, 5> changes{
        [] {}, [&] { view.Show(show); }, [&] { view.SetCaption(L"Two boxes"); },
        [&] { window.Engine().SetEmphasis({{"Left"}}); },
        [&] {
            show.wire = true;
            view.Show(show);
            window.Engine().SetBackgroundImage(
                std::make_shared<CImage>(CImage{2, 1, {200, 0, 0, 255, 0, 0, 200, 255}}));
        }};
    std::vector<std::uint8_t> before;
    for (std::size_t i = 0; i < changes.size(); ++i) {
        changes[i]();
        view.Redraw();
        const CImage shown = window.Picture();
        EXPECT_NE(Colours(shown), before) << i << " changed nothing";
        before = Colours(shown);
        // Mesa draws pictures in memory upside down, and so puts some pixels of a line on its other side.
        const std::size_t mayBeApart = show.wire ? before.size() / 500 : 0;
        EXPECT_LE(CountApart(before, Colours(Saved("a.png"))), mayBeApart) << i;
        const CImage jpeg = Saved("a.jpg");
        ASSERT_EQ(jpeg.rgba.size(), shown.rgba.size());
        double sum = 0;
        for (std::size_t p = 0; p < shown.rgba.size(); ++p)
            if (p % 4 != 3) sum += std::abs(shown.rgba[p] - jpeg.rgba[p]);
        EXPECT_LT(sum / static_cast<double>(before.size()), 1) << i;
    }
}

TEST_F(ScreenshotWxTest, ShowsNothingThatIsDrawnForTheHand) {
    const C2DRect& size = window.Engine().GetPreviewSize();
    window.MoveTo(static_cast<int>(size.right) / 2, static_cast<int>(size.bottom) / 2);
    window.Hand().MouseDown();
    ASSERT_TRUE(
        CViewWindow::WaitFor([this] { return window.View().GetDragState() == EDragState::Dragging; }));
    const CImage under = window.Picture();
    const CImage saved = Saved("a.png");
    window.Hand().MouseUp();
    ASSERT_TRUE(CViewWindow::WaitFor([this] { return window.View().GetDragState() == EDragState::Idle; }));
    EXPECT_NE(Colours(under), Colours(saved)) << "there was no ball";
    EXPECT_EQ(Colours(window.Picture()), Colours(saved));
}

TEST_F(ScreenshotWxTest, ACancelledDialogDoesNothing) {
    {
        const wxClipboardLocker lock;
        (void)wxTheClipboard->SetData(new wxTextDataObject("text"));
    }
    const auto result = Run({Rename("boxes.jpg", "a.png"), CModalDriver::Press(WXK_ESCAPE)});
    EXPECT_TRUE(result && result.Value().empty());
    EXPECT_EQ(folder.Count(), 1u);
    EXPECT_EQ(prompt.busy, 0);
    EXPECT_EQ(Clipboard(), "");
}

TEST_F(ScreenshotWxTest, AsksAgainBeforeItWritesOverAModel) {
    const std::string model = CTestFolder::TextOf(folder / "boxes.3ds");
    const auto enter = CModalDriver::Press(WXK_RETURN);
    const auto result = Run({Rename("boxes.jpg", "new.3ds"), enter, Rename("new.jpg", "b.png"), enter});
    ASSERT_TRUE(result) << result.Error().Text();
    EXPECT_EQ(result.Value(), At("b.png"));
    EXPECT_EQ(prompt.messages.size(), 1u);
    EXPECT_EQ(prompt.busy, 0);
    EXPECT_FALSE(std::filesystem::exists(folder / "new.3ds"));
    EXPECT_EQ(CTestFolder::TextOf(folder / "boxes.3ds"), model);
    EXPECT_EQ(Clipboard(), CTestFolder::TextOf(folder / "b.png")) << "the same picture is in the clipboard";
}

}  // namespace
