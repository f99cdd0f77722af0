// SPDX-License-Identifier: MIT
// The folder of the document: stepping through it, and reading its next models ahead.
#include <algorithm>
#include <utility>

#include "files/file_util_ex.h"
#include "session/CSceneView.h"
#include "session/CSession.h"

using folder_models::EStep;

/** Archives are read ahead like models, of scripts the model of their first scene. */
std::wstring CSession::ModelToReadAhead(const std::wstring& file, const std::atomic<bool>& cancelled) {
    if (!COpenRequest::IsScript(file)) return file;
    if (cancelled) return {};
    const CResult<std::string> model = FirstModelOf(file_util_ex::ConvertToUTF8(file));
    return model ? file_util_ex::PathFromBytes(model.Value()) : std::wstring();
}

void CSession::Step(EStep step) {
    if (!KeepWhileBusy([this, step] { Step(step); })) StepNow(step);
}

void CSession::StepNow(EStep step) {
    if (!m_document.HasFile()) return;
    COpenRequest request = COpenRequest::OfFile(
        folder_models::Neighbour(m_listing.Beside(m_document.path), m_document.path, step));
    request.isStep = true;
    if (!request.path.empty()) OpenNow(request);
}

void CSession::CountModels() {
    const unsigned placeBefore = std::exchange(m_folderPlace, 0);
    m_folderModels = 0;
    if (!m_document.HasFile()) return;
    const std::vector<std::wstring>& models = m_listing.Beside(m_document.path);
    m_folderModels = static_cast<unsigned>(models.size());
    m_folderPlace = static_cast<unsigned>(folder_models::PlaceOf(models, m_document.path));
    if (placeBefore > 0 && m_folderPlace > 0) NoteDirection(placeBefore);
}

/** Whatever led from one file to the one beside it, a step, the model list or a dialog, probably goes on in that direction. */
void CSession::NoteDirection(unsigned placeBefore) {
    if (m_folderPlace == placeBefore % m_folderModels + 1)
        m_lastStep = EStep::Next;
    else if (placeBefore == m_folderPlace % m_folderModels + 1)
        m_lastStep = EStep::Previous;
}

// --- reading ahead ---------------------------------------------------------------------------------------

void CSession::SetReadsAhead(bool readsAhead) {
    m_readsAhead = readsAhead;
    if (!readsAhead) StopReadingAhead();
}

/** Not before its picture stands: until then the processor is needed for that. */
void CSession::ReadAheadAfter(EOpened result) {
    if (result == EOpened::Opened)
        m_view.WhenShown([this] { ReadAhead(); });
    else
        ReadAhead();
}

void CSession::ReadAhead() {
    std::vector<std::wstring> files;
    const EStep back = m_lastStep == EStep::Next ? EStep::Previous : EStep::Next;
    for (const EStep step : {m_lastStep, back}) {
        std::wstring file = FileOfStep(step);
        const bool isShown = file == m_document.path || file == m_document.modelPath;
        if (!file.empty() && !isShown && std::ranges::find(files, file) == files.end())
            files.push_back(std::move(file));
    }
    m_ahead.Want(std::move(files));
}

/** What a step would open, if it may be read ahead: the model of a scene, or a file of the folder; empty: nothing. */
std::wstring CSession::FileOfStep(EStep step) {
    if (!m_readsAhead || !m_document.HasFile()) return {};
    if (SceneCount() > 1) return m_script->SceneAt(NeighbourScene(step)).path;
    return folder_models::Neighbour(m_listing.Beside(m_document.path), m_document.path, step);
}

void CSession::StopReadingAhead() {
    m_view.WhenShown({});
    m_ahead.Want({});
}

std::shared_ptr<CReadyScene> CSession::TakeReady(const std::wstring& model) {
    m_view.WhenShown({});
    if (m_ahead.IsNearlyReady(model))
        m_view.LoadBeside([&](CJobProgress& progress) { m_ahead.Await(model, progress); });
    return m_ahead.Take(model);
}
