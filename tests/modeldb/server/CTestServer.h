// SPDX-License-Identifier: MIT
#pragma once

#include <fcntl.h>

#include <future>
#include <nlohmann/json.hpp>
#include <utility>

#include "../store/CTestStore.h"
#include "modeldb/protocol/CUploadBodySource.h"
#include "modeldb/server/CModelSite.h"

/** What a client would get. */
struct CGot {
    int status = 0;
    std::string body;
    std::vector<std::pair<std::string, std::string>> headers;

    [[nodiscard]] std::string Header(std::string_view name) const {
        for (const auto& [key, value] : headers)
            if (key == name) return value;
        return "";
    }
    [[nodiscard]] nlohmann::json Json() const { return nlohmann::json::parse(body, nullptr, false); }
    /** "" where it is no error. */
    [[nodiscard]] std::string Error() const {
        return status < 400 ? "" : Json()["error"].value("message", "no message");
    }
};

/** A server's answers to requests, without a network. */
class CTestServer {
  public:
    using CHeaders = std::vector<std::pair<std::string, std::string>>;

    explicit CTestServer(const CTestPlace& place, const std::function<void(CServerOptions&)>& change = {}) {
        CServerOptions options;
        options.store = place.Address();
        options.cacheFolder = place.folder / "cache";
        options.drawsPreviews = false;
        options.workerProgram = ORBIVUE_MODELDB_PROGRAM;
        if (change) change(options);
        auto made = CModelSite::Make(std::move(options));
        EXPECT_TRUE(made) << (made ? "" : made.Error().Text());
        m_site = std::move(made).Value();
    }

    [[nodiscard]] CGot Get(std::string target, const CHeaders& headers = {},
                           EHttpMethod method = EHttpMethod::Get) {
        auto [taker, answer] = Waiting();
        m_site->Answer(RequestOf(method, std::move(target), headers), CHttpReply(taker, 1));
        return Take(answer);
    }
    [[nodiscard]] CGot Upload(std::string_view body, const CHeaders& headers = {},
                              std::string_view peer = "127.0.0.1") {
        CHeaders all{{"Content-Type", "application/vnd.orbivue.model"}};
        all.insert(all.end(), headers.begin(), headers.end());
        CHttpRequest request = RequestOf(EHttpMethod::Post, "/api/models", all);
        request.peer = peer;
        request.bodyBytes = body.size();
        auto [taker, answer] = Waiting();
        if (auto refusal = m_site->RefuseBody(request))
            CHttpReply(taker, 1).Send(*std::move(refusal));
        else
            m_site->AnswerBody(request, Spooled(body), CHttpReply(taker, 1));
        return Take(answer);
    }
    /** Asks without waiting. */
    [[nodiscard]] std::future<CHttpAnswer> Begin(std::string target) {
        auto [taker, answer] = Waiting();
        m_site->Answer(RequestOf(EHttpMethod::Get, std::move(target), {}), CHttpReply(taker, 1));
        return std::move(answer);
    }
    [[nodiscard]] static CGot Take(std::future<CHttpAnswer>& waiting) {
        if (waiting.wait_for(std::chrono::seconds(30)) != std::future_status::ready)
            return {0, "no answer", {}};
        CHttpAnswer answer = waiting.get();
        CGot got{answer.status, {}, std::move(answer.headers)};
        if (const auto* text = std::get_if<std::shared_ptr<const std::string>>(&answer.body))
            got.body = **text;
        if (const auto* file = std::get_if<CHttpFile>(&answer.body)) {
            got.body.resize(file->length);
            EXPECT_EQ(
                ::pread(file->file->Get(), got.body.data(), file->length, static_cast<off_t>(file->offset)),
                static_cast<ssize_t>(file->length));
        }
        return got;
    }
    /** A line of /metrics; -1 where there is none. */
    [[nodiscard]] long Metric(const std::string& name) {
        const std::string text = "\n" + Get("/metrics").body;
        const std::string line = "\norbivue_modeldb_" + name + " ";
        const std::size_t at = text.find(line);
        return at == text.npos ? -1 : std::stol(text.substr(at + line.size()));
    }

  private:
    struct CTaker final : CHttpAnswerTaker {
        void TakeAnswer(std::uint64_t, CHttpAnswer answer) noexcept override {
            promise.set_value(std::move(answer));
        }
        std::promise<CHttpAnswer> promise;
    };
    [[nodiscard]] static std::pair<std::shared_ptr<CTaker>, std::future<CHttpAnswer>> Waiting() {
        auto taker = std::make_shared<CTaker>();
        auto answer = taker->promise.get_future();
        return {taker, std::move(answer)};
    }
    [[nodiscard]] static CHttpRequest RequestOf(EHttpMethod method, std::string target,
                                                const CHeaders& headers) {
        CHttpRequest request;
        request.method = method;
        request.target = std::move(target);
        request.peer = "127.0.0.1";
        for (const auto& [name, value] : headers) request.AddHeader(name, value);
        return request;
    }
    [[nodiscard]] static CHttpBody Spooled(std::string_view text) {
        CFileDescriptor file(::open("/tmp", O_TMPFILE | O_RDWR | O_CLOEXEC, 0600));
        EXPECT_EQ(::pwrite(file.Get(), text.data(), text.size(), 0), static_cast<ssize_t>(text.size()));
        return {std::move(file), text.size()};
    }

    std::unique_ptr<CModelSite> m_site;
};

/** The body of an upload of a file with a texture, where one is given. */
inline std::string BodyOf(std::string name, std::string group, std::string_view file,
                          std::string_view texture = {}) {
    std::vector<CUploadBodySource::CPicture> textures;
    if (!texture.empty()) textures.push_back({"t.png", BytesOf(texture)});
    auto source =
        CUploadBodySource::Make({std::move(name), std::move(group), "", "", {}, {}}, BytesOf(file), textures);
    EXPECT_TRUE(source);
    std::string body(source.Value().Size(), '\0');
    std::size_t size = 0;
    while (size < body.size())
        size += source.Value().Give(std::as_writable_bytes(std::span(body).subspan(size))).Value();
    return body;
}
