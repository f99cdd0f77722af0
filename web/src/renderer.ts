// SPDX-License-Identifier: MIT
import backdropFragment from '../shaders/backdrop.frag';
import coverVertex from '../shaders/cover.vert';
import depthFragment from '../shaders/depth.frag';
import surfaceFragment from '../shaders/surface.frag';
import surfaceVertex from '../shaders/surface.vert';
import { depthRange, eyeOf, projection } from './camera.ts';
import type { Settings } from './format.ts';
import { geometryMaker } from './geometry.ts';
import { Gl, type Context } from './gl.ts';
import { lightUniforms, type LightUniforms } from './lights.ts';
import { lookOf, type Look } from './material.ts';
import { determinant, movedTo, normalMatrix, product, rowTimes, type Mat4 } from './matrix.ts';
import { drawPart, makeParts, type Part } from './parts.ts';
import { makeProgram, type Program } from './program.ts';
import { fromBase64 } from './scene_data.ts';
import type { Scene } from './scene.ts';
import { modelOf, type Seen } from './seen.ts';
import { orderBackToFront } from './sorting.ts';
import { loadTextures, textureOf } from './textures.ts';
import { sub } from './vector.ts';

/** Draws the scene as the desktop's engine does: opaque parts, then blended ones from back to front. */
export interface Renderer {
  draw(): void;
  /** How far before the eye, along the line of sight, the scene is seen at a pixel of the view; undefined beside it. */
  depthAt(x: number, y: number): number | undefined;
}

/** Drawn without a graphics card, where fine filters take their time. */
function isSoftware(gl: Context): boolean {
  const name = gl.getExtension('WEBGL_debug_renderer_info') ? Gl.UnmaskedRenderer : Gl.Renderer;
  return /swiftshader|llvmpipe|software/i.test(gl.getParameter(name));
}

