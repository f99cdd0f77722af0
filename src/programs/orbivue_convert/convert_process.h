// SPDX-License-Identifier: MIT
#pragma once

struct CConversion;
struct CConvertOptions;

/** Converts a file in a process of its own, which can read the model's files, write into the output's folder, and do nothing
 * else; a file that ends it ends nothing more. Prints errors and notes. False when the file was not converted. Call it while
 * there is one thread. */
[[nodiscard]] bool ConvertInProcess(const CConversion& conversion, const CConvertOptions& options);

/** The signal (SIGINT, SIGTERM, SIGHUP) that has asked this process to end while a file was converted; 0 for none. */
[[nodiscard]] int WantedEnd();
