// SPDX-License-Identifier: MIT
import depthFragment from '../shaders/depth.frag';
import surfaceFragment from '../shaders/surface.frag';
import surfaceVertex from '../shaders/surface.vert';
import { Backdrop } from './backdrop.ts';
import { makeDrawables, Part, variantOf, type Drawable } from './drawable.ts';
import { GeometryMaker } from './geometry.ts';
import { lightUniforms, type LightUniforms } from './lights.ts';
import { kMaps, readLooks, type Look } from './material.ts';
import { determinant, normalMatrix, product, row, rowTimes, translation, type Mat4 } from './matrix.ts';
import { Program } from './program.ts';
import type { Scene } from './scene.ts';
import type { Seen } from './seen.ts';
import type { Settings } from './settings.ts';
import { orderBackToFront } from './sorting.ts';
import { Textures } from './textures.ts';
import { dot, scaled, type Vec3 } from './vector.ts';

/** One part of a drawable, with its program. */
interface Item {
  drawable: Drawable;
  program: Program;
  key: number;
  specular: Vec3;
  depth: number;
  sorted: boolean;
}

/** The view of one picture. Space: the file's axes after the turning of the model, the eye as origin. */
interface FrameView {
  /** From the file's coordinates. */
  toEye: Mat4;
  projection: Mat4;
  /** Of a point in the file's coordinates. */
  depthRow: readonly number[];
  viewer: readonly number[];
  lights: LightUniforms;
  range: [number, number];
}

/** Draws the scene as the desktop's engine does: opaque parts, then blended ones from back to front. */
export class Renderer {
  private readonly textures: Textures;
  private readonly maker: GeometryMaker;
  private readonly looks: Look[];
  private readonly programs = new Map<string, Program>();
  private readonly opaque: Item[] = [];
  private readonly blended: Item[] = [];
  private readonly backdrop: Backdrop;
  private readonly depth: Program;
  private readonly depthTarget: WebGLFramebuffer;
  private drawables: Drawable[] = [];
  private current: Program | undefined;
  private currentLook: Look | undefined;
  private ready = new Set<Program>();
  private view!: FrameView;

  constructor(
    private readonly gl: WebGL2RenderingContext,
    private readonly scene: Scene,
    private readonly seen: Seen,
    private readonly settings: Settings,
    software: boolean,
  ) {
    this.looks = readLooks(scene.gltf, settings.doubleSided);
    this.textures = new Textures(gl, scene.gltf, software);
    this.maker = new GeometryMaker(gl, scene.gltf);
    this.backdrop = new Backdrop(gl, settings.backgroundPicture);
    this.depth = new Program(gl, surfaceVertex, depthFragment, ['TWO_SIDED']);
    this.depthTarget = onePixel(gl);
  }

  /** Uploads everything. */
  async load(): Promise<void> {
    const { gltf, nodes } = this.scene;
    await Promise.all([this.textures.load(this.looks), this.backdrop.load()]);
    if (this.gl.isContextLost()) return;
    this.drawables = makeDrawables(gltf, nodes, this.looks, this.maker, this.settings);
    for (const d of this.drawables) {
      const parts = d.look.blended && d.look.maybeSolid;
      if (!d.look.blended || parts) this.opaque.push(this.itemOf(d, parts ? Part.Solid : Part.Whole));
      if (d.look.blended) this.blended.push(this.itemOf(d, parts ? Part.Translucent : Part.Whole));
    }
    gltf.forget();
  }

  private itemOf(d: Drawable, part: Part): Item {
    const { lights, headlight } = this.scene;
    const variant = variantOf(d, part, lights.length && lights.length + (headlight ? 1 : 0));
    const name = variant.defines.join();
    let program = this.programs.get(name);
    if (!program) this.programs.set(name, (program = new Program(this.gl, surfaceVertex, surfaceFragment, variant.defines)));
    const { specular, diffuse, metal } = d.look;
    const tint = metal && !variant.tinted;
    const own: Vec3 = tint ? [specular[0] * diffuse[0], specular[1] * diffuse[1], specular[2] * diffuse[2]] : specular;
    const sorted = part !== Part.Solid && d.look.blended && !!d.geometry.indices;
    return { drawable: d, program, key: variant.key, specular: own, depth: 0, sorted };
  }

