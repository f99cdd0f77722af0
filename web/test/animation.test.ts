// SPDX-License-Identifier: MIT
import assert from 'node:assert/strict';
import { test } from 'node:test';
import { sample, type Track } from '../src/animation.ts';

const kTurn = Math.SQRT1_2;
const track = (path: Track['path'], times: number[], values: number[], step = false): Track => ({
  path,
  times: Float32Array.from(times),
  values: Float32Array.from(values),
  step,
});
const kMove = track('translation', [1, 2, 4], [0, 0, 0, 10, 0, 0, 10, 4, 0]);
const kSpin = track('rotation', [0, 1], [0, 0, 0, 1, 0, 0, kTurn, kTurn]);

const kRows: [string, Track, number, number[]][] = [
  ['before the first key', kMove, 0, [0, 0, 0]],
  ['at a key', kMove, 2, [10, 0, 0]],
  ['between keys', kMove, 3, [10, 2, 0]],
  ['behind the last key', kMove, 9, [10, 4, 0]],
  ['a hide track', track('scale', [0, 1], [1, 1, 1, 0, 0, 0], true), 0.99, [1, 1, 1]],
  ['a hide track at its key', track('scale', [0, 1], [1, 1, 1, 0, 0, 0], true), 1, [0, 0, 0]],
  ['weights', track('weights', [0, 1], [0, 0, 1, 0.5]), 0.5, [0.5, 0.25]],
  ['half of a quarter turn', kSpin, 0.5, [0, 0, Math.sin(Math.PI / 8), Math.cos(Math.PI / 8)]],
  ['the short way round', track('rotation', [0, 1], [0, 0, 0, 1, 0, 0, -kTurn, -kTurn]), 0.5, [0, 0, Math.sin(Math.PI / 8), Math.cos(Math.PI / 8)]],
  ['no turn at all', track('rotation', [0, 1], [0, 0, 0, 1, 0, 0, 0, 1]), 0.3, [0, 0, 0, 1]],
  ['one key', track('scale', [5], [2, 2, 2]), 1, [2, 2, 2]],
  ['two keys at one time', track('scale', [1, 1], [2, 2, 2, 3, 3, 3]), 1, [3, 3, 3]],
];

for (const [name, of, time, expected] of kRows) {
  test(name, () => sample(of, time).forEach((x, i) => assert.ok(Math.abs(x - expected[i]) < 1e-6, `${sample(of, time)}`)));
}
