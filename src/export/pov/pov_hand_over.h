// SPDX-License-Identifier: MIT
#pragma once

#include <string>

/** What a user is told when the desktop did not open the written file. */
namespace pov_hand_over {

/** Programs that can be started by their names. */
struct CPrograms {
    bool povRay = false;  ///< POV-Ray itself
    bool opener = false;  ///< the desktop's xdg-open
};

[[nodiscard]] CPrograms WhatIsThere();
/** One or two sentences, translated. */
[[nodiscard]] std::wstring WhyNot(const CPrograms& programs);

}  // namespace pov_hand_over
