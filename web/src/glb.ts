// SPDX-License-Identifier: MIT
import { demand } from './trouble.ts';

const kMagic = 0x46546c67; // "glTF"
const kJson = 0x4e4f534a;
const kBin = 0x004e4942;

export interface Glb {
  json: unknown;
  bin: Uint8Array;
}

/** Takes a glTF binary apart. Its bytes are shared, not copied. */
export function readGlb(bytes: Uint8Array): Glb {
  const view = new DataView(bytes.buffer, bytes.byteOffset, bytes.length);
  demand(bytes.length >= 20 && view.getUint32(0, true) === kMagic && view.getUint32(4, true) === 2, 'glTF');
  const end = view.getUint32(8, true);
  demand(end <= bytes.length, 'length');
  let json: unknown;
  let bin = new Uint8Array(0);
  for (let at = 12; at + 8 <= end; ) {
    const size = view.getUint32(at, true);
    const kind = view.getUint32(at + 4, true);
    at += 8;
    demand(size <= end - at, 'chunk');
    const chunk = bytes.subarray(at, at + size);
    if (kind === kJson && json === undefined) json = parsed(chunk);
    if (kind === kBin && !bin.length) bin = chunk as Uint8Array<ArrayBuffer>;
    at += (size + 3) & ~3;
  }
  demand(typeof json === 'object' && json !== null, 'JSON');
  return { json, bin };
}

function parsed(chunk: Uint8Array): unknown {
  try {
    return JSON.parse(new TextDecoder().decode(chunk));
  } catch {
    return undefined;
  }
}
