// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "base/CResult.h"
#include "programs/orbivue_modeldb/serve_options.h"

enum class EModelDbCommand {
    Help,
    Version,
    Import,
    Export,
    Remove,
    List,
    Check,
    Backup,
    Restore,
    Upgrade,
    TokenCreate,
    TokenList,
    TokenRevoke,
    Serve,
};

/** What the command line asks for. Texts are as given. */
struct CModelDbOptions {
    EModelDbCommand command = EModelDbCommand::Help;
    std::string store;  ///< a path or an address; empty: the user's own store
    std::string group, search, into;
    std::uint32_t rights = 0;  ///< of a new token, see EStoreRight
    bool json = false, full = false, verbose = false, previews = false, forgetsTokens = false;
    CServeOptions serve;
    std::vector<std::string> arguments;  ///< paths, keys or names: as many as the command takes
};

/** Reads the arguments after the program's name. Errors are BadArgument, with a message of one line. */
[[nodiscard]] CResult<CModelDbOptions> ParseModelDbOptions(std::span<const std::string> arguments);

/** The text of --help. */
[[nodiscard]] std::string ModelDbHelp();