/** Uploads the scene. */
export async function makeRenderer(gl: Context, scene: Scene, seen: Seen, settings: Settings): Promise<Renderer> {
  const { gltf } = scene;
  const { wire, doubleSided, background } = settings;
  const looks = [...(gltf.json.materials ?? []), {}].map((m) => lookOf(m.extras?.orbivue ?? {}, doubleSided || !!m.doubleSided, wire));
  const [bindMaps, drawBackdrop] = await Promise.all([loadTextures(gl, gltf, looks, isSoftware(gl)), makeBackdrop(gl, settings)]);
  const maker = geometryMaker(gl, gltf);
  const programs: Record<string, Program> = {};
  const lightCount = scene.lights.length && scene.lights.length + +scene.headlight;
  const { opaque, blended } = makeParts(gltf, scene.nodes, looks, maker, lightCount, (defines) => {
    return (programs[defines.join()] ??= makeProgram(gl, surfaceVertex, surfaceFragment, defines));
  });
  // It is on the graphics card.
  gltf.views = [];

  /** Of the picture under way. Space: the file's axes after the turning of the model, the eye as origin. */
  let toEye: Mat4;
  let toClip: Mat4;
  let depthRow: readonly number[];
  let lights: LightUniforms;
  let program: Program | undefined;
  let look: Look | undefined;
  let prepared: Program[];

  const middleDepth = ({ node, geometry: { low, high } }: Part): number => {
    const r = rowTimes(depthRow, node.world);
    return low.reduce((sum, x, i) => sum + (r[i] * (x + high[i])) / 2, r[3]);
  };
  /** Of the nearest and the farthest corner of what is shown. */
  const depths = (): [number, number] => {
    let [nearest, farthest] = [Infinity, -Infinity];
    for (const part of [...opaque, ...blended]) {
      const r = rowTimes(depthRow, part.node.world);
      const { low, high } = part.geometry;
      const middle = middleDepth(part);
      const half = low.reduce((sum, x, i) => sum + Math.abs(r[i] * (high[i] - x)) / 2, 0);
      nearest = Math.min(nearest, middle - half);
      farthest = Math.max(farthest, middle + half);
    }
    return [nearest, farthest];
  };

  /** Takes the view for what is drawn next. zoom: what follows the projection. */
  const aim = (zoom?: Mat4): void => {
    const { camera } = seen;
    const model = modelOf(seen);
    toEye = movedTo(model, sub([model[12], model[13], model[14]], eyeOf(camera)));
    depthRow = rowTimes([...camera.back.map((x) => -x), 0], toEye);
    toClip = projection(camera, depthRange(camera, ...depths()));
    if (zoom) toClip = product(zoom, toClip);
    lights = lightUniforms(scene.lights, scene.all, scene.headlight, toEye);
    program = look = undefined;
    prepared = [];
    gl.enable(Gl.DepthTest);
    gl.disable(Gl.Blend);
    gl.depthMask(true);
  };

  const useProgram = (next: Program): void => {
    if (program === next) return;
    next.use();
    program = next;
    look = undefined;
    if (prepared.includes(next)) return;
    prepared.push(next);
    next.set('uProjection', 16, toClip);
    next.set('uAmbientLight', 3, scene.ambientLight);
    if (lightCount) {
      next.set('uLightPosition', 4, lights[0]);
      next.set('uLightDirection', 4, lights[1]);
      next.set('uLightColor', 3, lights[2]);
      next.set('uLightRange', 2, lights[3]);
    }
  };
  const cull = (on: boolean, side: number = Gl.Back): void => {
    gl[on ? 'enable' : 'disable'](Gl.CullFace);
    gl.cullFace(side);
  };
  const useLook = (p: Program, next: Look, specular: readonly number[]): void => {
    if (look === next) return;
    look = next;
    p.set('uDiffuse', 4, [...next.diffuse, next.opacity]);
    p.set('uSpecular', 4, [...specular, next.exponent]);
    p.set('uAmbient', 3, next.ambient);
    p.set('uSelf', 1, [next.self]);
    const each = (values: (map: NonNullable<Look['maps'][0]>) => readonly number[], n: number): number[] =>
      next.maps.flatMap((map) => (map ? [...values(map)] : Array<number>(n).fill(0)));
    p.set('uMapS', 3, each((map) => map.s, 3));
    p.set('uMapT', 3, each((map) => map.t, 3));
    p.set('uMapValue', 4, each((map) => map.value, 4));
    p.set('uMapWeight', 4, each((map) => map.weight, 4));
    bindMaps(next);
    cull(!next.twoSided);
  };
  /** Where the part is, and its triangles. */
  const placePart = (p: Program, { node, geometry }: Part): void => {
    const m = product(toEye, node.world);
    p.set('uModelView', 16, m);
    p.set('uNormal', 9, normalMatrix(m));
    gl.frontFace(determinant(m) < 0 ? Gl.Cw : Gl.Ccw);
    gl.bindVertexArray(geometry.vao);
    if (!geometry.targets.length) return;
    // The two shapes that count most.
    const weights = node.weights ?? [];
    const chosen = weights.map((_, i) => i).sort((a, b) => Math.abs(weights[b]) - Math.abs(weights[a])).slice(0, 2);
    maker.mixWith(geometry, chosen);
    p.set('uMorph', 2, [weights[chosen[0]] || 0, weights[chosen[1]] || 0]);
  };
  const prepare = (part: Part): void => {
    useProgram(part.program);
    useLook(part.program, part.look, part.specular);
    placePart(part.program, part);
  };

  const drawOpaque = (): void => {
    for (const part of opaque) part.depth = middleDepth(part);
    opaque.sort((a, b) => b.key - a.key || b.material - a.material || a.depth - b.depth);
    for (const part of opaque) {
      // Of many opaque surfaces in one place only the first is lit. Lines share their places with each other.
      gl.depthFunc(part.look.lines ? Gl.Lequal : Gl.Less);
      prepare(part);
      drawPart(gl, part);
    }
  };
  const drawBlended = (): void => {
    const orders = new Map(
      blended.map((part) => {
        const { sorted } = part.geometry;
        const order = sorted && orderBackToFront(sorted.positions, sorted.indices, rowTimes(depthRow, part.node.world));
        part.depth = order ? order.middle : middleDepth(part);
        return [part, order];
      }),
    );
    blended.sort((a, b) => b.depth - a.depth);
    gl.enable(Gl.Blend);
    gl.depthMask(false);
    gl.depthFunc(Gl.Lequal);
    for (const part of blended) {
      const { additive, twoSided } = part.look;
      const behind = additive ? Gl.One : Gl.OneMinusSrcAlpha;
      gl.blendFuncSeparate(Gl.One, behind, additive ? Gl.Zero : Gl.One, behind);
      prepare(part);
      const order = orders.get(part);
      if (order) gl.bufferSubData(Gl.ElementArrayBuffer, 0, order.ordered);
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

  const depthProgram = makeProgram(gl, surfaceVertex, depthFragment);
  const pixel = onePixel(gl);
  return {
    draw() {
      const { drawingBufferWidth: width, drawingBufferHeight: height } = gl;
      gl.viewport(0, 0, width, height);
      aim();
      gl.clearColor(...background, 1);
      gl.clear(Gl.ColorBit | Gl.DepthBit);
      drawBackdrop(width / height);
      drawOpaque();
      drawBlended();
    },
    depthAt(x, y) {
      const { width: w, height: h } = seen.camera;
      gl.bindFramebuffer(Gl.Framebuffer, pixel);
      gl.viewport(0, 0, 1, 1);
      // The pixel fills the picture.
      aim([w, 0, 0, 0, 0, h, 0, 0, 0, 0, 1, 0, w - 2 * x, 2 * y - h, 0, 1]);
      gl.clearColor(0, 0, 0, 0);
      gl.clear(Gl.ColorBit | Gl.DepthBit);
      gl.depthFunc(Gl.Less);
      useProgram(depthProgram);
      for (const part of [...opaque, ...blended]) {
        cull(!part.look.twoSided);
        placePart(depthProgram, part);
        const { mode, count, indexType } = part.geometry;
        gl.drawElements(mode, count, indexType, 0);
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

/** What draws the picture behind the scene into a view of this aspect: it covers the view. */
async function makeBackdrop(gl: Context, { backgroundPicture = '' }: Settings): Promise<(aspect: number) => void> {
  const [, type, data] = /^data:(.*);base64,(.*)/.exec(backgroundPicture) ?? [];
  // Without its picture the background is plain.
  const loaded = data && (await textureOf(gl, fromBase64(data), type).catch(() => undefined));
  if (!loaded) return () => {};
  const [texture, own] = loaded;
  const program = makeProgram(gl, coverVertex, backdropFragment);
  return (aspect) => {
    program.use();
    program.set('uPart', 2, [Math.min(1, aspect / own), Math.min(1, own / aspect)]);
    gl.activeTexture(Gl.Texture0);
    gl.bindTexture(Gl.Texture2d, texture);
    gl.bindSampler(0, null);
    gl.disable(Gl.DepthTest);
    gl.disable(Gl.CullFace);
    gl.enable(Gl.Blend);
    gl.blendFunc(Gl.One, Gl.OneMinusSrcAlpha);
    gl.drawArrays(Gl.Triangles, 0, 3);
    gl.enable(Gl.DepthTest);
    gl.disable(Gl.Blend);
  };
}
