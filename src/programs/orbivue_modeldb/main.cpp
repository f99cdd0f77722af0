// SPDX-License-Identifier: MIT
#include <csignal>
#include <exception>
#include <new>
#include <string>
#include <vector>

#include "programs/orbivue_modeldb/CModelDbOptions.h"
#include "programs/orbivue_modeldb/model_commands.h"
#include "programs/orbivue_modeldb/store_output.h"

namespace {

int Run(const CModelDbOptions& options) {
    switch (options.command) {
        case EModelDbCommand::Help:
            return Print(ModelDbHelp()) ? kDone : kCannotWrite;
        case EModelDbCommand::Version:
            return Print("orbivue-modeldb " ORBIVUE_VERSION "\n") ? kDone : kCannotWrite;
        case EModelDbCommand::Import:
            return model_commands::Import(options);
        case EModelDbCommand::Export:
            return model_commands::Export(options);
        case EModelDbCommand::Remove:
            return model_commands::Remove(options);
        case EModelDbCommand::List:
            return model_commands::List(options);
        case EModelDbCommand::Check:
            return model_commands::Check(options);
        case EModelDbCommand::Backup:
            return model_commands::Backup(options);
        case EModelDbCommand::Restore:
            return model_commands::Restore(options);
        case EModelDbCommand::Upgrade:
            return model_commands::Upgrade(options);
        case EModelDbCommand::TokenCreate:
            return model_commands::TokenCreate(options);
        case EModelDbCommand::TokenList:
            return model_commands::TokenList(options);
        case EModelDbCommand::TokenRevoke:
            return model_commands::TokenRevoke(options);
    }
    return kUsage;
}

}  // namespace

int main(int argc, char** argv) {
    (void)std::signal(SIGPIPE, SIG_IGN);  // printing fails instead
    try {
        const std::vector<std::string> arguments(argv + (argc > 0 ? 1 : 0), argv + argc);
        const CResult<CModelDbOptions> options = ParseModelDbOptions(arguments);
        if (!options) return Complain(options.Error().Text() + " (see --help)", kUsage);
        return Run(options.Value());
    } catch (const std::bad_alloc&) {
        return Complain("not enough memory", kStoreFails);
    } catch (const std::exception& error) {
        return Complain(error.what(), kStoreFails);
    }
}
