// SPDX-License-Identifier: MIT
#include <unistd.h>

#include <algorithm>
#include <fstream>

#include "modeldb/protocol/wire_records.h"
#include "modeldb/server/CModelSite_state.h"
#include "modeldb/server/server_answers.h"
#include "modeldb/server/server_metrics.h"

namespace {

using server_answers::Json;

/** Same text, same groups: numbers of groups never come again, and versions only grow. */
std::string TagOf(const std::vector<CGroupRecord>& groups) {
    std::int64_t last = 0;
    std::uint64_t versions = 0;
    for (const CGroupRecord& group : groups) {
        last = std::max(last, group.id);
        versions += group.version;
    }
    return "\"g" + std::to_string(groups.size()) + "-" + std::to_string(last) + "-" +
           std::to_string(versions) + "\"";
}

std::string TagOf(const CGroupRecord& group) {
    return "\"m" + std::to_string(group.id) + "-" + std::to_string(group.version) + "\"";
}

/** What a page of models is kept under. */
std::string KeyOf(const CModelsAddress& address) {
    return wire_address::Write(address);
}

/** One more than asked for tells whether there are more. */
std::size_t Beyond(std::size_t limit) {
    return std::min(limit + 1, store_limits::kPageModels);
}
template <class T>
bool CutTo(std::vector<T>& list, std::size_t limit) {
    const bool isMore = list.size() > limit || (limit == store_limits::kPageModels && list.size() == limit);
    if (list.size() > limit) list.resize(limit);
    return isMore;
}

CHttpAnswer OfPage(const CPageCache::CPage& page, std::string_view tag, bool isPrivate) {
    CHttpAnswer answer{200, std::string(wire_limits::kJsonType), {}, page};
    server_answers::AddTag(answer, tag, isPrivate);
    return answer;
}

/** What of this process is in memory now; 0 where the system does not tell. */
std::uint64_t MemoryBytes() {
    std::ifstream file("/proc/self/statm");
    std::uint64_t all = 0, resident = 0;
    file >> all >> resident;
    return resident * static_cast<std::uint64_t>(::sysconf(_SC_PAGESIZE));
}

EAccess AccessFor(const CHttpRequest& request, const CWireAddress& address) {
    if (request.method == EHttpMethod::Delete) return EAccess::Remove;
    const bool isForAll = std::holds_alternative<CVersionAddress>(address) ||
                          std::holds_alternative<CHealthAddress>(address) ||
                          std::holds_alternative<CSiteFile>(address);
    return isForAll ? EAccess::Anything : EAccess::Read;
}

bool TakesMethod(const CHttpRequest& request, const CWireAddress& address) {
    if (request.method == EHttpMethod::Delete) return std::holds_alternative<CModelAddress>(address);
    const bool isReading = request.method == EHttpMethod::Get || request.method == EHttpMethod::Head;
    return isReading && !std::holds_alternative<CUploadAddress>(address);
}

}  // namespace

/** Answers each kind of address, or hands it to a worker. */
struct CModelSite::CDispatch {
    CModelSite& site;
    CHttpRequest request;
    CHttpReply reply;

    void ByWorker(CWork work) {
        site.OnWorker(site.m_state->workers, std::move(request), std::move(reply), std::move(work));
    }
    void BySlowWorker(CWork work) {
        site.OnWorker(site.m_state->slowWorkers, std::move(request), std::move(reply), std::move(work));
    }

