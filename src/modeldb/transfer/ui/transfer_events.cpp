// SPDX-License-Identifier: MIT
#include "modeldb/transfer/ui/transfer_events.h"

wxDEFINE_EVENT(wxEVT_MY_CUSTOM_COMMAND, wxGUIThreadEvent);
wxDEFINE_EVENT(wxEVT_UPLOAD_COMMAND, wxGUIThreadEvent);
