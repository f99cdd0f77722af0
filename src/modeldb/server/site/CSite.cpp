// SPDX-License-Identifier: MIT
#include "modeldb/server/site/CSite.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "export/webgl/C3ds2WebGL.h"
#include "modeldb/protocol/wire_address.h"
#include "modeldb/server/site/CFrontPreviews.h"
#include "modeldb/server/site/site_assets.h"
#include "modeldb/server/site/site_pages.h"
#include "modeldb/server/work/CViewPages.h"
#include "modeldb/store/CModelStore.h"

namespace {

using CHeaders = std::vector<std::pair<std::string, std::string>>;
using CAnswerResult = CResult<CSiteAnswer>;

constexpr std::size_t kPageModels = 96, kFoundModels = 192;
constexpr std::size_t kGroupsWithPreviews = 200;  ///< the others are names alone
constexpr std::string_view kHtml = "text/html; charset=utf-8";

/** Nothing of another place is loaded, and no script runs. inFrame: a page of ours may hold it. */
std::string PagePolicy(bool inFrame) {
    return "default-src 'none'; style-src 'self'; img-src 'self'; frame-src 'self'; form-action 'self'; "
           "base-uri "
           "'none'; frame-ancestors " +
           std::string(inFrame ? "'self'" : "'none'");
}
constexpr const char* kFilePolicy = "default-src 'none'; style-src 'unsafe-inline'; sandbox";

CHeaders Headers(std::string policy, const char* caching) {
    return {{"Content-Security-Policy", std::move(policy)},
            {"X-Content-Type-Options", "nosniff"},
            {"Referrer-Policy", "no-referrer"},
            {"Cache-Control", caching}};
}

/** What a stranger's model has become is held in an origin of its own, where the viewer's script alone runs, whatever the
 * page holds. */
std::string ViewPolicy() {
    return "sandbox allow-scripts; " + C3ds2WebGL::CombinedPagePolicy(true) + "; frame-ancestors 'self'";
}

CSiteAnswer Html(std::string html, int status = 200) {
    return {status, std::string(kHtml), Headers(PagePolicy(false), "no-cache"), std::move(html)};
}

struct CMessage {
    int status;
    const char* heading;
    const char* text;
};
CMessage MessageFor(EErrorCode code) {
    switch (code) {
        case EErrorCode::NotFound:
            return {404, "Not found", "There is nothing at this address. It may have been removed."};
        case EErrorCode::BadArgument:
            return {400, "This address is wrong", "The address holds something that is not understood."};
        case EErrorCode::BadFormat:
        case EErrorCode::TooLarge:
            return {422, "This model cannot be shown here", "It can still be downloaded."};
        case EErrorCode::Busy:
        case EErrorCode::Cancelled:
            return {503, "Just a moment", "Too much is going on; this page asks again by itself."};
        default:
            return {500, "Something went wrong", "The server cannot answer this now."};
    }
}

}  // namespace

struct CSite::CState {
    CState(COptions wanted, CViewPages& pages)
        : frame{std::move(wanted.basePath), std::move(wanted.title)}, views(pages) {}

    /** Failures that are told in the place of a view. */
    [[nodiscard]] CSiteAnswer Failed(const CError& error, bool inFrame) const {
        const CMessage message = MessageFor(error.code);
        const bool passes = message.status == 503;
        CSiteAnswer answer =
            Html(site_pages::Message(frame, message.heading, message.text, passes), message.status);
        answer.headers = Headers(PagePolicy(inFrame), "no-store");
        if (passes) answer.headers.emplace_back("Retry-After", "4");
        return answer;
    }

    /** The tiles of models; those that go meanwhile have no preview. */
    template <class TModels>
    static CResult<std::vector<CModelTile>> Tiles(CModelStore& store, const TModels& models) {
        std::vector<CModelTile> tiles;
        for (const auto& model : models) {
            const auto preview = store.PreviewOf(model.key);
            if (!preview && preview.Error().code != EErrorCode::NotFound) return preview.Error();
            CModelTile& tile = tiles.emplace_back(CModelTile{model.name, model.key, std::nullopt, {}});
            if (preview) tile.preview = preview.Value();
            if constexpr (requires { model.group; }) tile.group = model.group;
        }
        return tiles;
    }

