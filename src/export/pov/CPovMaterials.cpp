// SPDX-License-Identifier: MIT
#include "export/pov/CPovMaterials.h"

#include <algorithm>
#include <cmath>

#include "export/pov/pov_maps.h"
#include "export/pov/text/CPovText.h"

namespace {

/** An additive surface hides almost nothing behind it; its own colour is increased to make up for that. */
constexpr float kAdditiveCover = 1.0f / 256;
constexpr float kBumpHeight = 0.03f;  // of white over black, in widths of a tile, as in the view
constexpr float kViewDiffuse = 1 / CPovMaterials::kLightGain;

using pov_maps::Number;

float Unit(float value) {
    return std::isfinite(value) ? std::clamp(value, 0.0f, 1.0f) : 0.0f;
}

float Luminance(CVec3 c) {
    return 0.299f * c.x + 0.587f * c.y + 0.114f * c.z;
}

bool IsColored(CVec3 c) {
    return std::max({c.x, c.y, c.z}) - std::min({c.x, c.y, c.z}) > 0.02f;
}

std::string Rgb(CVec3 c) {
    if (c.x == c.y && c.y == c.z) return "rgb " + Number(c.x);
    return "rgb<" + Number(c.x) + ',' + Number(c.y) + ',' + Number(c.z) + '>';
}

/** The ambient light as POV-Ray expects it: as a factor of the pigment. */
CVec3 AmbientFactor(CVec3 light, CVec3 ambient, CVec3 pigment) {
    const auto factor = [](float l, float a, float p) { return p > 0 ? l * a / p : 0; };
    return {factor(light.x, ambient.x, pigment.x), factor(light.y, ambient.y, pigment.y),
            factor(light.z, ambient.z, pigment.z)};
}

/** The pigment of the bare material. Black gives way a little where the ambient light has
 * something to show. */
CVec3 BaseColor(const CPreparedMaterial& material, CVec3 light) {
    const auto component = [](float d, float a, float l) { return a * l > 0 ? std::max(d, 1.0f / 1024) : d; };
    return {component(material.diffuse.x, material.ambient.x, light.x),
            component(material.diffuse.y, material.ambient.y, light.y),
            component(material.diffuse.z, material.ambient.z, light.z)};
}

std::string Transmit(float transmit) {
    return transmit > 0 ? " transmit " + Number(transmit) : std::string();
}

}  // namespace

CPovMaterials::CPovMaterials(const CPreparedScene& scene, const C3ds2Pov::COutFormat& format,
                             CPovPictures& pictures)
    : m_scene(scene), m_format(format), m_pictures(pictures) {}

std::uint32_t CPovMaterials::Use(std::uint32_t material, bool hasTexCoords) {
    return Use(CKey{material, hasTexCoords, true});
}

std::uint32_t CPovMaterials::UseUnlit(std::uint32_t material, bool hasTexCoords) {
    if (ShowsUnlit(m_scene.materials[material], hasTexCoords))
        return Use(CKey{material, hasTexCoords, false});
    if (!m_black) {
        m_black = static_cast<std::uint32_t>(m_textures.size());
        m_textures.push_back({"not lit", {}, "pigment{rgb 0}finish{diffuse 0}", {}, {}, {}, false});
    }
    return *m_black;
}

std::uint32_t CPovMaterials::Use(CKey key) {
    if (const auto known = m_known.find(key); known != m_known.end()) return known->second;
    const auto [material, hasTexCoords, lit] = key;
    CTexture made = Make(m_scene.materials[material], hasTexCoords, lit);
    std::uint32_t number = 0;
    if (hasTexCoords && !made.mapped) {
        // Equal to the texture without coordinates, so one declaration serves both.
        number = Use(CKey{material, false, lit});
    } else {
        number = static_cast<std::uint32_t>(m_textures.size());
        m_textures.push_back(std::move(made));
    }
    m_known[key] = number;
    return number;
}

/** True when a surface is visible without the light. */
bool CPovMaterials::ShowsUnlit(const CPreparedMaterial& material, bool hasTexCoords) {
    const CVec3 light = m_scene.ambientLight;
    return light.x > 0 || light.y > 0 || light.z > 0 || material.selfIllumination > 0 ||
           (hasTexCoords && material.selfIlluminationMap.HasEffect()) || Reflection(material) > 0;
}

