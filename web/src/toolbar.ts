// SPDX-License-Identifier: MIT
import { kPresets } from './camera.ts';
import { label, make } from './dom.ts';
import type { Settings } from './format.ts';
import { icon } from './icons.ts';
import type { Scene } from './scene.ts';
import type { TextKey } from './texts.ts';

/** What the buttons do. */
export interface ToolbarActions {
  preset(name: string): void;
  fileCamera(index: number): void;
  reset(): void;
  togglePlaying(): void;
  frame(frame: number): void;
}

export interface Toolbar {
  /** Marks what is in use: the name of a preset, the number of a camera of the file or -1. */
  show(preset: string, camera: number, frame: number, playing: boolean): void;
}

function toggleFullScreen(): void {
  // A browser that does not allow it here leaves the page as it is.
  const done = document.fullscreenElement ? document.exitFullscreen() : document.documentElement.requestFullscreen();
  done.catch(() => {});
}

/** Fills the toolbar. Its buttons are one stop of the Tab key; arrow keys go from one to the next. */
export function makeToolbar(bar: HTMLElement, { texts, camerasBar, download }: Settings, scene: Scene, actions: ToolbarActions): Toolbar {
  const stops: HTMLElement[] = [];
  const name = (element: HTMLElement, key: TextKey): void => label(element, (element.title = texts[key]));
  const add = <K extends keyof HTMLElementTagNameMap>(tag: K, key: TextKey, properties: Partial<HTMLElementTagNameMap[K]>): HTMLElementTagNameMap[K] => {
    const element = make(tag, properties);
    name(element, key);
    bar.append(element);
    // Arrow keys move a slider, so that is a stop of its own.
    if (tag !== 'input') stops.push(element);
    return element;
  };
  const button = (key: TextKey, onclick: () => void): HTMLButtonElement => add('button', key, { type: 'button', onclick, innerHTML: icon(key) });
  const stopAt = (element: HTMLElement): void => {
    if (stops.includes(element)) for (const other of stops) other.tabIndex = other === element ? 0 : -1;
  };

  const sides = Object.keys(kPresets);
  const presets = camerasBar ? sides.map((preset) => button(kPresets[preset][0], () => actions.preset(preset))) : [];
  let cameras: HTMLSelectElement | undefined;
  if (camerasBar && scene.cameraNames.length) {
    const list = (cameras = add('select', 'cameras', { onchange: () => list.value && actions.fileCamera(+list.value) }));
    list.append(new Option(texts.cameras, ''), ...scene.cameraNames.map((camera, i) => new Option(camera, '' + i)));
  }
  button('reset', actions.reset);
  const play = scene.animated && button('play', actions.togglePlaying);
  const { first, last } = scene.frames;
  const slider = play && add('input', 'frame', { type: 'range', min: '' + first, max: '' + last, oninput: () => actions.frame(+(slider as HTMLInputElement).value) });
  if (document.fullscreenEnabled) button('fullscreen', toggleFullScreen);
  if (download) add('a', 'download', { href: download, download: '', innerHTML: icon('download') });

  label(bar, texts.toolbar);
  bar.addEventListener('focusin', (event) => stopAt(event.target as HTMLElement));
  bar.onkeydown = (event) => {
    const at = stops.indexOf(event.target as HTMLElement);
    const way = { ArrowLeft: stops.length - 1, ArrowRight: 1 }[event.key];
    if (at < 0 || !way) return;
    event.preventDefault();
    stops[(at + way) % stops.length].focus();
  };
  stopAt(stops[0]);

  return {
    show(preset, camera, frame, playing) {
      presets.forEach((made, i) => made.setAttribute('aria-pressed', '' + (sides[i] === preset)));
      if (cameras) cameras.value = camera < 0 ? '' : '' + camera;
      if (slider) slider.value = '' + Math.round(frame);
      const key = playing ? 'pause' : 'play';
      if (!play || play.title === texts[key]) return;
      name(play, key);
      play.innerHTML = icon(key);
    },
  };
}
