// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "files/CTestFolder.h"
#include "model/edit/CSceneEdits.h"
#include "model/open/CSceneReader.h"
#include "model/prepare/prepare_scene.h"
#include "model/read_3ds/C3dsBytes.h"
#include "model/save/write_scene.h"

/** A scene that was read, and prepared. */
struct COpened {
    COpened(const CBytes& file, CTextureLocator textures)
        : scene(std::move(CSceneReader::ReadBytes(file, std::move(textures))).Value()),
          prepared(PrepareScene(scene)) {}
    const CPreparedScene& At(float frame) {
        EvaluateNodes(prepared, scene, frame);
        return prepared;
    }
    CScene scene;
    CPreparedScene prepared;
};

/** A scene under edit, as the engine keeps it. */
class CEdited {
  public:
    explicit CEdited(const CBytes& file, CTextureLocator textures = {})
        : m_opened(file, std::move(textures)), m_edits(m_opened.scene, m_opened.prepared) {}

    CStatus Do(const CEdit& edit) { return m_edits.Apply({&edit, 1}).front(); }
    CSceneEdits& Edits() { return m_edits; }
    CScene& Scene() { return m_opened.scene; }
    const CPreparedScene& At(float frame = 0) { return m_opened.At(frame); }
    CBytes Saved() {
        m_edits.SettleForSaving();
        auto bytes = SceneTo3ds(m_opened.scene);
        EXPECT_TRUE(bytes.HasValue());
        return bytes ? bytes.Value() : CBytes();
    }
    /** The scene as it comes back from a file. */
    const CPreparedScene& Reopened(float frame = 0) {
        return m_reopened.emplace(Saved(), m_opened.scene.Textures()).At(frame);
    }

  private:
    COpened m_opened;
    CSceneEdits m_edits;
    std::optional<COpened> m_reopened;
};

inline const CPreparedNode* NodeOf(const CPreparedScene& scene, std::string_view name) {
    for (const CPreparedNode& node : scene.nodes) {
        if (node.name == name) return &node;
    }
    return nullptr;
}

// --- files to edit -----------------------------------------------------------------------------------------

inline CBytes Group(std::string_view material, std::initializer_list<std::uint16_t> faces) {
    return Chunk(0x4130, Text(material) + Words({static_cast<std::uint16_t>(faces.size())}) + Values(faces));
}
inline CBytes RedCube(std::string_view name, const CBytes& parts = {}) {
    return Mesh(name, CubePoints() + CubeFaces(Group("Red", {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11})) + parts);
}
inline CBytes Rotation(std::initializer_list<CBytes> keys) {
    CBytes all;
    std::uint32_t frame = 0;
    for (const CBytes& key : keys) {
        all = all + Dwords({frame}) + Words({0}) + key;
        frame += 10;
    }
    return Track(0xB021, static_cast<std::uint32_t>(keys.size()), all);
}
inline CBytes Instance(std::string_view name) {
    return Chunk(0xB011, Text(name));
}
inline CBytes DiffuseColor(std::uint8_t r, std::uint8_t g, std::uint8_t b) {
    return Chunk(0xA020, Chunk(0x0011, Values<std::uint8_t>({r, g, b})));
}
/** Texture coordinates for the eight points of a cube. */
inline CBytes CubeTexels() {
    return Chunk(0x4140, Words({8}) + Floats({0, 0, 1, 0, 0, 1, 1, 1, 0, 0, 1, 0, 0, 1, 1, 1}));
}

/** One node of each kind that is moved in its own way. "Child" hangs on a turned and stretched parent,
 * "OfUnkeyed" on one that its mesh places; "Half" has faces without a material. */
