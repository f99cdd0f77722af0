// SPDX-License-Identifier: MIT
#include "export/gltf/CGltfReader.h"

#include <meshoptimizer.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <map>
#include <numbers>
#include <stdexcept>

namespace {

using CJson = nlohmann::json;

void Want(bool holds, const char* what) {
    if (!holds) throw std::runtime_error(what);
}

std::uint32_t Le32(std::span<const std::byte> bytes, std::size_t at) {
    Want(at + 4 <= bytes.size(), "cut off");
    std::uint32_t value = 0;
    std::memcpy(&value, &bytes[at], 4);
    return value;
}

std::vector<std::byte> Decoded(std::span<const std::byte> binary, const CJson& packing) {
    const std::size_t count = packing["count"], stride = packing["byteStride"];
    const auto data = binary.subspan(packing.value("byteOffset", std::size_t{0}), packing["byteLength"]);
    const auto* bytes = reinterpret_cast<const unsigned char*>(data.data());
    std::vector<std::byte> out(count * stride);
    const bool isIndices = packing["mode"] == "TRIANGLES";
    const int error = isIndices ? meshopt_decodeIndexBuffer(out.data(), count, stride, bytes, data.size())
                                : meshopt_decodeVertexBuffer(out.data(), count, stride, bytes, data.size());
    Want(error == 0, "not decoded");
    const std::string filter = packing.value("filter", "NONE");
    if (filter == "OCTAHEDRAL") meshopt_decodeFilterOct(out.data(), count, stride);
    if (filter == "EXPONENTIAL") meshopt_decodeFilterExp(out.data(), count, stride);
    return out;
}

template <class T>
double At(const std::byte* bytes, bool normalized) {
    T value{};
    std::memcpy(&value, bytes, sizeof value);
    const auto number = static_cast<double>(value);
    return normalized ? std::max(number / static_cast<double>(std::numeric_limits<T>::max()), -1.0) : number;
}

CMatrix4d MatrixOf(const std::array<double, 3>& t, const std::array<double, 4>& q,
                   const std::array<double, 3>& s) {
    const CVec3d axis{q[0], q[1], q[2]};
    CMatrix4d turn;
    if (axis != CVec3d{})
        turn = CMatrix4d::Rotation(std::atan2(Length(axis), q[3]) * 360 / std::numbers::pi, axis);
    return CMatrix4d::Translation({t[0], t[1], t[2]}) * turn * CMatrix4d::Scale({s[0], s[1], s[2]});
}

}  // namespace

CGltfReader::CGltfReader(std::span<const std::byte> glb) {
    Want(Le32(glb, 0) == 0x46546C67 && Le32(glb, 4) == 2 && Le32(glb, 8) == glb.size(), "no GLB");
    const std::size_t length = Le32(glb, 12);
    const auto text = glb.subspan(20, length);
    m_json = CJson::parse(reinterpret_cast<const char*>(text.data()),
                          reinterpret_cast<const char*>(text.data()) + text.size());
    if (glb.size() > 20 + length) Unpack(glb.subspan(28 + length, Le32(glb, 20 + length)));
    const CJson& nodes = m_json["nodes"];
    m_parents.assign(nodes.size(), -1);
    for (std::size_t n = 0; n < nodes.size(); ++n) {
        CPose pose;
        Want(!nodes[n].contains("matrix"), "a matrix");
        pose.translation = nodes[n].value("translation", pose.translation);
        pose.rotation = nodes[n].value("rotation", pose.rotation);
        pose.scale = nodes[n].value("scale", pose.scale);
        pose.weights = nodes[n].value("weights", pose.weights);
        m_poses.push_back(pose);
        for (const int child : nodes[n].value("children", std::vector<int>()))
            m_parents.at(static_cast<std::size_t>(child)) = static_cast<int>(n);
    }
}

