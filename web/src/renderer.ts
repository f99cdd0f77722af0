// SPDX-License-Identifier: MIT
import depthFragment from '../shaders/depth.frag';
import surfaceFragment from '../shaders/surface.frag';
import surfaceVertex from '../shaders/surface.vert';
import { depthRange, eyeOf, projection } from './camera.ts';
import type { Settings } from './format.ts';
import { geometryMaker } from './geometry.ts';
import { Gl, type Context } from './gl.ts';
import { lightUniforms } from './lights.ts';
import { lookOf, type Look } from './material.ts';
import { column, kIdentity, movedTo, normalMatrix, product, rowTimes, type Mat4 } from './matrix.ts';
import { drawPart, makeParts, type Part } from './parts.ts';
import { makeProgram, type Program } from './program.ts';
import type { Scene } from './scene.ts';
import { modelOf, type Seen } from './seen.ts';
import { orderBackToFront } from './sorting.ts';
import { loadTextures } from './textures.ts';
import { abs, add, dot, max, min, sub } from './vector.ts';

const kClear = [0, 0, 0, 0];

/** Draws the scene as the desktop's engine does: opaque parts, then blended ones from back to front. */
export interface Renderer {
  draw(): void;
  /** How far before the eye, along the line of sight, the scene is seen at a pixel of the view; undefined beside it. */
  depthAt(x: number, y: number): number | undefined;
}

