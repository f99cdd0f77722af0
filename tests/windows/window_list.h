// SPDX-License-Identifier: MIT
#pragma once

#include <string>

class CStage;

/** Shows every window of the program on the stage. folder: of models, which may be changed. */
void ShowAllWindows(CStage& stage, const std::string& folder);
