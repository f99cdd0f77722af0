// SPDX-License-Identifier: MIT
#pragma once

#include "settings/CSettings.h"

/** For tests: gives the process's settings their defaults, and at the end the values that they had. */
class CSettingsGuard {
  public:
    CSettingsGuard() { CSettings::Instance() = CSettings(); }
    CSettingsGuard(const CSettingsGuard&) = delete;
    CSettingsGuard& operator=(const CSettingsGuard&) = delete;
    ~CSettingsGuard() { CSettings::Instance() = m_before; }

  private:
    CSettings m_before = CSettings::Instance();
};
