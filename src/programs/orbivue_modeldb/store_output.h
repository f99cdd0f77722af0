// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

#include "base/CResult.h"
#include "modeldb/store/CModelStore.h"
#include "programs/orbivue_modeldb/CModelDbOptions.h"

/** How the program ends; docs/orbivue-modeldb.1 tells the numbers. */
enum EModelDbExit { kDone = 0, kUsage = 1, kStoreFails = 2, kPartly = 3, kCannotWrite = 4 };

/** Prints a message as one line on standard error, and returns the code. */
int Complain(const std::string& message, EModelDbExit code);
int Complain(const CError& error, EModelDbExit code);
/** Prints on standard output; false when not all of it could be written. */
[[nodiscard]] bool Print(const std::string& text);
/** A stranger's text for a line of the terminal. */
[[nodiscard]] std::string Shown(std::string_view text);

/** The store that the options name. */
[[nodiscard]] CStoreAddress StoreOf(const CModelDbOptions& options);
[[nodiscard]] CResult<CModelStore> OpenStore(const CModelDbOptions& options, EStoreUse use);
