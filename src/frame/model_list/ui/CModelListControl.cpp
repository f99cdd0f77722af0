// SPDX-License-Identifier: MIT
#include "frame/model_list/ui/CModelListControl.h"

#include <wx/filename.h>
#include <wx/log.h>

#include <utility>

#include "files/file_util_ex.h"
#include "frame/model_list/ui/CModelPictures.h"
#include "frame/model_list/ui/CModelsLstToolBar.h"
#include "session/CSession.h"

namespace {

constexpr int kSettleMs = 300;  ///< from the last change in the folder to a new list
constexpr int kTickMs = 200;    ///< between looks whether pictures may be drawn

}  // namespace

CModelListControl::CModelListControl(wxWindow& frame, CSession& session, CActions actions)
    : m_frame(frame),
      m_session(session),
      m_manager([this](const std::wstring& path, CListToolBarMgr::EReason why) { Open(path, why); }),
      m_bar(
          new CModelsLstToolBar(&frame, m_manager, {std::move(actions.leave), std::move(actions.viewKey)})) {
    m_bar->Hide();
    m_manager.SetListener([this] { m_bar->Strip().ShowList(); });
    m_session.AddListener(*this);
    m_settle.Bind(wxEVT_TIMER, [this](wxTimerEvent&) { OnSettled(); });
    m_tick.Bind(wxEVT_TIMER, [this](wxTimerEvent&) { OnTick(); });
    Bind(wxEVT_FSWATCHER, &CModelListControl::OnFileChange, this);
    // Not every file system tells of changes; who looks at the window again sees what is there.
    m_frame.Bind(wxEVT_ACTIVATE, [this](wxActivateEvent& event) {
        if (event.GetActive() && m_isShown) CallAfter([this] { Follow(); });
        event.Skip();
    });
    m_frame.Bind(wxEVT_DPI_CHANGED, [this](wxDPIChangedEvent& event) {
        if (m_pictures) MakePictures();
        event.Skip();
    });
}

CModelListControl::~CModelListControl() {
    m_session.RemoveListener(*this);
    m_manager.SetListener({});
    m_bar->Destroy();
}

void CModelListControl::SetShown(bool shown) {
    if (shown == m_isShown) return;
    m_isShown = shown;
    if (shown) {
        MakePictures();
    } else {
        m_bar->Strip().SetPictures(nullptr);
        m_pictures.reset();
        m_watcher.reset();
        m_settle.Stop();
        m_tick.Stop();
        m_folder.clear();
        m_manager.SetEntries({});
    }
    Follow();
}

void CModelListControl::TakeFocus() {
    m_bar->Strip().SetFocus();
}

bool CModelListControl::HasFocus() const {
    return m_bar->Strip().HasFocus();
}

bool CModelListControl::HasPictures() const {
    return m_pictures && m_pictures->IsDone();
}

void CModelListControl::Open(const std::wstring& path, CListToolBarMgr::EReason why) {
    COpenRequest request = COpenRequest::OfFile(path);
    request.isStep = why == CListToolBarMgr::EReason::Step;
    // Of these nobody is told, or not now; until then the list shows what is open.
    const EOpened opened = m_session.Open(request);
    if (opened == EOpened::Cancelled || opened == EOpened::Waits) Follow();
}

void CModelListControl::Follow() {
    if (!m_isShown) return;
    const CDocument& document = m_session.Document();
    std::vector<std::wstring> models;
    std::wstring folder;
    if (document.HasFile()) {
        folder = file_util_ex::GetFilePath(document.path);
        models = m_listing.Beside(document.path);
    }
    if (folder != m_folder) {
        m_manager.SetEntries({});  // the new folder is shown from where its document is
        Watch(folder);
        m_folder = folder;
    }
    m_manager.SetCurrent(document.path);
    if (models != m_manager.List().Paths()) m_manager.SetEntries(std::move(models));
    if (!m_tick.IsRunning()) m_tick.Start(kTickMs);
}

void CModelListControl::MakePictures() {
    m_bar->Strip().SetPictures(nullptr);
    m_pictures = std::make_unique<CModelPictures>(m_bar->FromDIP(CModelStrip::kPictureSide),
                                                  m_bar->GetContentScaleFactor(), [this] {
                                                      m_bar->Strip().ShowPictures();
                                                      if (m_isShown && !m_tick.IsRunning())
                                                          m_tick.Start(kTickMs);
                                                  });
    m_bar->Strip().SetPictures(m_pictures.get());
}

void CModelListControl::Watch(const std::wstring& folder) {
    m_watcher.reset();
    m_changedFiles.clear();
    if (folder.empty()) return;
    const wxLogNull quiet;  // without it, the list follows when the window is looked at again
    m_watcher = std::make_unique<wxFileSystemWatcher>();
    m_watcher->SetOwner(this);
    constexpr int kEvents = wxFSW_EVENT_CREATE | wxFSW_EVENT_DELETE | wxFSW_EVENT_RENAME | wxFSW_EVENT_MODIFY;
    if (!m_watcher->Add(wxFileName::DirName(folder), kEvents)) m_watcher.reset();
}

void CModelListControl::OnFileChange(wxFileSystemWatcherEvent& event) {
    if (event.GetChangeType() == wxFSW_EVENT_MODIFY)
        m_changedFiles.insert(event.GetPath().GetFullPath().ToStdWstring());
    if (event.GetChangeType() == wxFSW_EVENT_RENAME || event.GetChangeType() == wxFSW_EVENT_CREATE)
        m_changedFiles.insert(event.GetNewPath().GetFullPath().ToStdWstring());
    m_settle.StartOnce(kSettleMs);
}

void CModelListControl::OnSettled() {
    for (const std::wstring& path : std::exchange(m_changedFiles, {})) m_pictures->Forget(path);
    Follow();
}

/** Pictures are drawn while nobody waits for the view, and the ticks end when all are there. */
void CModelListControl::OnTick() {
    const bool isBusy = m_session.IsBusy() || wxWindow::GetCapture() != nullptr;
    m_pictures->SetPaused(isBusy);
    if (!isBusy && m_pictures->IsDone()) m_tick.Stop();
}
