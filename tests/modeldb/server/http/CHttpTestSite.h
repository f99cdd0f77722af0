// SPDX-License-Identifier: MIT
#pragma once

#include <fcntl.h>
#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <mutex>
#include <stdexcept>
#include <string>
#include <vector>

#include "modeldb/server/http/CHttpServer.h"

/** Answers by the path: see Answer. */
class CHttpTestSite final : public CHttpSite {
  public:
    std::atomic<int> calls{0};

    void Answer(CHttpRequest request, CHttpReply reply) override {
        ++calls;
        const std::string_view path = request.Path();
        if (path == "/throw") throw std::runtime_error("thrown by a test");
        if (path == "/drop") return;
        if (path == "/hold") return Hold(std::move(reply));
        if (path == "/split") return reply.Send({200, "text/plain", {{"X-A", "1\r\nX-B: 2"}}, {}});
        if (path == "/peer") return reply.Send(CHttpAnswer::OfText(200, "text/plain", request.peer));
        if (path == "/big")
            return reply.Send(CHttpAnswer::OfText(200, "text/plain", std::string(16 << 20, 'b')));
        if (path == "/file") return reply.Send(OfFile(6));
        if (path == "/short_file") return reply.Send(OfFile(60));
        if (path == "/none") return reply.Send({204, {}, {}, {}});
        reply.Send(
            CHttpAnswer::OfText(200, "text/plain", std::string(path) + "?" + std::string(request.Query())));
    }
    std::optional<CHttpAnswer> RefuseBody(const CHttpRequest& request) override {
        if (request.Path() == "/refused") return CHttpAnswer::OfText(401, "text/plain", "no");
        return std::nullopt;
    }
    void AnswerBody(CHttpRequest request, CHttpBody body, CHttpReply reply) override {
        ++calls;
        if (request.Path() == "/hold") {
            const std::lock_guard lock(m_bodyLock);
            m_bodies.push_back(std::move(body));
            return Hold(std::move(reply));
        }
        std::string text(body.Bytes(), '\0');
        if (!text.empty() && ::read(body.File().Get(), text.data(), text.size()) < 0) text = "<unreadable>";
        reply.Send(
            CHttpAnswer::OfText(201, "text/plain", std::to_string(text.size()) + ":" + text.substr(0, 20)));
    }

    /** The replies of /hold so far. */
    std::vector<CHttpReply> TakeHeld() {
        const std::scoped_lock lock(m_lock, m_bodyLock);
        m_bodies.clear();
        return std::exchange(m_held, {});
    }
    std::size_t HeldCount() {
        const std::lock_guard lock(m_lock);
        return m_held.size();
    }

  private:
    void Hold(CHttpReply reply) {
        const std::lock_guard lock(m_lock);
        m_held.push_back(std::move(reply));
    }
    // "cdefgh" of a file with "abcdefghij".
    static CHttpAnswer OfFile(std::uint64_t length) {
        const int fd = ::open(::testing::TempDir().c_str(), O_TMPFILE | O_RDWR, 0600);
        EXPECT_EQ(::write(fd, "abcdefghij", 10), 10);
        CHttpAnswer answer{200, "text/plain", {}, {}};
        answer.body = CHttpFile{std::make_shared<const CFileDescriptor>(fd), 2, length};
        return answer;
    }

    std::mutex m_lock, m_bodyLock;
    std::vector<CHttpReply> m_held;
    std::vector<CHttpBody> m_bodies;
};

/** A server for one test. */
class CHttpTestServer {
  public:
    CHttpTestSite site;

    explicit CHttpTestServer(CHttpServerOptions options = {}) {
        auto started = CHttpServer::Start(std::move(options), site);
        EXPECT_TRUE(started) << (started ? "" : started.Error().Text());
        server = std::move(started).Value();
    }
    ~CHttpTestServer() {
        server->Stop({});
        for (CHttpReply& reply : site.TakeHeld()) reply.Send({});
    }

    std::unique_ptr<CHttpServer> server;
};

/** Waits for what another thread does; false after ten seconds. */
template <class Condition>
[[nodiscard]] bool WaitFor(Condition condition) {
    for (int i = 0; i < 1000; ++i) {
        if (condition()) return true;
        ::usleep(10'000);
    }
    return false;
}
