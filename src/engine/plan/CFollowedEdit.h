// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "engine/plan/CStillScene.h"

/** Finds out what an edit that follows the user's hand changes from one picture to the next: the values of a few materials,
 * as a rule. What all other materials show can then be kept from the picture before. */
class CFollowedEdit {
  public:
    /** How the next picture is drawn. */
    enum class EPicture {
        Whole,       ///< as any other
        KeepsRest,   ///< first what does not change, which the caller then keeps if he can, see SetKept
        OnRestKept,  ///< onto what was kept
    };
    [[nodiscard]] EPicture Next(CStillScene still, const std::vector<CPreparedMaterial>& materials);
    /** After KeepsRest. isCoarse: the kept picture is not the full one, so a picture at rest outdates it. */
    void SetKept(bool isCoarse);
    /** A whole picture was drawn at rest: the next edit is compared with this one. */
    void Rested(CStillScene still, const std::vector<CPreparedMaterial>& materials);
    void Forget() { *this = {}; }

    [[nodiscard]] bool IsKept() const { return m_isKept; }
    /** After KeepsRest and OnRestKept. */
    [[nodiscard]] bool Changes(std::uint32_t material) const { return m_changes[material]; }

  private:
    [[nodiscard]] bool IsOfLast(const CStillScene& still, std::size_t materials) const;
    void Remember(CStillScene still, const std::vector<CPreparedMaterial>& materials);
    /** Takes over the new values, and returns which have changed. */
    [[nodiscard]] std::vector<bool> TakeChanges(const std::vector<CPreparedMaterial>& materials);
    [[nodiscard]] bool OnlyThoseChanged(const std::vector<CPreparedMaterial>& materials) const;

    std::optional<CStillScene> m_still;          ///< of the picture before
    std::vector<CPreparedMaterial> m_materials;  ///< of the picture before
    std::vector<CPreparedMaterial> m_kept;       ///< when the rest was kept
    std::vector<bool> m_changes;
    bool m_isKept = false, m_isCoarse = false;
};
