// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <variant>

#include "base/math/CVec.h"

/** Edits of a scene as values: CSceneEdits applies them and takes them back.
 *
 * Nodes and materials are named as in the file (names that the file repeats are made unique). A copy of a
 * material that an edit made for one node keeps the material's name here. A node that was replaced keeps its
 * name; the materials that came with it have the names of their own file. Paths are UTF-8. */

/** The materials that an edit changes. Where the target names a node and other nodes share its material, the
 * edit changes a copy for that node alone. */
struct CMaterialTarget {
    std::string node;      ///< empty: wherever the material is used
    std::string material;  ///< empty: all materials of the node; faces without one then get one
    friend bool operator==(const CMaterialTarget&, const CMaterialTarget&) = default;
};

/** Sets the colour, red, green and blue 0..1. A picture that covers the surface is no longer shown. */
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