CPovMaterials::CTexture CPovMaterials::Make(const CPreparedMaterial& material, bool hasTexCoords, bool lit) {
    CTexture texture;
    texture.name = material.name;
    CTerms terms{1 - Unit(material.transparency), Unit(material.selfIllumination), 1};
    terms.lit = lit;
    std::vector<CValueMap> maps;
    m_files = &texture.files;
    if (m_format.outputTextures && hasTexCoords) maps = ValueMaps(material);
    // Layers cannot be parts of a pattern.
    terms.highlightApart = lit && maps.empty() && material.shading != EShading::Metal &&
                           material.shininessStrength > 0 && IsColored(material.specular);
    if (terms.highlightApart) texture.layer = HighlightLayer(material);
    texture.plainBody = Body(material, terms, {}, false);
    texture.body = texture.plainBody;
    if (m_format.outputTextures && hasTexCoords) {
        texture.body =
            maps.size() > 1 ? SharedBody(material, terms, maps) : Body(material, terms, maps, true);
        if (m_shared) texture.shared = m_shared->Text();
        m_shared.reset();
        texture.mapped = !texture.files.empty();
    }
    m_files = nullptr;
    return texture;
}

const CPovPictures::CPicture* CPovMaterials::Picture(const CPreparedMap& map, EPovPicture kind) {
    if (!map.HasEffect()) return nullptr;
    const CPovPictures::CPicture* picture = m_pictures.Use(map.texture, kind);
    if (picture != nullptr && m_files != nullptr &&
        std::find(m_files->begin(), m_files->end(), picture->fileName) == m_files->end()) {
        m_files->push_back(picture->fileName);
    }
    return picture;
}

const CPovPictures::CPicture* CPovMaterials::ColorPicture(const CPreparedMap& map) {
    return Picture(map, map.negative ? EPovPicture::NegativeColor : EPovPicture::Color);
}

const CPovPictures::CPicture* CPovMaterials::ValuePicture(const CPreparedMap& map) {
    if (map.alphaSource) return Picture(map, map.negative ? EPovPicture::NegativeAlpha : EPovPicture::Alpha);
    return Picture(map, map.negative ? EPovPicture::NegativeValue : EPovPicture::Value);
}

const CPovPictures::CPicture* CPovMaterials::OpacityPicture(const CPreparedMap& map) {
    if (map.alphaSource) return ValuePicture(map);
    return Picture(map, map.negative ? EPovPicture::NegativeOpacity : EPovPicture::Opacity);
}

std::vector<CPovMaterials::CValueMap> CPovMaterials::ValueMaps(const CPreparedMaterial& material) {
    std::vector<CValueMap> maps;
    const auto add = [&](const CPreparedMap& map, const CPovPictures::CPicture* picture,
                         CTerms (*at)(CTerms, float, float)) {
        if (picture != nullptr) maps.push_back({&map, picture, at});
    };
    add(material.opacity, OpacityPicture(material.opacity), [](CTerms t, float value, float amount) {
        t.opacity += (value - t.opacity) * amount;
        return t;
    });
    const CPreparedMap& texture = material.texture;
    // A whole opacity map overrules the alpha of the texture, as in the view.
    const bool overruled = !maps.empty() && material.opacity.amount >= 1;
    if (!overruled && texture.HasEffect() && texture.AlphaIsOpacity() &&
        m_scene.textures[static_cast<std::size_t>(texture.texture)].hasTranslucency) {
        add(texture, Picture(texture, EPovPicture::Alpha), [](CTerms t, float value, float amount) {
            t.opacity *= 1 + (value - 1) * amount;
            return t;
        });
    }
    add(material.selfIlluminationMap, ValuePicture(material.selfIlluminationMap),
        [](CTerms t, float value, float amount) {
            t.self += (value - t.self) * amount;
            return t;
        });
    if (material.shininessStrength > 0) {
        const auto scale = [](CTerms t, float value, float amount) {
            t.specular *= 1 + (value - 1) * amount;
            return t;
        };
        add(material.shininessMap, ValuePicture(material.shininessMap), scale);
        add(material.specularMap, ValuePicture(material.specularMap), scale);
    }
    return maps;
}

std::string CPovMaterials::SharedBody(const CPreparedMaterial& material, CTerms terms,
                                      std::span<const CValueMap> maps) {
    m_shared.emplace("P");
    m_made.clear();
    return Body(material, terms, maps, true);
}

