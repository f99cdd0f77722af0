// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "base/CResult.h"
#include "files/CFileDescriptor.h"
#include "modeldb/server/work/CModelInput.h"

/** What reading a model has found. */
struct CInspected {
    bool sound = false;
    std::string reason;  ///< why it is refused: one printable line of English
};

/** A web page in a file without a name, open for reading alone; it is gone with the last descriptor. */
struct CMadePage {
    std::shared_ptr<const CFileDescriptor> file;  ///< shared with the answers that are sending it
    std::uint64_t bytes = 0;
};

/** Reads strangers' models, each in a process of its own that is confined before the first byte: limits on memory, time and
 * files, no network, no other programs, no file but the one that it is given (what the system lacks of that is left
 * out). What the process answers is not trusted either. This program must answer IsWorkerCommand, see worker_command.h.
 *
 * Every call blocks until it has its answer: at most patience, beside the wait for others that are before it. Any thread
 * may call. Errors: Busy: too many are waiting, or the system gives no process now; Cancelled: Stop was called; TooLarge,
 * BadFormat: this model cannot be worked on, and a repetition would end the same. */
class CWorkshop {
  public:
    struct COptions {
        /** Processes at once; 0: one for each core, but two at least. One of them is kept for inspections. */
        unsigned processes = 0;
        std::chrono::milliseconds patience{20'000};  ///< with one process, which is killed then
        std::chrono::milliseconds waiting{20'000};   ///< for others to end, before Busy
        /** Where files without names lie that hold models and pages; empty: the system's temporary folder. */
        std::string folder{};
        std::string program = "/proc/self/exe";
    };

    CWorkshop();
    explicit CWorkshop(COptions options);
    CWorkshop(const CWorkshop&) = delete;
    CWorkshop& operator=(const CWorkshop&) = delete;
    /** No call may be under way. */
    ~CWorkshop();

    /** Reads the model as the viewer does. Refused is, too, what the viewer would have to repair (others than the viewer may
     * open it; a program that uploads what it has open saves it anew), and what has no face that could be seen. Of what
     * ends the process, or takes too long, the outcome is a refusal. */
    [[nodiscard]] CResult<CInspected> Inspect(const CModelInput& input);
    /** A JPEG or PNG picture, 256 x 256 pixels, drawn in software. */
    [[nodiscard]] CResult<std::vector<std::byte>> DrawPreview(const CModelInput& input);
    /** The page of the web export with everything in it. */
    [[nodiscard]] CResult<CMadePage> MakePage(const CModelInput& input);

    [[nodiscard]] const std::string& Folder() const;

    /** Kills what runs; calls that are under way and later ones end with Cancelled. */
    void Stop();

  private:
    struct CState;
    std::unique_ptr<CState> m_state;
};
