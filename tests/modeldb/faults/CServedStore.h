// SPDX-License-Identifier: MIT
#pragma once

#include <fcntl.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <functional>

#include "../store/CTestStore.h"
#include "files/CFileDescriptor.h"
#include "modeldb/client/C3DModelsLoadApi.h"

/** A process that works until it is killed, or done. */
class CChild {
  public:
    /** Ends with 0 when work was done. */
    explicit CChild(const std::function<bool()>& work) : m_pid(::fork()) {
        if (m_pid != 0) return;
        // It ends with the test, however that ends.
        (void)::prctl(PR_SET_PDEATHSIG, SIGKILL);
        ::_exit(work() ? 0 : 1);
    }
    CChild(const CChild&) = delete;
    CChild& operator=(const CChild&) = delete;
    ~CChild() { Kill(); }

    /** True where it was still running. */
    bool Kill() {
        if (m_pid <= 0) return false;
        ::kill(m_pid, SIGKILL);
        int status = 0;
        ::waitpid(m_pid, &status, 0);
        m_pid = -1;
        return WIFSIGNALED(status);
    }

  private:
    pid_t m_pid = -1;
};

/** A store, and the program that serves it. The client's files lie beside it. */
class CServedStore {
  public:
    explicit CServedStore(const CEngineRow& engine) : m_place(engine) {
        ::setenv("XDG_CACHE_HOME", (m_place.folder / "cache").c_str(), 1);
        CModelStore store = m_place.Open();
        token = store.CreateToken("test", {7}).Value();
        m_address = m_place.Address().text;
    }

    /** Starts the server, on the port of the last time. */
    void Start() {
        int ends[2] = {-1, -1};
        ASSERT_EQ(::pipe2(ends, O_CLOEXEC), 0);
        CFileDescriptor read(ends[0]), write(ends[1]);
        m_server = std::make_unique<CChild>([&] {
            ::dup2(write.Get(), STDOUT_FILENO);
            const std::string listen = "127.0.0.1:" + std::to_string(port), hot = m_place.folder / "hot";
            ::execl(ORBIVUE_MODELDB_PROGRAM, "orbivue-modeldb", "serve", "--quiet", "--no-previews",
                    "--upload-rate", "0", "--listen", listen.c_str(), "--store", m_address.c_str(),
                    "--cache-dir", hot.c_str(), nullptr);
            return false;
        });
        (void)write.Close();
        std::string line;
        for (char c = 0; ::read(read.Get(), &c, 1) == 1 && c != '\n';) line += c;
        const std::size_t colon = line.rfind(':');
        ASSERT_NE(colon, line.npos) << "the server said '" << line << "'";
        port = std::atoi(line.c_str() + colon + 1);
    }
    void Kill() { ASSERT_TRUE(m_server && m_server->Kill()) << "the server ended by itself"; }
    [[nodiscard]] std::string Address() const { return "http://127.0.0.1:" + std::to_string(port); }
    [[nodiscard]] CModelStore Open() const { return m_place.Open(EStoreUse::Write); }

    std::string token;
    int port = 0;

  private:
    CTestPlace m_place;
    std::string m_address;
    std::unique_ptr<CChild> m_server;
};

/** Holds that nothing is wrong with a store. */
inline void ExpectSound(CModelStore& store) {
    const CResult<CCheckReport> report = store.Check(CModelStore::ECheck::Full);
    ASSERT_TRUE(report) << report.Error().Text();
    EXPECT_EQ(report.Value().faultCount, 0u) << report.Value().faults.front();
}
