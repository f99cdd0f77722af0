// SPDX-License-Identifier: MIT
#include "modeldb/server/site/site_pages.h"

#include "base/text/ascii_text.h"
#include "modeldb/bytes/calc_crc.h"
#include "modeldb/protocol/wire_address.h"
#include "modeldb/server/site/CFields.h"
#include "modeldb/server/site/site_assets.h"

namespace {

constexpr std::string_view kPage = R"(<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8" />
<meta name="viewport" content="width=device-width, initial-scale=1" />
{{reload}}<title>{{heading}}</title>
<link rel="stylesheet" href="{{style}}" />
<link rel="icon" href="{{icon}}" type="image/svg+xml" />
</head>
<body>
<a class="skip" href="#content">To the content</a>
<header>
<a class="home" href="{{home}}"><img src="{{icon}}" width="32" height="32" alt="" />{{site}}</a>
<form role="search" action="{{search}}"><input type="search" name="text" value="{{text}}" maxlength="200" aria-label="Search all models" placeholder="Search all models" /><button>Search</button></form>
</header>
<main id="content">
{{content}}</main>
<footer>Models in the 3D Studio format, kept by Orbivue</footer>
</body>
</html>
)";

constexpr std::string_view kTile =
    R"(<li><a href="{{address}}">{{picture}}<span class="label"><bdi class="name">{{name}}</bdi>{{group}}</span></a></li>
)";
constexpr std::string_view kTileGroup = R"(<span class="quiet"><bdi>{{name}}</bdi></span>)";
constexpr std::string_view kPicture =
    R"(<img src="{{address}}" width="256" height="256" loading="lazy" decoding="async" alt="" />)";
constexpr std::string_view kNoPicture = R"(<span class="none"></span>)";

constexpr std::string_view kFront =
    R"(<div class="head"><h1>Groups</h1><p class="quiet">{{counts}}</p></div>
{{groups}}{{others}})";
constexpr std::string_view kGroupTile =
    R"(<li><a href="{{address}}"><span class="strip">{{pictures}}</span><span class="label"><bdi class="name">{{name}}</bdi><span class="quiet">{{count}}</span></span></a></li>
)";
constexpr std::string_view kGroupLine =
    R"(<li><a href="{{address}}"><bdi>{{name}}</bdi></a> <span class="quiet">{{count}}</span></li>
)";

constexpr std::string_view kGroup = R"(<p class="crumbs"><a href="{{home}}">All groups</a></p>
<div class="head"><div><h1><bdi>{{name}}</bdi></h1><p class="quiet">{{count}}{{from}}</p></div>
<form action="{{address}}"><input name="after_name" maxlength="100" required="" aria-label="Begin at a name" placeholder="Begin at a name" /><input type="hidden" name="after_key" value="00000000" /><button>Go</button></form></div>
{{models}}{{pages}})";

constexpr std::string_view kModel =
    R"(<p class="crumbs"><a href="{{home}}">All groups</a> / <a href="{{groupAddress}}"><bdi>{{group}}</bdi></a></p>
<div class="head"><h1><bdi>{{name}}</bdi></h1></div>
<div class="model">
<div><div class="stage">{{picture}}<iframe src="{{view}}" title="The model in 3D: drag to turn it" sandbox="allow-scripts" loading="lazy"></iframe></div>
<p class="quiet">Drag to turn, roll the wheel to zoom. <a href="{{view}}">The view alone</a></p></div>
<div><a class="button main" href="{{file}}" download="{{fileName}}">Download the model</a>
<dl><dt>Size</dt><dd>{{size}}</dd><dt>Group</dt><dd><bdi>{{group}}</bdi></dd><dt>Key</dt><dd>{{key}}</dd><dt>Added</dt><dd><time datetime="{{day}}">{{day}}</time></dd></dl>
{{note}}{{textures}}</div>
</div>
)";
constexpr std::string_view kNote = R"(<h2>Note</h2>
<p class="note"><bdi>{{note}}</bdi></p>
)";
constexpr std::string_view kTextures = R"(<h2>Textures</h2>
<details{{open}}><summary>{{count}}, {{size}}</summary>
<table>{{rows}}</table></details>
)";
constexpr std::string_view kTexture =
    R"(<tr><td><a href="{{address}}" download="{{name}}"><bdi>{{name}}</bdi></a></td><td>{{size}}</td></tr>
)";

constexpr std::size_t kFewTextures = 8;

