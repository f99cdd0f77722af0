// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <tuple>
#include <vector>

#include "export/pov/C3ds2Pov.h"
#include "export/pov/CPovPictures.h"
#include "export/pov/CPovShared.h"
#include "model/prepare/CPreparedScene.h"

class CPovText;

/** The used materials of an exported scene as POV-Ray textures T0, T1, ..., separately for meshes with and
 * without texture coordinates. engine/pipeline/CMaterialLook.h and shader_source.h there define what a
 * material means; this class expresses it in POV-Ray's terms, for lights 1/0.6 times as bright as the file's
 * (a diffuse of 0.6 then gives the view's brightness). */
class CPovMaterials {
  public:
    /** POV-Ray's brightness for a light of brightness 1 in the file. */
    static constexpr float kLightGain = 1 / 0.6f;

    /** All must outlive it. */
    CPovMaterials(const CPreparedScene& scene, const C3ds2Pov::COutFormat& format, CPovPictures& pictures);

    /** The number of the texture that shows a material on a mesh with or without texture coordinates. */
    [[nodiscard]] std::uint32_t Use(std::uint32_t material, bool hasTexCoords);
    /** The texture for surfaces that face away from the light at the eye: what is visible of them
     * without light. */
    [[nodiscard]] std::uint32_t UseUnlit(std::uint32_t material, bool hasTexCoords);
    /** True when the texture has maps that need texture coordinates. */
    [[nodiscard]] bool IsMapped(std::uint32_t texture) const { return m_textures[texture].mapped; }
    /** The picture that reflecting materials show, of several the first one used; null for none. */
    [[nodiscard]] const CPovPictures::CPicture* Environment() const {
        return m_environment ? &*m_environment : nullptr;
    }
    /** Appends the declarations of all used textures. */
    void Write(CPovText& text) const;

  private:
    /** The values that value maps change. */
    struct CTerms {
        float opacity = 1, self = 0, specular = 1;
        bool highlightApart = false;  ///< a separate layer has the highlight
        bool lit = true;
    };
    struct CValueMap {
        const CPreparedMap* map = nullptr;
        const CPovPictures::CPicture* picture = nullptr;
        CTerms (*at)(CTerms terms, float value, float amount) = nullptr;
    };
    struct CTexture {
        std::string name;
        std::string shared;           ///< declarations that body uses
        std::string body, plainBody;  ///< plainBody: used when the picture files are missing
        std::string layer;            ///< a second texture{} on top of it; may be empty
        std::vector<std::string> files;
        bool mapped = false;
    };

    /** Material number, whether it has texture coordinates, whether it is lit. */
    using CKey = std::tuple<std::uint32_t, bool, bool>;
    [[nodiscard]] std::uint32_t Use(CKey key);
    [[nodiscard]] CTexture Make(const CPreparedMaterial& material, bool hasTexCoords, bool lit);
    [[nodiscard]] bool ShowsUnlit(const CPreparedMaterial& material, bool hasTexCoords);
    [[nodiscard]] std::vector<CValueMap> ValueMaps(const CPreparedMaterial& material);
    [[nodiscard]] std::string Body(const CPreparedMaterial& material, CTerms terms,
                                   std::span<const CValueMap> maps, bool mapped);
    /** Body of a material with several value maps: its pieces are shared, as each map alone would double it. */
    [[nodiscard]] std::string SharedBody(const CPreparedMaterial& material, CTerms terms,
                                         std::span<const CValueMap> maps);
    [[nodiscard]] std::string Blend(const CPreparedMaterial& material, CTerms terms,
                                    std::span<const CValueMap> maps, bool mapped);
    /** Names for pieces while m_shared is set; else the pieces themselves. */
    [[nodiscard]] std::string Piece(const char* kind, const std::string& body);
    [[nodiscard]] std::string PatternPiece(const std::string& pattern);
    [[nodiscard]] std::string Pigment(const CPreparedMaterial& material, float transmit, bool mapped);
    [[nodiscard]] std::string Mixed(const std::string& plain, const CPreparedMap& map, bool alphaCounts,
                                    float transmit);
    [[nodiscard]] std::string Normal(const CPreparedMaterial& material);
    [[nodiscard]] std::string Finish(const CPreparedMaterial& material, CTerms terms, bool mapped);
    [[nodiscard]] float Reflection(const CPreparedMaterial& material);
    [[nodiscard]] static std::string HighlightLayer(const CPreparedMaterial& material);
    [[nodiscard]] const CPovPictures::CPicture* Picture(const CPreparedMap& map, EPovPicture kind);
    [[nodiscard]] const CPovPictures::CPicture* ColorPicture(const CPreparedMap& map);
    [[nodiscard]] const CPovPictures::CPicture* ValuePicture(const CPreparedMap& map);
    [[nodiscard]] const CPovPictures::CPicture* OpacityPicture(const CPreparedMap& map);

    const CPreparedScene& m_scene;
    const C3ds2Pov::COutFormat& m_format;
    CPovPictures& m_pictures;
    std::optional<CPovPictures::CPicture> m_environment;
    std::map<CKey, std::uint32_t> m_known;
    std::optional<std::uint32_t> m_black;
    std::vector<CTexture> m_textures;
    std::vector<std::string>* m_files = nullptr;  ///< where the names of used pictures go
    CPovShared m_patterns{"Q"};                   ///< of all materials; they open no file by themselves
    std::optional<CPovShared> m_shared;           ///< of the material that is being made
    /** What was made of it: by how many maps were left, and the terms. */
    std::map<std::tuple<std::size_t, float, float, float>, std::string> m_made;
};
