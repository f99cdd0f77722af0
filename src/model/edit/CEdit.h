// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <variant>

#include "base/math/CVec.h"

/** Edits of a scene as values. Nodes and materials are named as the file has them; texts are
 * UTF-8. */

/** Which materials an edit changes. */
struct CMaterialTarget {
    std::string node;      ///< empty: wherever the material is used
    std::string material;  ///< empty: all materials of the node
    friend bool operator==(const CMaterialTarget&, const CMaterialTarget&) = default;
};

struct CColorEdit {
    CMaterialTarget target;
    CVec3 color;  ///< 0..1
};
struct CShininessEdit {
    CMaterialTarget target;
    float value = 0;
};
struct CTransparencyEdit {
    CMaterialTarget target;
    float value = 0;
};
struct CTextureEdit {
    CMaterialTarget target;
    std::string imagePath;  ///< empty takes the texture off
};
struct CMoveEdit {
    std::string node;
    CVec3 offset;
};
struct CRotateEdit {
    std::string node;
    CVec3 anglesDeg;
};
struct CReplaceEdit {
    std::string node;
    std::string path;
    std::string newNode;
};
struct CDeleteEdit {
    std::string node;
};

using CEdit = std::variant<CColorEdit, CShininessEdit, CTransparencyEdit, CTextureEdit, CMoveEdit,
                           CRotateEdit, CReplaceEdit, CDeleteEdit>;
