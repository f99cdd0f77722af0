// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "base/CResult.h"
#include "base/name_hash.h"

class CGlbFile;
class CGltfMeshes;
class CGltfNodes;
class CGltfViewers;
class CJobProgress;
class CJsonText;
struct CPreparedNode;
struct CPreparedScene;

/** The animation of a glTF file: the scene's tracks sampled at whole frames, 30 of which are a second, the first frame at
 * 0. Keys that interpolation gives anyway are left out, up to kTurnTolerance and kMoveTolerance. Where frames and keys,
 * or what is left of them, are beyond a budget, every second frame is sampled, or every third, and so on. */
class CGltfAnimation {
  public:
    static constexpr float kTurnTolerance = 3e-4f;  ///< radians; of scales, their share
    /** Of the scene's radius, or of the way that a node goes, if that is less. */
    static constexpr float kMoveTolerance = 1e-4f;

    CGltfAnimation(const CPreparedScene& scene, const CGltfNodes& nodes, const CGltfViewers& viewers,
                   const CGltfMeshes& meshes, CGlbFile& file)
        : m_scene(scene), m_nodes(nodes), m_viewers(viewers), m_meshes(meshes), m_file(file) {}

    /** Works on all cores. */
    [[nodiscard]] CStatus Sample(CJobProgress* progress);
    /** Writes the member "animations". */
    void Write(CJsonText& json) const;

  private:
    enum class EPath : std::uint8_t { Translation, Rotation, Scale, Weights };
    /** One property of one node over time. */
    struct CTrack {
        int node = 0;
        EPath path = EPath::Translation;
        bool steps = false;
        std::vector<std::uint32_t> keys;  ///< samples
        std::vector<float> values;        ///< of the keys
    };
    using CTracks = std::vector<CTrack>;
    struct CChannel {
        int node, input, output;
        EPath path;
        bool steps;
    };

    /** Frames between two samples, by the time that sampling takes. */
    [[nodiscard]] double LeastApart() const;
    void ChooseFrames(double apart);
    /** The tracks of all nodes, the viewers' last. False, and some are missing, where they are too large together. */
    [[nodiscard]] bool TakeTracks(std::vector<CTracks>& tracks, CJobProgress* progress) const;
    [[nodiscard]] CTracks TracksOf(std::size_t node) const;
    void AddHiding(std::size_t node, CTracks& tracks) const;
    void AddWeights(std::size_t node, CTracks& tracks) const;
    /** Reduces samples and adds a track, unless the node stands like that all the time. */
    void AddTrack(int node, EPath path, std::vector<float> samples, std::span<const float> still,
                  CTracks& tracks) const;
    [[nodiscard]] float ToleranceOf(EPath path, std::span<const float> samples, std::size_t dimensions) const;
    void SampleViewers(CTracks& tracks) const;
    void Append(const CTrack& track);
    [[nodiscard]] int TimesOf(const std::vector<std::uint32_t>& keys);

    const CPreparedScene& m_scene;
    const CGltfNodes& m_nodes;
    const CGltfViewers& m_viewers;
    const CGltfMeshes& m_meshes;
    CGlbFile& m_file;
    std::vector<float> m_frames, m_times;
    CNameMap<int> m_knownTimes;  ///< accessors by the bytes of the keys
    std::vector<CChannel> m_channels;
};
