// SPDX-License-Identifier: MIT
#pragma once

#include "model/prepare/CPreparedScene.h"

/** A scene of one triangle for each kind of surface that a scene has: what draws it once has ready what the scene needs.
 * scene: with materials and lights, and with batches in its meshes; its pictures need not be loaded. */
[[nodiscard]] CPreparedScene KindsOf(const CPreparedScene& scene);
