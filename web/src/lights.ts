// SPDX-License-Identifier: MIT
import type { LightExtras } from './format.ts';
import { normalMatrix, point, type Mat4 } from './matrix.ts';
import { originOf, type SceneNode } from './nodes.ts';
import { abs, kDegree, max, normalized, scaled, sub, type Vec3 } from './vector.ts';

const kMostLights = 8;
const kEverywhere = 1e30;
const kNowhere: Vec3 = [0, 0, 0];

const strength = ({ color, multiplier = 1 }: LightExtras): number => color.reduce((sum, c) => sum + abs(c * multiplier), 0);
const cosOfHalf = (coneDeg = 0): number => Math.cos((coneDeg / 2) * kDegree);

/** The light at the eye, which has no node. */
const kHeadlight: LightExtras = { node: -1, color: [1, 1, 1] };

/** The lights that a scene is drawn by: the strongest of the file's, and the one at the eye beside them. Without lights of the file
 * there are none: the shader then lights from the eye. */
export const strongest = (lights: LightExtras[], headlight: boolean): LightExtras[] => [
  ...lights.sort((a, b) => strength(b) - strength(a)).slice(0, kMostLights - +headlight),
  ...(headlight && lights.length ? [kHeadlight] : []),
];

/** Lights as the shader takes them: a matrix each. toEye: to the shader's space. */
export function lightUniforms(lights: readonly LightExtras[], nodes: readonly SceneNode[], toEye: Mat4): number[] {
  const enlarged = Math.cbrt(abs(normalMatrix(toEye)[1]));
  return lights.flatMap(({ node, target = -1, spot, color, multiplier = 1, attenuate, inner = 0, outer = 0, hotspotDeg, falloffDeg }) => {
    const at = node < 0 ? kNowhere : point(toEye, originOf(nodes[node]));
    const way = spot ? normalized(sub(point(toEye, originOf(nodes[target])), at)) : kNowhere;
    const cosOuter = spot ? cosOfHalf(falloffDeg) : -3;
    // Equal angles would divide by zero; this is a hard edge.
    const cosInner = spot ? max(cosOfHalf(hotspotDeg), cosOuter + 1e-4) : -2;
    const from = attenuate ? inner * enlarged : kEverywhere;
    const to = max(attenuate ? outer * enlarged : 2 * kEverywhere, from + 1e-6 * (1 + from));
    return [...at, cosOuter, ...way, cosInner, ...scaled(color, multiplier), from, to, 0, 0, 0];
  });
}
