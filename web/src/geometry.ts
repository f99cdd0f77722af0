// SPDX-License-Identifier: MIT
import type { PrimitiveJson } from './format.ts';
import { Gl, type Context } from './gl.ts';
import { accessorOf, indicesOf, numbersOf, viewBytes, type Accessor, type Gltf } from './gltf.ts';
import type { Indices } from './sorting.ts';
import { demand } from './texts.ts';
import { cross, max, min, normalized, sub, type Vec3 } from './vector.ts';

/** Where the shader takes the normals of triangles from, and the first of two shapes. */
const kFace = 3;
const kFirstTarget = 4;

/** The triangles of one primitive on the graphics card. */
export interface Geometry {
  vao: WebGLVertexArrayObject;
  mode: number;
  count: number;
  indexType: number;
  hasUv: boolean;
  low: Vec3;
  high: Vec3;
  /** Of primitives that are sorted. */
  sorted?: { positions: Float32Array; indices: Indices };
  /** Shapes that it changes into: positions and normals. */
  targets: (Accessor | undefined)[][];
}

export interface GeometryMaker {
  /** lines: as edges of the triangles. sorted: keeps what sorting needs. */
  make(primitive: PrimitiveJson, lines: boolean, sorted: boolean): Geometry;
  /** Mixes the bound geometry with two of its shapes. */
  mixWith(geometry: Geometry, chosen: readonly number[]): void;
}

/** Uploads primitives; a buffer view is uploaded once however many share it. */
export function geometryMaker(gl: Context, gltf: Gltf): GeometryMaker {
  const buffers: WebGLBuffer[] = [];
  const fill = (target: number, bytes: ArrayBufferView<ArrayBuffer>, usage: number = Gl.StaticDraw): WebGLBuffer => {
    const buffer = gl.createBuffer();
    gl.bindBuffer(target, buffer);
    gl.bufferData(target, bytes, usage);
    return buffer;
  };
  const point = (location: number, components: number, type: number, normalized = false, stride = 0, offset = 0): void => {
    gl.enableVertexAttribArray(location);
    gl.vertexAttribPointer(location, components, type, normalized, stride, offset);
  };
  const pointAt = (location: number, a: Accessor): void => {
    gl.bindBuffer(Gl.ArrayBuffer, (buffers[a.view] ??= fill(Gl.ArrayBuffer, viewBytes(gltf, a.view))));
    point(location, a.components, a.type, a.normalized, a.stride, a.offset);
  };
  const own = (location: number, components: number, values: Float32Array<ArrayBuffer>): void => {
    fill(Gl.ArrayBuffer, values);
    point(location, components, Gl.Float);
  };

  /** Gives each triangle corners of its own, with the triangle's normal, and returns its edges. */
  const asLines = (attributes: readonly (Accessor | undefined)[], indices: Indices): Uint32Array<ArrayBuffer> => {
    const edges = new Uint32Array(indices.length * 2);
    const faces = new Float32Array(indices.length * 3);
    attributes.forEach((a, location) => {
      if (!a) return;
      const from = numbersOf(gltf, a);
      const n = a.components;
      const at = (i: number): Vec3 => from.subarray(indices[i] * n, indices[i] * n + n) as unknown as Vec3;
      const corners = new Float32Array(indices.length * n);
      indices.forEach((_, i) => corners.set(at(i), i * n));
      own(location, n, corners);
      if (location) return;
      for (let i = 0; i < indices.length; i += 3) {
        const face = normalized(cross(sub(at(i + 1), at(i)), sub(at(i + 2), at(i))), 0);
        faces.set([...face, ...face, ...face], i * 3);
        edges.set([i, i + 1, i + 1, i + 2, i + 2, i], i * 2);
      }
    });
    own(kFace, 3, faces);
    return edges;
  };

  return {
    make({ attributes: { POSITION, NORMAL, TEXCOORD_0 }, indices: index, targets: shapes = [] }, lines, sorted) {
      const optional = (a?: number): Accessor | undefined => (a === undefined ? a : accessorOf(gltf, a));
      const position = accessorOf(gltf, POSITION);
      const attributes = [position, optional(NORMAL), optional(TEXCOORD_0)];
      const indices = indicesOf(gltf, index, position.count);
      const targets = lines ? [] : shapes.map((t) => [optional(t.POSITION), optional(t.NORMAL)]);
      for (const a of [...attributes, ...targets.flat()]) demand(!a || a.count >= position.count);
      const vao = gl.createVertexArray();
      gl.bindVertexArray(vao);
      if (!lines) attributes.forEach((a, location) => a && pointAt(location, a));
      const list = lines ? asLines(attributes, indices) : indices;
      fill(Gl.ElementArrayBuffer, list as Uint32Array<ArrayBuffer>, sorted ? Gl.DynamicDraw : Gl.StaticDraw);
      const reach = (from: number[], outer: (...v: number[]) => number, which: 'min' | 'max') =>
        targets.reduce((sum, [t]) => sum.map((x, i) => x + outer(0, t?.[which][i] ?? 0)), from) as unknown as Vec3;
      return {
        vao,
        mode: lines ? Gl.Lines : Gl.Triangles,
        count: list.length,
        indexType: list.BYTES_PER_ELEMENT === 2 ? Gl.UnsignedShort : Gl.UnsignedInt,
        hasUv: TEXCOORD_0 !== undefined,
        low: reach(position.min, min, 'min'),
        high: reach(position.max, max, 'max'),
        sorted: sorted ? { positions: numbersOf(gltf, position), indices } : undefined,
        targets,
      };
    },
    mixWith({ targets }, chosen) {
      chosen.forEach((target, i) =>
        targets[target]?.forEach((a, part) => {
          const location = kFirstTarget + i * 2 + part;
          if (a) pointAt(location, a);
          else gl.disableVertexAttribArray(location);
        }),
      );
    },
  };
}
