// SPDX-License-Identifier: MIT
#include "model/prepare/prepare_scene.h"

#include <gtest/gtest.h>

#include <numbers>
#include <vector>

#include "model/prepare/facing.h"
#include "model/read_3ds/CReadScene.h"
#include "row_name.h"

namespace {
void ExpectNear(CVec3 actual, CVec3 expected, float tolerance = 1e-4f) {
    EXPECT_LT(Length(actual - expected), tolerance) << actual.x << " " << actual.y << " " << actual.z;
}

CVec3 DrawnPoint(const CPreparedScene& prepared, std::size_t node, std::size_t vertex) {
    const CPreparedNode& n = prepared.nodes[node];
    return n.meshToWorld.TransformPoint(
        prepared.meshes[static_cast<std::size_t>(n.mesh)].vertices[vertex].Position());
}

CBytes SmoothCube(const std::vector<std::uint32_t>& masks) {
    CBytes list;
    for (const std::uint32_t mask : masks) Put(list, mask);
    return Scene(Mesh("Cube", CubePoints() + CubeFaces(Chunk(0x4150, list))));
}

struct CSmoothing {
    const char* name;
    std::vector<std::uint32_t> masks;  ///< of the 12 triangles: bottom, top, front, back, left, right
    std::size_t vertices;
};
class SmoothingGroups : public testing::TestWithParam<CSmoothing> {};

TEST_P(SmoothingGroups, SplitVertices) {
    const CReadScene cube(SmoothCube(GetParam().masks));
    EXPECT_EQ(cube.prepared.meshes[0].vertices.size(), GetParam().vertices);
    for (const CPreparedVertex& vertex : cube.prepared.meshes[0].vertices)
        EXPECT_NEAR(Length(vertex.Normal()), 1, 1e-3f);
}

const CSmoothing kSmoothings[] = {{"None", {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}, 24},
                                  {"OneForAll", {1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1}, 8},
                                  {"OneForEachSide", {1, 1, 2, 2, 4, 4, 8, 8, 16, 16, 32, 32}, 24},
                                  {"TopAloneRestTogether", {1, 1, 2, 2, 1, 1, 1, 1, 1, 1, 1, 1}, 12},
                                  {"EqualUnionsShareAVertex", {3, 3, 3, 3, 1, 1, 1, 1, 3, 3, 1, 1}, 8}};
INSTANTIATE_TEST_SUITE_P(PrepareSceneTest, SmoothingGroups, testing::ValuesIn(kSmoothings), kRowName);

TEST(PrepareSceneTest, ManyBoxesShowHalfTheirSurface) {
    CPreparedScene scene = CReadScene(SmoothCube({0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0})).prepared;
    const CPreparedNode box = scene.nodes.at(0);
    scene.nodes.assign(10'000, box);
    scene.triangleCount = 12 * scene.nodes.size();
    EXPECT_NEAR(FrontShare(scene, {1, -1, 1}), 0.5f, 0.05f);
}

/** The normal of the first of three faces that meet in an edge, at that edge. */
CVec3 FirstNormalOfSheet(std::initializer_list<std::uint32_t> masks) {
    const CReadScene sheet(Scene(Mesh("Sheet", Points({0, 0, 0, 0, 0, 1, -1, 1, 0, -1, 0, 0, -1, -1, 0}) +
                                                   Faces({0, 1, 2, 0, 1, 3, 0, 1, 4}, Smoothing(masks)))));
    const CPreparedMesh& mesh = sheet.prepared.meshes[0];
    return mesh.vertices[mesh.Index(0)].Normal();
}

TEST(PrepareSceneTest, SmoothingIsNotPassedOn) {
    // The middle face shares with both others, which do not share with each other.
    EXPECT_EQ(FirstNormalOfSheet({1, 3, 2}), FirstNormalOfSheet({1, 1, 0}));
    EXPECT_NE(FirstNormalOfSheet({1, 3, 2}), FirstNormalOfSheet({1, 1, 1}));
}

TEST(PrepareSceneTest, FanOfManyFacesKeepsItsNormal) {
    constexpr std::uint16_t kFaces = 5000;
    CBytes points = Words({kFaces + 1}) + Floats({0, 0, 1});
    CBytes faces = Words({kFaces}), masks;
    for (std::uint16_t i = 0; i < kFaces; ++i) {
        const float angle = 2 * std::numbers::pi_v<float> * static_cast<float>(i) / kFaces;
        points = std::move(points) + Floats({std::cos(angle), std::sin(angle), 0});
        faces = std::move(faces) + Words({0, static_cast<std::uint16_t>(i + 1),
                                          static_cast<std::uint16_t>((i + 1) % kFaces + 1), 7});
        Put(masks, std::uint32_t{1} << (i % 32));
    }
    const CReadScene fan(
        Scene(Mesh("Fan", Chunk(0x4110, points) + Chunk(0x4120, faces + Chunk(0x4150, masks)))));
    const CPreparedMesh& mesh = fan.prepared.meshes[0];
    ExpectNear(mesh.vertices[mesh.Index(0)].Normal(), {0, 0, 1}, 0.01f);
}

TEST(PrepareSceneTest, FaceOnTheSeamOfAWrappedMapGoesOn) {
    const CBytes texels = Chunk(0x4140, Words({3}) + Floats({0.9f, 0, 0.1f, 0, 0.9f, 1}));
    const CBytes mesh = Points({0, 0, 0, 1, 0, 0, 0, 1, 0}) + texels +
                        Chunk(0x4120, Words({1, 0, 1, 2, 7 | 8}) + Chunk(0x4130, Text("M") + Words({1, 0})));
    const CReadScene seam(
        Scene(Material("M", Chunk(0xA200, Chunk(0xA300, Text("X.PNG")))) + Mesh("Seam", mesh)));
    const CPreparedMesh& prepared = seam.prepared.meshes[0];
    ASSERT_EQ(prepared.texCoords.size(), 3u);
    EXPECT_FLOAT_EQ(prepared.texCoords[prepared.Index(1)].x, 1.1f);
    EXPECT_FLOAT_EQ(prepared.texCoords[prepared.Index(0)].x, 0.9f);
}

enum class ESeam { NoMap, Differs, Same };

/** Two faces that meet at an edge whose two points are repeated; folded flat they would be front and back. */
CPreparedMesh FacesAtASeam(ESeam seam, bool backToBack) {
    const float x = backToBack ? 1.0f : -1.0f, z = backToBack ? 0.0f : 1.0f;
    const CBytes points = Points({0, 0, 0, 0, 1, 0, 1, 0, 0, -0.0f, 0, 0, 0, 1, -0.0f, x, 0, z});
    const float other = seam == ESeam::Same ? 0.0f : 0.5f;
    const CBytes texels = Chunk(0x4140, Words({6}) + Floats({0, 0, 0, 1, 1, 0, other, 0, other, 1, 0.7f, 0}));
    const CBytes faces = Faces({0, 2, 1, 3, 4, 5}, Smoothing({1, 1}));
    return CReadScene(Scene(Mesh("Seam", points + (seam == ESeam::NoMap ? CBytes{} : texels) + faces)))
        .prepared.meshes[0];
}

TEST(PrepareSceneTest, SeamOfAMapStaysSmooth) {
    const auto normals = [](const CPreparedMesh& mesh) {
        return std::pair{mesh.vertices[mesh.Index(0)].Normal(), mesh.vertices[mesh.Index(3)].Normal()};
    };
    const auto [left, right] = normals(FacesAtASeam(ESeam::Differs, false));
    ExpectNear(left, right);
    for (const ESeam onPurpose : {ESeam::NoMap, ESeam::Same}) {
        const auto [hardLeft, hardRight] = normals(FacesAtASeam(onPurpose, false));
        EXPECT_LT(Dot(hardLeft, hardRight), 0.9f) << "nothing needs two points but the edge";
    }
    const auto [front, back] = normals(FacesAtASeam(ESeam::Differs, true));
    ExpectNear(front, {0, 0, 1});
    ExpectNear(back, {0, 0, -1});
}

/** The normal of a mesh of at most two smooth faces at the first corner of the first. */
CVec3 FirstNormal(std::initializer_list<float> points, std::initializer_list<std::uint16_t> corners) {
    const CReadScene scene(Scene(Mesh("M", Points(points) + Faces(corners, Smoothing({1, 1})))));
    const CPreparedMesh& mesh = scene.prepared.meshes[0];
    return mesh.vertices[mesh.Index(0)].Normal();
}

TEST(PrepareSceneTest, FaceWithoutAreaSaysNothing) {
    // The pole of a sphere whose exporter made a row of points there, some rounding errors apart.
    ExpectNear(FirstNormal({0, 0, 1, 1, 0, 1, 1, 1, 1, 0, 0, 1.0000002f}, {0, 1, 2, 0, 2, 3}), {0, 0, 1},
               0.01f);
    // All faces are like that: still some normal.
    EXPECT_NEAR(Length(FirstNormal({0, 0, 1, 1, 0, 1, 0, 0, 1.0000002f}, {0, 1, 2})), 1, 1e-3f);
}

TEST(PrepareSceneTest, FaceThatIsTurnedOverIsNotAveraged) {
    const std::initializer_list<float> kRoof = {0, 0, 0, 0, 1, 0, 1, 0, 0, -1, 0, 1};
    EXPECT_LT(FirstNormal(kRoof, {0, 2, 1, 0, 1, 3}).z, 0.95f) << "wound alike, so smooth";
    ExpectNear(FirstNormal(kRoof, {0, 2, 1, 1, 0, 3}), {0, 0, 1});
}

TEST(PrepareSceneTest, FacesAreBatchedByMaterialAndNoneIsLost) {
    const CBytes groups =
        Chunk(0x4130, Text("B") + Words({2, 0, 4})) + Chunk(0x4130, Text("A") + Words({1, 7}));
    const CReadScene cube(
        Scene(Material("A") + Material("B") + Mesh("Cube", CubePoints() + CubeFaces(groups))));
    const CPreparedMesh& mesh = cube.prepared.meshes[0];
    std::vector<std::uint32_t> triangles(3);
    std::uint32_t next = 0;
    for (const CPreparedBatch& batch : mesh.batches) {
        EXPECT_EQ(batch.firstIndex, next);
        next += batch.indexCount;
        triangles[batch.material] = batch.indexCount / 3;
    }
    EXPECT_EQ(triangles, (std::vector<std::uint32_t>{1, 2, 9}));
    EXPECT_EQ(next, mesh.IndexCount());
}

TEST(PrepareSceneTest, MeshIsDrawnWhereTheFileHasIt) {
    const CBytes moved = Matrix({0, 1, 0, -1, 0, 0, 0, 0, 1, 10, 0, 0}),
                 mirrored = Matrix({-1, 0, 0, 0, 1, 0, 0, 0, 1, 4, 0, 0});
    const auto keys = [](float scaleX) {
        return Keyframer(
            ObjectNode(0, "Cube", 65535, AtPosition(4, 0, 0) + Track(0xB022, 1, Key(0, {scaleX, 1, 1}))));
    };
    const CBytes dummy = Keyframer(ObjectNode(0, "$$$DUMMY", 65535)),
                 unkeyed = Keyframer(ObjectNode(0, "Cube", 65535));
    // Keys that mirror, too, and keys that do not must give the same picture.
    for (const auto& [matrix, nodes] : {std::pair{moved, CBytes{}},
                                        {moved, dummy},
                                        {moved, unkeyed},
                                        {mirrored, CBytes{}},
                                        {mirrored, dummy},
                                        {mirrored, unkeyed},
                                        {mirrored, keys(-1)},
                                        {mirrored, keys(1)}}) {
        const CReadScene cube(Scene(Mesh("Cube", CubePoints() + CubeFaces() + matrix), nodes));
        ExpectNear(DrawnPoint(cube.prepared, cube.prepared.nodes.size() - 1, 0), {-1, -1, -1});
        EXPECT_FALSE(cube.prepared.nodes.back().mirrored);
    }
}

TEST(PrepareSceneTest, HierarchyAndPivotPlaceInstances) {
    const CBytes quarterTurn = Track(0xB021, 1, Key(0, {std::numbers::pi_v<float> / 2, 0, 0, 1}));
    const CBytes nodes =
        ObjectNode(0, "$$$DUMMY", 65535, AtPosition(100, 0, 0)) +
        ObjectNode(1, "Cube", 0, Chunk(0xB013, Floats({1, 0, 0})) + AtPosition(0, 50, 0) + quarterTurn) +
        ObjectNode(2, "Cube", 1, Chunk(0xB011, Text("copy")) + AtPosition(0, 0, 7));
    const CReadScene scene(Scene(Cube(), Keyframer(nodes)));
    ASSERT_EQ(scene.prepared.nodes.size(), 3u);
    EXPECT_EQ(scene.prepared.nodes[2].name, "Cube.copy");
    EXPECT_EQ(scene.prepared.nodes[1].mesh, scene.prepared.nodes[2].mesh);
    // Corner (-1,-1,-1): less the pivot (-2,-1,-1). lib3ds turns by the negative angle about z: (-1, 2, -1).
    const CVec3 drawn = DrawnPoint(scene.prepared, 1, 0);
    ExpectNear(drawn, {99, 52, -1});
    EXPECT_EQ(scene.prepared.triangleCount, 24u);
}

/** A mesh of one triangle in the plane z = 0 that faces up or down. */
CBytes Triangle(std::string_view name, bool up, float x = 0) {
    return Mesh(name, Points({x, 0, 0, x + 1, 0, 0, x, 1, 0}) + (up ? Faces({0, 1, 2}) : Faces({0, 2, 1})));
}

TEST(PrepareSceneTest, SceneThatFacesAwayIsShownFromBothSides) {
    const CBytes up = Triangle("Up", true, 3), down = Triangle("Down", false);
    // Where both are, something is seen already.
    for (const auto& [meshes, bothSides] :
         {std::pair{down, true}, {up, false}, {down + up, false}, {Cube(), false}})
        EXPECT_EQ(CReadScene(Scene(meshes)).prepared.materials.back().twoSided, bothSides);
}

struct CDarkness {
    const char* name;
    CPreparedLight light;
    float ambient;
    bool joins;
};
class DarkFiles : public testing::TestWithParam<CDarkness> {};

TEST_P(DarkFiles, AreLitFromTheEyeToo) {
    CPreparedScene scene = CReadScene(Scene(Cube())).prepared;
    scene.lights = {GetParam().light};
    scene.ambientLight = {GetParam().ambient, GetParam().ambient, GetParam().ambient};
    JoinHeadlightIfDark(scene);
    EXPECT_EQ(scene.headlightJoins, GetParam().joins);
    EXPECT_EQ(!scene.notes.empty(), GetParam().joins);
}

constexpr CVec3 kAbove{2, 3, 20};
const CDarkness kDarknesses[] = {
    {"Lamp", {.position = kAbove}, 0, false},
    {"LampThatIsOff", {.off = true, .position = kAbove}, 0, false},
    {"DimLamp", {.position = kAbove, .multiplier = 0.05f}, 0, true},
    {"DimLampInAmbientLight", {.position = kAbove, .multiplier = 0.05f}, 0.3f, false},
    {"LampInside", {.position = {0, 0, 0}}, 0, true},
    {"SpotAtTheModel", {.spot = true, .position = kAbove, .target = {0, 0, 0}}, 0, false},
    {"HeadlampAwayFromTheModel", {.spot = true, .position = {0, 0, 1.1f}, .target = {0, 0, 9}}, 0, true},
    {"OutOfRange", {.position = kAbove, .attenuate = true, .innerRange = 1, .outerRange = 9}, 0, true}};
INSTANTIATE_TEST_SUITE_P(PrepareSceneTest, DarkFiles, testing::ValuesIn(kDarknesses), kRowName);

TEST(PrepareSceneTest, PointsThatStandInPlaceAreNotMovedAgainByKeys) {
    for (const bool standInPlace : {true, false}) {
        const float x = standInPlace ? 40 : 0, middle = standInPlace ? 0.5f : 0;
        const auto node = [](std::uint16_t id, const char* name, float at) {
            return ObjectNode(id, name, 65535, AtPosition(at, 0, 0) + Track(0xB022, 1, Key(0, {1, 1, 1})));
        };
        const CReadScene scene(Scene(Triangle("A", true, x) + Triangle("B", true, -x),
                                     Keyframer(node(0, "A", 40 + middle) + node(1, "B", -40 + middle))));
        ExpectNear(DrawnPoint(scene.prepared, 0, 0), {40, 0, 0});
        ExpectNear(DrawnPoint(scene.prepared, 1, 0), {-40, 0, 0});
    }
}

TEST(PrepareSceneTest, BlackMaterialWithoutItsPictureIsGrey) {
    const CBytes black = Chunk(0xA010, Chunk(0x0011, Values<std::uint8_t>({0, 0, 0}))) +
                         Chunk(0xA020, Chunk(0x0011, Values<std::uint8_t>({0, 0, 0})));
    const CBytes map = Chunk(0xA200, Chunk(0xA300, Text("GONE.JPG")));
    const CReadScene scene(Scene(Material("Covered", black + map) + Material("Plain", black) + Cube()));
    EXPECT_GT(scene.prepared.materials[0].diffuse.x, 0.5f);
    EXPECT_EQ(scene.prepared.materials[1].diffuse.x, 0.0f);
}

TEST(PrepareSceneTest, SameNamedMeshesEachHaveTheirNode) {
    const CBytes nodes =
        ObjectNode(0, "Cube", 65535, AtPosition(0, 0, 0)) + ObjectNode(1, "Cube", 65535, AtPosition(9, 0, 0));
    const CReadScene scene(Scene(Cube() + Cube(), Keyframer(nodes)));
    ASSERT_EQ(scene.prepared.nodes.size(), 2u);
    EXPECT_NE(scene.prepared.nodes[0].mesh, scene.prepared.nodes[1].mesh);
    EXPECT_NE(scene.prepared.nodes[0].name, scene.prepared.nodes[1].name);
}

TEST(PrepareSceneTest, TwoFullTurnsBetweenTwoKeysAreTurned) {
    const float turns = 4 * std::numbers::pi_v<float>;
    const CBytes node =
        ObjectNode(0, "Cube", 65535, Track(0xB021, 2, Key(0, {0, 0, 0, 1}) + Key(80, {turns, 0, 0, 1})));
    CReadScene cube(Scene(Cube(), Keyframer(node)));
    EXPECT_TRUE(cube.prepared.animated);
    const CVec3 start = DrawnPoint(cube.prepared, 0, 0);
    ExpectNear(DrawnPoint(cube.At(20), 0, 0), {-start.x, -start.y, start.z}, 1e-3f);  // half a turn
    ExpectNear(DrawnPoint(cube.At(80), 0, 0), start, 1e-3f);
}

TEST(PrepareSceneTest, HideTrackSwitchesAtItsKeys) {
    const CBytes keys = Dwords({10}) + Words({0}) + Dwords({20}) + Words({0});
    CReadScene cube(
        Scene(Cube() + Cube("Other"),
              Keyframer(ObjectNode(0, "Cube", 65535, AtPosition(0, 0, 0) + Track(0xB029, 2, keys)))));
    for (const auto& [frame, visible] : {std::pair{0.f, true}, {10.f, false}, {19.f, false}, {20.f, true}}) {
        EXPECT_EQ(cube.At(frame).nodes[0].visible, visible) << frame;
    }
}

/** A square whose node turns it by 45 degrees: its box would be half as wide again. */
TEST(PrepareSceneTest, BoundsAreThoseOfTheVertices) {
    const CBytes keys = AtPosition(5, 0, 0) + Track(0xB021, 2,
                                                    Key(0, {std::numbers::pi_v<float> / 4, 0, 0, 1}) +
                                                        Key(10, {std::numbers::pi_v<float> / 4, 0, 0, 1}));
    CReadScene diamond(
        Scene(Mesh("D", Points({1, 0, 0, 0, 1, 0, -1, 0, 0, 0, -1, 0}) + Faces({0, 1, 2, 0, 2, 3})),
              Keyframer(ObjectNode(0, "D", 65535, keys))));
    const float side = std::sqrt(0.5f);
    for (const float frame : {0.0f, 10.0f}) {
        EvaluateNodes(diamond.prepared, diamond.scene, frame);
        const float turned = frame == 0 ? side : 1.0f;
        ExpectNear(diamond.prepared.bounds.max, {5 + turned, turned, 0});
        EXPECT_NEAR(diamond.prepared.boundingSphere.radius, 1, 1e-4f);
    }
}

/** A triangle whose third point goes from height 1 over 3 to 1 in another place, and a track's faults. */
class Morph : public testing::Test {
  protected:
    static CBytes Shape(std::string_view name, float height, const CBytes& more = {}) {
        return Mesh(name, Points({0, 0, 0, 1, 0, 0, 0, 1, height}) + Faces({0, 1, 2}) + more);
    }
    static CBytes MorphKey(std::uint32_t frame, std::string_view shape) {
        return Dwords({frame}) + Words({0}) + Text(shape);
    }
    static CBytes Into(std::string_view second) {
        return AtPosition(0, 0, 0) + Track(0xB026, 2, MorphKey(0, "A") + MorphKey(10, second));
    }
    static float Height(CReadScene& read, float frame, std::size_t node = 0) {
        EvaluateNodes(read.prepared, read.scene, frame);
        return read.prepared.nodes[node].worldBounds.max.z;
    }
};

TEST_F(Morph, ShapesAreBlendedBetweenKeys) {
    // The target stands elsewhere in the file; its shape counts, in its own coordinates.
    CReadScene read(Scene(Shape("A", 1) + Shape("B", 13, Matrix({1, 0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 10})),
                          Keyframer(ObjectNode(0, "A", 65535, Into("B")) + ObjectNode(1, "B", 65535))));
    EXPECT_TRUE(read.prepared.animated);
    const std::uint64_t stamp = read.prepared.meshes[0].stamp;
    for (const auto& [frame, height] : {std::pair{0.0f, 1.0f}, {5.0f, 2.0f}, {10.0f, 3.0f}, {20.0f, 3.0f}})
        EXPECT_NEAR(Height(read, frame), height, 1e-4f) << frame;
    EXPECT_NE(read.prepared.meshes[0].stamp, stamp) << "drawn from new buffers";
    EXPECT_FALSE(read.prepared.nodes[1].visible) << "the target";
    EXPECT_GT(read.prepared.meshes[0].vertices[0].Normal().y, -1.0f);
}

TEST_F(Morph, NodesOfOneMeshChangeByThemselves) {
    const auto back = AtPosition(0, 0, 0) + Track(0xB026, 2, MorphKey(0, "B") + MorphKey(10, "A"));
    CReadScene read(Scene(Shape("A", 1) + Shape("B", 3),
                          Keyframer(ObjectNode(0, "A", 65535, Into("B")) + ObjectNode(1, "A", 65535, back) +
                                    ObjectNode(2, "A", 65535, AtPosition(0, 0, 0)))));
    EXPECT_NEAR(Height(read, 2.5f, 0), 1.5f, 1e-4f);
    EXPECT_NEAR(Height(read, 2.5f, 1), 2.5f, 1e-4f);
    EXPECT_NEAR(Height(read, 2.5f, 2), 1, 1e-4f);
}

TEST_F(Morph, ShapeThatDoesNotFitIsNoted) {
    CReadScene read(
        Scene(Shape("A", 1) + Mesh("Four", Points({0, 0, 0, 1, 0, 0, 0, 1, 9, 1, 1, 1}) + Faces({0, 1, 2})),
              Keyframer(ObjectNode(0, "A", 65535, Into("Four")))));
    EXPECT_NEAR(Height(read, 10), 1, 1e-4f);
    ASSERT_FALSE(read.prepared.notes.empty());
    EXPECT_EQ(read.prepared.notes.back().subject, "Four");
}

TEST(PrepareSceneTest, CamerasAndLightsFollowTheirNodes) {
    const auto node = [](std::uint16_t chunk, std::uint16_t id, const char* name, const CBytes& tracks) {
        return Chunk(chunk, NodeId(id) + NodeHeader(name, 65535) + tracks);
    };
    const auto moving = [](float x) { return Track(0xB020, 2, Key(0, {0, 0, 0}) + Key(10, {x, 0, 0})); };
    const auto changing = [](std::uint16_t track, float to) {
        return Track(track, 2, Key(0, {10}) + Key(10, {to}));
    };
    CReadScene read(Scene(
        Chunk(0x4000, Text("Cam") + Chunk(0x4700, Floats({5, 5, 5, 0, 0, 0, 0, 45}))) +
            Chunk(0x4000,
                  Text("Spot") + Chunk(0x4600, Floats({5, 5, 5}) + Chunk(0x4610, Floats({0, 0, 0, 30, 40})))),
        Keyframer(node(0xB003, 0, "Cam", moving(1) + changing(0xB023, 60) + changing(0xB024, 90)) +
                  node(0xB004, 1, "Cam", moving(2)) +
                  node(0xB007, 2, "Spot", moving(3) + changing(0xB027, 50) + changing(0xB028, 20)) +
                  node(0xB006, 3, "Spot", moving(4)))));
    const CPreparedScene& now = read.At(10);
    ExpectNear(now.cameras[0].position, {1, 0, 0});
    ExpectNear(now.cameras[0].target, {2, 0, 0});
    EXPECT_FLOAT_EQ(now.cameras[0].fovDeg, 60);
    EXPECT_FLOAT_EQ(now.cameras[0].rollDeg, 90);
    ExpectNear(now.lights[0].position, {3, 0, 0});
    ExpectNear(now.lights[0].target, {4, 0, 0});
    EXPECT_FLOAT_EQ(now.lights[0].hotspotDeg, 50);
    EXPECT_FLOAT_EQ(now.lights[0].falloffDeg, 50) << "never below the hotspot";
}

TEST(PrepareSceneTest, DoesNotDependOnTheNumberOfThreads) {
    CBytes meshes;
    for (int i = 0; i < 40; ++i)
        meshes = meshes + Mesh("M" + std::to_string(i), CubePoints() + CubeFaces(Smoothing({1, 1, 2, 2, 3})));
    CReadScene scene(Scene(meshes));
    const CPreparedScene one = PrepareScene(scene.scene, {.threads = 1}),
                         many = PrepareScene(scene.scene, {.threads = 7});
    ASSERT_EQ(one.meshes.size(), many.meshes.size());
    for (std::size_t i = 0; i < one.meshes.size(); ++i) {
        const auto &a = one.meshes[i].vertices, &b = many.meshes[i].vertices;
        ASSERT_EQ(a.size(), b.size());
        EXPECT_EQ(0, std::memcmp(a.data(), b.data(), a.size() * sizeof(a[0])));
        EXPECT_EQ(one.meshes[i].indices16, many.meshes[i].indices16);
    }
}
}  // namespace
