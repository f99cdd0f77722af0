// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "scene_builder/CShape.h"

struct Lib3dsFile;
struct Lib3dsMaterial;
struct Lib3dsMesh;
struct Lib3dsNode;
struct Lib3dsTextureMap;

/** The values of a material that scenes of ours set; the rest is reached through the returned structure. */
struct CMaterialValues {
    CVec3 color{0.6f, 0.6f, 0.6f};
    float specular = 0.6f;  ///< grey level of the highlight
    float shininess = 0.4f;
    float shininessStrength = 0.4f;
    float transparency = 0;
    float selfIllumination = 0;
    bool twoSided = false;
    std::string texture{};  ///< picture of the first texture map, empty for none
};

/** A light or camera pointing from one place to another. */
struct CAim {
    CVec3 position, target;
};

/** Cone angles in degrees, hotspot inside falloff. */
struct CCone {
    float hotspotDeg = 40, falloffDeg = 55;
};

/** Puts a 3DS scene together over lib3ds and writes it. Meshes and nodes are named by the caller (meshes up
 * to ten characters, as the format has it). Shapes are given in object coordinates; at Save their points
 * are moved to where their first node shows them at the first frame, as modelling programs write them, so
 * that a reader without keyframes sees the same picture. Programming errors throw std::logic_error, failed
 * writing std::runtime_error. */
class CSceneBuilder {
  public:
    explicit CSceneBuilder(int frames = 0);
    ~CSceneBuilder();
    CSceneBuilder(const CSceneBuilder&) = delete;
    CSceneBuilder& operator=(const CSceneBuilder&) = delete;

    Lib3dsMaterial& AddMaterial(const std::string& name, const CMaterialValues& values);
    /** Sets one map of a material: tiled, at the given share of its effect. */
    static void SetMap(Lib3dsTextureMap& map, const std::string& picture, float amount = 1,
                       CVec2 scale = {1, 1});

    /** A mesh alone; a node shows it. mirrored writes it the way modelling programs do after
     * a mirror command. */
    Lib3dsMesh& AddMesh(const std::string& name, const CShape& shape, bool mirrored = false);
    /** A node that shows a mesh; a second node of the same mesh is an instance and wants a
     * name of its own. */
    Lib3dsNode& AddObject(const std::string& mesh, Lib3dsNode* parent, CVec3 position,
                          const std::string& instance = {});
    /** AddMesh and AddObject in one. */
    Lib3dsNode& AddPart(const std::string& name, const CShape& shape, Lib3dsNode* parent, CVec3 position);
    Lib3dsNode& AddDummy(const std::string& name, Lib3dsNode* parent, CVec3 position);

    static void SetPivot(Lib3dsNode& object, CVec3 pivot);
    static void SetScale(Lib3dsNode& object, CVec3 scale);
    /** The turn at the first frame. */
    static void SetTurn(Lib3dsNode& object, float angleDeg, CVec3 axis = {0, 0, 1});
    /** Whole or part turns about an axis, evenly over all frames, starting from SetTurn's angle
     * about that axis. */
    void Spin(Lib3dsNode& object, float turns, float startDeg = 0, CVec3 axis = {0, 0, 1});
    /** A further position key of an object or dummy. */
    static void MoveTo(Lib3dsNode& object, int frame, CVec3 position);
    /** From that frame on the object has the shape of another mesh with as many points. */
    static void MorphTo(Lib3dsNode& object, int frame, const std::string& mesh);
    static void HideFrom(Lib3dsNode& object, int frame);

    void AddOmni(const std::string& name, CVec3 position, CVec3 color, float multiplier = 1);
    void AddSpot(const std::string& name, const CAim& aim, CVec3 color, CCone cone, float multiplier = 1);
    /** fovDeg is horizontal, as the format has it. */
    void AddCamera(const std::string& name, const CAim& aim, float fovDeg, float rollDeg = 0);
    /** A camera that moves through several aims in even time; needs at least one. */
    void AddMovingCamera(const std::string& name, const std::vector<CAim>& aims, float fovDeg);

    /** For what has no method here: fog, background, ambient light, current frame. */
    [[nodiscard]] Lib3dsFile& File() { return *m_file; }
    /** Writes the scene; the last call, and only once, as it moves the points. */
    void Save(const std::filesystem::path& path);

  private:
    struct CFileDeleter {
        void operator()(Lib3dsFile* file) const;
    };
    void Insert(Lib3dsNode& node, Lib3dsNode* parent, const std::string& name);
    void InsertAimNodes(Lib3dsNode* eye, Lib3dsNode* target, const std::string& name, const CAim& aim);
    void Bake();

    std::unique_ptr<Lib3dsFile, CFileDeleter> m_file;
    std::vector<std::pair<Lib3dsMesh*, bool>> m_meshes;  ///< with whether it is mirrored
    std::vector<Lib3dsNode*> m_objects;                  ///< in the order they were added
    int m_nextNodeId = 0;
};
