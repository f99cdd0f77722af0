// SPDX-License-Identifier: MIT
import type { LightExtras } from './format.ts';
import { determinant, point, type Mat4 } from './matrix.ts';
import { originOf, type SceneNode } from './nodes.ts';
import { kDegree, normalized, scaled, sub } from './vector.ts';

const kMostLights = 8;
const kEverywhere = 1e30;

const strength = ({ color, multiplier = 1 }: LightExtras): number => color.reduce((sum, c) => sum + Math.abs(c * multiplier), 0);
const cosOfHalf = (coneDeg = 0): number => Math.cos((coneDeg / 2) * kDegree);

/** The lights that a scene is drawn by: the strongest of the file's, and room for the one at the eye. */
export const strongest = (lights: readonly LightExtras[], headlight?: boolean): LightExtras[] =>
  [...lights].sort((a, b) => (lights.length > kMostLights - +!!headlight ? strength(b) - strength(a) : 0)).slice(0, kMostLights - +!!headlight);

/** What the shader takes, for all lights one after the other: place and outer cosine, direction and inner cosine, colour,
 * range. */
export type LightUniforms = [number[], number[], number[], number[]];

/** Lights in the space of the shader, to which `toEye` leads. Without lights of the file there are none: the shader then lights
 * from the eye. */
export function lightUniforms(lights: readonly LightExtras[], nodes: readonly SceneNode[], headlight: boolean, toEye: Mat4): LightUniforms {
  const result: LightUniforms = [[], [], [], []];
  const enlarged = Math.cbrt(Math.abs(determinant(toEye)));
  const add = (...parts: (readonly number[])[]): void => parts.forEach((part, i) => result[i].push(...part));
  for (const { node, target = -1, spot, color, multiplier = 1, attenuate, inner = 0, outer = 0, hotspotDeg, falloffDeg } of lights) {
    const at = point(toEye, originOf(nodes[node]));
    const way = spot ? normalized(sub(point(toEye, originOf(nodes[target])), at)) : [0, 0, 0];
    const cosOuter = spot ? cosOfHalf(falloffDeg) : -3;
    const from = attenuate ? inner * enlarged : kEverywhere;
    const to = attenuate ? Math.max(outer * enlarged, from + 1e-6 * (1 + from)) : 2 * kEverywhere;
    // Equal angles would divide by zero; this is a hard edge.
    const cosInner = spot ? Math.max(cosOfHalf(hotspotDeg), cosOuter + 1e-4) : -2;
    add([...at, cosOuter], [...way, cosInner], scaled(color, multiplier), [from, to]);
  }
  if (lights.length && headlight) add([0, 0, 0, -3], [0, 0, 0, -2], [1, 1, 1], [kEverywhere, 2 * kEverywhere]);
  return result;
}
