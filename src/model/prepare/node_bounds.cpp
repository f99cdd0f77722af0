// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cmath>
#include <utility>

#include "base/jobs/parallel_for.h"
#include "model/prepare/CPreparedScene.h"
#include "model/prepare/node_steps.h"
#include "model/scene/scene_budget.h"

namespace {
constexpr std::size_t kWorthThreads = 200'000;  // vertices; a thread takes as long to begin as 20,000 take

const CPreparedMesh& MeshOf(const CPreparedScene& prepared, const CPreparedNode& node) {
    return prepared.meshes[static_cast<std::size_t>(node.mesh)];
}

/** True where the transform takes boxes to boxes: it moves, scales, mirrors, or turns by right angles. */
bool KeepsBoxes(const CMat4& matrix) {
    for (std::size_t row = 0; row < 3; ++row) {
        const std::array<float, 4> values = matrix.Row(row);
        if (std::count(values.begin(), values.begin() + 3, 0.0f) < 2) return false;
    }
    return true;
}

CBox BoundsOfVertices(const CPreparedMesh& mesh, const CMat4& toWorld) {
    CBox box;
    for (const CPreparedVertex& vertex : mesh.vertices) box.Add(toWorld.TransformPoint(vertex.Position()));
    return box;
}

/** Gives each node the bounds that cost nothing, and returns those whose vertices must be asked. */
std::vector<CPreparedNode*> SetCheapBounds(CPreparedScene& prepared, std::size_t& vertices) {
    std::vector<CPreparedNode*> rest;
    std::uint64_t budget = scene_budget::kVerticesForBounds;
    vertices = 0;
    for (CPreparedNode& node : prepared.nodes) {
        if (node.mesh < 0) {
            node.worldBounds = {};
            continue;
        }
        const CPreparedMesh& mesh = MeshOf(prepared, node);
        const bool affordable = node.visible && mesh.vertices.size() <= budget;
        if (affordable) budget -= mesh.vertices.size();
        if (affordable && mesh.stamp != 0 && node.boundsStamp == mesh.stamp) continue;
        node.boundsStamp = affordable ? mesh.stamp : 0;
        if (affordable && !mesh.vertices.empty() && !KeepsBoxes(node.meshToWorld)) {
            rest.push_back(&node);
            vertices += mesh.vertices.size();
        } else {
            node.worldBounds = mesh.bounds.Transformed(node.meshToWorld);
        }
    }
    return rest;
}

double SquareTo(CVec3 a, CVec3 b) {
    const CVec3 d = a - b;
    return static_cast<double>(Dot(d, d));
}

double FarthestCorner(const CBox& box, CVec3 center) {
    double farthest = 0;
    for (unsigned i = 0; i < 8; ++i) farthest = std::max(farthest, SquareTo(box.Corner(i), center));
    return farthest;
}

double FarthestVertex(const CPreparedMesh& mesh, const CMat4& toWorld, CVec3 center) {
    double farthest = 0;
    for (const CPreparedVertex& vertex : mesh.vertices)
        farthest = std::max(farthest, SquareTo(toWorld.TransformPoint(vertex.Position()), center));
    return farthest;
}

/** The sphere round the box's middle through the farthest vertex: tighter than round the box's corners. */
CSphere SphereOf(const CPreparedScene& prepared) {
    const CVec3 center = prepared.bounds.Center();
    std::vector<std::pair<double, const CPreparedNode*>> nodes;  // with the square to the farthest corner
    for (const CPreparedNode& node : prepared.nodes) {
        if (node.visible && !node.worldBounds.IsEmpty())
            nodes.emplace_back(FarthestCorner(node.worldBounds, center), &node);
    }
    const auto farther = [](const auto& a, const auto& b) { return a.first > b.first; };
    std::stable_sort(nodes.begin(), nodes.end(), farther);
    std::uint64_t budget = scene_budget::kVerticesForBounds;
    double farthest = 0;
    for (const auto& [corner, node] : nodes) {
        if (corner <= farthest) break;
        const CPreparedMesh& mesh = MeshOf(prepared, *node);
        const bool affordable = !mesh.vertices.empty() && mesh.vertices.size() <= budget;
        if (affordable) budget -= mesh.vertices.size();
        farthest = std::max(farthest, affordable ? FarthestVertex(mesh, node->meshToWorld, center) : corner);
    }
    return {center, static_cast<float>(std::sqrt(farthest))};
}
}  // namespace

void EvaluateBounds(CPreparedScene& prepared, unsigned threads) {
    std::size_t vertices = 0;
    const std::vector<CPreparedNode*> nodes = SetCheapBounds(prepared, vertices);
    ParallelFor(nodes.size(), vertices < kWorthThreads ? 1 : threads, [&](std::size_t i) {
        nodes[i]->worldBounds = BoundsOfVertices(MeshOf(prepared, *nodes[i]), nodes[i]->meshToWorld);
    });
    prepared.bounds = {};
    for (const CPreparedNode& node : prepared.nodes) {
        if (node.visible) prepared.bounds.Add(node.worldBounds);
    }
    prepared.boundingSphere = SphereOf(prepared);
}
