// SPDX-License-Identifier: MIT
#pragma once

struct CModelDbOptions;

/** The commands; each prints what it has to say and returns the program's exit code. */
namespace model_commands {

[[nodiscard]] int Import(const CModelDbOptions& options);
[[nodiscard]] int Export(const CModelDbOptions& options);
[[nodiscard]] int Remove(const CModelDbOptions& options);
[[nodiscard]] int List(const CModelDbOptions& options);
[[nodiscard]] int Check(const CModelDbOptions& options);
[[nodiscard]] int Backup(const CModelDbOptions& options);
[[nodiscard]] int Restore(const CModelDbOptions& options);
[[nodiscard]] int Upgrade(const CModelDbOptions& options);
[[nodiscard]] int TokenCreate(const CModelDbOptions& options);
[[nodiscard]] int TokenList(const CModelDbOptions& options);
[[nodiscard]] int TokenRevoke(const CModelDbOptions& options);
/** Serves the store until a signal ends it. */
[[nodiscard]] int Serve(const CModelDbOptions& options);

}  // namespace model_commands
