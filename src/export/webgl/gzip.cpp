// SPDX-License-Identifier: MIT
#include "export/webgl/gzip.h"

#include <zlib.h>

#include <algorithm>
#include <limits>
#include <new>

namespace {

constexpr int kWindowOfGzip = 15 + 16;
constexpr int kMemory = 9;
/** What is larger holds mostly what is packed already, and would take seconds for a per mille. */
constexpr std::size_t kThoroughBytes = 4 << 20;

class CDeflater {
  public:
    explicit CDeflater(int level) {
        if (deflateInit2(&m_stream, level, Z_DEFLATED, kWindowOfGzip, kMemory, Z_DEFAULT_STRATEGY) != Z_OK)
            throw std::bad_alloc();
    }
    CDeflater(const CDeflater&) = delete;
    CDeflater& operator=(const CDeflater&) = delete;
    ~CDeflater() { deflateEnd(&m_stream); }
    [[nodiscard]] z_stream& Stream() { return m_stream; }

  private:
    z_stream m_stream{};
};

}  // namespace

std::vector<std::byte> Gzip(std::span<const std::byte> bytes) {
    constexpr int kQuick = 6;
    CDeflater deflater(bytes.size() > kThoroughBytes ? kQuick : Z_BEST_COMPRESSION);
    z_stream& stream = deflater.Stream();
    std::vector<std::byte> packed(deflateBound(&stream, static_cast<uLong>(bytes.size())));
    std::size_t in = 0, out = 0;
    for (int result = Z_OK; result == Z_OK;) {
        constexpr std::size_t kMost = std::numeric_limits<uInt>::max();
        stream.next_in = const_cast<Bytef*>(reinterpret_cast<const Bytef*>(bytes.data() + in));
        stream.avail_in = static_cast<uInt>(std::min(bytes.size() - in, kMost));
        stream.next_out = reinterpret_cast<Bytef*>(packed.data() + out);
        stream.avail_out = static_cast<uInt>(std::min(packed.size() - out, kMost));
        const uInt given = stream.avail_in, room = stream.avail_out;
        result = deflate(&stream, in + given == bytes.size() ? Z_FINISH : Z_NO_FLUSH);
        in += given - stream.avail_in;
        out += room - stream.avail_out;
    }
    packed.resize(out);
    return packed;
}
