// SPDX-License-Identifier: MIT
#include "modeldb/browse/CLoadedModels.h"

#include <unordered_set>

#include "base/text/lng.h"
#include "base/text/natural_order.h"

namespace {

std::wstring FoldedText(std::string_view text) {
    return natural_order::Folded(lng::ConvertFromUTF8(text));
}

}  // namespace

void CLoadedModels::Add(const std::string& group, std::span<const CSmpModel> models) {
    std::vector<CEntry>& entries = m_groups[group];
    for (const CSmpModel& model : models) entries.push_back({model, FoldedText(model.name)});
}

std::vector<CFoundModel> CLoadedModels::Find(std::string_view text, std::size_t most) const {
    std::vector<CFoundModel> found;
    const std::wstring wanted = FoldedText(text);
    for (const auto& [group, entries] : m_groups) {
        for (const CEntry& entry : entries) {
            if (found.size() >= most) return found;
            if (entry.folded.find(wanted) != std::wstring::npos)
                found.push_back({group, entry.model.name, entry.model.id});
        }
    }
    return found;
}

void AppendNew(std::vector<CFoundModel>& models, const std::vector<CFoundModel>& more) {
    std::unordered_set<std::uint32_t> keys;
    for (const CFoundModel& model : models) keys.insert(model.key);
    for (const CFoundModel& model : more)
        if (keys.insert(model.key).second) models.push_back(model);
}
