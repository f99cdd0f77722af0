// SPDX-License-Identifier: MIT
#include "widgets/ui/wx_window_state.h"

#include <gtk/gtk.h>
#include <wx/display.h>
#include <wx/timer.h>
#include <wx/toplevel.h>

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "settings/CLocalRegStore.h"
#include "widgets/window_place.h"

namespace wx_window_state {
namespace {

constexpr char kLeft[] = "Left";
constexpr char kTop[] = "Top";
constexpr char kWidth[] = "Width";
constexpr char kHeight[] = "Height";
constexpr char kMaximized[] = "Maximized";
constexpr int kSettleMs = 200;
constexpr char kPlaceKey[] = "orbivue-place";

bool IsNormal(const wxWindow& window) {
    const auto* top = dynamic_cast<const wxTopLevelWindow*>(&window);
    return top == nullptr || !(top->IsMaximized() || top->IsIconized() || top->IsFullScreen());
}

CPlaceRect PlaceOf(const wxWindow& window) {
    const wxPoint at = window.ToDIP(window.GetPosition());
    const wxSize size = window.ToDIP(window.GetSize());
    return {at.x, at.y, size.x, size.y};
}

/** Remembers the last normal place of one window. */
class CPlaceWatch {
  public:
    explicit CPlaceWatch(wxWindow& window) : m_window(window), m_place(PlaceOf(window)) {
        // The size event of a maximised window may arrive before the event that it is maximised, so a size
        // counts only after it has lasted a while.
        m_timer.Bind(wxEVT_TIMER, [this](wxTimerEvent&) { Note(); });
        window.Bind(wxEVT_SIZE, &CPlaceWatch::OnChange<wxSizeEvent>, this);
        window.Bind(wxEVT_MOVE, &CPlaceWatch::OnChange<wxMoveEvent>, this);
    }
    void Note() {
        if (IsNormal(m_window)) m_place = PlaceOf(m_window);
        const auto* top = dynamic_cast<const wxTopLevelWindow*>(&m_window);
        if (top && !top->IsFullScreen() && !top->IsIconized()) m_maximized = top->IsMaximized();
    }
    [[nodiscard]] const CPlaceRect& Place() const { return m_place; }
    /** Apart from full screen and iconised. */
    [[nodiscard]] bool IsMaximized() const { return m_maximized; }

  private:
    template <class TEvent>
    void OnChange(TEvent& event) {
        m_timer.StartOnce(kSettleMs);
        event.Skip();
    }

    wxWindow& m_window;
    CPlaceRect m_place;
    bool m_maximized = false;
    wxTimer m_timer;
};

std::map<const wxWindow*, std::unique_ptr<CPlaceWatch>>& Watches() {
    static std::map<const wxWindow*, std::unique_ptr<CPlaceWatch>> watches;
    return watches;
}

void Watch(wxWindow& window) {
    std::unique_ptr<CPlaceWatch>& watch = Watches()[&window];
    if (watch) {
        watch->Note();
        return;
    }
    watch = std::make_unique<CPlaceWatch>(window);
    window.Bind(wxEVT_DESTROY, [&window](wxWindowDestroyEvent& event) {
        event.Skip();
        if (event.GetEventObject() == &window) Watches().erase(&window);
    });
}

std::optional<CPlaceRect> Stored(std::string_view name) {
    const auto number = [name](const char* key) { return CLocalRegStore::GetInt(name, key, 0); };
    const CPlaceRect place{number(kLeft), number(kTop), number(kWidth), number(kHeight)};
    if (place.width <= 0 || place.height <= 0) return std::nullopt;
    return place;
}

std::vector<CPlaceRect> Screens(const wxWindow& window) {
    std::vector<CPlaceRect> screens;
    const auto add = [&](unsigned index) {
        const wxRect area = wxDisplay(index).GetClientArea();
        const wxPoint at = window.ToDIP(area.GetPosition());
        const wxSize size = window.ToDIP(area.GetSize());
        screens.push_back({at.x, at.y, size.x, size.y});
    };
    for (unsigned i = 0; i < wxDisplay::GetCount(); ++i) add(i);
    return screens;
}

gboolean OnMappedMove(GtkWidget* widget, GdkEvent*, gpointer) {
    g_signal_handlers_disconnect_by_func(widget, reinterpret_cast<gpointer>(OnMappedMove), nullptr);
    if (const auto* at = static_cast<const wxPoint*>(g_object_get_data(G_OBJECT(widget), kPlaceKey)))
        gtk_window_move(GTK_WINDOW(widget), at->x, at->y);
    return FALSE;
}

void Apply(wxWindow& window, const CPlaceRect& place) {
    const wxPoint at = window.FromDIP(wxPoint(place.x, place.y));
    const wxSize size = window.FromDIP(wxSize(place.width, place.height));
    window.SetSize(wxRect(at, size), wxSIZE_ALLOW_MINUS_ONE);
    if (!window.IsTopLevel() || gtk_widget_get_mapped(window.GetHandle())) return;
    // The first window of a process loses a position that is set before it is shown.
    g_object_set_data_full(G_OBJECT(window.GetHandle()), kPlaceKey, new wxPoint(at),
                           [](gpointer point) { delete static_cast<wxPoint*>(point); });
    g_signal_connect(window.GetHandle(), "map-event", G_CALLBACK(OnMappedMove), nullptr);
}

gboolean OnMapped(GtkWidget* widget, GdkEvent*, gpointer) {
    g_signal_handlers_disconnect_by_func(widget, reinterpret_cast<gpointer>(OnMapped), nullptr);
    gtk_window_maximize(GTK_WINDOW(widget));
    return FALSE;
}

}  // namespace

bool LoadState(wxWindow* window, std::string_view name) {
    const std::optional<CPlaceRect> stored = Stored(name);
    if (stored) {
        auto* top = dynamic_cast<wxTopLevelWindow*>(window);
        Apply(*window, top ? window_place::BringOntoScreen(*stored, Screens(*window)) : *stored);
        if (top && CLocalRegStore::GetInt(name, kMaximized, 0) != 0) {
            Watch(*window);  // before maximising changes its size
            MaximizeFrame(top);
        }
    }
    Watch(*window);
    return stored.has_value();
}

void SaveState(wxWindow* window, std::string_view name) {
    const auto watch = Watches().find(window);
    CPlaceRect place = PlaceOf(*window);
    if (!IsNormal(*window)) {
        if (watch != Watches().end()) {
            place = watch->second->Place();
        } else {
            place = Stored(name).value_or(place);
        }
    }
    const auto* top = dynamic_cast<const wxTopLevelWindow*>(window);
    bool maximized = top && top->IsMaximized();
    if (top && (top->IsFullScreen() || top->IsIconized()) && watch != Watches().end())
        maximized = watch->second->IsMaximized();
    CLocalRegStore::WriteInt(name, kLeft, place.x);
    CLocalRegStore::WriteInt(name, kTop, place.y);
    CLocalRegStore::WriteInt(name, kWidth, place.width);
    CLocalRegStore::WriteInt(name, kHeight, place.height);
    CLocalRegStore::WriteInt(name, kMaximized, maximized ? 1 : 0);
}

void MaximizeFrame(wxTopLevelWindow* frame) {
    if (gtk_widget_get_mapped(frame->GetHandle())) {
        frame->Maximize();
        return;
    }
    // A window that is maximised before it is on the screen has no size to go back to.
    g_signal_connect(frame->GetHandle(), "map-event", G_CALLBACK(OnMapped), nullptr);
}

}  // namespace wx_window_state
