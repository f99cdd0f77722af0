// SPDX-License-Identifier: MIT
#pragma once

#include <wx/event.h>
#include <wx/fswatcher.h>
#include <wx/timer.h>

#include <functional>
#include <memory>
#include <set>
#include <string>

#include "frame/model_list/CListToolBarMgr.h"
#include "session/CFolderListing.h"
#include "session/CSessionListener.h"

class CModelPictures;
class CModelsLstToolBar;
class CSession;

/** Keeps the model list true to the session's document and to the folder on the disk while it is shown, and sees to
 * its pictures. Hidden, it holds no entries and does nothing. */
class CModelListControl final : public wxEvtHandler, private CSessionListener {
  public:
    struct CActions {
        std::function<void()> leave;  ///< the keyboard goes back to the view
        std::function<bool(int keyCode)>
            viewKey;  ///< a key that the list does not use; true when it was used
    };
    /** frame: where the bar's window is made; it and the session must outlive this object. */
    CModelListControl(wxWindow& frame, CSession& session, CActions actions);
    ~CModelListControl() override;

    [[nodiscard]] CListToolBarMgr& Manager() { return m_manager; }
    /** Owned by the frame's window. */
    [[nodiscard]] CModelsLstToolBar& Bar() { return *m_bar; }
    /** Whether the bar is seen: that it holds the folder's models, or none. The caller shows its pane. */
    void SetShown(bool shown);
    void TakeFocus();
    [[nodiscard]] bool HasFocus() const;
    /** True when all that is seen has its picture, or the reason why there is none. */
    [[nodiscard]] bool HasPictures() const;

  private:
    void OnOpened(const COpenReport&) override { Follow(); }
    void OnDocumentChanged() override { Follow(); }
    void Open(const std::wstring& path, CListToolBarMgr::EReason why);
    /** Takes over the document and what is in its folder. */
    void Follow();
    void MakePictures();
    void Watch(const std::wstring& folder);
    void OnFileChange(wxFileSystemWatcherEvent& event);
    void OnSettled();
    void OnTick();

    wxWindow& m_frame;
    CSession& m_session;
    CListToolBarMgr m_manager;
    CModelsLstToolBar* m_bar;
    CFolderListing m_listing;
    std::wstring m_folder;  ///< whose models are listed; empty while hidden
    bool m_isShown = false;
    std::unique_ptr<CModelPictures> m_pictures;
    std::unique_ptr<wxFileSystemWatcher> m_watcher;
    std::set<std::wstring> m_changedFiles;
    wxTimer m_settle, m_tick;
};
