// SPDX-License-Identifier: MIT
#include "engine/C3dsDisplayWrap.h"

#include <algorithm>
#include <cmath>
#include <exception>
#include <new>
#include <utility>

#include "base/process_memory.h"
#include "base/text/lng.h"
#include "camera/framing.h"
#include "engine/C3dsDisplayState.h"
#include "engine/gl/CGlCurrent.h"
#include "files/file_util_ex.h"
#include "model/open/CSceneReader.h"
#include "model/open/load_scene.h"
#include "model/prepare/prepare_scene.h"
#include "model/save/write_scene.h"

namespace {

std::string Utf8(const wchar_t* path) {
    return path == nullptr ? std::string() : file_util_ex::ConvertToUTF8(path);
}

}  // namespace

void C3dsDisplayWrap::CState::Show(CLoadedScene loaded) {
    const auto morphs = [](const CPreparedNode& node) { return !node.morph.keys.empty(); };
    const auto& nodes = loaded.prepared.nodes;
    if (viewingOnly && std::none_of(nodes.begin(), nodes.end(), morphs)) loaded.scene.DropArrays();
    scene.emplace(std::move(loaded.scene));
    prepared = std::move(loaded.prepared);
    readMs = loaded.readMs;
    prepareMs = loaded.prepareMs;
    seen.frame = prepared.currentFrame;
    gpu = EGpu::NeedsUpload;
    seen.turn = {};
    seen.orbit = 0;
    seen.pivot = {};
    seen.scale = {1, 1, 1};
    seen.backgroundImage.reset();
    emphasis.reset();
    Emphasize();
    SetPreset(ECameraPreset::Iso);
}

void C3dsDisplayWrap::CState::Evaluate() {
    const std::uint64_t shapes = prepared.shapeChanges;
    if (seen.frame != prepared.currentFrame) EvaluateNodes(prepared, *scene, seen.frame);
    if (prepared.shapeChanges != shapes && gpu == EGpu::Ready) gpu = EGpu::NeedsRefresh;
    FollowFileCamera();
}

void C3dsDisplayWrap::CState::FollowFileCamera() {
    for (const CPreparedCamera& fileCamera : prepared.cameras) {
        if (fileCamera.name == seen.camera.Name()) return seen.camera.Follow(fileCamera);
    }
}

void C3dsDisplayWrap::CState::SetPreset(ECameraPreset preset) {
    DecideFraming();
    seen.camera.SetModel(framing);
    seen.camera.SetPreset(preset);
    seen.rotX = seen.rotY = seen.rotZ = 0;
    seen.ForgetPlaces();
}

void C3dsDisplayWrap::CState::DecideFraming() {
    if (!scene) framing = {{}, 1};
    if (scene && !(edits && edits->IsEdited())) framing = FramingSphere(prepared);
}

bool C3dsDisplayWrap::CState::Fail(CError error) {
    lastError = std::move(error);
    return false;
}

bool C3dsDisplayWrap::CState::Answer(const CStatus& status) {
    return status.HasValue() || Fail(status.Error());
}

C3dsDisplayWrap::C3dsDisplayWrap() : m_state(std::make_unique<CState>()) {}
C3dsDisplayWrap::~C3dsDisplayWrap() {
    CloseModel();
}
void C3dsDisplayWrap::UpdateModelOnZoom() {}

bool C3dsDisplayWrap::OpenModel(const wchar_t* path) {
    CloseModel();
    CLoadLimits limits;
    if (m_state->viewingOnly) limits.pictureBytes = scene_budget::kPictureBytesForOneView;
    return OpenLoaded(LoadScene(Utf8(path), nullptr, limits));
}

bool C3dsDisplayWrap::OpenLoaded(CResult<CLoadedScene> loaded) {
    CloseModel();
    if (!loaded) return m_state->Fail(loaded.Error());
    m_state->Show(std::move(loaded).Value());
    return true;
}

bool C3dsDisplayWrap::OpenModelStruct(Lib3dsFile* file, CTextureLocator textures) {
    CLib3dsFilePtr owned(file);
    CloseModel();
    if (!owned) return m_state->Fail({EErrorCode::BadArgument, lng::Mark("there is no scene"), {}});
    try {
        CScene scene = CScene::Adopt(std::move(owned));
        scene.SetTextures(std::move(textures));
        return OpenLoaded(LoadScene(std::move(scene)));
    } catch (const std::exception&) {
        return m_state->Fail({EErrorCode::TooLarge, lng::Mark("not enough memory to show it"), {}});
    }
}

