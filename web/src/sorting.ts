// SPDX-License-Identifier: MIT
import { min } from './vector.ts';

/** Larger parts are drawn in the file's order: sorting them would cost more than drawing. */
export const kMostSorted = 50000;

export type Indices = Uint16Array | Uint32Array;

/** Triangles in order from back to front. `row` gives the depth of a point p as row . (p, 1). Beside them the middle of
 * all depths. */
export function orderBackToFront(positions: Float32Array, indices: Indices, row: readonly number[]): [Indices, number] {
  const count = indices.length / 3;
  const depths = new Float32Array(count);
  let low = Infinity;
  let high = -Infinity;
  for (let t = 0; t < count; t++) {
    let sum = 0;
    for (let i = t * 3; i < t * 3 + 3; i++) {
      const at = indices[i] * 3;
      sum += row[0] * positions[at] + row[1] * positions[at + 1] + row[2] * positions[at + 2];
    }
    const depth = (depths[t] = sum / 3 + row[3]);
    if (depth < low) low = depth;
    if (depth > high) high = depth;
  }
  // Counted by depth: the farthest first.
  const steps = min(count * 8, 65535);
  const start = new Uint32Array(steps + 2);
  const keyOf = (t: number): number => (high > low ? ((high - depths[t]) * steps) / (high - low) : 0) | 0;
  for (let t = 0; t < count; t++) start[keyOf(t) + 1]++;
  for (let i = 0; i < steps; i++) start[i + 1] += start[i];
  const ordered = indices.slice();
  for (let t = 0; t < count; t++) ordered.set(indices.subarray(t * 3, t * 3 + 3), start[keyOf(t)]++ * 3);
  return [ordered, (low + high) / 2];
}
