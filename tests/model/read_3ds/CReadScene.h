// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include "model/open/CSceneReader.h"
#include "model/prepare/CPreparedScene.h"
#include "model/prepare/prepare_scene.h"
#include "model/read_3ds/C3dsBytes.h"
#include "model/scene/CScene.h"

/** A scene read from a file's bytes, and prepared. */
struct CReadScene {
    explicit CReadScene(const CBytes& file) : scene(Read(file)), prepared(PrepareScene(scene)) {}
    const CPreparedScene& At(float frame) {
        EvaluateNodes(prepared, scene, frame);
        return prepared;
    }

    CScene scene;
    CPreparedScene prepared;

  private:
    static CScene Read(const CBytes& file) {
        auto read = CSceneReader::ReadBytes(file);
        EXPECT_TRUE(read);
        return read ? std::move(read).Value() : CScene();
    }
};
