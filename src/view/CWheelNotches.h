// SPDX-License-Identifier: MIT
#pragma once

/** Counts whole notches of a mouse wheel. Touch pads send many small rotations where a wheel sends one notch,
 * and the view zooms by a fixed step for each event it is given. */
class CWheelNotches {
  public:
    /** Adds a rotation and returns how many notches it completed, negative towards the user. */
    [[nodiscard]] int Add(int rotation, int rotationOfANotch) {
        if (rotationOfANotch <= 0) return 0;
        // A change of direction starts from 0, or the first notch back would be lost.
        if ((rotation < 0) != (m_rest < 0)) m_rest = 0;
        m_rest += rotation;
        const int notches = m_rest / rotationOfANotch;
        m_rest -= notches * rotationOfANotch;
        return notches;
    }

  private:
    int m_rest = 0;
};
