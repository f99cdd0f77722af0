// SPDX-License-Identifier: MIT
// Opening, saving and deleting. Steps are in CSession_steps.cpp, what is done with the open scene in CSession_edits.cpp.
#include "session/CSession.h"

#include <optional>
#include <utility>

#include "base/text/lng.h"
#include "files/file_util_ex.h"
#include "model/read_obj/CObjConv3ds.h"
#include "session/CRecentFileList.h"
#include "session/CSceneView.h"
#include "session/CSessionFrame.h"
#include "session/CSessionListener.h"

using file_util_ex::ConvertToUTF8;

namespace {

constexpr wchar_t kTitle[] = L"Orbivue";

/** Shows the wait cursor during its lifetime. */
class CBusyFrame {
  public:
    explicit CBusyFrame(CSessionFrame& frame) : m_frame(frame) { frame.BeginBusy(); }
    CBusyFrame(const CBusyFrame&) = delete;
    CBusyFrame& operator=(const CBusyFrame&) = delete;
    ~CBusyFrame() { m_frame.EndBusy(); }

  private:
    CSessionFrame& m_frame;
};

/** The case matters on purpose: "model.OBJ" is not an OBJ file here. */
bool IsObj(const std::wstring& path) {
    return file_util_ex::GetFileExt(path) == L"obj";
}

CDocument DocumentOf(const COpenRequest& request) {
    return {request.origin, request.path, request.modelPath, false, request.scene};
}

}  // namespace

CSession::CSession(CSceneView& view, CSessionFrame& frame, CRecentFileList& recent)
    : m_view(view),
      m_frame(frame),
      m_recent(recent),
      m_turns([&frame] { frame.AskForTurn(); }),
      m_edits(view),
      m_title(kTitle),
      m_shownTitle(kTitle),
      m_ahead(&ModelToReadAhead) {}

bool CSession::KeepWhileBusy(std::function<void()> work) {
    if (IsBusy())
        m_turns.Keep(std::move(work));
    else
        m_turns.ForgetKept();
    return IsBusy();
}

// --- opening ---------------------------------------------------------------------------------------------

EOpened CSession::Open(const COpenRequest& request) {
    if (KeepWhileBusy([this, request] { Open(request); })) return EOpened::Waits;
    return OpenNow(request);
}

EOpened CSession::OpenNow(const COpenRequest& wanted) {
    const CTurns::CHold hold(m_turns);
    COpenRequest request = wanted;
    std::optional<CResult<CPresentation>> script;
    if (request.origin == EOrigin::Script) {
        script.emplace(PresentationOf(request));
        if (*script) request.modelPath = script->Value().Scene().path;
        if (*script) request.scene = script->Value().Index();
    }
    COpenReport report;
    CDocument asked = DocumentOf(request);
    const bool isChanged = script && (!m_script || !m_script->IsCurrent());
    const bool isRepeat = m_shown && m_shown->IsSame(asked) && !isChanged;
    if (!isRepeat && !MayLoseEdits()) return EOpened::Cancelled;
    {
        const CBusyFrame busy(m_frame);
        m_frame.OnOpening();
        const CStatus shown = isRepeat ? CStatus(CDone{})
                              : script ? ShowScript(request, *script)
                                       : Show(request);
        if (!script) EndPresentation();
        report.result = !shown ? EOpened::Failed : isRepeat ? EOpened::AlreadyShown : EOpened::Opened;
        if (!shown) report.error = shown.Error();
        asked.isOpen = shown.HasValue();
        m_document = std::move(asked);
    }
    if (!IsObj(m_document.path)) {
        m_title = std::wstring(kTitle) + L" - " + m_document.path;
        if (!m_document.isOpen) m_title += L" - " + lng::Text("File open failed");
    }
    if (report.result == EOpened::Opened) FindEditsScript();
    CountModels();
    if (m_document.HasFile()) {
        if (m_document.isOpen)
            m_recent.AddToRecentFileList(m_document.path,
                                         request.isStep ? EReached::ByStep : EReached::ByChoice);
        else if (!file_util_ex::DoesFileExist(m_document.path))
            m_recent.Remove(m_document.path);
    }
    TellOfOpening(report);
    return report.result;
}

CStatus CSession::Show(const COpenRequest& request) {
    const std::wstring& path = request.modelPath;
    const bool isShown = m_shown && m_shown->modelPath == path;  // opened before by another request
    const std::shared_ptr<CReadyScene> ready = request.ready ? request.ready : TakeReady(path);
    CStatus shown = CDone{};
    if (request.memory) {
        const CModelInMemory& model = *request.memory;
        shown = Answer(m_view.OpenBufferModel(model.data.data(), static_cast<long>(model.data.size()),
                                              model.textures, request.path.c_str()));
    } else if (ready && ready->IsCurrent()) {
        shown = Answer(m_view.OpenLoaded(std::move(ready->scene), path.c_str()));
    } else if (IsObj(path)) {
        shown = ShowObj(path, isShown);
    } else {
        // The view assumes that it shows the path that it knows; after some failures it shows nothing.
        if (isShown || !m_shown) m_view.CloseModel();
        m_shown.reset();
        shown = Answer(m_view.OpenModel(path.c_str()));
    }
    if (!shown && IsObj(path)) return shown;
    m_edits.Clear();
    m_shown.reset();
    if (shown) m_shown = DocumentOf(request);
    return shown;
}

