// SPDX-License-Identifier: MIT
#include "export/gltf/CGltfAnimation.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstring>
#include <utility>

#include "base/jobs/parallel_for.h"
#include "export/gltf/CGltfMeshes.h"
#include "export/gltf/CGltfNodes.h"
#include "export/gltf/CGltfViewers.h"
#include "export/gltf/glb/CGlbFile.h"
#include "export/gltf/glb/CJsonText.h"
#include "export/gltf/parts/key_reduction.h"
#include "export/gltf/viewer_paths.h"
#include "model/prepare/CPreparedScene.h"
#include "model/prepare/prepare_scene.h"

namespace {

constexpr float kFramesPerSecond = 30;
/** Evaluating a track goes by its list of keys. */
constexpr double kMostSteps = 2e8, kMostFrames = 50'000;
/** In all tracks: 32 MB. */
constexpr std::size_t kMostNumbers = 8'000'000;

constexpr const char* kPaths[] = {"translation", "rotation", "scale", "weights"};

void Put(std::vector<float>& out, CVec3 v) {
    out.insert(out.end(), {v.x, v.y, v.z});
}

std::array<float, 3> ListOf(CVec3 v) {
    return {v.x, v.y, v.z};
}

}  // namespace

double CGltfAnimation::LeastApart() const {
    double steps = static_cast<double>(m_viewers.All().size()) * 8;
    for (const CPreparedNode& node : m_scene.nodes) {
        const CKeyCounts keys = KeyCountsOf(node);
        steps += static_cast<double>(keys.position + keys.turn + keys.scale + node.morph.keys.size());
    }
    const double frames = static_cast<double>(m_scene.lastFrame) - static_cast<double>(m_scene.firstFrame);
    return std::ceil(std::max({1.0, frames / kMostFrames, frames * std::max(steps, 1.0) / kMostSteps}));
}

void CGltfAnimation::ChooseFrames(double apart) {
    const auto first = static_cast<double>(m_scene.firstFrame), last = static_cast<double>(m_scene.lastFrame);
    m_frames.clear();
    m_times.clear();
    const auto steps = static_cast<std::size_t>(std::max(0.0, std::ceil((last - first) / apart)));
    m_frames.reserve(steps + 1);
    for (std::size_t i = 0; i < steps; ++i)
        m_frames.push_back(static_cast<float>(first + static_cast<double>(i) * apart));
    m_frames.push_back(m_scene.lastFrame);
    for (const float frame : m_frames) m_times.push_back((frame - m_scene.firstFrame) / kFramesPerSecond);
}

float CGltfAnimation::ToleranceOf(EPath path, std::span<const float> samples, std::size_t dimensions) const {
    if (path == EPath::Rotation || path == EPath::Weights) return kTurnTolerance;
    float longest = 0, largest = 0;
    for (std::size_t i = 0; i < samples.size(); ++i) {
        longest = std::max(longest, std::abs(samples[i] - samples[i % dimensions]));
        largest = std::max(largest, std::abs(samples[i]));
    }
    if (path == EPath::Scale) return kTurnTolerance * largest;
    const float radius = m_scene.boundingSphere.radius;
    return kMoveTolerance * (radius > 0 ? std::min(radius, longest) : longest);
}

void CGltfAnimation::AddTrack(int node, EPath path, std::vector<float> samples, std::span<const float> still,
                              CTracks& tracks) const {
    const std::size_t dimensions = still.size();
    CTrack track{node, path, false, {}, {}};
    const float tolerance = ToleranceOf(path, samples, dimensions);
    track.keys = path == EPath::Rotation ? key_reduction::KeptTurns(m_times, samples, tolerance)
                                         : key_reduction::KeptValues(m_times, samples, dimensions, tolerance);
    for (const std::uint32_t key : track.keys) {
        const auto begin = samples.begin() + static_cast<std::ptrdiff_t>(key * dimensions);
        track.values.insert(track.values.end(), begin, begin + static_cast<std::ptrdiff_t>(dimensions));
    }
    const bool isStill =
        track.keys.size() == 1 && std::equal(still.begin(), still.end(), track.values.begin());
    if (!isStill) tracks.push_back(std::move(track));
}

