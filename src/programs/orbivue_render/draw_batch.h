// SPDX-License-Identifier: MIT
#pragma once

struct CFileAccess;
struct CRenderOptions;

/** Confines this process, then draws what it is ordered to until the orders end. An order is a number, an input, its path
 * and the path of its picture, each ended by a zero byte; each is answered by a line of batch_lines.h. Both are open
 * descriptors. The time of the processor is limited for each picture; a picture that exceeds it ends the
 * process. */
void DrawBatch(const CRenderOptions& options, const CFileAccess& files, int orders, int answers);
