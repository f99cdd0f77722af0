// SPDX-License-Identifier: MIT
#include "widgets/access/ui/item_object.h"

#include <wx/window.h>

#include <string>

#include "files/file_util_ex.h"
#include "widgets/access/ui/CToldItems.h"
#include "widgets/access/ui/atk_role.h"

namespace {

struct CItemObject {
    AtkObject parent;
    CToldItems* owner;
    CDrawnItems::CKey key;
    std::string* text;  ///< what was asked for last, as ATK keeps no copy
};
struct CItemObjectClass {
    AtkObjectClass parent;
};

GType ItemType();

CItemObject& Self(gpointer object) {
    return *reinterpret_cast<CItemObject*>(object);
}

/** False for an item that is gone: then nothing may be asked. */
bool IsThere(const CItemObject& self) {
    return self.owner && self.owner->items && self.owner->items->HasItem(self.key);
}

CDrawnItem Described(const CItemObject& self) {
    return IsThere(self) ? self.owner->items->Describe(self.key) : CDrawnItem{};
}

const char* Kept(CItemObject& self, const std::wstring& text) {
    *self.text = file_util_ex::ConvertToUTF8(text);
    return self.text->c_str();
}

// --- the object -----------------------------------------------------------------------------------------

const char* GetName(AtkObject* object) {
    return Kept(Self(object), Described(Self(object)).name);
}

const char* GetDescription(AtkObject* object) {
    return Kept(Self(object), Described(Self(object)).description);
}

AtkRole GetRole(AtkObject* object) {
    return AtkRoleOf(Described(Self(object)).role);
}

AtkObject* GetParent(AtkObject* object) {
    const CItemObject& self = Self(object);
    if (!IsThere(self)) return nullptr;
    const CDrawnItems::CKey parent = self.owner->items->ParentOf(self.key);
    return parent == CDrawnItems::kNone ? self.owner->Container() : self.owner->ObjectOf(parent);
}

/** Items without a parent come after the windows in their window. */
gint GetIndex(AtkObject* object) {
    const CItemObject& self = Self(object);
    if (!IsThere(self)) return -1;
    const auto index = static_cast<gint>(self.owner->items->IndexOf(self.key));
    if (self.owner->items->ParentOf(self.key) != CDrawnItems::kNone) return index;
    AtkObject* container = self.owner->Container();
    const gint all = container ? atk_object_get_n_accessible_children(container) : 0;
    return all - static_cast<gint>(self.owner->items->CountOf(CDrawnItems::kNone)) + index;
}

gint GetChildCount(AtkObject* object) {
    const CItemObject& self = Self(object);
    return IsThere(self) ? static_cast<gint>(self.owner->items->CountOf(self.key)) : 0;
}

AtkObject* RefChild(AtkObject* object, gint index) {
    const CItemObject& self = Self(object);
    if (index < 0 || index >= GetChildCount(object)) return nullptr;
    const auto child = self.owner->items->ItemOf(self.key, static_cast<std::size_t>(index));
    return ATK_OBJECT(g_object_ref(self.owner->ObjectOf(child)));
}

AtkStateSet* RefStates(AtkObject* object) {
    const CItemObject& self = Self(object);
    if (IsThere(self))
        return StatesOf(Described(self), self.owner->IsFocused(self.key),
                        self.owner->window->IsShownOnScreen());
    AtkStateSet* states = atk_state_set_new();
    atk_state_set_add_state(states, ATK_STATE_DEFUNCT);
    return states;
}

void Finalize(GObject* object) {
    delete Self(object).text;
    G_OBJECT_CLASS(g_type_class_peek_parent(g_type_class_peek(ItemType())))->finalize(object);
}

void InitClass(gpointer data, gpointer) {
    auto* kind = static_cast<AtkObjectClass*>(data);
    kind->get_name = GetName;
    kind->get_description = GetDescription;
    kind->get_role = GetRole;
    kind->get_parent = GetParent;
    kind->get_index_in_parent = GetIndex;
    kind->get_n_children = GetChildCount;
    kind->ref_child = RefChild;
    kind->ref_state_set = RefStates;
    G_OBJECT_CLASS(kind)->finalize = Finalize;
}

void InitItem(GTypeInstance* instance, gpointer) {
    Self(instance).text = new std::string;
}

// --- where it is ----------------------------------------------------------------------------------------

void GetExtents(AtkComponent* component, gint* x, gint* y, gint* width, gint* height, AtkCoordType kind) {
    *x = *y = *width = *height = -1;
    const CItemObject& self = Self(component);
    if (!IsThere(self) || !self.owner->widget) return;
    wxRect place = Described(self).place;
    GdkWindow* window = gtk_widget_get_window(self.owner->widget);
    if (place.IsEmpty() || !window) return;
    if (self.owner->window->GetLayoutDirection() == wxLayout_RightToLeft)
        place.x = self.owner->window->GetClientSize().x - place.x - place.width;
    int left = 0, top = 0;
    if (kind != ATK_XY_PARENT) gdk_window_get_origin(window, &left, &top);
    if (kind == ATK_XY_WINDOW) {
        int windowLeft = 0, windowTop = 0;
        gdk_window_get_origin(gdk_window_get_toplevel(window), &windowLeft, &windowTop);
        left -= windowLeft;
        top -= windowTop;
    }
    *x = left + place.x;
    *y = top + place.y;
    *width = place.width;
    *height = place.height;
}

gboolean GrabFocus(AtkComponent* component) {
    const CItemObject& self = Self(component);
    if (!IsThere(self)) return FALSE;
    self.owner->window->SetFocus();
    return TRUE;
}

void InitComponent(gpointer data, gpointer) {
    auto* kind = static_cast<AtkComponentIface*>(data);
    kind->get_extents = GetExtents;
    kind->grab_focus = GrabFocus;
}

// --- what can be done with it -----------------------------------------------------------------------------

gint GetActionCount(AtkAction* action) {
    const CItemObject& self = Self(action);
    return IsThere(self) && Described(self).isEnabled && self.owner->items->CanPress(self.key) ? 1 : 0;
}

const gchar* GetActionName(AtkAction* action, gint) {
    return Described(Self(action)).canExpand ? "expand or contract" : "click";
}

/** Later: what a press leads to may serve events until a dialog is closed, and the reader would wait for it. */
gboolean Act(AtkAction* action, gint index) {
    const CItemObject& self = Self(action);
    if (index != 0 || GetActionCount(action) == 0) return FALSE;
    AtkObject* object = ATK_OBJECT(g_object_ref(action));
    self.owner->window->CallAfter([object] {
        const CItemObject& pressed = Self(object);
        if (IsThere(pressed) && pressed.owner->items->CanPress(pressed.key))
            pressed.owner->items->Press(pressed.key);
        g_object_unref(object);
    });
    return TRUE;
}

void InitAction(gpointer data, gpointer) {
    auto* kind = static_cast<AtkActionIface*>(data);
    kind->get_n_actions = GetActionCount;
    kind->get_name = GetActionName;
    kind->do_action = Act;
}

GType ItemType() {
    static const GType type = [] {
        const GType made = g_type_register_static_simple(
            ATK_TYPE_OBJECT, "OrbivueItem", sizeof(CItemObjectClass),
            [](gpointer kind, gpointer data) { InitClass(kind, data); }, sizeof(CItemObject), InitItem,
            GTypeFlags(0));
        const GInterfaceInfo component{InitComponent, nullptr, nullptr}, action{InitAction, nullptr, nullptr};
        g_type_add_interface_static(made, ATK_TYPE_COMPONENT, &component);
        g_type_add_interface_static(made, ATK_TYPE_ACTION, &action);
        return made;
    }();
    return type;
}

}  // namespace

