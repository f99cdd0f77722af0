// SPDX-License-Identifier: MIT
import { kFramesPerSecond } from './animation.ts';
import { follow, kPresets, kStepsOfE, newCamera, setFileCamera, setPreset, setSeen, zoomBy, type Box } from './camera.ts';
import { make } from './dom.ts';
import type { OrbivueApi, Settings } from './format.ts';
import { makeGestures } from './gestures.ts';
import { Gl, type Context } from './gl.ts';
import { listen } from './input.ts';
import { makeRenderer, type Renderer } from './renderer.ts';
import { readScene } from './scene.ts';
import { centerOn, place, turnBy, type Seen } from './seen.ts';
import { Trouble } from './texts.ts';
import { makeToolbar } from './toolbar.ts';
import { abs, max, min } from './vector.ts';

const kMostPixelsOfPixel = 2;
/** A step of the clock is never longer: a tab that comes back goes on where it was. */
const kLongestMs = 100;

/** The elements of the page. */
export interface Stage {
  canvas: HTMLCanvasElement;
  toolbar: HTMLElement;
  /** What a screen reader tells. */
  say(text: string): void;
}

/** Shows a scene: draws it when something has changed, and at no other time. Resolves when the first picture is drawn, with
 * what user code may call. */
export async function view(bytes: Uint8Array<ArrayBuffer>, settings: Settings, { canvas, toolbar, say }: Stage, gl: Context): Promise<Omit<OrbivueApi, 'ready'>> {
  const { texts } = settings;
  let scene = readScene(bytes);
  const { frames, animated, cameraNames, bounds } = scene;
  const seen = { camera: newCamera(bounds.center, bounds.radius) } as Seen;
  let renderer: Renderer | undefined;
  let frame = settings.frame ?? frames.current;
  let playing = false;
  let fileCamera = -1;
  let drawn = 0;
  let asked = 0;
  let last = 0;

  const draw = (): void => {
    // What was asked for is done with it.
    cancelAnimationFrame(asked);
    asked = 0;
    if (!renderer) return;
    drawn++;
    renderer.draw();
    if (playing) request();
  };
  const showControls = (): void => bar.show(fileCamera < 0 ? seen.camera.name : '', fileCamera, frame, playing);
  const showFrame = (): void => {
    scene.show(frame);
    if (fileCamera >= 0) follow(seen.camera, scene.camera(fileCamera));
  };
  const tick = (now: number): void => {
    if (playing) {
      const length = frames.last - frames.first;
      const passed = (min(last ? now - last : 0, kLongestMs) * kFramesPerSecond) / 1000;
      frame = frames.first + ((frame - frames.first + passed) % length);
      showFrame();
      showControls();
    }
    last = playing ? now : 0;
    draw();
  };
  const request = (): void => {
    asked ||= requestAnimationFrame(tick);
  };
  const changed = (): void => {
    showControls();
    request();
  };

  /** Gives the canvas the pixels that it covers. */
  const fit = (): void => {
    const { clientWidth: width, clientHeight: height } = canvas;
    const ratio = min(devicePixelRatio, kMostPixelsOfPixel);
    Object.assign(seen.camera, { viewWidth: width || 1, viewHeight: height || 1 });
    const [w, h] = [width, height].map((size) => Math.round(size * ratio) || 1);
    if (canvas.width === w && canvas.height === h) return;
    Object.assign(canvas, { width: w, height: h });
    // At once, as a canvas that gets another size is empty.
    draw();
  };
  const load = async (): Promise<void> => {
    renderer = await makeRenderer(gl, scene, seen, settings);
    if (gl.getError() === Gl.OutOfMemory) throw new Trouble('noMemory');
  };

  const reset = (): void => {
    setSeen(seen.camera, settings.view);
    place(seen, settings.view.model);
    fileCamera = settings.view.preset ? -1 : cameraNames.indexOf(settings.view.camera);
    changed();
  };
  const preset = (name: string): void => {
    setPreset(seen.camera, name);
    place(seen);
    fileCamera = -1;
    say(texts[kPresets[name][0]]);
    changed();
  };
  const lookThrough = (index: number): void => {
    setFileCamera(seen.camera, scene.camera(index));
    place(seen);
    fileCamera = index;
    say(cameraNames[index]);
    changed();
  };
  const play = (on: boolean): void => {
    playing = on && animated;
    changed();
  };
  const setFrame = (to: number): void => {
    frame = min(max(to, frames.first), frames.last);
    showFrame();
    play(false);
  };
  const togglePlaying = (): void => play(!playing);

  let box: HTMLElement | undefined;
  const showBox = (b?: Box): void => {
    box?.remove();
    if (!b) return;
    box = make('div', { className: 'box' });
    const [left, top] = [min(b.x0, b.x1), min(b.y0, b.y1)];
    box.style.cssText = `left:${left}px;top:${top}px;width:${abs(b.x1 - b.x0)}px;height:${abs(b.y1 - b.y0)}px`;
    canvas.after(box);
  };

  const bar = makeToolbar(toolbar, settings, scene, { preset, fileCamera: lookThrough, reset, togglePlaying, frame: setFrame });
  await load();
  showFrame();
  reset();
  fit();
  const gestures = makeGestures(seen, {
    moved: request,
    boxed: showBox,
    centered({ x, y }) {
      const depth = renderer?.depthAt(x, y);
      if (depth) centerOn(seen, x, y, depth);
      request();
    },
  });
  listen(canvas, gestures, { Home: reset, ' ': togglePlaying });
  new ResizeObserver(fit).observe(canvas);
  canvas.addEventListener('webglcontextlost', (event) => {
    // Without this the browser does not give the context back.
    event.preventDefault();
    renderer = undefined;
    say(texts.lost);
  });
  canvas.addEventListener('webglcontextrestored', async () => {
    scene = readScene(bytes);
    showFrame();
    await load();
    say('');
    request();
  });
  if (animated && !matchMedia('(prefers-reduced-motion:reduce)').matches) play(true);

  return {
    cameras: cameraNames,
    setCamera(name) {
      const found = Object.keys(kPresets).find((key) => key === name || kPresets[key][0] === name);
      if (found) preset(found);
      else if (cameraNames.includes(name)) lookThrough(cameraNames.indexOf(name));
    },
    reset,
    turn(rightDeg, upDeg) {
      turnBy(seen, rightDeg, upDeg);
      request();
    },
    zoom(factor) {
      zoomBy(seen.camera, -kStepsOfE * Math.log(factor));
      request();
    },
    setFrame,
    play,
    state: () => ({ ...frames, frame, playing, drawn }),
  };
}
