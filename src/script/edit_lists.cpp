// SPDX-License-Identifier: MIT
#include "script/edit_lists.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "base/name_hash.h"
#include "base/text/ascii_text.h"
#include "base/text/lng.h"
#include "base/text/number_text.h"
#include "model/scene/CNoteList.h"
#include "script/script_numbers.h"

namespace edit_lists {
namespace {

// --- reading ---------------------------------------------------------------------------------------------

constexpr double kFarthest = 1e9;  // farther places have no sound bounds

struct CFields {
    std::string_view name, rest;
};

CFields Fields(std::string_view entry) {
    const std::size_t bar = entry.find('|');
    return bar == entry.npos ? CFields{entry, {}} : CFields{entry.substr(0, bar), entry.substr(bar + 1)};
}

CMaterialTarget TargetOf(std::string_view text) {
    const std::size_t angle = text.find('>');
    if (angle == text.npos) return {{}, std::string(text)};
    return {std::string(text.substr(0, angle)), std::string(text.substr(angle + 1))};
}

CError Wrong(const char* what) {
    return {EErrorCode::BadFormat, what, {}};
}
CError NotUsable() {
    return Wrong(lng::Mark("a number cannot be used"));
}
CError TooFewFields() {
    return Wrong(lng::Mark("an entry lacks fields"));
}

/** Three numbers, each divided from the next by '|'. */
std::optional<CVec3d> ThreeNumbers(std::string_view text) {
    CVec3d v;
    for (double CVec3d::*part : {&CVec3d::x, &CVec3d::y, &CVec3d::z}) {
        if (text.data() == nullptr) return std::nullopt;
        const std::size_t bar = text.find('|');
        v.*part = script_numbers::ReadNumber(text.substr(0, bar));
        text = bar == text.npos ? std::string_view() : text.substr(bar + 1);
    }
    return v;
}

CVec3 Single(CVec3d v) {
    return {static_cast<float>(v.x), static_cast<float>(v.y), static_cast<float>(v.z)};
}

bool IsWithin(CVec3d v, double most) {
    return std::abs(v.x) <= most && std::abs(v.y) <= most && std::abs(v.z) <= most;
}

CResult<CEdit> ReadReplace(std::string_view name, std::string_view rest) {
    const CFields file = Fields(rest);
    if (ascii_text::Trimmed(file.name).empty()) return TooFewFields();
    return CEdit(
        CReplaceEdit{std::string(name), std::string(file.name), std::string(Fields(file.rest).name)});
}

CResult<CEdit> ReadMove(std::string_view name, std::string_view rest) {
    const auto numbers = ThreeNumbers(rest);
    if (!numbers) return TooFewFields();
    if (!IsWithin(*numbers, kFarthest)) return NotUsable();
    return CEdit(CMoveEdit{std::string(name), Single(*numbers)});
}

CResult<CEdit> ReadRotate(std::string_view name, std::string_view rest) {
    const auto numbers = ThreeNumbers(rest);
    if (!numbers) return TooFewFields();
    if (!IsWithin(*numbers, kFarthest)) return NotUsable();
    return CEdit(CRotateEdit{std::string(name), Single(*numbers)});
}

CResult<CEdit> ReadDelete(std::string_view name, std::string_view) {
    return CEdit(CDeleteEdit{std::string(name)});
}

CResult<CEdit> ReadTexture(std::string_view name, std::string_view rest) {
    if (rest.data() == nullptr) return TooFewFields();
    return CEdit(CTextureEdit{TargetOf(name), std::string(Fields(rest).name)});
}

template <class Edit>
CResult<CEdit> ReadValue(std::string_view name, std::string_view rest) {
    if (rest.data() == nullptr) return TooFewFields();
    const double value = script_numbers::ReadNumber(rest);
    if (!std::isfinite(value)) return NotUsable();
    return CEdit(Edit{TargetOf(name), static_cast<float>(std::clamp(value, 0.0, 1.0))});
}

CResult<CEdit> ReadColor(std::string_view name, std::string_view rest) {
    const auto numbers = ThreeNumbers(rest);
    if (!numbers) return TooFewFields();
    if (!IsFinite<double>(*numbers)) return NotUsable();
    const auto channel = [](double v) {
        return static_cast<float>(std::trunc(std::clamp(v, 0.0, 255.0))) / 255.0f;
    };
    return CEdit(CColorEdit{TargetOf(name), {channel(numbers->x), channel(numbers->y), channel(numbers->z)}});
}

// --- writing ---------------------------------------------------------------------------------------------

/** With so many decimals where that is the number itself, else with as many as it takes. */
std::string NumberText(float value, int decimals) {
    std::string text = number_text::FormatFixed(static_cast<double>(value), decimals);
    const bool isExact = static_cast<float>(script_numbers::ReadNumber(text)) == value;
    return isExact ? text : number_text::FormatShortest(value);
}

std::string VectorText(CVec3 v) {
    constexpr int kDecimals = 3;
    return NumberText(v.x, kDecimals) + "|" + NumberText(v.y, kDecimals) + "|" + NumberText(v.z, kDecimals);
}

std::string ChannelText(float value) {
    return std::to_string(std::lround(static_cast<double>(std::clamp(value, 0.0f, 1.0f)) * 255.0));
}

std::string TargetText(const CMaterialTarget& target) {
    return target.node.empty() ? target.material : target.node + ">" + target.material;
}

constexpr int kValueDecimals = 1;

struct CEntryText {
    std::string operator()(const CReplaceEdit& e) const {
        return e.node + "|" + e.path + (e.newNode.empty() ? "" : "|" + e.newNode);
    }
    std::string operator()(const CMoveEdit& e) const { return e.node + "|" + VectorText(e.offset); }
    std::string operator()(const CRotateEdit& e) const { return e.node + "|" + VectorText(e.anglesDeg); }
    std::string operator()(const CDeleteEdit& e) const { return e.node; }
    std::string operator()(const CTextureEdit& e) const { return TargetText(e.target) + "|" + e.imagePath; }
    std::string operator()(const CTransparencyEdit& e) const { return Value(e.target, e.value); }
    std::string operator()(const CShininessEdit& e) const { return Value(e.target, e.value); }
    std::string operator()(const CColorEdit& e) const {
        return TargetText(e.target) + "|" + ChannelText(e.color.x) + "|" + ChannelText(e.color.y) + "|" +
               ChannelText(e.color.z);
    }
    static std::string Value(const CMaterialTarget& target, float value) {
        return TargetText(target) + "|" + NumberText(std::clamp(value, 0.0f, 1.0f), kValueDecimals);
    }
};

// --- both ------------------------------------------------------------------------------------------------

constexpr std::array<CResult<CEdit> (*)(std::string_view, std::string_view), kKeys.size()> kReaders{
    ReadReplace,
    ReadMove,
    ReadRotate,
    ReadDelete,
    ReadTexture,
    ReadValue<CTransparencyEdit>,
    ReadValue<CShininessEdit>,
    ReadColor};

struct CKeyNumber {
    std::size_t operator()(const CReplaceEdit&) const { return 0; }
    std::size_t operator()(const CMoveEdit&) const { return 1; }
    std::size_t operator()(const CRotateEdit&) const { return 2; }
    std::size_t operator()(const CDeleteEdit&) const { return 3; }
    std::size_t operator()(const CTextureEdit&) const { return 4; }
    std::size_t operator()(const CTransparencyEdit&) const { return 5; }
    std::size_t operator()(const CShininessEdit&) const { return 6; }
    std::size_t operator()(const CColorEdit&) const { return 7; }
};

std::string EntryOf(const CEdit& edit) {
    return std::visit(CEntryText(), edit);
}

/** What an edit names. */
struct CNames {
    template <class Edit>
    std::string operator()(const Edit& e) const {
        if constexpr (requires { e.target; })
            return e.target.node + '\0' + e.target.material;
        else
            return e.node;
    }
};

std::string NamesOf(const CEdit& edit) {
    return std::visit(CNames(), edit);
}

/** The same for two edits of which the later one makes the earlier one void; empty where none does. */
std::string VoidingKey(const CEdit& edit) {
    if (std::holds_alternative<CMoveEdit>(edit) || std::holds_alternative<CRotateEdit>(edit)) return {};
    // Of the share of the ambient colour nothing is left once the colour is black, so that black stays.
    const auto* color = std::get_if<CColorEdit>(&edit);
    const char mark = color && color->color == CVec3{} ? 'b' : '-';
    return std::to_string(KeyOf(edit)) + mark + NamesOf(edit);
}

}  // namespace

std::size_t KeyOf(const CEdit& edit) {
    return std::visit(CKeyNumber(), edit);
}

std::optional<std::string_view> NextEntry(std::string_view& list) {
    while (!list.empty()) {
        const std::size_t end = list.find(';');
        const std::string_view entry = list.substr(0, end);
        list.remove_prefix(end == list.npos ? list.size() : end + 1);
        if (!ascii_text::Trimmed(entry).empty()) return entry;
    }
    return std::nullopt;
}

CResult<CEdit> EditOf(std::size_t key, std::string_view entry) {
    const CFields fields = Fields(entry);
    if (ascii_text::Trimmed(fields.name).empty()) return Wrong(lng::Mark("an entry names nothing"));
    return kReaders[key](fields.name, fields.rest);
}

std::vector<CEdit> WithoutRepeated(std::vector<CEdit> edits) {
    CNameSet later;
    std::vector<CEdit> kept;
    for (auto edit = edits.rbegin(); edit != edits.rend(); ++edit) {
        std::string key = VoidingKey(*edit);
        if (key.empty() || later.insert(std::move(key)).second) kept.push_back(std::move(*edit));
    }
    std::reverse(kept.begin(), kept.end());
    return kept;
}

std::vector<CEdit> EditsOf(const CLists& lists, CNoteList& notes) {
    const auto noteTooMany = [&notes](std::size_t key) {
        notes.Limited(lng::Mark("Entries of the script beyond the limit are not used"),
                      std::string(kKeys[key]));
    };
    std::vector<CEdit> all;
    for (std::size_t key = 0; key < kKeys.size(); ++key) {
        std::vector<CEdit> edits;
        std::string_view rest = lists[key];
        std::size_t count = 0;
        while (const auto entry = NextEntry(rest)) {
            if (++count > kMostEntries) break;
            CResult<CEdit> edit = EditOf(key, *entry);
            if (edit)
                edits.push_back(std::move(edit).Value());
            else
                notes.Limited(lng::Mark("An entry of the script is not used"), CNoteList::Printable(*entry),
                              edit.Error().message);
        }
        edits = WithoutRepeated(std::move(edits));
        if (count > kMostEntries || edits.size() > kMost[key]) noteTooMany(key);
        edits.resize(std::min(edits.size(), kMost[key]), CDeleteEdit{});
        std::move(edits.begin(), edits.end(), std::back_inserter(all));
    }
    return all;
}

CResult<CLists> ListsOf(std::span<const CEdit> edits) {
    CLists lists;
    std::array<std::size_t, kKeys.size()> counts{};
    for (const CEdit& edit : edits) {
        const std::size_t key = KeyOf(edit);
        if (++counts[key] > kMost[key])
            return CError{EErrorCode::BadArgument,
                          lng::Mark("these are more edits than a scene script can have"),
                          std::string(kKeys[key])};
        const std::string text = EntryOf(edit) + ";";
        std::string_view rest = text;
        const auto entry = NextEntry(rest);
        const CResult<CEdit> again = entry ? EditOf(key, *entry) : TooFewFields();
        // What is read back has to say the same, and nothing may be left over.
        if (!rest.empty() || !again || EntryOf(again.Value()) + ";" != text ||
            NamesOf(again.Value()) != NamesOf(edit))
            return CError{EErrorCode::BadArgument, lng::Mark("a scene script cannot express this edit"),
                          EntryOf(edit)};
        lists[key] += text;
    }
    return lists;
}

}  // namespace edit_lists
