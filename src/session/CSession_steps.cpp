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
    m_lastStep = step;
    COpenRequest request = COpenRequest::OfFile(
        folder_models::Neighbour(m_listing.Beside(m_document.path), m_document.path, step));
    request.isStep = true;
    if (!request.path.empty()) OpenNow(request);
}

void CSession::CountModels() {
    m_folderModels = m_folderPlace = 0;
    if (!m_document.HasFile()) return;
    const std::vector<std::wstring>& models = m_listing.Beside(m_document.path);
    m_folderModels = static_cast<unsigned>(models.size());
    m_folderPlace = static_cast<unsigned>(folder_models::PlaceOf(models, m_document.path));
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
    if (m_readsAhead && SceneCount() > 1) {
        const EStep back = m_lastStep == EStep::Next ? EStep::Previous : EStep::Next;
        for (const EStep step : {m_lastStep, back}) {
            std::wstring model = m_script->SceneAt(NeighbourScene(step)).path;
            if (model != m_document.modelPath && std::ranges::find(files, model) == files.end())
                files.push_back(std::move(model));
        }
    } else if (m_readsAhead && m_document.HasFile()) {
        const std::vector<std::wstring>& models = m_listing.Beside(m_document.path);
        const EStep back = m_lastStep == EStep::Next ? EStep::Previous : EStep::Next;
        for (const EStep step : {m_lastStep, back}) {
            std::wstring file = folder_models::Neighbour(models, m_document.path, step);
            if (!file.empty() && file != m_document.path && std::ranges::find(files, file) == files.end())
                files.push_back(std::move(file));
        }
    }
    m_ahead.Want(std::move(files));
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
