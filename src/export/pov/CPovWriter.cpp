// SPDX-License-Identifier: MIT
#include "export/pov/CPovWriter.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <optional>

#include "base/jobs/parallel_for.h"
#include "export/pov/C3ds2PovExportFlow.h"
#include "export/pov/pov_lights.h"
#include "export/pov/pov_maps.h"
#include "export/pov/text/pov_mesh2.h"
#include "files/CAtomicFile.h"
#include "files/CAtomicFileGroup.h"
#include "model/prepare/CPreparedScene.h"
#include "model/prepare/material_kinds.h"
#include "model/prepare/source_files.h"

namespace {

/** The number of triangles whose text is in memory at once. */
constexpr std::uint32_t kTrianglesAtOnce = 400'000;
/** Limits the precision of small meshes: their extent counts as at least this part of the scene's. */
constexpr float kSmallestShare = 1.0f / 30;
constexpr float kSmallestRadius = 1e-2f, kLargestRadius = 1e5f;

constexpr std::string_view kRadiosity =
    "radiosity{pretrace_start .08 pretrace_end .02 count 60 nearest_count 8 error_bound .6 recursion_limit "
    "2\n"
    "low_error_factor .7 gray_threshold 0 minimum_reuse .02 brightness 1 adc_bailout .01}";

/** The factor by which a transform enlarges; 0 for one that flattens. */
float Enlargement(const CMat4& matrix) {
    const double volume = std::abs(matrix.Determinant3());
    return std::isfinite(volume) ? static_cast<float>(std::cbrt(volume)) : 0.0f;
}

/** True for a transform that flattens, or nearly does: POV-Ray needs its inverse. */
bool IsInvertible(const CMat4& matrix) {
    double longest = 0;
    for (std::size_t column = 0; column < 3; ++column) {
        longest =
            std::max(longest, static_cast<double>(Length(CVec3{matrix.m[column * 4], matrix.m[column * 4 + 1],
                                                               matrix.m[column * 4 + 2]})));
    }
    return std::abs(matrix.Determinant3()) > 1e-7 * longest * longest * longest;
}

void WriteMatrix(CPovText& text, const CMat4& m) {
    if (m == CMat4{}) return;
    text << "matrix<";
    for (std::size_t column = 0; column < 4; ++column) {
        for (std::size_t row = 0; row < 3; ++row) {
            text << m.m[column * 4 + row] << (column == 3 && row == 2 ? '>' : ',');
        }
    }
}

/** C3ds2PovExportFlow::Do with a result. */
CStatus Try(C3ds2PovExportFlow* flow, const std::function<CStatus()>& work) {
    CStatus status = CDone{};
    C3ds2PovExportFlow::Do(flow, [&] { status = work(); });
    return status;
}

float Channel(float value) {
    return std::isfinite(value) ? std::clamp(value, 0.0f, 1.0f) : 0.0f;
}

}  // namespace

CPovWriter::CPovWriter(const CPreparedScene& scene, const CTextureLocator& textures, const CSeenView& seen,
                       const C3ds2Pov::COutFormat& format)
    : m_scene(scene), m_locator(textures), m_format(format), m_camera(seen) {
    const float radius = m_camera.ModelRadius();
    if (radius < kSmallestRadius || radius > kLargestRadius) m_scale = 1 / radius;
}

CMat4 CPovWriter::PlaceOf(std::uint32_t node) const {
    return m_camera.Place() * m_scene.nodes[node].meshToWorld;
}

CStatus CPovWriter::Write(const std::string& output, C3ds2PovExportFlow* flow) {
    if (CStatus status = CheckOutput(m_scene, output); !status) return status;
    CResult<CAtomicFile> file = CAtomicFile::CreateOutput(output);
    if (!file) return file.Error();

    CPovPictures pictures(m_scene, m_locator, output);
    CPovMaterials materials(m_scene, m_format, pictures);
    C3ds2PovExportFlow::Do(flow, [&] {
        CollectWork();
        UseMaterials(materials);
    });
    if (flow) flow->Begin(static_cast<int>(1 + m_work.size() + pictures.Count()));
    if (CStatus status = file.Value().Write(Head(materials).View()); !status) return status;
    if (flow) flow->Step();
    if (CStatus status = WriteMeshes(file.Value(), flow); !status) return status;
    for (std::size_t i = 0; i < pictures.Count(); ++i) {
        if (CStatus status = Try(flow, [&] { return pictures.Stage(i); }); !status) return status;
        if (flow) flow->Step();
    }
    if (CStatus status = file.Value().Write(pictures.Record()); !status) return status;
    if (flow) flow->Message(static_cast<int>(m_scene.triangleCount));
    // The scene gets its name last, so that a program that renders it at once finds its pictures.
    CAtomicFileGroup files = pictures.TakeStaged();
    if (CStatus status = files.Add(std::move(file).Value()); !status) return status;
    return Try(flow, [&] { return files.Commit(); });
}

