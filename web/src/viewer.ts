// SPDX-License-Identifier: MIT
import { FrameLoop } from './frame_loop.ts';
import { Gestures } from './gestures.ts';
import { Gltf } from './gltf.ts';
import { listen } from './input.ts';
import { Player } from './player.ts';
import { Renderer } from './renderer.ts';
import { Scene } from './scene.ts';
import { Seen } from './seen.ts';
import type { Settings } from './settings.ts';
import type { Stage } from './stage.ts';
import type { Texts } from './texts.ts';
import { Toolbar } from './toolbar.ts';
import { Trouble } from './trouble.ts';

const kMostPixelsOfPixel = 2;

/** The page: a scene, what is seen of it, and what people do with it. */
export class Viewer {
  readonly seen: Seen;
  private scene: Scene;
  private renderer: Renderer | undefined;
  private readonly loop: FrameLoop;
  private readonly player: Player;
  private readonly toolbar: Toolbar;
  private fileCamera = -1;

  constructor(
    private readonly bytes: Uint8Array,
    private readonly settings: Settings,
    private readonly texts: Texts,
    private readonly stage: Stage,
    private readonly gl: WebGL2RenderingContext,
  ) {
    this.scene = new Scene(new Gltf(bytes));
    const { scene } = this;
    this.player = new Player(scene.firstFrame, scene.lastFrame, settings.frame ?? scene.frame);
    if (settings.frame !== undefined) scene.show(this.player.frame);
    this.seen = new Seen(scene.center, scene.radius, settings.view);
    this.loop = new FrameLoop((ms) => this.step(ms), () => this.draw());
    this.toolbar = new Toolbar(stage.toolbar, texts, {
      preset: (name) => this.setPreset(name),
      fileCamera: (index) => this.setFileCamera(index),
      reset: () => this.reset(),
      togglePlaying: () => this.setPlaying(!this.player.playing),
      frame: (frame) => this.setFrame(frame),
    });
    this.toolbar.fill(settings, scene.cameraNames, scene.animated ? { first: scene.firstFrame, last: scene.lastFrame } : undefined);
    this.startCamera();
  }

  /** Shows the first picture; resolves when it is drawn. */
  async start(): Promise<void> {
    const { stage } = this;
    await this.load();
    const gestures = new Gestures(this.seen, {
      moved: () => this.loop.request(),
      boxed: (box) => stage.showBox(box),
      centered: (x, y) => this.centerAt(x, y),
    });
    listen(stage.canvas, gestures, { reset: () => this.reset(), togglePlaying: () => this.setPlaying(!this.player.playing) });
    this.fit();
    this.draw();
    this.loop.count++;
    new ResizeObserver(() => this.fit() && this.loop.request()).observe(stage.canvas);
    stage.canvas.addEventListener('webglcontextlost', (event) => {
      // Without this the browser does not give the context back.
      event.preventDefault();
      this.renderer = undefined;
      stage.say(this.texts.of('lost'));
    });
    stage.canvas.addEventListener('webglcontextrestored', () => void this.restore());
    if (!matchMedia('(prefers-reduced-motion: reduce)').matches) this.setPlaying(true);
  }

  private async load(): Promise<void> {
    const renderer = new Renderer(this.gl, this.scene, this.seen, this.settings, isSoftware(this.gl));
    await renderer.load();
    if (this.gl.getError() === this.gl.OUT_OF_MEMORY) throw new Trouble('noMemory');
    this.renderer = renderer;
  }

  /** The context is back, and empty. */
  private async restore(): Promise<void> {
    const { frame } = this.scene;
    this.scene = new Scene(new Gltf(this.bytes));
    this.scene.show(frame);
    await this.load();
    this.stage.say('');
    this.loop.request();
  }

  private step(ms: number): boolean {
    const { player } = this;
    if (!player.playing) return false;
    this.showFrame(player.advance(ms));
    return true;
  }

  private showFrame(frame: number): void {
    this.scene.show(frame);
    this.toolbar.showFrame(frame);
    const camera = this.scene.camera(this.fileCamera);
    if (camera) this.seen.camera.follow(camera);
  }

  private draw(): void {
    this.renderer?.draw();
  }

  /** Gives the canvas the pixels that it covers. True if they have changed. */
  private fit(): boolean {
    const { canvas } = this.stage;
    const ratio = Math.min(devicePixelRatio || 1, kMostPixelsOfPixel);
    const [width, height] = [canvas.clientWidth, canvas.clientHeight];
    const [w, h] = [Math.max(1, Math.round(width * ratio)), Math.max(1, Math.round(height * ratio))];
    this.seen.camera.setSize(width, height);
    if (canvas.width === w && canvas.height === h) return false;
    canvas.width = w;
    canvas.height = h;
    return true;
  }

  private centerAt(x: number, y: number): void {
    const point = this.renderer?.pick(x, y);
    if (!point) return;
    this.seen.centerOn(point);
    this.loop.request();
  }

  /** What the page began with, which may be a camera of the file. */
  private startCamera(): void {
    const { view } = this.settings;
    this.fileCamera = view && !view.preset ? this.scene.cameraNames.indexOf(view.camera) : -1;
    this.toolbar.showCamera(view ? (view.preset ? view.camera : '') : 'iso_cam', this.fileCamera);
    this.toolbar.showFrame(this.player.frame);
  }

  reset(): void {
    this.seen.reset();
    this.startCamera();
    this.stage.say(this.texts.of('reset'));
    this.loop.request();
  }

  setPreset(name: string): void {
    this.seen.setPreset(name);
    this.cameraChanged(name, -1);
  }

  setFileCamera(index: number): void {
    const camera = this.scene.camera(index);
    if (!camera) return;
    this.seen.setFileCamera(camera);
    this.cameraChanged(camera.name, index);
  }

  private cameraChanged(name: string, file: number): void {
    this.fileCamera = file;
    this.toolbar.showCamera(file < 0 ? name : '', file);
    this.stage.say(this.texts.of('cameraShown', file < 0 ? this.texts.ofPreset(name) : name));
    this.loop.request();
  }

  setFrame(frame: number): void {
    this.setPlaying(false);
    this.player.show(frame);
    this.showFrame(this.player.frame);
    this.loop.request();
  }

  setPlaying(playing: boolean): void {
    if (!this.scene.animated) return;
    this.player.playing = playing;
    this.toolbar.showPlaying(playing);
    if (playing) this.loop.request();
  }

  get cameraNames(): string[] {
    return this.scene.cameraNames;
  }
  get frame(): number {
    return this.player.frame;
  }
  get playing(): boolean {
    return this.player.playing;
  }
  get animated(): boolean {
    return this.scene.animated;
  }
  get frames(): [number, number] {
    return [this.scene.firstFrame, this.scene.lastFrame];
  }
  get drawn(): number {
    return this.loop.count;
  }
  redraw(): void {
    this.loop.request();
  }
}

/** Drawn without a graphics card, where fine filters take their time. */
function isSoftware(gl: WebGL2RenderingContext): boolean {
  const names = gl.getExtension('WEBGL_debug_renderer_info');
  return /swiftshader|llvmpipe|software/i.test(String(gl.getParameter(names ? names.UNMASKED_RENDERER_WEBGL : gl.RENDERER)));
}
