// SPDX-License-Identifier: MIT
#include "make_samples/picture_file.h"

#include <algorithm>
#include <fstream>
#include <stdexcept>

#include "base/text/ascii_text.h"
#include "picture/image_writer.h"

namespace {

/** Uncompressed 32-bit TGA, rows from the bottom, as most programs of the format's time wrote it. */
bool WriteTga(const CImage& image, const std::filesystem::path& path) {
    std::string bytes(18, '\0');
    bytes[2] = 2;
    for (int i = 0; i < 2; ++i) {
        bytes[static_cast<std::size_t>(12 + i)] = static_cast<char>(image.width >> (8 * i));
        bytes[static_cast<std::size_t>(14 + i)] = static_cast<char>(image.height >> (8 * i));
    }
    bytes[16] = 32;
    bytes[17] = 8;
    for (int y = image.height; y-- > 0;) {
        for (int x = 0; x < image.width; ++x) {
            const std::uint8_t* p = image.Pixel(x, y);
            for (const int channel : {2, 1, 0, 3}) bytes += static_cast<char>(p[channel]);
        }
    }
    std::ofstream file(path, std::ios::binary);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    return file.good();
}

}  // namespace

CImage Paint(int width, int height, const CPainter& painter) {
    CImage image{width, height, {}};
    image.rgba.reserve(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 4);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const CVec3 color = painter((static_cast<float>(x) + 0.5f) / static_cast<float>(width),
                                        1 - (static_cast<float>(y) + 0.5f) / static_cast<float>(height));
            for (const float c : {color.x, color.y, color.z}) {
                image.rgba.push_back(static_cast<std::uint8_t>(std::lround(std::clamp(c, 0.0f, 1.0f) * 255)));
            }
            image.rgba.push_back(255);
        }
    }
    return image;
}

void SavePicture(const CImage& image, const std::filesystem::path& path) {
    if (path.has_parent_path()) std::filesystem::create_directories(path.parent_path());
    const std::string extension = ascii_text::Lowered(path.extension().string());
    const bool written = extension == ".tga"   ? WriteTga(image, path)
                         : extension == ".png" ? image_codec::WritePng(path.string(), image, false).HasValue()
                                               : image_codec::WriteJpeg(path.string(), image, 88).HasValue();
    if (!written) throw std::runtime_error("could not write " + path.string());
}
