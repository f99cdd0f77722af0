// SPDX-License-Identifier: MIT
#include "base/process_memory.h"

#include <malloc.h>

void process_memory::KeepFreedBlocks() {
    (void)mallopt(M_MMAP_THRESHOLD, 32 << 20);
    (void)mallopt(M_TRIM_THRESHOLD, 256 << 20);
}

void process_memory::ShareOneHeap() {
    (void)mallopt(M_ARENA_MAX, 1);
}

void process_memory::GiveFreedBlocksBack() {
    (void)malloc_trim(0);
}
