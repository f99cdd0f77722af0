// SPDX-License-Identifier: MIT
#include "model/read_obj/CObjConv3ds.h"

#include <gtest/gtest.h>
#include <lib3ds/file.h>
#include <lib3ds/mesh.h>

#include <algorithm>
#include <map>
#include <random>

#include "base/math/CVec.h"
#include "error_code_of.h"
#include "files/CTestFolder.h"
#include "model/read_obj/CConverted.h"
#include "row_name.h"

namespace {

/** "a b c" of each face, in the order of the file. */
std::string Faces(const Lib3dsMesh& mesh) {
    std::string text;
    for (Lib3dsDword i = 0; i < mesh.faces; ++i) {
        for (const Lib3dsWord point : mesh.faceL[i].points) text += std::to_string(point) + " ";
        text.back() = ',';
    }
    return text;
}

std::string Smoothing(const Lib3dsMesh& mesh) {
    std::string text;
    for (Lib3dsDword i = 0; i < mesh.faces; ++i) text += std::to_string(mesh.faceL[i].smoothing) + " ";
    return text;
}

/** The areas of all triangles; more than the polygon's where they overlap. */
double Area(const Lib3dsMesh& mesh) {
    double area = 0;
    for (Lib3dsDword i = 0; i < mesh.faces; ++i) {
        const auto at = [&](int k) {
            const float* p = mesh.pointL[mesh.faceL[i].points[k]].pos;
            return CVec3{p[0], p[1], p[2]};
        };
        area += double{Length(Cross(at(1) - at(0), at(2) - at(0)))} / 2;
    }
    return area;
}

// ---- geometry

TEST(CObjConv3ds, TurnsYUpIntoZUp) {
    const CConverted c = Convert("v 1 2 3\nv 4 5 6\nv 7 8 10\nf 1 2 3\n");
    ASSERT_TRUE(c.file);
    const float* p = c.file->meshes->pointL[0].pos;
    EXPECT_EQ(std::vector<float>(p, p + 3), (std::vector<float>{1, -3, 2}));
    EXPECT_EQ(c.file->nodes, nullptr);
}

TEST(CObjConv3ds, ReadsNumbersOfManyKinds) {
    const std::pair<std::string, float> numbers[] = {
        {"-25E-2", -0.25f}, {"+.5", 0.5f},
        {"5.", 5},          {"7e", 7},
        {"1.5mm", 1.5f},    {"2,5", 2},
        {"1e-999", 0},      {"0." + std::string(10'000, '3'), 1.0f / 3},
        {"4#corner", 4},    {"4 0 0 # none", 4},
        {"4 0 0 1 n", 4},   {"4 0 0 1 0.5 nan", 4},  // a colour
    };
    for (const auto& [text, value] : numbers) {
        const CConverted c = Convert("v " + text + "\nv 0 1 0\nv 0 0 1\nf 1 2 3\n");
        ASSERT_TRUE(c.file) << c.error;
        EXPECT_EQ(c.file->meshes->pointL[0].pos[0], value) << text;
    }
}

struct CTextCase {
    const char* name;
    std::string obj;
    std::string expected;
};

class FacesOf : public testing::TestWithParam<CTextCase> {};
TEST_P(FacesOf, FirstMesh) {
    const CConverted c = Convert(GetParam().obj);
    ASSERT_TRUE(c.file) << c.error;
    EXPECT_EQ(Faces(*c.file->meshes), GetParam().expected);
}
const CTextCase kFacesOfRows[] = {
    {"Triangle", kSquare + "f 1 2 3\n", "0 1 2,"},
    {"CountedBackAmidVertices", "v 0 0 0\nv 1 0 0\nv 1 1 0\nf -1 -2 -3\nv 0 1 0\nf 1 -2 -1\n",
     "0 1 2,2 0 3,"},
    {"DosLineEnds", "v 0 0 0\r\nv 1 0 0\r\nv 1 1 0\r\nf 1 2 3\r\n", "0 1 2,"},
    {"OldMacLineEnds", "v 0 0 0\rv 1 0 0\rv 1 1 0\rf 1 2 3\r", "0 1 2,"},
    {"EndsInAContinuedLine", kSquare + "f 1 2 3\rv \\\r", "0 1 2,"},
    {"ByteOrderMark", "\xEF\xBB\xBF" + kSquare + "f 1 2 3\n", "0 1 2,"},
    {"ContinuedLines", "v 0 \\\n 0 0\nv 1 0 0\nv 1 1 0\nf 1 2 \\\r\n3\n", "0 1 2,"},
    {"CommentEndsWithBackslash", kSquare + "# C:\\maps\\\nf 1 2 3\n", "0 1 2,"},
    {"CommentBehindCorners", kSquare + "f 1 2 3 # 4 C:\\\nf 1 3 4#1\nf 1 2 \\\n4 # 3\n",
     "0 1 2,0 2 3,0 1 3,"},
    {"BlanksAndTabs", "  v\t0  0 0 \n\tv 1 0 0\nv 1 1 0\n  f  1\t2   3  \n", "0 1 2,"},
    {"ShorterDiagonal", "v 0 0 0\nv 3 0 0\nv 4 1 0\nv 1 1 0\nf 1 2 3 4\n", "0 1 2,1 3 2,"},
    {"RepeatedCornerLeftOut", kSquare + "f 1 2 2\nf 1 2 3\n", "0 1 2,"},
    {"SamePlaceIsOnePoint", "v 0 0 0\nv 1 0 0\nv 1 1 0\nv 0 0 -0\nv 1 1 0\nv 0 1 0\nf 1 2 3\nf 4 5 6\n",
     "0 1 2,0 2 3,"},
    {"OtherTexelIsAnotherPoint", kSquare + "vt 0 0\nvt 1 1\nf 1/1 2/1 3/1\nf 1/2 3/1 4/1\n", "0 1 2,3 2 4,"},
    {"EqualTexelsAreOne", kSquare + "vt 0 0\nvt 0 0\nf 1/1 2/1 3/1\nf 1/2 3/2 4/2\n", "0 1 2,0 2 3,"},
    {"ImpossibleTexelIgnored", kSquare + "vt 0 0\nf 1/9 2/1 3/-7\n", "0 1 2,"},
    {"ImpossibleCornersLeftOut",
     kSquare + "f 1 2 9\nf 0 1 2\nf -5 1 2\nf 1 2 99999999999999\nf 1 x 2\nf 1 2 4\n" +
         "f 1 2 -9223372036854775809\nf 1 2 18446744073709551617\nf 1 2 " + std::string(10'000, '9') + "\n",
     "0 1 2,"},
    {"OddCorners", kSquare + "f +1 2.0/ 3//\nf 1/1/1/1 3//9 4/-1\n", "0 1 2,0 2 3,"},
};
INSTANTIATE_TEST_SUITE_P(CObjConv3ds, FacesOf, testing::ValuesIn(kFacesOfRows), kRowName);

TEST(CObjConv3ds, TellsHowManyFacesAreLeftOut) {
    EXPECT_TRUE(Convert(kSquare + "f 1 2 9\nf 1 2 8\nf 1 2 3\n")
                    .HasNote("Faces with impossible corners, left out: 2"));
}

TEST(CObjConv3ds, KeepsTextureCoordinates) {
    const CConverted c = Convert(kSquare + "vt 0.25 0.75\nvt nan 1\nf 1/1 2/2 3\n");
    ASSERT_TRUE(c.file);
    const Lib3dsMesh& mesh = *c.file->meshes;
    ASSERT_EQ(mesh.texels, 3u);
    EXPECT_EQ(mesh.texelL[0][0], 0.25f);
    EXPECT_EQ(mesh.texelL[0][1], 0.75f);
    EXPECT_EQ(mesh.texelL[1][0], 0.0f);
    EXPECT_EQ(Convert(kSquare + "vt 1 1\nf 1 2 3\n").file->meshes->texels, 0u);
}

TEST(CObjConv3ds, PolygonsAreCoveredOnce) {
    struct CPolygon {
        std::string points;
        double area;
    };
    const std::vector<CPolygon> polygons{
        {"v 0 0 0\nv 4 0 0\nv 4 4 0\nv 2 1 0\nv 0 4 0\n", 10},  // a bite from above
        {"v 0 0 0\nv 2 0 0\nv 4 0 0\nv 4 4 0\nv 0 4 0\n", 16},  // a corner on an edge
        {"v 0 0 0\nv 6 0 0\nv 6 6 0\nv 0 6 0\nv 0 5 0\nv 5 5 0\nv 5 1 0\nv 0 1 0\n", 16},  // a C
        {"v -10 0 0\nv 1 -1 0\nv 0 0 0\nv 1 1 0\n", 10},                                   // an arrow head
    };
    for (const CPolygon& polygon : polygons) {
        const auto n = std::count(polygon.points.begin(), polygon.points.end(), '\n');
        std::string face = "f";
        for (long i = 1; i <= n; ++i) face += " " + std::to_string(i);
        const CConverted c = Convert(polygon.points + face + "\n");
        ASSERT_TRUE(c.file);
        EXPECT_EQ(c.file->meshes->faces, static_cast<Lib3dsDword>(n - 2));
        EXPECT_NEAR(Area(*c.file->meshes), polygon.area, 1e-5) << polygon.points;
    }
}

TEST(CObjConv3ds, OnlyEdgesOfThePolygonAreVisible) {
    const CConverted c = Convert(kSquare + "f 1 2 3 4\n");
    ASSERT_TRUE(c.file);
    const Lib3dsMesh& mesh = *c.file->meshes;
    ASSERT_EQ(Faces(mesh), "0 1 2,0 2 3,");
    EXPECT_EQ(mesh.faceL[0].flags, LIB3DS_FACE_FLAG_VIS_AB | LIB3DS_FACE_FLAG_VIS_BC);
    EXPECT_EQ(mesh.faceL[1].flags, LIB3DS_FACE_FLAG_VIS_BC | LIB3DS_FACE_FLAG_VIS_AC);
}

TEST(CObjConv3ds, SplitsWhatA3dsMeshCannotHold) {
    std::string obj = "g big\n";
    for (int i = 0; i < 70'002; ++i) obj += "v " + std::to_string(i) + " 0 " + std::to_string(i % 2) + "\n";
    for (int i = 1; i <= 70'000; ++i) {
        obj += "f " + std::to_string(i) + " " + std::to_string(i + 1) + " " + std::to_string(i + 2) + "\n";
    }
    const CConverted c = Convert(obj);
    ASSERT_TRUE(c.file);
    const auto meshes = c.Meshes();
    ASSERT_EQ(meshes.size(), 2u);
    EXPECT_EQ(meshes[0]->faces + meshes[1]->faces, 70'000u);
    EXPECT_LE(meshes[0]->points, 65'535u);
    EXPECT_STRNE(meshes[0]->name, meshes[1]->name);
    for (const Lib3dsMesh* mesh : meshes) {
        for (Lib3dsDword i = 0; i < mesh->faces; ++i) {
            for (const Lib3dsWord point : mesh->faceL[i].points) ASSERT_LT(point, mesh->points);
        }
    }
    EXPECT_EQ(meshes[1]->pointL[meshes[1]->points - 1].pos[0], 70'001.0f);
}

// ---- points and lines

std::string SolidNote(int points, int lines) {
    constexpr const char* kWhy = ", made solid as a scene holds only triangles: ";
    return points > 0 ? "Points" + (kWhy + std::to_string(points))
                      : "Pieces of lines" + (kWhy + std::to_string(lines));
}

struct CSolidCase {
    const char* name;
    std::string obj;
    unsigned faces;
    std::string note;  ///< the first one, or none
};
class SolidsOf : public testing::TestWithParam<CSolidCase> {};
TEST_P(SolidsOf, FirstMesh) {
    const CConverted c = Convert(GetParam().obj);
    ASSERT_TRUE(c.file) << c.error;
    EXPECT_EQ(c.file->meshes->faces, GetParam().faces);
    EXPECT_EQ(c.notes.empty() ? "" : c.notes[0].Text(), GetParam().note);
}
const CSolidCase kSolidsOfRows[] = {
    {"EachPointOnce", kSquare + "p 1 2\n p -3 4/7\n", 24, SolidNote(3, 0)},
    {"EachPieceOnce", kSquare + "l 1 2 3\nl 2 \\\n1\nl 3/1/1 3 4/1\nl 4\n", 24, SolidNote(0, 3)},
    {"VerticesAlone", "vn 0 0 1\n" + kSquare, 32, SolidNote(4, 0)},
    {"NotWhatFacesHave", kSquare + "f 1 2 3 4\np 1 2 3 4\nl 4 3 2 1 4\n", 2, ""},
    {"PlacesCount", kSquare + "v 1 1 -0\np 5\nl 5 4\nf 1 2 3 4\n", 2, ""},
    {"WhatFacesLack", kSquare + "v 0 0 1\nf 1 2 3 4\np 5\nl 1 3\n", 18, SolidNote(1, 1)},
    {"BesideTexels", kSquare + "vt 0 1\nvn 0 0 1\nl 1 3\nf 1/1/1 2/1/1 3/1/1 4/1/1\nl 2 4\n", 18,
     SolidNote(0, 2)},
    {"ImpossibleLeftOut", kSquare + "p 1 9\nl 1 0\n", 8,
     "Points and lines with impossible corners, left out: 2"},
    {"LongLine", kSquare + "p" + std::string(2'000'000, ' ') + "1 # p\n", 8, SolidNote(1, 0)},
};
INSTANTIATE_TEST_SUITE_P(CObjConv3ds, SolidsOf, testing::ValuesIn(kSolidsOfRows), kRowName);

TEST(CObjConv3ds, SolidsKeepGroupAndMaterial) {
    const CConverted c = Convert(kSquare + "g a\nusemtl red\nl 1 2\nf 1 2 3\ng b\nusemtl blue\np 4\n");
    ASSERT_TRUE(c.file);
    const auto meshes = c.Meshes();
    ASSERT_EQ(meshes.size(), 2u);
    EXPECT_EQ(std::string(meshes[1]->name) + " " + meshes[1]->faceL[7].material, "b blue");
    EXPECT_EQ(std::string(meshes[0]->name) + " " + meshes[0]->faceL[0].material, "a red");
}

/** Text with `count` points or separate pieces of lines, which stand apart. */
std::string ManyOf(bool lines, int count) {
    std::string obj;
    for (int i = 0; i < count; ++i) {
        const std::string place = std::to_string(i % 300) + " " + std::to_string(i / 300);
        obj += "v " + place + " 0\n";
        if (lines) obj += "v " + place + " 0.5\nl -1 -2\n";
    }
    return obj;
}

class SolidShapeOf : public testing::TestWithParam<CTextCase> {};
TEST_P(SolidShapeOf, ClosedAndSeenFromOutside) {
    const CConverted c = Convert(GetParam().obj);
    ASSERT_TRUE(c.file) << c.error;
    for (const Lib3dsMesh* mesh : c.Meshes()) {
        std::map<std::pair<int, int>, int> edges;
        double volume = 0;
        const float* origin = mesh->pointL[0].pos;
        for (Lib3dsDword i = 0; i < mesh->faces; ++i) {
            const Lib3dsWord* p = mesh->faceL[i].points;
            const auto at = [&](int k) {
                const float* q = mesh->pointL[p[k]].pos;
                return CVec3{q[0] - origin[0], q[1] - origin[1], q[2] - origin[2]};
            };
            volume += double{Dot(at(0), Cross(at(1), at(2)))};
            for (int k = 0; k < 3; ++k) {
                ++edges[{p[k], p[(k + 1) % 3]}];
                --edges[{p[(k + 1) % 3], p[k]}];
            }
        }
        EXPECT_GT(volume, 0);
        // A mesh may end amid a solid, so a few edges may lack their other side.
        EXPECT_LE(std::count_if(edges.begin(), edges.end(), [](const auto& e) { return e.second != 0; }), 12);
    }
}
INSTANTIATE_TEST_SUITE_P(CObjConv3ds, SolidShapeOf,
                         testing::Values(CTextCase{"Point", "v 1 2 3\n", ""},
                                         CTextCase{"Line", "v 1 2 3\nv 4 4 4\nl 1 2\n", ""},
                                         CTextCase{"UprightLine", "v 0 1 0\nv 0 0 0\nl 1 2\n", ""},
                                         CTextCase{"FarOut", "v 4000000 0 0\nv 4000001 0 0\n", ""},
                                         CTextCase{"ManyPoints", ManyOf(false, 50'001), ""},
                                         CTextCase{"ManyLines", ManyOf(true, 50'001), ""}),
                         kRowName);

TEST(CObjConv3ds, TooManyPointsDoNotHideTheFaces) {
    std::string cloud;
    for (int i = 0; i < 300'000; ++i) cloud += "v " + std::to_string(i) + "\n";
    EXPECT_EQ(Convert(cloud).error, "the file has more points and lines than we can take");
    cloud += kSquare + "f -1 -2 -3\n";
    for (int i = 1; i <= 300'000; i += 10) {
        cloud += "p";
        for (int k = 0; k < 10; ++k) cloud += " " + std::to_string(i + k);
        cloud += "\n";
    }
    const CConverted c = Convert(cloud);
    ASSERT_TRUE(c.file) << c.error;
    EXPECT_EQ(c.file->meshes->faces, 1u);
    // One of the points is a corner of the face.
    EXPECT_TRUE(c.HasNote("Points and lines, left out beside the faces as there are too many: 299999"));
}

// ---- groups and names

class NamesOf : public testing::TestWithParam<CTextCase> {};
TEST_P(NamesOf, AllMeshes) {
    const CConverted c = Convert(kSquare + GetParam().obj);
    ASSERT_TRUE(c.file) << c.error;
    std::string names;
    for (const Lib3dsMesh* mesh : c.Meshes())
        names += std::string(mesh->name) + ":" + std::to_string(mesh->faces) + " ";
    EXPECT_EQ(names, GetParam().expected);
}
const CTextCase kNamesOfRows[] = {
    {"None", "f 1 2 3\n", "Object:1 "},
    {"GroupsComeBack", "g a\nf 1 2 3\ng b\nf 1 2 4\ng a\nf 2 3 4\n", "a:2 b:1 "},
    {"Objects", "o car\nf 1 2 3\no\ndog\no dog\nf 1 2 3\n", "car:1 dog:1 "},
    {"GroupInObject", "o car\ng door\nf 1 2 3\no van\nf 1 2 3\ng van_roof\nf 1 2 3\n",
     "car_door:1 van:1 van_roof:1 "},
    {"SeveralGroups", "g left \t wheel#1 \nf 1 2 3\n", "left wheel#1:1 "},
    {"GroupWithoutName", "g a\nf 1 2 3\ng\nf 1 2 4\n", "a:1 Object:1 "},
    {"LongNamesStayApart",
     "g " + std::string(80, 'x') + "1\nf 1 2 3\ng " + std::string(80, 'x') + "2\nf 1 2 3\n",
     std::string(63, 'x') + ":1 " + std::string(61, 'x') + "#2:1 "},
    {"Utf8NotCutInside", "g " + std::string(62, 'x') + "\xC3\xA4\nf 1 2 3\n", std::string(62, 'x') + ":1 "},
};
INSTANTIATE_TEST_SUITE_P(CObjConv3ds, NamesOf, testing::ValuesIn(kNamesOfRows), kRowName);

// ---- smoothing

const std::string kRoof =  // two squares that meet at the x axis at a right angle
    "v 0 0 0\nv 1 0 0\nv 1 1 0\nv 0 1 0\nv 1 0 1\nv 0 0 1\nvn 0 0 1\nvn 0 1 0\nvn 0 0.7071 0.7071\n";

class SmoothingOf : public testing::TestWithParam<CTextCase> {};
TEST_P(SmoothingOf, FirstMesh) {
    const CConverted c = Convert(GetParam().obj);
    ASSERT_TRUE(c.file) << c.error;
    EXPECT_EQ(Smoothing(*c.file->meshes), GetParam().expected);
}
const CTextCase kSmoothingOfRows[] = {
    {"GroupsKept", kRoof + "s 1\nf 1 2 3\ns 32\nf 1 2 5\ns off\nf 1 2 4\ns 3\nf 1 2 6\n",
     "1 2147483648 0 4 "},
    {"GroupsOver32", kRoof + "s 1\nf 1 2 3\nf 1 3 4\ns 33\nf 2 1 6\nf 2 6 5\ns 0\nf 1 2 4\n", "1 1 2 2 0 "},
    {"OnMeansOne", kRoof + "s on # all\nf 1 2 3\nf 2 1 5\n", "1 1 "},
    {"OffWithoutNormals", kRoof + "s off\nf 1 2 3 4\n", "0 0 "},
    {"CreaseWithoutAWord", kRoof + "f 1 2 3 4\nf 2 1 6 5\n", "1 1 2 2 "},
    {"HardByNormals", kRoof + "f 1//1 2//1 3//1 4//1\nf 2//2 1//2 6//2 5//2\n", "1 1 2 2 "},
    {"SmoothByNormals", kRoof + "f 1//3 2//3 3//1 4//1\nf 2//3 1//3 6//2 5//2\n", "1 1 1 1 "},
    {"NormalsBeatASingleGroup", kRoof + "s 1\nf 1//1 2//1 3//1 4//1\nf 2//2 1//2 6//2 5//2\n", "1 1 2 2 "},
    {"NormalsBeatOff", kRoof + "s off\nf 1//3 2//3 3//1\nf 2//3 1//3 6//2\n", "1 1 "},
    {"LoneFaceIsFlat", kRoof + "f 1//1 2//1 3//1\nf 2//2 1//2 6//2\n", "0 0 "},
};
INSTANTIATE_TEST_SUITE_P(CObjConv3ds, SmoothingOf, testing::ValuesIn(kSmoothingOfRows), kRowName);

// ---- files

TEST(CObjConv3ds, WidePathsAndFailures) {
    const CTestFolder folder;
    const std::string path = folder.Add("gr\xC3\xBCn.obj", kSquare + "f 1 2 3\n");
    const std::wstring wide(path.begin(), path.end() - 9);  // up to "gr": the folder's name is ASCII
    const CLib3dsFilePtr file(CObjConv3ds::Convert(wide + L"gr\u00FCn.obj"));
    ASSERT_TRUE(file);
    EXPECT_EQ(file->meshes->faces, 1u);
    EXPECT_EQ(CObjConv3ds::Convert(folder / "none.obj"), nullptr);
    std::vector<CSceneNote> notes;
    const auto failed = CObjConv3ds::ConvertResult(folder / "none.obj", notes);
    ASSERT_EQ(CodeOf(failed), EErrorCode::NotFound);
    EXPECT_EQ(failed.Error().where, folder / "none.obj");
}

TEST(CObjConv3ds, ReadsUtf16) {
    std::string big = "\xFE\xFF", little = "\xFF\xFE";
    for (const char c : "g x\n" + kSquare + "f 1 2 3\n") {
        (big += '\0') += c;
        (little += c) += '\0';
    }
    for (const std::string& text : {big, little}) {
        const CConverted c = Convert(text);
        ASSERT_TRUE(c.file) << c.error;
        EXPECT_STREQ(c.file->meshes->name, "x");
    }
}

// ---- hostile input

TEST(CObjConv3ds, SaysWhyNothingIsShown) {
    const std::string nothing = "The file has no faces, lines or points",
                      impossible = "No face of the file can be drawn";
    EXPECT_EQ(Convert("").error, nothing);
    EXPECT_EQ(Convert(kSquare + "l 1 1\n").error, nothing);
    EXPECT_EQ(Convert(kSquare + "p 5\n").error, impossible);
    EXPECT_EQ(Convert("f 1 2 3\n").error, impossible);
    for (const std::string number : {"nan", "-INF", "1e999", "-1.#IND", "x"})
        EXPECT_EQ(Convert("v 0 0 0\nv 1 " + number + " 0\nv 1 1 0\nf 1 2 3\n").error, impossible) << number;
    EXPECT_EQ(Convert("v 0 0 0\nv 0 0 0\nv 0 0 0\nf 1 2 3\n").error, impossible);
}

TEST(CObjConv3ds, RefusesFacesOutOfProportionToTheFile) {
    std::string obj = kSquare + "f";
    for (int i = 0; i < 1'200'000; ++i) obj += i % 1000 == 999 ? " 1\nf" : i % 2 ? " 1" : " 2";
    EXPECT_EQ(Convert(obj).error, "the file has more triangles than we can take");
}

TEST(CObjConv3ds, BoundsGroupsAndMaterials) {
    std::string obj = kSquare;
    for (int i = 0; i < 20'000; ++i) {
        obj += "g g" + std::to_string(i) + "\nusemtl m" + std::to_string(i) + "\nf 1 2 3\n";
    }
    const CConverted c = Convert(obj);
    ASSERT_TRUE(c.file);
    EXPECT_EQ(c.Meshes().size(), 16'384u);
    EXPECT_EQ(c.Meshes().back()->faces, 20'000u - 16'383u);
    EXPECT_EQ(c.Materials().size(), 16'384u + 1);
    EXPECT_TRUE(c.HasNote("More than 16,384 groups or materials; the rest share one"));
}

TEST(CObjConv3ds, PolygonsThatFightBackTakeNoTime) {
    std::mt19937 random(1);
    std::string obj, face = "f";
    for (int i = 1; i <= 20'000; ++i) {
        obj += "v " + std::to_string(random() % 1000) + " " + std::to_string(random() % 1000) + " 0\n";
        face += " " + std::to_string(i);
    }
    const CConverted c = Convert(obj + face + "\n");
    ASSERT_TRUE(c.file);
    EXPECT_LE(c.file->meshes->faces, 19'998u);
}

TEST(CObjConv3ds, EveryPrefixHasAnOutcome) {
    const std::string obj =
        kRoof +
        "mtllib a.mtl\nl 1/1 \\\n -2\np 2 -1\no a\ng b\ns 1\nusemtl m\nf 1/1/1 2/2/2 \\\n -1//3 4\nvt 1 1\n";
    const std::string mtl = "newmtl m\nKd 1 1 1\nmap_Kd -s 1 1 1 a.jpg\nd -halo 1\n";
    for (std::size_t i = 0; i <= obj.size(); ++i) (void)Convert(std::string_view(obj).substr(0, i), mtl);
    for (std::size_t i = 0; i <= mtl.size(); ++i)
        EXPECT_TRUE(Convert(obj, std::string_view(mtl).substr(0, i)).file);
}

}  // namespace