inline CBytes ZooFile() {
    const CBytes meshes =
        Material("Red", DiffuseColor(255, 0, 0)) + Material("Blue", DiffuseColor(0, 0, 255)) +
        RedCube("Keyed") + RedCube("Animated", CubeTexels()) + RedCube("Parent") + RedCube("Child") +
        RedCube("Unkeyed", Matrix({1, 0, 0, 0, 1, 0, 0, 0, 1, 5, 6, 7})) + RedCube("OfUnkeyed") +
        RedCube("NoNode") +
        Mesh("Half", CubePoints() + CubeFaces(Group("Red", {0, 1}) + Group("Blue", {2, 3})) + CubeTexels() +
                         Matrix({-1, 0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0}));
    const CBytes turned = Rotation({Floats({0.5f, 0, 0, 1})}) + Track(0xB022, 1, Key(0, {2, 1, 3}));
    const CBytes moving = Track(0xB020, 2, Key(0, {10, 0, 0}) + Key(10, {20, 5, 0})) +
                          Rotation({Floats({0.3f, 1, 0, 0}), Floats({1.57079633f, 0, 1, 0})});
    return Scene(meshes,
                 Keyframer(ObjectNode(0, "Keyed", 65535, AtPosition(1, 2, 3)) +
                           ObjectNode(1, "Animated", 65535, moving) +
                           ObjectNode(2, "Parent", 65535, AtPosition(-9, 0, 0) + turned) +
                           ObjectNode(3, "Child", 2, AtPosition(3, 0, 0)) + ObjectNode(4, "Unkeyed", 65535) +
                           ObjectNode(5, "OfUnkeyed", 4, AtPosition(0, 0, 9)) +
                           ObjectNode(6, "Half", 65535, AtPosition(0, 30, 0))));
}

/** Two nodes that show one mesh, and a third with the same material. */
inline CBytes TwinsFile() {
    return Scene(Material("Red", DiffuseColor(255, 0, 0)) + RedCube("Box") + RedCube("Other"),
                 Keyframer(ObjectNode(0, "Box", 65535, AtPosition(0, 0, 0)) +
                           ObjectNode(1, "Box", 65535, AtPosition(5, 0, 0) + Instance("Two")) +
                           ObjectNode(2, "Other", 65535, AtPosition(9, 0, 0))));
}

/** Meshes whose matrices mirror, each shown by two nodes, of which the one or the other mirrors too. */
inline CBytes MirrorsFile() {
    const CBytes matrix = Matrix({-1, 0, 0, 0, 1, 0, 0, 0, 1, 4, 0, 0});
    const CBytes mirrors = Track(0xB022, 1, Key(0, {-1, 1, 1}));
    return Scene(Material("Red", DiffuseColor(255, 0, 0)) + RedCube("L", matrix) + RedCube("R", matrix),
                 Keyframer(ObjectNode(0, "L", 65535, AtPosition(0, 0, 0)) +
                           ObjectNode(1, "L", 65535, AtPosition(5, 0, 3) + mirrors + Instance("Two")) +
                           ObjectNode(2, "R", 65535, AtPosition(0, 9, 0) + mirrors) +
                           ObjectNode(3, "R", 65535, AtPosition(5, 9, 3) + Instance("Two"))));
}

/** Cubes whose points stand where they belong, and whose keys say the same once more; "Odd" has none. */
inline CBytes PlacedTwiceFile(bool withOdd) {
    const auto cube = [](std::string_view name, float x) {
        return Mesh(name, CubePoints(x, 0, 0) + CubeFaces());
    };
    const CBytes odd = ObjectNode(2, "Odd", 65535, AtPosition(0, 0, 0));
    return Scene(cube("A", 10) + cube("B", 20) + (withOdd ? cube("Odd", 30) : CBytes()),
                 Keyframer(ObjectNode(0, "A", 65535, AtPosition(10, 0, 0)) +
                           ObjectNode(1, "B", 65535, AtPosition(20, 0, 0)) + (withOdd ? odd : CBytes())));
}

/** A cube that morphs into a ball that nothing else shows, and another cube. */
inline CBytes MorphFile() {
    const CBytes morph = Track(0xB026, 1, Dwords({0}) + Words({0}) + Text("Ball"));
    return Scene(Cube("Ball") + Cube("Shape") + Cube("Other"),
                 Keyframer(ObjectNode(0, "Shape", 65535, AtPosition(0, 0, 0) + morph) +
                           ObjectNode(1, "Other", 65535, AtPosition(5, 0, 0))));
}

/** Another file's node: a flat square round (0.5, 0.5, 0), red as well, but of another red. */
inline CBytes SquareFile() {
    const CBytes points = Points({0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0});
    const CBytes faces = Faces({0, 1, 2, 0, 2, 3}, Group("Red", {0, 1}));
    return Scene(Material("Red", DiffuseColor(128, 0, 0)) + Cube("Other") + Mesh("Square", points + faces),
                 Keyframer(ObjectNode(0, "Other", 65535, AtPosition(0, 0, 0)) +
                           ObjectNode(1, "Square", 65535,
                                      AtPosition(50, 60, 70) + Chunk(0xB013, Floats({0.5f, 0.5f, 0})))));
}
