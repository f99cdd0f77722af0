// SPDX-License-Identifier: MIT
#include "programs/orbivue_modeldb/CModelDbOptions.h"

#include <getopt.h>

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>

#include "base/text/lng.h"

namespace {

using ECommand = EModelDbCommand;
using COutcome = std::optional<std::string>;  // what is wrong with a value

constexpr std::size_t kAny = 1'000'000;

/** A command: its words, what follows them, and the letters of the options that it takes beside --store. */
struct CCommandEntry {
    ECommand command;
    std::string_view word, second, usage, options;
    std::size_t least, most;  ///< arguments
    const char* help;
};

constexpr std::array<CCommandEntry, 12> kCommands{{
    {ECommand::Import, "import", "", "PATH... --group NAME", "gpv", 1, kAny,
     lng::Mark("adds 3DS files, and those of folders and all below, with their textures")},
    {ECommand::Export, "export", "", "--into FOLDER [KEY...]", "gi", 0, kAny,
     lng::Mark("writes models with their textures: all, a group's, or those named")},
    {ECommand::Remove, "remove", "", "KEY... | --group NAME", "g", 0, kAny,
     lng::Mark("removes models, or a group with all its models")},
    {ECommand::List, "list", "", "[KEY...]", "gsj", 0, kAny,
     lng::Mark("lists groups, a group's models, what a search finds, or all about models")},
    {ECommand::Check, "check", "", "", "f", 0, 0, lng::Mark("looks for damage")},
    {ECommand::Backup, "backup", "", "FILE", "", 1, 1,
     lng::Mark("copies the store into one new file, also while it is used")},
    {ECommand::Restore, "restore", "", "FILE", "F", 1, 1,
     lng::Mark("makes a store from a backup; the store must not exist, or be empty")},
    {ECommand::Upgrade, "upgrade", "", "", "", 0, 0,
     lng::Mark("brings a store of an older version up to date")},
    {ECommand::TokenCreate, "token", "create", "NAME", "r", 1, 1,
     lng::Mark("makes a token and prints it, this once")},
    {ECommand::TokenList, "token", "list", "", "j", 0, 0, lng::Mark("lists the tokens' names and rights")},
    {ECommand::TokenRevoke, "token", "revoke", "NAME", "", 1, 1, lng::Mark("makes a token void")},
    {ECommand::Serve, "serve", "", "", "lPobcCwtTumGknq", 0, 0,
     lng::Mark("serves the store to other machines and to browsers, until a signal ends it")},
}};

COutcome SetText(std::string CModelDbOptions::*member, CModelDbOptions& options, std::string_view value) {
    if (value.empty()) return lng::TextUtf8("needs a value");
    options.*member = value;
    return {};
}

template <auto member>
COutcome Set(CModelDbOptions& options, std::string_view value) {
    if constexpr (std::is_same_v<std::remove_const_t<decltype(member)>, bool CModelDbOptions::*>) {
        options.*member = true;
        return {};
    } else {
        return SetText(member, options, value);
    }
}

COutcome SetRights(CModelDbOptions& options, std::string_view value) {
    constexpr std::array<std::pair<std::string_view, std::uint32_t>, 3> kRights{
        {{"read", 1}, {"upload", 2}, {"remove", 4}}};
    options.rights = 0;
    while (true) {
        const std::string_view word = value.substr(0, value.find(','));
        const auto* right =
            std::ranges::find(kRights, word, &std::pair<std::string_view, std::uint32_t>::first);
        if (right == kRights.end()) return lng::TextUtf8("needs a list of read, upload and remove");
        options.rights |= right->second;
        if (word.size() == value.size()) return {};
        value.remove_prefix(word.size() + 1);
    }
}

template <auto set>
COutcome SetServe(CModelDbOptions& options, std::string_view value) {
    return set(options.serve, value);
}
template <auto member>
COutcome SetServeFlag(CModelDbOptions& options, std::string_view) {
    options.serve.*member = true;
    return {};
}
template <auto member, std::uint64_t least, std::uint64_t most>
COutcome SetNumber(CModelDbOptions& options, std::string_view value) {
    std::uint64_t number = 0;
    COutcome wrong = serve_options::SetNumber(number, value, least, most);
    using CMember = std::remove_reference_t<decltype(options.serve.*member)>;
    if (!wrong) options.serve.*member = static_cast<CMember>(number);
    return wrong;
}
template <auto member, std::uint64_t least, std::uint64_t most>
COutcome SetBytes(CModelDbOptions& options, std::string_view value) {
    return serve_options::SetBytes(options.serve.*member, value, least, most);
}
COutcome SetCacheFolder(CModelDbOptions& options, std::string_view value) {
    if (value.empty()) return lng::TextUtf8("needs a value");
    options.serve.cacheFolder = value;
    return {};
}

struct COptionEntry {
    char letter;
    const char* name;
    std::string_view value;  ///< what to call it in the help; empty when the option takes none
    COutcome (*set)(CModelDbOptions&, std::string_view);
    const char* help;
};

constexpr std::array<COptionEntry, 26> kOptions{{
    {'S', "store", "PLACE", Set<&CModelDbOptions::store>,
     lng::Mark("a file, or postgresql://...; else the user's own store")},
    {'g', "group", "NAME", Set<&CModelDbOptions::group>, lng::Mark("the group")},
    {'s', "search", "TEXT", Set<&CModelDbOptions::search>, lng::Mark("models whose names hold the text")},
    {'i', "into", "FOLDER", Set<&CModelDbOptions::into>, lng::Mark("where the files go")},
    {'r', "rights", "LIST", SetRights, lng::Mark("any of read,upload,remove (upload)")},
    {'f', "full", "", Set<&CModelDbOptions::full>,
     lng::Mark("reads all bytes and compares them with their hashes")},
    {'j', "json", "", Set<&CModelDbOptions::json>, lng::Mark("prints JSON")},
    {'v', "verbose", "", Set<&CModelDbOptions::verbose>,
     lng::Mark("names each model that was added, or was there already")},
    {'p', "previews", "", Set<&CModelDbOptions::previews>,
     lng::Mark("draws a preview of each model that is added")},
    {'F', "forget-tokens", "", Set<&CModelDbOptions::forgetsTokens>,
     lng::Mark("leaves out the tokens of a backup that is not your own")},
    {'l', "listen", "ADDRESS:PORT", SetServe<serve_options::SetListen>,
     lng::Mark("where serve listens (127.0.0.1:8095,[::1]:8095)")},
    {'P', "private", "", SetServeFlag<&CServeOptions::isPrivate>,
     lng::Mark("nothing is told without a token")},
    {'o', "open-uploads", "", SetServeFlag<&CServeOptions::hasOpenUploads>,
     lng::Mark("uploads need no token; on this machine alone")},
    {'b', "base-url", "URL", SetServe<serve_options::SetBaseUrl>,
     lng::Mark("the public address, behind a proxy")},
    {'c', "cache-dir", "FOLDER", SetCacheFolder, lng::Mark("where files lie that are asked for often")},
    {'C', "cache-size", "BYTES", SetBytes<&CServeOptions::cacheBytes, 1ULL << 20, 1ULL << 50>,
     lng::Mark("what they may take together (4G)")},
    {'w', "workers", "N", SetNumber<&CServeOptions::workers, 1, 256>,
     lng::Mark("connections that read the store (4)")},
    {'t', "threads", "N", SetNumber<&CServeOptions::threads, 1, 64>,
     lng::Mark("threads that read requests and send answers (2)")},
    {'T', "trust-proxy", "ADDRESS,...", SetServe<serve_options::SetProxies>,
     lng::Mark("proxies whose X-Forwarded-For names the client")},
    {'u', "max-upload", "BYTES", SetBytes<&CServeOptions::uploadBytes, 1ULL << 10, 2ULL << 30>,
     lng::Mark("the largest upload (64M)")},
    {'m', "group-models", "N", SetNumber<&CServeOptions::groupModels, 0, 1'000'000'000>,
     lng::Mark("models that uploads may fill a group with (100000)")},
    {'G', "upload-rate", "N", SetNumber<&CServeOptions::uploadsPerMinute, 0, 1'000'000>,
     lng::Mark("uploads a minute of one address, 0: any number (120)")},
    {'k', "connections", "N", SetNumber<&CServeOptions::connections, 1, 1'000'000>,
     lng::Mark("connections at once (4096)")},
    {'n', "no-previews", "", SetServeFlag<&CServeOptions::drawsNoPreviews>,
     lng::Mark("draws no pictures of models")},
    {'q', "quiet", "", SetServeFlag<&CServeOptions::isQuiet>, lng::Mark("writes no line for each request")},
    {'h', "help", "", nullptr, lng::Mark("print this help")},
}};

constexpr int kFirstOption = 256;
constexpr int kVersionOption = kFirstOption + static_cast<int>(kOptions.size());

CError Wrong(const std::string& message) {
    return {EErrorCode::BadArgument, message, {}};
}

std::string NameOf(const CCommandEntry& entry) {
    return std::string(entry.word) + (entry.second.empty() ? "" : " ") + std::string(entry.second);
}

std::string_view NameOfOption(char letter) {
    return std::ranges::find(kOptions, letter, &COptionEntry::letter)->name;
}

std::array<option, kOptions.size() + 2> LongOptions() {
    std::array<option, kOptions.size() + 2> options{};  // the last one, all zero, is the end
    for (std::size_t i = 0; i < kOptions.size(); ++i)
        options[i] = {kOptions[i].name, kOptions[i].value.empty() ? no_argument : required_argument, nullptr,
                      kFirstOption + static_cast<int>(i)};
    options[kOptions.size()] = {"version", no_argument, nullptr, kVersionOption};
    return options;
}

/** Sets the command from the words in front, and takes those away. */
CResult<const CCommandEntry*> TakeCommand(std::vector<std::string>& words) {
    if (words.empty()) return Wrong(lng::TextUtf8("no command given"));
    bool knowsFirst = false;
    for (const CCommandEntry& entry : kCommands) {
        if (entry.word != words[0]) continue;
        knowsFirst = true;
        if (!entry.second.empty() && (words.size() < 2 || entry.second != words[1])) continue;
        words.erase(words.begin(), words.begin() + (entry.second.empty() ? 1 : 2));
        return &entry;
    }
    return Wrong(knowsFirst ? lng::TextUtf8("token needs create, list or revoke")
                            : lng::TextUtf8("unknown command '%s'", {words[0]}));
}

COutcome CheckTogether(const CModelDbOptions& options) {
    const bool hasNames = !options.arguments.empty(), hasGroup = !options.group.empty();
    switch (options.command) {
        case ECommand::Import:
            if (!hasGroup) return lng::TextUtf8("needs --group NAME");
            return {};
        case ECommand::Export:
            if (options.into.empty()) return lng::TextUtf8("needs --into FOLDER");
            if (hasNames && hasGroup) return lng::TextUtf8("takes keys or a group, not both");
            return {};
        case ECommand::Remove:
            if (hasNames == hasGroup) return lng::TextUtf8("needs either keys or a group");
            return {};
        case ECommand::List:
            if (hasNames && (hasGroup || !options.search.empty()))
                return lng::TextUtf8("takes keys or a group or a search");
            return {};
        case ECommand::Serve:
            return serve_options::CheckTogether(options.serve);
        default:
            return {};
    }
}

struct CParsing {
    CModelDbOptions options;
    std::string used;  ///< letters of the options that were given
    bool wantsHelp = false, wantsVersion = false;
};

/** Takes in what getopt_long has found; word is what it stood in. */
COutcome TakeOption(CParsing& parsing, int got, const std::string& word) {
    if (got == ':') return lng::TextUtf8("%s needs a value", {word});
    if (got == '?') return lng::TextUtf8("option '%s' is unknown or takes no value", {word});
    if (got == kVersionOption) {
        parsing.wantsVersion = true;
        return {};
    }
    const COptionEntry& entry =
        got == 'h' ? kOptions.back() : kOptions[static_cast<std::size_t>(got - kFirstOption)];
    if (!entry.set) {
        parsing.wantsHelp = true;
        return {};
    }
    parsing.used += entry.letter;
    const COutcome wrong = entry.set(parsing.options, optarg == nullptr ? "" : optarg);
    return wrong ? COutcome("--" + std::string(entry.name) + " " + *wrong) : wrong;
}

CResult<CParsing> ParseWords(std::vector<std::string>& words) {
    std::vector<char*> argv;
    argv.reserve(words.size() + 1);
    for (std::string& word : words) argv.push_back(word.data());
    argv.push_back(nullptr);
    static const auto kLong = LongOptions();
    const int count = static_cast<int>(words.size());
    CParsing parsing;
    opterr = 0;  // no messages of its own
    optind = 0;  // restarts getopt
    for (int got = 0; (got = getopt_long(count, argv.data(), ":h", kLong.data(), nullptr)) != -1;)
        if (const COutcome wrong = TakeOption(parsing, got, argv[static_cast<std::size_t>(optind - 1)]))
            return Wrong(*wrong);
    for (std::size_t i = static_cast<std::size_t>(optind); i < words.size(); ++i)
        parsing.options.arguments.emplace_back(argv[i]);
    return parsing;
}

}  // namespace

