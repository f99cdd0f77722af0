// SPDX-License-Identifier: MIT
#include "engine/gl/COffscreenContext.h"

#include <EGL/egl.h>
#include <EGL/eglext.h>

#include <array>
#include <string_view>
#include <utility>

#include "base/text/lng.h"
#include "engine/gl/CGlCapabilities.h"
#include "engine/gl/CGlCurrent.h"
#include "engine/gl/CPictureTarget.h"
#include "engine/gl/gl_api.h"

namespace {

CError NoContext(std::string message) {
    return CError{EErrorCode::NoGraphics, std::move(message), ""};
}

bool ClientHas(std::string_view name) {
    const char* list = eglQueryString(EGL_NO_DISPLAY, EGL_EXTENSIONS);
    return list && std::string_view(list).find(name) != std::string_view::npos;
}

bool Starts(EGLDisplay display) {
    return display != EGL_NO_DISPLAY && eglInitialize(display, nullptr, nullptr) &&
           eglBindAPI(EGL_OPENGL_API);
}

EGLDisplay FindDeviceDisplay() {
    if (!ClientHas("EGL_EXT_platform_device")) return EGL_NO_DISPLAY;
    const auto query = reinterpret_cast<PFNEGLQUERYDEVICESEXTPROC>(eglGetProcAddress("eglQueryDevicesEXT"));
    std::array<EGLDeviceEXT, 16> devices{};
    EGLint count = 0;
    if (!query || !query(static_cast<EGLint>(devices.size()), devices.data(), &count)) return EGL_NO_DISPLAY;
    for (EGLint i = 0; i < count; ++i) {
        EGLDisplay display =
            eglGetPlatformDisplay(EGL_PLATFORM_DEVICE_EXT, devices[static_cast<std::size_t>(i)], nullptr);
        if (Starts(display)) return display;
    }
    return EGL_NO_DISPLAY;
}

/** Initialised once for the process and never terminated: that would destroy all other contexts too. */
EGLDisplay FindDisplay() {
    static const EGLDisplay found = [] {
        if (ClientHas("EGL_MESA_platform_surfaceless")) {
            EGLDisplay display =
                eglGetPlatformDisplay(EGL_PLATFORM_SURFACELESS_MESA, EGL_DEFAULT_DISPLAY, nullptr);
            if (Starts(display)) return display;
        }
        EGLDisplay device = FindDeviceDisplay();
        if (device != EGL_NO_DISPLAY) return device;
        EGLDisplay display = eglGetDisplay(EGL_DEFAULT_DISPLAY);
        return Starts(display) ? display : EGL_NO_DISPLAY;
    }();
    return found;
}

EGLConfig FindConfig(EGLDisplay display) {
    for (EGLint surface : {EGL_PBUFFER_BIT, EGL_DONT_CARE}) {
        const std::array<EGLint, 5> wanted{EGL_SURFACE_TYPE, surface, EGL_RENDERABLE_TYPE, EGL_OPENGL_BIT,
                                           EGL_NONE};
        EGLConfig config = nullptr;
        EGLint count = 0;
        if (eglChooseConfig(display, wanted.data(), &config, 1, &count) && count > 0) return config;
    }
    return nullptr;
}

}  // namespace

struct COffscreenContext::CState {
    EGLDisplay display = EGL_NO_DISPLAY;
    EGLContext context = EGL_NO_CONTEXT;
    EGLSurface surface = EGL_NO_SURFACE;
    CGlCurrent current;
    CPictureTarget target;
    std::string renderer;

    CState() = default;
    CState(const CState&) = delete;
    CState& operator=(const CState&) = delete;
    ~CState();
    [[nodiscard]] bool MakeCurrent() const {
        return eglGetCurrentContext() == context || eglMakeCurrent(display, surface, surface, context);
    }
    [[nodiscard]] CStatus Open();
    [[nodiscard]] CStatus MakeTarget(int width, int height, int samples);
};

COffscreenContext::CState::~CState() {
    if (context == EGL_NO_CONTEXT) return;
    if (MakeCurrent()) {
        target = {};
        eglMakeCurrent(display, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
    }
    eglDestroyContext(display, context);
    if (surface != EGL_NO_SURFACE) eglDestroySurface(display, surface);
}

CStatus COffscreenContext::CState::Open() {
    display = FindDisplay();
    if (display == EGL_NO_DISPLAY)
        return NoContext(lng::Mark("No graphics system can be started without a window"));
    eglBindAPI(EGL_OPENGL_API);
    EGLConfig config = FindConfig(display);
    context = eglCreateContext(display, config, EGL_NO_CONTEXT, nullptr);
    if (context == EGL_NO_CONTEXT) return NoContext(lng::Mark("The graphics system has no desktop OpenGL"));
    if (!MakeCurrent()) {
        // Without surfaceless contexts a small surface stands in; nothing is drawn to it.
        const std::array<EGLint, 5> size{EGL_WIDTH, 16, EGL_HEIGHT, 16, EGL_NONE};
        surface = config ? eglCreatePbufferSurface(display, config, size.data()) : EGL_NO_SURFACE;
        if (surface == EGL_NO_SURFACE || !MakeCurrent()) {
            return NoContext(
                lng::Mark("Another OpenGL context is in use in this thread, or none can be used"));
        }
    }
    const GLubyte* name = glGetString(GL_RENDERER);
    renderer = name ? reinterpret_cast<const char*>(name) : "";
    if (!CGlCapabilities::Query(current).framebuffers) {
        return NoContext("OpenGL is too old to draw into memory (" + renderer + ")");
    }
    return CDone{};
}

CStatus COffscreenContext::CState::MakeTarget(int width, int height, int samples) {
    CResult<CPictureTarget> made = CPictureTarget::Create(current, width, height, samples);
    if (!made) return made.Error();
    target = std::move(made).Value();
    return CDone{};
}

COffscreenContext::COffscreenContext(std::unique_ptr<CState> state) : m_state(std::move(state)) {}
COffscreenContext::COffscreenContext(COffscreenContext&&) noexcept = default;
COffscreenContext& COffscreenContext::operator=(COffscreenContext&&) noexcept = default;
COffscreenContext::~COffscreenContext() = default;

CResult<COffscreenContext> COffscreenContext::Create(int width, int height, int samples) {
    auto state = std::make_unique<CState>();
    if (CStatus opened = state->Open(); !opened) return opened.Error();
    if (CStatus made = state->MakeTarget(width, height, samples); !made) return made.Error();
    return COffscreenContext(std::move(state));
}

CGlCurrent& COffscreenContext::MakeCurrent() {
    // It was current in Open; a later failure means that the thread holds a context of a window.
    (void)m_state->MakeCurrent();
    m_state->target.Bind(m_state->current);
    return m_state->current;
}

CStatus COffscreenContext::Resize(int width, int height, int samples) {
    MakeCurrent();
    CStatus made = m_state->MakeTarget(width, height, samples);
    MakeCurrent();
    return made;
}

CResult<CImage> COffscreenContext::ReadPixels() {
    return m_state->target.ReadPixels(MakeCurrent());
}

int COffscreenContext::Width() const {
    return m_state->target.Width();
}
int COffscreenContext::Height() const {
    return m_state->target.Height();
}
int COffscreenContext::Samples() const {
    return m_state->target.Samples();
}
std::string COffscreenContext::RendererName() const {
    return m_state->renderer;
}
