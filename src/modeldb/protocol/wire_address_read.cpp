// SPDX-License-Identifier: MIT
#include <algorithm>
#include <charconv>
#include <initializer_list>
#include <utility>
#include <vector>

#include "base/text/lng.h"
#include "modeldb/bytes/calc_crc.h"
#include "modeldb/protocol/percent_text.h"
#include "modeldb/protocol/wire_address.h"

namespace wire_address {

namespace {

using CAddressResult = CResult<CWireAddress>;

CError Bad(const char* sentence) {
    return {EErrorCode::BadArgument, sentence, {}};
}
CError Unknown() {
    return {EErrorCode::NotFound, lng::Mark("nothing has this address"), {}};
}

/** The parameters of a query, as they were sent. */
class CQuery {
  public:
    enum class EOthers { Refused, Ignored };
    static CResult<CQuery> Of(std::string_view query, std::initializer_list<std::string_view> known,
                              EOthers others = EOthers::Refused) {
        CQuery result;
        while (!query.empty()) {
            const std::string_view pair = query.substr(0, query.find('&'));
            query.remove_prefix(std::min(pair.size() + 1, query.size()));
            const std::size_t equals = std::min(pair.find('='), pair.size());
            const std::string_view name = pair.substr(0, equals);
            if (std::ranges::find(known, name) == known.end()) {
                if (others == EOthers::Ignored) continue;
                return Bad("an unknown parameter");
            }
            if (result.Sent(name)) return Bad("a parameter comes twice");
            result.m_pairs.emplace_back(name, pair.substr(std::min(equals + 1, pair.size())));
        }
        return result;
    }

    [[nodiscard]] const std::string_view* Sent(std::string_view name) const {
        const auto found =
            std::ranges::find(m_pairs, name, &std::pair<std::string_view, std::string_view>::first);
        return found == m_pairs.end() ? nullptr : &found->second;
    }
    /** Empty where it was not sent. */
    [[nodiscard]] CResult<std::string> Decoded(std::string_view name, std::size_t mostBytes) const {
        const std::string_view* const sent = Sent(name);
        if (!sent) return std::string();
        std::optional<std::string> text = percent_text::Read(*sent, mostBytes);
        if (!text) return Bad("a parameter is too long or no valid text");
        return std::move(*text);
    }
    [[nodiscard]] CResult<std::uint64_t> Number(std::string_view name, std::uint64_t most,
                                                std::uint64_t otherwise) const;
    [[nodiscard]] CResult<std::optional<CPagePlace>> Place() const;