std::string CPovMaterials::Piece(const char* kind, const std::string& body) {
    return m_shared ? m_shared->Declare(kind, body) : body;
}

std::string CPovMaterials::PatternPiece(const std::string& pattern) {
    return m_shared ? m_patterns.Macro(pattern) : pattern;
}

std::string CPovMaterials::Body(const CPreparedMaterial& material, CTerms terms,
                                std::span<const CValueMap> maps, bool mapped) {
    if (!m_shared) return Blend(material, terms, maps, mapped);
    const std::tuple key{maps.size(), terms.opacity, terms.self, terms.specular};
    const auto known = m_made.find(key);
    if (known != m_made.end()) return known->second;
    return m_made[key] = Piece("texture", Blend(material, terms, maps, mapped));
}

std::string CPovMaterials::Blend(const CPreparedMaterial& material, CTerms terms,
                                 std::span<const CValueMap> maps, bool mapped) {
    if (maps.empty()) {
        const float transmit = material.additive ? 1 - kAdditiveCover : 1 - terms.opacity;
        return "pigment{" + Piece("pigment", Pigment(material, transmit, mapped)) + '}' +
               (mapped ? Normal(material) : "") + Finish(material, terms, mapped);
    }
    const CValueMap& first = maps.front();
    const auto at = [&](float value) {
        return Body(material, first.at(terms, value, Unit(first.map->amount)), maps.subspan(1), mapped);
    };
    const std::string pattern =
        PatternPiece("uv_mapping " + pov_maps::Pattern(*first.picture) + pov_maps::Placement(*first.map));
    const std::string body = pov_maps::Choice(pattern, "texture_map", at(0), at(1));
    if (first.map->tile) return body;
    return pov_maps::Once(PatternPiece(pov_maps::Within(*first.map)), "texture_map",
                          Body(material, terms, maps.subspan(1), mapped), Piece("texture", body));
}

std::string CPovMaterials::Pigment(const CPreparedMaterial& material, float transmit, bool mapped) {
    std::string pigment = Rgb(BaseColor(material, m_scene.ambientLight)) + Transmit(transmit);
    if (!mapped) return pigment;
    pigment = Mixed(pigment, material.texture, material.texture.decal, transmit);
    return Mixed(pigment, material.texture2, !material.texture2.ignoreAlpha, transmit);
}

std::string CPovMaterials::Mixed(const std::string& plain, const CPreparedMap& map, bool alphaCounts,
                                 float transmit) {
    const CPovPictures::CPicture* color = ColorPicture(map);
    if (color == nullptr) return plain;
    const std::string below = Piece("pigment", plain);
    const std::string all = transmit > 0 ? " transmit all " + Number(transmit) : std::string();
    std::string pigment =
        PatternPiece("uv_mapping " + pov_maps::ImageMap(*color, all) + pov_maps::Placement(map));
    const float amount = Unit(map.amount);
    if (amount < 1) {
        pigment = "average pigment_map{[" + Number(1 - amount) + ' ' + below + "][" + Number(amount) + ' ' +
                  pigment + "]}";
    }
    if (alphaCounts && m_scene.textures[static_cast<std::size_t>(map.texture)].hasTranslucency) {
        if (const CPovPictures::CPicture* alpha = Picture(map, EPovPicture::Alpha)) {
            const std::string pattern =
                PatternPiece("uv_mapping " + pov_maps::Pattern(*alpha) + pov_maps::Placement(map));
            pigment = pov_maps::Choice(pattern, "pigment_map", below, pigment);
        }
    }
    if (map.tile) return pigment;
    return pov_maps::Once(PatternPiece(pov_maps::Within(map)), "pigment_map", below, pigment);
}

std::string CPovMaterials::Normal(const CPreparedMaterial& material) {
    const CPovPictures::CPicture* picture = ValuePicture(material.bump);
    if (picture == nullptr) return {};
    const float size = kBumpHeight * Unit(material.bump.amount) *
                       static_cast<float>(std::max(picture->width, picture->height));
    // POV-Ray takes Y for up when it lays the slopes of a bump map on a surface; here Z is. The transform of an outer
    // pattern turns the slopes alone, while the map's own would move the picture, too.
    const std::string body = "average normal_map{[1 uv_mapping bump_map{" + std::string(picture->type) +
                             " \"" + picture->fileName + "\" interpolate 2 bump_size " + Number(size) + '}' +
                             pov_maps::Placement(material.bump) + "]}scale<1,-1,1>rotate -90*x";
    return "normal{" + Piece("normal", body) + '}';
}

