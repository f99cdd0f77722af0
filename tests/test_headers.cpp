// SPDX-License-Identifier: MIT
// Only carries the precompiled headers that the tests share: CMake makes them for a target that has a source.
