// SPDX-License-Identifier: MIT
#include "widgets/tools/ui/layout_direction.h"

#ifdef __WXGTK__
#include <gtk/gtk.h>
#endif

#include "base/text/lng.h"

wxLayoutDirection LayoutDirection() {
    return lng::IsRightToLeft() ? wxLayout_RightToLeft : wxLayout_LeftToRight;
}

void SetToolkitDirection() {
#ifdef __WXGTK__
    gtk_widget_set_default_direction(lng::IsRightToLeft() ? GTK_TEXT_DIR_RTL : GTK_TEXT_DIR_LTR);
#endif
}
