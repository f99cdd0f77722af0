// SPDX-License-Identifier: MIT
#include "widgets/access/ui/CAccessibleItems.h"

#include <wx/window.h>

#include <utility>
#include <vector>

#include "widgets/access/ui/CToldItems.h"
#include "widgets/access/ui/item_object.h"
#include "widgets/access/ui/items_object.h"
#include "widgets/ui/accessible_name.h"

namespace {

using CKey = CDrawnItems::CKey;

void Cut(CToldItems& told, CKey key) {
    const auto found = told.told.find(key);
    if (found == told.told.end()) return;
    AtkObject* object = found->second.object;
    told.told.erase(found);
    CutItemObject(*object);
    g_object_unref(object);
}

void TellDifference(AtkObject* object, const CDrawnItem& before, const CDrawnItem& now) {
    if (before.name != now.name) g_object_notify(G_OBJECT(object), "accessible-name");
    if (before.description != now.description) g_object_notify(G_OBJECT(object), "accessible-description");
    const auto tell = [object](bool was, bool is, AtkStateType state) {
        if (was != is) atk_object_notify_state_change(object, state, is);
    };
    tell(before.isEnabled, now.isEnabled, ATK_STATE_ENABLED);
    tell(before.isEnabled, now.isEnabled, ATK_STATE_SENSITIVE);
    tell(before.isChecked, now.isChecked, ATK_STATE_CHECKED);
    tell(before.isChecked, now.isChecked, ATK_STATE_PRESSED);
    tell(before.isSelected, now.isSelected, ATK_STATE_SELECTED);
    tell(before.isExpanded, now.isExpanded, ATK_STATE_EXPANDED);
}

void TellFocus(CToldItems& told) {
    const CKey now = told.HasFocus() ? told.items->Current() : CDrawnItems::kNone;
    if (now == told.focused) return;
    const auto before = told.told.find(std::exchange(told.focused, now));
    if (before != told.told.end())
        atk_object_notify_state_change(before->second.object, ATK_STATE_FOCUSED, FALSE);
    AtkObject* container = told.Container();
    if (now == CDrawnItems::kNone || !container) return;
    AtkObject* object = told.ObjectOf(now);
    if (told.isMany) g_signal_emit_by_name(container, "active-descendant-changed", object);
    atk_object_notify_state_change(object, ATK_STATE_FOCUSED, TRUE);
}

gboolean TellAgain(gpointer item) {
    AtkStateSet* states = atk_object_ref_state_set(ATK_OBJECT(item));
    if (atk_state_set_contains_state(states, ATK_STATE_FOCUSED))
        atk_object_notify_state_change(ATK_OBJECT(item), ATK_STATE_FOCUSED, TRUE);
    g_object_unref(states);
    return G_SOURCE_REMOVE;
}

/** Once more when the toolkit has told, when idle, that the window itself has it: readers believe what they hear last. */
void OnFocus(GtkWidget*, GParamSpec*, CToldItems* told) {
    TellFocus(*told);
    const CKey item = told->HasFocus() ? told->items->Current() : CDrawnItems::kNone;
    if (item != CDrawnItems::kNone)
        g_idle_add_full(G_PRIORITY_LOW, TellAgain, g_object_ref(told->ObjectOf(item)), g_object_unref);
}

/** Readers that keep the children of a window with few of them learn of each. */
void TellCount(CToldItems& told) {
    const std::size_t before = std::exchange(told.count, told.items->CountOf(CDrawnItems::kNone));
    AtkObject* container = told.Container();
    if (told.isMany || before == told.count || !container) return;
    const auto all = static_cast<std::size_t>(atk_object_get_n_accessible_children(container));
    const std::size_t windows = all - told.count;
    for (std::size_t i = before; i > told.count; --i)
        g_signal_emit_by_name(container, "children-changed::remove", static_cast<guint>(windows + i - 1),
                              nullptr);
    for (std::size_t i = before; i < told.count; ++i)
        g_signal_emit_by_name(container, "children-changed::add", static_cast<guint>(windows + i),
                              told.ObjectOf(told.items->ItemOf(CDrawnItems::kNone, i)));
}

}  // namespace

AtkObject* CToldItems::ObjectOf(CKey item) {
    CTold& made = told[item];
    if (!made.object) made = {MakeItemObject(*this, item), items->Describe(item)};
    return made.object;
}

AtkObject* CToldItems::Container() const {
    return widget ? gtk_widget_get_accessible(widget) : nullptr;
}

bool CToldItems::HasFocus() const {
    return widget && gtk_widget_has_focus(widget);
}

bool CToldItems::IsFocused(CKey item) const {
    return HasFocus() && item != CDrawnItems::kNone && items && items->Current() == item;
}

CAccessibleItems::CAccessibleItems(wxWindow& window, EAccessibleRole role, CDrawnItems& items)
    : m_told(std::make_unique<CToldItems>()) {
    m_told->window = &window;
    m_told->items = &items;
    m_told->widget = FocusWidgetOf(window);
    m_told->isMany = role == EAccessibleRole::List || role == EAccessibleRole::Tree;
    g_object_add_weak_pointer(G_OBJECT(m_told->widget), reinterpret_cast<gpointer*>(&m_told->widget));
    ConnectItems(*m_told->widget, *m_told);
    SetAccessibleRole(window, role);
    // The toolkit's own events of this come late, or not at all.
    m_focusHandler = g_signal_connect(m_told->widget, "notify::has-focus", G_CALLBACK(OnFocus), m_told.get());
}

CAccessibleItems::~CAccessibleItems() {
    Forget();
    m_told->window = nullptr;
    m_told->items = nullptr;
    if (!m_told->widget) return;
    g_signal_handler_disconnect(m_told->widget, m_focusHandler);
    DisconnectItems(*m_told->widget);
    g_object_remove_weak_pointer(G_OBJECT(m_told->widget), reinterpret_cast<gpointer*>(&m_told->widget));
}

void CAccessibleItems::Changed() {
    CToldItems& told = *m_told;
    // Who is told of one item may ask for others, which adds to the list.
    std::vector<CKey> keys;
    for (const auto& known : told.told) keys.push_back(known.first);
    for (const CKey key : keys) {
        if (!told.items->HasItem(key)) {
            Cut(told, key);
            continue;
        }
        const CDrawnItem now = told.items->Describe(key);
        AtkObject* object = told.ObjectOf(key);
        TellDifference(object, std::exchange(told.told[key].item, now), now);
    }
    TellCount(told);
    TellFocus(told);
}

void CAccessibleItems::Forget() {
    while (!m_told->told.empty()) Cut(*m_told, m_told->told.begin()->first);
    m_told->focused = CDrawnItems::kNone;
}
