// SPDX-License-Identifier: MIT
import { kPresets } from './camera.ts';
import type { Viewer } from './viewer.ts';

/** What user code may call, as `window.orbivue`, once it is there: see docs/manual/web-page.md. */
export interface OrbivueApi {
  readonly version: 1;
  /** Names of the file's cameras. */
  readonly cameras: string[];
  /** Looks from a side ("top", "left", "right", "front", "back", "iso") or through a camera of the file. False for
   * another name. */
  setCamera(name: string): boolean;
  /** As the page began. */
  reset(): void;
  /** Degrees to the right and up. */
  turn(rightDeg: number, upDeg: number): void;
  /** Makes what is seen so many times larger. */
  zoom(factor: number): void;
  /** First and last frame; undefined where nothing moves. */
  readonly frames: readonly [number, number] | undefined;
  frame: number;
  playing: boolean;
  /** Pictures drawn so far. */
  readonly drawn: number;
}

function apiOf(viewer: Viewer): OrbivueApi {
  return {
    version: 1,
    get cameras() {
      return viewer.cameraNames;
    },
    setCamera(name) {
      const preset = Object.keys(kPresets).find((n) => n === name || kPresets[n].key === name);
      const file = viewer.cameraNames.indexOf(name);
      if (preset) viewer.setPreset(preset);
      else viewer.setFileCamera(file);
      return !!preset || file >= 0;
    },
    reset: () => viewer.reset(),
    turn(rightDeg, upDeg) {
      viewer.seen.turnBy(Number(rightDeg) || 0, Number(upDeg) || 0);
      viewer.redraw();
    },
    zoom(factor) {
      if (factor > 0) viewer.seen.camera.zoom(-200 * Math.log(factor));
      viewer.redraw();
    },
    get frames() {
      return viewer.animated ? viewer.frames : undefined;
    },
    get frame() {
      return viewer.frame;
    },
    set frame(frame) {
      viewer.setFrame(Number(frame) || 0);
    },
    get playing() {
      return viewer.playing;
    },
    set playing(playing) {
      viewer.setPlaying(!!playing);
    },
    get drawn() {
      return viewer.drawn;
    },
  };
}

/** Tells user code that the first picture is there. */
export function publish(viewer: Viewer): void {
  const api = apiOf(viewer);
  Object.defineProperty(window, 'orbivue', { value: api });
  window.dispatchEvent(new CustomEvent('orbivue', { detail: api }));
}