// Each flattened node writes its mesh again, so they share what a scene's text may grow by.
void CPovWriter::CollectWork() {
    constexpr std::uint64_t kLeastFlattened = 10'000, kTimesFlattened = 10;
    std::uint64_t left = 0;
    for (const CPreparedMesh& mesh : m_scene.meshes) left += kTimesFlattened * (mesh.IndexCount() / 3);
    left = std::max(left, kLeastFlattened);
    std::vector<std::optional<std::size_t>> workOfMesh(m_scene.meshes.size());
    for (std::uint32_t n = 0; n < m_scene.nodes.size(); ++n) {
        const CPreparedNode& node = m_scene.nodes[n];
        const CMat4 place = PlaceOf(n);
        if (node.mesh < 0 || !node.visible || !place.IsFinite()) continue;
        const auto mesh = static_cast<std::uint32_t>(node.mesh);
        if (!IsInvertible(place)) {
            const std::uint64_t triangles = m_scene.meshes[mesh].IndexCount() / 3;
            if (triangles > left) {
                ++m_leftOut;
            } else {
                left -= triangles;
                m_work.push_back({mesh, {n}, true});
            }
            continue;
        }
        if (!workOfMesh[mesh]) {
            workOfMesh[mesh] = m_work.size();
            m_work.push_back({mesh, {}, false});
        }
        m_work[*workOfMesh[mesh]].nodes.push_back(n);
    }
}

void CPovWriter::UseMaterials(CPovMaterials& materials) {
    m_batches.resize(m_scene.meshes.size());
    const bool unlitMatters = HasMode(C3ds2Pov::kViewLook) && HasMode(C3ds2Pov::kSmoothNormals) &&
                              !HasPovLights(m_scene, !HasMode(C3ds2Pov::kHeadlight));
    for (const CExportWork& work : m_work) {
        std::vector<CPovBatch>& batches = m_batches[work.mesh];
        if (!batches.empty()) continue;
        const CPreparedMesh& mesh = m_scene.meshes[work.mesh];
        for (const CPreparedBatch& range : mesh.batches) {
            const CPreparedMaterial& material = m_scene.materials[range.material];
            CPovBatch batch;
            batch.skipped = range.indexCount == 0 || IsInvisible(material);
            if (!batch.skipped) {
                batch.texture = materials.Use(range.material, !mesh.texCoords.empty());
                batch.mapped = materials.IsMapped(batch.texture);
            }
            batch.flat = material.shading == EShading::Flat;
            batch.oneSided = !material.twoSided;
            batch.seesThrough = IsBlended(material);
            // POV-Ray turns normals towards the eye. The view leaves a triangle dark whose front faces the
            // eye but whose normals point away; in POV-Ray it gets an interior texture.
            if (unlitMatters && !batch.skipped && batch.oneSided && !batch.seesThrough) {
                batch.unlit = materials.UseUnlit(range.material, !mesh.texCoords.empty());
            }
            batches.push_back(batch);
        }
    }
}

CPovText CPovWriter::Head(const CPovMaterials& materials) const {
    CPovText text;
    text << "// Written by Orbivue. Start POV-Ray 3.7 or later in the folder of this file.\n#version 3.7;\n";
    text << "global_settings{assumed_gamma srgb max_trace_level 64";
    if (m_format.radiosity) text << '\n' << kRadiosity;
    text << "}\n#default{finish{ambient 0 emission 0}}\n";
    if (HasMode(C3ds2Pov::kViewLook)) {
        text
            << "// One-sided surfaces that turn their back to this camera: 1 hides them, as the view does; 0 "
               "shows them,\n// which is right for other cameras.\n#declare HideBacks=1;\n";
    }
    text << "background{rgb"
         << CVec3{Channel(m_format.bkRed), Channel(m_format.bkGreen), Channel(m_format.bkBlue)} << "}\n";
    m_camera.Write(text, m_scale);
    WritePovLights(text, m_scene, !HasMode(C3ds2Pov::kHeadlight),
                   CMat4::Scale({m_scale, m_scale, m_scale}) * m_camera.Place());
    if (const auto* picture = materials.Environment()) WriteEnvironment(text, *picture);
    materials.Write(text);
    if (m_leftOut > 0)
        text << "// Flattened objects that are left out, as there are too many: " << m_leftOut << '\n';
    return text;
}

