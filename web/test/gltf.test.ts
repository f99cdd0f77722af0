// SPDX-License-Identifier: MIT
import assert from 'node:assert/strict';
import { test } from 'node:test';
import { accessorOf, indicesOf, numbersOf, readGltf } from '../src/gltf.ts';
import { readScene } from '../src/scene.ts';
import { glbOf, triangleBytes, triangleJson } from './glb_maker.ts';

/** Everything that is read before the graphics card has a say. */
function readAll(bytes: Uint8Array<ArrayBuffer>): void {
  const { gltf } = readScene(bytes);
  for (const { primitives } of gltf.json.meshes ?? []) {
    for (const { attributes, indices } of primitives) {
      const position = accessorOf(gltf, attributes.POSITION);
      numbersOf(gltf, position);
      indicesOf(gltf, indices, position.count);
    }
  }
}

test('reads a triangle', () => {
  const scene = readScene(glbOf(triangleJson()));
  const { gltf } = scene;
  assert.deepEqual([...numbersOf(gltf, accessorOf(gltf, 0))], [0, 0, 0, 1, 0, 0, 0, 1, 0]);
  assert.deepEqual([...indicesOf(gltf, 1, 3)], [0, 1, 2]);
  assert.deepEqual(scene.nodes[1].world.slice(12), [1, 2, 3, 1]);
});

test('the root keeps the axes of the file', () => {
  const json = triangleJson();
  json.nodes[0].rotation = [-Math.SQRT1_2, 0, 0, Math.SQRT1_2];
  assert.deepEqual(readScene(glbOf(json)).nodes[1].world.slice(12), [1, 2, 3, 1]);
});

const kDamaged: [string, Record<string, number[]>, (world: readonly number[]) => boolean][] = [
  ['a rotation of any length', { rotation: [0, 0, 4e9, 4e9] }, (w) => Math.abs(w[1] - 1) < 1e-9 && Math.abs(w[0]) < 1e-9],
  ['no rotation at all', { rotation: [0, 0, 0, 0] }, (w) => w[0] === 1],
  ['a boundless rotation', { rotation: [1e200, 0, 0, 1] }, (w) => w.every(isFinite)],
  ['a boundless scale', { scale: [1e300, 1, 1] }, (w) => w[0] === 0 && w[5] === 1],
  ['a boundless place', { translation: [0, -1e40, 7] }, (w) => w[13] === 0 && w[14] === 7],
];
for (const [name, node, fits] of kDamaged) {
  test('numbers that cannot be are mended: ' + name, () => {
    const json = triangleJson();
    Object.assign(json.nodes[1], node);
    const { world } = readScene(glbOf(json)).nodes[1];
    assert.ok(fits(world), `${world}`);
  });
}

const kBroken: Record<string, (json: Record<string, any>) => void> = {
  'no scene': (j) => (j.scenes = []),
  'a scene without our extras': (j) => (j.scenes[0].extras = {}),
  'a node that is its own child': (j) => (j.nodes[1].children = [1]),
  'a circle of nodes': (j) => (j.nodes[1].children = [0]),
  'a child that is not there': (j) => (j.nodes[0].children = [7]),
  'nodes that are no list': (j) => (j.nodes = 3),
  'a view behind the end': (j) => (j.bufferViews[0].byteOffset = 40),
  'a view of negative length': (j) => (j.bufferViews[0].byteLength = -4),
  'a view before the beginning': (j) => (j.bufferViews[0].byteOffset = -4),
  'a huge view': (j) => (j.bufferViews[0].byteLength = 2 ** 40),
  'a view that is no number': (j) => (j.bufferViews[0].byteLength = 'x'),
  'more elements than bytes': (j) => (j.accessors[0].count = 4),
  'a huge count': (j) => (j.accessors[0].count = 2 ** 31),
  'no elements': (j) => (j.accessors[0].count = 0),
  'an unknown type of numbers': (j) => (j.accessors[0].componentType = 5130),
  'an accessor between numbers': (j) => (j.accessors[0].byteOffset = 2),
  'an accessor before its view': (j) => (j.accessors[0].byteOffset = -4),
  'a stride between numbers': (j) => (j.bufferViews[0].byteStride = 3),
  'an accessor without a view': (j) => delete j.accessors[0].bufferView,
  'a mesh without indices': (j) => delete j.meshes[0].primitives[0].indices,
  'half a triangle': (j) => (j.accessors[1].count = 2),
  'an unknown compression': (j) => (j.bufferViews[0].extensions = { EXT_meshopt_compression: { byteOffset: 0, byteLength: 36, byteStride: 12, count: 3, mode: 'X' } }),
  'compressed noise': (j) => (j.bufferViews[0].extensions = { EXT_meshopt_compression: { byteOffset: 0, byteLength: 36, byteStride: 12, count: 3, mode: 'ATTRIBUTES' } }),
  'more compressed elements than can be': (j) =>
    (j.bufferViews[0].extensions = { EXT_meshopt_compression: { byteOffset: 0, byteLength: 36, byteStride: 12, count: 2 ** 30, mode: 'ATTRIBUTES' } }),
  'an animation without keys': (j) => (j.animations = [{ channels: [{ sampler: 0, target: { node: 1, path: 'scale' } }], samplers: [{}] }]),
  'an animation of no node': (j) => (j.animations = [{ channels: [{ sampler: 0, target: { node: 9, path: 'scale' } }], samplers: [{ input: 1, output: 1 }] }]),
};

for (const [name, spoil] of Object.entries(kBroken)) {
  test('broken: ' + name, () => {
    const json = triangleJson();
    spoil(json);
    assert.throws(() => readAll(glbOf(json)));
  });
}

test('broken: an index beyond the vertices', () => {
  const bin = triangleBytes();
  new Uint16Array(bin.buffer, 36, 3).set([0, 1, 3]);
  assert.throws(() => readAll(glbOf(triangleJson(), bin)));
});

test('broken: every beginning of a file', () => {
  const whole = glbOf(triangleJson());
  for (let length = 0; length < whole.length - 4; length++) assert.throws(() => readAll(whole.slice(0, length)), `${length} bytes`);
});

test('broken: any byte changed ends quickly', () => {
  const whole = glbOf(triangleJson());
  const began = Date.now();
  for (let at = 0; at < whole.length; at++) {
    const changed = whole.slice();
    changed[at] ^= 1 << at % 8;
    try {
      readAll(changed);
    } catch {
      // A sentence for the reader.
    }
  }
  assert.ok(Date.now() - began < 5000);
  assert.equal(readGltf(whole).json.nodes.length, 2);
});
