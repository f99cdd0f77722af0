// SPDX-License-Identifier: MIT
#include <cmath>
#include <exception>

#include "base/text/lng.h"
#include "engine/C3dsDisplayState.h"
#include "files/file_util_ex.h"
#include "model/edit/material_edits.h"

namespace {

std::string_view Text(const char* text) {
    return text == nullptr ? std::string_view() : text;
}

/** Null asks for the scene-wide form, which a caller's null does not mean. */
const char* OneNode(const char* node) {
    return node == nullptr ? "" : node;
}

CError NotANumber() {
    return {EErrorCode::BadArgument, lng::Mark("the value is not a number"), {}};
}

}  // namespace

bool C3dsDisplayWrap::CState::Edit(const std::function<CStatus(CSceneEdits&)>& edit) {
    if (!scene || viewingOnly)
        return Fail({EErrorCode::NotFound, lng::Mark("no model is open for editing"), {}});
    try {
        const CPreparedScene& now = Fresh();
        if (!edits) edits = std::make_unique<CSceneEdits>(*scene, now);
        const CStatus status = edit(*edits);
        if (status && !edits->NeedsPreparing()) Evaluate();
        return Answer(status);
    } catch (const std::exception&) {
        return Fail({EErrorCode::TooLarge, lng::Mark("not enough memory for the edit"), {}});
    }
}

bool C3dsDisplayWrap::CState::EditMaterial(const char* node, const char* material,
                                           const CSceneEdits::CMaterialChange& change) {
    return Edit([&](CSceneEdits& e) {
        return node == nullptr ? e.ChangeMaterial(Text(material), change)
                               : e.ChangeNodeMaterial(node, Text(material), change);
    });
}

bool C3dsDisplayWrap::CState::EditTexture(const char* node, const char* material,
                                          const CStdStr<wchar_t>& imagePath) {
    if (!scene || viewingOnly)
        return Fail({EErrorCode::NotFound, lng::Mark("no model is open for editing"), {}});
    std::string name;
    if (!imagePath.empty()) {
        CResult<std::string> added =
            material_edits::AddTextureFile(*scene, file_util_ex::ConvertToUTF8(imagePath));
        if (!added) return Fail(added.Error());
        name = std::move(added).Value();
    }
    return EditMaterial(node, material, [&name](Lib3dsMaterial& m) { material_edits::SetTexture(m, name); });
}

const char* C3dsDisplayWrap::GetNodeNameById(int id) const {
    if (!m_state->scene || id < 0) return nullptr;
    const std::vector<CPreparedNode>& nodes = m_state->Fresh().nodes;
    const auto index = static_cast<std::size_t>(id);
    return index < nodes.size() && nodes[index].mesh >= 0 ? nodes[index].name.c_str() : nullptr;
}

bool C3dsDisplayWrap::DeleteNode(const char* node) {
    // A copy: the name may be the one that GetNodeNameById gave out, which dies with the node.
    const std::string name(Text(node));
    return m_state->Edit([&](CSceneEdits& e) { return e.DeleteNode(name); });
}

bool C3dsDisplayWrap::ReplaceNode(const char* node, const wchar_t* file, const char* newNode) {
    const std::string path = file == nullptr ? std::string() : file_util_ex::ConvertToUTF8(file);
    return m_state->Edit([&](CSceneEdits& e) { return e.ReplaceNode(Text(node), path, Text(newNode)); });
}

bool C3dsDisplayWrap::MoveNode(const char* node, float x, float y, float z) {
    return m_state->Edit([&](CSceneEdits& e) {
        return e.MoveNode(m_state->prepared, Text(node), {x, y, z});
    });
}

bool C3dsDisplayWrap::RotateNode(const char* node, float x, float y, float z) {
    return m_state->Edit([&](CSceneEdits& e) {
        return e.RotateNode(m_state->prepared, Text(node), {x, y, z});
    });
}

bool C3dsDisplayWrap::SetNodeMaterialColor(const char* node, const char* material, float r, float g,
                                           float b) {
    if (!IsFinite(CVec3{r, g, b})) return m_state->Fail(NotANumber());
    return m_state->EditMaterial(OneNode(node), material, [=](Lib3dsMaterial& m) {
        material_edits::SetColor(m, {r, g, b});
    });
}

bool C3dsDisplayWrap::SetNodeMaterialShininess(const char* node, const char* material, float value) {
    if (!std::isfinite(value)) return m_state->Fail(NotANumber());
    return m_state->EditMaterial(OneNode(node), material,
                                 [=](Lib3dsMaterial& m) { material_edits::SetShininess(m, value); });
}

bool C3dsDisplayWrap::SetNodeMaterialTransparency(const char* node, const char* material, float value) {
    if (!std::isfinite(value)) return m_state->Fail(NotANumber());
    return m_state->EditMaterial(OneNode(node), material,
                                 [=](Lib3dsMaterial& m) { material_edits::SetTransparency(m, value); });
}

bool C3dsDisplayWrap::SetNodeMaterialTexture(const char* node, const char* material,
                                             const CStdStr<wchar_t>& imagePath) {
    return m_state->EditTexture(OneNode(node), material, imagePath);
}

bool C3dsDisplayWrap::SetMaterialColor(const char* material, float r, float g, float b) {
    if (!IsFinite(CVec3{r, g, b})) return m_state->Fail(NotANumber());
    return m_state->EditMaterial(nullptr, material, [=](Lib3dsMaterial& m) {
        material_edits::SetColor(m, {r, g, b});
    });
}

bool C3dsDisplayWrap::SetMaterialShininess(const char* material, float value) {
    if (!std::isfinite(value)) return m_state->Fail(NotANumber());
    return m_state->EditMaterial(nullptr, material,
                                 [=](Lib3dsMaterial& m) { material_edits::SetShininess(m, value); });
}

bool C3dsDisplayWrap::SetMaterialTransparency(const char* material, float value) {
    if (!std::isfinite(value)) return m_state->Fail(NotANumber());
    return m_state->EditMaterial(nullptr, material,
                                 [=](Lib3dsMaterial& m) { material_edits::SetTransparency(m, value); });
}

bool C3dsDisplayWrap::SetMaterialTexture(const char* material, const CStdStr<wchar_t>& imagePath) {
    return m_state->EditTexture(nullptr, material, imagePath);
}
