// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <variant>

#include "base/math/CVec.h"

/** Edits of a scene as values: CSceneEdits applies them and takes them back.
 *
 * Nodes and materials go by the names that the file has for them (unique ones, where it repeats a name),
 * however often a material was split since. A node that was replaced keeps its name; the materials that came
 * with it go by the names that their own file has for them. Paths are UTF-8. */

/** The materials that an edit changes. A node shares its materials with others: what is changed on the node
 * alone is split off first. */
struct CMaterialTarget {
    std::string node;      ///< empty: wherever the material is used
    std::string material;  ///< empty: all materials of the node; faces without one then get one
    friend bool operator==(const CMaterialTarget&, const CMaterialTarget&) = default;
};

/** Colours are 0..1; a picture that covers the surface loses its effect. */
struct CColorEdit {
    CMaterialTarget target;
    CVec3 color;
};
/** 0 is dull, 1 a small bright highlight. */
struct CShininessEdit {
    CMaterialTarget target;
    float value = 0;
};
/** 0 is opaque, 1 invisible. */
struct CTransparencyEdit {
    CMaterialTarget target;
    float value = 0;
};
/** Puts a picture file on the surface; an empty path takes the picture off. */
struct CTextureEdit {
    CMaterialTarget target;
    std::string imagePath;
};
/** Moves a node and its children, in scene coordinates. */
struct CMoveEdit {
    std::string node;
    CVec3 offset;
};
/** Turns a node and its children about its own origin by RotationOfAngles, in scene coordinates. */
struct CRotateEdit {
    std::string node;
    CVec3 anglesDeg;
};
/** Shows the mesh of another file's node in place of this node's: the new mesh's own origin comes to where
 * the old one's was, with the node's position, turn, size and animation. newNode empty: the node of the same
 * name, or else the first one with a mesh. Its materials come along. */
struct CReplaceEdit {
    std::string node, path, newNode;
};
/** Takes a node out, and its mesh when no other node shows it. One that has children becomes a dummy, which
 * draws nothing, so that they stay where they are. */
struct CDeleteEdit {
    std::string node;
};

using CEdit = std::variant<CColorEdit, CShininessEdit, CTransparencyEdit, CTextureEdit, CMoveEdit,
                           CRotateEdit, CReplaceEdit, CDeleteEdit>;
