// SPDX-License-Identifier: MIT
#include "script/fold_edits.h"

#include <lib3ds/file.h>
#include <lib3ds/material.h>

#include <algorithm>
#include <utility>

#include "base/name_hash.h"
#include "base/text/lng.h"
#include "model/open/CSceneReader.h"
#include "script/edit_lists.h"

namespace {

const CMaterialTarget* TargetOf(const CEdit& edit) {
    return std::visit(
        [](const auto& one) -> const CMaterialTarget* {
            if constexpr (requires { one.target; })
                return &one.target;
            else
                return nullptr;
        },
        edit);
}

bool IsOnNode(const CEdit& edit, const std::string& node) {
    const CMaterialTarget* target = TargetOf(edit);
    return target != nullptr && target->node == node;
}

CError Unsayable(const char* why, const std::string& where) {
    return {EErrorCode::BadArgument, why, where};
}

/** True where two edits may change the same material. */
bool MayMeet(const CMaterialTarget& a, const CMaterialTarget& b) {
    const bool nodesMeet = a.node.empty() || b.node.empty() || a.node == b.node;
    return nodesMeet && (a.material.empty() || b.material.empty() || a.material == b.material);
}

/** What was changed so far, as far as it decides what can be said. */
class CFolding {
  public:
    CStatus Add(const CEdit& edit) {
        CStatus added = std::visit([this](const auto& one) { return See(one); }, edit);
        if (added) m_edits.push_back(edit);
        return added;
    }
    std::vector<CEdit> Take() {
        std::vector<CEdit> edits = edit_lists::WithoutRepeated(std::move(m_edits));
        std::stable_sort(edits.begin(), edits.end(), [](const CEdit& a, const CEdit& b) {
            return edit_lists::KeyOf(a) < edit_lists::KeyOf(b);
        });
        return edits;
    }

  private:
    CStatus See(const CColorEdit& edit) {
        m_colored.push_back(edit.target);
        return SeeMaterial(edit.target);
    }
    CStatus See(const CShininessEdit& edit) { return SeeMaterial(edit.target); }
    CStatus See(const CTransparencyEdit& edit) { return SeeMaterial(edit.target); }
    CStatus See(const CTextureEdit& edit) {
        // Colours come last in a script, and a colour hides the picture.
        const auto meets = [&edit](const CMaterialTarget& colored) { return MayMeet(colored, edit.target); };
        if (!edit.imagePath.empty() && std::any_of(m_colored.begin(), m_colored.end(), meets))
            return Unsayable(lng::Mark("a scene script cannot express a picture on a colour"),
                             edit.target.node.empty() ? edit.target.material : edit.target.node);
        return SeeMaterial(edit.target);
    }
    CStatus See(const CMoveEdit& edit) {
        // What turned before may carry the moved node along; moves come first in a script.
        const auto isOther = [&edit](const std::string& turned) { return turned != edit.node; };
        if (std::any_of(m_turned.begin(), m_turned.end(), isOther))
            return Unsayable(lng::Mark("a scene script cannot express a move after a turn"), edit.node);
        return CDone{};
    }
    CStatus See(const CRotateEdit& edit) {
        m_turned.insert(edit.node);
        return CDone{};
    }
    CStatus See(const CDeleteEdit& edit) {
        DropEditsOf(edit.node);
        return CDone{};
    }
    CStatus See(const CReplaceEdit& edit) {
        DropEditsOf(edit.node);
        return KeepsMaterials(edit);
    }

    CStatus SeeMaterial(const CMaterialTarget& target) {
        if (target.node.empty()) m_changedEverywhere.insert(target.material);
        return CDone{};
    }

    /** What was done to the materials of a node, and what replaced it, ends with its mesh. */
    void DropEditsOf(const std::string& node) {
        const auto isGone = [&node](const CEdit& edit) {
            const auto* replaced = std::get_if<CReplaceEdit>(&edit);
            return IsOnNode(edit, node) || (replaced != nullptr && replaced->node == node);
        };
        std::erase_if(m_edits, isGone);
        std::erase_if(m_colored, [&node](const CMaterialTarget& target) { return target.node == node; });
    }

    /** Replaced objects come first in a script, so what was done before to a material everywhere must not have its name. */
    CStatus KeepsMaterials(const CReplaceEdit& edit) const {
        if (m_changedEverywhere.empty()) return CDone{};
        const CResult<CScene> read = CSceneReader::ReadFile(edit.path);
        if (!read) return read.Error();
        for (const Lib3dsMaterial* material = read.Value().Header()->materials; material;
             material = material->next) {
            if (m_changedEverywhere.contains(std::string_view(material->name)))
                return Unsayable(
                    lng::Mark("a scene script cannot express a replaced object with a material that "
                              "was changed before"),
                    edit.node);
        }
        return CDone{};
    }

    std::vector<CEdit> m_edits;
    std::vector<CMaterialTarget> m_colored;
    CNameSet m_turned, m_changedEverywhere;
};

}  // namespace

CResult<std::vector<CEdit>> FoldEdits(std::span<const CEdit> edits) {
    CFolding folding;
    for (const CEdit& edit : edits) {
        const CStatus added = folding.Add(edit);
        if (!added) return added.Error();
    }
    return folding.Take();
}
