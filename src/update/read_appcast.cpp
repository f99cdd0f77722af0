// SPDX-License-Identifier: MIT
#include <algorithm>
#include <pugixml.hpp>

#include "base/text/ascii_text.h"
#include "base/text/lng.h"
#include "base/text/utf8_text.h"
#include "update/CAppcast.h"
#include "update/plain_text.h"

namespace {

constexpr std::size_t kMostItems = 500;
constexpr std::size_t kMostSystems = 50;
constexpr std::size_t kMostVersionCharacters = 64;
constexpr std::size_t kMostAddressBytes = 2'000;

/** The text right below an element. */
std::string TextOf(const pugi::xml_node& element) {
    std::string text;
    for (const pugi::xml_node& child : element)
        if (child.type() == pugi::node_pcdata || child.type() == pugi::node_cdata) text += child.value();
    return text;
}

std::string LineOf(const pugi::xml_node& element) {
    return std::string(ascii_text::Trimmed(std::string_view(TextOf(element))));
}

/** An item's own element of a name, or else the first enclosure's attribute. */
std::string ValueOf(const pugi::xml_node& item, const char* name) {
    std::string value = LineOf(item.child(name));
    for (pugi::xml_node file = item.child("enclosure"); file && value.empty();
         file = file.next_sibling("enclosure"))
        value = ascii_text::Trimmed(std::string_view(file.attribute(name).value()));
    return value;
}

/** One that is too long stays so, as it must not become another. */
std::string VersionOf(const pugi::xml_node& item, const char* name) {
    return utf8_text::Printable(ValueOf(item, name).substr(0, kMostVersionCharacters + 1), '?');
}

std::vector<std::string> SystemsOf(const pugi::xml_node& item) {
    std::vector<std::string> systems;
    for (const pugi::xml_node& file : item.children("enclosure")) {
        if (systems.size() == kMostSystems) break;
        const std::string_view name =
            ascii_text::Trimmed(std::string_view(file.attribute("sparkle:os").value()));
        systems.push_back(
            utf8_text::Printable(ascii_text::Lowered(name.substr(0, kMostVersionCharacters)), '?'));
    }
    if (systems.empty()) systems.emplace_back();
    return systems;
}

/** The address, if it is one that a browser may get. */
std::string PageOf(std::string address) {
    const std::string lower = ascii_text::Lowered(address);
    const bool isWeb = lower.starts_with("https://") || lower.starts_with("http://");
    const auto mayStand = [](char c) {
        return c > ' ' && c < 0x7f && c != '"' && c != '<' && c != '>' && c != '\\';
    };
    return isWeb && address.size() <= kMostAddressBytes && std::ranges::all_of(address, mayStand)
               ? std::move(address)
               : std::string();
}

CAppcastItem ItemOf(const pugi::xml_node& element) {
    CAppcastItem item;
    item.version = VersionOf(element, "sparkle:version");
    item.shownVersion = PlainLine(ValueOf(element, "sparkle:shortVersionString"), kMostVersionCharacters);
    if (item.shownVersion.empty()) item.shownVersion = PlainLine(item.version, kMostVersionCharacters);
    item.minimumSystem = VersionOf(element, "sparkle:minimumSystemVersion");
    item.systems = SystemsOf(element);
    item.page = PageOf(LineOf(element.child("link")));
    item.notes = PlainNotes(TextOf(element.child("description")));
    return item;
}

CError NoList() {
    return {EErrorCode::BadFormat, lng::Mark("the address gives no list of versions"), {}};
}

}  // namespace

CResult<CAppcast> ReadAppcast(std::string_view xml) {
    // Document types are skipped, and no entities but XML's own five and numbers are replaced.
    constexpr unsigned kOptions =
        pugi::parse_cdata | pugi::parse_escapes | pugi::parse_wconv_attribute | pugi::parse_eol;
    pugi::xml_document document;
    const pugi::xml_parse_result parsed = document.load_buffer(xml.data(), xml.size(), kOptions);
    const pugi::xml_node channel = document.child("rss").child("channel");
    if (!parsed || !channel) return NoList();
    CAppcast list;
    bool hasVersions = false;
    for (const pugi::xml_node& element : channel.children("item")) {
        if (list.items.size() == kMostItems) break;
        CAppcastItem item = ItemOf(element);
        hasVersions = hasVersions || !item.version.empty();
        const bool isForAll = LineOf(element.child("sparkle:channel")).empty();
        if (isForAll && !item.version.empty()) list.items.push_back(std::move(item));
    }
    if (!hasVersions) return NoList();
    return list;
}
