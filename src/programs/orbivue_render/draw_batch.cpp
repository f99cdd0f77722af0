// SPDX-License-Identifier: MIT
#include "programs/orbivue_render/draw_batch.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <deque>
#include <new>
#include <optional>

#include "base/CStopwatch.h"
#include "base/process_memory.h"
#include "base/text/lng.h"
#include "engine/C3dsDisplayWrap.h"
#include "engine/gl/COffscreenContext.h"
#include "files/file_util_ex.h"
#include "model/open/load_scene.h"
#include "model/prepare/CPreparedScene.h"
#include "picture/image_writer.h"
#include "process/confine.h"
#include "process/process_limits.h"
#include "programs/orbivue_render/CRecords.h"
#include "programs/orbivue_render/CRenderOptions.h"
#include "programs/orbivue_render/batch_lines.h"
#include "programs/orbivue_render/render_stats.h"
#include "programs/orbivue_render/script_icon.h"
#include "programs/shared/draw_model.h"
#include "programs/shared/open_input.h"

namespace {

constexpr std::uint64_t kSecondsForOne = 10;  ///< of processor time

/** Orders as they come in. */
class COrders {
  public:
    explicit COrders(int from) : m_from(from) {}

    /** Waits for the next; nothing when there will be none. */
    std::optional<CBatchItem> Next() {
        constexpr std::size_t kParts = 4;
        while (m_parts.size() < kParts) {
            std::array<char, 4096> buffer{};
            const ssize_t got = ::read(m_from, buffer.data(), buffer.size());
            if (got < 0 && errno == EINTR) continue;
            if (got <= 0) return std::nullopt;
            for (std::string& part : m_records.Add({buffer.data(), static_cast<std::size_t>(got)}))
                m_parts.push_back(std::move(part));
        }
        CBatchItem item{0, m_parts[1], m_parts[3], m_parts[2]};
        (void)std::from_chars(m_parts[0].data(), m_parts[0].data() + m_parts[0].size(), item.number);
        m_parts.erase(m_parts.begin(), m_parts.begin() + kParts);
        return item;
    }

  private:
    int m_from;
    CRecords m_records{'\0'};
    std::deque<std::string> m_parts;
};

/** Draws with one engine and one context. */
class CDrawer {
  public:
    explicit CDrawer(const CRenderOptions& options) : m_options(options) {
        // Of a small picture's textures hardly a pixel in ten is seen.
        const auto pixels =
            static_cast<std::uint64_t>(options.width) * static_cast<std::uint64_t>(options.height);
        m_limits.pictureBytes =
            std::clamp<std::uint64_t>(pixels * 4 * 64, 4 << 20, scene_budget::kPictureBytesForOneView);
    }

    std::string Draw(const CBatchItem& item) {
        const CStopwatch watch;
        CStatus drawn = CDone{};
        try {
            const int side = std::min(m_options.width, m_options.height);
            if (const auto icon = IconOf(item.path, m_options.scene, side);
                icon && image_codec::WritePng(item.output, *icon, true))
                return batch_lines::IconSuccess(item, watch.Ms());
            drawn = DrawInto(item);
        } catch (const std::bad_alloc&) {
            drawn = CError{EErrorCode::TooLarge, lng::Mark("not enough memory to draw it"), {}};
        } catch (const std::exception& error) {
            drawn = CError{EErrorCode::BadFormat, error.what(), {}};
        }
        std::string line;
        if (drawn) {
            const CPreparedScene& scene = *m_engine.Prepared();
            line = batch_lines::Success(item, scene.triangleCount, DrawnNodes(scene), watch.Ms());
        } else {
            const EErrorCode code = drawn.Error().code;
            const bool passes = code == EErrorCode::WriteFailed || code == EErrorCode::NoGraphics;
            line = batch_lines::Failure(item, drawn.Error().Text(),
                                        passes ? EBatchFailure::Passing : EBatchFailure::Lasting);
        }
        return line;
    }
    void Forget() {
        if (m_context) (void)m_context->MakeCurrent();
        m_engine.CloseModel();
    }

  private:
    CStatus DrawInto(const CBatchItem& item) {
        if (!m_context) {
            CResult<COffscreenContext> made =
                COffscreenContext::Create(m_options.width, m_options.height, m_options.samples.value_or(4));
            if (!made) return made.Error();
            m_context.emplace(std::move(made).Value());
        }
        (void)m_context->MakeCurrent();
        CResult<COpenedInput> opened = OpenInput(m_engine, item.path, m_limits, m_options.scene);
        if (!opened) return opened.Error();
        if (CStatus ready = SetUp(m_engine, m_options, opened.Value()); !ready) return ready;
        const CResult<CImage> picture = ::Draw(m_engine, *m_context, m_options);
        if (!picture) return picture.Error();
        const CResult<std::vector<std::byte>> png = image_codec::PngBytes(picture.Value(), false);
        if (!png) return png.Error();
        return file_util_ex::WriteOutput(item.output, png.Value());
    }

    const CRenderOptions& m_options;
    C3dsDisplayWrap m_engine;
    CLoadLimits m_limits;
    std::optional<COffscreenContext> m_context;
};

bool Put(int to, std::string_view text) {
    while (!text.empty()) {
        const ssize_t put = ::write(to, text.data(), text.size());
        if (put < 0 && errno == EINTR) continue;
        if (put <= 0) return false;
        text.remove_prefix(static_cast<std::size_t>(put));
    }
    return true;
}

}  // namespace

void DrawBatch(const CRenderOptions& options, const CFileAccess& files, int orders, int answers) {
    CConfinement confinement{LimitsForDrawing(), files};
    confinement.limits.processorSeconds = 0;  // it has so much for each picture
    (void)ConfineProcess(confinement);
    COrders wanted(orders);
    CDrawer drawer(options);
    while (const std::optional<CBatchItem> item = wanted.Next()) {
        (void)LimitProcessorTimeFromNow(kSecondsForOne);
        if (!Put(answers, drawer.Draw(*item))) return;
        drawer.Forget();
    }
}
