// SPDX-License-Identifier: MIT
import { decodeAttributes, decodeTriangles, filterExponential, filterOctahedral } from '../third_party/meshoptimizer/decode.ts';
import type { AccessorJson, GltfJson, PackedJson } from './format.ts';
import { demand } from './texts.ts';

const kMagic = 0x46546c67; // "glTF"

/** The scene's file: JSON, binary data, and what was unpacked of it. */
export interface Gltf {
  json: GltfJson;
  bin: Uint8Array<ArrayBuffer>;
  views: Uint8Array<ArrayBuffer>[];
}

/** Numbers of a buffer view as WebGL takes them. */
export interface Accessor {
  view: number;
  offset: number;
  stride: number;
  count: number;
  components: number;
  /** GL's number of the type. */
  type: number;
  normalized: boolean;
  min: number[];
  max: number[];
}

/** By GL's number from 5120 on. */
const kArrays = [Int8Array, Uint8Array, Int16Array, Uint16Array, , Uint32Array, Float32Array];

/** Takes a glTF binary apart: a header of 12 bytes, JSON, data. */
export function readGltf(bytes: Uint8Array<ArrayBuffer>): Gltf {
  const view = new DataView(bytes.buffer, bytes.byteOffset, bytes.length);
  const word = (at: number): number => view.getUint32(at, true);
  const chunk = (at: number): Uint8Array<ArrayBuffer> => {
    demand(word(at) <= bytes.length - at - 8);
    return bytes.subarray(at + 8, at + 8 + word(at));
  };
  demand(bytes.length > 20 && word(0) === kMagic && word(4) === 2);
  const text = chunk(12);
  const next = 20 + text.length;
  const json = JSON.parse(new TextDecoder().decode(text)) as GltfJson;
  return { json, bin: next + 8 <= bytes.length ? chunk(next) : new Uint8Array(), views: [] };
}

function slice({ bin }: Gltf, { byteOffset = 0, byteLength }: { byteOffset?: number; byteLength: number }): Uint8Array<ArrayBuffer> {
  demand(byteOffset >= 0 && byteLength >= 0 && byteOffset + byteLength <= bin.length);
  return bin.subarray(byteOffset, byteOffset + byteLength);
}

function unpack(gltf: Gltf, { count, byteStride, mode, filter, ...at }: PackedJson): Uint8Array<ArrayBuffer> {
  const source = slice(gltf, at);
  if (mode === 'TRIANGLES') {
    const indices = decodeTriangles(count, source);
    return new Uint8Array(byteStride === 2 ? new Uint16Array(indices).buffer : indices.buffer);
  }
  const bytes = decodeAttributes(count, byteStride, source);
  if (filter === 'OCTAHEDRAL') {
    demand(byteStride === 4);
    filterOctahedral(bytes);
  }
  if (filter === 'EXPONENTIAL') filterExponential(bytes);
  return bytes;
}

/** The bytes of a buffer view, unpacked. */
export function viewBytes(gltf: Gltf, index: number): Uint8Array<ArrayBuffer> {
  const view = gltf.json.bufferViews[index];
  const packed = view.extensions?.EXT_meshopt_compression;
  return (gltf.views[index] ??= packed ? unpack(gltf, packed) : slice(gltf, view));
}

/** Checks and returns an accessor. */
export function accessorOf(gltf: Gltf, index: number): Accessor {
  const a: AccessorJson = gltf.json.accessors[index];
  const { bufferView: view, byteOffset: offset = 0, componentType: type, count, normalized = false, min = [], max = [] } = a;
  const json = gltf.json.bufferViews[view];
  const unit = kArrays[type - 5120]!.BYTES_PER_ELEMENT;
  // The digit of VEC3, or none in SCALAR.
  const components = +a.type[3] || 1;
  const stride = json.extensions?.EXT_meshopt_compression?.byteStride || json.byteStride || unit * components;
  const end = offset + (count - 1) * stride + unit * components;
  demand(count > 0 && offset >= 0 && offset % unit + (stride % unit) === 0 && end <= viewBytes(gltf, view).length);
  return { view, offset, stride, count, components, type, normalized, min, max };
}

/** All numbers of an accessor, as they stand. */
export function numbersOf(gltf: Gltf, a: Accessor): Float32Array {
  const from = typed(gltf, a);
  const step = a.stride / from.BYTES_PER_ELEMENT;
  const result = new Float32Array(a.count * a.components);
  for (let i = 0, to = 0; i < a.count; i++) {
    for (let c = 0; c < a.components; c++) result[to++] = from[i * step + c];
  }
  return result;
}

/** From the accessor's beginning to the end of its view. */
function typed(gltf: Gltf, { view, offset, type }: Accessor): Uint16Array | Uint32Array {
  let bytes = viewBytes(gltf, view).subarray(offset);
  const list = kArrays[type - 5120] as Uint16ArrayConstructor;
  // A view of the file may begin where an array of its type cannot.
  if (bytes.byteOffset % list.BYTES_PER_ELEMENT) bytes = bytes.slice();
  return new list(bytes.buffer, bytes.byteOffset, Math.floor(bytes.length / list.BYTES_PER_ELEMENT));
}

/** The indices of triangles, all of them below `vertices`. */
export function indicesOf(gltf: Gltf, index: number, vertices: number): Uint16Array | Uint32Array {
  const a = accessorOf(gltf, index);
  const result = typed(gltf, a).subarray(0, a.count);
  demand(a.components === 1 && a.count % 3 === 0 && result.every((i) => i < vertices));
  return result;
}