void CGltfReader::Unpack(std::span<const std::byte> binary) {
    for (const CJson& view : m_json["bufferViews"]) {
        if (view.contains("extensions")) {
            m_views.push_back(Decoded(binary, view["extensions"]["EXT_meshopt_compression"]));
            Want(m_views.back().size() == view["byteLength"], "another length");
        } else {
            const auto bytes = binary.subspan(view.value("byteOffset", std::size_t{0}), view["byteLength"]);
            m_views.emplace_back(bytes.begin(), bytes.end());
        }
    }
}

std::vector<double> CGltfReader::Values(std::size_t number) const {
    const CJson& accessor = m_json["accessors"].at(number);
    const std::size_t view = accessor["bufferView"], count = accessor["count"];
    const int component = accessor["componentType"];
    const std::size_t size = component == 5120 ? 1 : component == 5122 || component == 5123 ? 2 : 4;
    const std::map<std::string, std::size_t> parts{{"SCALAR", 1}, {"VEC2", 2}, {"VEC3", 3}, {"VEC4", 4}};
    const std::size_t dimensions = parts.at(accessor["type"]);
    const std::size_t stride = m_json["bufferViews"][view].value("byteStride", size * dimensions);
    const std::size_t offset = accessor.value("byteOffset", std::size_t{0});
    const bool normalized = accessor.value("normalized", false);
    Want(offset + (count - 1) * stride + size * dimensions <= m_views.at(view).size(), "beyond its view");
    std::vector<double> values;
    for (std::size_t i = 0; i < count * dimensions; ++i) {
        const std::byte* at = &m_views[view][offset + i / dimensions * stride + i % dimensions * size];
        values.push_back(component == 5120   ? At<std::int8_t>(at, normalized)
                         : component == 5122 ? At<std::int16_t>(at, normalized)
                         : component == 5123 ? At<std::uint16_t>(at, normalized)
                         : component == 5125 ? At<std::uint32_t>(at, normalized)
                                             : At<float>(at, false));
    }
    return values;
}

std::vector<double> CGltfReader::Sampled(const CJson& sampler, const std::string& path, double time) const {
    const std::vector<double> times = Values(sampler["input"]), values = Values(sampler["output"]);
    const std::size_t dimensions = values.size() / times.size();
    const auto key = [&](std::size_t i) {
        return std::vector<double>(values.begin() + static_cast<std::ptrdiff_t>(i * dimensions),
                                   values.begin() + static_cast<std::ptrdiff_t>((i + 1) * dimensions));
    };
    // The samples are floats.
    const auto next =
        static_cast<std::size_t>(std::upper_bound(times.begin(), times.end(), time + 1e-6) - times.begin());
    if (next == 0) return key(0);
    if (next == times.size() || sampler.value("interpolation", "LINEAR") == "STEP") return key(next - 1);
    const double share = std::clamp((time - times[next - 1]) / (times[next] - times[next - 1]), 0.0, 1.0);
    std::vector<double> a = key(next - 1), b = key(next);
    double wa = 1 - share, wb = share;
    if (path == "rotation") {
        double cosine = a[0] * b[0] + a[1] * b[1] + a[2] * b[2] + a[3] * b[3];
        const double sign = cosine < 0 ? -1 : 1;
        const double angle = std::acos(std::min(cosine * sign, 1.0));
        if (angle > 1e-6) {
            wa = std::sin((1 - share) * angle) / std::sin(angle);
            wb = std::sin(share * angle) / std::sin(angle);
        }
        wb *= sign;
    }
    for (std::size_t i = 0; i < dimensions; ++i) a[i] = a[i] * wa + b[i] * wb;
    return a;
}

void CGltfReader::SetTime(double seconds) {
    if (!m_json.contains("animations")) return;
    const CJson& animation = m_json["animations"].at(0);
    for (const CJson& channel : animation["channels"]) {
        const std::string path = channel["target"]["path"];
        CPose& pose = m_poses.at(channel["target"]["node"].get<std::size_t>());
        const std::vector<double> value =
            Sampled(animation["samplers"].at(channel["sampler"].get<std::size_t>()), path, seconds);
        if (path == "translation") std::copy_n(value.begin(), 3, pose.translation.begin());
        if (path == "rotation") std::copy_n(value.begin(), 4, pose.rotation.begin());
        if (path == "scale") std::copy_n(value.begin(), 3, pose.scale.begin());
        if (path == "weights") pose.weights = value;
    }
}

