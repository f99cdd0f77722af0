// SPDX-License-Identifier: MIT

/** Larger parts are drawn in the file's order: sorting them would cost more than drawing. */
export const kMostSorted = 50000;

export type Indices = Uint16Array | Uint32Array;

/** Triangles in order from back to front. `row` gives the depth of a point p as row . (p, 1). `middle`: of the range of
 * all depths. */
export function orderBackToFront(positions: Float32Array, indices: Indices, row: readonly number[]): { ordered: Indices; middle: number } {
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
  const scale = high > low ? 65535 / (high - low) : 0;
  const keys = new Uint16Array(count);
  for (let t = 0; t < count; t++) keys[t] = (high - depths[t]) * scale;
  let order = new Uint32Array(count);
  for (let t = 0; t < count; t++) order[t] = t;
  for (const shift of [0, 8]) order = sortedByByte(order, keys, shift);
  const ordered = indices.slice();
  for (let t = 0; t < count; t++) {
    const from = order[t] * 3;
    ordered[t * 3] = indices[from];
    ordered[t * 3 + 1] = indices[from + 1];
    ordered[t * 3 + 2] = indices[from + 2];
  }
  return { ordered, middle: (low + high) / 2 };
}

/** One stable pass of a radix sort. */
function sortedByByte(order: Uint32Array, keys: Uint16Array, shift: number): Uint32Array<ArrayBuffer> {
  const start = new Uint32Array(257);
  for (const key of keys) start[((key >> shift) & 255) + 1]++;
  for (let i = 1; i < 257; i++) start[i] += start[i - 1];
  const to = new Uint32Array(order.length);
  for (const t of order) to[start[(keys[t] >> shift) & 255]++] = t;
  return to;
}
