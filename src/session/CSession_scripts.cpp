// SPDX-License-Identifier: MIT
// Scene scripts: how one is opened, shown, stepped through and read again.
#include <algorithm>
#include <utility>

#include "base/text/lng.h"
#include "files/file_util_ex.h"
#include "model/prepare/CPreparedScene.h"
#include "model/scene/CNoteList.h"
#include "script/fit_names.h"
#include "script/scene_background.h"
#include "session/CSceneLook.h"
#include "session/CSceneView.h"
#include "session/CSession.h"
#include "session/CSessionFrame.h"
#include "settings/CSettings.h"

using file_util_ex::ConvertToUTF8;

namespace {

constexpr std::size_t kMostNotes = 200;

/** The names that an edit has, for a note. */
std::string NameOf(const CEdit& edit) {
    const std::string name = std::visit(
        [](const auto& one) -> std::string {
            if constexpr (requires { one.target; })
                return one.target.node.empty() ? one.target.material
                                               : one.target.node + ">" + one.target.material;
            else
                return one.node;
        },
        edit);
    return CNoteList::Printable(name);
}

}  // namespace

// --- reading ---------------------------------------------------------------------------------------------

CResult<CPresentation> CSession::PresentationOf(const COpenRequest& request) {
    if (m_script && m_script->Path() == request.path && m_script->IsCurrent()) {
        CPresentation again = *m_script;
        again.GoTo(request.scene);
        return again;
    }
    std::optional<CResult<CPresentation>> read;
    m_view.LoadBeside([&](CJobProgress&) { read.emplace(CPresentation::Read(request.path)); });
    if (*read) read->Value().GoTo(request.scene);
    return std::move(*read);
}

CStatus CSession::FindModel(const std::wstring& path) {
    if (file_util_ex::DoesFileExist(path)) return CDone{};
    return CError{EErrorCode::NotFound, lng::Mark("there is no such file"), ConvertToUTF8(path)};
}

// --- showing ---------------------------------------------------------------------------------------------

bool CSession::ShowsModelOf(const CPresentation& next) const {
    return m_script && m_shown && m_shown->origin == EOrigin::Script && m_shown->path == next.Path() &&
           m_shown->modelPath == next.Scene().path && m_modelStamp &&
           CFileStamp::Of(ConvertToUTF8(next.Scene().path)) == m_modelStamp;
}

/** Shows the model again that is shown already, as an opening would. */
bool CSession::ShowModelAgain(const COpenRequest& request) {
    if (!m_view.TakeBackEdits(m_edits.AppliedCount())) return false;
    m_edits.Clear();
    m_view.ShowAgain(m_firstFrame);
    m_shown = CDocument{request.origin, request.path, request.modelPath, false, request.scene};
    return true;
}

CStatus CSession::ShowScript(const COpenRequest& request, const CResult<CPresentation>& next) {
    CStatus shown = next ? FindModel(request.modelPath) : CStatus(next.Error());
    if (shown) {
        const bool isAgain = ShowsModelOf(next.Value()) && ShowModelAgain(request);
        if (!isAgain) shown = Show(request);
    }
    m_script = next ? std::optional(next.Value()) : std::nullopt;
    if (!shown) {
        // The view tells why, so it has to be empty.
        m_view.CloseModel();
        m_edits.Clear();
        m_shown.reset();
        return shown;
    }
    if (const CPreparedScene* scene = m_view.Prepared()) m_firstFrame = scene->currentFrame;
    m_modelStamp = CFileStamp::Of(ConvertToUTF8(request.modelPath));
    m_scriptNotes = m_script->Notes();
    ApplyScriptEdits();
    Present();
    const std::string camera = ConvertToUTF8(m_script->Scene().camera);
    if (!camera.empty() && !m_view.SetCamera(camera))
        m_scriptNotes.push_back({CSceneNote::EKind::Missing,
                                 lng::Mark("The model has no camera of this name"),
                                 CNoteList::Printable(camera)});
    return shown;
}

