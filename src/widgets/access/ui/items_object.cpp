// SPDX-License-Identifier: MIT
#include "widgets/access/ui/items_object.h"

#include <gtk/gtk-a11y.h>

#include "widgets/access/ui/CToldItems.h"

namespace {

constexpr char kItemsKey[] = "orbivue-drawn-items";

AtkObjectClass* s_parentClass = nullptr;

CToldItems* ItemsOf(AtkObject* object) {
    GtkWidget* widget = gtk_accessible_get_widget(GTK_ACCESSIBLE(object));
    auto* told = widget ? static_cast<CToldItems*>(g_object_get_data(G_OBJECT(widget), kItemsKey)) : nullptr;
    return told && told->items ? told : nullptr;
}

gint GetChildCount(AtkObject* object) {
    const CToldItems* told = ItemsOf(object);
    return s_parentClass->get_n_children(object) +
           (told ? static_cast<gint>(told->items->CountOf(CDrawnItems::kNone)) : 0);
}

/** The windows in the window first, as GTK counts them, then the items. */
AtkObject* RefChild(AtkObject* object, gint index) {
    const gint windows = s_parentClass->get_n_children(object);
    CToldItems* told = ItemsOf(object);
    if (index < windows || !told) return s_parentClass->ref_child(object, index);
    const auto item = static_cast<std::size_t>(index - windows);
    if (item >= told->items->CountOf(CDrawnItems::kNone)) return nullptr;
    return ATK_OBJECT(g_object_ref(told->ObjectOf(told->items->ItemOf(CDrawnItems::kNone, item))));
}

/** The focus is the item's where one has it. */
AtkStateSet* RefStates(AtkObject* object) {
    AtkStateSet* states = s_parentClass->ref_state_set(object);
    const CToldItems* told = ItemsOf(object);
    if (!told) return states;
    if (told->isMany) atk_state_set_add_state(states, ATK_STATE_MANAGES_DESCENDANTS);
    if (told->IsFocused(told->items->Current())) atk_state_set_remove_state(states, ATK_STATE_FOCUSED);
    return states;
}

void InitClass(gpointer data, gpointer) {
    auto* kind = static_cast<AtkObjectClass*>(data);
    s_parentClass = static_cast<AtkObjectClass*>(g_type_class_peek_parent(kind));
    kind->get_n_children = GetChildCount;
    kind->ref_child = RefChild;
    kind->ref_state_set = RefStates;
}

GType ItemsType() {
    static const GType type = g_type_register_static_simple(
        GTK_TYPE_CONTAINER_ACCESSIBLE, "OrbivueItems", sizeof(GtkContainerAccessibleClass), InitClass,
        sizeof(GtkContainerAccessible), nullptr, GTypeFlags(0));
    return type;
}

}  // namespace

void ConnectItems(GtkWidget& widget, CToldItems& items) {
    g_object_set_data(G_OBJECT(&widget), kItemsKey, &items);
    // For all windows that the toolkit draws, most of which have no items.
    gtk_widget_class_set_accessible_type(GTK_WIDGET_GET_CLASS(&widget), ItemsType());
}

void DisconnectItems(GtkWidget& widget) {
    g_object_set_data(G_OBJECT(&widget), kItemsKey, nullptr);
}
