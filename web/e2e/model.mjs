// SPDX-License-Identifier: MIT
// A small 3DS file with whatever names: a pyramid of one material, and a camera.

const chunk = (id, ...parts) => {
  const body = Buffer.concat(parts);
  const head = Buffer.alloc(6);
  head.writeUInt16LE(id, 0);
  head.writeUInt32LE(6 + body.length, 2);
  return Buffer.concat([head, body]);
};
const words = (...values) => Buffer.from(new Uint16Array(values).buffer);
const floats = (...values) => Buffer.from(new Float32Array(values).buffer);
/** A name as the file has it: its bytes up to a NUL. */
const text = (name) => Buffer.concat([Buffer.isBuffer(name) ? name : Buffer.from(name), Buffer.from([0])]);

export function model({ node = 'pyramid', material = 'red', camera = 'camera' }) {
  const points = [-1, -1, 0, 1, -1, 0, 1, 1, 0, -1, 1, 0, 0, 0, 1.5];
  const faces = [0, 1, 4, 1, 2, 4, 2, 3, 4, 3, 0, 4, 0, 2, 1, 0, 3, 2];
  const flagged = [];
  for (let i = 0; i < faces.length; i += 3) flagged.push(...faces.slice(i, i + 3), 7);
  const color = chunk(0xa020, chunk(0x0011, Buffer.from([200, 40, 30])));
  const group = chunk(0x4130, text(material), words(6, 0, 1, 2, 3, 4, 5));
  const mesh = chunk(0x4100, chunk(0x4110, words(5), floats(...points)), chunk(0x4120, words(6, ...flagged), group));
  const eye = chunk(0x4700, floats(4, -4, 3, 0, 0, 0.5, 0, 50));
  const scene = chunk(0x3d3d, chunk(0xafff, chunk(0xa000, text(material)), color), chunk(0x4000, text(node), mesh),
    chunk(0x4000, text(camera), eye));
  return chunk(0x4d4d, chunk(0x0002, Buffer.from([3, 0, 0, 0])), scene);
}
