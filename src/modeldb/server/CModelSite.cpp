// SPDX-License-Identifier: MIT
#include "modeldb/server/CModelSite.h"

#include <algorithm>

#include "modeldb/server/CModelSite_state.h"
#include "modeldb/server/server_answers.h"

namespace {

/** The path of the public address: "/models" of https://host/models. */
std::string PathOf(const std::string& url) {
    const std::size_t host = url.find("://");
    const std::size_t slash = host == url.npos ? url.npos : url.find('/', host + 3);
    std::string path = slash == url.npos ? std::string() : url.substr(slash);
    while (!path.empty() && path.back() == '/') path.pop_back();
    return path;
}

CWorkshop::COptions WorkshopOf(const CServerOptions& options) {
    CWorkshop::COptions workshop;
    workshop.program = options.workerProgram;
    workshop.folder = options.cacheFolder;  // the usual folder for temporary files may be memory
    return workshop;
}

CSite::COptions SiteOf(const CServerOptions& options) {
    CSite::COptions site;
    site.basePath = PathOf(options.baseUrl);
    return site;
}

}  // namespace

CModelSite::CState::CState(CServerOptions given, std::unique_ptr<CStorePool> pool,
                           std::unique_ptr<CHotFolder> folder)
    : options(std::move(given)),
      stores(std::move(pool)),
      hot(std::move(folder)),
      pages(options.pageBytes),
      access(*stores, {options.isPrivate, options.hasOpenUploads}),
      workshop(WorkshopOf(options)),
      views(workshop),
      site(SiteOf(options), views),
      previews(options.drawsPreviews ? std::make_unique<CPreviewQueue>(options.store, workshop) : nullptr),
      workers(options.workers, options.waiting),
      slowWorkers(std::max(1U, options.workers / 2), options.waiting),
      viewWorkers(std::max(1U, options.workers / 2), options.waiting),
      blobs(*stores, workers, *hot, options.isPrivate),
      uploads(options, *stores, access, workshop, previews.get()) {}

CModelSite::CModelSite(std::unique_ptr<CState> state) : m_state(std::move(state)) {}

CResult<std::unique_ptr<CModelSite>> CModelSite::Make(CServerOptions options) {
    CResult<std::unique_ptr<CStorePool>> stores = CStorePool::Open(options.store);
    if (!stores) return stores.Error();
    CHotFolder::COptions hot;
    hot.folder = options.cacheFolder;
    hot.bytes = options.cacheBytes;
    CResult<std::unique_ptr<CHotFolder>> folder = CHotFolder::Open(hot);
    if (!folder) return folder.Error();
    auto state =
        std::make_unique<CState>(std::move(options), std::move(stores).Value(), std::move(folder).Value());
    return std::unique_ptr<CModelSite>(new CModelSite(std::move(state)));
}

CModelSite::~CModelSite() {
    Stop();
}

void CModelSite::Stop() {
    m_state->workshop.Stop();
    m_state->uploads.Stop();
    m_state->viewWorkers.Stop();
    m_state->slowWorkers.Stop();
    m_state->workers.Stop();
}

void CModelSite::SetHttpCounters(std::function<CHttpCounters()> counters) {
    const std::lock_guard lock(m_state->httpMutex);
    m_state->http = std::move(counters);
}

std::optional<CHttpAnswer> CModelSite::RefuseBody(const CHttpRequest& request) {
    const CResult<CWireAddress> address = wire_address::Read(request.target);
    if (!address) return server_answers::Refusal(address.Error());
    if (!std::holds_alternative<CUploadAddress>(address.Value()))
        return server_answers::WrongMethod(wire_address::MethodsOf(address.Value()));
    return m_state->uploads.Refuse(request);
}

void CModelSite::AnswerBody(CHttpRequest, CHttpBody body, CHttpReply reply) {
    m_state->uploads.Take(std::move(body), std::move(reply));
}

void CModelSite::OnWorker(CWorkers& workers, CHttpRequest request, CHttpReply reply, CWork work) {
    struct CTask {
        CHttpRequest request;
        CHttpReply reply;
        CWork work;
    };
    // Shared, as a queue's work must be copyable.
    const auto task = std::make_shared<CTask>(CTask{std::move(request), std::move(reply), std::move(work)});
    const bool isTaken =
        workers.Post([this, task] { task->reply.Send(FromStore(task->request, task->work)); });
    if (!isTaken) task->reply.Send(server_answers::Refusal(503));
}

CHttpAnswer CModelSite::FromStore(const CHttpRequest& request, const CWork& work) {
    CResult<CHttpAnswer> answer =
        m_state->stores->Run([&](CModelStore& store) { return work(store, request); });
    if (answer && m_state->options.isPrivate) server_answers::KeepFromSharedCaches(answer.Value());
    return answer ? std::move(answer).Value() : Failed(answer.Error());
}

CHttpAnswer CModelSite::Failed(const CError& error) {
    CHttpAnswer answer = server_answers::Refusal(error);
    if (answer.status >= 500) {
        ++m_state->storeFailures;
        // A database that is known to be away was told of already.
        if (m_state->options.complain && !error.where.empty())
            m_state->options.complain("the store cannot answer: " + error.Text());
    }
    return answer;
}