  /** Draws into the canvas, whose size the camera has. */
  draw(): void {
    const { gl, seen, settings } = this;
    const { drawingBufferWidth: width, drawingBufferHeight: height } = gl;
    gl.bindFramebuffer(gl.FRAMEBUFFER, null);
    gl.viewport(0, 0, width, height);
    gl.depthMask(true);
    gl.clearColor(...(settings.background as [number, number, number]), 1);
    gl.clear(gl.COLOR_BUFFER_BIT | gl.DEPTH_BUFFER_BIT);
    this.backdrop.draw(width / height);
    this.look(seen.camera.projection);
    this.drawOpaque();
    this.drawBlended();
    gl.bindVertexArray(null);
  }

  /** Takes the view for what is drawn next. */
  private look(projectionOf: (range: [number, number]) => Mat4): void {
    const { seen, scene } = this;
    const { camera, model } = seen;
    const range = camera.depthRange(...this.depths(model));
    const projection = projectionOf.call(camera, range);
    const { back } = camera.axes;
    const eye = camera.eye;
    const viewer = camera.parallel ? [...back, 0] : [0, 0, 0, 1];
    const v = camera.viewMatrix();
    const toEye = product(translation(camera.parallel ? [0, 0, 0] : scaled(eye, -1)), model);
    const toClip = product(projection, camera.parallel ? v : [...v.slice(0, 12), 0, 0, 0, 1]);
    this.view = {
      toEye,
      projection: toClip,
      depthRow: rowTimes(row(toClip, camera.parallel ? 2 : 3), toEye),
      viewer,
      lights: lightUniforms(scene.lights, scene.headlight, toEye, viewer),
      range,
    };
    this.ready = new Set();
    this.current = this.currentLook = undefined;
    this.gl.enable(this.gl.DEPTH_TEST);
  }

  /** Of the nearest and the farthest corner of what is shown. */
  private depths(model: Mat4): [number, number] {
    const { eye, axes } = this.seen.camera;
    const away = rowTimes([...scaled(axes.back, -1), dot(eye, axes.back)], model);
    let [nearest, farthest] = [Infinity, -Infinity];
    for (const { node, geometry } of this.drawables) {
      const { low, high } = geometry;
      const r = rowTimes(away, node.world);
      let [middle, half] = [r[3], 0];
      for (let i = 0; i < 3; i++) {
        middle += (r[i] * (low[i] + high[i])) / 2;
        half += Math.abs(r[i] * (high[i] - low[i])) / 2;
      }
      nearest = Math.min(nearest, middle - half);
      farthest = Math.max(farthest, middle + half);
    }
    return nearest <= farthest ? [nearest, farthest] : [0, this.scene.radius];
  }

  private depthRow(d: Drawable): readonly number[] {
    return rowTimes(this.view.depthRow, d.node.world);
  }
  private middleDepth(d: Drawable): number {
    const r = this.depthRow(d);
    const { low, high } = d.geometry;
    return (r[0] * (low[0] + high[0]) + r[1] * (low[1] + high[1]) + r[2] * (low[2] + high[2])) / 2 + r[3];
  }

  private drawOpaque(): void {
    const { gl, opaque } = this;
    gl.disable(gl.BLEND);
    gl.depthMask(true);
    for (const item of opaque) item.depth = this.middleDepth(item.drawable);
    opaque.sort((a, b) => b.key - a.key || b.drawable.material - a.drawable.material || a.depth - b.depth || b.drawable.order - a.drawable.order);
    for (const item of opaque) {
      // Of many opaque surfaces in one place only the first is lit. Lines share their places with each other.
      gl.depthFunc(item.drawable.lines ? gl.LEQUAL : gl.LESS);
      this.prepare(item);
      this.drawPart(item.drawable);
    }
  }

