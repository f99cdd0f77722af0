// SPDX-License-Identifier: MIT
#pragma once

struct CRenderOptions;

/** Draws many models, those that the options name, or that standard input names while it is read. Prints one line of
 * JSON for each, in their order (see batch_lines.h). A process of its own draws them, confined to the folders of
 * the models; where a file ends that process, or it takes too long, another one goes on with the next file. Returns the
 * program's exit code. Call it before this process has another thread. */
[[nodiscard]] int RunBatch(const CRenderOptions& options);