CGltfAnimation::CTracks CGltfAnimation::TracksOf(std::size_t n) const {
    CTracks tracks;
    const CPreparedNode& node = m_scene.nodes[n];
    const int posed = m_nodes.PosedBy(n);
    const CKeyCounts keys = KeyCountsOf(node);
    if (posed >= 0 && std::max({keys.position, keys.turn, keys.scale}) > 1) {
        std::vector<float> places, turns, scales;
        for (const float frame : m_frames) {
            const CNodePose pose = PoseOf(node, frame);
            Put(places, pose.position);
            turns.insert(turns.end(), pose.turn.begin(), pose.turn.end());
            Put(scales, pose.scale);
        }
        const CGltfTransform& still = m_nodes.At(posed).transform;
        if (keys.position > 1)
            AddTrack(posed, EPath::Translation, std::move(places), ListOf(still.translation), tracks);
        if (keys.turn > 1) AddTrack(posed, EPath::Rotation, std::move(turns), still.rotation, tracks);
        if (keys.scale > 1) AddTrack(posed, EPath::Scale, std::move(scales), ListOf(still.scale), tracks);
    }
    AddHiding(n, tracks);
    AddWeights(n, tracks);
    return tracks;
}

void CGltfAnimation::AddHiding(std::size_t n, CTracks& tracks) const {
    const CGltfNodes::CHolder& holder = m_nodes.HolderOf(n);
    if (holder.hiding < 0) return;
    CTrack track{holder.hiding, EPath::Scale, true, {}, {}};
    const std::vector<float> switches = HideFrames(m_scene.nodes[n]);
    bool shown = true, wasShown = false;
    std::size_t next = 0;
    for (std::uint32_t i = 0; i < m_frames.size(); ++i) {
        // As in EvaluateNodes: of keys that are out of order those behind a later one wait for it.
        for (; next < switches.size() && switches[next] <= m_frames[i]; ++next) shown = !shown;
        if (i > 0 && shown == wasShown) continue;
        wasShown = shown;
        track.keys.push_back(i);
        Put(track.values, shown ? holder.scale : CVec3{});
    }
    if (track.keys.size() > 1 || shown != m_scene.nodes[n].visible) tracks.push_back(std::move(track));
}

void CGltfAnimation::AddWeights(std::size_t n, CTracks& tracks) const {
    const CGltfNodes::CHolder& holder = m_nodes.HolderOf(n);
    if (holder.mesh < 0) return;
    const auto morph = m_meshes.Morphs().find(static_cast<std::size_t>(m_scene.nodes[n].mesh));
    if (morph == m_meshes.Morphs().end()) return;
    constexpr std::size_t kMostWeights = 4'000'000;
    if (morph->second.others.size() * m_frames.size() > kMostWeights) return;
    std::vector<float> samples;
    for (const float frame : m_frames) {
        const std::vector<float> weights =
            morph->second.WeightsOf(MorphShapeAt(m_scene.nodes[n].morph, frame));
        samples.insert(samples.end(), weights.begin(), weights.end());
    }
    AddTrack(holder.mesh, EPath::Weights, std::move(samples), m_nodes.At(holder.mesh).weights, tracks);
}

void CGltfAnimation::SampleViewers(CTracks& tracks) const {
    const std::vector<CViewerPath> paths = ViewerPaths(m_scene, m_viewers.All(), m_frames);
    for (const CViewerPath& path : paths) {
        const CGltfViewer& viewer = m_viewers.All()[path.viewer];
        std::vector<float> places, targets, turns;
        for (const CViewerPath::CPose& pose : path.poses) {
            Put(places, pose.position);
            Put(targets, pose.target);
            const auto turn = CGltfViewer::TurnBetween(pose.position, pose.target, pose.rollDeg);
            turns.insert(turns.end(), turn.begin(), turn.end());
        }
        const CGltfTransform& still = m_nodes.At(viewer.node).transform;
        AddTrack(viewer.node, EPath::Translation, std::move(places), ListOf(still.translation), tracks);
        if (!viewer.turns) continue;
        AddTrack(viewer.node, EPath::Rotation, std::move(turns), still.rotation, tracks);
        AddTrack(viewer.targetNode, EPath::Translation, std::move(targets),
                 ListOf(m_nodes.At(viewer.targetNode).transform.translation), tracks);
    }
}