int CGltfReader::Find(const std::string& name) const {
    for (std::size_t n = 0; n < m_poses.size(); ++n) {
        if (m_json["nodes"][n].value("name", "") == name) return static_cast<int>(n);
    }
    return -1;
}

CMatrix4d CGltfReader::WorldOf(int node) const {
    CMatrix4d world;
    // The root's turn is between the file's axes and glTF's.
    for (; node > 0; node = m_parents[static_cast<std::size_t>(node)]) {
        const CPose& pose = m_poses[static_cast<std::size_t>(node)];
        world = MatrixOf(pose.translation, pose.rotation, pose.scale) * world;
    }
    return world;
}

std::vector<CGltfReader::CTriangle> CGltfReader::TrianglesOf(int node) const {
    std::vector<CTriangle> triangles;
    Want(node >= 0, "no such node");
    AddMesh(node, triangles);
    for (std::size_t n = 1; n < m_poses.size(); ++n) {
        int at = static_cast<int>(n);
        while (at > 0 && at != node && !m_json["nodes"][static_cast<std::size_t>(at)].contains("name"))
            at = m_parents[static_cast<std::size_t>(at)];
        if (at == node && at != static_cast<int>(n)) AddMesh(static_cast<int>(n), triangles);
    }
    return triangles;
}

void CGltfReader::AddMesh(int number, std::vector<CTriangle>& triangles) const {
    const CJson& node = m_json["nodes"][static_cast<std::size_t>(number)];
    if (!node.contains("mesh")) return;
    const CMatrix4d world = WorldOf(number);
    const CMat4 rounded = CMat4::From(world);
    const std::array<float, 9> turn = rounded.NormalMatrix();
    for (const CJson& primitive : m_json["meshes"].at(node["mesh"].get<std::size_t>())["primitives"]) {
        const CJson& attributes = primitive["attributes"];
        std::vector<double> positions = Values(attributes["POSITION"]);
        std::vector<double> normals(positions.size());
        if (attributes.contains("NORMAL")) normals = Values(attributes["NORMAL"]);
        std::vector<double> uvs(positions.size());
        if (attributes.contains("TEXCOORD_0")) uvs = Values(attributes["TEXCOORD_0"]);
        const std::vector<double>& weights = m_poses[static_cast<std::size_t>(number)].weights;
        for (std::size_t t = 0; t < weights.size(); ++t) {
            const std::vector<double> deltas = Values(primitive["targets"].at(t)["POSITION"]);
            for (std::size_t i = 0; i < deltas.size(); ++i) positions[i] += weights[t] * deltas[i];
        }
        const std::vector<double> indices = Values(primitive["indices"]);
        for (std::size_t i = 0; i < indices.size(); ++i) {
            if (i % 3 == 0) triangles.emplace_back();
            CCorner& corner = triangles.back()[i % 3];
            const auto v = static_cast<std::size_t>(indices[i]);
            corner.position =
                world.TransformPoint({positions[v * 3], positions[v * 3 + 1], positions[v * 3 + 2]});
            const auto part = [&](std::size_t row) {
                double sum = 0;
                for (std::size_t k = 0; k < 3; ++k)
                    sum += static_cast<double>(turn[k * 3 + row]) * normals[v * 3 + k];
                return sum;
            };
            corner.normal = Normalized(CVec3d{part(0), part(1), part(2)});
            corner.uv = {uvs[v * 2], uvs[v * 2 + 1]};
        }
    }
}

std::vector<std::byte> CGltfReader::Picture(std::size_t image) const {
    return m_views.at(m_json["images"].at(image)["bufferView"].get<std::size_t>());
}
