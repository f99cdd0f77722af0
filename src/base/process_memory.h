// SPDX-License-Identifier: MIT
#pragma once

/** How this process gets memory from the system. Both are called once, at the start of main(). */
namespace process_memory {

/** Keeps what was freed instead of giving it back at once. The buffers of a software renderer come and go
 * with every part of a frame; fetching each from the system anew costs a tenth of the time. Blocks of 32 MB
 * and more still go back. */
void KeepFreedBlocks();

/** One heap for all threads: for programs whose threads allocate few large blocks, where a heap of each
 * thread's own would only keep what another one frees. */
void ShareOneHeap();

/** Gives back what KeepFreedBlocks kept; for when a scene has been closed. */
void GiveFreedBlocksBack();

}  // namespace process_memory
