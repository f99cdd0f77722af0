// SPDX-License-Identifier: MIT
#include "programs/upload_prepare/fill_template.h"

#include "base/text/lng.h"

namespace {

constexpr std::string_view kOpen = "{{", kClose = "}}";

CError Bad(std::string_view where) {
    return {EErrorCode::BadFormat, lng::Mark("the template of the page is damaged"), std::string(where)};
}

/** One pass over a template. */
class CFilling {
  public:
    CFilling(std::string_view text, const CTemplateValues& values) : m_rest(text), m_values(values) {}

    [[nodiscard]] CResult<std::string> Run() {
        std::string page;
        while (true) {
            const std::size_t mark = m_rest.find(kOpen);
            page += m_rest.substr(0, mark);
            if (mark == m_rest.npos) return page;
            m_rest.remove_prefix(mark + kOpen.size());
            const std::size_t end = m_rest.find(kClose);
            if (end == m_rest.npos) return Bad(m_rest.substr(0, kMostShown));
            const std::string_view name = m_rest.substr(0, end);
            m_rest.remove_prefix(end + kClose.size());
            if (!Take(name, page)) return Bad(name);
        }
    }

  private:
    static constexpr std::size_t kMostShown = 40;

    bool Take(std::string_view mark, std::string& page) {
        const bool begins = mark.starts_with('?');
        const bool ends = mark.starts_with('/');
        const std::string_view name = begins || ends ? mark.substr(1) : mark;
        const auto value = m_values.find(name);
        if (value == m_values.end()) return false;
        if (begins) return !value->second.empty() || SkipTo(name);
        if (!ends) page += EscapedForHtml(value->second);
        return true;
    }

    bool SkipTo(std::string_view name) {
        std::string mark(kOpen);
        mark.append("/").append(name).append(kClose);
        const std::size_t end = m_rest.find(mark);
        if (end == m_rest.npos) return false;
        m_rest.remove_prefix(end + mark.size());
        return true;
    }

    std::string_view m_rest;
    const CTemplateValues& m_values;
};

}  // namespace

CResult<std::string> FillTemplate(std::string_view text, const CTemplateValues& values) {
    return CFilling(text, values).Run();
}

std::string EscapedForHtml(std::string_view text) {
    std::string html;
    for (const char c : text) {
        switch (c) {
            case '&':
                html += "&amp;";
                break;
            case '<':
                html += "&lt;";
                break;
            case '>':
                html += "&gt;";
                break;
            case '"':
                html += "&quot;";
                break;
            case '\'':
                html += "&#39;";
                break;
            default:
                html += c;
        }
    }
    return html;
}

std::string EscapedForAddress(std::string_view path) {
    constexpr std::string_view kPlain = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~/";
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    std::string address;
    for (const char c : path) {
        if (kPlain.find(c) != kPlain.npos) {
            address += c;
        } else {
            const auto byte = static_cast<unsigned char>(c);
            address.append({'%', kDigits[byte >> 4U], kDigits[byte & 15U]});
        }
    }
    return address;
}
