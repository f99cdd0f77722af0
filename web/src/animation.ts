// SPDX-License-Identifier: MIT
import type { Path } from './format.ts';
import { accessorOf, numbersOf, type Gltf } from './gltf.ts';
import type { SceneNode } from './nodes.ts';
import { demand } from './texts.ts';
import { abs, min } from './vector.ts';

export const kFramesPerSecond = 30;

/** How one value changes. */
export interface Track {
  path: Path;
  times: Float32Array;
  values: Float32Array;
  step: boolean;
}

export interface Channel extends Track {
  node: SceneNode;
}

/** Everything that moves in the scene. */
export function readChannels(gltf: Gltf, nodes: readonly SceneNode[]): Channel[] {
  const { animations = [] } = gltf.json;
  return animations.flatMap(({ channels, samplers }) =>
    channels.map(({ sampler, target }) => {
      const { input, output, interpolation } = samplers[sampler];
      const [times, values] = [input, output].map((a) => numbersOf(gltf, accessorOf(gltf, a)));
      demand(nodes[target.node] && values.length % times.length === 0);
      return { node: nodes[target.node], path: target.path, times, values, step: interpolation === 'STEP' };
    }),
  );
}

/** The last key that is not after the time; 0 before the first. */
function keyAt(times: Float32Array, time: number): number {
  let low = 0;
  for (let high = times.length - 1; low < high; ) {
    const middle = (low + high + 1) >> 1;
    if (times[middle] <= time) low = middle;
    else high = middle - 1;
  }
  return low;
}

/** The value at a time in seconds: held before the first key and after the last. */
export function sample({ times, values, step, path }: Track, time: number): number[] {
  const n = values.length / times.length;
  const key = keyAt(times, time);
  const from = [...values.subarray(key * n, key * n + n)];
  const share = (time - times[key]) / (times[key + 1] - times[key]);
  if (step || !(share > 0)) return from;
  let [a, b] = [1 - share, share];
  const to = values.subarray(key * n + n, key * n + 2 * n);
  if (path === 'rotation') {
    const cosine = from.reduce((sum, x, i) => sum + x * to[i], 0);
    const angle = Math.acos(min(abs(cosine), 1));
    const sine = Math.sin(angle);
    if (sine > 1e-4) [a, b] = [Math.sin(a * angle) / sine, Math.sin(b * angle) / sine];
    // The short way round.
    if (cosine < 0) b = -b;
  }
  return from.map((x, i) => x * a + to[i] * b);
}
