// SPDX-License-Identifier: MIT
import type { GltfJson, NodeJson, Path } from './format.ts';
import { kIdentity, placed, point, product, type Mat4 } from './matrix.ts';
import { demand } from './texts.ts';
import type { Vec3 } from './vector.ts';

/** A node of the hierarchy, with the values that an animation changes. */
export interface SceneNode extends NodeJson {
  parent?: SceneNode;
  /** To the file's coordinates, after `placeNodes`. */
  world: Mat4;
}

/** All nodes, by number. */
export const readNodes = (json: GltfJson): SceneNode[] => json.nodes.map((n) => ({ ...n, world: kIdentity }));

/** The nodes of the scene, parents first. */
export function orderedNodes(json: GltfJson, all: readonly SceneNode[]): SceneNode[] {
  // The roots turn the file's axes into those of glTF, which is not wanted here.
  const ordered = json.scenes[json.scene ?? 0].nodes.map((root) => Object.assign(all[root], { matrix: kIdentity }) as SceneNode);
  for (const node of ordered) {
    for (const child of node.children ?? []) ordered.push(Object.assign(all[child], { parent: node }));
    // A node with two parents or a circle would never end.
    demand(ordered.length <= all.length, 'nodes');
  }
  return ordered;
}

/** Works out where all nodes are. */
export function placeNodes(ordered: readonly SceneNode[]): void {
  for (const node of ordered) {
    const { matrix, translation = [0, 0, 0], rotation = [0, 0, 0, 1], scale = [1, 1, 1], parent } = node;
    const own = matrix ?? placed(translation, rotation, scale);
    node.world = parent ? product(parent.world, own) : own;
  }
}

export const originOf = (node: SceneNode): Vec3 => point(node.world, [0, 0, 0]);

export type { Path };
