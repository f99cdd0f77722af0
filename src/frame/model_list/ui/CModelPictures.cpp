// SPDX-License-Identifier: MIT
#include "frame/model_list/ui/CModelPictures.h"

#include <wx/image.h>

#include <algorithm>
#include <cmath>
#include <utility>

#include "files/file_util_ex.h"
#include "frame/preview/preview_facts.h"

namespace {

constexpr double kMostBytes = 24 << 20;  ///< of pictures in memory

std::size_t MostPictures(double sidePx) {
    return static_cast<std::size_t>(std::max(kMostBytes / (sidePx * sidePx * 4), 64.0));
}

wxBitmap BitmapFrom(const CImage& picture, double scale) {
    wxImage image(picture.width, picture.height, false);
    image.InitAlpha();
    unsigned char *colours = image.GetData(), *alpha = image.GetAlpha();
    for (std::size_t i = 0; i < picture.rgba.size(); i += 4) {
        colours = std::copy_n(&picture.rgba[i], 3, colours);
        *alpha++ = picture.rgba[i + 3];
    }
    return {image, wxBITMAP_SCREEN_DEPTH, scale};
}

}  // namespace

CModelPictures::CModelPictures(int side, double scale, std::function<void()> changed)
    : m_scale(scale),
      m_changed(std::move(changed)),
      m_queue(*this, MostPictures(side * scale)),
      m_batch(static_cast<int>(ThumbnailSizeFor(static_cast<int>(std::lround(side * scale)))),
              [this](const CPictureBatch::CDrawn& drawn) { OnDrawn(drawn); }),
      m_loader(std::make_unique<CThumbnailLoader>(CThumbnailCache::OfUser(),
                                                  static_cast<int>(std::lround(side * scale)),
                                                  [this] { m_handler.CallAfter([this] { TakeNews(); }); })) {}

CModelPictures::~CModelPictures() = default;

const wxBitmap* CModelPictures::BitmapOf(const std::wstring& path) const {
    const auto found = m_bitmaps.find(path);
    return found == m_bitmaps.end() ? nullptr : &found->second;
}

std::wstring CModelPictures::ProblemOf(const std::wstring& path) const {
    const auto found = m_problems.find(path);
    if (found == m_problems.end()) return {};
    return preview_facts::ProblemText(found->second, file_util_ex::ConvertToUTF8(path));
}

void CModelPictures::OnDrawn(const CPictureBatch::CDrawn& drawn) {
    if (drawn.answer.problem.empty())
        m_loader->KeepPicture(drawn.path, drawn.pngPath);
    else
        m_loader->KeepFailure(drawn.path, drawn.answer.problem, !drawn.answer.isPassing);
}

void CModelPictures::TakeNews() {
    for (CThumbnailNews& news : m_loader->TakeNews()) Take(news);
    m_changed();
}

void CModelPictures::Take(CThumbnailNews& news) {
    m_problems.erase(news.path);
    EPictureEnd end = EPictureEnd::Missing;
    if (news.picture) {
        m_bitmaps[news.path] = BitmapFrom(*news.picture, m_scale);
        end = EPictureEnd::Ready;
    } else if (news.problem) {
        m_problems[news.path] = std::move(*news.problem);
        end = EPictureEnd::Failed;
    }
    // What has been dropped meanwhile is dropped once more.
    news.wasDrawn ? m_queue.OnDrawn(news.path, end) : m_queue.OnLooked(news.path, end);
}
