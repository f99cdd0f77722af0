// SPDX-License-Identifier: MIT
#pragma once

#include <gtk/gtk.h>

struct CToldItems;

/** Makes the objects of drawn items children of their widget's own. Too late for a widget of which readers know already. */
void ConnectItems(GtkWidget& widget, CToldItems& items);
/** Ends it; the widget may be on its way out. */
void DisconnectItems(GtkWidget& widget);
