// SPDX-License-Identifier: MIT
#include "modeldb/client/CLibraryConnection.h"

#include <algorithm>
#include <utility>

#include "files/std_file_paths.h"
#include "modeldb/client/CEmbeddedLibrary.h"
#include "modeldb/client/CServerLibrary.h"
#include "modeldb/protocol/wire_address.h"

namespace {

/** How long counts are good that came with the names of the groups. */
constexpr std::chrono::seconds kCountsLast{30};

bool IsToken(const std::string& text) {
    return std::ranges::all_of(text, [](char c) { return c > ' ' && c < '\x7F'; });
}

}  // namespace

CLibraryConnection& CLibraryConnection::Instance() {
    static CLibraryConnection instance;
    return instance;
}

CResult<std::shared_ptr<CModelLibrary>> CLibraryConnection::LibraryAt(const std::string& address) {
    if (address.empty())
        return std::shared_ptr<CModelLibrary>(std::make_shared<CEmbeddedLibrary>(
            CModelStore::DefaultPath(), std_file_paths::GetDataPath("samples")));
    CResult<std::string> server = wire_address::CheckServer(address);
    if (!server) return server.Error();
    CServerCalls::CServer facts;
    facts.address = std::move(server).Value();
    facts.token = m_token;
    facts.onLost = [this] { TellLost(); };
    return std::shared_ptr<CModelLibrary>(std::make_shared<CServerLibrary>(std::move(facts)));
}

CStatus CLibraryConnection::Open(const std::string& address) {
    std::shared_ptr<CModelLibrary> library;
    {
        const std::lock_guard lock(m_mutex);
        if (m_library && m_address == address && m_libraryToken == m_token) library = m_library;
    }
    if (library) return library->Open();
    Close();
    std::string token;
    {
        const std::lock_guard lock(m_mutex);
        CResult<std::shared_ptr<CModelLibrary>> made = LibraryAt(address);
        if (!made) return made.Error();
        library = std::move(made).Value();
        token = m_token;
    }
    if (CStatus opened = library->Open(); !opened) return opened;
    const std::lock_guard lock(m_mutex);
    if (m_library) m_library->Stop();  // somebody else opened one meanwhile
    m_library = std::move(library);
    m_address = address;
    m_libraryToken = std::move(token);
    return CDone{};
}

void CLibraryConnection::Close() {
    std::shared_ptr<CModelLibrary> library;
    {
        const std::lock_guard lock(m_mutex);
        library = std::exchange(m_library, nullptr);
        m_counts.clear();
    }
    if (library) library->Stop();
}

std::shared_ptr<CModelLibrary> CLibraryConnection::Library() const {
    const std::lock_guard lock(m_mutex);
    return m_library;
}

void CLibraryConnection::SetToken(std::string token) {
    const std::lock_guard lock(m_mutex);
    m_token = IsToken(token) ? std::move(token) : std::string();
}

void CLibraryConnection::SetLostListener(std::function<void()> listener) {
    const std::lock_guard lock(m_mutex);
    m_lostListener = std::move(listener);
}

void CLibraryConnection::TellLost() const {
    std::function<void()> listener;
    {
        const std::lock_guard lock(m_mutex);
        listener = m_lostListener;
    }
    if (listener) listener();  // not locked: it may call us
}

void CLibraryConnection::Note(std::optional<CError> error) {
    const std::lock_guard lock(m_mutex);
    m_lastError = std::move(error);
}

std::optional<CError> CLibraryConnection::LastError() const {
    const std::lock_guard lock(m_mutex);
    return m_lastError;
}

void CLibraryConnection::KeepCounts(std::span<const CGroupRecord> groups) {
    const std::lock_guard lock(m_mutex);
    m_counts.clear();
    for (const CGroupRecord& group : groups) m_counts[group.name] = group.modelCount;
    m_countsEnd = CClock::now() + kCountsLast;
}

std::optional<std::uint64_t> CLibraryConnection::TakeCount(const std::string& group) {
    const std::lock_guard lock(m_mutex);
    if (CClock::now() > m_countsEnd) m_counts.clear();
    const auto found = m_counts.find(group);
    if (found == m_counts.end()) return std::nullopt;
    const std::uint64_t count = found->second;
    m_counts.erase(found);
    return count;
}

void CLibraryConnection::ForgetCounts() {
    const std::lock_guard lock(m_mutex);
    m_counts.clear();
}
