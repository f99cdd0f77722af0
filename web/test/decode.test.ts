// SPDX-License-Identifier: MIT
import assert from 'node:assert/strict';
import { test } from 'node:test';
import { decodeAttributes, decodeTriangles, filterExponential, filterOctahedral } from '../third_party/meshoptimizer/decode.ts';

const bytesOf = (hex: string): Uint8Array => Uint8Array.from(hex.match(/../g)!.map((x) => parseInt(x, 16)));

// What meshoptimizer's own encoder makes of the expected data (vertex codec 0, index codec 1).
test('attributes of a few vertices', () => {
  const packed = bytesOf(
    'a0013f0000005857580126000000010c0000005801080000000103000000170102000000010f0000001716010b000000030000000000000000000000000000000000000000000000000000000000000000',
  );
  assert.deepEqual([...new Uint16Array(decodeAttributes(4, 8, packed).buffer)], [0, 0, 0, 0, 300, 0, 0, 0, 0, 300, 0, 500, 300, 300, 500, 65535]);
});

test('attributes of several groups, packed in every way', () => {
  const packed = bytesOf(
    'a0152aaaaaaaaaaaaaaaaaaa00001f00d7d7d7d7d7d7d7d7d7d7d7d7d7d7d7d7d7d7d7d7d7d7d7d7d7d7d7d7d7d7d7ffff0000d7d7d7d7d7d7d7d7001500808080c080808005c0800000050000000000000000000000000000000000000000000000000000000000250700',
  );
  const expected = Array.from({ length: 160 }, (_, i) => [i >> 2, (i * 37) & 255, 7, (i >> 4) & 3][i % 4]);
  assert.deepEqual([...decodeAttributes(40, 4, packed)], expected);
});

// The encoder turns the corners of a triangle round where that is shorter.
test('triangles', () => {
  const packed = bytesOf('e1f010feffffcff00cff0202021711e807007687566778a9866589689801690000');
  assert.deepEqual([...decodeTriangles(18, packed)], [0, 1, 2, 2, 1, 3, 4, 6, 5, 7, 8, 9, 0, 9, 3, 2, 1, 500]);
});

test('noise of any length ends in an error or in data of the right size', () => {
  let seed = 1;
  const next = (): number => (seed = (seed * 48271) % 2147483647) & 255;
  for (let i = 0; i < 3000; i++) {
    const source = Uint8Array.from({ length: next() }, next);
    source[0] = i % 2 ? 0xa0 : 0xe1;
    const [count, stride] = [(next() % 20) * 3, 4 + (next() % 8) * 4];
    try {
      if (i % 2) assert.equal(decodeAttributes(count, stride, source).length, count * stride);
      else assert.equal(decodeTriangles(count, source).length, count);
    } catch (error) {
      assert.equal((error as Error).message, 'demand');
    }
  }
});

test('what would be too large is refused before it is allocated', () => {
  assert.throws(() => decodeAttributes(2 ** 32, 16, new Uint8Array(1000).fill(0xa0)), /demand/);
  assert.throws(() => decodeTriangles(3 * 2 ** 30, new Uint8Array(1000).fill(0xe1)), /demand/);
});

test('octahedral normals', () => {
  const bytes = new Uint8Array(Int8Array.from([0, 0, 127, 0, 127, 0, 127, 0, 127, 127, 127, 0]).buffer);
  filterOctahedral(bytes);
  const [up, right, under] = [0, 4, 8].map((i) => [...new Int8Array(bytes.buffer, i, 3)]);
  assert.deepEqual([up, right, under], [[0, 0, 127], [127, 0, 0], [0, 0, -127]]);
});

test('exponential numbers', () => {
  const words = Int32Array.from([(-2 << 24) | 6, (3 << 24) | (-5 & 0xffffff), 0]);
  const bytes = new Uint8Array(words.buffer);
  filterExponential(bytes);
  assert.deepEqual([...new Float32Array(bytes.buffer)], [1.5, -40, 0]);
});
