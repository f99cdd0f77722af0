// SPDX-License-Identifier: MIT
import type { Vec3 } from './vector.ts';

/** 4x4, column by column, in double precision: far from the origin a float's rounding errors would be seen. */
export type Mat4 = readonly number[];

export const kIdentity: Mat4 = [1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1];

/** a after b. */
export function product(a: Mat4, b: Mat4): Mat4 {
  const result: number[] = [];
  for (let c = 0; c < 16; c += 4) {
    for (let r = 0; r < 4; r++)
      result.push(a[r] * b[c] + a[r + 4] * b[c + 1] + a[r + 8] * b[c + 2] + a[r + 12] * b[c + 3]);
  }
  return result;
}

export const translation = (v: Vec3): Mat4 => [1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, v[0], v[1], v[2], 1];

/** From translation, rotation (quaternion x, y, z, w) and scale. */
export function placed(t: ArrayLike<number>, q: ArrayLike<number>, s: ArrayLike<number>): Mat4 {
  const [x, y, z, w] = [q[0], q[1], q[2], q[3]];
  return [
    (1 - 2 * (y * y + z * z)) * s[0], 2 * (x * y + z * w) * s[0], 2 * (x * z - y * w) * s[0], 0,
    2 * (x * y - z * w) * s[1], (1 - 2 * (x * x + z * z)) * s[1], 2 * (y * z + x * w) * s[1], 0,
    2 * (x * z + y * w) * s[2], 2 * (y * z - x * w) * s[2], (1 - 2 * (x * x + y * y)) * s[2], 0,
    t[0], t[1], t[2], 1,
  ];
}

/** A linear transform about another point than the origin. */
export function about(linear: Mat4, center: Vec3): Mat4 {
  const d = direction(linear, center);
  return [...linear.slice(0, 12), center[0] - d[0], center[1] - d[1], center[2] - d[2], 1];
}

export const direction = (m: Mat4, v: Vec3): Vec3 => [
  m[0] * v[0] + m[4] * v[1] + m[8] * v[2],
  m[1] * v[0] + m[5] * v[1] + m[9] * v[2],
  m[2] * v[0] + m[6] * v[1] + m[10] * v[2],
];
/** Of a point, by an affine matrix. */
export const point = (m: Mat4, v: Vec3): Vec3 => {
  const d = direction(m, v);
  return [d[0] + m[12], d[1] + m[13], d[2] + m[14]];
};
/** Row of the matrix: 0 to 3. */
export const row = (m: Mat4, r: number): readonly number[] => [m[r], m[r + 4], m[r + 8], m[r + 12]];

/** A row times a matrix. */
export const rowTimes = (r: readonly number[], m: Mat4): readonly number[] =>
  [0, 4, 8, 12].map((c) => r[0] * m[c] + r[1] * m[c + 1] + r[2] * m[c + 2] + r[3] * m[c + 3]);

const cofactors = (d: Mat4): number[] => [
  d[5] * d[10] - d[6] * d[9], d[6] * d[8] - d[4] * d[10], d[4] * d[9] - d[5] * d[8],
  d[2] * d[9] - d[1] * d[10], d[0] * d[10] - d[2] * d[8], d[1] * d[8] - d[0] * d[9],
  d[1] * d[6] - d[2] * d[5], d[2] * d[4] - d[0] * d[6], d[0] * d[5] - d[1] * d[4],
];

/** Of the upper left 3x3. */
export function determinant(m: Mat4): number {
  const c = cofactors(m);
  return m[0] * c[0] + m[1] * c[1] + m[2] * c[2];
}

/** 3x3 for normals, of any length: mirroring does not turn them over. */
export function normalMatrix(m: Mat4): number[] {
  const c = cofactors(m);
  const largest = Math.max(...c.map(Math.abs));
  const scale = largest > 0 ? Math.sign(determinant(m) || 1) / largest : 0;
  return c.map((x) => x * scale);
}

/** Of an affine matrix; undefined where there is none. */
export function affineInverse(m: Mat4): Mat4 | undefined {
  const c = cofactors(m);
  const d = determinant(m);
  if (!(Math.abs(d) > 1e-300)) return undefined;
  const i = [c[0], c[3], c[6], 0, c[1], c[4], c[7], 0, c[2], c[5], c[8], 0, 0, 0, 0, 1].map((x) => x / d);
  const t = direction(i, [m[12], m[13], m[14]]);
  return [...i.slice(0, 12), -t[0], -t[1], -t[2], 1];
}
