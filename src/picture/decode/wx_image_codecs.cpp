// SPDX-License-Identifier: MIT
#include "picture/decode/wx_image_codecs.h"

#include <wx/imagbmp.h>
#include <wx/image.h>
#include <wx/imaggif.h>
#include <wx/imagpcx.h>
#include <wx/imagtga.h>
#include <wx/imagtiff.h>
#include <wx/log.h>
#include <wx/mstream.h>
#include <wx/thread.h>

#include <exception>
#include <mutex>

namespace {

/** Keeps the toolkit's log quiet. wxLogNull will not do: in a program that has not started the toolkit all
 * threads count as its main thread and share one switch, so of two that overlap the first to end would turn
 * the log on for both. */
class CSilence {
  public:
    CSilence() {
        const std::lock_guard guard(s_lock);
        if (!m_shared) {
            m_before = wxLog::EnableLogging(false);
        } else if (s_users++ == 0) {
            s_before = wxLog::EnableLogging(false);
        }
    }
    CSilence(const CSilence&) = delete;
    CSilence& operator=(const CSilence&) = delete;
    ~CSilence() {
        const std::lock_guard guard(s_lock);
        if (!m_shared) {
            wxLog::EnableLogging(m_before);
        } else if (--s_users == 0) {
            wxLog::EnableLogging(s_before);
        }
    }

  private:
    static inline std::mutex s_lock;
    static inline int s_users = 0;       ///< of the shared switch
    static inline bool s_before = true;  ///< how the first of them found it
    const bool m_shared = wxThread::IsMain();
    bool m_before = true;  ///< how this thread's own switch was
};

using image_probe::EFormat;

// The handlers keep no state between calls, so one of each serves all threads and the toolkit's
// list is not touched.
wxImageHandler* HandlerOf(EFormat format) {
    static wxTGAHandler tga;
    static wxBMPHandler bmp;
    static wxGIFHandler gif;
    static wxTIFFHandler tiff;
    static wxPCXHandler pcx;
    switch (format) {
        case EFormat::Tga:
            return &tga;
        case EFormat::Bmp:
            return &bmp;
        case EFormat::Gif:
            return &gif;
        case EFormat::Tiff:
            return &tiff;
        case EFormat::Pcx:
            return &pcx;
        default:
            return nullptr;
    }
}

thread_local bool t_isDecoding = false;
wxAssertHandler_t g_otherAsserts = nullptr;

// The decoders assert on some damaged files. That is the file's fault, and must show no message box.
void OnAssert(const wxString& file, int line, const wxString& function, const wxString& what,
              const wxString& text) {
    if (!t_isDecoding && g_otherAsserts != nullptr) g_otherAsserts(file, line, function, what, text);
}

[[maybe_unused]] const bool g_assertsCaught = [] {
    g_otherAsserts = wxSetAssertHandler(OnAssert);
    return true;
}();

// Many old programs left the fourth byte 0 and meant nothing by it.
bool IsWhollyTransparent(const wxImage& image) {
    const unsigned char* alpha = image.GetAlpha();
    const std::size_t count =
        static_cast<std::size_t>(image.GetWidth()) * static_cast<std::size_t>(image.GetHeight());
    for (std::size_t i = 0; i < count; ++i) {
        if (alpha[i] != 0) return false;
    }
    return true;
}

void Interleave(const wxImage& image, CImage& out) {
    const bool useAlpha = image.HasAlpha() && !IsWhollyTransparent(image);
    out.width = image.GetWidth();
    out.height = image.GetHeight();
    const std::size_t count = static_cast<std::size_t>(out.width) * static_cast<std::size_t>(out.height);
    out.rgba.resize(count * 4);
    const unsigned char* rgb = image.GetData();
    const unsigned char* alpha = image.GetAlpha();
    std::uint8_t* to = out.rgba.data();
    for (std::size_t i = 0; i < count; ++i, to += 4, rgb += 3) {
        to[0] = rgb[0];
        to[1] = rgb[1];
        to[2] = rgb[2];
        to[3] = useAlpha ? alpha[i] : std::uint8_t{255};
    }
}

}  // namespace

extern "C" bool OrbivueDecodeWithWx(EFormat format, const std::byte* bytes, std::size_t size, CImage* out);

extern "C" bool OrbivueDecodeWithWx(EFormat format, const std::byte* bytes, std::size_t size, CImage* out) {
    const CSilence silence;
    wxImageHandler* handler = HandlerOf(format);
    if (handler == nullptr) return false;
    t_isDecoding = true;
    bool decoded = false;
    try {
        wxMemoryInputStream stream(bytes, size);
        wxImage image;
        decoded = handler->LoadFile(&image, stream, false, 0) && image.IsOk();
        if (decoded && image.HasMask()) image.InitAlpha();
        if (decoded) Interleave(image, *out);
    } catch (const std::exception&) {
        decoded = false;
    }
    t_isDecoding = false;
    return decoded;
}
