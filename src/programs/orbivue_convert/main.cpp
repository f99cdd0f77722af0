// SPDX-License-Identifier: MIT
#include <cstdio>
#include <exception>
#include <string>
#include <vector>

#include "base/process_memory.h"
#include "base/text/lng.h"
#include "files/file_util_ex.h"
#include "files/std_file_paths.h"
#include "programs/orbivue_convert/CConversionPlan.h"
#include "programs/orbivue_convert/CConvertOptions.h"
#include "programs/orbivue_convert/convert_process.h"
#include "programs/shared/program_output.h"
#include "settings/language_catalogue.h"

namespace {

/** docs/orbivue-convert.1 tells the numbers. */
enum EExit { kDone = 0, kSomeFailed = 1, kUsage = 2 };

int Complain(const std::string& message, EExit code) {
    PrintError("orbivue-convert", message);
    return code;
}

int Convert(const CConvertOptions& options) {
    if (!options.folder.empty() && !file_util_ex::Mkdir(options.folder))
        return Complain(options.folder + ": " + lng::TextUtf8("the folder cannot be made"), kSomeFailed);
    // Made here, so that one process after the other uses it, and deleted when all have ended. Archives are packed there.
    (void)std_file_paths::GetTempDir();
    std::size_t failed = 0;
    CConversionPlan plan(options);
    for (const std::string& input : options.inputs) {
        const CConversion conversion = plan.Begin(input);
        if (conversion.refusal) Complain(input + ": " + *conversion.refusal, kSomeFailed);
        if (!conversion.refusal && ConvertInProcess(conversion, options))
            plan.Written(conversion);
        else
            ++failed;
        if (WantedEnd() != 0) break;
    }
    std_file_paths::DeleteTempDir();
    if (WantedEnd() != 0) return 128 + WantedEnd();  // as shells have it
    if (failed > 0 && options.inputs.size() > 1)
        Complain(lng::TextUtf8("not converted: %s of %s files",
                               {std::to_string(failed), std::to_string(options.inputs.size())}),
                 kSomeFailed);
    return failed > 0 ? kSomeFailed : kDone;
}

int Main(const std::vector<std::string>& arguments) {
    const CResult<CConvertOptions> parsed = ParseConvertOptions(arguments);
    if (!parsed) return Complain(lng::TextUtf8("%s (see --help)", {parsed.Error().message}), kUsage);
    switch (parsed.Value().action) {
        case CConvertOptions::EAction::Help:
            return Print(ConvertHelp()) ? kDone : kSomeFailed;
        case CConvertOptions::EAction::Version:
            return Print("orbivue-convert " ORBIVUE_VERSION "\n") ? kDone : kSomeFailed;
        case CConvertOptions::EAction::Convert:
            break;
    }
    return Convert(parsed.Value());
}

}  // namespace

int main(int argc, char** argv) {
    process_memory::ShareOneHeap();
    process_memory::KeepFreedBlocks();
    lng::UseDesktopLanguage();
    try {
        return Main({argv + (argc > 0 ? 1 : 0), argv + argc});
    } catch (const std::exception& error) {
        return Complain(error.what(), kSomeFailed);
    }
}
