// SPDX-License-Identifier: MIT
import type { Gltf, Json } from './gltf.ts';
import { kIdentity, placed, point, product, type Mat4 } from './matrix.ts';
import { numbersOf } from './settings.ts';
import { demand } from './trouble.ts';
import type { Vec3 } from './vector.ts';

/** A node of the hierarchy, with the values that an animation changes. */
export interface SceneNode {
  parent: SceneNode | undefined;
  translation: ArrayLike<number>;
  rotation: ArrayLike<number>;
  scale: ArrayLike<number>;
  /** In place of the three. */
  matrix: Mat4 | undefined;
  weights: ArrayLike<number>;
  mesh: number;
  /** To the file's coordinates, after `placeNodes`. */
  world: Mat4;
}

function readNode(n: Json): SceneNode {
  return {
    parent: undefined,
    translation: numbersOf(n.translation, 3) ?? [0, 0, 0],
    rotation: numbersOf(n.rotation, 4) ?? [0, 0, 0, 1],
    scale: numbersOf(n.scale, 3) ?? [1, 1, 1],
    matrix: numbersOf(n.matrix, 16),
    weights: Array.isArray(n.weights) ? n.weights : [],
    mesh: Number.isSafeInteger(n.mesh) ? n.mesh : -1,
    world: kIdentity,
  };
}

/** The nodes of the file, by number, and those of the scene in an order in which parents come first. */
export interface NodeTree {
  all: SceneNode[];
  ordered: SceneNode[];
}

export function readNodes(gltf: Gltf): NodeTree {
  const json = gltf.list('nodes');
  const all = json.map(readNode);
  const seen = new Set<number>();
  const ordered: SceneNode[] = [];
  const roots = gltf.item('scenes', gltf.json.scene ?? 0).nodes ?? [];
  const open: [unknown[], SceneNode | undefined][] = [[roots, undefined]];
  for (let next = open.pop(); next; next = open.pop()) {
    const [children, parent] = next;
    demand(Array.isArray(children), 'nodes');
    for (const child of children as number[]) {
      const node = all[child];
      // A node with two parents or a circle would never end.
      demand(node && !seen.has(child), 'nodes');
      seen.add(child);
      node.parent = parent;
      // The roots turn the file's axes into those of glTF, which is not wanted here.
      if (!parent) node.matrix = kIdentity;
      ordered.push(node);
      open.push([json[child].children ?? [], node]);
    }
  }
  return { all, ordered };
}

/** Works out where all nodes are. */
export function placeNodes(ordered: readonly SceneNode[]): void {
  for (const node of ordered) {
    const own = node.matrix ?? placed(node.translation, node.rotation, node.scale);
    node.world = node.parent ? product(node.parent.world, own) : own;
  }
}

export const originOf = (node: SceneNode): Vec3 => point(node.world, [0, 0, 0]);
