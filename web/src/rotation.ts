// SPDX-License-Identifier: MIT
import { kIdentity, placed, type Mat4 } from './matrix.ts';
import { cross, dot, length, scaled, type Vec3 } from './vector.ts';

/** A unit quaternion x, y, z, w. Products are normalized, so that an hour of dragging does not shear the model. */
export type Rotation = readonly [number, number, number, number];

export const kNoRotation: Rotation = [0, 0, 0, 1];

/** Counter-clockwise by an angle (radians) about a unit axis. */
export function rotationAbout(axis: Vec3, angle: number): Rotation {
  const s = Math.sin(angle / 2);
  return [axis[0] * s, axis[1] * s, axis[2] * s, Math.cos(angle / 2)];
}

/** The shortest rotation from one unit vector to another; none where there is no single shortest one. */
export function rotationBetween(from: Vec3, to: Vec3): Rotation {
  const axis = cross(from, to);
  const sine = length(axis);
  // The arc cosine would lose half the digits of a small angle, and every drag begins with one.
  return sine > 1e-12 ? rotationAbout(scaled(axis, 1 / sine), Math.atan2(sine, dot(from, to))) : kNoRotation;
}

/** a after b. */
export function combined(a: Rotation, b: Rotation): Rotation {
  const r = [
    a[3] * b[0] + a[0] * b[3] + a[1] * b[2] - a[2] * b[1],
    a[3] * b[1] - a[0] * b[2] + a[1] * b[3] + a[2] * b[0],
    a[3] * b[2] + a[0] * b[1] - a[1] * b[0] + a[2] * b[3],
    a[3] * b[3] - a[0] * b[0] - a[1] * b[1] - a[2] * b[2],
  ];
  const l = Math.hypot(...r);
  return l > 0 && isFinite(l) ? [r[0] / l, r[1] / l, r[2] / l, r[3] / l] : kNoRotation;
}

export const matrixOf = (r: Rotation): Mat4 => (r === kNoRotation ? kIdentity : placed([0, 0, 0], r, [1, 1, 1]));
