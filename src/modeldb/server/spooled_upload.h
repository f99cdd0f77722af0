// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "base/CResult.h"
#include "modeldb/protocol/wire_records.h"
#include "modeldb/server/http/CHttpBody.h"
#include "modeldb/server/work/CModelInput.h"
#include "modeldb/store/CModelStore.h"

/** An upload that has come whole: its head, and where in the body its parts are. Sizes and hashes are right; what the bytes
 * hold is not known yet. */
struct CSpooledUpload {
    CUploadHead head;
    std::uint32_t key = 0;  ///< CalcCrc of the file
    CModelInput input;      ///< holds the body
};

/** What becomes of an upload before it is kept. Functions block: they are for workers. */
namespace spooled_upload {

/** Reads a body. BadFormat, TooLarge: it is no upload, see CUploadBodyReader. */
[[nodiscard]] CResult<CSpooledUpload> Read(CHttpBody body, std::size_t mostTextures);
/** Unsupported unless each texture is a picture of a kind that the viewer reads, by its first bytes, and of a size that it
 * reads. No picture is decoded. */
[[nodiscard]] CStatus CheckPictures(const CSpooledUpload& upload);
/** Packs all bytes for the store. After a failure what was staged is discarded. */
[[nodiscard]] CResult<CNewModel> Pack(CModelStore& store, const CSpooledUpload& upload);

}  // namespace spooled_upload
