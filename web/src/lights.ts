// SPDX-License-Identifier: MIT
import type { Json } from './gltf.ts';
import { determinant, point, type Mat4 } from './matrix.ts';
import { originOf, type SceneNode } from './nodes.ts';
import { vec3Of } from './settings.ts';
import { clamp, kDegree, normalized, scaled, sub, type Vec3 } from './vector.ts';

const kMostLights = 8;
const kEverywhere = 1e30;

/** A light of the file. */
export interface SceneLight {
  node: SceneNode;
  target: SceneNode | undefined;
  color: Vec3;
  cosOuter: number;
  cosInner: number;
  inner: number;
  outer: number;
}

const cosOfHalf = (coneDeg: unknown): number => Math.cos((clamp(Number(coneDeg) || 0, 0, 360) / 2) * kDegree);

function readLight(l: Json, nodes: readonly SceneNode[]): SceneLight | undefined {
  const node = nodes[l?.node];
  const color = vec3Of(l?.color) ?? [1, 1, 1];
  if (!node) return undefined;
  const target = l.spot ? nodes[l.target] : undefined;
  const cosOuter = target ? cosOfHalf(l.falloffDeg) : -3;
  return {
    node,
    target,
    color: scaled(color, typeof l.multiplier === 'number' ? l.multiplier : 1),
    cosOuter,
    // Equal angles would divide by zero; this is a hard edge.
    cosInner: target ? Math.max(cosOfHalf(l.hotspotDeg), cosOuter + 1e-4) : -2,
    inner: l.attenuate ? Number(l.inner) || 0 : kEverywhere,
    outer: l.attenuate ? Number(l.outer) || 0 : 2 * kEverywhere,
  };
}

const strength = (l: SceneLight): number => l.color.reduce((sum, c) => sum + Math.abs(c), 0);

/** The lights that the scene is drawn by: the strongest of the file's. */
export function readLights(extras: Json, nodes: readonly SceneNode[]): SceneLight[] {
  const listed: Json[] = Array.isArray(extras.lights) ? extras.lights : [];
  const all = listed.map((l) => readLight(l, nodes)).filter((l) => l !== undefined) as SceneLight[];
  const most = extras.headlight ? kMostLights - 1 : kMostLights;
  return all.length > most ? all.sort((a, b) => strength(b) - strength(a)).slice(0, most) : all;
}

/** What the shader takes, for all lights one after the other. */
export interface LightUniforms {
  position: number[];
  direction: number[];
  color: number[];
  range: number[];
}

/** Lights in the space of the shader, to which `toEye` leads. `viewer`: towards it where the projection is parallel, else w is 1. Without lights
 * of the file there are none: the shader then lights from the eye. */
export function lightUniforms(
  lights: readonly SceneLight[],
  headlight: boolean,
  toEye: Mat4,
  viewer: readonly number[],
): LightUniforms {
  const result: LightUniforms = { position: [], direction: [], color: [], range: [] };
  const enlarged = Math.cbrt(Math.abs(determinant(toEye)));
  for (const l of lights) {
    const at = point(toEye, originOf(l.node));
    const way = l.target ? normalized(sub(point(toEye, originOf(l.target)), at)) : [0, 0, 0];
    const far = l.inner === kEverywhere ? 1 : enlarged;
    result.position.push(...at, l.cosOuter);
    result.direction.push(...way, l.cosInner);
    result.color.push(...l.color);
    result.range.push(l.inner * far, Math.max(l.outer * far, l.inner * far + 1e-6 * (1 + l.inner * far)));
  }
  if (lights.length && headlight) {
    const far = viewer[3] ? 0 : 1e12;
    result.position.push(viewer[0] * far, viewer[1] * far, viewer[2] * far, -3);
    result.direction.push(0, 0, 0, -2);
    result.color.push(1, 1, 1);
    result.range.push(kEverywhere, 2 * kEverywhere);
  }
  return result;
}
