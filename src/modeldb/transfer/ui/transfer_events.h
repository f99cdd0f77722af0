// SPDX-License-Identifier: MIT
#pragma once

#include "widgets/threads/ui/wxGUIThreadEvent.h"

/** The type of all events that the threads of the browser post; the ids tell what they mean. */
wxDECLARE_EVENT(wxEVT_MY_CUSTOM_COMMAND, wxGUIThreadEvent);
/** The type of those that an upload posts. */
wxDECLARE_EVENT(wxEVT_UPLOAD_COMMAND, wxGUIThreadEvent);

/** The ids of both types. The first ones are fixed numbers. "Start" comes with the number of units, "Step" for each of
 * them, and the last one of each transfer with what was transferred (payload_records.h). */
namespace transfer_event {

constexpr int kModelsStart = 100;
constexpr int kModelsStep = 101;
constexpr int kModels = 102;  ///< CModelsData
constexpr int kModelStep = 103;
constexpr int kModelStart = 104;
constexpr int kModel = 105;  ///< CModelData
constexpr int kUploadEnd = 106;
constexpr int kUploadStart = 107;
constexpr int kUploadStep = 108;
constexpr int kGroupsStep = 109;
constexpr int kGroupsStart = 110;
constexpr int kGroups = 111;  ///< CGroupsData
constexpr int kFound = 120;   ///< CFoundData

}  // namespace transfer_event
