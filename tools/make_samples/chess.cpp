// SPDX-License-Identifier: MIT
#include <lib3ds/file.h>

#include <array>
#include <cmath>

#include "make_samples/picture_file.h"
#include "make_samples/pictures.h"
#include "make_samples/scenes.h"
#include "scene_builder/CSceneBuilder.h"
#include "scene_builder/shapes.h"

namespace scenes {
namespace {

constexpr int kFrames = 120;
constexpr float kSquare = 2.4f;

/** Centre of a square; file and rank count from 0. */
CVec3 SquareAt(int file, int rank) {
    return {(static_cast<float>(file) - 3.5f) * kSquare, (static_cast<float>(rank) - 3.5f) * kSquare, 0};
}

CShape Foot(float radius) {
    const std::array<CVec2, 8> profile{{{0, 0},
                                        {radius, 0},
                                        {radius * 1.05f, 0.12f},
                                        {radius, 0.28f},
                                        {radius * 0.78f, 0.38f},
                                        {radius * 0.80f, 0.50f},
                                        {radius * 0.5f, 0.66f},
                                        {radius * 0.38f, 1.0f}}};
    return shapes::Lathe(profile, {.segments = 36});
}

/** A body that narrows from the foot to a collar at the given height. */
CShape Body(float radius, float height) {
    const std::array<CVec2, 8> profile{{{radius * 0.38f, 0.98f},
                                        {radius * 0.30f, height * 0.6f},
                                        {radius * 0.34f, height - 0.2f},
                                        {radius * 0.62f, height - 0.1f},
                                        {radius * 0.66f, height},
                                        {radius * 0.60f, height + 0.1f},
                                        {radius * 0.3f, height + 0.16f},
                                        {0, height + 0.18f}}};
    return Foot(radius).Add(shapes::Lathe(profile, {.segments = 36}));
}

CShape Pawn() {
    return Body(0.72f, 1.5f).Add(shapes::Sphere(0.46f, 32).Move({0, 0, 1.98f}));
}
CShape Bishop() {
    CShape head = shapes::Sphere(0.44f, 32).Scale({1, 1, 1.5f}).Move({0, 0, 2.95f});
    return Body(0.84f, 2.25f).Add(head).Add(shapes::Sphere(0.14f, 16).Move({0, 0, 3.66f}));
}
CShape Queen() {
    CShape piece = Body(0.92f, 2.9f);
    constexpr std::array<CVec2, 5> kCup{
        {{0.30f, 3.0f}, {0.42f, 3.3f}, {0.66f, 3.85f}, {0.50f, 3.78f}, {0, 3.7f}}};
    piece.Add(shapes::Lathe(kCup, {.segments = 36}));
    for (int i = 0; i < 8; ++i) {
        piece.Add(
            shapes::Sphere(0.12f, 12).Move({0.58f, 0, 3.92f}).Turn(45.0f * static_cast<float>(i), {0, 0, 1}));
    }
    return piece.Add(shapes::Sphere(0.2f, 16).Move({0, 0, 3.95f}));
}
CShape King() {
    CShape piece = Body(0.94f, 3.1f);
    constexpr std::array<CVec2, 5> kCrown{
        {{0.30f, 3.2f}, {0.44f, 3.6f}, {0.62f, 4.0f}, {0.40f, 4.18f}, {0, 4.22f}}};
    piece.Add(shapes::Lathe(kCrown, {.segments = 36}));
    return piece.Add(shapes::Box({0.16f, 0.16f, 0.7f}).Move({0, 0, 4.5f}))
        .Add(shapes::Box({0.5f, 0.15f, 0.15f}).Move({0, 0, 4.58f}));
}
CShape Rook() {
    CShape piece = Body(0.86f, 1.9f);
    constexpr std::array<CVec2, 6> kTower{
        {{0.50f, 2.0f}, {0.58f, 2.1f}, {0.58f, 2.55f}, {0.40f, 2.55f}, {0.40f, 2.3f}, {0, 2.3f}}};
    piece.Add(shapes::Lathe(kTower, {.segments = 36}));
    for (int i = 0; i < 6; ++i) {
        piece.Add(shapes::Box({0.18f, 0.34f, 0.26f})
                      .Move({0.49f, 0, 2.66f})
                      .Turn(60.0f * static_cast<float>(i), {0, 0, 1}));
    }
    return piece;
}
/** Looks over its left shoulder, so that its mirror image is a different shape. */
CShape Knight() {
    constexpr std::array<CVec3, 7> kNeck{{{0, 0, 0.9f},
                                          {-0.14f, 0, 1.4f},
                                          {-0.24f, 0, 1.9f},
                                          {-0.16f, 0, 2.4f},
                                          {0.06f, 0.04f, 2.72f},
                                          {0.32f, 0.12f, 2.74f},
                                          {0.5f, 0.2f, 2.6f}}};
    CShape piece = Foot(0.84f);
    piece.Add(shapes::Tube(kNeck, 0.36f, 24)).Add(shapes::Sphere(0.44f, 28).Move({0.1f, 0.05f, 2.6f}));
    piece.Add(shapes::Sphere(0.3f, 24)
                  .Scale({1.5f, 0.9f, 0.85f})
                  .Turn(22, {0, 0, 1})
                  .Turn(24, {0, 1, 0})
                  .Move({0.62f, 0.25f, 2.44f}));
    for (const float side : {-1.0f, 1.0f}) {
        constexpr std::array<CVec2, 3> kEar{{{0.14f, 0}, {0.09f, 0.22f}, {0, 0.42f}}};
        piece.Add(shapes::Lathe(kEar, {.segments = 12}).Move({-0.08f, 0.2f * side, 2.92f}));
    }
    constexpr std::array<CVec3, 4> kMane{
        {{-0.5f, -0.02f, 1.3f}, {-0.62f, -0.02f, 1.9f}, {-0.5f, 0, 2.5f}, {-0.2f, 0.02f, 2.95f}}};
    return piece.Add(shapes::Tube(kMane, 0.14f, 12));
}

struct CPiece {
    const char* name;
    CShape (*shape)();
    std::vector<int> files;
};

const std::vector<CPiece>& Pieces() {
    static const std::vector<CPiece> kPieces{{"PAWN", Pawn, {0, 1, 2, 3, 4, 5, 6, 7}},
                                             {"ROOK", Rook, {0, 7}},
                                             {"BISHOP", Bishop, {2, 5}},
                                             {"QUEEN", Queen, {3}},
                                             {"KING", King, {4}}};
    return kPieces;
}

/** All pieces of one kind and colour are instances of one mesh. */
void AddPieces(CSceneBuilder& scene, const CPiece& piece, bool white) {
    const std::string mesh = std::string(white ? "W" : "B") + piece.name;
    (void)scene.AddMesh(mesh, piece.shape().Material(white ? "IVORY" : "EBONY"));
    const bool pawn = std::string_view(piece.name) == "PAWN";
    const int rank = white ? (pawn ? 1 : 0) : (pawn ? 6 : 7);
    for (std::size_t i = 0; i < piece.files.size(); ++i) {
        const int file = piece.files[i];
        Lib3dsNode& node = scene.AddObject(mesh, nullptr, SquareAt(file, rank),
                                           i == 0 ? "" : std::string(1, static_cast<char>('a' + file)));
        if (!white) CSceneBuilder::SetTurn(node, 180);
        // The opening move: two squares for the pawns before the kings.
        if (pawn && file == 4) {
            CSceneBuilder::MoveTo(node, white ? 10 : 60, SquareAt(file, rank));
            CSceneBuilder::MoveTo(node, white ? 50 : 100, SquareAt(file, white ? 3 : 4));
            CSceneBuilder::MoveTo(node, kFrames, SquareAt(file, white ? 3 : 4));
        }
    }
}

/** One knight of each colour as it is; white's other is a mirrored mesh, black's other a
 * mirroring scale key. */
void AddKnights(CSceneBuilder& scene) {
    CShape knight = Knight().Turn(90, {0, 0, 1});
    scene.AddPart("WKNIGHT", knight.Material("IVORY"), nullptr, SquareAt(1, 0));
    CShape mirrored = knight;
    (void)scene.AddMesh("WKNIGHT2", mirrored.Scale({-1, 1, 1}), true);
    scene.AddObject("WKNIGHT2", nullptr, SquareAt(6, 0));
    Lib3dsNode& black = scene.AddPart("BKNIGHT", knight.Material("EBONY"), nullptr, SquareAt(1, 7));
    CSceneBuilder::SetTurn(black, 180);
    Lib3dsNode& other = scene.AddObject("BKNIGHT", nullptr, SquareAt(6, 7), "g");
    CSceneBuilder::SetTurn(other, 180);
    CSceneBuilder::SetScale(other, {-1, 1, 1});
}

void AddBoard(CSceneBuilder& scene) {
    scene.AddMaterial(
        "LIGHT",
        {.color = {0.8f, 0.8f, 0.8f}, .shininess = 0.6f, .shininessStrength = 0.5f, .texture = "MARBLE.JPG"});
    scene.AddMaterial("DARK", {.color = {0.3f, 0.3f, 0.3f},
                               .shininess = 0.6f,
                               .shininessStrength = 0.5f,
                               .texture = "BLACKMAR.JPG"});
    scene.AddMaterial("FRAME",
                      {.color = {0.26f, 0.13f, 0.06f}, .shininess = 0.5f, .shininessStrength = 0.4f});
    CShape board;
    for (int square = 0; square < 64; ++square) {
        CShape tile = shapes::Box({kSquare, kSquare, 0.3f});
        for (CVec2& uv : tile.texCoords)
            uv = {uv.x * 0.3f + static_cast<float>(square * 7 % 11) * 0.09f,
                  uv.y * 0.3f + static_cast<float>(square % 5) * 0.2f};
        board.Add(tile.Move(SquareAt(square % 8, square / 8))
                      .Material((square + square / 8) % 2 == 0 ? "DARK" : "LIGHT"));
    }
    scene.AddPart("BOARD", board, nullptr, {0, 0, -0.15f});
    scene.AddPart("FRAME", shapes::Box({9.2f * kSquare, 9.2f * kSquare, 0.8f}).Material("FRAME"), nullptr,
                  {0, 0, -0.45f});
}

}  // namespace

void MakeChess(const std::filesystem::path& folder) {
    SavePicture(pictures::Marble(false), folder / "marble.jpg");
    SavePicture(pictures::Marble(true), folder / "blackmar.jpg");
    CSceneBuilder scene(kFrames);
    scene.File().background.solid = {1, {0.16f, 0.17f, 0.16f}};
    AddBoard(scene);
    scene.AddMaterial(
        "IVORY",
        {.color = {0.74f, 0.67f, 0.52f}, .specular = 0.9f, .shininess = 0.55f, .shininessStrength = 0.6f});
    scene.AddMaterial(
        "EBONY",
        {.color = {0.12f, 0.10f, 0.10f}, .specular = 0.9f, .shininess = 0.6f, .shininessStrength = 0.7f});
    for (const CPiece& piece : Pieces()) {
        AddPieces(scene, piece, true);
        AddPieces(scene, piece, false);
    }
    AddKnights(scene);
    scene.AddSpot("Lamp", {{-16, -14, 30}, {0, 0, 0}}, {1.0f, 0.95f, 0.86f}, {50, 75}, 0.85f);
    scene.AddOmni("Window", {30, 16, 20}, {0.45f, 0.52f, 0.64f}, 0.6f);
    scene.AddCamera("White", {{6, -23, 15}, {0, -1, 0}}, 48);
    scene.AddCamera("Low", {{-15, -15, 4.5f}, {0, 0, 1}}, 44, 4);
    scene.Save(folder / "chess.3ds");
}

}  // namespace scenes
