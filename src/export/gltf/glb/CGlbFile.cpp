// SPDX-License-Identifier: MIT
#include "export/gltf/glb/CGlbFile.h"

#include <meshoptimizer.h>

#include <algorithm>
#include <cstring>
#include <limits>
#include <utility>

#include "base/jobs/CJobProgress.h"
#include "base/jobs/parallel_for.h"
#include "base/text/lng.h"
#include "export/gltf/glb/CJsonText.h"

namespace {

/** How views of a kind are described and packed. */
struct CStreamKind {
    std::size_t stride, packedStride;
    int target;          ///< glTF's number for vertices or indices; 0: neither
    const char* filter;  ///< that the reader applies; null: none
};
constexpr int kVertices = 34962, kIndices = 34963;
constexpr std::array<CStreamKind, 10> kKinds{{{12, 8, kVertices, nullptr},
                                              {12, 4, kVertices, "OCTAHEDRAL"},
                                              {8, 8, kVertices, "EXPONENTIAL"},
                                              {2, 2, kIndices, nullptr},
                                              {4, 4, kIndices, nullptr},
                                              {4, 4, 0, nullptr},
                                              {12, 12, 0, nullptr},
                                              {16, 16, 0, nullptr},
                                              {12, 8, kVertices, nullptr},
                                              {12, 12, kVertices, "EXPONENTIAL"}}};

/** Views are packed beside each other, one on each core. */
constexpr std::size_t kViewBytes = 1U << 20;
/** The packing of indices goes by what came before, so those of a larger mesh get a view of their own. */
constexpr std::size_t kOwnIndexBytes = 4096;
constexpr std::uint64_t kMostBytes = std::numeric_limits<std::uint32_t>::max();

const CStreamKind& KindOf(EGlbStream stream) {
    return kKinds[static_cast<std::size_t>(stream)];
}

constexpr std::uint64_t Padded(std::uint64_t bytes) {
    return (bytes + 3) & ~std::uint64_t{3};
}

std::vector<unsigned> WideIndices(std::span<const std::byte> bytes, std::size_t size) {
    std::vector<unsigned> indices(bytes.size() / size);
    for (std::size_t i = 0; i < indices.size(); ++i) std::memcpy(&indices[i], &bytes[i * size], size);
    return indices;
}

void Append32(std::vector<std::byte>& out, std::uint64_t value) {
    for (unsigned shift = 0; shift < 32; shift += 8) out.push_back(static_cast<std::byte>(value >> shift));
}

void AppendChunk(std::vector<std::byte>& out, std::uint64_t bytes, std::string_view type) {
    Append32(out, bytes);
    const auto* text = reinterpret_cast<const std::byte*>(type.data());
    out.insert(out.end(), text, text + 4);
}

}  // namespace

CStatus NotCancelled(const CJobProgress* progress) {
    if (progress && progress->IsCancelled()) return CError{EErrorCode::Cancelled, lng::Mark("cancelled"), {}};
    return CDone{};
}

std::size_t CGlbFile::StrideOf(EGlbStream stream) const {
    return m_packs ? KindOf(stream).packedStride : KindOf(stream).stride;
}

CGlbPlace CGlbFile::Append(EGlbStream stream, std::span<const std::byte> data) {
    const bool isOwn = m_packs && KindOf(stream).target == kIndices && data.size() >= kOwnIndexBytes;
    int& open = m_open[static_cast<std::size_t>(stream)];
    int at = isOwn ? -1 : open;
    if (at < 0 || m_views[static_cast<std::size_t>(at)].bytes.size() >= kViewBytes) {
        at = static_cast<int>(m_views.size());
        m_views.push_back({stream, false, {}, {}});
        if (!isOwn) open = at;
    }
    std::vector<std::byte>& bytes = m_views[static_cast<std::size_t>(at)].bytes;
    const CGlbPlace place{at, bytes.size()};
    bytes.insert(bytes.end(), data.begin(), data.end());
    return place;
}

int CGlbFile::AddAccessor(CGlbAccessor accessor) {
    m_accessors.push_back(std::move(accessor));
    return static_cast<int>(m_accessors.size()) - 1;
}

int CGlbFile::AddPicture(std::vector<std::byte> bytes) {
    m_views.push_back({EGlbStream::Positions, true, std::move(bytes), {}});
    return static_cast<int>(m_views.size()) - 1;
}

void CGlbFile::Pack(CView& view) const {
    static const bool isSet = (meshopt_encodeIndexVersion(1), true);
    (void)isSet;
    const CStreamKind& kind = KindOf(view.stream);
    const std::size_t count = view.bytes.size() / kind.packedStride;
    std::size_t size = 0;
    const auto fill = [&](std::size_t bound, const auto& encode) {
        view.packed.resize(bound);
        size = encode(reinterpret_cast<unsigned char*>(view.packed.data()));
    };
    if (kind.target == kIndices) {
        const std::vector<unsigned> indices = WideIndices(view.bytes, kind.packedStride);
        const unsigned most = indices.empty() ? 0 : *std::max_element(indices.begin(), indices.end());
        fill(meshopt_encodeIndexBufferBound(count, std::size_t{most} + 1), [&](unsigned char* out) {
            return meshopt_encodeIndexBuffer(out, view.packed.size(), indices.data(), count);
        });
    } else {
        fill(meshopt_encodeVertexBufferBound(count, kind.packedStride), [&](unsigned char* out) {
            return meshopt_encodeVertexBuffer(out, view.packed.size(), view.bytes.data(), count,
                                              kind.packedStride);
        });
    }
    view.packed.resize(size);
    view.packed.shrink_to_fit();
}

