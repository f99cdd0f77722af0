// SPDX-License-Identifier: MIT
#include "widgets/tools/ui/tool_icon.h"

#include <wx/icon.h>
#include <wx/image.h>
#include <wx/log.h>

#include <algorithm>
#include <functional>
#include <string_view>

#include "base/text/lng.h"
#include "files/std_file_paths.h"

namespace {

/** Pictures that point along the line of writing: they point the other way where that runs from right to left. Those of
 * players, such as play.ico, point right everywhere. */
bool IsDirected(std::string_view fileName) {
    constexpr std::string_view kDirected[] = {"prev.ico", "next.ico", "exit.ico"};
    return std::ranges::count(kDirected, fileName) > 0;
}

/** Loads an icon of the images folder in all sizes from a given one up, each passed through change. */
wxBitmapBundle LoadSizes(const char* fileName, int size, const std::function<void(wxImage&)>& change) {
    const wxLogNull quiet;  // a program without its pictures still works
    const wxString path = std_file_paths::GetImgPath(lng::ConvertFromUTF8(fileName));
    wxVector<wxBitmap> sizes;
    const bool isMirrored = lng::IsRightToLeft() && IsDirected(fileName);
    const int count = wxImage::GetImageCount(path, wxBITMAP_TYPE_ICO);
    for (int i = 0; i < count; ++i) {
        wxImage image;
        if (!image.LoadFile(path, wxBITMAP_TYPE_ICO, i) || image.GetWidth() < size) continue;
        if (isMirrored) image = image.Mirror();
        change(image);
        sizes.push_back(wxBitmap(image));
    }
    return wxBitmapBundle::FromBitmaps(sizes);
}

/** Grey and mostly transparent, so that it looks disabled on light and dark backgrounds. The toolkit's own
 * way brightens it, which makes it conspicuous on a dark one. */
void Fade(wxImage& image) {
    constexpr int kOpacityPercent = 45;
    image = image.ConvertToGreyscale();
    if (!image.HasAlpha()) image.InitAlpha();
    const int pixels = image.GetWidth() * image.GetHeight();
    unsigned char* alpha = image.GetAlpha();
    for (int i = 0; i < pixels; ++i) alpha[i] = static_cast<unsigned char>(alpha[i] * kOpacityPercent / 100);
}

}  // namespace

wxBitmapBundle LoadIcon(const char* fileName, int size) {
    return LoadSizes(fileName, size, [](wxImage&) {});
}

wxBitmapBundle LoadFadedIcon(const char* fileName, int size) {
    return LoadSizes(fileName, size, Fade);
}
