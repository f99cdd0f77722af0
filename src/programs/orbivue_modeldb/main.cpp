// SPDX-License-Identifier: MIT
#include <csignal>
#include <exception>
#include <new>
#include <string>
#include <vector>

#include "base/text/lng.h"
#include "modeldb/server/work/worker_command.h"
#include "programs/orbivue_modeldb/CModelDbOptions.h"
#include "programs/orbivue_modeldb/model_commands.h"
#include "programs/orbivue_modeldb/store_output.h"
#include "settings/language_catalogue.h"

namespace {

int Help(const CModelDbOptions&) {
    return Print(ModelDbHelp()) ? kDone : kCannotWrite;
}
int Version(const CModelDbOptions&) {
    return Print("orbivue-modeldb " ORBIVUE_VERSION "\n") ? kDone : kCannotWrite;
}

struct CRunner {
    EModelDbCommand command;
    int (*run)(const CModelDbOptions&);
};
constexpr CRunner kRunners[] = {
    {EModelDbCommand::Help, Help},
    {EModelDbCommand::Version, Version},
    {EModelDbCommand::Import, model_commands::Import},
    {EModelDbCommand::Export, model_commands::Export},
    {EModelDbCommand::Remove, model_commands::Remove},
    {EModelDbCommand::List, model_commands::List},
    {EModelDbCommand::Check, model_commands::Check},
    {EModelDbCommand::Backup, model_commands::Backup},
    {EModelDbCommand::Restore, model_commands::Restore},
    {EModelDbCommand::Upgrade, model_commands::Upgrade},
    {EModelDbCommand::TokenCreate, model_commands::TokenCreate},
    {EModelDbCommand::TokenList, model_commands::TokenList},
    {EModelDbCommand::TokenRevoke, model_commands::TokenRevoke},
    {EModelDbCommand::Serve, model_commands::Serve},
};

int Run(const CModelDbOptions& options) {
    for (const CRunner& runner : kRunners)
        if (runner.command == options.command) return runner.run(options);
    return kUsage;
}

}  // namespace

int main(int argc, char** argv) {
    if (worker_command::IsMeant(argc, argv)) return worker_command::Run(argc, argv);
    lng::UseDesktopLanguage();
    (void)std::signal(SIGPIPE, SIG_IGN);  // printing fails instead
    try {
        const std::vector<std::string> arguments(argv + (argc > 0 ? 1 : 0), argv + argc);
        const CResult<CModelDbOptions> options = ParseModelDbOptions(arguments);
        if (!options) return Complain(lng::TextUtf8("%s (see --help)", {options.Error().message}), kUsage);
        return Run(options.Value());
    } catch (const std::bad_alloc&) {
        return Complain(lng::TextUtf8("not enough memory"), kStoreFails);
    } catch (const std::exception& error) {
        return Complain(error.what(), kStoreFails);
    }
}
