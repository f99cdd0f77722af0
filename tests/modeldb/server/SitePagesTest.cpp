// SPDX-License-Identifier: MIT
#include "modeldb/server/site/site_pages.h"

#include <pugixml.hpp>

#include "../store/CTestStore.h"
#include "modeldb/bytes/calc_crc.h"
#include "modeldb/server/site/CFields.h"
#include "modeldb/server/site/CSite.h"
#include "modeldb/server/work/CViewPages.h"

namespace {

/** What of a page is no well-formed XML, or no markup of ours; empty where all is. */
std::string FaultOf(const std::string& page) {
    struct CForeignMarkup final : pugi::xml_tree_walker {
        bool for_each(pugi::xml_node& node) override {
            if (std::string_view(node.name()) == "script") found = "a script";
            for (const pugi::xml_attribute attribute : node.attributes()) {
                const std::string_view name = attribute.name();
                if (name.starts_with("on") || name == "style") found = name;
            }
            return found.empty();
        }
        std::string found;
    } foreign;
    pugi::xml_document document;
    const pugi::xml_parse_result read = document.load_buffer(page.data(), page.size());
    if (!read) return read.description();
    document.traverse(foreign);
    return page.ends_with("</html>\n") ? foreign.found : "something stays open";
}

const CPageFrame kFrame{"/base", "A \"site\" & more"};

struct CNameRow {
    std::string name, text, html;
};
class NamesTest : public testing::TestWithParam<CNameRow> {};
INSTANTIATE_TEST_SUITE_P(
    , NamesTest,
    testing::Values(CNameRow{"Markup", "<script>x</script>", "&lt;script&gt;x&lt;/script&gt;"},
                    CNameRow{"Quotes", R"(a" onload="b' c)", "a&quot; onload=&quot;b&#39; c"},
                    CNameRow{"DirectionOverride", "a\xE2\x80\xAEgpj.exe", "a?gpj.exe"},
                    CNameRow{"Controls", "a\x1B[2J\nb\x7F", "a?[2J?b?"},
                    CNameRow{"FormWord", "{{address}}", "{{address}}"},
                    CNameRow{"BadUtf8", "a\xFF\xC0\x80z", "a???z"},
                    CNameRow{"Path", "../../x\\y", "../../x\\y"},
                    CNameRow{"LongWithoutBlank", std::string(400, 'W'), std::string(400, 'W')},
                    CNameRow{"RightToLeft", "שלום", "שלום"}),
    kRowName);

TEST_P(NamesTest, StayTextOnEveryPage) {
    const std::string& text = GetParam().text;
    const CGroupRecord group{7, text, 1234, 1};
    const CModelTile tile{text, 1, CBlobHash{}, text};
    CModelRecord model;
    model.key = 0xAB;
    model.group = model.name = text;
    model.note = text + "\r\n" + text;
    model.preview.emplace();
    model.textures = {{text, {}}, {text, {}}};
    const std::vector<std::pair<std::string, std::string>> pages{
        {"front", site_pages::Front(kFrame, {{group, {CBlobHash{}, std::nullopt}}}, {group})},
        {"group", site_pages::Group(kFrame, {group, CPagePlace{text, 2}, {tile}, true})},
        {"model", site_pages::Model(kFrame, model, 7)},
        {"found", site_pages::Found(kFrame, {text, {tile}, true})}};
    for (const auto& [name, page] : pages) {
        EXPECT_EQ(FaultOf(page), "") << name << "\n" << page;
        EXPECT_NE(page.find(">" + GetParam().html + "</bdi>"), page.npos) << name << "\n" << page;
        EXPECT_EQ(page.find("\"/g/"), page.npos) << name << " leaves the base path";
        EXPECT_EQ(page.find("\"/b/"), page.npos) << name << " leaves the base path";
    }
}

TEST(SiteTextTest, SavesWithOneEnding) {
    CModelRecord model;
    for (const std::string name : {"a", "a.3ds", "a.3DS"}) {
        model.name = name;
        const std::string file = name == "a" ? "a.3ds" : name;
        EXPECT_NE(site_pages::Model(kFrame, model, 1).find("\"" + file + "\""), std::string::npos) << name;
    }
}

TEST(SiteTextTest, SaysSizesAndCounts) {
    EXPECT_EQ(SizeText(1) + "|" + SizeText(999) + "|" + SizeText(1000) + "|" + SizeText(1'234'567) + "|" +
                  SizeText(456'000'000) + "|" + SizeText(1ULL << 30),
              "1 byte|999 bytes|1.0 kB|1.2 MB|456 MB|1.1 GB");
    EXPECT_EQ(CountText(1'234'567, "model") + DayText(0), "1,234,567 models1970-01-01");
}

class SiteTest : public testing::Test {
  protected:
    const CTestPlace place{{"Sqlite"}};
    CModelStore store = place.Open();
    CWorkshop workshop{{.program = "/bin/false"}};
    CViewPages views{workshop};
    CSite site{{"/base", "Models"}, views};

