// SPDX-License-Identifier: MIT
#include "model/read_3ds/track_reading.h"

#include <lib3ds/tracks.h>

#include <algorithm>
#include <cmath>
#include <type_traits>
#include <vector>

#include "model/scene/CNoteList.h"
#include "model/scene/lib3ds_name.h"

float Usable(float value, float replacement, CNoteList& notes) {
    constexpr float kMaxCoordinate = 1e15f;  // its square still fits a float
    if (std::isfinite(value) && std::abs(value) < kMaxCoordinate) return value;
    notes.Repaired("A key's number that is not finite was replaced");
    return replacement;
}

namespace {
float SplineTerm(CByteCursor& in, float lowest) {
    const float value = in.Read<float>();
    return std::isfinite(value) ? std::clamp(value, lowest, 1.0f) : 0.0f;
}

/** Frame, flags and the spline terms that the flags announce. */
void ReadTcb(CByteCursor& in, Lib3dsTcb& tcb) {
    tcb.frame = std::clamp(in.Read<std::int32_t>(), -kMaxFrame, kMaxFrame);
    tcb.flags = static_cast<Lib3dsWord>(in.Read<std::uint16_t>() & 0x1Fu);
    if (tcb.flags & LIB3DS_USE_TENSION) tcb.tens = SplineTerm(in, -1);
    if (tcb.flags & LIB3DS_USE_CONTINUITY) tcb.cont = SplineTerm(in, -1);
    if (tcb.flags & LIB3DS_USE_BIAS) tcb.bias = SplineTerm(in, -1);
    if (tcb.flags & LIB3DS_USE_EASE_TO) tcb.ease_to = SplineTerm(in, 0);
    if (tcb.flags & LIB3DS_USE_EASE_FROM) tcb.ease_from = SplineTerm(in, 0);
}

void ReadValue(CByteCursor& in, Lib3dsLin1Key& key, float replacement, CNoteList& notes) {
    key.value = Usable(in.Read<float>(), replacement, notes);
}
void ReadValue(CByteCursor& in, Lib3dsLin3Key& key, float replacement, CNoteList& notes) {
    for (float& value : key.value) value = Usable(in.Read<float>(), replacement, notes);
}
void ReadValue(CByteCursor& in, Lib3dsQuatKey& key, float replacement, CNoteList& notes) {
    key.angle = Usable(in.Read<float>(), replacement, notes);
    for (float& value : key.axis) value = Usable(in.Read<float>(), replacement, notes);
}
void ReadValue(CByteCursor&, Lib3dsBoolKey&, float, CNoteList&) {}
void ReadValue(CByteCursor& in, Lib3dsMorphKey& key, float, CNoteList&) {
    CopyName(key.name, in.ReadString());
}

/** What lib3ds offers for one kind of track; its functions differ in name alone. */
template <auto NewKey, auto FreeKey, auto... SetUpFunction>
struct CTrackFunctions {
    using Key = std::remove_pointer_t<decltype(NewKey())>;
    static constexpr auto kNewKey = NewKey;
    static constexpr auto kFreeKey = FreeKey;
    static void SetUp(auto& track) { (SetUpFunction(&track), ...); }
};
template <class Track>
struct CTrackKind;
template <>
struct CTrackKind<Lib3dsLin1Track>
    : CTrackFunctions<lib3ds_lin1_key_new, lib3ds_lin1_key_free, lib3ds_lin1_track_setup> {};
template <>
struct CTrackKind<Lib3dsLin3Track>
    : CTrackFunctions<lib3ds_lin3_key_new, lib3ds_lin3_key_free, lib3ds_lin3_track_setup> {};
template <>
struct CTrackKind<Lib3dsQuatTrack>
    : CTrackFunctions<lib3ds_quat_key_new, lib3ds_quat_key_free, lib3ds_quat_track_setup> {};
template <>
struct CTrackKind<Lib3dsBoolTrack> : CTrackFunctions<lib3ds_bool_key_new, lib3ds_bool_key_free> {};
template <>
struct CTrackKind<Lib3dsMorphTrack> : CTrackFunctions<lib3ds_morph_key_new, lib3ds_morph_key_free> {};

/** In frame order, the last of several keys on one frame. Unused keys are freed. */
template <class Track>
void LinkKeys(Track& track, std::vector<typename CTrackKind<Track>::Key*>& keys, CNoteList& notes) {
    const auto byFrame = [](const auto* a, const auto* b) { return a->tcb.frame < b->tcb.frame; };
    if (!std::is_sorted(keys.begin(), keys.end(), byFrame)) {
        notes.Repaired("Keys that were out of order were sorted");
        std::stable_sort(keys.begin(), keys.end(), byFrame);
    }
    auto** link = &track.keyL;
    for (std::size_t i = 0; i < keys.size(); ++i) {
        if (i + 1 < keys.size() && keys[i + 1]->tcb.frame == keys[i]->tcb.frame) {
            CTrackKind<Track>::kFreeKey(keys[i]);
            notes.Repaired("Of several keys on one frame the last was kept");
            continue;
        }
        *link = keys[i];
        link = &keys[i]->next;
    }
    *link = nullptr;
}

template <class Track>
std::vector<typename CTrackKind<Track>::Key*> ReadKeys(CByteCursor& in, std::uint32_t claimed,
                                                       float replacement, CKeyNotes& to) {
    std::vector<typename CTrackKind<Track>::Key*> keys;
    for (std::uint32_t i = 0; i < claimed && in.Left() > 0; ++i) {
        if (to.keysLeft == 0) {
            to.notes.Limited("There are more than 2,000,000 keys; the rest is not used");
            return keys;
        }
        auto* key = CTrackKind<Track>::kNewKey();
        if (!key) break;
        ReadTcb(in, key->tcb);
        ReadValue(in, *key, replacement, to.notes);
        if (in.RanOut()) {
            CTrackKind<Track>::kFreeKey(key);
            break;
        }
        keys.push_back(key);
        --to.keysLeft;
    }
    if (keys.size() < claimed) to.notes.Repaired("A list of keys is shorter than it says");
    return keys;
}

template <class Track>
void Read(CByteCursor in, Track& track, float replacement, CKeyNotes& to) {
    if (track.keyL) return;  // a second track of the same kind
    track.flags = in.Read<std::uint16_t>();
    in.Skip(8);
    const std::uint32_t claimed = in.Read<std::uint32_t>();
    std::vector<typename CTrackKind<Track>::Key*> keys = ReadKeys<Track>(in, claimed, replacement, to);
    LinkKeys(track, keys, to.notes);
    // A loop over a single key has no length: lib3ds would divide by it.
    if (!track.keyL || !track.keyL->next)
        track.flags &= ~static_cast<Lib3dsDword>(LIB3DS_REPEAT | LIB3DS_SMOOTH);
    CTrackKind<Track>::SetUp(track);
}
}  // namespace

void ReadTrack(CByteCursor in, Lib3dsLin1Track& track, float replacement, CKeyNotes& to) {
    Read(in, track, replacement, to);
}
void ReadTrack(CByteCursor in, Lib3dsLin3Track& track, float replacement, CKeyNotes& to) {
    Read(in, track, replacement, to);
}
void ReadTrack(CByteCursor in, Lib3dsQuatTrack& track, float replacement, CKeyNotes& to) {
    Read(in, track, replacement, to);
}
void ReadTrack(CByteCursor in, Lib3dsBoolTrack& track, float replacement, CKeyNotes& to) {
    Read(in, track, replacement, to);
}
void ReadTrack(CByteCursor in, Lib3dsMorphTrack& track, float replacement, CKeyNotes& to) {
    Read(in, track, replacement, to);
}