  private drawBlended(): void {
    const { gl, blended } = this;
    if (!blended.length) return;
    gl.enable(gl.BLEND);
    gl.depthMask(false);
    gl.depthFunc(gl.LEQUAL);
    const ordered = new Map<Item, ReturnType<typeof orderBackToFront>>();
    for (const item of blended) {
      const { geometry } = item.drawable;
      if (item.sorted) ordered.set(item, orderBackToFront(geometry.positions!, geometry.indices!, this.depthRow(item.drawable)));
      item.depth = ordered.get(item)?.middle ?? this.middleDepth(item.drawable);
    }
    blended.sort((a, b) => b.depth - a.depth);
    for (const item of blended) {
      const { look } = item.drawable;
      const behind = look.additive ? gl.ONE : gl.ONE_MINUS_SRC_ALPHA;
      gl.blendFuncSeparate(gl.ONE, behind, look.additive ? gl.ZERO : gl.ONE, behind);
      this.prepare(item);
      const own = ordered.get(item);
      if (own) gl.bufferSubData(gl.ELEMENT_ARRAY_BUFFER, 0, own.ordered);
      if (look.twoSided && !own && !item.drawable.lines) {
        // The far side first: the right order for convex shapes, without sorting.
        gl.enable(gl.CULL_FACE);
        gl.cullFace(gl.FRONT);
        this.drawPart(item.drawable);
        gl.cullFace(gl.BACK);
      }
      this.drawPart(item.drawable);
      if (look.twoSided) gl.disable(gl.CULL_FACE);
    }
  }

  private prepare(item: Item): void {
    const { program, drawable } = item;
    if (this.current !== program) {
      program.use();
      this.current = program;
      this.currentLook = undefined;
      if (!this.ready.has(program)) this.setFrame(program);
      this.ready.add(program);
    }
    if (this.currentLook !== drawable.look) this.setLook(item);
    this.currentLook = drawable.look;
    this.place(program, drawable);
  }

  private setFrame(program: Program): void {
    const { gl, view } = this;
    gl.uniformMatrix4fv(program.at('uProjection'), false, view.projection);
    program.vec4('uViewer', view.viewer);
    program.vec3('uAmbientLight', this.scene.ambientLight);
    gl.uniform1iv(program.at('uMap[0]'), kMaps.map((_, i) => i));
    if (!view.lights.color.length) return;
    program.vec4('uLightPosition[0]', view.lights.position);
    program.vec4('uLightDirection[0]', view.lights.direction);
    program.vec3('uLightColor[0]', view.lights.color);
    program.vec2('uLightRange[0]', view.lights.range);
  }

  private setLook({ program, drawable: { look }, specular }: Item): void {
    const { gl } = this;
    program.vec4('uDiffuse', [...look.diffuse, look.opacity]);
    program.vec4('uSpecular', [...specular, look.exponent]);
    program.vec3('uAmbient', look.ambient);
    gl.uniform1f(program.at('uSelf'), look.self);
    look.maps.forEach((map, i) => {
      if (!map) return;
      program.vec3(`uMapS[${i}]`, map.s);
      program.vec3(`uMapT[${i}]`, map.t);
      program.vec4(`uMapValue[${i}]`, map.value);
      program.vec4(`uMapWeight[${i}]`, map.weight);
    });
    this.textures.bind(look);
    if (look.twoSided) gl.disable(gl.CULL_FACE);
    else gl.enable(gl.CULL_FACE);
    gl.cullFace(gl.BACK);
  }

  /** Where the drawable is, and its triangles. */
  private place(program: Program, d: Drawable): void {
    const { gl } = this;
    const m = product(this.view.toEye, d.node.world);
    gl.uniformMatrix4fv(program.at('uModelView'), false, m);
    gl.uniformMatrix3fv(program.at('uNormal'), false, normalMatrix(m));
    gl.frontFace(determinant(m) < 0 ? gl.CW : gl.CCW);
    gl.bindVertexArray(d.geometry.vao);
    if (d.geometry.targets.length) this.mix(program, d);
  }

