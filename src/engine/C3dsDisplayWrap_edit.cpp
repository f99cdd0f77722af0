// SPDX-License-Identifier: MIT
#include <exception>
#include <utility>

#include "base/text/lng.h"
#include "engine/C3dsDisplayState.h"
#include "files/file_util_ex.h"

namespace {

std::string Text(const char* text) {
    return text == nullptr ? std::string() : text;
}

CError NothingToEdit() {
    return {EErrorCode::NotFound, lng::Mark("no model is open for editing"), {}};
}

CMaterialTarget OnNode(const char* node, const char* material) {
    return {Text(node), Text(material)};
}

CMaterialTarget Everywhere(const char* material) {
    return {{}, Text(material)};
}

}  // namespace

CSceneEdits* C3dsDisplayWrap::CState::Edits() {
    if (!scene || viewingOnly) return nullptr;
    if (!edits) edits = std::make_unique<CSceneEdits>(*scene, prepared);
    return edits.get();
}

std::vector<CStatus> C3dsDisplayWrap::CState::Apply(std::span<const CEdit> all) {
    try {
        if (Edits() == nullptr) return {all.size(), NothingToEdit()};
        DecideFraming();
        std::vector<CStatus> answers = edits->Apply(all);
        SceneChanged();
        return answers;
    } catch (const std::exception&) {
        return {all.size(), CError{EErrorCode::TooLarge, lng::Mark("not enough memory for the edit"), {}}};
    }
}

void C3dsDisplayWrap::CState::SceneChanged() {
    if (gpu == EGpu::Ready) gpu = EGpu::NeedsRefresh;
    FollowFileCamera();
    Emphasize();
}

bool C3dsDisplayWrap::CState::Edit(const CEdit& edit) {
    return Answer(Apply({&edit, 1}).front());
}

bool C3dsDisplayWrap::CState::EditNode(const char* node, const CEdit& edit) {
    if (Text(node).empty())
        return Fail({EErrorCode::NotFound, lng::Mark("the scene has no such object"), {}});
    return Edit(edit);
}

std::vector<CStatus> C3dsDisplayWrap::ApplyEdits(std::span<const CEdit> edits) {
    std::vector<CStatus> answers = m_state->Apply(edits);
    for (const CStatus& answer : answers)
        (void)m_state->Answer(answer);  // LastError() tells the last failure
    return answers;
}

bool C3dsDisplayWrap::TakeBackEdits(std::size_t count) {
    try {
        CSceneEdits* edits = m_state->Edits();
        if (edits == nullptr || !edits->TakeBack(count)) return false;
        m_state->SceneChanged();
        return true;
    } catch (const std::exception&) {
        return m_state->Fail({EErrorCode::TooLarge, lng::Mark("not enough memory for the edit"), {}});
    }
}

std::vector<std::string> C3dsDisplayWrap::GetMaterialNamesOfNode(const std::string& node) const {
    const CSceneEdits* all = m_state->Edits();
    return all == nullptr ? std::vector<std::string>() : all->MaterialNamesOf(node);
}

const char* C3dsDisplayWrap::GetNodeNameById(int id) const {
    if (!m_state->scene || id < 0) return nullptr;
    const std::vector<CPreparedNode>& nodes = m_state->prepared.nodes;
    const auto index = static_cast<std::size_t>(id);
    return index < nodes.size() && nodes[index].mesh >= 0 ? nodes[index].name.c_str() : nullptr;
}

bool C3dsDisplayWrap::DeleteNode(const char* node) {
    return m_state->EditNode(node, CDeleteEdit{Text(node)});
}

bool C3dsDisplayWrap::ReplaceNode(const char* node, const wchar_t* file, const char* newNode) {
    const std::string path = file == nullptr ? std::string() : file_util_ex::ConvertToUTF8(file);
    return m_state->EditNode(node, CReplaceEdit{Text(node), path, Text(newNode)});
}

bool C3dsDisplayWrap::MoveNode(const char* node, float x, float y, float z) {
    return m_state->EditNode(node, CMoveEdit{Text(node), {x, y, z}});
}

bool C3dsDisplayWrap::RotateNode(const char* node, float x, float y, float z) {
    return m_state->EditNode(node, CRotateEdit{Text(node), {x, y, z}});
}

bool C3dsDisplayWrap::SetNodeMaterialColor(const char* node, const char* material, float r, float g,
                                           float b) {
    return m_state->EditNode(node, CColorEdit{OnNode(node, material), {r, g, b}});
}

bool C3dsDisplayWrap::SetNodeMaterialShininess(const char* node, const char* material, float value) {
    return m_state->EditNode(node, CShininessEdit{OnNode(node, material), value});
}

bool C3dsDisplayWrap::SetNodeMaterialTransparency(const char* node, const char* material, float value) {
    return m_state->EditNode(node, CTransparencyEdit{OnNode(node, material), value});
}

bool C3dsDisplayWrap::SetNodeMaterialTexture(const char* node, const char* material,
                                             const CStdStr<wchar_t>& imagePath) {
    return m_state->EditNode(node,
                             CTextureEdit{OnNode(node, material), file_util_ex::ConvertToUTF8(imagePath)});
}

bool C3dsDisplayWrap::SetMaterialColor(const char* material, float r, float g, float b) {
    return m_state->Edit(CColorEdit{Everywhere(material), {r, g, b}});
}

bool C3dsDisplayWrap::SetMaterialShininess(const char* material, float value) {
    return m_state->Edit(CShininessEdit{Everywhere(material), value});
}

bool C3dsDisplayWrap::SetMaterialTransparency(const char* material, float value) {
    return m_state->Edit(CTransparencyEdit{Everywhere(material), value});
}

bool C3dsDisplayWrap::SetMaterialTexture(const char* material, const CStdStr<wchar_t>& imagePath) {
    return m_state->Edit(CTextureEdit{Everywhere(material), file_util_ex::ConvertToUTF8(imagePath)});
}