std::string NameFor(std::string_view stem, std::string_view content, std::string_view ending) {
    const std::uint32_t sum = CalcCrc(std::as_bytes(std::span(content)));
    return std::string(stem) + "-" + model_key::ToText(sum) + std::string(ending);
}

std::string Page(const CPageFrame& frame, std::string_view heading, std::string content,
                 std::string_view searched = {}, std::string reload = {}) {
    CFields fields(frame.basePath);
    fields.Put("heading", heading).Put("site", frame.title).Put("text", searched);
    fields.Address("home", CHomePage{}).Address("search", CSearchPage{});
    fields.Address("style", CSiteFile{site_pages::StyleName()});
    fields.Address("icon", CSiteFile{site_pages::IconName()});
    return fields.Markup("content", std::move(content)).Markup("reload", std::move(reload)).Fill(kPage);
}

std::string Picture(const CPageFrame& frame, const std::optional<CBlobHash>& preview) {
    if (!preview) return std::string(kNoPicture);
    return CFields(frame.basePath)
        .Address("address", CBlobAddress{*preview, EBlobForm::Plain})
        .Fill(kPicture);
}

/** A name of a file to be saved, from a stranger's text. ending: in lower case; stands once, also where the text has it. */
std::string FileName(std::string_view name, std::string_view ending) {
    std::string safe(name);
    for (char& c : safe)
        if (std::string_view(R"(/\:*?"<>|)").find(c) != std::string_view::npos) c = '_';
    if (safe.starts_with('.')) safe.front() = '_';
    return ascii_text::Lowered(safe).ends_with(ending) ? safe : safe.append(ending);
}

std::string Grid(const CPageFrame& frame, const std::vector<CModelTile>& models) {
    if (models.empty()) return {};
    std::string tiles;
    for (const CModelTile& model : models) {
        const std::string group = model.group.empty()
                                      ? std::string()
                                      : CFields(frame.basePath).Put("name", model.group).Fill(kTileGroup);
        CFields fields(frame.basePath);
        fields.Address("address", CModelPage{model.key}).Put("name", model.name);
        tiles += fields.Markup("picture", Picture(frame, model.preview)).Markup("group", group).Fill(kTile);
    }
    return "<ul class=\"grid\">\n" + tiles + "</ul>\n";
}

std::string GroupEntry(const CPageFrame& frame, const CGroupRecord& group, std::string pictures,
                       std::string_view form) {
    CFields fields(frame.basePath);
    fields.Address("address", CGroupPage{group.id, std::nullopt}).Put("name", group.name);
    fields.Put("count", CountText(group.modelCount, "model"));
    return fields.Markup("pictures", std::move(pictures)).Fill(form);
}

std::string Textures(const CPageFrame& frame, const std::vector<CStoredTexture>& textures) {
    if (textures.empty()) return {};
    std::string rows;
    std::uint64_t bytes = 0;
    for (const CStoredTexture& texture : textures) {
        CFields row(frame.basePath);
        row.Address("address", CBlobAddress{texture.blob.hash, EBlobForm::Plain});
        rows += row.Put("name", FileName(texture.name, {})).Size("size", texture.blob.size).Fill(kTexture);
        bytes += texture.blob.size;
    }
    CFields fields(frame.basePath);
    fields.Put("count", CountText(textures.size(), "file")).Size("size", bytes);
    fields.Markup("open", textures.size() <= kFewTextures ? " open=\"\"" : "");
    return fields.Markup("rows", std::move(rows)).Fill(kTextures);
}

std::string ModelNote(const CPageFrame& frame, const CModelRecord& model) {
    return model.note.empty() ? std::string() : CFields(frame.basePath).Lines("note", model.note).Fill(kNote);
}

}  // namespace

std::string site_pages::StyleName() {
    return NameFor("style", site_assets::Style(), ".css");
}

std::string site_pages::IconName() {
    return NameFor("icon", site_assets::Icon(), ".svg");
}

