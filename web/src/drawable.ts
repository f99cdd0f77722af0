// SPDX-License-Identifier: MIT
import type { Gltf } from './gltf.ts';
import { GeometryMaker, type Geometry } from './geometry.ts';
import { kMaps, Map as Kind, type Look } from './material.ts';
import type { NodeTree, SceneNode } from './nodes.ts';
import { kMostSorted } from './sorting.ts';
import { demand } from './trouble.ts';

/** Which pixels of a surface are drawn. What is transparent by a picture is drawn twice: its solid pixels with the depth
 * buffer, and only the rest from back to front. */
export const enum Part {
  Whole,
  Solid,
  Translucent,
}

/** A primitive of a node, in one material. */
export interface Drawable {
  node: SceneNode;
  geometry: Geometry;
  look: Look;
  material: number;
  lines: boolean;
  /** Its place among those of the scene. */
  order: number;
}

export interface DrawableOptions {
  /** Everything as lines. */
  wire: boolean;
}

/** Uploads what the nodes show. */
export function makeDrawables(gltf: Gltf, nodes: NodeTree, looks: readonly Look[], maker: GeometryMaker, options: DrawableOptions): Drawable[] {
  const made = new Map<string, Geometry>();
  const result: Drawable[] = [];
  for (const node of nodes.ordered) {
    if (node.mesh < 0) continue;
    const mesh = gltf.item('meshes', node.mesh);
    demand(Array.isArray(mesh.primitives), 'meshes');
    if (!node.weights.length && Array.isArray(mesh.weights)) node.weights = mesh.weights;
    mesh.primitives.forEach((primitive: { material?: unknown; indices?: unknown }, p: number) => {
      const material = Number.isSafeInteger(primitive?.material) ? (primitive.material as number) : looks.length - 1;
      const look = looks[material];
      demand(look, 'materials');
      if (look.invisible) return;
      const lines = options.wire || look.wire;
      const key = node.mesh + '/' + p;
      let geometry = made.get(key);
      if (!geometry) {
        const count = gltf.item('accessors', primitive.indices).count;
        geometry = maker.make(primitive, { lines, sorted: look.blended && !look.additive && !lines && count < kMostSorted * 3 });
        made.set(key, geometry);
      }
      result.push({ node, geometry, look, material, lines, order: result.length });
    });
  }
  return result;
}

/** The maps of a look that count: without texture coordinates only reflections do. */
const usable = (d: Drawable): boolean[] => d.look.maps.map((map, kind) => !!map && (d.geometry.hasUv || kind === Kind.Reflection));

const kMacros = ['TEXTURE', 'TEXTURE2', 'OPACITY', 'SPECULAR_MAP', 'SHININESS', 'SELF', 'BUMP', 'REFLECTION'];

/** What the shader of a drawable is compiled with, and a number by which the opaque ones are ordered. */
export function variantOf(d: Drawable, part: Part, lights: number): { defines: string[]; key: number; tinted: boolean } {
  const { look } = d;
  const maps = usable(d);
  const anyMap = maps.some(Boolean);
  const flat = look.flat && !d.lines;
  const twoSided = look.twoSided && !flat;
  const tinted = look.metal && anyMap;
  const defines = kMaps.map((_, kind) => (maps[kind] ? kMacros[kind] : '')).filter(Boolean);
  const flags: [unknown, string][] = [
    [anyMap, 'MAPS'],
    [look.hasSpecular, 'SPECULAR'],
    [tinted, 'TINTED'],
    [flat, 'FLAT'],
    [twoSided, 'TWO_SIDED'],
    [part === Part.Solid, 'SOLID'],
    [part === Part.Translucent, 'TRANSLUCENT'],
    [d.lines, 'LINES'],
    [d.geometry.targets.length, 'MORPH'],
    [lights, `LIGHTS ${lights}`],
  ];
  for (const [wanted, name] of flags) if (wanted) defines.push(name);
  const bits = [look.hasSpecular, tinted, flat, twoSided].reduce((sum, b, i) => sum + (b ? 1 << (10 + i) : 0), 0);
  const key = maps.reduce((sum, b, i) => sum + (b ? 1 << i : 0), 0) + bits + (part << 14) + (lights << 16);
  return { defines, key, tinted };
}
