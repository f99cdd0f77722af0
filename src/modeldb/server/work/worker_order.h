// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/CResult.h"
#include "modeldb/server/work/CModelInput.h"

/** What a process is started for. */
enum class EWork { Inspect, Preview, Page };

/** The descriptors that it has, beside an empty stream of errors. */
namespace worker_files {

constexpr int kOrder = 0;   ///< the order, to be read
constexpr int kAnswer = 1;  ///< a pipe
constexpr int kInput = 3;   ///< model and textures
constexpr int kPage = 4;    ///< where a page is written to; the others lack it

}  // namespace worker_files

/** What it is to do. */
struct CWorkerOrder {
    EWork work = EWork::Inspect;
    std::string name;
    CFileStretch model;
    std::vector<CTextureInput> textures;
};

/** How it fared. */
enum class EWorked : char {
    Done = 'd',     ///< with the preview's bytes; nothing follows for the others
    Refuses = 'r',  ///< the model cannot be worked on; the reason follows
    Fails = 'f',    ///< what the system lacks follows; another time it may have it
};
struct CWorkerAnswer {
    EWorked worked = EWorked::Fails;
    std::string rest;
};

namespace worker_order {

/** The order's bytes. */
[[nodiscard]] std::string Write(EWork work, const CModelInput& input);
/** Nothing for what Write did not write. */
[[nodiscard]] std::optional<CWorkerOrder> Read(std::string_view bytes);

/** What an answer says, which may be anything: of a preview a small picture, of all others one printable line. Nothing
 * where it is no answer to this work. */
[[nodiscard]] std::optional<CWorkerAnswer> ReadAnswer(EWork work, std::string_view bytes);
/** No answer has more bytes. */
constexpr std::size_t kMostAnswerBytes = 512 << 10;
constexpr int kPreviewSidePx = 256;

}  // namespace worker_order
