// SPDX-License-Identifier: MIT
#include "model/read_3ds/link_nodes.h"

#include <lib3ds/file.h>
#include <lib3ds/node.h>

#include <vector>

#include "model/scene/CNoteList.h"
#include "model/scene/scene_budget.h"

namespace {
/** Gives each node an id of its own; the first that has one keeps it. byId maps ids to nodes. */
void MakeIdsUnique(const std::vector<Lib3dsNode*>& nodes, std::vector<Lib3dsNode*>& byId, CNoteList& notes) {
    byId.assign(65536, nullptr);
    std::vector<Lib3dsNode*> homeless;
    for (Lib3dsNode* node : nodes) {
        if (node->node_id == LIB3DS_NO_PARENT || byId[node->node_id])
            homeless.push_back(node);
        else
            byId[node->node_id] = node;
    }
    std::size_t next = 0;
    for (Lib3dsNode* node : homeless) {
        while (byId[next]) ++next;
        node->node_id = static_cast<Lib3dsWord>(next);
        byId[next] = node;
        notes.Repaired("A node without an id of its own got one");
    }
}

/** Cuts the link to the parent where going up would not end. */
void BreakCycles(const std::vector<Lib3dsNode*>& nodes, CNoteList& notes) {
    // lib3ds goes down by recursion when it writes and frees.
    constexpr int kMaxDepth = static_cast<int>(scene_budget::kNodeDepth);
    constexpr int kUnknown = -1, kOnPath = -2;
    for (Lib3dsNode* node : nodes) node->user.i = kUnknown;
    std::vector<Lib3dsNode*> path;
    for (Lib3dsNode* start : nodes) {
        Lib3dsNode* node = start;
        for (; node && node->user.i == kUnknown; node = node->parent) {
            node->user.i = kOnPath;
            path.push_back(node);
        }
        if (node && node->user.i == kOnPath) {
            notes.Repaired("A node that is its own ancestor was made a root");
            path.back()->parent = nullptr;
            node = nullptr;
        }
        for (int depth = node ? node->user.i : -1; !path.empty(); path.pop_back()) {
            if (++depth >= kMaxDepth) {
                notes.Limited("A chain of more than 8,192 nodes was cut");
                path.back()->parent = nullptr;
                depth = 0;
            }
            path.back()->user.i = depth;
        }
    }
    for (Lib3dsNode* node : nodes) node->user.p = nullptr;
}
}  // namespace

void LinkNodes(Lib3dsFile& file, CNoteList& notes) {
    std::vector<Lib3dsNode*> nodes;
    for (Lib3dsNode* node = file.nodes; node; node = node->next) nodes.push_back(node);
    std::vector<Lib3dsNode*> byId;
    MakeIdsUnique(nodes, byId, notes);
    for (Lib3dsNode* node : nodes) {
        node->parent = node->parent_id == LIB3DS_NO_PARENT ? nullptr : byId[node->parent_id];
        if (node->parent_id != LIB3DS_NO_PARENT && !node->parent)
            notes.Repaired("A node whose parent is not there was made a root");
    }
    BreakCycles(nodes, notes);

    std::vector<Lib3dsNode*> lastChild(65536, nullptr);
    Lib3dsNode* lastRoot = nullptr;
    file.nodes = nullptr;
    for (Lib3dsNode* node : nodes) {
        node->next = nullptr;
        node->parent_id = node->parent ? node->parent->node_id : static_cast<Lib3dsWord>(LIB3DS_NO_PARENT);
        Lib3dsNode*& last = node->parent ? lastChild[node->parent->node_id] : lastRoot;
        Lib3dsNode*& first = node->parent ? node->parent->childs : file.nodes;
        (last ? last->next : first) = node;
        last = node;
    }
}
