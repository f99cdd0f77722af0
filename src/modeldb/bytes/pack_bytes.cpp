// SPDX-License-Identifier: MIT
#include "modeldb/bytes/pack_bytes.h"

#include <zstd.h>

#include <algorithm>
#include <array>
#include <new>
#include <string_view>

#include "base/text/lng.h"

namespace {

constexpr int kLevel = 3;
constexpr std::size_t kTrialBytes = 64 << 10;  ///< the beginning that decides
constexpr std::size_t kPieceBytes = 64 << 10;
constexpr int kMaxWindowLog = 23;  ///< 8 MB, as all our own frames ask for at most

/** What is packed already begins so: JPEG, PNG, GIF, zip, gzip. */
constexpr std::array<std::string_view, 5> kPackedSignatures{"\xFF\xD8\xFF", "\x89PNG", "GIF8", "PK\x03\x04",
                                                            "\x1F\x8B"};

bool IsPackedAlready(std::span<const std::byte> begin) {
    const std::string_view text(reinterpret_cast<const char*>(begin.data()), begin.size());
    return std::ranges::any_of(kPackedSignatures,
                               [&](std::string_view signature) { return text.starts_with(signature); });
}

CError Damaged() {
    return {EErrorCode::BadFormat, lng::Mark("the kept bytes are damaged"), {}};
}

struct CContextDeleter {
    void operator()(ZSTD_CCtx* context) const { ZSTD_freeCCtx(context); }
};
using CContext = std::unique_ptr<ZSTD_CCtx, CContextDeleter>;

/** A context of this thread that nobody uses: making one and its tables takes longer than packing a small file. */
CContext& SpareContext() {
    static thread_local CContext spare;
    return spare;
}

}  // namespace

struct CBytePacker::CState {
    explicit CState(CByteSink& sink) : kept(sink), context(std::move(SpareContext())) {
        if (context) return;
        context.reset(ZSTD_createCCtx());
        if (!context || ZSTD_isError(ZSTD_CCtx_setParameter(context.get(), ZSTD_c_compressionLevel, kLevel)))
            throw std::bad_alloc();
    }
    CState(const CState&) = delete;
    CState& operator=(const CState&) = delete;
    ~CState() {
        (void)ZSTD_CCtx_reset(context.get(), ZSTD_reset_session_only);  // cannot fail
        SpareContext() = std::move(context);
    }

    /** Decides by the beginning, which is gathered until then; isAll: no more bytes will come. */
    CStatus Begin(bool isAll) {
        decided = true;
        if (!IsPackedAlready(begin) && !begin.empty()) {
            out.resize(ZSTD_compressBound(begin.size()));
            const std::size_t size =
                ZSTD_compress2(context.get(), out.data(), out.size(), begin.data(), begin.size());
            if (!ZSTD_isError(size) && size < begin.size() - begin.size() / 20) codec = EBlobCodec::Zstd;
            if (isAll && codec == EBlobCodec::Zstd) return kept.Take(std::span(out).first(size));
        }
        const std::vector<std::byte> first = std::move(begin);
        return Keep(first, ZSTD_e_continue);
    }

    CStatus Keep(std::span<const std::byte> piece, ZSTD_EndDirective how) {
        if (codec == EBlobCodec::Plain) {
            if (piece.empty()) return CDone{};
            return kept.Take(piece);
        }
        out.resize(kPieceBytes);
        ZSTD_inBuffer in{piece.data(), piece.size(), 0};
        for (bool more = true; more;) {
            ZSTD_outBuffer to{out.data(), out.size(), 0};
            const std::size_t rest = ZSTD_compressStream2(context.get(), &to, &in, how);
            if (ZSTD_isError(rest)) throw std::bad_alloc();  // nothing else can happen to it
            if (to.pos > 0)
                if (CStatus taken = kept.Take(std::span(out).first(to.pos)); !taken) return taken;
            more = how == ZSTD_e_end ? rest != 0 : in.pos < in.size;
        }
        return CDone{};
    }

    CByteSink& kept;
    CContext context;
    std::vector<std::byte> begin, out;
    bool decided = false;
    EBlobCodec codec = EBlobCodec::Plain;
};

CBytePacker::CBytePacker(CByteSink& kept) : m_state(std::make_unique<CState>(kept)) {}
CBytePacker::~CBytePacker() = default;
CBytePacker::CBytePacker(CBytePacker&&) noexcept = default;

CStatus CBytePacker::Add(std::span<const std::byte> piece) {
    CState& state = *m_state;
    if (!state.decided) {
        const auto taken = piece.first(std::min(piece.size(), kTrialBytes - state.begin.size()));
        state.begin.insert(state.begin.end(), taken.begin(), taken.end());
        piece = piece.subspan(taken.size());
        if (state.begin.size() < kTrialBytes) return CDone{};
        if (CStatus begun = state.Begin(false); !begun) return begun;
    }
    return state.Keep(piece, ZSTD_e_continue);
}

CResult<EBlobCodec> CBytePacker::Finish() {
    if (!m_state->decided) {
        if (CStatus begun = m_state->Begin(true); !begun) return begun.Error();
        return m_state->codec;
    }
    if (CStatus ended = m_state->Keep({}, ZSTD_e_end); !ended) return ended.Error();
    return m_state->codec;
}

struct CByteUnpacker::CState {
    struct CDeleter {
        void operator()(ZSTD_DCtx* context) const { ZSTD_freeDCtx(context); }
    };

    CState(EBlobCodec how, std::uint64_t size, CByteSink& sink) : codec(how), left(size), plain(sink) {
        if (codec == EBlobCodec::Plain) return;
        context.reset(ZSTD_createDCtx());
        if (!context) throw std::bad_alloc();
        (void)ZSTD_DCtx_setParameter(context.get(), ZSTD_d_windowLogMax, kMaxWindowLog);
        out.resize(kPieceBytes);
    }

    CStatus HandOn(std::span<const std::byte> piece) {
        if (piece.size() > left) return Damaged();
        left -= piece.size();
        if (piece.empty()) return CDone{};
        return plain.Take(piece);
    }

    EBlobCodec codec;
    std::uint64_t left;
    CByteSink& plain;
    std::unique_ptr<ZSTD_DCtx, CDeleter> context;
    std::vector<std::byte> out;
    bool atEnd = false;  ///< of the frame
};

CByteUnpacker::CByteUnpacker(EBlobCodec codec, std::uint64_t size, CByteSink& plain)
    : m_state(std::make_unique<CState>(codec, size, plain)) {}
CByteUnpacker::~CByteUnpacker() = default;

CStatus CByteUnpacker::Take(std::span<const std::byte> piece) {
    CState& state = *m_state;
    if (state.codec == EBlobCodec::Plain) return state.HandOn(piece);
    ZSTD_inBuffer in{piece.data(), piece.size(), 0};
    // A full piece of output may mean that more waits inside.
    for (bool full = false; in.pos < in.size || full;) {
        if (state.atEnd) return Damaged();
        ZSTD_outBuffer to{state.out.data(), state.out.size(), 0};
        const std::size_t rest = ZSTD_decompressStream(state.context.get(), &to, &in);
        if (ZSTD_isError(rest)) return Damaged();
        if (CStatus handed = state.HandOn(std::span(state.out).first(to.pos)); !handed) return handed;
        state.atEnd = rest == 0;
        full = to.pos == to.size && !state.atEnd;
    }
    return CDone{};
}

CStatus CByteUnpacker::Finish() const {
    const bool complete = m_state->codec == EBlobCodec::Plain || m_state->atEnd;
    if (!complete || m_state->left != 0) return Damaged();
    return CDone{};
}
