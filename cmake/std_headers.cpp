// SPDX-License-Identifier: MIT
// Only carries precompiled headers: CMake makes them for a target that has a source.
