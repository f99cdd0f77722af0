// SPDX-License-Identifier: MIT
#include "view/ui/display_speed.h"

#include <wx/utils.h>

#if defined(__WXGTK__) && !wxUSE_GLCANVAS_EGL
#include <GL/glx.h>
#include <GL/glxext.h>
#include <X11/Xlib.h>

bool IsDisplayDrawnInSoftware() {
    const wxDisplayInfo info = wxGetDisplayInfo();
    if (info.type != wxDisplayX11 || !info.dpy) return false;
    auto* display = static_cast<Display*>(info.dpy);
    const auto query = reinterpret_cast<PFNGLXQUERYRENDERERINTEGERMESAPROC>(
        glXGetProcAddress(reinterpret_cast<const GLubyte*>("glXQueryRendererIntegerMESA")));
    const char* extensions = glXQueryExtensionsString(display, DefaultScreen(display));
    if (!query || !extensions || !wxString(extensions).Contains("GLX_MESA_query_renderer")) return false;
    unsigned accelerated = 1;
    return query(display, DefaultScreen(display), 0, GLX_RENDERER_ACCELERATED_MESA, &accelerated) &&
           accelerated == 0;
}
#else
bool IsDisplayDrawnInSoftware() {
    return false;
}
#endif
