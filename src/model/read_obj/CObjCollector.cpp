// SPDX-License-Identifier: MIT
#include "model/read_obj/CObjCollector.h"

#include <tiny_obj_loader.h>

#include <charconv>
#include <istream>
#include <new>

#include "model/read_obj/CObjLineFilter.h"

namespace {

// Counts stay below this: a text of less than 2 GB has under 2^30 entries of any kind.
constexpr std::int32_t kBackwards = std::int32_t{1} << 30;

CObjCollector& Self(void* user) {
    return *static_cast<CObjCollector*>(user);
}

std::string_view TrimmedName(std::string_view name) {
    const std::size_t first = name.find_first_not_of(" \t\r");
    if (first == std::string_view::npos) return {};
    return name.substr(first, name.find_last_not_of(" \t\r") - first + 1).substr(0, 256);
}

std::uint32_t SmoothingNumber(std::string_view text) {
    if (text == "on") return 1;
    std::uint32_t number = 0;
    (void)std::from_chars(text.data(), text.data() + text.size(), number);  // "off" and the rest mean 0
    return number;
}

}  // namespace

std::int32_t CObjCollector::Encode(int index, std::size_t count) {
    if (index > 0) return index - 1;
    if (index == 0) return kNone;
    if (index <= -kBackwards) return kInvalid;
    return static_cast<std::int32_t>(count) + index - kBackwards;
}

std::int64_t CObjCollector::Decode(std::int32_t encoded, std::size_t before) {
    if (encoded >= 0) return encoded;
    return static_cast<std::int64_t>(before) + encoded + kBackwards;
}

tinyobj::callback_t CObjCollector::Callbacks() {
    using tinyobj::real_t;
    tinyobj::callback_t callbacks;
    callbacks.vertex_cb = [](void* user, real_t x, real_t y, real_t z, real_t) {
        Self(user).positions.push_back({x, y, z});
    };
    callbacks.normal_cb = [](void* user, real_t x, real_t y, real_t z) {
        Self(user).normals.push_back({x, y, z});
    };
    callbacks.texcoord_cb = [](void* user, real_t u, real_t v, real_t) {
        Self(user).texCoords.push_back({u, v});
    };
    callbacks.index_cb = [](void* user, tinyobj::index_t* corners, int count) {
        Self(user).AddFace(corners, static_cast<std::size_t>(count));
    };
    callbacks.usemtl_cb = [](void* user, const char* name, int) {
        Self(user).AddName(EChange::Material, name);
    };
    callbacks.group_cb = [](void* user, const char** names, int count) {
        std::string joined;
        for (int i = 0; i < count && joined.size() < 256; ++i) joined.append(i ? " " : "").append(names[i]);
        Self(user).AddName(EChange::Group, joined);
    };
    callbacks.object_cb = [](void* user, const char* name) {
        const std::string_view text = TrimmedName(name);
        if (!text.starts_with(CObjLineFilter::kSmoothingMark))
            return Self(user).AddName(EChange::Object, text);
        Self(user).SetPending(EChange::Smoothing, SmoothingNumber(text.substr(1)));
    };
    return callbacks;
}

void CObjCollector::Read(std::string_view text) {
    CObjLineFilter filter(text);
    std::istream stream(&filter);
    tinyobj::LoadObjWithCallback(stream, Callbacks(), this);
    // The stream swallows what the filter throws, and the filter throws only this.
    if (stream.bad()) throw std::bad_alloc();
    libraries = filter.Libraries();
    droppedLines = filter.DroppedLines();
}

void CObjCollector::ApplyPending() {
    if (!m_anyPending) return;
    for (std::size_t kind = 0; kind < kChangeKinds; ++kind) {
        if (m_pending[kind] < 0) continue;
        events.push_back({static_cast<std::uint32_t>(faceEnds.size()), static_cast<EChange>(kind),
                          static_cast<std::uint32_t>(m_pending[kind])});
        m_pending[kind] = -1;
    }
    m_anyPending = false;
}

void CObjCollector::AddPosition(const tinyobj::index_t& corner) {
    cornerPositions.push_back(corner.vertex_index == 0 ? kInvalid
                                                       : Encode(corner.vertex_index, positions.size()));
}

/** Points, or the pieces of a line: each corner begins one as long as there are enough of them. */
void CObjCollector::AddElements(const tinyobj::index_t* corners, std::size_t count, std::size_t cornersEach) {
    if (count < cornersEach) return;
    ApplyPending();
    for (std::size_t i = 0; i + cornersEach <= count; ++i) {
        for (std::size_t k = 0; k < cornersEach; ++k) AddPosition(corners[i + k]);
        faceEnds.push_back(static_cast<std::uint32_t>(cornerPositions.size()));
        ++elements;
    }
}

void CObjCollector::AddFace(const tinyobj::index_t* corners, std::size_t count) {
    if (corners[0].vertex_index == CObjLineFilter::kElementMark) {
        return AddElements(corners + 1, count - 1,
                           corners[0].normal_index == CObjLineFilter::kLineNormal ? 2 : 1);
    }
    if (count < 3) return;
    ApplyPending();
    bool anyTexCoord = !cornerTexCoords.empty(), anyNormal = !cornerNormals.empty();
    for (std::size_t i = 0; i < count; ++i) {
        AddPosition(corners[i]);
        anyTexCoord = anyTexCoord || corners[i].texcoord_index != 0;
        anyNormal = anyNormal || corners[i].normal_index != 0;
    }
    const auto append = [&](std::vector<std::int32_t>& to, int tinyobj::index_t::*member, std::size_t have) {
        to.resize(cornerPositions.size() - count, kNone);
        for (std::size_t i = 0; i < count; ++i) to.push_back(Encode(corners[i].*member, have));
    };
    if (anyTexCoord) append(cornerTexCoords, &tinyobj::index_t::texcoord_index, texCoords.size());
    if (anyNormal) append(cornerNormals, &tinyobj::index_t::normal_index, normals.size());
    faceEnds.push_back(static_cast<std::uint32_t>(cornerPositions.size()));
    triangles += count - 2;
}

void CObjCollector::AddName(EChange kind, std::string_view name) {
    const auto [entry, isNew] =
        m_nameNumbers.try_emplace(std::string(TrimmedName(name)), static_cast<std::uint32_t>(names.size()));
    if (isNew) names.push_back(entry->first);
    SetPending(kind, entry->second);
    // A new object begins without the groups of the one before.
    if (kind == EChange::Object && !name.empty()) AddName(EChange::Group, {});
}

void CObjCollector::SetPending(EChange kind, std::uint32_t value) {
    m_pending[static_cast<std::size_t>(kind)] = value;
    m_anyPending = true;
}
