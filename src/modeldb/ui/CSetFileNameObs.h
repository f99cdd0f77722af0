// SPDX-License-Identifier: MIT
#pragma once

#include <string>

/** Is told which model is downloaded. */
class CSetFileNameObs {
  public:
    virtual void SetFileName(const std::wstring& name) = 0;

  protected:
    ~CSetFileNameObs() = default;
};
