// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "session/CDocument.h"
#include "session/CEditLog.h"
#include "session/CFolderListing.h"
#include "session/COpenRequest.h"
#include "session/CTurns.h"
#include "session/ahead/CFileStamp.h"
#include "session/ahead/CReadAhead.h"
#include "session/folder_models.h"
#include "session/presentation/CPresentation.h"

class CRecentFileList;
class CSceneView;
class CSessionFrame;
class CSessionListener;

/** Knows which model is open, where it came from, how it was edited, and whether work is going on. Every
 * model, from a dialog, a script or the network, is opened here; each opening ends with one call to every
 * listener. The title and the view show a failed opening. Only the thread of the windows may call it.
 *
 * The session is busy while a CTurns::CHold exists. */
class CSession {
  public:
    /** All must outlive it. */
    CSession(CSceneView& view, CSessionFrame& frame, CRecentFileList& recent);

    void AddListener(CSessionListener& listener) { m_listeners.push_back(&listener); }
    void RemoveListener(CSessionListener& listener) { std::erase(m_listeners, &listener); }

    // --- opening: each of these waits while the turn is held ---------------------------------------------
    /** Opens a model. A file that no longer exists is removed from the recent files. */
    EOpened Open(const COpenRequest& request);
    /** Opens a file, or the first model of a folder. */
    EOpened OpenFileOrFolder(const std::wstring& path);
    /** Opens an entry of the recent files. */
    EOpened OpenRecent(std::size_t index);
    /** Opens the previous or next model of the folder; does nothing if there is no other. Its neighbours are read ahead: see
     * CReadAhead. */
    void Step(folder_models::EStep step);
    /** False: the models of the folder are not read before they are opened. On at first. */
    void SetReadsAhead(bool readsAhead);
    /** True when nothing is being read ahead. */
    [[nodiscard]] bool HasReadAhead() const { return m_ahead.IsIdle(); }
    /** Reads the file of the shown model again; on failure the shown model stays. After a failed opening it
     * tries that file again. */
    void Reload();

    // --- scene scripts -----------------------------------------------------------------------------------
    /** Opens the previous or next scene of the script that is open, in a circle; waits while the session is busy. False,
     * and nothing happens, unless a script of several scenes is open. */
    bool StepScene(folder_models::EStep step);
    /** The scene of the script that is open, also when its model could not be opened; null for none. */
    [[nodiscard]] const CScriptScene* ScriptScene() const;
    /** 0 for none. */
    [[nodiscard]] std::size_t SceneCount() const;
    [[nodiscard]] std::size_t SceneIndex() const;
    /** What of the script could not be used. */
    [[nodiscard]] const std::vector<CSceneNote>& ScriptNotes() const { return m_scriptNotes; }

    // --- the document ------------------------------------------------------------------------------------
    [[nodiscard]] const CDocument& Document() const { return m_document; }
    /** Number of models in its folder when last counted. */
    [[nodiscard]] unsigned FolderModels() const { return m_folderModels; }
    /** Its place among them, from 1 on; 0 when it is none of them. */
    [[nodiscard]] unsigned FolderPlace() const { return m_folderPlace; }
    /** Closes the document, deletes its file, if it has one, and opens the next model of the folder. */
    [[nodiscard]] CStatus DeleteFile();
    /** See CSceneView::SaveToPath. */
    [[nodiscard]] CStatus Save(const std::wstring& path);
    // --- edits -------------------------------------------------------------------------------------------
    /** Applies edits as one step that can be undone, and returns one status for each. what: translated, what
     * the step does. All edits fail while the session is busy. The caller repaints. */
    std::vector<CStatus> Apply(std::vector<CEdit> edits, const std::wstring& what);
    /** Puts other edits in the place of those of the last step (see CEditLog::Amend), for a change that follows
     * the user's hand. Listeners are not told, as nothing that menus or titles show changes. The caller
     * repaints. */
    std::vector<CStatus> Amend(std::uint64_t step, std::vector<CEdit> edits);
    /** Deletes a node and shows a message that tells how to undo it. */
    void DeleteNode(const std::string& node);
    void Undo();
    void Redo();
    [[nodiscard]] const CEditLog& Edits() const { return m_edits; }
    /** The scene has edits that were not saved, or lacks some that were. The title marks it with "*". */
    [[nodiscard]] bool HasUnsavedEdits() const { return m_edits.HasUnsaved(); }
    /** The script that edits are saved into: the document, if it is one, or the one they were saved into before; empty
     * when there is none yet. */
    [[nodiscard]] const std::wstring& EditsScript() const { return m_editsScript.path; }
    /** Writes the edits into a script, those that came with the document's script included. A script that is not
     * there is made; one that is must show this model, and EditsScript() must be as it was when it was read or
     * written last. After a failure the script and the edits are as before. */
    [[nodiscard]] CStatus SaveEdits(const std::wstring& script);
    /** To be called before the shown scene is dropped. With unsaved edits the frame asks the user. False when the
     * scene is to stay; what was asked for during the question is dropped, too. */
    [[nodiscard]] bool MayLoseEdits();

