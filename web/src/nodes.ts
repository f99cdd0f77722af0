// SPDX-License-Identifier: MIT
import type { GltfJson, NodeJson } from './format.ts';
import { column, kIdentity, placed, product, type Mat4 } from './matrix.ts';
import { demand } from './texts.ts';
import { abs, type Vec3 } from './vector.ts';

/** A node of the hierarchy, with the values that an animation changes. */
export interface SceneNode extends NodeJson {
  parent?: SceneNode;
  /** To the file's coordinates, after `placeNodes`. */
  world: Mat4;
}

/** All nodes, by number; parents stand before their children. */
export function readNodes(json: GltfJson): SceneNode[] {
  // The root turns the file's axes into those of glTF, which is not wanted here.
  const nodes = json.nodes.map((n): SceneNode => ({ ...n, world: kIdentity }));
  nodes.forEach((node, i) => {
    if (!node.parent) node.matrix = kIdentity;
    for (const child of node.children ?? []) {
      demand(child > i);
      nodes[child].parent = node;
    }
  });
  return nodes;
}

/** Works out where all nodes are. */
export function placeNodes(nodes: readonly SceneNode[]): void {
  for (const node of nodes) {
    const { matrix, translation, rotation, scale, parent } = node;
    const own = matrix ?? placed(rotation, translation, scale);
    // Of damaged numbers the picture keeps what can be drawn: squares of places and sizes fit a float.
    node.world = product(parent?.world ?? kIdentity, own).map((x) => (abs(x) < 1e18 ? x : 0));
  }
}

export const originOf = (node: SceneNode): Vec3 => column(node.world, 12);
