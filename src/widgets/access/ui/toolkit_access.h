// SPDX-License-Identifier: MIT
#pragma once

/** Makes the toolkit's own controls fit for everybody: frames that stand out show where the keyboard is, and a screen reader that
 * presses a button gets its answer at once. Once, when the toolkit has started and before the first window. */
void MakeToolkitAccessible();