    std::string Header(const CSiteAnswer& answer, std::string_view name) {
        for (const auto& [known, value] : answer.headers)
            if (known == name) return value;
        return {};
    }
    std::string Page(std::string_view path, std::string_view query = {}, int status = 200) {
        const CSiteAnswer answer = site.Answer(store, path, query);
        EXPECT_EQ(answer.status, status) << path;
        EXPECT_NE(Header(answer, "Content-Security-Policy").find("default-src 'none'"), std::string::npos);
        EXPECT_EQ(Header(answer, "X-Content-Type-Options"), "nosniff");
        return std::get<std::string>(answer.body);
    }
};

TEST_F(SiteTest, WalksAGroupPageByPage) {
    std::vector<CNewModel> models;
    for (int i = 0; i < 200; ++i) {
        const std::string number = std::to_string(1000 + i);
        models.push_back(ModelOf("Cars & more", "a+b " + number, "file " + number));
    }
    ASSERT_TRUE(store.AddModels(models));
    EXPECT_NE(Page("/").find("200 models in 1 group"), std::string::npos);
    std::string path = "/g/" + std::to_string(store.Group("Cars & more").Value().id), query;
    std::size_t seen = 0, pages = 0;
    while (pages < 10) {
        const std::string page = Page(path, query);
        EXPECT_EQ(FaultOf(page), "");
        for (std::size_t at = 0; (at = page.find("/base/m/", at)) != page.npos; ++at) ++seen;
        ++pages;
        const std::size_t next = page.find("rel=\"next\" href=\"/base");
        if (next == page.npos) break;
        const std::size_t begin = next + 22, end = page.find('"', begin);
        query = page.substr(begin, end - begin);
        query = query.substr(query.find('?') + 1);
        for (std::size_t at = 0; (at = query.find("&amp;", at)) != query.npos;) query.erase(at + 1, 4);
    }
    EXPECT_EQ(seen, 200u);
    EXPECT_EQ(pages, 3u);
    EXPECT_NE(Page("/search", "text=a%2Bb+11").find("100 models"), std::string::npos);
}

TEST_F(SiteTest, EachPathHasItsStatus) {
    for (const auto& [path, query, status] : {std::tuple{"/", "", 200},
                                              {"/g/99", "", 404},
                                              {"/m/00000000", "", 404},
                                              {"/m/00000000/view", "", 404},
                                              {"/site/passwd", "", 404},
                                              {"/search", "", 200},
                                              {"/search", "text=%zz", 400},
                                              {"/api/groups", "", 404}})
        EXPECT_EQ(FaultOf(Page(path, query, status)), "") << path << query;
}

TEST_F(SiteTest, HoldsAStrangersViewInAnOriginOfItsOwn) {
    const auto added = store.AddModel(ModelOf("g", "m", "no model"));
    const CSiteAnswer refused =
        site.Answer(store, "/m/" + model_key::ToText(added.Value().key) + "/view", "");
    EXPECT_EQ(refused.status, 422);
    EXPECT_NE(Header(refused, "Content-Security-Policy").find("frame-ancestors 'self'"), std::string::npos);
}

}  // namespace
