// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "session/CDocument.h"
#include "session/CEditLog.h"
#include "session/COpenRequest.h"
#include "session/CTurns.h"
#include "session/folder_models.h"

class CRecentFileList;
class CSceneView;
class CSessionFrame;
class CSessionListener;

/** What is open, where it came from, what was changed, and what is busy. Opening is the one road by which a
 * model reaches the view, whoever asks; it ends by telling the listeners, once. What fails to open is told by
 * the title and in the view. The thread of the windows alone. */
class CSession {
  public:
    /** All must outlive it. */
    CSession(CSceneView& view, CSessionFrame& frame, CRecentFileList& recent);

    void AddListener(CSessionListener& listener) { m_listeners.push_back(&listener); }
    void RemoveListener(CSessionListener& listener) { std::erase(m_listeners, &listener); }

    // --- opening: each of these waits while the turn is held ---------------------------------------------
    /** A file that is gone leaves the recent files. */
    EOpened Open(const COpenRequest& request);
    /** A file, or the first model of a folder. */
    EOpened OpenFileOrFolder(const std::wstring& path);
    /** An entry of the recent files. */
    EOpened OpenRecent(std::size_t index);
    /** The model before or after this one in its folder; nothing where there is no other. */
    void Step(folder_models::EStep step);
    /** Reads the file again: of the model that is shown, which stays if that fails, or tries once more to open
     * what could not be opened. */
    void Reload();

    // --- the document ------------------------------------------------------------------------------------
    [[nodiscard]] const CDocument& Document() const { return m_document; }
    /** The models in its folder, as counted last. */
    [[nodiscard]] unsigned FolderModels() const { return m_folderModels; }
    /** Closes it, deletes its file, if it has one, and opens the next model of the folder. */
    [[nodiscard]] CStatus DeleteFile();
    /** See CSceneView::SaveToPath. */
    [[nodiscard]] CStatus Save(const std::wstring& path);
    // --- edits -------------------------------------------------------------------------------------------
    /** Applies edits as one step that can be undone; one answer for each. what: for people, what they do.
     * Refused while the turn is held. Has nothing repainted. */
    std::vector<CStatus> Apply(std::vector<CEdit> edits, const std::wstring& what);
    /** Takes a node out, and says how to bring it back. */
    void DeleteNode(const std::string& node);
    void Undo();
    void Redo();
    [[nodiscard]] const CEditLog& Edits() const { return m_edits; }

    // --- playing -----------------------------------------------------------------------------------------
    void Play(bool play);
    [[nodiscard]] bool IsPlaying() const;

    // --- turns -------------------------------------------------------------------------------------------
    /** To be held through questions, dialogs and work that needs the model: CTurns::CHold hold(Turns()). */
    [[nodiscard]] CTurns& Turns() { return m_turns; }
    [[nodiscard]] bool IsBusy() const { return m_turns.IsHeld(); }
    /** What waited: closing, or one request. */
    void RunWaiting() { m_turns.RunWaiting(); }
    /** True when the window may close now; else CSessionFrame::CloseNow follows in its turn. */
    [[nodiscard]] bool MayClose();

  private:
    EOpened OpenNow(const COpenRequest& request);
    void StepNow(folder_models::EStep step);
    void ReloadNow();
    void ReloadShown();
    [[nodiscard]] CStatus Show(const COpenRequest& request);
    [[nodiscard]] CStatus ShowObj(const std::wstring& path, bool isShown);
    [[nodiscard]] CStatus Answer(bool opened) const;
    [[nodiscard]] bool KeepWhileBusy(std::function<void()> work);
    void CountModels();
    void TellOfOpening(const COpenReport& report);
    void TellOfChange();

    CSceneView& m_view;
    CSessionFrame& m_frame;
    CRecentFileList& m_recent;
    std::vector<CSessionListener*> m_listeners;
    CTurns m_turns;
    CEditLog m_edits;
    CDocument m_document;
    std::optional<CDocument> m_shown;  ///< whose scene the view has; not the document's after some failures
    unsigned m_folderModels = 0;
};