CResult<CModelDbOptions> ParseModelDbOptions(std::span<const std::string> arguments) {
    std::vector<std::string> words{"orbivue-modeldb"};
    words.insert(words.end(), arguments.begin(), arguments.end());
    CResult<CParsing> parsed = ParseWords(words);
    if (!parsed) return parsed.Error();
    CParsing& parsing = parsed.Value();
    CModelDbOptions& options = parsing.options;
    if (parsing.wantsHelp || parsing.wantsVersion) {
        options.command = parsing.wantsHelp ? ECommand::Help : ECommand::Version;
        return options;
    }
    const CResult<const CCommandEntry*> found = TakeCommand(options.arguments);
    if (!found) return found.Error();
    const CCommandEntry& entry = *found.Value();
    options.command = entry.command;
    for (const char letter : parsing.used)
        if (letter != 'S' && entry.options.find(letter) == entry.options.npos)
            return Wrong(lng::TextUtf8("%s takes no --%s", {NameOf(entry), NameOfOption(letter)}));
    if (options.arguments.size() < entry.least)
        return Wrong(lng::TextUtf8("%s needs %s", {NameOf(entry), entry.usage}));
    if (options.arguments.size() > entry.most)
        return Wrong(lng::TextUtf8("%s takes fewer arguments", {NameOf(entry)}));
    if (const COutcome wrong = CheckTogether(options)) return Wrong(NameOf(entry) + " " + *wrong);
    if (options.command == ECommand::TokenCreate && options.rights == 0) options.rights = 2;
    return options;
}

std::string ModelDbHelp() {
    std::string text = lng::TextUtf8("Usage:") + " orbivue-modeldb COMMAND [OPTION]... [--store PLACE]\n" +
                       lng::TextUtf8("Keeps a library of 3DS models.") + "\n\n";
    const auto line = [&](std::string left, const char* help) {
        left = "  " + left;
        left.resize(std::max<std::size_t>(34, left.size() + 1), ' ');
        text += left + lng::TextUtf8(help) + "\n";
    };
    for (const CCommandEntry& entry : kCommands)
        line(NameOf(entry) + (entry.usage.empty() ? "" : " ") + std::string(entry.usage), entry.help);
    text += "\n";
    for (const COptionEntry& entry : kOptions)
        line("--" + std::string(entry.name) + (entry.value.empty() ? "" : " ") + std::string(entry.value),
             entry.help);
    line("--version", lng::Mark("print the version"));
    return text + "\n" +
           lng::TextUtf8("A KEY is a model's check sum, eight hexadecimal digits, as list prints it.") +
           "\n" +
           lng::TextUtf8(
               "Exit codes: 0 done, 1 wrong usage, 2 the store cannot be used, 3 something was\n"
               "left out or not found, or a check found damage, 4 the output cannot be written.") +
           "\n";
}
