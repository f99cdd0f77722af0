// SPDX-License-Identifier: MIT
#include <lib3ds/file.h>
#include <lib3ds/node.h>

#include <algorithm>
#include <array>
#include <memory>
#include <utility>

#include "model/edit/CEditedScene.h"
#include "model/edit/node_edits.h"
#include "model/scene/lib3ds_copies.h"
#include "model/scene/lib3ds_name.h"

namespace {

using CNameField = std::array<char, 64>;

template <class T, std::size_t N>
std::array<T, N> ArrayOf(const T (&field)[N]) {
    std::array<T, N> result;
    std::copy_n(field, N, result.begin());
    return result;
}

/** A node that is out of the tree; freed with this if it still is. */
struct CNodeOutside {
    explicit CNodeOutside(Lib3dsNode* outside) : node(outside) {}
    CNodeOutside(const CNodeOutside&) = delete;
    CNodeOutside& operator=(const CNodeOutside&) = delete;
    ~CNodeOutside() {
        if (node != nullptr) lib3ds_node_free(node);
    }
    Lib3dsNode* node;
};

/** What points at the node in its list of siblings. */
Lib3dsNode** LinkTo(Lib3dsFile& file, const Lib3dsNode& node) {
    Lib3dsNode** link = node.parent != nullptr ? &node.parent->childs : &file.nodes;
    while (*link != &node) link = &(*link)->next;
    return link;
}

}  // namespace

std::optional<std::size_t> CEditedScene::FindNode(const std::string& name) const {
    if (m_nodes.empty()) {
        for (std::size_t i = 0; i < m_prepared.nodes.size(); ++i) {
            const CPreparedNode& node = m_prepared.nodes[i];
            if (node.kind == ENodeKind::Object || node.kind == ENodeKind::Dummy)
                m_nodes.try_emplace(node.name, i);
        }
    }
    const auto found = m_nodes.find(name);
    return found == m_nodes.end() ? std::nullopt : std::optional(found->second);
}

std::size_t CEditedScene::OwnMesh(std::size_t node) {
    const auto mesh = static_cast<std::size_t>(m_prepared.nodes[node].mesh);
    if (!IsShared(mesh)) return mesh;
    CPreparedMesh copy = m_prepared.meshes[mesh];
    copy.name = NewMeshName(copy.name);
    const std::string name = copy.name;
    AddMesh(m_scene.CopyOfMesh(mesh, name), std::move(copy));
    const std::size_t own = m_prepared.meshes.size() - 1;
    ChangeNode(node).mesh = static_cast<int>(own);
    CopyName(ChangeSource(node).name, name);
    return own;
}

CPreparedNode& CEditedScene::ChangeNode(std::size_t node) {
    m_undo.emplace_back([this, node, before = m_prepared.nodes[node]] {
        m_prepared.nodes[node] = before;
        m_placesChanged = true;
    });
    m_placesChanged = true;
    return m_prepared.nodes[node];
}

Lib3dsNode& CEditedScene::ChangeSource(std::size_t node) {
    Lib3dsNode& source = *m_prepared.nodes[node].source;
    Lib3dsObjectData& data = source.data.object;
    m_undo.emplace_back([&source, &data, name = ArrayOf(source.name), instance = ArrayOf(data.instance),
                         pivot = ArrayOf(data.pivot)] {
        std::copy(name.begin(), name.end(), source.name);
        std::copy(instance.begin(), instance.end(), data.instance);
        std::copy(pivot.begin(), pivot.end(), data.pivot);
    });
    return source;
}

Lib3dsNode& CEditedScene::ChangeTracks(std::size_t node) {
    Lib3dsNode& source = *m_prepared.nodes[node].source;
    m_undo.emplace_back([this, &source, before = node_edits::CTracksBefore(source)] {
        before.PutBack(source);
        m_placesChanged = true;
    });
    m_placesChanged = true;
    return source;
}

void CEditedScene::LinkPrepared(std::size_t index, CPreparedNode node) {
    for (CPreparedNode& other : m_prepared.nodes) {
        if (other.parent >= static_cast<int>(index)) ++other.parent;
    }
    m_prepared.nodes.insert(m_prepared.nodes.begin() + static_cast<std::ptrdiff_t>(index), std::move(node));
    m_nodes.clear();
    m_placesChanged = true;
}

void CEditedScene::UnlinkPrepared(std::size_t index) {
    m_prepared.nodes.erase(m_prepared.nodes.begin() + static_cast<std::ptrdiff_t>(index));
    for (CPreparedNode& other : m_prepared.nodes) {
        if (other.parent > static_cast<int>(index)) --other.parent;
    }
    m_nodes.clear();
    m_placesChanged = true;
}

void CEditedScene::RemoveNode(std::size_t index) {
    const CPreparedNode node = m_prepared.nodes[index];
    if (node.source == nullptr) {
        m_undo.emplace_back([this, index, node] { LinkPrepared(index, node); });
    } else {
        Lib3dsNode** link = LinkTo(*m_scene.Header(), *node.source);
        // Owned by the step alone; std::function wants what it holds to be copyable.
        const auto outside = std::make_shared<CNodeOutside>(nullptr);
        m_undo.emplace_back([this, index, node, link, outside] {
            outside->node->next = *link;
            *link = std::exchange(outside->node, nullptr);
            LinkPrepared(index, node);
        });
        outside->node = node.source;
        *link = std::exchange(node.source->next, nullptr);
    }
    UnlinkPrepared(index);
}
