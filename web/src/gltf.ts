// SPDX-License-Identifier: MIT
import {
  decodeAttributes,
  decodeTriangles,
  filterExponential,
  filterOctahedral,
} from '../third_party/meshoptimizer/decode.ts';
import { readGlb } from './glb.ts';
import { demand } from './trouble.ts';

/** Some JSON whose members are checked where they are used. */
// eslint-disable-next-line @typescript-eslint/no-explicit-any
export type Json = any;

/** Numbers of a buffer view as WebGL takes them. */
export interface Accessor {
  view: number;
  /** Of the view. */
  bytes: Uint8Array;
  offset: number;
  stride: number;
  count: number;
  components: number;
  /** GL's number of the type. */
  type: number;
  normalized: boolean;
  min: number[] | undefined;
  max: number[] | undefined;
}

const kComponents: Record<string, number> = { SCALAR: 1, VEC2: 2, VEC3: 3, VEC4: 4, MAT4: 16 };
const kTypes: Record<number, { size: number; most: number; read: (v: DataView, at: number) => number }> = {
  5120: { size: 1, most: 127, read: (v, at) => v.getInt8(at) },
  5121: { size: 1, most: 255, read: (v, at) => v.getUint8(at) },
  5122: { size: 2, most: 32767, read: (v, at) => v.getInt16(at, true) },
  5123: { size: 2, most: 65535, read: (v, at) => v.getUint16(at, true) },
  5125: { size: 4, most: 1, read: (v, at) => v.getUint32(at, true) },
  5126: { size: 4, most: 1, read: (v, at) => v.getFloat32(at, true) },
};

/** A whole number from 0 on; `otherwise` where there is none. */
function whole(v: unknown, otherwise: number | undefined, what: string): number {
  const n = v ?? otherwise;
  demand(Number.isSafeInteger(n) && (n as number) >= 0, what);
  return n as number;
}

/** The scene's file: JSON and binary data, read with every bound checked. */
export class Gltf {
  readonly json: Json;
  private readonly bin: Uint8Array;
  private readonly decoded = new Map<number, Uint8Array>();

  constructor(bytes: Uint8Array) {
    const glb = readGlb(bytes);
    this.json = glb.json;
    this.bin = glb.bin;
  }

  /** Element `index` of a top-level list. */
  item(list: string, index: unknown): Json {
    const all = this.json[list];
    const item = Array.isArray(all) && Number.isSafeInteger(index) ? all[index as number] : undefined;
    demand(typeof item === 'object' && item, list);
    return item;
  }

  /** A top-level list; empty where there is none. */
  list(name: string): Json[] {
    const all = this.json[name] ?? [];
    demand(Array.isArray(all) && all.every((x) => typeof x === 'object' && x), name);
    return all;
  }

  /** The bytes of a buffer view, unpacked. */
  bytesOf(index: unknown): Uint8Array {
    const known = this.decoded.get(index as number);
    if (known) return known;
    const view = this.item('bufferViews', index);
    const packed = view.extensions?.EXT_meshopt_compression;
    const bytes = packed ? this.unpacked(packed) : this.slice(view);
    this.decoded.set(index as number, bytes);
    return bytes;
  }

  /** Lets what was unpacked go: it is on the graphics card. */
  forget(): void {
    this.decoded.clear();
  }

  private slice(view: Json): Uint8Array {
    const offset = whole(view.byteOffset, 0, 'bufferViews');
    const length = whole(view.byteLength, undefined, 'bufferViews');
    demand(view.buffer === 0 && offset + length <= this.bin.length, 'bufferViews');
    return this.bin.subarray(offset, offset + length);
  }

  private unpacked(packed: Json): Uint8Array {
    const source = this.slice(packed);
    const count = whole(packed.count, undefined, 'meshopt');
    const stride = whole(packed.byteStride, undefined, 'meshopt');
    try {
      if (packed.mode === 'TRIANGLES') {
        const indices = decodeTriangles(count, source);
        return new Uint8Array(stride === 2 ? new Uint16Array(indices).buffer : indices.buffer);
      }
      const bytes = decodeAttributes(packed.mode === 'ATTRIBUTES' ? count : -1, stride, source);
      if (packed.filter === 'OCTAHEDRAL') filterOctahedral(bytes, stride);
      if (packed.filter === 'EXPONENTIAL') filterExponential(bytes);
      return bytes;
    } catch {
      return demand(false, 'meshopt') as never;
    }
  }

  /** Checks and returns an accessor with so many components, of one of the types. */
  accessor(index: unknown, components: number): Accessor {
    const a = this.item('accessors', index);
    const type = kTypes[a.componentType];
    const view = this.item('bufferViews', a.bufferView);
    const bytes = this.bytesOf(a.bufferView);
    const offset = whole(a.byteOffset, 0, 'accessors');
    const count = whole(a.count, undefined, 'accessors');
    demand(type && kComponents[a.type] === components && !a.sparse, 'accessors');
    const size = type.size * components;
    const stride = whole(view.extensions?.EXT_meshopt_compression?.byteStride ?? view.byteStride, size, 'accessors') || size;
    demand(stride >= size && stride <= 255 && offset % type.size === 0 && stride % type.size === 0, 'accessors');
    demand(count > 0 && offset + (count - 1) * stride + size <= bytes.length, 'accessors');
    return {
      view: a.bufferView,
      bytes,
      offset,
      stride,
      count,
      components,
      type: a.componentType,
      normalized: a.normalized === true,
      min: a.min,
      max: a.max,
    };
  }

  /** What a number in the file is multiplied with. */
  scaleOf(a: Accessor): number {
    return a.normalized ? 1 / kTypes[a.type].most : 1;
  }

  /** All numbers of an accessor; normalized ones as fractions. */
  numbers(a: Accessor): Float32Array {
    const { read, size } = kTypes[a.type];
    const view = new DataView(a.bytes.buffer, a.bytes.byteOffset, a.bytes.length);
    const result = new Float32Array(a.count * a.components);
    const scale = this.scaleOf(a);
    for (let i = 0, to = 0; i < a.count; i++) {
      for (let c = 0; c < a.components; c++)
        result[to++] = Math.max(read(view, a.offset + i * a.stride + c * size) * scale, a.normalized ? -1 : -Infinity);
    }
    return result;
  }

  /** The indices of triangles, all of them below `vertices`. */
  indices(index: unknown, vertices: number): Uint16Array | Uint32Array {
    const a = this.accessor(index, 1);
    demand((a.type === 5123 || a.type === 5125) && a.count % 3 === 0 && (a.bytes.byteOffset + a.offset) % 2 === 0, 'indices');
    const from = a.bytes.byteOffset + a.offset;
    const bytes = from % 4 ? a.bytes.slice(a.offset) : undefined;
    const buffer = (bytes ?? a.bytes).buffer as ArrayBuffer;
    const at = bytes ? 0 : from;
    const result = a.type === 5123 ? new Uint16Array(buffer, at, a.count) : new Uint32Array(buffer, at, a.count);
    let most = 0;
    for (let i = 0; i < result.length; i++) if (result[i] > most) most = result[i];
    demand(most < vertices, 'indices');
    return result;
  }
}