  /** The two shapes that count most. */
  private mix(program: Program, d: Drawable): void {
    const weights = Array.from(d.node.weights);
    const chosen = weights.map((_, i) => i).sort((a, b) => Math.abs(weights[b]) - Math.abs(weights[a])).slice(0, 2);
    this.maker.pointAtTargets(d.geometry, chosen);
    program.vec2('uMorph', [weights[chosen[0]] ?? 0, weights[chosen[1]] ?? 0]);
  }

  private drawPart({ geometry, look, lines }: Drawable): void {
    const { gl } = this;
    // WebGL's lines are one pixel wide: wider ones are drawn beside each other.
    const copies = lines ? Math.max(1, Math.round(look.lineWidth)) : 1;
    for (let x = 0; x < copies; x++) {
      for (let y = 0; y < copies; y++) {
        if (lines) {
          const aside = (at: number, size: number): number => (2 * at + 1 - copies) / size;
          this.current!.vec2('uStep', [aside(x, gl.drawingBufferWidth), aside(y, gl.drawingBufferHeight)]);
        }
        gl.drawElements(geometry.mode, geometry.count, geometry.indexType, 0);
      }
    }
  }

  /** The point of the scene that is seen at a pixel of the canvas; undefined beside the model. */
  pick(x: number, y: number): Vec3 | undefined {
    const { gl, seen, depth } = this;
    const { viewWidth: w, viewHeight: h } = seen.camera;
    gl.bindFramebuffer(gl.FRAMEBUFFER, this.depthTarget);
    gl.viewport(0, 0, 1, 1);
    gl.depthMask(true);
    gl.disable(gl.BLEND);
    gl.clearColor(1, 1, 1, 1);
    gl.clear(gl.COLOR_BUFFER_BIT | gl.DEPTH_BUFFER_BIT);
    // The pixel fills the picture.
    const zoom = [w, 0, 0, 0, 0, h, 0, 0, 0, 0, 1, 0, w - 2 * x, 2 * y - h, 0, 1];
    this.look((range) => product(zoom, seen.camera.projection(range)));
    gl.depthFunc(gl.LESS);
    depth.use();
    this.current = depth;
    gl.uniformMatrix4fv(depth.at('uProjection'), false, this.view.projection);
    for (const d of this.drawables) {
      if (d.look.twoSided) gl.disable(gl.CULL_FACE);
      else gl.enable(gl.CULL_FACE);
      this.place(depth, d);
      gl.drawElements(d.geometry.mode, d.geometry.count, d.geometry.indexType, 0);
    }
    gl.bindVertexArray(null);
    const pixel = new Uint8Array(4);
    gl.readPixels(0, 0, 1, 1, gl.RGBA, gl.UNSIGNED_BYTE, pixel);
    gl.bindFramebuffer(gl.FRAMEBUFFER, null);
    const far = pixel[0] / 255 + pixel[1] / 65025 + pixel[2] / 16581375;
    return pixel[0] === 255 ? undefined : seen.pointAt(x, y, far, this.view.range);
  }
}

/** A target of one pixel with depth. */
function onePixel(gl: WebGL2RenderingContext): WebGLFramebuffer {
  const frame = gl.createFramebuffer()!;
  gl.bindFramebuffer(gl.FRAMEBUFFER, frame);
  for (const [place, format] of [
    [gl.COLOR_ATTACHMENT0, gl.RGBA8],
    [gl.DEPTH_ATTACHMENT, gl.DEPTH_COMPONENT24],
  ] as const) {
    const buffer = gl.createRenderbuffer();
    gl.bindRenderbuffer(gl.RENDERBUFFER, buffer);
    gl.renderbufferStorage(gl.RENDERBUFFER, format, 1, 1);
    gl.framebufferRenderbuffer(gl.FRAMEBUFFER, place, gl.RENDERBUFFER, buffer);
  }
  gl.bindFramebuffer(gl.FRAMEBUFFER, null);
  return frame;
}
