// SPDX-License-Identifier: MIT
import type { Accessor, Gltf, Json } from './gltf.ts';
import { numbersOf } from './settings.ts';
import { demand } from './trouble.ts';
import { cross, normalized, sub, type Vec3 } from './vector.ts';

/** Where the shader takes what from; targets of morphs follow in pairs. */
const kAttributes = [
  ['POSITION', 3],
  ['NORMAL', 3],
  ['TEXCOORD_0', 2],
] as const;
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
  /** Of primitives that are sorted: positions and indices. */
  positions: Float32Array | undefined;
  indices: Uint16Array | Uint32Array | undefined;
  indexBuffer: WebGLBuffer;
  /** Shapes that it changes into: attributes for positions and normals. */
  targets: { position: Accessor | undefined; normal: Accessor | undefined }[];
}

export interface GeometryUse {
  lines: boolean;
  sorted: boolean;
}

/** Uploads primitives; a buffer view is uploaded once however many share it. */
export class GeometryMaker {
  private readonly buffers = new Map<number, WebGLBuffer>();

  constructor(
    private readonly gl: WebGL2RenderingContext,
    private readonly gltf: Gltf,
  ) {}

  make(primitive: Json, use: GeometryUse): Geometry {
    const { gl, gltf } = this;
    const attributes = primitive?.attributes ?? {};
    const position = gltf.accessor(attributes.POSITION, 3);
    demand((primitive.mode ?? 4) === 4, 'mode');
    const indices = gltf.indices(primitive.indices, position.count);
    const vao = gl.createVertexArray()!;
    gl.bindVertexArray(vao);
    const present = kAttributes.map(([name, n]) => (attributes[name] === undefined ? undefined : gltf.accessor(attributes[name], n)));
    for (const a of present) demand(!a || a.count >= position.count, 'attributes');
    let list: Uint16Array | Uint32Array = indices;
    if (use.lines) list = this.asLines(present, indices);
    else present.forEach((a, i) => a && this.point(i, a));
    const indexBuffer = gl.createBuffer()!;
    gl.bindBuffer(gl.ELEMENT_ARRAY_BUFFER, indexBuffer);
    gl.bufferData(gl.ELEMENT_ARRAY_BUFFER, list, use.sorted ? gl.DYNAMIC_DRAW : gl.STATIC_DRAW);
    gl.bindVertexArray(null);
    const [low, high] = this.boundsOf(primitive, position);
    return {
      vao,
      mode: use.lines ? gl.LINES : gl.TRIANGLES,
      count: list.length,
      indexType: list instanceof Uint16Array ? gl.UNSIGNED_SHORT : gl.UNSIGNED_INT,
      hasUv: !!present[2],
      low,
      high,
      positions: use.sorted ? gltf.numbers(position) : undefined,
      indices: use.sorted ? indices : undefined,
      indexBuffer,
      targets: use.lines ? [] : this.targetsOf(primitive, position.count),
    };
  }

  private targetsOf(primitive: Json, count: number): Geometry['targets'] {
    return (primitive.targets ?? []).map((target: Json) => {
      const [position, normal] = ['POSITION', 'NORMAL'].map((name) => (target?.[name] === undefined ? undefined : this.gltf.accessor(target[name], 3)));
      for (const a of [position, normal]) {
        demand(!a || a.count >= count, 'targets');
        if (a) this.bufferOf(a);
      }
      return { position, normal };
    });
  }

  private bufferOf(a: Accessor): WebGLBuffer {
    const { gl } = this;
    let buffer = this.buffers.get(a.view);
    if (!buffer) {
      buffer = gl.createBuffer()!;
      gl.bindBuffer(gl.ARRAY_BUFFER, buffer);
      gl.bufferData(gl.ARRAY_BUFFER, a.bytes, gl.STATIC_DRAW);
      this.buffers.set(a.view, buffer);
    }
    return buffer;
  }

  private point(location: number, a: Accessor): void {
    const { gl } = this;
    gl.bindBuffer(gl.ARRAY_BUFFER, this.bufferOf(a));
    gl.enableVertexAttribArray(location);
    gl.vertexAttribPointer(location, a.components, a.type, a.normalized, a.stride, a.offset);
  }

  /** Makes two of the shapes those that the bound geometry is mixed with. */
  pointAtTargets(geometry: Geometry, chosen: readonly number[]): void {
    chosen.forEach((target, i) => {
      const { position, normal } = geometry.targets[target] ?? {};
      [position, normal].forEach((a, part) => {
        const location = kFirstTarget + i * 2 + part;
        if (a) this.point(location, a);
        else this.gl.disableVertexAttribArray(location);
      });
    });
  }

  /** Gives each triangle corners of its own, with the triangle's normal, and returns its edges. */
  private asLines(present: readonly (Accessor | undefined)[], indices: Uint16Array | Uint32Array): Uint32Array {
    const { gltf } = this;
    const from = gltf.numbers(present[0]!);
    const corner = (i: number): Vec3 => [from[indices[i] * 3], from[indices[i] * 3 + 1], from[indices[i] * 3 + 2]];
    const faces = new Float32Array(indices.length * 3);
    const edges = new Uint32Array(indices.length * 2);
    for (let i = 0; i < indices.length; i += 3) {
      const a = corner(i);
      const normal = normalized(cross(sub(corner(i + 1), a), sub(corner(i + 2), a)), 0);
      for (let c = 0; c < 3; c++) faces.set(normal, (i + c) * 3);
      edges.set([i, i + 1, i + 1, i + 2, i + 2, i], i * 2);
    }
    this.upload(kFace, faces, 3);
    present.forEach((a, location) => {
      if (!a) return;
      const all = gltf.numbers(a);
      const n = a.components;
      const own = new Float32Array(indices.length * n);
      for (let i = 0; i < indices.length; i++) for (let c = 0; c < n; c++) own[i * n + c] = all[indices[i] * n + c];
      this.upload(location, own, n);
    });
    return edges;
  }

  private upload(location: number, values: Float32Array, components: number): void {
    const { gl } = this;
    gl.bindBuffer(gl.ARRAY_BUFFER, gl.createBuffer());
    gl.bufferData(gl.ARRAY_BUFFER, values, gl.STATIC_DRAW);
    gl.enableVertexAttribArray(location);
    gl.vertexAttribPointer(location, components, gl.FLOAT, false, 0, 0);
  }

  /** Lowest and highest coordinates, in any shape. */
  private boundsOf(primitive: Json, position: Accessor): [Vec3, Vec3] {
    const shapes = (primitive.targets ?? []).filter((t: Json) => t?.POSITION !== undefined).map((t: Json) => this.gltf.accessor(t.POSITION, 3));
    const corner = (which: 'min' | 'max', outer: (...v: number[]) => number): Vec3 => {
      const read = (a: Accessor): number[] => numbersOf(a[which], 3)?.map((x) => x * this.gltf.scaleOf(a)) ?? [];
      const own = read(position);
      demand(own.length, 'bounds');
      return shapes.map(read).reduce((sum: number[], add: number[]) => sum.map((x, i) => x + outer(0, add[i] || 0)), own);
    };
    return [corner('min', Math.min), corner('max', Math.max)];
  }
}