bool C3dsDisplayWrap::OpenBufferModel(const char* data, long size, const CImageDataTextVec& textures) {
    CloseModel();
    if (data == nullptr || size <= 0)
        return m_state->Fail({EErrorCode::BadFormat, lng::Mark("the model is empty"), {}});
    try {
        const auto* bytes = reinterpret_cast<const std::byte*>(data);
        CResult<CScene> read =
            CSceneReader::ReadBytes({bytes, bytes + size}, CTextureLocator::InMemory(textures));
        if (!read) return m_state->Fail(read.Error());
        return OpenLoaded(LoadScene(std::move(read).Value()));
    } catch (const std::exception&) {
        return m_state->Fail({EErrorCode::TooLarge, lng::Mark("not enough memory to open it"), {}});
    }
}

void C3dsDisplayWrap::CloseModel() {
    if (m_state->gpu == CState::EGpu::Ready || m_state->gpu == CState::EGpu::NeedsRefresh) {
        CGlCurrent gl;
        m_state->renderer.Clear(gl);
        m_state->backdrop.Clear(gl);
    }
    m_state->gpu = CState::EGpu::Nothing;
    m_state->edits.reset();
    m_state->prepared = {};
    m_state->knownTextures = {};
    if (!m_state->scene) return;
    m_state->scene.reset();
    process_memory::GiveFreedBlocksBack();
}

bool C3dsDisplayWrap::SaveAs(const wchar_t* path) {
    if (!m_state->scene || m_state->viewingOnly)
        return m_state->Fail({EErrorCode::NotFound, lng::Mark("no model is open"), {}});
    if (m_state->edits) m_state->edits->SettleForSaving();
    return m_state->Answer(WriteScene(*m_state->scene, Utf8(path)));
}

Lib3dsFile* C3dsDisplayWrap::Get3dsFile() {
    if (!m_state->scene || m_state->viewingOnly) return nullptr;
    try {
        if (m_state->edits) m_state->edits->SettleForSaving();
        Lib3dsFile* file = m_state->scene->File();
        m_state->knownTextures = CTexturesOfScene(file, m_state->scene->Textures());
        return file;
    } catch (const std::bad_alloc&) {
        (void)m_state->Fail({EErrorCode::TooLarge, lng::Mark("not enough memory for the whole scene"), {}});
        return nullptr;
    }
}

const CPreparedScene* C3dsDisplayWrap::Prepared() const {
    return m_state->scene ? &m_state->prepared : nullptr;
}
const CScene* C3dsDisplayWrap::GetScene() const {
    return m_state->scene ? &*m_state->scene : nullptr;
}
const CTextureLocator& C3dsDisplayWrap::GetTextures() const {
    static const CTextureLocator nowhere;
    return m_state->scene ? m_state->scene->Textures() : nowhere;
}
const CError& C3dsDisplayWrap::LastError() const {
    return m_state->lastError;
}
void C3dsDisplayWrap::SetViewingOnly(bool viewingOnly) {
    m_state->viewingOnly = viewingOnly;
}
double C3dsDisplayWrap::GetReadMs() const {
    return m_state->readMs;
}
double C3dsDisplayWrap::GetPrepareMs() const {
    return m_state->prepareMs;
}

bool C3dsDisplayWrap::HasAnimation() const {
    return m_state->scene && m_state->prepared.animated;
}
float C3dsDisplayWrap::GetFrame() const {
    return m_state->seen.frame;
}

void C3dsDisplayWrap::CState::SetFrame(float frame) {
    if (!scene || !std::isfinite(frame)) return;
    seen.frame = std::clamp(frame, prepared.firstFrame, std::max(prepared.firstFrame, prepared.lastFrame));
    Evaluate();
}

void C3dsDisplayWrap::SetFrame(float frame) {
    m_state->SetFrame(frame);
}

bool C3dsDisplayWrap::DrawAnimations() {
    if (!HasAnimation()) return false;
    const float next = m_state->seen.frame + 1;
    SetFrame(next > m_state->prepared.lastFrame ? m_state->prepared.firstFrame : next);
    return true;
}
