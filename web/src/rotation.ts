// SPDX-License-Identifier: MIT
import { cross, dot, length, normalized, scaled, type Vec3 } from './vector.ts';

/** A quaternion x, y, z, w. Its length is near 1, and does not count. */
export type Rotation = readonly [number, number, number, number];

export const kNoRotation: Rotation = [0, 0, 0, 1];

/** Counter-clockwise by an angle (radians) about a unit axis. */
export const rotationAbout = (axis: Vec3, angle: number): Rotation => [...scaled(axis, Math.sin(angle / 2)), Math.cos(angle / 2)];

/** The shortest rotation from one unit vector to another; none where there is no single shortest one. */
export function rotationBetween(from: Vec3, to: Vec3): Rotation {
  const axis = cross(from, to);
  // The arc cosine would lose half the digits of a small angle, and every drag begins with one.
  return rotationAbout(normalized(axis), Math.atan2(length(axis), dot(from, to)));
}

/** a after b. */
export const combined = ([x, y, z, w]: Rotation, [i, j, k, l]: Rotation): Rotation => [
  w * i + x * l + y * k - z * j,
  w * j - x * k + y * l + z * i,
  w * k + x * j - y * i + z * l,
  w * l - x * i - y * j - z * k,
];

export const inverse = ([x, y, z, w]: Rotation): Rotation => [-x, -y, -z, w];
