// SPDX-License-Identifier: MIT
import type { Context } from './gl.ts';
import type { Geometry, GeometryMaker } from './geometry.ts';
import type { Gltf } from './gltf.ts';
import { kReflection, type Look } from './material.ts';
import type { SceneNode } from './nodes.ts';
import type { Program } from './program.ts';
import { kMostSorted, type Indices } from './sorting.ts';

/** Which pixels of a surface are drawn. What is transparent by a picture is drawn twice: its solid pixels with the depth
 * buffer, and only the rest from back to front. */
const enum Pixels {
  All,
  Solid,
  Translucent,
}

/** A primitive of a node, in one material; or some of its pixels. */
export interface Part {
  node: SceneNode;
  geometry: Geometry;
  look: Look;
  material: number;
  program: Program;
  /** Opaque parts are drawn by it, the highest first. */
  key: number;
  /** Of its highlights: those of metal have its colour, which a shader with maps works out itself. */
  specular: readonly number[];
  /** Of the last picture: of its middle, larger is farther. */
  depth: number;
  /** Of the last picture: its triangles from back to front. */
  ordered?: Indices;
}

export interface Parts {
  opaque: Part[];
  blended: Part[];
}

/** Uploads what the nodes show. compile: a program for the values of its macros. textured: when it is known which maps there are; pictures
 * are decoded while geometry is. */
export async function makeParts(
  gltf: Gltf,
  nodes: readonly SceneNode[],
  looks: readonly Look[],
  maker: GeometryMaker,
  lights: number,
  compile: (macros: (boolean | number)[]) => Program,
  textured: Promise<unknown>,
): Promise<Parts> {
  const made: Record<string, Geometry> = {};
  const opaque: Part[] = [];
  const blended: Part[] = [];
  const part = (node: SceneNode, geometry: Geometry, material: number, pixels: Pixels): Part => {
    const look = looks[material];
    const { diffuse, specular, metal } = look;
    // Without texture coordinates only reflections count.
    const maps = look.maps.map((map, kind) => !!map && (geometry.hasUv || kind === kReflection));
    const anyMap = maps.includes(true);
    const twoSided = look.twoSided && !look.flat;
    const flags = [...maps, look.glossy, metal && anyMap, look.flat, twoSided, pixels === Pixels.Solid, pixels === Pixels.Translucent];
    return {
      node,
      geometry,
      look,
      material,
      program: compile([geometry.targets.length > 0, look.lines, lights, ...flags]),
      key: flags.reduce((sum, flag, i) => sum + (flag ? 1 << i : 0), 0),
      specular: metal && !anyMap ? specular.map((x, i) => x * diffuse[i]) : specular,
      depth: 0,
    };
  };
  const uses = nodes.flatMap((node) => {
    if (node.mesh === undefined) return [];
    const { primitives, weights } = gltf.json.meshes![node.mesh];
    node.weights ??= weights;
    return primitives.map((primitive, p) => {
      const { material, indices } = primitive;
      const { blended, additive, lines } = looks[material];
      const sorts = blended && !additive && !lines && gltf.json.accessors[indices].count < kMostSorted * 3;
      return { node, material, geometry: (made[node.mesh + '/' + p] ??= maker.make(primitive, lines, sorts)) };
    });
  });
  await textured;
  for (const { node, material, geometry } of uses) {
    const { blended: blends, maybeSolid } = looks[material];
    const solid = blends && maybeSolid;
    if (solid || !blends) opaque.push(part(node, geometry, material, solid ? Pixels.Solid : Pixels.All));
    if (blends) blended.push(part(node, geometry, material, solid ? Pixels.Translucent : Pixels.All));
  }
  return { opaque, blended };
}

/** Draws the triangles or lines of the bound part. */
export const drawPart = (gl: Context, { geometry: { mode, count, indexType } }: Part): void => gl.drawElements(mode, count, indexType, 0);
