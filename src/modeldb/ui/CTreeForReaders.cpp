// SPDX-License-Identifier: MIT
#include "modeldb/ui/CTreeForReaders.h"

#include <algorithm>
#include <array>
#include <utility>

namespace {

CDrawnItems::CKey KeyOf(const wxTreeItemId& item) {
    return reinterpret_cast<CDrawnItems::CKey>(item.GetID());
}

wxTreeItemId IdOf(CDrawnItems::CKey item) {
    return wxTreeItemId(reinterpret_cast<void*>(item));
}

const std::array kChanges{wxEVT_TREE_SEL_CHANGED, wxEVT_TREE_ITEM_EXPANDED, wxEVT_TREE_ITEM_COLLAPSED};

}  // namespace

CTreeForReaders::CTreeForReaders(wxTreeCtrl& tree, std::function<void(const wxTreeItemId&)> activate)
    : m_tree(tree), m_activate(std::move(activate)), m_access(tree, EAccessibleRole::Tree, *this) {
    for (const auto& kind : kChanges) tree.Bind(kind, &CTreeForReaders::OnChange, this);
    tree.Bind(wxEVT_TREE_DELETE_ITEM, &CTreeForReaders::OnDelete, this);
}

/** The tree deletes its items after that. */
CTreeForReaders::~CTreeForReaders() {
    for (const auto& kind : kChanges) m_tree.Unbind(kind, &CTreeForReaders::OnChange, this);
    m_tree.Unbind(wxEVT_TREE_DELETE_ITEM, &CTreeForReaders::OnDelete, this);
}

void CTreeForReaders::OnChange(wxTreeEvent& event) {
    m_access.Changed();
    event.Skip();
}

/** Another item may get the number of one that is deleted. */
void CTreeForReaders::OnDelete(wxTreeEvent& event) {
    m_access.Forget();
    m_parent = kNone;
    m_children.clear();
    event.Skip();
}

/** What an item holds is there for readers while it is seen. */
std::size_t CTreeForReaders::CountOf(CKey parent) const {
    if (parent == kNone) return m_tree.GetRootItem().IsOk() ? 1 : 0;
    return m_tree.IsExpanded(IdOf(parent)) ? m_tree.GetChildrenCount(IdOf(parent), false) : 0;
}

/** They are asked for one after the other, and there may be very many. */
const std::vector<CDrawnItems::CKey>& CTreeForReaders::ChildrenOf(CKey parent) const {
    if (parent == m_parent && m_children.size() == m_tree.GetChildrenCount(IdOf(parent), false))
        return m_children;
    m_parent = parent;
    m_children.clear();
    wxTreeItemIdValue cookie;
    for (wxTreeItemId item = m_tree.GetFirstChild(IdOf(parent), cookie); item.IsOk();
         item = m_tree.GetNextChild(IdOf(parent), cookie))
        m_children.push_back(KeyOf(item));
    return m_children;
}

CDrawnItems::CKey CTreeForReaders::ItemOf(CKey parent, std::size_t index) const {
    return parent == kNone ? KeyOf(m_tree.GetRootItem()) : ChildrenOf(parent)[index];
}

CDrawnItem CTreeForReaders::Describe(CKey item) const {
    const wxTreeItemId id = IdOf(item);
    wxRect place;
    if (!m_tree.GetBoundingRect(id, place, true)) place = {};
    return {.role = EAccessibleRole::TreeItem,
            .name = m_tree.GetItemText(id).ToStdWstring(),
            .place = place.Intersect(m_tree.GetClientRect()),
            .isSelected = m_tree.IsSelected(id),
            .canExpand = m_tree.ItemHasChildren(id),
            .isExpanded = m_tree.IsExpanded(id)};
}

CDrawnItems::CKey CTreeForReaders::ParentOf(CKey item) const {
    return KeyOf(m_tree.GetItemParent(IdOf(item)));
}

std::size_t CTreeForReaders::IndexOf(CKey item) const {
    const CKey parent = ParentOf(item);
    if (parent == kNone) return 0;
    const std::vector<CKey>& children = ChildrenOf(parent);
    return static_cast<std::size_t>(std::ranges::find(children, item) - children.begin());
}

CDrawnItems::CKey CTreeForReaders::Current() const {
    const wxTreeItemId item = m_tree.GetFocusedItem();
    return KeyOf(item.IsOk() ? item : m_tree.GetRootItem());
}

void CTreeForReaders::Press(CKey item) {
    const wxTreeItemId id = IdOf(item);
    if (id != m_tree.GetSelection() && !m_tree.ItemHasChildren(id))
        m_tree.SelectItem(id);  // which downloads it, as a click does
    else
        m_activate(id);
}
