// SPDX-License-Identifier: MIT
#include "script/fit_names.h"

#include <string>
#include <string_view>

#include "base/name_hash.h"
#include "base/text/ascii_text.h"
#include "model/prepare/CPreparedScene.h"
#include "model/textures/texture_name.h"

namespace {

/** Names of one kind, by themselves and by what they may mean. */
class CNames {
  public:
    void Add(const std::string& name) {
        if (name.empty() || !m_names.insert(name).second) return;
        for (std::string& key : texture_name::ReferenceKeys(name)) {
            const auto [known, isNew] = m_byKey.try_emplace(std::move(key), name);
            if (!isNew) known->second.clear();  // it could mean several
        }
    }

    void Fit(std::string& name) const {
        if (name.empty() || m_names.contains(name)) return;
        for (const std::string_view wanted : {Trimmed(name), Unquoted(name)}) {
            if (m_names.contains(wanted)) {
                name = std::string(wanted);
                return;
            }
            for (const std::string& key : texture_name::ReferenceKeys(wanted)) {
                const auto found = m_byKey.find(key);
                if (found == m_byKey.end() || found->second.empty()) continue;
                name = found->second;
                return;
            }
        }
    }

  private:
    static std::string_view Trimmed(std::string_view name) { return ascii_text::Trimmed(name); }
    static std::string_view Unquoted(std::string_view name) { return ascii_text::Trimmed(name, " \t\""); }

    CNameSet m_names;
    CNameMap<std::string> m_byKey;
};

}  // namespace

void FitNames(std::vector<CEdit>& edits, const CPreparedScene& scene) {
    if (edits.empty()) return;
    CNames nodes, materials;
    for (const CPreparedNode& node : scene.nodes) nodes.Add(node.name);
    for (const CPreparedMaterial& material : scene.materials) materials.Add(material.name);
    for (CEdit& edit : edits) {
        std::visit(
            [&](auto& one) {
                if constexpr (requires { one.target; }) {
                    nodes.Fit(one.target.node);
                    materials.Fit(one.target.material);
                } else {
                    nodes.Fit(one.node);
                }
            },
            edit);
    }
}
