// SPDX-License-Identifier: MIT
#pragma once

#include <atk/atk.h>

#include "widgets/access/ui/accessible_role.h"

[[nodiscard]] AtkRole AtkRoleOf(EAccessibleRole role);
