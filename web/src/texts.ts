// SPDX-License-Identifier: MIT
import { kPresets } from './camera.ts';

/** What a page says, by key. A page has them in the language of the program that wrote it; what is missing is English.
 * %1 and %2 stand for what is put in. */
export const kTexts = {
  toolbar: 'View',
  top: 'Top view',
  left: 'Left view',
  right: 'Right view',
  front: 'Front view',
  back: 'Back view',
  iso: 'Isometric view',
  cameras: 'Cameras of the file',
  reset: 'Reset view',
  play: 'Play',
  pause: 'Pause',
  frame: 'Frame',
  fullscreen: 'Full screen',
  download: 'Download the model',
  canvas: '3D model %1. Arrow keys turn it, plus and minus zoom, Home resets the view.',
  loading: 'Loading…',
  shown: '%1 is shown',
  cameraShown: 'Camera: %1',
  noWebGL: 'This browser cannot show 3D pictures, because it has no WebGL 2, or it is switched off.',
  noUnpacking: 'This browser is too old to unpack the scene. Any browser since 2023 can show this page.',
  noScene: 'The scene of this page cannot be read. Is a file missing beside the page?',
  broken: 'The scene of this page is damaged (%1).',
  noMemory: 'There is too little graphics memory to show this scene.',
  lost: 'The graphics card has dropped the picture. It is drawn again as soon as it is back.',
} as const;

export type TextKey = keyof typeof kTexts;

/** Looks texts up, the page's own first. */
export class Texts {
  constructor(private readonly own: Partial<Record<string, unknown>> = {}) {}

  /** The name of a view from a side, by the name of its camera. */
  ofPreset(name: string): string {
    return name in kPresets ? this.of(kPresets[name].key) : name;
  }

  of(key: TextKey, first = ''): string {
    const own = this.own[key];
    return (typeof own === 'string' && own ? own : kTexts[key]).replace('%1', () => first);
  }
}
