// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>
#include <time.h>
#include <wx/button.h>
#include <wx/evtloop.h>
#include <wx/frame.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>

#include <algorithm>
#include <string>
#include <vector>

#include "modeldb/client/C3DModelsLoadApi.h"
#include "modeldb/hover/ui/CPreviewFetcher.h"
#include "modeldb/transfer/ui/payload_records.h"
#include "modeldb/transfer/ui/transfer_events.h"
#include "modeldb/ui/C3dsTreeItemData.h"
#include "modeldb/ui/CFoundList.h"
#include "modeldb/ui/CModelsDlg.h"
#include "modeldb/ui/CModelsDlgHost.h"
#include "modeldb/ui/CModelsTree.h"
#include "settings/CLocalRegStore.h"
#include "widgets/CModalDriver.h"

namespace {

/** Seconds of processor time that this thread has used. */
double Used() {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
}

struct CHost final : CModelsDlgHost {
    void OpenDownloaded(CModelData& model) override {
        opened.push_back(model.fileName);
        bytes = model.size;
    }
    void CheckBrowserCommand(bool isShown) override { isChecked = isShown; }
    void TellOfTransfer(const std::wstring& text) override { told.push_back(text); }
    void LeaveBrowser() override { ++left; }

    std::vector<std::wstring> opened, told;
    std::uint32_t bytes = 0;
    bool isChecked = false;
    int left = 0;
};

/** The browser of the user's own library, with the samples in it. */
class ModelsBrowserWxTest : public testing::Test {
  protected:
    void SetUp() override {
        [[maybe_unused]] static const bool s_once = (wxInitAllImageHandlers(), true);
        ASSERT_TRUE(C3DModelsLoadApi::Open("")) << C3DModelsLoadApi::LastError();
        m_frame = new wxFrame(nullptr, wxID_ANY, "Browser", wxDefaultPosition, wxSize(320, 600));
        m_browser = new CModelsDlg(m_frame, m_host);
        CModalDriver::ShowFirst(*m_frame);
        ASSERT_TRUE(WaitForRest());
    }
    void TearDown() override {
        if (m_frame) m_frame->Destroy();
        wxTheApp->ProcessIdle();
    }
    [[nodiscard]] CModelsTree& Tree() { return m_browser->Tree(); }
    [[nodiscard]] bool WaitForRest() {
        return CModalDriver::WaitFor([this] { return !Tree().IsBusy() && Tree().IsFilled(); });
    }
    [[nodiscard]] wxTreeItemId Child(const wxTreeItemId& parent, const wxString& label) {
        wxTreeItemIdValue cookie;
        for (wxTreeItemId item = Tree().GetFirstChild(parent, cookie); item.IsOk();
             item = Tree().GetNextChild(parent, cookie))
            if (Tree().GetItemText(item) == label) return item;
        return {};
    }
    [[nodiscard]] wxTreeItemId Group(const wxString& label) { return Child(Tree().GetRootItem(), label); }
    template <class T>
    [[nodiscard]] T* Find(wxWindow* parent, const std::function<bool(const T&)>& is) {
        for (wxWindow* child : parent->GetChildren()) {
            if (auto* found = dynamic_cast<T*>(child); found && is(*found)) return found;
            if (T* found = Find<T>(child, is)) return found;
        }
        return nullptr;
    }
    [[nodiscard]] bool Says(const wxString& text) {
        return Find<wxStaticText>(m_browser, [&](const wxStaticText& label) {
                   return label.GetLabelText() == text;
               }) != nullptr;
    }
    [[nodiscard]] wxTextCtrl& SearchField() {
        return *Find<wxTextCtrl>(m_browser, [](const wxTextCtrl&) { return true; });
    }
    /** What a thread posts that has loaded so many models of a group. */
    void Deliver(const wxTreeItemId& group, std::uint32_t count) {
        auto data = std::make_unique<CModelsData>();
        data->item = group;
        for (std::uint32_t i = 0; i < count; ++i) data->models.push_back({"Model " + std::to_string(i), i});
        wxGUIThreadEvent event(wxEVT_MY_CUSTOM_COMMAND, transfer_event::kModels, 1'000'000, 0);
        event.Give(data.release());
        Tree().ProcessWindowEvent(event);
    }

