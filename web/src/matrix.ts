// SPDX-License-Identifier: MIT
import { add, cross, dot, type Vec3 } from './vector.ts';

/** 4x4, column by column, in double precision: far from the origin a float's rounding errors would be seen. */
export type Mat4 = readonly number[];

export const kIdentity: Mat4 = [1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1];

/** A row times a matrix. */
export const rowTimes = (r: readonly number[], m: Mat4): readonly number[] =>
  [0, 4, 8, 12].map((c) => r[0] * m[c] + r[1] * m[c + 1] + r[2] * m[c + 2] + r[3] * m[c + 3]);

/** a after b. */
export function product(a: Mat4, b: Mat4): Mat4 {
  const result: number[] = [];
  for (let c = 0; c < 16; c += 4) {
    for (let r = 0; r < 4; r++) result.push(a[r] * b[c] + a[r + 4] * b[c + 1] + a[r + 8] * b[c + 2] + a[r + 12] * b[c + 3]);
  }
  return result;
}

/** The same with another translation. */
export const movedTo = (m: Mat4, [x, y, z]: Vec3): Mat4 => [...m.slice(0, 12), x, y, z, 1];

/** Three numbers of a column: 0, 4 or 8 where an axis goes, 12 the translation. */
export const column = (m: Mat4, at: number): Vec3 => [m[at], m[at + 1], m[at + 2]];

/** From rotation (quaternion x, y, z, w, of any length), translation and scale. */
export function placed([x, y, z, w]: readonly number[] = [0, 0, 0, 1], t: readonly number[] = [0, 0, 0], [a, b, c]: readonly number[] = [1, 1, 1]): Mat4 {
  const s = 2 / (x * x + y * y + z * z + w * w || 1);
  const linear = [1 - s * (y * y + z * z), s * (x * y + z * w), s * (x * z - y * w), 0, s * (x * y - z * w), 1 - s * (x * x + z * z)];
  linear.push(s * (y * z + x * w), 0, s * (x * z + y * w), s * (y * z - x * w), 1 - s * (x * x + y * y), 0);
  return movedTo(linear.map((v, i) => v * (i < 4 ? a : i < 8 ? b : c)), t as unknown as Vec3);
}

export const direction = (m: Mat4, [x, y, z]: Vec3): Vec3 => [0, 1, 2].map((i) => m[i] * x + m[i + 4] * y + m[i + 8] * z) as unknown as Vec3;
/** Of a point, by an affine matrix. */
export const point = (m: Mat4, v: Vec3): Vec3 => add(direction(m, v), column(m, 12));

/** A 3x3 matrix for normals, of any length, and the determinant. Mirroring does not turn normals over. */
export function normalMatrix(m: Mat4): [number[], number] {
  const [a, b, c] = [0, 4, 8].map((at) => column(m, at));
  const determinant = dot(cross(a, b), c);
  // The cofactors are the inverse transposed times the determinant.
  const cofactors = [...cross(b, c), ...cross(c, a), ...cross(a, b)];
  const size = Math.hypot(...cofactors) * (determinant < 0 ? -1 : 1) || 1;
  return [cofactors.map((x) => x / size), determinant];
}