/** Uploads the scene. */
export async function makeRenderer(gl: Context, scene: Scene, seen: Seen, settings: Settings): Promise<Renderer> {
  const { gltf } = scene;
  const { wire, doubleSided, background, backgroundPicture } = settings;
  const looks = (gltf.json.materials ?? []).map((m) => lookOf(m.extras.orbivue, doubleSided || m.doubleSided, wire));
  const textured = loadTextures(gl, gltf, looks);
  const maker = geometryMaker(gl, gltf);
  const programs: Record<string, Program> = {};
  const compile = (macros: (boolean | number)[]): Program => (programs[macros.join()] ??= makeProgram(gl, surfaceVertex, surfaceFragment, macros));
  const { opaque, blended } = await makeParts(gltf, scene.nodes, looks, maker, scene.lights.length, compile, textured);
  const bindMaps = await textured;
  // It is on the graphics card.
  gltf.views = [];

  /** Of the picture under way. Space: the file's axes after the turning of the model, the eye as origin. */
  let toEye: Mat4;
  let toClip: Mat4;
  let depthRow: readonly number[];
  let lights: readonly number[];
  let program: Program | undefined;
  let look: Look | undefined;

  /** Of the nearest and the farthest corner of what is shown. */
  const depths = (): [number, number] => {
    let [nearest, farthest] = [Infinity, -Infinity];
    for (const part of [...opaque, ...blended]) {
      const { low, high } = part.geometry;
      const r = rowTimes(depthRow, part.node.world);
      const half = dot(r.map(abs), sub(high, low)) / 2;
      part.depth = dot(r, add(low, high)) / 2 + r[3];
      nearest = min(nearest, part.depth - half);
      farthest = max(farthest, part.depth + half);
    }
    return [nearest, farthest];
  };

  /** Takes the view for what is drawn next, at a place of the target, which gets a colour. */
  const begin = (x: number, y: number, width: number, height: number, [r, g, b, a]: readonly number[]): void => {
    const { camera } = seen;
    const model = modelOf(seen);
    toEye = movedTo(model, sub(column(model, 12), eyeOf(camera)));
    depthRow = rowTimes([...camera.backward.map((x) => -x), 0], toEye);
    toClip = projection(camera, depthRange(camera, ...depths()));
    lights = lightUniforms(scene.lights, scene.nodes, toEye);
    program = look = undefined;
    gl.enable(Gl.DepthTest);
    gl.disable(Gl.Blend);
    gl.depthMask(true);
    gl.viewport(x, y, width, height);
    gl.clearColor(r, g, b, a);
    gl.clear(Gl.ColorBit | Gl.DepthBit);
  };

  const useProgram = (next: Program): void => {
    if (program === next) return;
    next.use();
    program = next;
    look = undefined;
    next.uniform('uProjection', toClip);
    if (lights.length) next.uniform('uLights', lights);
  };
  const cull = (on: boolean, side: number = Gl.Back): void => {
    gl[on ? 'enable' : 'disable'](Gl.CullFace);
    gl.cullFace(side);
  };
  /** Of the program in use, as what follows. */
  const useLook = ({ look: next, specular }: Part): void => {
    if (look === next) return;
    look = next;
    const { diffuse, opacity, exponent, ambient, self, maps } = next;
    program!.uniform('uLook', [...diffuse, opacity, ...specular, exponent, ...ambient, self, ...scene.ambientLight, 0]);
    program!.uniform('uMaps', maps.flatMap((map) => map?.uniform ?? kIdentity));
    bindMaps(next);
    cull(!next.twoSided);
  };
  /** Where the part is, and its triangles. */
  const placePart = ({ node, geometry }: Part): void => {
    const m = product(toEye, node.world);
    program!.uniform('uModelView', m);
    const [normal, determinant] = normalMatrix(m);
    program!.uniform('uNormal', normal);
    gl.frontFace(determinant < 0 ? Gl.Cw : Gl.Ccw);
    gl.bindVertexArray(geometry.vao);
    if (!geometry.targets.length) return;
    // The two shapes that count most.
    const weights = node.weights ?? [];
    const chosen = [...weights.keys()].sort((a, b) => abs(weights[b]) - abs(weights[a])).slice(0, 2);
    maker.mixWith(geometry, chosen);
    program!.uniform('uMorph', [weights[chosen[0]] || 0, weights[chosen[1]] || 0]);
  };
  const prepare = (part: Part): void => {
    useProgram(part.program);
    useLook(part);
    placePart(part);
  };

  const drawOpaque = (): void => {
    opaque.sort((a, b) => b.key - a.key || b.material - a.material || a.depth - b.depth);
    for (const part of opaque) {
      // Of many opaque surfaces in one place only the first is lit. Lines share their places with each other.
      gl.depthFunc(part.look.lines ? Gl.Lequal : Gl.Less);
      prepare(part);
      drawPart(gl, part);
    }
  };
  const drawBlended = (): void => {
    for (const part of blended) {
      const { sorted } = part.geometry;
      if (sorted) [part.ordered, part.depth] = orderBackToFront(sorted.positions, sorted.indices, rowTimes(depthRow, part.node.world));
    }
    blended.sort((a, b) => b.depth - a.depth);
    gl.enable(Gl.Blend);
    gl.depthMask(false);
    gl.depthFunc(Gl.Lequal);
    for (const part of blended) {
      const { additive, twoSided } = part.look;
      const behind = additive ? Gl.One : Gl.OneMinusSrcAlpha;
      gl.blendFuncSeparate(Gl.One, behind, additive ? Gl.Zero : Gl.One, behind);
      prepare(part);
      if (part.ordered) gl.bufferSubData(Gl.ElementArrayBuffer, 0, part.ordered);
      else if (twoSided) {
        // The far side first: the right order for convex shapes, without sorting.
        cull(true, Gl.Front);
        drawPart(gl, part);
        cull(true);
      }
      drawPart(gl, part);
      cull(!twoSided);
    }
  };

  // It follows shapes that change.
  const depthProgram = makeProgram(gl, surfaceVertex, depthFragment, [true]);
  const pixel = onePixel(gl);
  return {
    draw() {
      // A picture stands behind the canvas.
      begin(0, 0, gl.drawingBufferWidth, gl.drawingBufferHeight, backgroundPicture ? kClear : [...background, 1]);
      drawOpaque();
      drawBlended();
    },
    depthAt(x, y) {
      const { viewWidth: width, viewHeight: height } = seen.camera;
      gl.bindFramebuffer(Gl.Framebuffer, pixel);
      // The pixel is the only one of the picture that has a place.
      begin(-Math.floor(x), Math.floor(y) + 1 - height, width, height, kClear);
      gl.depthFunc(Gl.Less);
      useProgram(depthProgram);
      for (const part of [...opaque, ...blended]) {
        cull(!part.look.twoSided);
        placePart(part);
        drawPart(gl, part);
      }
      const found = new Uint8Array(4);
      gl.readPixels(0, 0, 1, 1, Gl.Rgba, Gl.UnsignedByte, found);
      gl.bindFramebuffer(Gl.Framebuffer, null);
      return found[3] ? new Float32Array(found.buffer)[0] : undefined;
    },
  };
}

/** A target of one pixel with depth. */
function onePixel(gl: Context): WebGLFramebuffer {
  const frame = gl.createFramebuffer();
  gl.bindFramebuffer(Gl.Framebuffer, frame);
  const add = (place: number, format: number): void => {
    const buffer = gl.createRenderbuffer();
    gl.bindRenderbuffer(Gl.Renderbuffer, buffer);
    gl.renderbufferStorage(Gl.Renderbuffer, format, 1, 1);
    gl.framebufferRenderbuffer(Gl.Framebuffer, place, Gl.Renderbuffer, buffer);
  };
  add(Gl.ColorAttachment0, Gl.Rgba8);
  add(Gl.DepthAttachment, Gl.DepthComponent24);
  gl.bindFramebuffer(Gl.Framebuffer, null);
  return frame;
}
