// SPDX-License-Identifier: MIT
#include "programs/shared/option_table.h"

#include <getopt.h>

#include <algorithm>

#include "base/text/lng.h"

namespace option_table {
namespace {

/** What getopt_long gives for the first option; all characters lie below. */
constexpr int kFirstOption = 256;
constexpr int kMissingValue = ':', kUnknown = '?', kHelpLetter = 'h';

std::string Dashed(const CName& entry) {
    return std::string("--") + entry.name;
}

std::vector<option> LongOptions(std::span<const CName> names) {
    std::vector<option> options;
    for (const CName& entry : names) {
        const int number = kFirstOption + static_cast<int>(options.size());
        options.push_back(
            {entry.name, entry.value.empty() ? no_argument : required_argument, nullptr, number});
    }
    options.push_back({});
    return options;
}

/** What is wrong with the option that getopt_long has just refused. */
CError Refusal(std::span<const CName> names, int why, std::string_view word) {
    const auto entry = [&] { return Dashed(names[static_cast<std::size_t>(optopt - kFirstOption)]); };
    if (why == kMissingValue) return Wrong(lng::TextUtf8("%s needs a value", {entry()}));
    if (optopt >= kFirstOption) return Wrong(lng::TextUtf8("%s takes no value", {entry()}));
    const std::string letter{'-', static_cast<char>(optopt)};
    const std::string_view shown = optopt != 0 ? letter : word.substr(0, word.find('='));
    return Wrong(lng::TextUtf8("unknown option '%s'", {shown}));
}

std::size_t NumberOf(std::span<const CName> names, int got) {
    if (got != kHelpLetter) return static_cast<std::size_t>(got - kFirstOption);
    const auto isHelp = [](const CName& entry) { return std::string_view(entry.name) == "help"; };
    return static_cast<std::size_t>(std::ranges::find_if(names, isHelp) - names.begin());
}

}  // namespace

CError Wrong(const std::string& message) {
    return {EErrorCode::BadArgument, message, {}};
}

CResult<std::vector<std::string>> Walk(
    std::span<const CName> names, std::span<const std::string> arguments,
    const std::function<COutcome(std::size_t option, std::string_view value)>& take) {
    std::vector<std::string> words{"program"};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<char*> argv;
    argv.reserve(words.size() + 1);
    for (std::string& word : words) argv.push_back(word.data());
    argv.push_back(nullptr);

    const std::vector<option> longOptions = LongOptions(names);
    const int count = static_cast<int>(words.size());
    opterr = 0;  // no messages of its own
    optind = 0;  // restarts getopt
    for (int got = 0; (got = getopt_long(count, argv.data(), ":h", longOptions.data(), nullptr)) != -1;) {
        if (got == kMissingValue || got == kUnknown)
            return Refusal(names, got, argv[static_cast<std::size_t>(optind - 1)]);
        const std::size_t number = NumberOf(names, got);
        if (const COutcome wrong = take(number, optarg == nullptr ? "" : optarg))
            return Wrong(Dashed(names[number]) + " " + *wrong);
    }
    return std::vector<std::string>(argv.begin() + optind, argv.end() - 1);
}

std::string Usage(std::initializer_list<std::string_view> ways) {
    std::string text;
    for (const std::string_view way : ways)
        text += (text.empty() ? lng::TextUtf8("Usage:") + " " : "       ") + std::string(way) + "\n";
    return text;
}

std::string Help(std::span<const CName> names) {
    std::string text;
    for (const CName& entry : names) {
        std::string left = "  " + Dashed(entry);
        if (!entry.value.empty()) left += " " + std::string(entry.value);
        left.resize(std::max<std::size_t>(24, left.size() + 1), ' ');
        text += left + lng::TextUtf8(entry.help) + "\n";
    }
    return text;
}

}  // namespace option_table
