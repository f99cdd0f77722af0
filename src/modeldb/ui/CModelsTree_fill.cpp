// SPDX-License-Identifier: MIT
// What is put into the tree, and taken out of it.
#include <wx/stopwatch.h>

#include <algorithm>
#include <span>
#include <utility>

#include "base/text/lng.h"
#include "base/text/utf8_text.h"
#include "modeldb/client/C3DModelsLoadApi.h"
#include "modeldb/transfer/ui/CLoadGroupsThread.h"
#include "modeldb/transfer/ui/CLoadModelThread.h"
#include "modeldb/transfer/ui/CLoadModelsThread.h"
#include "modeldb/transfer/ui/payload_records.h"
#include "modeldb/ui/C3dsTreeItemData.h"
#include "modeldb/ui/CModelsTree.h"

namespace {

constexpr int kIcon = 0;
constexpr long kSliceMs = 10;
/** The toolkit measures the texts of a slice afterwards, which takes some 20 us each. */
constexpr std::size_t kMostOfSlice = 500;

/** A name of the library's, in one line. */
wxString Label(const std::string& name) {
    return lng::ConvertFromUTF8(utf8_text::Printable(name, '_'));
}

}  // namespace

C3dsTreeItemData* CModelsTree::DataOf(const wxTreeItemId& item) const {
    return item.IsOk() ? static_cast<C3dsTreeItemData*>(GetItemData(item)) : nullptr;
}

void CModelsTree::AddGroups(const CGroupsData& groups) {
    for (const auto& [name, count] : groups.groups) {
        const wxTreeItemId item =
            AppendItem(GetRootItem(), wxEmptyString, kIcon, kIcon, new C3dsTreeItemData(name));
        ShowCount(item, count);
    }
    m_actions.changed();
}

void CModelsTree::ShowCount(const wxTreeItemId& group, std::uint64_t count) {
    SetItemText(group, Label(DataOf(group)->name) +
                           wxString::Format("(%llu)", static_cast<unsigned long long>(count)));
    if (count > 0) SetItemHasChildren(group, true);
}

void CModelsTree::AddModels(std::unique_ptr<CModelsData> models) {
    const wxTreeItemId group = models->item;
    DataOf(group)->loaded = true;
    if (models->models.empty()) return SetItemHasChildren(group, false);
    m_fills.push_back({group, std::move(models->models)});
    FillSome();
    Expand(group);
}

void CModelsTree::AddModel(const wxTreeItemId& group, const CSmpModel& model) {
    AppendItem(group, Label(model.name), kIcon, kIcon, new C3dsTreeItemData(model.id, model.name));
    SetItemHasChildren(group, true);
}

void CModelsTree::FillSome() {
    const wxStopWatch watch;
    CFill& fill = m_fills.front();
    const std::size_t first = fill.next;
    const std::size_t end = std::min(fill.models.size(), first + kMostOfSlice);
    while (fill.next < end && watch.Time() < kSliceMs) AddModel(fill.group, fill.models[fill.next++]);
    m_models.Add(DataOf(fill.group)->name, std::span(fill.models).subspan(first, fill.next - first));
    if (fill.next == fill.models.size()) m_fills.pop_front();
    m_actions.changed();
}

void CModelsTree::ForgetFill(const wxTreeItemId& group) {
    std::erase_if(m_fills, [&group](const CFill& fill) { return fill.group == group; });
}

void CModelsTree::LoadAgain(const wxTreeItemId& item) {
    if (IsBusy()) return;
    C3dsTreeItemData* group = DataOf(item);
    if (!group) {
        m_fills.clear();
        m_models.ForgetAll();
        DeleteChildren(GetRootItem());
        m_actions.changed();
        return LoadGroups();
    }
    ForgetFill(item);
    m_models.Forget(group->name);
    Collapse(item);
    DeleteChildren(item);
    group->loaded = false;
    SetItemHasChildren(item, true);
    m_actions.changed();
    Expand(item);
    if (m_modelsThread) m_firstThread = m_modelsThread->Number();
}

// --- after an upload --------------------------------------------------------------------------------------

wxTreeItemId CModelsTree::FindGroup(const std::string& name) const {
    wxTreeItemIdValue cookie;
    for (wxTreeItemId item = GetFirstChild(GetRootItem(), cookie); item.IsOk();
         item = GetNextChild(GetRootItem(), cookie))
        if (DataOf(item)->name == name) return item;
    return {};
}

void CModelsTree::AddGroupOf(std::uint32_t id) {
    const std::string group = C3DModelsLoadApi::GetModelGroup(id);
    if (group.empty() || m_groupsThread || FindGroup(group).IsOk()) return;
    AppendItem(GetRootItem(), Label(group), kIcon, kIcon, new C3dsTreeItemData(group));
    m_actions.changed();
}

void CModelsTree::ShowModel(std::uint32_t id) {
    const std::string group = C3DModelsLoadApi::GetModelGroup(id);
    if (group.empty()) return;
    const std::string code = C3DModelsLoadApi::GetModelCode(id);
    if (code.empty()) return;
    const wxTreeItemId item = FindGroup(group);
    if (!item.IsOk()) return;
    const CSmpModel model{code, id};
    const auto fill =
        std::ranges::find_if(m_fills, [&item](const CFill& wanted) { return wanted.group == item; });
    if (fill != m_fills.end()) {
        fill->models.push_back(model);
    } else if (DataOf(item)->loaded) {
        AddModel(item, model);
        m_models.Add(group, {&model, 1});
        m_actions.changed();
    }
    ShowCount(item, C3DModelsLoadApi::GetGroupModelsCount(group));
}