  private:
    std::vector<std::pair<std::string_view, std::string_view>> m_pairs;
};

/** A decimal number from 1 to most, without sign and leading zeros. */
std::optional<std::uint64_t> NumberOf(std::string_view text, std::uint64_t most) {
    std::uint64_t number = 0;
    const char* const end = text.data() + text.size();
    const auto read = std::from_chars(text.data(), end, number);
    if (read.ec != std::errc() || read.ptr != end || text.front() == '0' || number > most)
        return std::nullopt;
    return number;
}
std::optional<std::int64_t> GroupOf(std::string_view text) {
    const auto number = NumberOf(text, INT64_MAX);
    return number ? std::optional(static_cast<std::int64_t>(*number)) : std::nullopt;
}

CResult<std::uint64_t> CQuery::Number(std::string_view name, std::uint64_t most,
                                      std::uint64_t otherwise) const {
    const std::string_view* const sent = Sent(name);
    if (!sent) return otherwise;
    const auto number = NumberOf(*sent, most);
    if (!number) return Bad("a parameter is no valid number");
    return *number;
}

CResult<std::optional<CPagePlace>> CQuery::Place() const {
    const std::string_view* const key = Sent("after_key");
    if (!key && !Sent("after_name")) return std::optional<CPagePlace>();
    const std::optional<std::uint32_t> number = key ? model_key::FromText(*key) : std::nullopt;
    CResult<std::string> name = Decoded("after_name", store_limits::kModelName);
    if (!name || name.Value().empty() || !number) return Bad("after_name and after_key name no model");
    return std::optional(CPagePlace{std::move(name).Value(), *number});
}

CAddressResult ReadVersion(std::string_view sent) {
    const auto query = CQuery::Of(sent, {"client"}, CQuery::EOthers::Ignored);
    if (!query) return query.Error();
    CResult<std::string> client = query.Value().Decoded("client", wire_limits::kVersionText);
    if (!client) return client.Error();
    return CWireAddress(CVersionAddress{std::move(client).Value()});
}

CAddressResult ReadGroup(std::string_view sent) {
    const auto query = CQuery::Of(sent, {"name"});
    if (!query) return query.Error();
    CResult<std::string> name = query.Value().Decoded("name", store_limits::kGroupName);
    if (!name) return name.Error();
    if (name.Value().empty()) return Bad("the parameter name is missing");
    return CWireAddress(CGroupAddress{std::move(name).Value()});
}

CAddressResult ReadModels(std::int64_t group, std::string_view sent) {
    const auto query = CQuery::Of(sent, {"limit", "after_name", "after_key"});
    if (!query) return query.Error();
    const auto limit = query.Value().Number("limit", store_limits::kPageModels, wire_limits::kPageModels);
    if (!limit) return limit.Error();
    auto place = query.Value().Place();
    if (!place) return place.Error();
    return CWireAddress(
        CModelsAddress{group, std::move(place).Value(), static_cast<std::size_t>(limit.Value())});
}

CAddressResult ReadSearch(std::string_view sent) {
    const auto query = CQuery::Of(sent, {"text", "group", "limit"});
    if (!query) return query.Error();
    CResult<std::string> text = query.Value().Decoded("text", wire_limits::kSearchText);
    if (!text) return text.Error();
    if (text.Value().empty()) return Bad("the parameter text is missing");
    const auto group = query.Value().Number("group", INT64_MAX, 0);
    if (!group) return group.Error();
    const auto limit = query.Value().Number("limit", wire_limits::kFound, wire_limits::kFound);
    if (!limit) return limit.Error();
    return CWireAddress(CSearchAddress{std::move(text).Value(), static_cast<std::int64_t>(group.Value()),
                                       static_cast<std::size_t>(limit.Value())});
}

CAddressResult ReadGroupPage(std::int64_t group, std::string_view sent) {
    const auto query = CQuery::Of(sent, {"after_name", "after_key"}, CQuery::EOthers::Ignored);
    if (!query) return query.Error();
    auto place = query.Value().Place();
    if (!place) return place.Error();
    return CWireAddress(CGroupPage{group, std::move(place).Value()});
}

CAddressResult ReadSearchPage(std::string_view sent) {
    const auto query = CQuery::Of(sent, {"text"}, CQuery::EOthers::Ignored);
    if (!query) return query.Error();
    CResult<std::string> text = query.Value().Decoded("text", wire_limits::kSearchText);
    if (!text) return text.Error();
    return CWireAddress(CSearchPage{std::move(text).Value()});
}

/** For what has no parameters. */
CAddressResult Alone(std::string_view query, CWireAddress address) {
    if (!query.empty()) return Bad("an unknown parameter");
    return address;
}

std::optional<CAddressResult> ReadBlob(std::string_view name, std::string_view query) {
    constexpr std::string_view kStored = ".zst";
    const EBlobForm form = name.ends_with(kStored) ? EBlobForm::Stored : EBlobForm::Plain;
    if (form == EBlobForm::Stored) name.remove_suffix(kStored.size());
    const auto hash = CBlobHash::FromHex(name);
    // Bytes have one address, or caches would keep them twice.
    if (!hash || hash->ToHex() != name) return std::nullopt;
    return Alone(query, CBlobAddress{*hash, form});
}

std::optional<CAddressResult> ReadModelPage(std::string_view name, std::string_view) {
    constexpr std::string_view kView = "/view";
    const bool isView = name.ends_with(kView);
    if (isView) name.remove_suffix(kView.size());
    const auto key = model_key::FromText(name);
    if (!key) return std::nullopt;
    return isView ? CWireAddress(CModelView{*key}) : CWireAddress(CModelPage{*key});
}

std::optional<CAddressResult> ReadSiteFile(std::string_view name, std::string_view) {
    constexpr std::string_view kLetters = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-_.";
    constexpr std::size_t kMostBytes = 100;
    if (name.empty() || name.size() > kMostBytes || name.find_first_not_of(kLetters) != name.npos ||
        name.front() == '.' || name.back() == '.' || name.find("..") != name.npos) {
        return std::nullopt;
    }
    return CWireAddress(CSiteFile{std::string(name)});
}

/** Paths that go on behind a fixed beginning. Nothing: no such address. */
struct CBeginning {
    std::string_view path;
    std::optional<CAddressResult> (*read)(std::string_view rest, std::string_view query);
};
constexpr CBeginning kBeginnings[] = {
    {"/api/groups/",
     [](std::string_view rest, std::string_view query) -> std::optional<CAddressResult> {
         constexpr std::string_view kModels = "/models";
         if (!rest.ends_with(kModels)) return std::nullopt;
         const auto group = GroupOf(rest.substr(0, rest.size() - kModels.size()));
         return group ? std::optional(ReadModels(*group, query)) : std::nullopt;
     }},
    {"/api/models/",
     [](std::string_view rest, std::string_view query) -> std::optional<CAddressResult> {
         const auto key = model_key::FromText(rest);
         return key ? std::optional(Alone(query, CModelAddress{*key})) : std::nullopt;
     }},
    {"/b/", ReadBlob},
    {"/g/",
     [](std::string_view rest, std::string_view query) -> std::optional<CAddressResult> {
         const auto group = GroupOf(rest);
         return group ? std::optional(ReadGroupPage(*group, query)) : std::nullopt;
     }},
    {"/m/", ReadModelPage},
    {"/site/", ReadSiteFile},
};

/** Whole paths. */
struct CPath {
    std::string_view path;
    CAddressResult (*read)(std::string_view query);
};
constexpr CPath kPaths[] = {
    {"/api/version", ReadVersion},
    {"/api/groups", [](std::string_view query) { return Alone(query, CGroupsAddress{}); }},
    {"/api/group", ReadGroup},
    {"/api/models", [](std::string_view query) { return Alone(query, CUploadAddress{}); }},
    {"/api/search", ReadSearch},
    {"/health", [](std::string_view query) { return Alone(query, CHealthAddress{}); }},
    {"/metrics", [](std::string_view query) { return Alone(query, CMetricsAddress{}); }},
    {"/", [](std::string_view) { return CAddressResult(CHomePage{}); }},
    {"/search", ReadSearchPage},
};

}  // namespace

CResult<CWireAddress> Read(std::string_view target) {
    const bool isClean = std::ranges::all_of(target, [](char c) { return c > ' ' && c < 0x7f && c != '#'; });
    if (!target.starts_with('/') || target.size() > wire_limits::kTarget || !isClean)
        return Bad("the address is malformed");
    const std::string_view path = target.substr(0, target.find('?'));
    const std::string_view query = target.substr(std::min(path.size() + 1, target.size()));
    for (const CPath& known : kPaths)
        if (known.path == path) return known.read(query);
    for (const CBeginning& known : kBeginnings) {
        if (!path.starts_with(known.path)) continue;
        auto read = known.read(path.substr(known.path.size()), query);
        return read ? *std::move(read) : CAddressResult(Unknown());
    }
    return Unknown();
}

}  // namespace wire_address