std::string CPovMaterials::Finish(const CPreparedMaterial& material, CTerms terms, bool mapped) {
    // A self-illuminated surface takes less light from lamps.
    const float plain = Unit(m_format.diffuse), own = Unit(m_format.selfDiffuse);
    float diffuse = terms.lit ? plain + (own - plain) * terms.self : 0;
    float self = terms.self;
    if (material.additive) {
        diffuse *= terms.opacity / kAdditiveCover;
        self *= terms.opacity / kAdditiveCover;
    }
    std::string finish = "finish{diffuse " + Number(diffuse);
    if (self > 0) finish += " emission " + Number(self);
    const bool covered = mapped && material.texture.HasEffect() && Unit(material.texture.amount) >= 1;
    const CVec3 base = BaseColor(material, m_scene.ambientLight);
    CVec3 ambient =
        covered ? m_scene.ambientLight : AmbientFactor(m_scene.ambientLight, material.ambient, base);
    if (material.additive) ambient = ambient * (terms.opacity / kAdditiveCover);
    if (ambient.x > 0 || ambient.y > 0 || ambient.z > 0) finish += " ambient " + Rgb(ambient);
    const float strength = Luminance(material.specular) * Unit(material.shininessStrength);
    if (strength > 0 && terms.lit && !terms.highlightApart) {
        // POV-Ray does not dim the highlights of transparent surfaces; the view does.
        finish += " specular " + Number(strength * terms.specular * terms.opacity * kViewDiffuse);
        finish += " roughness " + Number(std::exp2(-10 * Unit(material.shininess)));
        if (material.shading == EShading::Metal) finish += " metallic";
    }
    if (const float amount = Reflection(material); amount > 0) {
        finish += " reflection{" + Number(amount * terms.opacity) + '}';
    }
    return finish + '}';
}

float CPovMaterials::Reflection(const CPreparedMaterial& material) {
    const CPreparedMap& map = material.reflection;
    if (!m_format.outputTextures || !map.HasEffect()) return 0;
    const CPovPictures::CPicture* picture =
        m_pictures.Use(map.texture, map.negative ? EPovPicture::NegativeColor : EPovPicture::Color);
    if (picture == nullptr) return 0;
    if (!m_environment) m_environment = *picture;
    return Unit(map.amount);
}

/** A POV-Ray finish has no colour for its highlight, but a transparent metallic layer on top has. */
std::string CPovMaterials::HighlightLayer(const CPreparedMaterial& material) {
    return "texture{pigment{" + Rgb(material.specular) + " transmit 1}finish{diffuse 0 specular " +
           Number(Unit(material.shininessStrength) * (1 - Unit(material.transparency)) * kViewDiffuse) +
           " roughness " + Number(std::exp2(-10 * Unit(material.shininess))) + " metallic}}";
}

void CPovMaterials::Write(CPovText& text) const {
    const auto writeExist = [&](const std::vector<std::string>& files) {
        for (const std::string& file : files) {
            text << (&file == &files.front() ? "" : "&") << "file_exists(\"" << file << "\")";
        }
    };
    text << m_patterns.Text();
    std::vector<std::string> all;
    for (std::uint32_t i = 0; i < m_textures.size(); ++i) {
        const CTexture& texture = m_textures[i];
        const auto declare = [&](const std::string& body) {
            text << "#declare T" << i << "=texture{" << body << '}' << texture.layer << '\n';
        };
        text << "// " << pov_text::CommentText(texture.name) << '\n';
        if (texture.files.empty()) {
            declare(texture.body);
            continue;
        }
        all.insert(all.end(), texture.files.begin(), texture.files.end());
        text << "#if(";
        writeExist(texture.files);
        text << ")\n" << texture.shared;
        declare(texture.body);
        text << "#else\n";
        declare(texture.plainBody);
        text << "#end\n";
    }
    if (all.empty()) return;
    std::sort(all.begin(), all.end());
    all.erase(std::unique(all.begin(), all.end()), all.end());
    text << "#if(!(";
    writeExist(all);
    text << "))#warning \"Pictures are missing: start POV-Ray in the folder of this file.\\n\"#end\n";
}