    // --- playing -----------------------------------------------------------------------------------------
    void Play(bool play);
    [[nodiscard]] bool IsPlaying() const;

    // --- turns -------------------------------------------------------------------------------------------
    /** Hold a turn during questions, dialogs and work that needs the model: CTurns::CHold hold(Turns()). */
    [[nodiscard]] CTurns& Turns() { return m_turns; }
    [[nodiscard]] bool IsBusy() const { return m_turns.IsHeld(); }
    /** Does what had to wait: closes the window, or opens the last request. */
    void RunWaiting() { m_turns.RunWaiting(); }
    /** True when the window may close now. If not, CSessionFrame::CloseNow is called later. */
    [[nodiscard]] bool MayClose();

  private:
    /** Whether the window filled the screen before a script decided it, and what the script wanted. */
    struct CFullScreen {
        bool before = false, byScript = false;
    };
    [[nodiscard]] CResult<CPresentation> PresentationOf(const COpenRequest& request);
    [[nodiscard]] static CStatus FindModel(const std::wstring& path);
    [[nodiscard]] bool ShowsModelOf(const CPresentation& next) const;
    [[nodiscard]] bool ShowModelAgain(const COpenRequest& request);
    [[nodiscard]] CStatus ShowScript(const COpenRequest& request, const CResult<CPresentation>& next);
    void ApplyScriptEdits();
    /** Shows the scene as the script says, or without one as the settings say. */
    void Present();
    void PresentFullScreen();
    void EndPresentation();
    [[nodiscard]] CResult<bool> RereadScript();
    /** The scene before or after the current one of the script that is open. */
    [[nodiscard]] std::size_t NeighbourScene(folder_models::EStep step) const;

    EOpened OpenNow(const COpenRequest& wanted);
    void StepNow(folder_models::EStep step);
    void ReloadNow();
    void ReloadShown();
    [[nodiscard]] CStatus ReloadModel();
    void OpenAgain();
    [[nodiscard]] CStatus Show(const COpenRequest& request);
    [[nodiscard]] CStatus ShowObj(const std::wstring& path, bool isShown);
    [[nodiscard]] CStatus Answer(bool opened) const;
    [[nodiscard]] bool KeepWhileBusy(std::function<void()> work);
    /** The model that is read ahead for a file of the folder; empty for none. See CReadAhead::CModelFinder. */
    [[nodiscard]] static std::wstring ModelToReadAhead(const std::wstring& file,
                                                       const std::atomic<bool>& cancelled);
    void ReadAheadAfter(EOpened result);
    void ReadAhead();
    void StopReadingAhead();
    [[nodiscard]] std::shared_ptr<CReadyScene> TakeReady(const std::wstring& model);
    [[nodiscard]] std::wstring FileOfStep(folder_models::EStep step);
    void CountModels();
    void NoteDirection(unsigned placeBefore);
    void TellOfOpening(const COpenReport& report);
    void TellOfChange();
    void ShowTitle();
    void FindEditsScript();
    [[nodiscard]] CResult<std::string> SectionFor(const std::wstring& script) const;
    [[nodiscard]] std::vector<CEdit> AllEdits() const;

    CSceneView& m_view;
    CSessionFrame& m_frame;
    CRecentFileList& m_recent;
    std::vector<CSessionListener*> m_listeners;
    CTurns m_turns;
    CEditLog m_edits;
    CDocument m_document;
    std::optional<CDocument> m_shown;  ///< whose scene the view shows; after some failures not m_document
    struct CEditsScript {
        std::wstring path;
        std::string section;              ///< UTF-8
        std::optional<CFileStamp> stamp;  ///< of the file when it was read or written last
    };
    CEditsScript m_editsScript;
    std::optional<CPresentation> m_script;  ///< that is open
    std::vector<CSceneNote> m_scriptNotes;
    std::optional<CFileStamp> m_modelStamp;   ///< of the script's model as it was opened
    float m_firstFrame = 0;                   ///< that it was opened at
    std::optional<CFullScreen> m_fullScreen;  ///< while a script decides it
    std::wstring m_title;                     ///< without a mark
    std::wstring m_shownTitle;                ///< as the frame shows it
    CFolderListing m_listing;
    unsigned m_folderModels = 0, m_folderPlace = 0;
    folder_models::EStep m_lastStep = folder_models::EStep::Next;
    bool m_readsAhead = true;
    CReadAhead m_ahead;
};
