// SPDX-License-Identifier: MIT
#pragma once

/** Takes from this process and its later threads, for good, the system calls by which a stranger's code could get
 * out of it: sockets of every kind, new programs and processes, signals to other processes and looks into them, rights
 * of other users, mounts, modules and other parts of the kernel that a drawing program has no business with. They fail
 * with EPERM. Threads, pipes, files and memory are left. Call it before there is another thread. False where the
 * system has no such filters; then nothing has changed. */
[[nodiscard]] bool FilterSystemCalls();