    void operator()(const CVersionAddress& address) { reply.Send(site.Version(address)); }
    void operator()(const CMetricsAddress&) { reply.Send(site.Metrics()); }
    void operator()(const CUploadAddress&) { reply.Send(server_answers::Refusal(405)); }
    void operator()(const CHealthAddress&) {
        ByWorker([](CModelStore& store, const CHttpRequest&) -> CResult<CHttpAnswer> {
            const CResult<bool> asked = store.HasModel(0);
            if (!asked) return asked.Error();
            return CHttpAnswer::OfText(200, "text/plain", "ok\n");
        });
    }
    void operator()(const CGroupsAddress&) {
        ByWorker([&here = site](CModelStore& store, const CHttpRequest& asked) {
            return here.Groups(store, asked);
        });
    }
    void operator()(const CGroupAddress& address) {
        ByWorker([address](CModelStore& store, const CHttpRequest&) -> CResult<CHttpAnswer> {
            const CResult<CGroupRecord> group = store.Group(address.name);
            if (!group) return group.Error();
            return Json(200, wire_records::WriteGroup(group.Value()));
        });
    }
    void operator()(const CModelsAddress& address) {
        if (std::optional<CHttpAnswer> kept = site.KeptModels(address, request)) {
            reply.Send(*std::move(kept));
            return;
        }
        ByWorker([&here = site, address](CModelStore& store, const CHttpRequest& asked) {
            return here.Models(store, address, asked);
        });
    }
    void operator()(const CModelAddress& address) {
        const bool removes = request.method == EHttpMethod::Delete;
        ByWorker([address, removes](CModelStore& store, const CHttpRequest&) -> CResult<CHttpAnswer> {
            if (removes) {
                if (CStatus removed = store.RemoveModel(address.key); !removed) return removed.Error();
                return CHttpAnswer{204, {}, {}, {}};
            }
            const CResult<CModelRecord> model = store.Model(address.key);
            if (!model) return model.Error();
            return Json(200, wire_records::WriteModel(model.Value()));
        });
    }
    void operator()(const CSearchAddress& address) {
        BySlowWorker([&here = site, address](CModelStore& store, const CHttpRequest&) {
            return here.Search(store, address);
        });
    }
    void operator()(const CBlobAddress& address) {
        site.m_state->blobs.Answer(address, std::move(request), std::move(reply));
    }
    [[nodiscard]] CWork Page() const {
        return [&here = site](CModelStore& store, const CHttpRequest& asked) -> CResult<CHttpAnswer> {
            return here.WebPage(store, asked);
        };
    }
    void operator()(const CHomePage&) { ByWorker(Page()); }
    void operator()(const CGroupPage&) { ByWorker(Page()); }
    void operator()(const CModelPage&) { ByWorker(Page()); }
    void operator()(const CModelView&) {
        site.OnWorker(site.m_state->viewWorkers, std::move(request), std::move(reply), Page());
    }
    void operator()(const CSearchPage&) { BySlowWorker(Page()); }
    void operator()(const CSiteFile&) { ByWorker(Page()); }
};

void CModelSite::Answer(CHttpRequest request, CHttpReply reply) {
    const CResult<CWireAddress> address = wire_address::Read(request.target);
    if (!address) {
        reply.Send(server_answers::Refusal(address.Error()));
    } else if (!TakesMethod(request, address.Value())) {
        reply.Send(server_answers::WrongMethod(wire_address::MethodsOf(address.Value())));
    } else if (m_state->stores->IsQuick() ||
               !m_state->access.AsksStore(request, AccessFor(request, address.Value()))) {
        AnswerIfAllowed(address.Value(), std::move(request), std::move(reply));
    } else {
        struct CTask {
            CHttpRequest request;
            CHttpReply reply;
        };
        // Shared, as a queue's work must be copyable.
        const auto task = std::make_shared<CTask>(CTask{std::move(request), std::move(reply)});
        const bool isTaken = m_state->workers.Post([this, task, wanted = address.Value()] {
            AnswerIfAllowed(wanted, std::move(task->request), std::move(task->reply));
        });
        if (!isTaken) task->reply.Send(server_answers::Refusal(503));
    }
}

void CModelSite::AnswerIfAllowed(const CWireAddress& address, CHttpRequest request, CHttpReply reply) {
    if (auto refusal = m_state->access.Refuse(request, AccessFor(request, address)))
        reply.Send(*std::move(refusal));
    else
        std::visit(CDispatch{*this, std::move(request), std::move(reply)}, address);
}

CHttpAnswer CModelSite::Version(const CVersionAddress& address) const {
    CVersionAnswer answer;
    answer.accepted = address.client == wire_limits::kProtocol;
    answer.protocols = {std::string(wire_limits::kProtocol)};
    answer.server = "Orbivue " ORBIVUE_VERSION;
    answer.isPrivate = m_state->options.isPrivate;
    answer.uploadBytes = m_state->options.uploadBytes;
    answer.textures = store_limits::kTextures;
    return Json(200, wire_records::WriteVersion(answer));
}