std::string site_pages::Front(const CPageFrame& frame, const std::vector<CGroupTile>& groups,
                              const std::vector<CGroupRecord>& others) {
    std::string tiles, lines;
    std::uint64_t models = 0;
    for (const CGroupTile& tile : groups) {
        std::string pictures;
        for (const auto& preview : tile.previews) pictures += Picture(frame, preview);
        tiles += GroupEntry(frame, tile.group, std::move(pictures), kGroupTile);
        models += tile.group.modelCount;
    }
    for (const CGroupRecord& group : others) {
        lines += GroupEntry(frame, group, {}, kGroupLine);
        models += group.modelCount;
    }
    CFields fields(frame.basePath);
    fields.Put("counts", groups.empty() ? "There are no models yet."
                                        : CountText(models, "model") + " in " +
                                              CountText(groups.size() + others.size(), "group"));
    fields.Markup("groups", tiles.empty() ? tiles : "<ul class=\"groups\">\n" + tiles + "</ul>\n");
    fields.Markup("others",
                  lines.empty() ? lines : "<h2>More groups</h2>\n<ul class=\"plain\">\n" + lines + "</ul>\n");
    return Page(frame, frame.title, fields.Fill(kFront));
}

std::string site_pages::Group(const CPageFrame& frame, const CGroupContent& content) {
    const CGroupPage first{content.group.id, std::nullopt};
    std::string pages;
    if (content.after)
        pages += CFields(frame.basePath)
                     .Address("address", first)
                     .Fill("<a class=\"button\" href=\"{{address}}\">First page</a>");
    if (content.isMore && !content.models.empty()) {
        const CModelTile& last = content.models.back();
        pages += CFields(frame.basePath)
                     .Address("address", CGroupPage{content.group.id, CPagePlace{last.name, last.key}})
                     .Fill("<a class=\"button\" rel=\"next\" href=\"{{address}}\">Next page</a>");
    }
    CFields fields(frame.basePath);
    fields.Address("home", CHomePage{}).Address("address", first).Put("name", content.group.name);
    fields.Put("count", CountText(content.group.modelCount, "model"));
    fields.Markup("from", content.after ? CFields(frame.basePath)
                                              .Put("name", content.after->name)
                                              .Put("how", content.after->key == 0 ? "from" : "after")
                                              .Fill(", {{how}} “<bdi>{{name}}</bdi>”")
                                        : std::string());
    fields.Markup("models", content.models.empty() ? "<p>There are no models here.</p>\n"
                                                   : Grid(frame, content.models));
    fields.Markup("pages",
                  pages.empty() ? pages : "<nav class=\"pages\" aria-label=\"Pages\">" + pages + "</nav>\n");
    return Page(frame, content.group.name, fields.Fill(kGroup));
}

std::string site_pages::Model(const CPageFrame& frame, const CModelRecord& model, std::int64_t groupId) {
    CFields fields(frame.basePath);
    fields.Address("home", CHomePage{}).Address("groupAddress", CGroupPage{groupId, std::nullopt});
    fields.Address("view", CModelView{model.key});
    fields.Address("file", CBlobAddress{model.file.hash, EBlobForm::Plain});
    fields.Put("group", model.group).Put("name", model.name).Put("fileName", FileName(model.name, ".3ds"));
    fields.Size("size", model.file.size).Put("key", model_key::ToText(model.key));
    fields.Put("day", DayText(model.createdSeconds));
    const auto hash = model.preview ? std::optional(model.preview->hash) : std::nullopt;
    fields.Markup("picture", hash ? Picture(frame, hash) : std::string());
    fields.Markup("note", ModelNote(frame, model)).Markup("textures", Textures(frame, model.textures));
    return Page(frame, model.name, fields.Fill(kModel));
}

std::string site_pages::Found(const CPageFrame& frame, const CFoundContent& content) {
    const std::string count =
        content.models.empty() ? "No model has this in its name." : CountText(content.models.size(), "model");
    CFields fields(frame.basePath);
    fields.Put("text", content.text);
    fields.Put("count", content.isMore ? "The first " + count : count);
    fields.Markup("models", Grid(frame, content.models));
    if (content.text.empty())
        return Page(frame, "Search", "<h1>Search</h1>\n<p>Type a part of a model's name.</p>\n");
    constexpr std::string_view kFound =
        "<div class=\"head\"><div><h1>Models named “<bdi>{{text}}</bdi>”</h1><p class=\"quiet\">{{count}}</p>"
        "</div></div>\n{{models}}";
    return Page(frame, "Search: " + content.text, fields.Fill(kFound), content.text);
}

std::string site_pages::Message(const CPageFrame& frame, std::string_view heading, std::string_view text,
                                bool reloads) {
    CFields fields(frame.basePath);
    fields.Put("heading", heading).Put("text", text);
    return Page(frame, heading, fields.Fill("<h1>{{heading}}</h1>\n<p>{{text}}</p>\n"), {},
                reloads ? "<meta http-equiv=\"refresh\" content=\"4\" />\n" : "");
}
