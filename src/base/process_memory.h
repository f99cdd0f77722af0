// SPDX-License-Identifier: MIT
#pragma once

/** How this process gets memory from the system. KeepFreedBlocks and ShareOneHeap are called at most once, at
 * the start of main(). */
namespace process_memory {

/** Keeps freed memory in the process instead of returning it to the system at once. A software renderer
 * allocates and frees its buffers many times during one drawing; getting each from the system again costs a
 * tenth of the time. Blocks of 32 MB and more are still returned. */
void KeepFreedBlocks();

/** Uses one heap for all threads. For programs whose threads allocate few, large blocks: with a heap for each
 * thread, memory that one thread frees would not serve another. */
void ShareOneHeap();

/** Returns the memory that KeepFreedBlocks kept to the system. Called after a scene was closed. */
void GiveFreedBlocksBack();

}  // namespace process_memory
