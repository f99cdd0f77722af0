// SPDX-License-Identifier: MIT
#include "programs/orbivue_modeldb/store_output.h"

#include <cstdio>

#include "base/text/utf8_text.h"
#include "settings/language_catalogue.h"

int Complain(const std::string& message, EModelDbExit code) {
    std::fprintf(stderr, "orbivue-modeldb: %s\n", Shown(message).c_str());
    return code;
}

int Complain(const CError& error, EModelDbExit code) {
    return Complain(lng::TextForTerminal(error), code);
}

bool Print(const std::string& text) {
    return std::fwrite(text.data(), 1, text.size(), stdout) == text.size() && std::fflush(stdout) == 0;
}

std::string Shown(std::string_view text) {
    return utf8_text::Printable(text, ' ');
}

CStoreAddress StoreOf(const CModelDbOptions& options) {
    return CStoreAddress::Parse(options.store.empty() ? CModelStore::DefaultPath() : options.store);
}

CResult<CModelStore> OpenStore(const CModelDbOptions& options, EStoreUse use) {
    return CModelStore::Open(StoreOf(options), use);
}
