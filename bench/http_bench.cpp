// SPDX-License-Identifier: MIT
// Serves one page from memory and one file, for scripts/bench/http_beside_nginx. Prints its port and ends with its input.
#include <fcntl.h>

#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <string>

#include "modeldb/server/http/CHttpServer.h"

namespace {

class CBenchSite final : public CHttpSite {
  public:
    CBenchSite(std::size_t pageBytes, const char* path)
        : m_page(std::make_shared<const std::string>(pageBytes, 'x')),
          m_file(std::make_shared<const CFileDescriptor>(::open(path, O_RDONLY | O_CLOEXEC))),
          m_fileBytes(static_cast<std::uint64_t>(::lseek(m_file->Get(), 0, SEEK_END))) {}

    void Answer(CHttpRequest request, CHttpReply reply) override {
        CHttpAnswer answer{200, "application/octet-stream", {}, {}};
        if (request.Path() == "/file") {
            answer.body = CHttpFile{m_file, 0, m_fileBytes};
        } else {
            answer.body = m_page;
        }
        reply.Send(std::move(answer));
    }
    std::optional<CHttpAnswer> RefuseBody(const CHttpRequest&) override { return std::nullopt; }
    void AnswerBody(CHttpRequest request, CHttpBody, CHttpReply reply) override {
        Answer(std::move(request), std::move(reply));
    }

  private:
    std::shared_ptr<const std::string> m_page;
    std::shared_ptr<const CFileDescriptor> m_file;
    std::uint64_t m_fileBytes;
};

}  // namespace

int main(int argc, char** argv) {
    if (argc != 4) {
        std::cerr << "usage: orbivue_http_bench THREADS PAGE_BYTES FILE\n";
        return 2;
    }
    CBenchSite site(std::strtoull(argv[2], nullptr, 10), argv[3]);
    CHttpServerOptions options;
    options.threads = std::atoi(argv[1]);
    auto server = CHttpServer::Start(options, site);
    if (!server) {
        std::cerr << server.Error().Text() << '\n';
        return 1;
    }
    std::cout << server.Value()->Port() << std::endl;
    std::string ignored;
    while (std::getline(std::cin, ignored)) {
    }
    server.Value()->Stop(std::chrono::seconds(1));
    return 0;
}
