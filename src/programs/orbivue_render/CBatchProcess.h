// SPDX-License-Identifier: MIT
#pragma once

#include <sys/types.h>

#include <optional>
#include <set>
#include <span>
#include <string>

#include "files/CFileDescriptor.h"

struct CBatchItem;
struct CRenderOptions;

/** A process that draws models one after another, confined to their folders. Move-only; the process is killed with this
 * object, and when this process ends. */
class CBatchProcess {
  public:
    /** One that may read what pictures of these files need. Nothing when the system gives no process. */
    [[nodiscard]] static std::optional<CBatchProcess> Start(const CRenderOptions& options,
                                                            std::span<const std::string> paths);
    CBatchProcess(CBatchProcess&& other) noexcept;
    CBatchProcess& operator=(CBatchProcess&& other) noexcept;
    ~CBatchProcess();

    /** True where it may read this file; what a script names is for the caller to ask. */
    [[nodiscard]] bool Covers(const std::string& path) const;
    /** Begins a picture; false when the process has ended. */
    [[nodiscard]] bool Send(const CBatchItem& item);
    /** Readable when ReadAnswer has something to tell. */
    [[nodiscard]] int Answers() const { return m_answers.Get(); }

    enum class EState { Busy, Done, Ended };
    struct CAnswer {
        EState state = EState::Busy;
        std::string line;  ///< of a picture that is done, see batch_lines.h
    };
    [[nodiscard]] CAnswer ReadAnswer();
    /** A sentence; call it when it has ended. */
    [[nodiscard]] std::string WhyItEnded();

  private:
    CBatchProcess() = default;
    void End();

    pid_t m_pid = -1;
    CFileDescriptor m_orders, m_answers;
    std::string m_begun;  ///< the beginning of an answer
    std::set<std::string> m_readable;
};
