// SPDX-License-Identifier: MIT

/** A scene of one triangle, whose JSON a test changes. */
export function triangleJson(): Record<string, any> {
  return {
    asset: { version: '2.0' },
    scene: 0,
    scenes: [{ nodes: [0], extras: { orbivue: { version: 1, bounds: { center: [0, 0, 0], radius: 1 } } } }],
    nodes: [{ children: [1] }, { mesh: 0, translation: [1, 2, 3] }],
    meshes: [{ primitives: [{ attributes: { POSITION: 0 }, indices: 1, material: 0 }] }],
    accessors: [
      { bufferView: 0, componentType: 5126, count: 3, type: 'VEC3', min: [0, 0, 0], max: [1, 1, 0] },
      { bufferView: 1, componentType: 5123, count: 3, type: 'SCALAR' },
    ],
    bufferViews: [
      { buffer: 0, byteOffset: 0, byteLength: 36 },
      { buffer: 0, byteOffset: 36, byteLength: 6 },
    ],
  };
}

export function triangleBytes(): Uint8Array {
  const bytes = new Uint8Array(44);
  new Float32Array(bytes.buffer, 0, 9).set([0, 0, 0, 1, 0, 0, 0, 1, 0]);
  new Uint16Array(bytes.buffer, 36, 3).set([0, 1, 2]);
  return bytes;
}

export function glbOf(json: unknown, bin = triangleBytes()): Uint8Array<ArrayBuffer> {
  const text = new TextEncoder().encode(JSON.stringify(json));
  const room = (text.length + 3) & ~3;
  const bytes = new Uint8Array(28 + room + bin.length).fill(0x20);
  const view = new DataView(bytes.buffer);
  const words = [0x46546c67, 2, bytes.length, room, 0x4e4f534a];
  words.forEach((word, i) => view.setUint32(i * 4, word, true));
  bytes.set(text, 20);
  view.setUint32(20 + room, bin.length, true);
  view.setUint32(24 + room, 0x004e4942, true);
  bytes.set(bin, 28 + room);
  return bytes;
}