CStatus CPovWriter::WriteMeshes(CAtomicFile& file, C3ds2PovExportFlow* flow) {
    for (std::size_t first = 0; first < m_work.size();) {
        std::size_t last = first;
        for (std::uint32_t triangles = 0; last < m_work.size() && triangles < kTrianglesAtOnce; ++last) {
            triangles += m_scene.meshes[m_work[last].mesh].IndexCount() / 3;
        }
        std::vector<CPovText> texts(last - first);
        C3ds2PovExportFlow::Do(flow, [&] {
            ParallelFor(texts.size(), 0, [&](std::size_t i) { texts[i] = WorkText(first + i); });
        });
        for (const CPovText& text : texts) {
            if (CStatus status = Try(flow, [&] { return file.Write(text.View()); }); !status) return status;
            if (flow) flow->Step();
        }
        first = last;
    }
    return CDone{};
}

std::vector<CVec3> CPovWriter::EyesOf(const CExportWork& work) const {
    std::vector<CVec3> eyes;
    if (!HasMode(C3ds2Pov::kViewLook) || work.moved) return eyes;
    for (const std::uint32_t node : work.nodes) {
        eyes.push_back(PlaceOf(node).AffineInverse().TransformPoint(m_camera.Eye()));
    }
    return eyes;
}

float CPovWriter::ExtentFor(const CExportWork& work) const {
    const CBox placed = m_scene.bounds.Transformed(m_camera.Place());
    const CBox& bounds = work.moved ? placed : m_scene.meshes[work.mesh].bounds;
    float enlargement = work.moved ? 1.0f : 0.0f;
    if (!work.moved) {
        for (const std::uint32_t node : work.nodes) {
            enlargement = std::max(enlargement, Enlargement(PlaceOf(node)));
        }
    }
    const float own = Length(bounds.max - bounds.min);
    const float scene = Length(placed.max - placed.min);
    return enlargement > 0 ? std::max(own, scene / enlargement * kSmallestShare) : own;
}

CPovText CPovWriter::WorkText(std::size_t workIndex) const {
    const CExportWork& work = m_work[workIndex];
    const CPreparedMesh& mesh = m_scene.meshes[work.mesh];
    const CMat4 place = PlaceOf(work.nodes.front());
    CPovMesh numbers = CPovMesh::Make(mesh, ExtentFor(work), work.moved ? &place : nullptr);
    const bool smooth = HasMode(C3ds2Pov::kSmoothNormals) && !work.moved;
    std::vector<CPovPart> parts = SplitIntoParts(mesh, numbers, m_batches[work.mesh], EyesOf(work), smooth);
    for (CPovPart& part : parts) {
        if (part.normals) KeepEqualNormals(numbers, part.faces);
    }

    CPovText text;
    text << "// " << pov_text::CommentText(mesh.name) << '\n';
    const bool single = work.nodes.size() == 1;
    for (std::size_t p = 0; p < parts.size(); ++p) {
        const auto name = [&] {
            text << 'M' << static_cast<std::uint32_t>(workIndex) << '_' << static_cast<std::uint32_t>(p);
        };
        if (!single) {
            text << "#declare ";
            name();
            text << '=';
        }
        WritePovMesh2(text, numbers, parts[p]);
        if (!single) text << "}\n";
        for (std::size_t n = 0; n < work.nodes.size(); ++n) {
            if (!single) {
                text << "object{";
                name();
                text << ' ';
            }
            WritePlaced(text, work, work.nodes[n], numbers.enlarged);
            // Beyond the most eyes all bits are alike.
            if (parts[p].hiddenFrom >> std::min(n, kMostEyes) & 1u) text << "\n#if(HideBacks)no_image#end\n";
            text << "}\n";
        }
    }
    return text;
}

void CPovWriter::WritePlaced(CPovText& text, const CExportWork& work, std::uint32_t node,
                             float enlarged) const {
    CMat4 place = work.moved ? CMat4{} : PlaceOf(node);
    const float back = 1 / enlarged;
    if (enlarged != 1) place = place * CMat4::Scale({back, back, back});
    if (m_scale != 1) place = CMat4::Scale({m_scale, m_scale, m_scale}) * place;
    WriteMatrix(text, place);
    if (HasMode(C3ds2Pov::kViewLook)) text << "no_shadow no_reflection";
}

/** Writes the environment for reflections: a distant sphere with a picture, turned with the view and visible
 * only in reflections. */
void CPovWriter::WriteEnvironment(CPovText& text, const CPovPictures::CPicture& picture) const {
    text << "#if(file_exists(\"" << picture.fileName << "\"))\n"
         << "sphere{0,1 hollow no_image no_shadow finish{diffuse 0 emission 1} pigment{image_map{"
         << picture.type << " \"" << picture.fileName << "\" map_type 1 interpolate 2} matrix<";
    // The map's axes x, y (its pole) and z in the view's space, in which the picture stands still.
    for (const CVec3 axis : {CVec3{-1, 0, 0}, CVec3{0, 0, 1}, CVec3{0, -1, 0}}) {
        const CVec3 v = m_camera.FromView(axis);
        text << v.x << ',' << v.y << ',' << v.z << ',';
    }
    text << "0,0,0>} scale Distance*1000 translate Center}\n#end\n";
}
