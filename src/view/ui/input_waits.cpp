// SPDX-License-Identifier: MIT
#include "view/ui/input_waits.h"

#include <wx/utils.h>

#if defined(__WXGTK__)
#include <X11/Xlib.h>
#include <X11/extensions/XI2.h>

namespace {

struct CWanted {
    bool isButtonHeld = false;
    int inputExtension = -1;  ///< under this number the toolkit gets the mouse and the keys
    bool isThere = false;
};

bool IsInput(int kind, int press, int release, int motion, int key, bool isButtonHeld) {
    return kind == press || kind == key || (isButtonHeld && (kind == motion || kind == release));
}

/** Called for each event that waits. Never takes one: it must be left in the queue. */
Bool Look(Display*, XEvent* event, XPointer argument) {
    auto& wanted = *reinterpret_cast<CWanted*>(argument);
    const bool held = wanted.isButtonHeld;
    if (event->type == GenericEvent && event->xcookie.extension == wanted.inputExtension) {
        const int kind = event->xcookie.evtype;
        wanted.isThere |= kind == XI_TouchBegin ||
                          IsInput(kind, XI_ButtonPress, XI_ButtonRelease, XI_Motion, XI_KeyPress, held);
    } else {
        wanted.isThere |= IsInput(event->type, ButtonPress, ButtonRelease, MotionNotify, KeyPress, held);
    }
    return False;
}

int InputExtensionOf(Display* display) {
    int opcode = -1, event = 0, error = 0;
    return XQueryExtension(display, "XInputExtension", &opcode, &event, &error) ? opcode : -1;
}

}  // namespace

bool InputWaits(bool isButtonHeld) {
    const wxDisplayInfo info = wxGetDisplayInfo();
    if (info.type != wxDisplayX11 || !info.dpy) return false;
    auto* display = static_cast<Display*>(info.dpy);
    static const int extension = InputExtensionOf(display);
    CWanted wanted{isButtonHeld, extension};
    XEvent unused;
    (void)XCheckIfEvent(display, &unused, Look, reinterpret_cast<XPointer>(&wanted));
    return wanted.isThere;
}
#else
bool InputWaits(bool) {
    return false;
}
#endif
