// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>
#include <lib3ds/camera.h>
#include <lib3ds/file.h>
#include <lib3ds/light.h>
#include <lib3ds/material.h>
#include <lib3ds/mesh.h>
#include <lib3ds/node.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>

#include "error_code_of.h"
#include "model/open/CSceneReader.h"
#include "model/prepare/prepare_scene.h"
#include "model/read_3ds/C3dsBytes.h"
#include "model/scene/lib3ds_list.h"
#include "model/scene/lib3ds_memory_io.h"
#include "row_name.h"

namespace {
constexpr float kNan = std::numeric_limits<float>::quiet_NaN();

std::string AllNotes(const CPreparedScene& prepared) {
    std::string text;
    for (const CSceneNote& note : prepared.notes) text += note.Text() + "\n";
    return text;
}

CBytes DeepChain(std::uint32_t depth) {
    CBytes nodes;
    for (std::uint32_t i = 0; i < depth; ++i) {
        const auto id = static_cast<std::uint16_t>(i), parent = static_cast<std::uint16_t>(i - 1);
        nodes = std::move(nodes) + ObjectNode(id, i == 0 ? "Cube" : "$$$DUMMY", parent);
    }
    return nodes;
}

/** Headers alone, the outermost first: the table is made at each start of the program. */
CBytes Nested(std::uint16_t id, int depth) {
    CBytes out;
    for (int i = depth; i > 0; --i) {
        Put(out, id);
        Put(out, static_cast<std::uint32_t>(i * 6));
    }
    return out;
}

/** A cube whose one node has the parts. */
CBytes CubeWithKeys(const CBytes& parts, std::uint16_t parent = 65535) {
    return Scene(Cube(), Keyframer(ObjectNode(0, "Cube", parent, parts)));
}
CBytes CubeWith(const CBytes& facesInner, const CBytes& meshParts = {}) {
    return Scene(Material("A") + Mesh("Cube", CubePoints() + CubeFaces(facesInner) + meshParts));
}
/** Two triangles, one of which has a corner at x. */
CBytes TwoTriangles(float x) {
    return Scene(Mesh("Tri", Points({0, 0, 0, 1, 0, 0, 0, 1, 0, x, 0, 0}) + Faces({0, 1, 2, 0, 1, 3})));
}
CBytes WithMainSize(int byte) {
    CBytes file = Scene(Cube());
    std::memset(file.data() + 2, byte, 4);
    return file;
}
CBytes TenColors() {
    CBytes colors = Floats({0.5f});
    for (int i = 0; i < 10; ++i) colors = colors + Chunk(0x0010, Floats({1, 1, 1}));
    return colors;
}

/** A broken file: what is left of it, and what its notes say about it. */
struct CBrokenFile {
    const char* name;
    CBytes bytes;
    std::size_t triangles = 12;
    const char* note = nullptr;  ///< must occur in a note; null: nothing is said
};

class BrokenFile : public testing::TestWithParam<CBrokenFile> {};

TEST_P(BrokenFile, OpensMended) {
    CResult<CScene> scene = CSceneReader::ReadBytes(GetParam().bytes);
    ASSERT_TRUE(scene) << scene.Error().Text();
    CPreparedScene prepared = PrepareScene(scene.Value());
    EXPECT_EQ(prepared.triangleCount, GetParam().triangles);
    if (GetParam().note) {
        EXPECT_NE(AllNotes(prepared).find(GetParam().note), std::string::npos) << AllNotes(prepared);
    } else {
        EXPECT_EQ(AllNotes(prepared), "");
    }
    EXPECT_TRUE(std::isfinite(prepared.boundingSphere.radius));
    EvaluateNodes(prepared, scene.Value(), 50);
    EXPECT_TRUE(std::isfinite(prepared.boundingSphere.radius));
    EXPECT_NE(scene.Value().File(), nullptr);
}

const CBrokenFile kBroken[] = {
    {"MainSizeZero", WithMainSize(0), 12, "size"},
    {"MainSizeTooLarge", WithMainSize(0x7F), 12, "size"},
    {"MeshSectionAlone", Chunk(0x3D3D, Cube()), 12, "mesh section"},
    {"ObjectPastItsParent",
     Scene(Chunk(0x4000, Text("Cube") + Chunk(0x4100, CubePoints() + CubeFaces()), 100000)), 12, "parent"},
    {"PointCountTooLarge",
     Scene(Mesh("Cube", Chunk(0x4110, Words({65535}) + Floats({0, 0, 0})) + CubeFaces())), 0, "shorter"},
    {"FaceIndexOnePast", Scene(Mesh("Cube", CubePoints() + Faces({0, 1, 2, 0, 1, 8}))), 1,
     "missing vertices"},
    {"FacesWithoutPoints", Scene(Mesh("Cube", CubeFaces())), 0},
    {"FacesBeforePoints", Scene(Mesh("Cube", CubeFaces() + CubePoints()))},
    {"PointNotFinite", TwoTriangles(kNan), 1, "not finite"},
    {"PointHuge", TwoTriangles(3e38f), 1, "not finite"},
    {"SmoothingTooShort", CubeWith(Smoothing({1, 1, 1})), 12, "smoothing"},
    {"GroupOfMissingFaces", CubeWith(Chunk(0x4130, Text("A") + Words({2, 0, 99}))), 12, "not there"},
    {"GroupCountTooLarge", CubeWith(Chunk(0x4130, Text("A") + Words({65535, 0}))), 12, "shorter"},
    {"GroupWithoutMaterial", CubeWith(Chunk(0x4130, Text("Gone") + Words({1, 0}))), 12,
     "Material not found: Gone"},
    {"MatrixNotFinite", CubeWith({}, Matrix({kNan, 0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0})), 12, "matrix"},
    {"MatrixSingular", CubeWith({}, Matrix({0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}))},
    {"NameOf5000", Scene(Cube(std::string(5000, 'n'))), 12, "long name"},
    {"MaterialNameWithoutEnd", Scene(Cube() + Chunk(0xAFFF, Chunk(0xA000, Values<char>({'A', 'B'}))))},
    {"MaterialSizeZero", Scene(Cube() + Chunk(0xAFFF, {}, 0)), 12, "parent"},
    {"GradientOfTenColors", Scene(Chunk(0x1300, TenColors()) + Cube())},
    {"NestedMeshSections", Scene(Cube() + Nested(0x3D3D, 20000))},
    {"NestedMaps", Scene(Cube() + Chunk(0xAFFF, Nested(0xA200, 5000)))},
    {"ParentSelf", CubeWithKeys({}, 0), 12, "ancestor"},
    {"ParentCycle", Scene(Cube(), Keyframer(ObjectNode(0, "Cube", 1) + ObjectNode(1, "$$$DUMMY", 0))), 12,
     "ancestor"},
    {"ParentUnknown", CubeWithKeys({}, 77), 12, "parent"},
    {"EqualNodeIds",
     Scene(Cube(), Keyframer(ObjectNode(0, "Cube", 65535) + ObjectNode(0, "$$$DUMMY", 65535))), 12,
     "id of its own"},
    {"DeepChain", Scene(Cube(), Keyframer(DeepChain(20000))), 12, "cut"},
    {"KeyCountTooLarge", CubeWithKeys(Track(0xB020, 0xFFFFFFFF, Key(0, {1, 2, 3}))), 12, "keys"},
    {"KeysOutOfOrder",
     CubeWithKeys(Track(0xB020, 3, Key(9, {0, 0, 0}) + Key(2, {1, 1, 1}) + Key(2, {5, 5, 5}))), 12, "sorted"},
    {"LoopOfOneKey", CubeWithKeys(Track(0xB020, 1, Key(3, {0, 0, 0}), 3))},
    {"RotationNotFinite", CubeWithKeys(Track(0xB021, 2, Key(0, {kNan, 0, 0, 0}) + Key(9, {1, kNan, 0, 0}))),
     12, "not finite"},
};
INSTANTIATE_TEST_SUITE_P(C3dsParserTest, BrokenFile, testing::ValuesIn(kBroken), kRowName);

TEST(C3dsParserTest, WhatIsNoSceneIsRefusedAsBadFormat) {
    for (const CBytes& bytes : {CBytes(), Words({0x4D4D, 0}) + Values<char>({1}), Text("MMMM is no model"),
                                Values<char>({1, 2, 3}) + Scene(Cube())}) {
        const CResult<CScene> scene = CSceneReader::ReadBytes(bytes);
        ASSERT_EQ(CodeOf(scene), EErrorCode::BadFormat);
        EXPECT_FALSE(scene.Error().message.empty());
    }
}

TEST(C3dsParserTest, ReadsNoMoreThanTheBeginningOfWhatIsNoScene) {
    EXPECT_EQ(CSceneReader::ReadFile("/dev/zero").Error().Text(), "/dev/zero: This is not a 3D Studio file");
}

/** A file in which every kind of thing occurs. */
CBytes FullScene() {
    const CBytes map = Chunk(0xA300, Text("WOOD.JPG")) + Chunk(0x0030, Words({75})) +
                       Chunk(0xA351, Words({0x0012})) + Chunk(0xA354, Floats({2})) +
                       Chunk(0xA356, Floats({3})) + Chunk(0xA358, Floats({0.5f})) +
                       Chunk(0xA35C, Floats({30}));
    const CBytes material = Material(
        "Wood", Chunk(0xA020, Chunk(0x0011, Values<std::uint8_t>({255, 128, 0}))) +
                    Chunk(0xA050, Chunk(0x0031, Floats({0.25f}))) + Chunk(0xA200, map) + Chunk(0xA081));
    const CBytes group = Chunk(0x4130, Text("Wood") + Words({3, 0, 1, 5}));
    const CBytes mirrored = Matrix({0, 2, 0, -1, 0, 0, 0, 0, -1, 5, 6, 7});
    const CBytes texels =
        Chunk(0x4140, Words({8}) + Floats({0, 0, 1, 0, 0, 1, 1, 1, 0, 0, 1, 0, 0, 1, 1, 1}));
    const CBytes light =
        Chunk(0x4000, Text("Spot") + Chunk(0x4600, Floats({1, 2, 3}) + Chunk(0x0010, Floats({1, 0.5f, 0})) +
                                                       Chunk(0x4610, Floats({0, 0, 0, 30, 40}))));
    const CBytes camera = Chunk(0x4000, Text("Cam") + Chunk(0x4700, Floats({0, -9, 0, 0, 0, 0, 15, 48})));
    const CBytes rotation =
        Track(0xB021, 3, Key(0, {0, 0, 0, 1}) + Key(10, {1, 0, 0, 1}) + Key(30, {1, 0, 1, 0}));
    const CBytes nodes = ObjectNode(0, "Mirror", 65535,
                                    Chunk(0xB013, Floats({1, 0, 0})) + AtPosition(5, 6, 7) + rotation +
                                        Track(0xB022, 2, Key(0, {1, 1, 1}) + Key(40, {2, 1, 1}))) +
                         ObjectNode(1, "Cube", 0, AtPosition(3, 0, 0));
    return Scene(Chunk(0x2100, Chunk(0x0010, Floats({0.1f, 0.2f, 0.3f}))) +
                     Chunk(0x1200, Chunk(0x0010, Floats({0, 0.5f, 1}))) + Chunk(0x1201) + material +
                     Mesh("Mirror", CubePoints() + texels +
                                        CubeFaces(group + Smoothing({1, 1, 2, 2, 3, 3, 4, 4, 0, 0, 5, 5})) +
                                        mirrored) +
                     Cube() + light + camera,
                 Keyframer(nodes));
}

/** The whole Lib3dsFile must be what lib3ds itself makes of a good file, so that saving loses nothing. */
TEST(C3dsParserTest, GoodFileEqualsWhatLib3dsReads) {
    const CBytes bytes = FullScene();
    CResult<CScene> scene = CSceneReader::ReadBytes(bytes);
    ASSERT_TRUE(scene);
    Lib3dsFile* ours = scene.Value().File();
    const CLib3dsFilePtr peer(lib3ds_file_new());
    CLib3dsMemoryReader reader(bytes);
    ASSERT_TRUE(lib3ds_file_read(peer.get(), reader.Io()));

    for (const char* name : {"Mirror", "Cube"}) {
        const Lib3dsMesh* a = lib3ds_file_mesh_by_name(ours, name);
        const Lib3dsMesh* b = lib3ds_file_mesh_by_name(peer.get(), name);
        ASSERT_EQ(a->points, b->points);
        ASSERT_EQ(a->faces, b->faces);
        ASSERT_EQ(a->texels, b->texels);
        for (unsigned i = 0; i < a->points * 3; ++i)
            EXPECT_NEAR(a->pointL[i / 3].pos[i % 3], b->pointL[i / 3].pos[i % 3], 1e-5f);
        for (unsigned i = 0; i < a->faces; ++i) {
            const Lib3dsFace &face = a->faceL[i], &other = b->faceL[i];
            EXPECT_TRUE(std::equal(face.points, face.points + 3, other.points));
            EXPECT_STREQ(face.material, other.material);
            EXPECT_TRUE(face.smoothing == other.smoothing && face.flags == other.flags);
        }
        EXPECT_EQ(0, std::memcmp(a->matrix, b->matrix, sizeof(a->matrix)));
    }
    lib3ds_file_eval(peer.get(), 17);
    CPreparedScene prepared = PrepareScene(scene.Value());
    EvaluateNodes(prepared, scene.Value(), 17);
    for (const CPreparedNode& node : prepared.nodes) {
        const Lib3dsNode* other = lib3ds_file_node_by_name(peer.get(), node.name.c_str(), LIB3DS_OBJECT_NODE);
        const CMat4 expected = CMat4::FromLib3ds(other->matrix);
        for (std::size_t i = 0; i < 16; ++i)
            EXPECT_NEAR(node.world.m[i], expected.m[i], 1e-4f) << node.name << " " << i;
    }
    EXPECT_EQ(ours->lights->fall_off, peer->lights->fall_off);
    EXPECT_EQ(ours->cameras->fov, peer->cameras->fov);
    EXPECT_EQ(0, std::memcmp(ours->ambient, peer->ambient, sizeof(ours->ambient)));
    EXPECT_EQ(0, std::memcmp(&ours->background, &peer->background, sizeof(ours->background)));
    EXPECT_EQ(0, std::memcmp(&ours->materials->texture1_map, &peer->materials->texture1_map,
                             sizeof(Lib3dsTextureMap)));
}

/** Files that ask for more than a scene may have. */
struct CGreedy {
    const char* name;
    std::size_t count;  ///< of the chunk
    CBytes chunk;
    CBytes (*file)(const CBytes& chunks);
    std::size_t (*taken)(const CScene& scene);
    std::size_t budget;
};
class GreedyFile : public testing::TestWithParam<CGreedy> {};

TEST_P(GreedyFile, IsReadAsFarAsTheBudgetGoes) {
    const CGreedy& greedy = GetParam();
    CBytes chunks;
    for (std::size_t i = 0; i < greedy.count; ++i)
        chunks.insert(chunks.end(), greedy.chunk.begin(), greedy.chunk.end());
    CResult<CScene> scene = CSceneReader::ReadBytes(greedy.file(chunks));
    ASSERT_TRUE(scene);
    EXPECT_EQ(greedy.taken(scene.Value()), greedy.budget);
    const auto& notes = scene.Value().Notes();
    EXPECT_TRUE(std::any_of(notes.begin(), notes.end(), [&](const CSceneNote& note) {
        return note.kind == CSceneNote::EKind::Limited && note.times == greedy.count - greedy.budget;
    }));
}

template <auto First>
std::size_t ListLength(const CScene& scene) {
    return ListOf(scene.Header()->*First).size();
}
CBytes InObject(const CBytes& chunks) {
    return Scene(Chunk(0x4000, Text("x") + chunks));
}
const CGreedy kGreedy[] = {
    {"EmptyMeshes", 10'005, Chunk(0x4100), InObject, ListLength<&Lib3dsFile::meshes>, 10'000},
    {"Lights", 10'003, Chunk(0x4600, Floats({1, 2, 3})), InObject, ListLength<&Lib3dsFile::lights>, 10'000},
    {"Cameras", 10'002, Chunk(0x4700, Floats({0, 0, 0, 1, 1, 1, 0, 50})), InObject,
     ListLength<&Lib3dsFile::cameras>, 10'000},
    {"Materials", 16'390, Chunk(0xAFFF), [](const CBytes& chunks) { return Scene(chunks); },
     ListLength<&Lib3dsFile::materials>, 16'384},
    {"NodesInManySections", 65'010, Chunk(0xB000, Chunk(0xB002)),
     [](const CBytes& chunks) { return Scene(Cube(), chunks); }, ListLength<&Lib3dsFile::nodes>, 65'000},
};
INSTANTIATE_TEST_SUITE_P(C3dsParserTest, GreedyFile, testing::ValuesIn(kGreedy), kRowName);

TEST(C3dsParserTest, RepeatedNamesGetTheNextFreeNumber) {
    const std::string longName(62, 'n');
    CBytes meshes;
    for (const std::string& name :
         {std::string("x"), std::string("x#2"), std::string("x"), std::string("x"), std::string("x#2"),
          longName + "1", longName + "1", longName + "2", longName + "2"})
        meshes = std::move(meshes) + Chunk(0x4000, Text(name) + Chunk(0x4100));
    CResult<CScene> scene = CSceneReader::ReadBytes(Scene(meshes));
    ASSERT_TRUE(scene);
    std::vector<std::string> names;
    for (const Lib3dsMesh* mesh : ListOf(scene.Value().Header()->meshes)) names.emplace_back(mesh->name);
    const std::string cut(61, 'n');
    EXPECT_EQ(names, (std::vector<std::string>{"x", "x#2", "x#3", "x#4", "x#2#2", longName + "1", cut + "#2",
                                               longName + "2", cut + "#3"}));
}

TEST(C3dsParserTest, KindsThatLib3dsDoesNotReadAreConverted) {
    CResult<CScene> scene = CSceneReader::ReadBytes(FullScene());
    ASSERT_TRUE(scene);
    const CPreparedScene prepared = PrepareScene(scene.Value());
    EXPECT_FLOAT_EQ(prepared.materials[0].transparency, 0.25f);  // a float percentage
    EXPECT_NEAR(prepared.materials[0].diffuse.y, 128 / 255.0f, 1e-6f);
    EXPECT_FALSE(prepared.materials[0].texture.tile);

    const CBytes untold = Material("M", Chunk(0xA200, Chunk(0xA300, Text("A.JPG"))));
    CResult<CScene> tiled = CSceneReader::ReadBytes(Scene(untold));
    ASSERT_TRUE(tiled);
    EXPECT_TRUE(PrepareScene(tiled.Value()).materials[0].texture.tile) << "no tiling chunk means tiled";
}

/** Reads past the end show under the address sanitizer, as each prefix has a buffer of its own size. */
TEST(C3dsParserTest, EveryPrefixOfAGoodFileIsHarmless) {
    const CBytes whole = FullScene();
    std::size_t opened = 0;
    for (std::size_t length = 0; length < whole.size(); ++length) {
        CResult<CScene> scene = CSceneReader::ReadBytes(
            CBytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length)));
        if (!scene) continue;
        ++opened;
        const CPreparedScene prepared = PrepareScene(scene.Value(), {.threads = 1, .loadTextures = false});
        EXPECT_LE(prepared.triangleCount, 24u);
        (void)scene.Value().File();
    }
    EXPECT_GT(opened, whole.size() / 2);
}
}  // namespace
