// SPDX-License-Identifier: MIT
#pragma once

class CNoteList;
struct Lib3dsFile;

/** Builds the tree from the flat list that CKeyframerReader makes: ids are made unique, unknown parents and
 * cycles become roots, and a chain deeper than lib3ds' recursion can bear is cut. Order of siblings is kept. */
void LinkNodes(Lib3dsFile& file, CNoteList& notes);
