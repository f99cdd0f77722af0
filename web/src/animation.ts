// SPDX-License-Identifier: MIT
import type { Gltf, Json } from './gltf.ts';
import type { SceneNode } from './nodes.ts';
import { demand } from './trouble.ts';

export const kFramesPerSecond = 30;

type Target = 'translation' | 'rotation' | 'scale' | 'weights';

/** How one value of a node changes. */
export interface Channel {
  node: SceneNode;
  target: Target;
  times: Float32Array;
  values: Float32Array;
  components: number;
  step: boolean;
}

const kComponents = { translation: 3, rotation: 4, scale: 3, weights: 0 };

function readChannel(gltf: Gltf, animation: Json, channel: Json, nodes: readonly SceneNode[]): Channel | undefined {
  const node = nodes[channel?.target?.node];
  const target = channel?.target?.path as Target;
  const sampler = animation.samplers?.[channel?.sampler];
  if (!node || !(target in kComponents)) return undefined;
  demand(sampler, 'animations');
  const times = gltf.numbers(gltf.accessor(sampler.input, 1));
  const wanted = kComponents[target];
  const values = gltf.numbers(gltf.accessor(sampler.output, wanted || 1));
  const components = wanted || Math.floor(values.length / times.length);
  demand(components > 0 && values.length >= times.length * components, 'animations');
  demand(sampler.interpolation !== 'CUBICSPLINE', 'animations');
  return { node, target, times, values, components, step: sampler.interpolation === 'STEP' };
}

/** Everything that moves in the scene. */
export function readChannels(gltf: Gltf, nodes: readonly SceneNode[]): Channel[] {
  const result: Channel[] = [];
  for (const animation of gltf.list('animations')) {
    for (const channel of animation.channels ?? []) {
      const read = readChannel(gltf, animation, channel, nodes);
      if (read) result.push(read);
    }
  }
  return result;
}

/** The last key that is not after the time; 0 before the first. */
export function keyAt(times: ArrayLike<number>, time: number): number {
  let low = 0;
  let high = times.length - 1;
  while (low < high) {
    const middle = (low + high + 1) >> 1;
    if (times[middle] <= time) low = middle;
    else high = middle - 1;
  }
  return low;
}

/** The value at a time in seconds: held before the first key and after the last. */
export function sample(c: Pick<Channel, 'times' | 'values' | 'components' | 'step' | 'target'>, time: number): number[] {
  const n = c.components;
  const key = keyAt(c.times, time);
  const from = Array.from(c.values.subarray(key * n, key * n + n));
  const next = key + 1;
  if (c.step || next >= c.times.length || time <= c.times[key]) return from;
  const to = c.values.subarray(next * n, next * n + n);
  const share = (time - c.times[key]) / (c.times[next] - c.times[key]);
  if (c.target !== 'rotation') return from.map((x, i) => x + (to[i] - x) * share);
  return turned(from, to, share);
}

/** Between two rotations, the short way round. */
function turned(from: number[], to: Float32Array, share: number): number[] {
  let cosine = from.reduce((sum, x, i) => sum + x * to[i], 0);
  const sign = cosine < 0 ? -1 : 1;
  cosine = Math.min(cosine * sign, 1);
  const angle = Math.acos(cosine);
  const sine = Math.sin(angle);
  const [a, b] = sine > 1e-4 ? [Math.sin((1 - share) * angle) / sine, Math.sin(share * angle) / sine] : [1 - share, share];
  return from.map((x, i) => x * a + to[i] * b * sign);
}

/** Gives all nodes the values of a time. */
export function animate(channels: readonly Channel[], time: number): void {
  for (const channel of channels) {
    channel.node[channel.target] = sample(channel, time);
    if (channel.target !== 'weights') channel.node.matrix = undefined;
  }
}