    CLocalRegStore::CDefaultFileGuard m_store;
    CHost m_host;
    wxFrame* m_frame = nullptr;
    CModelsDlg* m_browser = nullptr;
};

TEST_F(ModelsBrowserWxTest, ExpandsAndDownloads) {
    const wxTreeItemId group = Group("Shapes(2)");
    ASSERT_TRUE(group.IsOk());
    EXPECT_TRUE(Tree().IsExpanded(Tree().GetRootItem()) && Tree().ItemHasChildren(group));
    Tree().Expand(group);
    const wxTreeItemId other = Group("Scenes(2)");
    Tree().Expand(other);  // while the first one is loaded
    ASSERT_TRUE(WaitForRest());
    const wxTreeItemId knot = Child(group, "Knot");
    ASSERT_TRUE(knot.IsOk());
    EXPECT_EQ(Tree().GetChildrenCount(other), 0U);
    EXPECT_FALSE(Tree().DataOf(other)->loaded);
    EXPECT_TRUE(Says("Status:"));
    Tree().SelectItem(group);
    EXPECT_FALSE(Tree().IsBusy());
    Tree().SelectItem(knot);
    Tree().SelectItem(Child(group, "Vase"));  // while the first one is downloaded
    ASSERT_TRUE(WaitForRest());
    EXPECT_EQ(m_host.opened, std::vector<std::wstring>{L"Knot.3ds"});
    EXPECT_GT(m_host.bytes, 1000U);
    EXPECT_TRUE(Says("File name: Knot") && Says("Status: Downloading  100.00%"));
    EXPECT_FALSE(m_browser->FindWindow(CModelsDlg::kIdCancel)->IsEnabled());
    EXPECT_TRUE(m_host.told.empty());
}

TEST_F(ModelsBrowserWxTest, EmptyGroupHasNoButton) {
    const wxTreeItemId group = Group("Shapes(2)");
    Deliver(group, 0);
    EXPECT_FALSE(Tree().ItemHasChildren(group));
    Tree().Expand(group);
    EXPECT_FALSE(Tree().IsBusy());
}

TEST_F(ModelsBrowserWxTest, LargeGroupDoesNotStopTheWindow) {
    constexpr std::uint32_t kModels = 50'000;
    const wxTreeItemId group = Group("Shapes(2)");
    double longest = 0, begin = Used();
    const double first = begin;
    Deliver(group, kModels);
    longest = Used() - begin;
    while (!Tree().IsFilled()) {
        begin = Used();
        wxEventLoopBase::GetActive()->YieldFor(wxEVT_CATEGORY_ALL);  // one slice of idle work
        longest = std::max(longest, Used() - begin);
    }
    EXPECT_EQ(Tree().GetChildrenCount(group), kModels);
    EXPECT_EQ(Tree().GetItemText(Tree().GetLastChild(group)), "Model 49999");
    RecordProperty("longestMs", static_cast<int>(longest * 1000));
    std::printf("longest %.1f ms, all %.0f ms\n", longest * 1000, (Used() - first) * 1000);
    EXPECT_LT(longest, 0.1);
}

TEST_F(ModelsBrowserWxTest, SearchesWhatIsLoadedAndTheLibrary) {
    const wxTreeItemId group = Group("Scenes(2)");
    Tree().Expand(group);
    ASSERT_TRUE(WaitForRest());
    SearchField().SetValue("o");
    ASSERT_EQ(m_browser->Found().Models().size(), 1U);  // at once, of the group that is loaded
    EXPECT_EQ(m_browser->Found().Models()[0].name, "Orrery");
    ASSERT_TRUE(CModalDriver::WaitFor([&] { return m_browser->Found().Models().size() == 2; }));
    EXPECT_TRUE(Says("Models found: 2"));
    SearchField().SetValue("knot");
    ASSERT_TRUE(CModalDriver::WaitFor([&] { return Says("Models found: 1"); }));
    m_browser->TakeFocus();
    wxKeyEvent enter(wxEVT_KEY_DOWN);
    enter.m_keyCode = WXK_RETURN;
    m_browser->Found().MainWindow().ProcessWindowEvent(enter);
    ASSERT_TRUE(WaitForRest());
    EXPECT_EQ(m_host.opened, std::vector<std::wstring>{L"Knot.3ds"});
    SearchField().SetValue("no such model");
    EXPECT_TRUE(CModalDriver::WaitFor([&] { return Says("No model was found."); }));
    SearchField().Clear();
    EXPECT_TRUE(Tree().IsShownOnScreen());
}

TEST_F(ModelsBrowserWxTest, ShowsAnUploadedModel) {
    std::string file = "MM";  // not looked at here
    CBlobData blob(new unsigned char[2]{'M', 'M'}, 2);
    const std::uint32_t key = C3DModelsLoadApi::CalcCrc(file.data(), file.size());
    const wxTreeItemId group = Group("Shapes(2)");
    Tree().Expand(group);
    ASSERT_TRUE(WaitForRest());
    ASSERT_TRUE(C3DModelsLoadApi::UploadModel("lump.3ds", "Shapes", blob, {}, nullptr))
        << C3DModelsLoadApi::LastError();
    m_browser->ShowModel(key);
    EXPECT_EQ(Tree().GetItemText(group), "Shapes(3)");
    EXPECT_EQ(Tree().DataOf(Tree().GetLastChild(group))->id, key);
    m_browser->ShowModel(key + 1);  // there is none
    EXPECT_EQ(Tree().GetChildrenCount(group), 3U);
}

TEST_F(ModelsBrowserWxTest, LoadsAgain) {
    const wxTreeItemId group = Group("Scenes(2)");
    Deliver(group, 20'000);
    Tree().LoadAgain(group);  // while they are appended
    ASSERT_TRUE(WaitForRest());
    EXPECT_EQ(Tree().GetChildrenCount(group), 2U);
    Tree().Expand(group);
    Tree().LoadAgain(Tree().GetRootItem());
    ASSERT_TRUE(WaitForRest());
    EXPECT_EQ(Tree().GetChildrenCount(Tree().GetRootItem()), 3U);
}

TEST_F(ModelsBrowserWxTest, PicturesComeOffTheWindowsThread) {
    std::vector<CFoundModel> found;
    ASSERT_TRUE(C3DModelsLoadApi::SearchModels("Chess", found, nullptr) && found.size() == 1);
    std::uint32_t came = 0;
    CPreviewFetcher pictures(64, [&](std::uint32_t id) { came = id; });
    EXPECT_EQ(pictures.Find(found[0].key), nullptr);
    ASSERT_TRUE(CModalDriver::WaitFor([&] { return came == found[0].key; }));
    const CImage* picture = pictures.Find(found[0].key);
    ASSERT_NE(picture, nullptr);
    EXPECT_EQ(std::max(picture->width, picture->height), 64);
}

/** With a transfer, a search and a picture under way. */
TEST_F(ModelsBrowserWxTest, MayBeClosedAtAnyTime) {
    Tree().Expand(Group("Scenes(2)"));
    SearchField().SetValue("o");
    m_frame->Close();
    m_frame = nullptr;
    wxTheApp->ProcessIdle();
    EXPECT_FALSE(C3DModelsLoadApi::DoesModelExist(1));  // the connection is closed
    EXPECT_FALSE(C3DModelsLoadApi::LastError().empty());
    EXPECT_TRUE(m_host.opened.empty());
}

}  // namespace
