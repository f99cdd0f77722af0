// SPDX-License-Identifier: MIT
#pragma once

/** True when a press of a button or a key waits to be handled; while a button is held, also when the mouse was
 * moved or the button released. Looks at what the display server has sent and leaves all of it where it is, so
 * that code in the midst of an event may ask. Takes some microseconds. False where the display cannot tell. */
[[nodiscard]] bool InputWaits(bool isButtonHeld);
