// SPDX-License-Identifier: MIT
#include "programs/orbivue_modeldb/CModelDbOptions.h"

#include <gtest/gtest.h>

#include <string>

#include "row_name.h"
#include "words.h"

namespace {

struct CLineCase {
    const char* name;
    const char* arguments;
    std::string outcome;  ///< what is wrong, or "COMMAND store group into search rights flags: arguments"
};

std::string OutcomeOf(const std::string& line) {
    const CResult<CModelDbOptions> parsed = ParseModelDbOptions(Words(line));
    if (!parsed) return parsed.Error().message;
    const CModelDbOptions& o = parsed.Value();
    std::string text = std::to_string(static_cast<int>(o.command)) + " [" + o.store + "|" + o.group + "|" +
                       o.into + "|" + o.search + "|" + std::to_string(o.rights) + "]" + (o.json ? "j" : "") +
                       (o.full ? "f" : "") + (o.verbose ? "v" : "");
    if (o.command == EModelDbCommand::Serve) {
        for (const std::string& address : o.serve.addresses) text += " " + address;
        text += " :" + std::to_string(o.serve.port) + " " + std::to_string(o.serve.uploadBytes);
    }
    for (const std::string& argument : o.arguments) text += " " + argument;
    return text;
}

class ModelDbOptionsTest : public testing::TestWithParam<CLineCase> {};

TEST_P(ModelDbOptionsTest, IsReadOrRefused) {
    EXPECT_EQ(OutcomeOf(GetParam().arguments), GetParam().outcome);
}

const CLineCase kCases[] = {
    {"Nothing", "", "no command given"},
    {"Unknown", "serv", "unknown command 'serv'"},
    {"TokenAlone", "token", "token needs create, list or revoke"},
    {"ImportWithoutGroup", "import a", "import needs --group NAME"},
    {"ImportOfNothing", "import --group g", "import needs PATH... --group NAME"},
    {"EmptyGroup", "import a --group ''", "--group needs a value"},
    {"ExportWithoutFolder", "export", "export needs --into FOLDER"},
    {"RemoveOfNothing", "remove", "remove needs either keys or a group"},
    {"RemoveOfBoth", "remove k --group g", "remove needs either keys or a group"},
    {"OptionOfAnother", "backup f --json", "backup takes no --json"},
    {"TooMuch", "backup f g", "backup takes fewer arguments"},
    {"UnknownOption", "list --jsn", "option '--jsn' is unknown or takes no value"},
    {"NoValue", "list --group", "--group needs a value"},
    {"Rights", "token create a --rights read,all", "--rights needs a list of read, upload and remove"},
    {"ListOfTwoThings", "list k --search x", "list takes keys or a group or a search"},
    {"Import", "import a --group g b --store=s --verbose", "2 [s|g|||0]v a b"},
    {"Export", "export --into d 12345678", "3 [||d||0] 12345678"},
    {"Search", "list --search x --group g --json", "5 [|g||x|0]j"},
    {"TokenOfUsualRights", "token create anna", "10 [||||2] anna"},
    {"TokenOfAllRights", "token create anna --rights read,upload,remove", "10 [||||7] anna"},
    {"HelpBeforeAll", "backup --help", "0 [||||0] backup"},
    {"Serve", "serve --store s", "13 [s||||0] 127.0.0.1 ::1 :8095 67108864"},
    {"ServeAll", "serve --listen 0.0.0.0:80,[::]:80 --max-upload 2M", "13 [||||0] 0.0.0.0 :: :80 2097152"},
    {"ServeHere", "serve --listen localhost:0 --open-uploads", "13 [||||0] 127.0.0.1 ::1 :0 67108864"},
    {"ServeName", "serve --listen example.org:80",
     "--listen needs ADDRESS:PORT, with a numeric address, or PORT"},
    {"ServeOnUnclearAddress", "serve --listen ::1:80",
     "--listen needs ADDRESS:PORT, with a numeric address, or PORT"},
    {"ServeOnTwoPorts", "serve --listen 127.0.0.1:80,[::1]:81",
     "--listen takes several addresses, but one port"},
    {"OpenToAll", "serve --open-uploads --listen 127.0.0.1:80,192.0.2.1:80",
     "serve does not listen on 192.0.2.1 with --open-uploads: everybody who reaches it could add models"},
    {"OpenAndPrivate", "serve --open-uploads --private", "serve takes --private or --open-uploads, not both"},
    {"HugeUpload", "serve --max-upload 99999999999999999999G",
     "--max-upload needs a number of bytes from 1024 to 2147483648, such as 64M"},
    {"NoWorker", "serve --workers 0", "--workers needs a number from 1 to 256"},
    {"AfterDashes", "remove -- --group", "4 [||||0] --group"},
};
INSTANTIATE_TEST_SUITE_P(, ModelDbOptionsTest, testing::ValuesIn(kCases), kRowName);

}  // namespace
