// SPDX-License-Identifier: MIT
import { kPresets } from './camera.ts';
import { icon } from './icons.ts';
import type { Settings } from './settings.ts';
import type { TextKey, Texts } from './texts.ts';

/** What the buttons do. */
export interface ToolbarActions {
  preset(name: string): void;
  fileCamera(index: number): void;
  reset(): void;
  togglePlaying(): void;
  frame(frame: number): void;
}

interface Frames {
  first: number;
  last: number;
}

/** The buttons of the page. They are one stop of the Tab key; arrow keys go from one to the next. */
export class Toolbar {
  private readonly stops: HTMLElement[] = [];
  private play: HTMLButtonElement | undefined;
  private slider: HTMLInputElement | undefined;
  private cameras: HTMLSelectElement | undefined;
  private readonly presets = new Map<string, HTMLButtonElement>();

  constructor(
    private readonly bar: HTMLElement,
    private readonly texts: Texts,
    private readonly actions: ToolbarActions,
  ) {
    bar.setAttribute('aria-label', texts.of('toolbar'));
    bar.addEventListener('keydown', (event) => this.key(event));
    bar.addEventListener('focusin', (event) => this.stop(event.target as HTMLElement));
  }

  fill(settings: Settings, cameras: readonly string[], frames: Frames | undefined): void {
    this.bar.textContent = '';
    if (settings.camerasBar) {
      for (const [name, { key }] of Object.entries(kPresets)) this.presets.set(name, this.button(key, () => this.actions.preset(name)));
      if (cameras.length) this.addCameras(cameras);
    }
    this.button('reset', () => this.actions.reset());
    if (frames) this.addPlayer(frames);
    if (document.fullscreenEnabled) this.button('fullscreen', () => void toggleFullScreen());
    if (settings.download) this.addDownload(settings.download);
    this.stop(this.stops[0]);
  }

  private add<T extends HTMLElement>(element: T, key: TextKey, isStop = true): T {
    element.setAttribute('aria-label', this.texts.of(key));
    element.title = this.texts.of(key);
    if (isStop) this.stops.push(element);
    this.bar.append(element);
    return element;
  }

  private button(key: TextKey, act: () => void): HTMLButtonElement {
    const button = this.add(document.createElement('button'), key);
    button.type = 'button';
    button.append(icon(key));
    button.addEventListener('click', act);
    return button;
  }

  private addCameras(names: readonly string[]): void {
    const select = this.add(document.createElement('select'), 'cameras');
    select.append(new Option(this.texts.of('cameras'), '', true, true));
    names.forEach((name, i) => select.append(new Option(name || String(i + 1), String(i))));
    select.addEventListener('change', () => select.value && this.actions.fileCamera(Number(select.value)));
    this.cameras = select;
  }

  private addPlayer({ first, last }: Frames): void {
    this.play = this.button('play', () => this.actions.togglePlaying());
    // Arrow keys move the slider, so it is a stop of its own.
    const slider = (this.slider = this.add(document.createElement('input'), 'frame', false));
    slider.type = 'range';
    slider.min = String(first);
    slider.max = String(last);
    slider.step = '1';
    slider.addEventListener('input', () => this.actions.frame(Number(slider.value)));
  }

  private addDownload(address: string): void {
    const link = this.add(document.createElement('a'), 'download');
    link.href = address;
    link.download = '';
    link.append(icon('download'));
  }

  /** Marks the camera that is in use; the name of none leaves all unmarked. */
  showCamera(preset: string, file: number): void {
    for (const [name, button] of this.presets) button.setAttribute('aria-pressed', String(name === preset));
    if (this.cameras) this.cameras.value = file < 0 ? '' : String(file);
  }

  showPlaying(playing: boolean): void {
    const { play } = this;
    if (!play) return;
    const key = playing ? 'pause' : 'play';
    play.replaceChildren(icon(key));
    play.title = this.texts.of(key);
    play.setAttribute('aria-label', play.title);
  }

  showFrame(frame: number): void {
    if (this.slider) this.slider.value = String(Math.round(frame));
  }

  private stop(element: HTMLElement | undefined): void {
    if (!element || !this.stops.includes(element)) return;
    for (const other of this.stops) other.tabIndex = other === element ? 0 : -1;
  }

  private key(event: KeyboardEvent): void {
    const at = this.stops.indexOf(event.target as HTMLElement);
    const ends: Record<string, number> = { Home: 0, End: this.stops.length - 1 };
    const ways: Record<string, number> = { ArrowLeft: -1, ArrowRight: 1 };
    if (at < 0 || !(event.key in ends || event.key in ways)) return;
    event.preventDefault();
    const count = this.stops.length;
    this.stops[ends[event.key] ?? (at + ways[event.key] + count) % count].focus();
  }
}

async function toggleFullScreen(): Promise<void> {
  try {
    await (document.fullscreenElement ? document.exitFullscreen() : document.documentElement.requestFullscreen());
  } catch {
    // A browser that does not allow it here leaves the page as it is.
  }
}
