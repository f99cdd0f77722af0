// SPDX-License-Identifier: MIT
#include "export/webgl/page_settings.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <nlohmann/json.hpp>
#include <span>

#include "base/text/number_text.h"
#include "export/webgl/page_text.h"
#include "files/file_util_ex.h"
#include "model/prepare/CPreparedScene.h"
#include "picture/CImage.h"
#include "picture/image_writer.h"
#include "picture/shrink_image.h"

namespace {

using CJson = nlohmann::ordered_json;

/** A float with as few digits as it needs, a whole number without a point. */
CJson Short(float value) {
    constexpr float kMostWhole = 1 << 24;
    if (value == std::round(value) && std::abs(value) <= kMostWhole) return static_cast<int>(value);
    double number = 0;
    const std::string text = number_text::FormatShortest(value);
    (void)std::from_chars(text.data(), text.data() + text.size(), number);  // a number by its making
    return number;
}

CJson Numbers(std::span<const float> values) {
    CJson array = CJson::array();
    for (const float value : values) array.push_back(Short(value));
    return array;
}

CJson Vector(CVec3 v) {
    return Numbers(std::array{v.x, v.y, v.z});
}

CJson Color(const C3ds2WebGL::COutFormat& format) {
    std::array color{format.bkRed, format.bkGreen, format.bkBlue};
    for (float& value : color) value = std::isfinite(value) ? std::clamp(value, 0.0f, 1.0f) : 0.0f;
    return Numbers(color);
}

CJson View(const CSeenView& seen) {
    const CViewCamera& camera = seen.camera;
    ECameraPreset preset{};
    CJson view{{"eye", Vector(seen.Eye())},
               {"target", Vector(camera.Target())},
               {"up", Vector(camera.Up())},
               {"fovYDeg", Short(camera.FovYDeg())},
               {"size", {std::lround(camera.ViewWidth()), std::lround(camera.ViewHeight())}}};
    if (const CMat4 model = seen.ModelMatrix(); !(model == CMat4{})) view["model"] = Numbers(model.m);
    view["camera"] = page_text::Sound(camera.Name());
    view["preset"] = PresetOfName(camera.Name(), preset) && NameOfPreset(preset) == camera.Name();
    return view;
}

/** What this page may have to say. */
CJson Texts(const CWebGLSource& source, const C3ds2WebGL::COutFormat& format) {
    const CPageTexts english = CPageTexts::English();
    CJson texts = CJson::object();
    for (const auto& [key, ignored] : english.texts) texts[key] = page_text::Sound(source.texts.Of(key));
    const auto leaveOut = [&texts](std::initializer_list<const char*> keys) {
        for (const char* key : keys) texts.erase(key);
    };
    leaveOut({"noScript", "loading"});  // the page itself says these
    if (format.combine) leaveOut({"noScene"});
    if (!format.camerasBar) leaveOut({"top", "left", "right", "front", "back", "iso"});
    if (!format.camerasBar || source.scene.cameras.empty()) leaveOut({"cameras"});
    if (!source.scene.animated) leaveOut({"play", "pause", "frame"});
    if (!format.downloadLink) leaveOut({"download"});
    return texts;
}

/** As an address that holds the picture itself; empty where it cannot be packed. */
std::string PictureAddress(const CImage& image) {
    constexpr int kMostSide = 2048;
    const CImage small = ShrinkImage(image, kMostSide);
    const auto png = image_codec::PngBytes(small, true);
    return png ? "data:image/png;base64," + page_text::Base64(png.Value()) : std::string();
}

}  // namespace

std::string PageTitle(const C3ds2WebGL::COutFormat& format) {
    const std::string name = file_util_ex::GetFileName(format.modelFileName);
    const std::string stem = file_util_ex::GetFileNameWithPath(name);
    return page_text::Sound(stem.empty() ? name : stem);
}

std::string PageSettings(const CWebGLSource& source, const C3ds2WebGL::COutFormat& format,
                         const CPageLinks& links) {
    CJson json{{"title", PageTitle(format)}, {"background", Color(format)}};
    if (source.seen.backgroundImage && !source.seen.backgroundImage->IsEmpty()) {
        const std::string address = PictureAddress(*source.seen.backgroundImage);
        if (!address.empty()) json["backgroundPicture"] = address;
    }
    json["view"] = View(source.seen);
    if (source.scene.animated) json["frame"] = Short(source.seen.frame);
    if (format.displayFlag) json["wire"] = true;
    if (format.doubleSided) json["doubleSided"] = true;
    if (format.camerasBar) json["camerasBar"] = true;
    if (!links.download.empty()) json["download"] = links.download;
    if (!links.scene.empty()) json["files"] = {{"scene", links.scene}, {"script", links.sceneScript}};
    json["texts"] = Texts(source, format);
    return json.dump(-1, ' ', false, CJson::error_handler_t::replace);
}