/** A file that cannot be converted never reaches the view, which keeps its scene. */
CStatus CSession::ShowObj(const std::wstring& path, bool isShown) {
    CStructFacts facts;
    std::optional<CResult<CLib3dsFilePtr>> converted;
    m_view.LoadBeside([&](CJobProgress& progress) {
        progress.SetPhase(lng::Mark("Reading the file..."));
        converted.emplace(CObjConv3ds::ConvertResult(ConvertToUTF8(path), facts.notes, &facts.sourceFiles));
    });
    if (!*converted) return converted->Error();
    facts.sourceFiles.push_back(ConvertToUTF8(path));
    if (isShown || !m_shown) m_view.CloseModel();
    m_shown.reset();
    m_edits.Clear();
    return Answer(m_view.OpenModelStruct(std::move(*converted).Value().release(), path.c_str(), facts));
}

CStatus CSession::Answer(bool opened) const {
    if (opened) return CDone{};
    return m_view.LastError();
}

EOpened CSession::OpenFileOrFolder(const std::wstring& path) {
    if (KeepWhileBusy([this, path] { OpenFileOrFolder(path); })) return EOpened::Waits;
    if (!file_util_ex::DoesFolderExist(path)) return OpenNow(COpenRequest::OfFile(path));
    const std::vector<std::wstring> models = folder_models::ListInside(path);
    if (!models.empty()) return OpenNow(COpenRequest::OfFile(models.front()));
    const CTurns::CHold hold(m_turns);
    m_frame.Tell(lng::Text("There is no model in the folder %s.", path));
    return EOpened::Failed;
}

EOpened CSession::OpenRecent(std::size_t index) {
    const std::wstring path = m_recent.GetNameByIndex(index);
    return path.empty() ? EOpened::Failed : Open(COpenRequest::OfFile(path));
}

void CSession::Reload() {
    if (!KeepWhileBusy([this] { Reload(); })) ReloadNow();
}

void CSession::ReloadNow() {
    if (!m_document.HasFile()) return;
    if (m_shown && m_shown->IsSame(m_document))
        ReloadShown();
    else
        OpenAgain();
}

/** Opens the document's file once more. */
void CSession::OpenAgain() {
    COpenRequest request{m_document.origin, m_document.path, m_document.modelPath, {}, {}};
    request.scene = m_document.scene;
    OpenNow(request);
}

void CSession::ReloadShown() {
    COpenReport report;
    report.result = EOpened::Opened;
    report.isReload = true;
    const CTurns::CHold hold(m_turns);
    if (!MayLoseEdits()) return;
    {
        const CBusyFrame busy(m_frame);
        const CResult<bool> isSame = m_script ? RereadScript() : CResult<bool>(true);
        if (isSame && !isSame.Value()) {  // the script now names another model
            m_edits.MarkSaved();          // the user has agreed to lose them
            return OpenAgain();
        }
        const CStatus read = isSame ? ReloadModel() : CStatus(isSame.Error());
        if (!read) {
            report.result = EOpened::Failed;
            report.error = read.Error();
        }
    }
    CountModels();
    TellOfOpening(report);
    if (report.result == EOpened::Failed)
        m_frame.Tell(
            lng::Text("The file %s cannot be read again.", file_util_ex::GetFileName(m_document.path)) +
            L"\n" + lng::Text(report.error));
}

CStatus CSession::ReloadModel() {
    CStatus read = m_view.Reload([this] {
        m_edits.Clear();
        if (!m_script) return;
        m_scriptNotes = m_script->Notes();
        ApplyScriptEdits();
    });
    if (read && m_script) {
        m_modelStamp = CFileStamp::Of(ConvertToUTF8(m_shown->modelPath));
        Present();
    }
    return read;
}

void CSession::TellOfOpening(const COpenReport& report) {
    ShowTitle();
    COpenReport told = report;
    told.folderModels = m_folderModels;
    told.folderPlace = m_folderPlace;
    told.scene = ScriptScene();
    const std::vector<CSessionListener*> listeners = m_listeners;  // they may come and go meanwhile
    for (CSessionListener* listener : listeners) listener->OnOpened(told);
    ReadAheadAfter(report.result);
}

void CSession::TellOfChange() {
    ShowTitle();
    const std::vector<CSessionListener*> listeners = m_listeners;
    for (CSessionListener* listener : listeners) listener->OnDocumentChanged();
}

/** The mark stands behind, so that the text before it stays the same. */
void CSession::ShowTitle() {
    std::wstring title = m_title + (HasUnsavedEdits() ? L" *" : L"");
    if (title == m_shownTitle) return;
    m_shownTitle = std::move(title);
    m_frame.ShowTitle(m_shownTitle);
}

// --- the file --------------------------------------------------------------------------------------------

CStatus CSession::DeleteFile() {
    const CTurns::CHold hold(m_turns);
    const CDocument document = std::exchange(m_document, {});
    std::wstring next;
    if (document.HasFile())
        next = folder_models::Neighbour(m_listing.Beside(document.path), document.path,
                                        folder_models::EStep::Next);
    m_view.CloseModel();
    m_edits.Clear();
    m_shown.reset();
    EndPresentation();
    m_folderModels = m_folderPlace = 0;
    m_title = kTitle;
    ShowTitle();
    CStatus deleted =
        document.HasFile() ? file_util_ex::TryDeleteFile(ConvertToUTF8(document.path)) : CStatus(CDone{});
    if (deleted) m_recent.Remove(document.path);
    if (deleted && !next.empty()) {
        COpenRequest request = COpenRequest::OfFile(next);
        request.isStep = true;
        OpenNow(request);
    } else {
        StopReadingAhead();
        TellOfChange();
    }
    return deleted;
}

CStatus CSession::Save(const std::wstring& path) {
    const CTurns::CHold hold(m_turns);
    const CBusyFrame busy(m_frame);
    CStatus saved = m_view.SaveToPath(path);
    if (saved) m_edits.MarkSaved();
    CountModels();
    TellOfChange();
    return saved;
}

bool CSession::MayClose() {
    return m_turns.MayClose([this] { m_frame.CloseNow(); });
}
