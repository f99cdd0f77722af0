// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "modeldb/client/CSmpModel.h"
#include "modeldb/records/store_records.h"

/** The models of the groups that were loaded, to be searched without asking the library. Texts are UTF-8. */
class CLoadedModels {
  public:
    void Add(const std::string& group, std::span<const CSmpModel> models);
    void Forget(const std::string& group) { m_groups.erase(group); }
    void ForgetAll() { m_groups.clear(); }

    /** Those whose name holds the text in any letter case, by group and in their order there; at most so many. */
    [[nodiscard]] std::vector<CFoundModel> Find(std::string_view text, std::size_t most) const;

  private:
    struct CEntry {
        CSmpModel model;
        std::wstring folded;
    };
    std::map<std::string, std::vector<CEntry>> m_groups;
};

/** Appends what is not among them yet. */
void AppendNew(std::vector<CFoundModel>& models, const std::vector<CFoundModel>& more);
