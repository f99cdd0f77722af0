// SPDX-License-Identifier: MIT
#pragma once

#include <string>

/** The message for a user when the desktop did not open the exported file. */
namespace pov_hand_over {

/** Which programs are installed: found on the PATH. */
struct CPrograms {
    bool povRay = false;  ///< POV-Ray itself
    bool opener = false;  ///< the desktop's xdg-open
};

/** Searches the PATH. */
[[nodiscard]] CPrograms WhatIsThere();
/** Why the desktop could not open the file: one or two sentences, translated. */
[[nodiscard]] std::wstring WhyNot(const CPrograms& programs);

}  // namespace pov_hand_over
