// SPDX-License-Identifier: MIT
#include "programs/orbivue_convert/convert_process.h"

#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <string>

#include "base/CStopwatch.h"
#include "base/text/lng.h"
#include "files/CAtomicFile.h"
#include "files/file_util_ex.h"
#include "files/std_file_paths.h"
#include "process/confine.h"
#include "programs/orbivue_convert/CConversionPlan.h"
#include "programs/orbivue_convert/CConvertOptions.h"
#include "programs/orbivue_convert/convert_file.h"
#include "programs/shared/input_files.h"
#include "programs/shared/program_output.h"
#include "settings/language_catalogue.h"

namespace {

constexpr char kName[] = "orbivue-convert";
using EKind = CSceneNote::EKind;
using ETelling = CConvertOptions::ETelling;

/** Far more than a sound scene needs: a stranger's file cannot take the machine for itself. */
CProcessLimits LimitsForConverting() {
    CProcessLimits limits = LimitsForDrawing();
    const auto pages = static_cast<std::uint64_t>(std::max(::sysconf(_SC_PHYS_PAGES), 0L));
    const auto pageBytes = static_cast<std::uint64_t>(std::max(::sysconf(_SC_PAGESIZE), 0L));
    limits.memoryBytes = std::max(limits.memoryBytes, pages * pageBytes / 2);
    limits.processorSeconds = 900;
    limits.fileBytes = 0;
    return limits;
}

std::string FolderOf(const std::string& file) {
    const std::string folder = file_util_ex::GetFilePath(file);
    return folder.empty() ? "." : folder;
}

void Confine(const CConversion& conversion, const CConvertOptions& options) {
    CFileAccess files = FilesFor({&conversion.input, 1}, {}, options.scene);
    if (!options.scriptFile.empty()) files.readable.push_back(options.scriptFile);
    files.trees = {FolderOf(conversion.output), std_file_paths::GetTempDir()};
    if (const CResult<std::string> target = CAtomicFile::OutputTarget(conversion.output))
        files.trees.push_back(FolderOf(target.Value()));
    (void)ConfineProcess({LimitsForConverting(), files});
}

void TellNotes(const CConversion& conversion, const std::vector<CSceneNote>& notes, ETelling telling) {
    if (telling == ETelling::Errors) return;
    const auto warns = [](const CSceneNote& note) { return note.kind != EKind::Repaired; };
    const auto warnings = std::ranges::count_if(notes, warns);
    if (telling == ETelling::All) {
        for (const CSceneNote& note : notes) PrintError(kName, conversion.input + ": " + note.Text());
    } else if (warnings > 0) {
        const std::wstring text = lng::TextN("%s thing is missing or left out (--verbose tells)",
                                             "%s things are missing or left out (--verbose tells)",
                                             static_cast<std::uint64_t>(warnings));
        PrintError(kName, conversion.input + ": " + file_util_ex::ConvertToUTF8(text));
    }
}

/** What the other process does. */
int Convert(const CConversion& conversion, const CConvertOptions& options) {
    const CStopwatch watch;
    Confine(conversion, options);
    std::vector<CSceneNote> notes;
    const CStatus converted = ConvertFile(conversion, options, notes);
    if (!converted) {
        const CError& error = converted.Error();
        const bool names = error.where == conversion.input;
        const std::string text = lng::TextForTerminal(error);
        PrintError(kName, names ? text : conversion.input + ": " + text);
        return 1;
    }
    TellNotes(conversion, notes, options.telling);
    if (options.telling == ETelling::All)
        PrintError(kName,
                   conversion.input + ": " +
                       lng::TextUtf8("%s is written (%s ms)",
                                     {conversion.output, std::to_string(static_cast<int>(watch.Ms()))}));
    return 0;
}

volatile std::sig_atomic_t wantedEnd = 0;  ///< the signal that asked for it

void NoteWantedEnd(int signal) {
    wantedEnd = signal;
}

void SetHandlers(void (*handler)(int)) {
    struct sigaction action = {};
    action.sa_handler = handler;  // without SA_RESTART, so that waiting ends
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) (void)::sigaction(signal, &action, nullptr);
}

/** How the process has ended; ends it, too, when this one is to end. */
int WaitFor(pid_t pid) {
    int status = 0;
    while (::waitpid(pid, &status, 0) < 0 && errno == EINTR)
        if (wantedEnd != 0) (void)::kill(pid, SIGTERM);
    return status;
}

std::string ReasonOf(int signal) {
    if (signal == SIGXCPU || signal == SIGKILL)
        return lng::TextUtf8("it took more time or memory than a file may take");
    return lng::TextUtf8("the conversion has crashed (%s)", {::strsignal(signal)});
}

}  // namespace

bool ConvertInProcess(const CConversion& conversion, const CConvertOptions& options) {
    std::fflush(nullptr);  // or both would print what waits
    SetHandlers(NoteWantedEnd);
    const pid_t pid = ::fork();
    if (pid == 0) {
        SetHandlers(SIG_DFL);
        const int code = Convert(conversion, options);
        std::fflush(nullptr);
        ::_exit(code);
    }
    if (pid < 0) {
        PrintError(kName, conversion.input + ": " + lng::TextUtf8("no process can be started"));
        return false;
    }
    const int status = WaitFor(pid);
    if (WIFSIGNALED(status) && wantedEnd == 0)
        PrintError(kName, conversion.input + ": " + ReasonOf(WTERMSIG(status)));
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

int WantedEnd() {
    return wantedEnd;
}
