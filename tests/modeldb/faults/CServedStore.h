// SPDX-License-Identifier: MIT
#pragma once

#include "../client/CChildProgram.h"
#include "../store/CTestStore.h"
#include "modeldb/client/C3DModelsLoadApi.h"

/** A store, and the program that serves it. The client's files lie beside it. */
class CServedStore {
  public:
    explicit CServedStore(const CEngineRow& engine) : m_place(engine) {
        ::setenv("XDG_CACHE_HOME", (m_place.folder / "cache").c_str(), 1);
        CModelStore store = m_place.Open();
        token = store.CreateToken("test", {7}).Value();
    }

    /** Starts the server, on the port of the last time. */
    void Start() {
        m_server = std::make_unique<CChildProgram>(std::vector<std::string>{
            ORBIVUE_MODELDB_PROGRAM, "serve", "--quiet", "--no-previews", "--upload-rate", "0", "--listen",
            "127.0.0.1:" + std::to_string(port), "--store", m_place.Address().text, "--cache-dir",
            m_place.folder / "hot"});
        port = m_server->Port();
    }
    void Kill() { ASSERT_TRUE(m_server && m_server->Kill()) << "the server ended by itself"; }
    [[nodiscard]] std::string Address() const { return "http://127.0.0.1:" + std::to_string(port); }
    [[nodiscard]] CModelStore Open() const { return m_place.Open(EStoreUse::Write); }

    std::string token;
    int port = 0;

  private:
    CTestPlace m_place;
    std::unique_ptr<CChildProgram> m_server;
};