AtkObject* MakeItemObject(CToldItems& owner, CDrawnItems::CKey key) {
    auto* object = static_cast<AtkObject*>(g_object_new(ItemType(), nullptr));
    Self(object).owner = &owner;
    Self(object).key = key;
    return object;
}

void CutItemObject(AtkObject& object) {
    Self(&object).owner = nullptr;
    atk_object_notify_state_change(&object, ATK_STATE_DEFUNCT, TRUE);
}

AtkStateSet* StatesOf(const CDrawnItem& item, bool isFocused, bool isShown) {
    AtkStateSet* states = atk_state_set_new();
    const auto add = [states](bool holds, AtkStateType state) {
        if (holds) atk_state_set_add_state(states, state);
    };
    const bool isChoice = item.role == EAccessibleRole::ListItem || item.role == EAccessibleRole::TreeItem;
    const bool isSeen = isShown && !item.place.IsEmpty();
    add(item.isEnabled, ATK_STATE_ENABLED);
    add(item.isEnabled, ATK_STATE_SENSITIVE);
    add(isShown, ATK_STATE_VISIBLE);
    add(isSeen, ATK_STATE_SHOWING);
    add(item.role != EAccessibleRole::Label, ATK_STATE_FOCUSABLE);
    add(isFocused, ATK_STATE_FOCUSED);
    add(isChoice, ATK_STATE_SELECTABLE);
    add(item.isSelected, ATK_STATE_SELECTED);
    add(item.isChecked, ATK_STATE_CHECKED);
    add(item.isChecked, ATK_STATE_PRESSED);
    add(item.canExpand, ATK_STATE_EXPANDABLE);
    add(item.isExpanded, ATK_STATE_EXPANDED);
    return states;
}
