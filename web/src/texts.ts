// SPDX-License-Identifier: MIT

/** What a page says, by key, in English. Its settings hold all of it in the language of the program that wrote it. %1 stands
 * for what is put in. */
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
  noWebGL: 'This browser cannot show 3D pictures, because it has no WebGL 2, or it is switched off.',
  noUnpacking: 'This browser is too old to unpack the scene. Any browser since 2023 can show this page.',
  noScene: 'The scene of this page cannot be read. Is a file missing beside the page?',
  broken: 'The scene of this page is damaged.',
  noMemory: 'There is too little graphics memory to show this scene.',
  lost: 'The graphics card has dropped the picture. It is drawn again as soon as it is back.',
} as const;

export type TextKey = keyof typeof kTexts;

/** Why a page shows no picture: the message is the key of the sentence. Whatever else goes wrong has damaged data as its
 * cause. */
export class Trouble extends Error {
  declare message: TextKey;
}

/** Ends the reading of a scene that is not as it must be. */
export function demand(condition: unknown): asserts condition {
  if (!condition) throw Error('demand');
}
