// SPDX-License-Identifier: MIT
#include "frame/slideshow/ui/CSlideShow.h"

#include <gtk/gtk.h>
#include <wx/window.h>

#include <algorithm>
#include <functional>
#include <utility>

#include "base/text/lng.h"
#include "base/text/utf8_text.h"
#include "frame/slideshow/ui/CSlideShowBar.h"
#include "frame/slideshow/ui/CSlideShowFrame.h"
#include "settings/CSettings.h"

namespace {

constexpr int kNameMs = 2500;

class CWxTimer final : public CSlideShowTimer, private wxTimer {
  public:
    CWxTimer(int periodMs, std::function<void()> over) : m_over(std::move(over)) { StartOnce(periodMs); }

  private:
    void Notify() override {
        const std::function<void()> over = m_over;  // the call may delete this
        over();
    }

    std::function<void()> m_over;
};

}  // namespace

CSlideShow::CSlideShow(CSlideShowFrame& frame, wxWindow& parent, wxWindow& view)
    : m_frame(frame), m_view(view) {
    CSettings& settings = CSettings::Instance();
    settings.slideShowTime =
        std::clamp(settings.slideShowTime, CSlideShowBar::kShortestMs, CSlideShowBar::kLongestMs);
    m_bar = new CSlideShowBar(&parent, {[this] { m_manager.Toggle(); },
                                        [this](int periodMs) {
                                            CSettings::Instance().slideShowTime = periodMs;
                                            m_manager.SetInterval(periodMs);
                                            m_manager.Rearm();
                                        },
                                        [this] { StartFullScreen(); }, [this] { m_view.SetFocus(); }});
    m_manager.SetInterval(settings.slideShowTime);
    m_bar->ShowInterval(settings.slideShowTime);
    m_nameTimer.Bind(wxEVT_TIMER, [this](wxTimerEvent&) {
        if (!m_name.empty() && m_frame.Caption() == m_name) m_frame.SetCaption({});
        m_name.clear();
    });
}

CSlideShow::~CSlideShow() = default;

wxWindow* CSlideShow::Bar() const {
    return m_bar;
}

// --- in full screen ---------------------------------------------------------------------------------------

void CSlideShow::StartFullScreen() {
    if (!m_frame.FillsScreen()) {
        m_ownsFullScreen = true;
        m_frame.FillScreen(true);
    }
    m_view.SetFocus();
    Start();
}

bool CSlideShow::LeaveFullScreen() {
    if (!m_frame.FillsScreen() || !(m_ownsFullScreen || IsRunning())) return false;
    if (IsRunning()) Stop();
    m_frame.FillScreen(false);
    return true;
}

void CSlideShow::OnFullScreen() {
    // A script that leaves full screen while it is opened goes on.
    const bool byPerson = !m_frame.IsShowHindered();
    if (!m_frame.FillsScreen() && std::exchange(m_ownsFullScreen, false) && IsRunning() && byPerson) Stop();
    Follow();
}

void CSlideShow::Follow() {
    const bool inFull = IsRunning() && m_frame.FillsScreen();
    if (inFull == m_pointer.has_value()) return;
    if (inFull) {
        m_pointer.emplace(m_view);
        m_screenSaver.emplace(file_util_ex::ConvertToUTF8(lng::Text("Slideshow")));
    } else {
        m_pointer.reset();
        m_screenSaver.reset();
    }
}

void CSlideShow::ShowName(const std::wstring& name) {
    if (!m_pointer || !m_frame.Caption().empty()) return;
    m_frame.SetCaption(name);
    m_name = m_frame.Caption();
    m_nameTimer.StartOnce(kNameMs);
}

// --- what happens -----------------------------------------------------------------------------------------

/** Until a script has been applied, a scene is not yet as it should be. */
void CSlideShow::OnOpening() {
    if (IsRunning()) m_frame.KeepPicture(CSlideShowFrame::EPicture::Stays);
}

void CSlideShow::KeepPicture() {
    m_frame.KeepPicture(IsRunning() ? CSlideShowFrame::EPicture::StaysUntilNext
                                    : CSlideShowFrame::EPicture::Follows);
}

void CSlideShow::OnOpened(const COpening& opening) {
    m_nameTimer.Stop();
    KeepPicture();
    if (opening.hasFailed) return m_manager.OnOpenFailed(opening.models);
    if (const auto& scene = opening.scene) {
        m_manager.OnScriptScene(scene->timeMs, scene->script, scene->index, scene->count, scene->loop);
    } else {
        m_manager.OnPlainModel();
        m_manager.SetInterval(CSettings::Instance().slideShowTime);
    }
    const int scenes = opening.scene ? static_cast<int>(opening.scene->count) : 1;
    m_manager.OnModelOpened(std::max(opening.models, scenes));
    m_bar->ShowInterval(m_manager.Interval());
    ShowName(opening.name);
}

void CSlideShow::OnCounted(int models) {
    if (!IsRunning() || models == 0) m_manager.OnModelOpened(models);
}

void CSlideShow::OnTakenInHand() {
    if (IsRunning()) Stop();
}

// --- what the manager needs -------------------------------------------------------------------------------

std::unique_ptr<CSlideShowTimer> CSlideShow::StartTimer(int periodMs) {
    return std::make_unique<CWxTimer>(periodMs, [this] { m_manager.OnTimer(); });
}

void CSlideShow::ShowNext() {
    m_frame.ShowNextModel();
}

bool CSlideShow::IsBusy() const {
    const bool isMenuOpen = gtk_grab_get_current() != nullptr;
    return isMenuOpen || m_frame.IsShowHindered();
}

bool CSlideShow::HoldsStep() const {
    return m_frame.ListHoldsStep();
}

bool CSlideShow::HasUnsavedEdits() const {
    return m_frame.HasUnsavedEdits();
}

void CSlideShow::CancelTool() {
    m_frame.CancelTool();
}

void CSlideShow::ShowButton(EShowButton button) {
    if (button == m_button) return;
    m_button = button;
    m_bar->ShowButton(button);
    KeepPicture();
    Follow();
    m_frame.ShowChanged();
}

void CSlideShow::Tell(EShowEnd why) {
    switch (why) {
        case EShowEnd::NothingOpens:
            m_frame.TellOfShow(lng::Text("The slideshow has stopped: no model of the folder can be opened."));
            break;
        case EShowEnd::UnsavedEdits:
            m_frame.SayOfShow(
                lng::Text("The slideshow has stopped: the model has edits that are not saved."));
            break;
        case EShowEnd::NoOther:
            m_frame.SayOfShow(lng::Text("The slideshow has stopped: there is no other model."));
            break;
        case EShowEnd::Finished:
            m_frame.SayOfShow(lng::Text("The presentation is over."));
            break;
    }
}
