// SPDX-License-Identifier: MIT
#include <pthread.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <cstring>

#include "files/std_file_paths.h"
#include "modeldb/protocol/wire_errors.h"
#include "modeldb/server/CModelSite.h"
#include "modeldb/server/http/CHttpServer.h"
#include "modeldb/server/server_answers.h"
#include "programs/orbivue_modeldb/CLineLog.h"
#include "programs/orbivue_modeldb/model_commands.h"
#include "programs/orbivue_modeldb/store_output.h"

namespace {

constexpr std::chrono::seconds kGrace{10};  ///< for requests under way when the server ends

/** Tells the service manager, where there is one. */
void Notify(std::string_view state) {
    const char* path = std::getenv("NOTIFY_SOCKET");
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path == nullptr || (path[0] != '/' && path[0] != '@') ||
        std::strlen(path) >= sizeof(address.sun_path))
        return;
    std::memcpy(address.sun_path, path, std::strlen(path));
    if (path[0] == '@') address.sun_path[0] = '\0';
    const CFileDescriptor socket(::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0));
    const auto size = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + std::strlen(path));
    // Where nobody listens nobody waits.
    (void)::sendto(socket.Get(), state.data(), state.size(), MSG_NOSIGNAL,
                   reinterpret_cast<const sockaddr*>(&address), size);
}

/** Connections and files: as many as the system lets this process have. */
void AllowOpenFiles() {
    rlimit files{};
    if (::getrlimit(RLIMIT_NOFILE, &files) != 0) return;
    files.rlim_cur = files.rlim_max;
    (void)::setrlimit(RLIMIT_NOFILE, &files);  // the old limit serves, too
}

/** The signals that end the server, kept from all threads that start later. */
sigset_t BlockEndSignals() {
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGTERM);
    sigaddset(&signals, SIGINT);
    (void)::pthread_sigmask(SIG_BLOCK, &signals, nullptr);  // these arguments are right
    return signals;
}

/** A service has a folder of its own. */
std::string CacheFolderOf(const CServeOptions& serve) {
    const char* folder = std::getenv("CACHE_DIRECTORY");
    if (!serve.cacheFolder.empty()) return serve.cacheFolder;
    return folder != nullptr ? folder : std_file_paths::GetCacheFolderPath() + "/modeldb";
}

CServerOptions SiteOptionsOf(const CModelDbOptions& options, CLineLog& log) {
    const CServeOptions& serve = options.serve;
    CServerOptions site;
    site.store = StoreOf(options);
    site.isPrivate = serve.isPrivate;
    site.hasOpenUploads = serve.hasOpenUploads;
    site.baseUrl = serve.baseUrl;
    site.cacheFolder = CacheFolderOf(serve);
    site.cacheBytes = serve.cacheBytes;
    site.workers = serve.workers;
    site.uploadBytes = serve.uploadBytes;
    site.groupModels = serve.groupModels;
    site.uploadsPerMinute = serve.uploadsPerMinute;
    site.drawsPreviews = !serve.drawsNoPreviews;
    site.complain = [&log](std::string_view line) { log.AddEvent(line); };
    return site;
}

CHttpServerOptions HttpOptionsOf(const CServeOptions& serve, CLineLog& log) {
    CHttpServerOptions http;
    http.addresses = serve.addresses;
    http.port = serve.port;
    http.threads = static_cast<int>(serve.threads);
    http.trustedProxies = serve.trustedProxies;
    http.bodyBytes = serve.uploadBytes;
    http.spoolFolder = CacheFolderOf(serve);  // the usual folder for temporary files may be memory
    http.connections = serve.connections;
    http.refusal = [](int status, std::string_view why) {
        return server_answers::Json(status, wire_errors::Write(status, why));
    };
    if (!serve.isQuiet) http.log = [&log](std::string_view line) { log.Add(line); };
    return http;
}

std::string AddressOf(const CServeOptions& serve, int port) {
    const std::string& host = serve.addresses.front();
    return "http://" + (host.find(':') == host.npos ? host : "[" + host + "]") + ":" + std::to_string(port) +
           "/";
}

/** True where somebody has a token that may upload, or the store cannot tell. */
bool HasUploadToken(const CModelDbOptions& options) {
    CResult<CModelStore> store = OpenStore(options, EStoreUse::Read);
    if (!store) return true;
    const auto tokens = store.Value().Tokens();
    if (!tokens) return true;
    for (const CTokenRecord& token : tokens.Value())
        if (token.rights.Has(EStoreRight::Upload)) return true;
    return false;
}

}  // namespace

int model_commands::Serve(const CModelDbOptions& options) {
    AllowOpenFiles();
    const sigset_t signals = BlockEndSignals();
    CLineLog log(STDERR_FILENO);
    CResult<std::unique_ptr<CModelSite>> site = CModelSite::Make(SiteOptionsOf(options, log));
    if (!site) return Complain(site.Error(), kStoreFails);
    auto server = CHttpServer::Start(HttpOptionsOf(options.serve, log), *site.Value());
    if (!server) return Complain(server.Error(), kCannotWrite);
    CHttpServer& http = *server.Value();
    site.Value()->SetHttpCounters([&http] { return http.Counters(); });
    if (!options.serve.hasOpenUploads && !HasUploadToken(options))
        log.AddEvent("uploads are refused until there is a token: orbivue-modeldb token create NAME");
    (void)Print("listening on " + AddressOf(options.serve, http.Port()) + "\n");  // it serves all the same
    Notify("READY=1");
    int got = 0;
    while (::sigwait(&signals, &got) != 0) continue;
    Notify("STOPPING=1");
    log.AddEvent("ending");
    http.Stop(kGrace);
    site.Value()->Stop();
    return kDone;
}
