// SPDX-License-Identifier: MIT

/** Three numbers: a point, a direction or a colour. */
export type Vec3 = readonly [number, number, number];

export const { abs, max, min } = Math;

export const add = (a: Vec3, b: Vec3): Vec3 => [a[0] + b[0], a[1] + b[1], a[2] + b[2]];
export const sub = (a: Vec3, b: Vec3): Vec3 => [a[0] - b[0], a[1] - b[1], a[2] - b[2]];
export const scaled = (a: Vec3, s: number): Vec3 => [a[0] * s, a[1] * s, a[2] * s];
export const dot = (a: readonly number[], b: readonly number[]): number => a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
export const length = (a: Vec3): number => Math.hypot(a[0], a[1], a[2]);
export const cross = (a: Vec3, b: Vec3): Vec3 => [
  a[1] * b[2] - a[2] * b[1],
  a[2] * b[0] - a[0] * b[2],
  a[0] * b[1] - a[1] * b[0],
];
/** Of length 1; the zero vector where there is no direction. */
export const normalized = (a: Vec3, none = 1e-12): Vec3 => {
  const l = length(a);
  return l > none ? scaled(a, 1 / l) : [0, 0, 0];
};
export const clamp = (x: number, low: number, high: number): number => min(max(x, low), high);
export const kDegree = Math.PI / 180;
