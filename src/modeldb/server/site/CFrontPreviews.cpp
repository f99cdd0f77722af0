// SPDX-License-Identifier: MIT
#include "modeldb/server/site/CFrontPreviews.h"

#include <utility>

#include "modeldb/store/CModelStore.h"

namespace {

constexpr std::size_t kMostKept = 10'000;

}  // namespace

CResult<std::vector<std::optional<CBlobHash>>> CFrontPreviews::Of(CModelStore& store,
                                                                  const CGroupRecord& group) {
    {
        const std::scoped_lock lock(m_mutex);
        const auto kept = m_kept.find(group.id);
        if (kept != m_kept.end() && kept->second.version == group.version) return kept->second.previews;
    }
    const auto models = store.Models(group.id, std::nullopt, kPreviews);
    if (!models) return models.Error();
    std::vector<std::optional<CBlobHash>> previews;
    for (const CModelSummary& model : models.Value()) {
        const auto preview = store.PreviewOf(model.key);
        if (!preview && preview.Error().code != EErrorCode::NotFound) return preview.Error();
        previews.push_back(preview ? preview.Value() : std::nullopt);
    }
    const std::scoped_lock lock(m_mutex);
    if (m_kept.size() >= kMostKept) m_kept.clear();
    m_kept[group.id] = {group.version, previews};
    return previews;
}
