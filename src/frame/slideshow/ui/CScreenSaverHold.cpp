// SPDX-License-Identifier: MIT
#include "frame/slideshow/ui/CScreenSaverHold.h"

#include <gio/gio.h>

#include <cstdlib>

struct CScreenSaverHold::CState {
    struct CDrop {
        void operator()(GDBusConnection* bus) const { g_object_unref(bus); }
    };

    std::string reason;
    std::unique_ptr<GDBusConnection, CDrop> bus;
    bool isWanted = true;
    guint32 cookie = 0;  ///< names our request; 0 until it is granted

    void Call(const char* method, GVariant* arguments, GAsyncReadyCallback answered, gpointer data) const {
        g_dbus_connection_call(bus.get(), "org.freedesktop.ScreenSaver", "/org/freedesktop/ScreenSaver",
                               "org.freedesktop.ScreenSaver", method, arguments, nullptr,
                               G_DBUS_CALL_FLAGS_NO_AUTO_START, -1, nullptr, answered, data);
    }
    void Release() {
        isWanted = false;
        if (cookie != 0) Call("UnInhibit", g_variant_new("(u)", cookie), nullptr, nullptr);
        cookie = 0;
    }
};

namespace {

using CStatePtr = std::shared_ptr<CScreenSaverHold::CState>;

CStatePtr Take(gpointer data) {
    const std::unique_ptr<CStatePtr> held(static_cast<CStatePtr*>(data));
    return *held;
}

void OnGranted(GObject* bus, GAsyncResult* result, gpointer data) {
    const CStatePtr state = Take(data);
    GVariant* answer =
        g_dbus_connection_call_finish(reinterpret_cast<GDBusConnection*>(bus), result, nullptr);
    if (answer == nullptr) return;
    if (g_variant_is_of_type(answer, G_VARIANT_TYPE("(u)"))) g_variant_get(answer, "(u)", &state->cookie);
    g_variant_unref(answer);
    if (!state->isWanted) state->Release();
}

void OnBus(GObject*, GAsyncResult* result, gpointer data) {
    const CStatePtr state = Take(data);
    state->bus.reset(g_bus_get_finish(result, nullptr));
    if (!state->bus || !state->isWanted) return;
    state->Call("Inhibit", g_variant_new("(ss)", "Orbivue", state->reason.c_str()), OnGranted,
                new CStatePtr(state));
}

}  // namespace

CScreenSaverHold::CScreenSaverHold(const std::string& reason) : m_state(std::make_shared<CState>()) {
    // Without an address a bus would be started, which lives on.
    if (std::getenv("DBUS_SESSION_BUS_ADDRESS") == nullptr) return;
    m_state->reason = reason;
    g_bus_get(G_BUS_TYPE_SESSION, nullptr, OnBus, new CStatePtr(m_state));
}

CScreenSaverHold::~CScreenSaverHold() {
    m_state->Release();
}
