// SPDX-License-Identifier: MIT
#pragma once

#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

struct Lib3dsMaterial;

/** The materials of the MTL files that an OBJ file names. Each is taken apart only when it is asked for, as
 * one takes some KB in memory and a file may define a million. */
class CMtlLibrary {
  public:
    /** Notes where each material stands; of several with one name the first counts, and of over
     * 100,000 the first. */
    void Add(std::string text);

    [[nodiscard]] bool Has(const std::string& name) const { return m_materials.contains(name); }
    /** A material of lib3ds for the caller to own, named lib3dsName; the values of `name`, or a plain
     * grey one where nothing has that name. All are two-sided, as OBJ files know no other and often turn
     * faces inside out.
     *
     * Specular exponents Ns become 3DS shininess log2(Ns) / 10. An ambient colour that is missing or white
     * (what many programs write without a thought) is the diffuse one. map_d of the same file as map_Kd
     * means its alpha. */
    [[nodiscard]] Lib3dsMaterial* Make(const std::string& name, const std::string& lib3dsName) const;

  private:
    std::deque<std::string> m_texts;
    std::unordered_map<std::string, std::string_view> m_materials;
};