    // --- one for each kind of address -----------------------------------------------------------------
    CAnswerResult Answer(CModelStore& store, const CHomePage&) {
        auto groups = store.Groups();
        if (!groups) return groups.Error();
        std::vector<CGroupRecord>& all = groups.Value();
        std::erase_if(all, [](const CGroupRecord& group) { return group.modelCount == 0; });
        const auto shown = static_cast<std::ptrdiff_t>(std::min(all.size(), kGroupsWithPreviews));
        std::vector<CGroupTile> tiles;
        for (auto group = all.begin(); group != all.begin() + shown; ++group) {
            auto previews = front.Of(store, *group);
            if (!previews) return previews.Error();
            tiles.push_back({*group, std::move(previews).Value()});
        }
        all.erase(all.begin(), all.begin() + shown);
        return Html(site_pages::Front(frame, tiles, all));
    }

    CAnswerResult Answer(CModelStore& store, const CGroupPage& page) {
        const CResult<CGroupRecord> group = store.GroupById(page.groupId);
        if (!group) return group.Error();
        auto models = store.Models(page.groupId, page.after, kPageModels + 1);
        if (!models) return models.Error();
        site_pages::CGroupContent content{group.Value(), page.after, {}, models.Value().size() > kPageModels};
        if (content.isMore) models.Value().pop_back();
        auto tiles = Tiles(store, models.Value());
        if (!tiles) return tiles.Error();
        content.models = std::move(tiles).Value();
        return Html(site_pages::Group(frame, content));
    }

    CAnswerResult Answer(CModelStore& store, const CModelPage& page) {
        const CResult<CModelRecord> model = store.Model(page.key);
        if (!model) return model.Error();
        const CResult<CGroupRecord> group = store.Group(model.Value().group);
        if (!group) return group.Error();
        return Html(site_pages::Model(frame, model.Value(), group.Value().id));
    }

    CAnswerResult Answer(CModelStore& store, const CModelView& view) {
        const CResult<CModelRecord> model = store.Model(view.key);
        if (!model) return Failed(model.Error(), true);
        CResult<CMadePage> page = views.Get(store, model.Value());
        if (!page) return Failed(page.Error(), true);
        return CSiteAnswer{200, std::string(kHtml), Headers(ViewPolicy(), "max-age=3600"),
                           std::move(page).Value()};
    }

    CAnswerResult Answer(CModelStore& store, const CSearchPage& page) {
        site_pages::CFoundContent content{page.text, {}, false};
        if (page.text.empty()) return Html(site_pages::Found(frame, content));
        auto models = store.Search(page.text, 0, kFoundModels + 1);
        if (!models) return models.Error();
        content.isMore = models.Value().size() > kFoundModels;
        if (content.isMore) models.Value().pop_back();
        auto tiles = Tiles(store, models.Value());
        if (!tiles) return tiles.Error();
        content.models = std::move(tiles).Value();
        return Html(site_pages::Found(frame, content));
    }

    CAnswerResult Answer(CModelStore&, const CSiteFile& file) {
        constexpr const char* kForever = "public, max-age=31536000, immutable";
        if (file.name == site_pages::StyleName())
            return CSiteAnswer{200, "text/css; charset=utf-8", Headers(kFilePolicy, kForever),
                               std::string(site_assets::Style())};
        if (file.name == site_pages::IconName())
            return CSiteAnswer{200, "image/svg+xml", Headers(kFilePolicy, kForever),
                               std::string(site_assets::Icon())};
        return CError{EErrorCode::NotFound, {}, {}};
    }

    template <class TOther>
    CAnswerResult Answer(CModelStore&, const TOther&) {
        return CError{EErrorCode::NotFound, {}, {}};
    }

    const CPageFrame frame;
    CViewPages& views;
    CFrontPreviews front;
};

CSite::CSite(COptions options, CViewPages& views)
    : m_state(std::make_unique<CState>(std::move(options), views)) {}

CSite::~CSite() = default;

bool CSite::Answers(std::string_view path) {
    const auto address = wire_address::Read(path);
    if (!address) return false;
    return std::visit(
        []<class T>(const T&) {
            return std::is_same_v<T, CHomePage> || std::is_same_v<T, CGroupPage> ||
                   std::is_same_v<T, CModelPage> || std::is_same_v<T, CModelView> ||
                   std::is_same_v<T, CSearchPage> || std::is_same_v<T, CSiteFile>;
        },
        address.Value());
}

CSiteAnswer CSite::Answer(CModelStore& store, std::string_view path, std::string_view query) const {
    const std::string target = std::string(path) + (query.empty() ? "" : "?") + std::string(query);
    const auto address = wire_address::Read(target);
    if (!address) return m_state->Failed(address.Error(), false);
    const CAnswerResult answer =
        std::visit([&](const auto& page) { return m_state->Answer(store, page); }, address.Value());
    return answer ? answer.Value() : m_state->Failed(answer.Error(), false);
}
