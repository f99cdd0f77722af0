// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>

#include "base/CResult.h"
#include "picture/CImage.h"
#include "thumbnails/CThumbnailSource.h"
#include "thumbnails/png_texts.h"

/** The sizes that thumbnails are kept in: their longest sides in pixels. */
enum class EThumbnailSize { Normal = 128, Large = 256, XLarge = 512, XxLarge = 1024 };

/** The smallest size that holds a picture of so many pixels; the largest for more. */
[[nodiscard]] EThumbnailSize ThumbnailSizeFor(int sidePx);

/** The user's thumbnails, which file managers and we share, by freedesktop.org's "Thumbnail Managing Standard": a thumbnail is
 * a PNG picture under the MD5 of its file's address, and belongs to the file's present state when the address and the time
 * that stand in it agree. Any program may have put anything there, so a thumbnail is read as a stranger's
 * file: no links, of a limited size, by our own decoders. Of thumbnails inside the cache none are made. Nothing is
 * kept in memory; any thread may call. */
class CThumbnailCache {
  public:
    /** root: absolute; it is made when something is written, the folder above it as well. */
    explicit CThumbnailCache(std::string root);
    /** That in the user's cache folder. */
    [[nodiscard]] static CThumbnailCache OfUser();

    /** The thumbnail of this state of the file, of this size or the next larger one that is there. */
    [[nodiscard]] std::optional<CImage> Read(const CThumbnailSource& source, EThumbnailSize size) const;
    /** The picture's sides are at most those of the size. */
    [[nodiscard]] CStatus Write(const CThumbnailSource& source, EThumbnailSize size,
                                const CImage& picture) const;

    /** Why this version of the program could not draw this state of the file, a line of English; nothing where
     * it did not fail. */
    [[nodiscard]] std::optional<std::string> ReadFailure(const CThumbnailSource& source) const;
    [[nodiscard]] CStatus WriteFailure(const CThumbnailSource& source, const std::string& why) const;

  private:
    [[nodiscard]] bool Holds(const CThumbnailSource& source) const;
    [[nodiscard]] CStatus Put(const std::string& folder, const CThumbnailSource& source,
                              const CImage& picture, const png_texts::CTexts& more) const;

    std::string m_root;
};