void CSession::ApplyScriptEdits() {
    std::vector<CEdit> edits = m_script->Scene().edits;
    if (edits.empty()) return;
    if (const CPreparedScene* scene = m_view.Prepared()) FitNames(edits, *scene);
    const std::vector<CStatus> answers = m_edits.ApplyBase(std::move(edits));
    CNoteList notes;
    for (std::size_t i = 0; i < answers.size() && i < m_edits.Base().size(); ++i) {
        if (answers[i]) continue;
        notes.Limited(lng::Mark("An edit of the script cannot be made"), NameOf(m_edits.Base()[i]),
                      answers[i].Error().message);
    }
    for (CSceneNote& note : notes.Take())
        if (m_scriptNotes.size() < kMostNotes) m_scriptNotes.push_back(std::move(note));
}

void CSession::Present() {
    CSceneLook look;
    look.show = CShowState::From(CSettings::Instance());
    if (m_script) {
        const CScriptScene& scene = m_script->Scene();
        look.show.wire = scene.wire.value_or(look.show.wire);
        look.show.rotate = scene.rotate.value_or(look.show.rotate);
        look.show.background = scene.background.value_or(look.show.background);
        look.textureMode = scene.renderMode;
        look.pivot = scene.pivot.value_or(look.pivot);
        look.scale = scene.scale.value_or(look.scale);
        look.caption = scene.text;
        if (!scene.backgroundImage.empty())
            m_view.LoadBeside(
                [&](CJobProgress&) { look.backgroundImage = ReadBackground(scene, m_scriptNotes); });
    }
    m_view.Present(look);
    PresentFullScreen();
}

/** A script's full screen ends with it, unless the user has chosen meanwhile. */
void CSession::PresentFullScreen() {
    const std::optional<bool> wanted = m_script ? m_script->Scene().fullScreen : std::nullopt;
    const bool is = m_frame.IsFullScreenShown();
    if (wanted) {
        if (!m_fullScreen) m_fullScreen = CFullScreen{is, is};
        if (is != *wanted) m_frame.SetFullScreen(*wanted);
        m_fullScreen->byScript = *wanted;
    } else if (!m_script && m_fullScreen) {
        const CFullScreen kept = *std::exchange(m_fullScreen, std::nullopt);
        if (is == kept.byScript && is != kept.before) m_frame.SetFullScreen(kept.before);
    }
}

void CSession::EndPresentation() {
    const bool wasPresented = m_script.has_value() || m_fullScreen.has_value();
    m_script.reset();
    m_scriptNotes.clear();
    m_modelStamp.reset();
    if (wasPresented) Present();
}

// --- stepping, reading again -----------------------------------------------------------------------------

bool CSession::StepScene(folder_models::EStep step) {
    if (!m_script || m_script->Count() < 2 || m_document.origin != EOrigin::Script) return false;
    if (KeepWhileBusy([this, step] { (void)StepScene(step); })) return true;
    m_lastStep = step;
    COpenRequest request = COpenRequest::OfFile(m_script->Path());
    request.scene = NeighbourScene(step);
    request.isStep = true;
    OpenNow(request);
    return true;
}

std::size_t CSession::NeighbourScene(folder_models::EStep step) const {
    return step == folder_models::EStep::Next ? m_script->Next() : m_script->Previous();
}

const CScriptScene* CSession::ScriptScene() const {
    return m_script ? &m_script->Scene() : nullptr;
}

std::size_t CSession::SceneCount() const {
    return m_script ? m_script->Count() : 0;
}

std::size_t CSession::SceneIndex() const {
    return m_script ? m_script->Index() : 0;
}

/** True when the script still shows the same model, which the caller then reads again. */
CResult<bool> CSession::RereadScript() {
    std::optional<CResult<CPresentation>> read;
    m_view.LoadBeside([&](CJobProgress&) { read.emplace(CPresentation::Read(m_script->Path())); });
    if (!*read) return read->Error();
    read->Value().GoTo(m_script->Index());
    read->Value().GoToSection(m_script->Scene().section);
    const bool isSame = m_shown && m_shown->modelPath == read->Value().Scene().path;
    if (isSame) {
        m_script = std::move(*read).Value();
        m_document.scene = m_shown->scene = m_script->Index();
    }
    return isSame;
}
