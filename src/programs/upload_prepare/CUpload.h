// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <vector>

#include "programs/upload_prepare/CRclone.h"
#include "programs/upload_prepare/rclone_output.h"

/** The upload of one folder by rclone, from looking for a drive to the address of what was uploaded. Knows no window: its
 * owner calls Poll from time to time. Nothing is sent before Start. */
class CUpload {
  public:
    enum class EState {
        Looking,    ///< for remotes
        NoDrive,    ///< see WhyNoDrive
        Ready,      ///< waits for Start
        Copying,    ///< see Progress
        Linking,    ///< all is there; asks for its address
        Done,       ///< see Address
        Failed,     ///< see Errors; Start may be called again
        Cancelled,  ///< what was sent already may lie in the drive; Start may be called again
    };
    enum class ENoDrive {
        NotInstalled,  ///< no rclone
        NoRemote,      ///< none of the type
        Locked,        ///< its configuration has a password, which nobody gives
        Failed,        ///< rclone failed; see Errors
    };

    /** folder: what is to be uploaded; remoteName: for the folder in the drive, see RemoteFolderName. */
    CUpload(CRcloneSetup setup, std::string folder, std::string remoteName);
    CUpload(const CUpload&) = delete;
    CUpload& operator=(const CUpload&) = delete;
    /** Ends what runs. */
    ~CUpload();

    /** True when something has changed that is to be shown. */
    bool Poll();
    /** Looks for remotes again, with the password of rclone's configuration. Where it is ENoDrive::Locked. */
    void Unlock(std::string password);
    /** Copies the folder to a remote, one of Remotes(). anybody: the address is to be one that whoever has it may open. */
    void Start(const std::string& remote, bool anybody);
    /** Ends copying. */
    void Cancel();

    [[nodiscard]] EState State() const { return m_state; }
    [[nodiscard]] ENoDrive WhyNoDrive() const { return m_whyNoDrive; }
    [[nodiscard]] const std::vector<std::string>& Remotes() const { return m_remotes; }
    /** Where Start puts the folder, "Orbivue/...". */
    [[nodiscard]] std::string RemoteFolder() const { return kParent + ('/' + m_remoteName); }
    [[nodiscard]] const rclone_output::CProgress& Progress() const { return m_progress; }
    /** What rclone complained of, the newest last; printable. */
    [[nodiscard]] const std::vector<std::string>& Errors() const { return m_errors; }
    /** Of the uploaded folder; empty where none can be had. */
    [[nodiscard]] const std::string& Address() const { return m_address; }
    /** Anybody who has the address may open it. */
    [[nodiscard]] bool IsForAnybody() const { return m_isForAnybody; }

  private:
    static constexpr char kParent[] = "Orbivue";

    void Run(EState state, const std::vector<std::string>& command, const std::vector<std::string>& operands,
             std::chrono::milliseconds silence);
    void Look();
    void TakeErrors();
    void TakeRemotes(const CRclone& ended);
    void TakeCopied(const CRclone& ended);
    void TakeAddress(const CRclone& ended);
    void AskForFolder();
    void Complain(std::string line);

    CRcloneSetup m_setup;
    std::string m_folder, m_remoteName;
    std::optional<CRclone> m_running;
    EState m_state = EState::Looking;
    ENoDrive m_whyNoDrive = ENoDrive::NotInstalled;
    std::vector<std::string> m_remotes;
    std::string m_remote;
    bool m_wantsLink = false, m_isForAnybody = false;
    rclone_output::CProgress m_progress;
    std::vector<std::string> m_errors;
    std::string m_address;
};
