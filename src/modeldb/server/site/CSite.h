// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "modeldb/server/work/CWorkshop.h"

class CModelStore;
class CViewPages;

/** An answer to a browser. */
struct CSiteAnswer {
    int status = 200;
    std::string contentType;
    std::vector<std::pair<std::string, std::string>> headers;  ///< without Content-Type and Content-Length
    std::variant<std::string, CMadePage> body;
};

/** The web pages of a server of models: groups, their models with previews, one model, the page in which it turns, a search.
 * They need no scripts (but that one), and work below any path of a proxy. Any thread. */
class CSite {
  public:
    struct COptions {
        std::string basePath;  ///< of the public address, "/models" for https://host/models/; "" for none
        std::string title = "3D models";  ///< of all pages
    };
    /** views must outlive this object. */
    CSite(COptions options, CViewPages& views);
    CSite(const CSite&) = delete;
    CSite& operator=(const CSite&) = delete;
    ~CSite();

    /** True for the path of a GET that Answer answers: "/", "/g/1", "/m/0012abcd", "/m/0012abcd/view", "/search" and
     * "/site/NAME". path is raw, as CHttpRequest::Path gives it, without basePath. */
    [[nodiscard]] static bool Answers(std::string_view path);
    /** Blocks: on a worker's thread with its store. query is raw, too. What is not there is 404, a wrong query 400, a store
     * or a workshop that is busy 503, each as a page. */
    [[nodiscard]] CSiteAnswer Answer(CModelStore& store, std::string_view path, std::string_view query) const;

  private:
    struct CState;
    std::unique_ptr<CState> m_state;
};