bool CGltfAnimation::TakeTracks(std::vector<CTracks>& tracks, CJobProgress* progress) const {
    std::atomic<std::size_t> numbers = 0;
    tracks.assign(m_scene.nodes.size() + 1, {});
    ParallelFor(tracks.size(), 0, [&](std::size_t n) {
        if (numbers > kMostNumbers || !NotCancelled(progress)) return;
        if (n < m_scene.nodes.size())
            tracks[n] = TracksOf(n);
        else
            SampleViewers(tracks[n]);
        for (const CTrack& track : tracks[n]) numbers += track.keys.size() + track.values.size();
    });
    return numbers <= kMostNumbers;
}

CStatus CGltfAnimation::Sample(CJobProgress* progress) {
    if (!m_scene.animated || !(m_scene.lastFrame > m_scene.firstFrame)) return CDone{};
    std::vector<CTracks> tracks;
    double apart = LeastApart();
    for (bool fits = false; !fits; apart *= 2) {
        ChooseFrames(apart);
        // Of two frames there is nothing to leave out.
        fits = TakeTracks(tracks, progress) || m_frames.size() <= 2;
        if (CStatus status = NotCancelled(progress); !status) return status;
    }
    for (const CTracks& ofNode : tracks) {
        for (const CTrack& track : ofNode) Append(track);
    }
    return CDone{};
}

int CGltfAnimation::TimesOf(const std::vector<std::uint32_t>& keys) {
    std::string bytes(keys.size() * sizeof(keys[0]), '\0');
    std::memcpy(bytes.data(), keys.data(), bytes.size());
    const auto [place, isNew] = m_knownTimes.try_emplace(std::move(bytes), 0);
    if (!isNew) return place->second;
    std::vector<float> times;
    times.reserve(keys.size());
    for (const std::uint32_t key : keys) times.push_back(m_times[key]);
    CGlbAccessor accessor;
    accessor.type = "SCALAR";
    accessor.count = times.size();
    accessor.min = {static_cast<double>(times.front())};
    accessor.max = {static_cast<double>(times.back())};
    accessor.place = m_file.Append(EGlbStream::Scalars, std::as_bytes(std::span(times)));
    return place->second = m_file.AddAccessor(std::move(accessor));
}

void CGltfAnimation::Append(const CTrack& track) {
    constexpr EGlbStream kStreams[] = {EGlbStream::Vectors3, EGlbStream::Vectors4, EGlbStream::Vectors3,
                                       EGlbStream::Scalars};
    constexpr const char* kTypes[] = {"VEC3", "VEC4", "VEC3", "SCALAR"};
    const auto path = static_cast<std::size_t>(track.path);
    CGlbAccessor accessor;
    accessor.type = kTypes[path];
    accessor.count = track.path == EPath::Weights ? track.values.size() : track.keys.size();
    accessor.place = m_file.Append(kStreams[path], std::as_bytes(std::span(track.values)));
    const int input = TimesOf(track.keys);
    m_channels.push_back(
        {track.node, input, m_file.AddAccessor(std::move(accessor)), track.path, track.steps});
}

void CGltfAnimation::Write(CJsonText& json) const {
    if (m_channels.empty()) return;
    json.Key("animations").BeginArray().BeginObject().Member("name", "scene").Key("samplers").BeginArray();
    for (const CChannel& channel : m_channels) {
        json.BeginObject().Member("input", channel.input).Member("output", channel.output);
        if (channel.steps) json.Member("interpolation", "STEP");
        json.EndObject();
    }
    json.EndArray().Key("channels").BeginArray();
    for (std::size_t i = 0; i < m_channels.size(); ++i) {
        json.BeginObject().Member("sampler", i).Key("target").BeginObject();
        json.Member("node", m_channels[i].node);
        json.Member("path", kPaths[static_cast<std::size_t>(m_channels[i].path)]).EndObject().EndObject();
    }
    json.EndArray().EndObject().EndArray();
}
