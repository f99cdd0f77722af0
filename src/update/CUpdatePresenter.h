// SPDX-License-Identifier: MIT
#pragma once

#include <string>

/** What the update service was told of the program. */
struct CUpdateDetails {
    std::wstring company, program, version;
    std::string feed;  ///< address of the list of versions; empty: none is known
    bool isAutomatic = false;
};

/** The windows of the update service. Called on their thread by the functions of win_sparkle.h. */
class CUpdatePresenter {
  public:
    virtual void OnStarted(const CUpdateDetails& details) = 0;
    virtual void CheckWithWindows() = 0;
    /** A check that is going on ends before this returns. */
    virtual void OnEnded() = 0;

    /** Who presents from now on; null: nobody. It must live until another one is set. */
    static void Set(CUpdatePresenter* presenter);

  protected:
    ~CUpdatePresenter() = default;
};
