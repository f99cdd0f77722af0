// SPDX-License-Identifier: MIT
#include "modeldb/server/http/CHttpRequest.h"

#include <algorithm>

#include "base/text/ascii_text.h"

std::string_view CHttpRequest::Path() const {
    return std::string_view(target).substr(0, target.find('?'));
}

std::string_view CHttpRequest::Query() const {
    const std::size_t mark = target.find('?');
    return mark == std::string::npos ? std::string_view() : std::string_view(target).substr(mark + 1);
}

bool CHttpRequest::IsNamed(const CField& field, std::string_view name) const {
    return field.nameBytes == name.size() &&
           ascii_text::EqualNoCase(std::string_view(m_fieldText).substr(field.at, field.nameBytes), name);
}

const CHttpRequest::CField* CHttpRequest::Find(std::string_view name) const {
    const auto found =
        std::ranges::find_if(m_fields, [&](const CField& field) { return IsNamed(field, name); });
    return found == m_fields.end() ? nullptr : &*found;
}

std::size_t CHttpRequest::CountHeader(std::string_view name) const {
    return static_cast<std::size_t>(
        std::ranges::count_if(m_fields, [&](const CField& field) { return IsNamed(field, name); }));
}

std::string_view CHttpRequest::Header(std::string_view name) const {
    const CField* field = Find(name);
    if (!field) return {};
    return std::string_view(m_fieldText).substr(field->at + field->nameBytes, field->valueBytes);
}

bool CHttpRequest::HasHeader(std::string_view name) const {
    return Find(name) != nullptr;
}

void CHttpRequest::AddHeader(std::string_view name, std::string_view value) {
    m_fields.push_back({static_cast<std::uint32_t>(m_fieldText.size()),
                        static_cast<std::uint32_t>(name.size()), static_cast<std::uint32_t>(value.size())});
    m_fieldText.append(name).append(value);
}
