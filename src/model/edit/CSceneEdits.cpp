// SPDX-License-Identifier: MIT
#include "model/edit/CSceneEdits.h"

#include <lib3ds/material.h>
#include <lib3ds/mesh.h>

#include <algorithm>
#include <cmath>
#include <exception>

#include "base/text/lng.h"
#include "model/edit/material_edits.h"
#include "model/prepare/CPreparedScene.h"

namespace {

CError NotANumber() {
    return {EErrorCode::BadArgument, lng::Mark("the value is not a number"), {}};
}

}  // namespace

CSceneEdits::CSceneEdits(CScene& scene, CPreparedScene& prepared)
    : m_scene(scene),
      m_prepared(prepared),
      m_edited(scene, prepared, m_shelf),
      m_firstFrame(prepared.currentFrame) {}

std::vector<CStatus> CSceneEdits::Apply(std::span<const CEdit> edits) {
    Unsettle();
    std::vector<CStatus> answers;
    for (const CEdit& edit : edits) {
        const std::size_t start = m_edited.StepCount();
        CStatus status = CDone{};
        try {
            status = std::visit([this](const auto& one) { return Do(one); }, edit);
            if (status) m_starts.push_back(start);
        } catch (const std::exception&) {
            status = CError{EErrorCode::TooLarge, lng::Mark("not enough memory for the edit"), {}};
        }
        if (!status) m_edited.UndoTo(start);
        answers.push_back(std::move(status));
    }
    m_edited.Finish();
    return answers;
}

bool CSceneEdits::TakeBack(std::size_t count) {
    if (count > m_starts.size()) return false;
    if (count == 0) return true;
    Unsettle();
    m_edited.UndoTo(m_starts[m_starts.size() - count]);
    m_starts.resize(m_starts.size() - count);
    m_edited.Finish();
    return true;
}

std::vector<std::string> CSceneEdits::MaterialNamesOf(const std::string& node) const {
    std::vector<std::string> names;
    const auto index = m_edited.FindNode(node);
    if (!index || m_prepared.nodes[*index].mesh < 0) return names;
    for (const CPreparedBatch& batch :
         m_prepared.meshes[static_cast<std::size_t>(m_prepared.nodes[*index].mesh)].batches) {
        const std::string& name = m_edited.NameInFile(batch.material);
        if (std::find(names.begin(), names.end(), name) == names.end()) names.push_back(name);
    }
    return names;
}

// --- which materials -------------------------------------------------------------------------------------

std::uint32_t CSceneEdits::OwnMaterial(std::size_t mesh, std::uint32_t material) {
    const auto uses = [&](const CPreparedMesh& other) {
        return std::any_of(other.batches.begin(), other.batches.end(),
                           [material](const CPreparedBatch& batch) { return batch.material == material; });
    };
    bool isShared = material == m_edited.NoMaterial();
    for (std::size_t i = 0; i < m_prepared.meshes.size() && !isShared; ++i) {
        isShared = i != mesh && uses(m_prepared.meshes[i]);
    }
    if (!isShared) return material;
    const bool isNone = material == m_edited.NoMaterial();
    const std::uint32_t own = m_edited.CopyMaterial(material);
    m_edited.UseMaterial(mesh, isNone ? m_edited.NoMaterial() : material, own);
    return own;
}

CResult<std::vector<std::uint32_t>> CSceneEdits::TargetsOnNode(const CMaterialTarget& target) {
    const auto node = m_edited.FindNode(target.node);
    if (!node || m_prepared.nodes[*node].mesh < 0)
        return CError{EErrorCode::NotFound, lng::Mark("the scene has no such object"), target.node};
    std::vector<std::uint32_t> found;
    bool withNone = false;
    for (const CPreparedBatch& batch :
         m_prepared.meshes[static_cast<std::size_t>(m_prepared.nodes[*node].mesh)].batches) {
        if (!target.material.empty() && m_edited.NameInFile(batch.material) != target.material) continue;
        if (batch.material == m_edited.NoMaterial()) {
            withNone = true;
        } else {
            found.push_back(batch.material);
        }
    }
    if (found.empty() && !withNone)
        return CError{EErrorCode::NotFound, lng::Mark("the object has no such material"), target.material};
    const std::size_t mesh = m_edited.OwnMesh(*node);
    for (std::uint32_t& material : found) material = OwnMaterial(mesh, material);
    // Last, as every new material moves the number that stands for none.
    if (withNone) found.push_back(OwnMaterial(mesh, m_edited.NoMaterial()));
    return found;
}

CResult<std::vector<std::uint32_t>> CSceneEdits::Targets(const CMaterialTarget& target) {
    if (!target.node.empty()) return TargetsOnNode(target);
    std::vector<std::uint32_t> found;
    for (std::uint32_t i = 0; i < m_edited.NoMaterial() && !target.material.empty(); ++i) {
        if (m_edited.NameInFile(i) == target.material) found.push_back(i);
    }
    if (found.empty())
        return CError{EErrorCode::NotFound, lng::Mark("the scene has no such material"), target.material};
    return found;
}

// --- values ----------------------------------------------------------------------------------------------

CStatus CSceneEdits::ChangeValue(const CMaterialTarget& target, bool isNumber,
                                 const CMaterialChange& change) {
    if (!isNumber) return NotANumber();
    const auto materials = Targets(target);
    if (!materials) return materials.Error();
    for (const std::uint32_t material : materials.Value()) m_edited.ChangeMaterial(material, change);
    return CDone{};
}

CStatus CSceneEdits::Do(const CColorEdit& edit) {
    if (!IsFinite(edit.color)) return NotANumber();
    const auto materials = Targets(edit.target);
    if (!materials) return materials.Error();
    for (const std::uint32_t material : materials.Value())
        m_edited.ChangeMaterial(material, [&, share = m_edited.AmbientShare(material)](Lib3dsMaterial& m) {
            material_edits::SetColor(m, edit.color, share);
        });
    return CDone{};
}

CStatus CSceneEdits::Do(const CShininessEdit& edit) {
    return ChangeValue(edit.target, std::isfinite(edit.value),
                       [&](Lib3dsMaterial& m) { material_edits::SetShininess(m, edit.value); });
}

CStatus CSceneEdits::Do(const CTransparencyEdit& edit) {
    return ChangeValue(edit.target, std::isfinite(edit.value),
                       [&](Lib3dsMaterial& m) { material_edits::SetTransparency(m, edit.value); });
}