CResult<std::vector<std::byte>> CGlbFile::Finish(CJsonText json, CJobProgress* progress) {
    if (m_packs) {
        ParallelFor(m_views.size(), 0, [&](std::size_t i) {
            if (IsPacked(m_views[i]) && NotCancelled(progress)) Pack(m_views[i]);
        });
    }
    if (CStatus status = NotCancelled(progress); !status) return status.Error();
    if (m_packs && !m_accessors.empty()) {
        UseExtension("EXT_meshopt_compression", true);
        UseExtension("KHR_mesh_quantization", true);
    }
    const std::uint64_t binaryBytes = WriteViews(json);
    WriteAccessors(json);
    WriteExtensions(json);
    json.EndObject();
    return Join(json.Text(), binaryBytes);
}

void CGlbFile::WritePacking(CJsonText& json, const CView& view, std::uint64_t inFile) const {
    const CStreamKind& kind = KindOf(view.stream);
    json.Key("extensions").BeginObject().Key("EXT_meshopt_compression").BeginObject();
    json.Member("buffer", 0).Member("byteOffset", inFile).Member("byteLength", view.packed.size());
    json.Member("byteStride", kind.packedStride).Member("count", view.bytes.size() / kind.packedStride);
    json.Member("mode", kind.target == kIndices ? "TRIANGLES" : "ATTRIBUTES");
    if (kind.filter != nullptr) json.Member("filter", kind.filter);
    json.EndObject().EndObject();
}

void CGlbFile::WriteView(CJsonText& json, const CView& view, std::uint64_t inFile,
                         std::uint64_t unpacked) const {
    const CStreamKind& kind = KindOf(view.stream);
    const bool isPacked = IsPacked(view);
    json.BeginObject().Member("buffer", isPacked ? 1 : 0);
    if (const std::uint64_t offset = isPacked ? unpacked : inFile; offset > 0)
        json.Member("byteOffset", offset);
    json.Member("byteLength", view.bytes.size());
    if (!view.isPicture) {
        if (kind.target == kVertices) json.Member("byteStride", StrideOf(view.stream));
        if (kind.target != 0) json.Member("target", kind.target);
        if (isPacked) WritePacking(json, view, inFile);
    }
    json.EndObject();
}

std::uint64_t CGlbFile::WriteViews(CJsonText& json) const {
    std::uint64_t inFile = 0, unpacked = 0;
    if (m_views.empty()) return 0;
    json.Key("bufferViews").BeginArray();
    for (const CView& view : m_views) {
        WriteView(json, view, inFile, unpacked);
        inFile += Padded(BytesInFile(view).size());
        if (IsPacked(view)) unpacked += Padded(view.bytes.size());
    }
    json.EndArray();
    json.Key("buffers").BeginArray().BeginObject().Member("byteLength", inFile).EndObject();
    if (unpacked > 0) {
        json.BeginObject().Member("byteLength", unpacked).Key("extensions").BeginObject();
        json.Key("EXT_meshopt_compression").BeginObject().Member("fallback", true).EndObject().EndObject();
        json.EndObject();
    }
    json.EndArray();
    return inFile;
}

void CGlbFile::WriteAccessors(CJsonText& json) const {
    if (m_accessors.empty()) return;
    json.Key("accessors").BeginArray();
    for (const CGlbAccessor& accessor : m_accessors) {
        json.BeginObject().Member("bufferView", accessor.place.view);
        if (accessor.place.offset > 0) json.Member("byteOffset", accessor.place.offset);
        json.Member("componentType", static_cast<int>(accessor.component));
        if (accessor.normalized) json.Member("normalized", true);
        json.Member("count", accessor.count).Member("type", accessor.type);
        for (const auto& [key, values] : {std::pair{"min", &accessor.min}, {"max", &accessor.max}}) {
            if (values->empty()) continue;
            json.Key(key).BeginArray();
            for (const double value : *values) json.ValueOfNineDigits(value);
            json.EndArray();
        }
        json.EndObject();
    }
    json.EndArray();
}

void CGlbFile::WriteExtensions(CJsonText& json) const {
    const auto write = [&](const char* key, bool all) {
        const auto isListed = [&](const auto& entry) { return all || entry.second; };
        if (std::none_of(m_extensions.begin(), m_extensions.end(), isListed)) return;
        json.Key(key).BeginArray();
        for (const auto& entry : m_extensions) {
            if (isListed(entry)) json.Value(entry.first);
        }
        json.EndArray();
    };
    write("extensionsUsed", true);
    write("extensionsRequired", false);
}

CResult<std::vector<std::byte>> CGlbFile::Join(std::string_view json, std::uint64_t binaryBytes) {
    const std::uint64_t textBytes = Padded(json.size());
    const std::uint64_t all = 12 + 8 + textBytes + (binaryBytes > 0 ? 8 + binaryBytes : 0);
    if (all > kMostBytes) {
        return CError{
            EErrorCode::TooLarge, lng::Mark("the scene is too large for glTF, which holds 4 GB"), {}};
    }
    std::vector<std::byte> out;
    out.reserve(static_cast<std::size_t>(all));
    AppendChunk(out, 0x46546C67, {"\2\0\0\0", 4});  // "glTF", version 2
    Append32(out, all);
    AppendChunk(out, textBytes, "JSON");
    const auto* text = reinterpret_cast<const std::byte*>(json.data());
    out.insert(out.end(), text, text + json.size());
    out.resize(static_cast<std::size_t>(20 + textBytes), std::byte{' '});
    if (binaryBytes > 0) AppendChunk(out, binaryBytes, {"BIN\0", 4});
    for (CView& view : m_views) {
        const std::vector<std::byte>& bytes = BytesInFile(view);
        out.insert(out.end(), bytes.begin(), bytes.end());
        out.resize(Padded(out.size()));
        view = {};
    }
    m_views.clear();
    m_accessors.clear();
    return out;
}