CHttpAnswer CModelSite::Metrics() const {
    const CUploadCounts& uploads = m_state->uploads.Counts();
    CServerCounts counts;
    {
        const std::lock_guard lock(m_state->httpMutex);
        if (m_state->http) counts.http = m_state->http();
    }
    if (m_state->previews) counts.previews = m_state->previews->Counts();
    counts.hot = m_state->hot->Counts();
    counts.pageBytes = m_state->pages.Bytes();
    counts.waiting =
        m_state->workers.Waiting() + m_state->slowWorkers.Waiting() + m_state->viewWorkers.Waiting();
    counts.waitingUploads = m_state->uploads.Waiting();
    counts.uploadsAdded = uploads.added;
    counts.uploadsSame = uploads.same;
    counts.uploadsRefused = uploads.refused;
    counts.uploadsFailed = uploads.failed;
    counts.storeFailures = m_state->storeFailures;
    counts.memoryBytes = MemoryBytes();
    CHttpAnswer answer =
        CHttpAnswer::OfText(200, "text/plain; version=0.0.4; charset=utf-8", MetricsText(counts));
    if (m_state->options.isPrivate) server_answers::KeepFromSharedCaches(answer);
    return answer;
}

CResult<CHttpAnswer> CModelSite::Groups(CModelStore& store, const CHttpRequest& request) {
    constexpr std::string_view kKey = "groups";
    const CResult<std::vector<CGroupRecord>> groups = store.Groups();
    if (!groups) return groups.Error();
    const std::string tag = TagOf(groups.Value());
    const bool isPrivate = m_state->options.isPrivate;
    if (server_answers::HasTag(request, tag)) return server_answers::NotModified(tag, isPrivate);
    CPageCache::CPage page = m_state->pages.Find(kKey, tag);
    if (!page) {
        page = std::make_shared<const std::string>(wire_records::WriteGroups(groups.Value()));
        m_state->pages.Keep(kKey, tag, page);
    }
    return OfPage(page, tag, isPrivate);
}

std::optional<CHttpAnswer> CModelSite::KeptModels(const CModelsAddress& address,
                                                  const CHttpRequest& request) {
    if (!m_state->stores->IsQuick()) return std::nullopt;
    const CResult<CGroupRecord> group =
        m_state->stores->Run([&](CModelStore& store) { return store.GroupById(address.groupId); });
    if (!group) return Failed(group.Error());
    const std::string tag = TagOf(group.Value());
    const bool isPrivate = m_state->options.isPrivate;
    if (server_answers::HasTag(request, tag)) return server_answers::NotModified(tag, isPrivate);
    const CPageCache::CPage page = m_state->pages.Find(KeyOf(address), tag);
    if (!page) return std::nullopt;
    return OfPage(page, tag, isPrivate);
}

CResult<CHttpAnswer> CModelSite::Models(CModelStore& store, const CModelsAddress& address,
                                        const CHttpRequest& request) {
    // The version first: what is read later may be newer than its tag, which the next request mends.
    const CResult<CGroupRecord> group = store.GroupById(address.groupId);
    if (!group) return group.Error();
    const std::string tag = TagOf(group.Value()), key = KeyOf(address);
    const bool isPrivate = m_state->options.isPrivate;
    if (server_answers::HasTag(request, tag)) return server_answers::NotModified(tag, isPrivate);
    if (const CPageCache::CPage page = m_state->pages.Find(key, tag)) return OfPage(page, tag, isPrivate);
    CResult<std::vector<CModelSummary>> models =
        store.Models(address.groupId, address.after, Beyond(address.limit));
    if (!models) return models.Error();
    const bool isMore = CutTo(models.Value(), address.limit);
    const auto page = std::make_shared<const std::string>(wire_records::WriteModels(models.Value(), isMore));
    m_state->pages.Keep(key, tag, page);
    return OfPage(page, tag, isPrivate);
}

CResult<CHttpAnswer> CModelSite::Search(CModelStore& store, const CSearchAddress& address) const {
    CResult<std::vector<CFoundModel>> found =
        store.Search(address.text, address.groupId, Beyond(address.limit));
    if (!found) return found.Error();
    const bool isMore = CutTo(found.Value(), address.limit);
    return Json(200, wire_records::WriteFound(found.Value(), isMore));
}

CHttpAnswer CModelSite::WebPage(CModelStore& store, const CHttpRequest& request) const {
    CSiteAnswer page = m_state->site.Answer(store, request.Path(), request.Query());
    CHttpAnswer answer{page.status, std::move(page.contentType), std::move(page.headers), {}};
    if (m_state->options.isPrivate && !request.Path().starts_with("/site/")) {
        std::erase_if(answer.headers, [](const auto& header) { return header.first == "Cache-Control"; });
        answer.headers.emplace_back("Cache-Control", "private, no-cache");
    }
    if (const auto* made = std::get_if<CMadePage>(&page.body))
        answer.body = CHttpFile{made->file, 0, made->bytes};
    else
        answer.body = std::make_shared<const std::string>(std::get<std::string>(std::move(page.body)));
    return answer;
}
