// SPDX-License-Identifier: MIT

const kCube = 'M12 3l8 4.5v9L12 21l-8-4.5v-9z';
const kNear = kCube + 'M4 7.5l8 4.5 8-4.5M12 12v9';
const kFar = kCube + 'M12 3v9M4 16.5l8-4.5 8 4.5';

/** Pictures of the buttons on a field of 24 by 24: what is drawn as lines, and what is filled. */
const kIcons: Record<string, readonly [string, string?]> = {
  top: [kNear, 'M12 3l8 4.5-8 4.5-8-4.5z'],
  front: [kNear, 'M4 7.5l8 4.5v9l-8-4.5z'],
  right: [kNear, 'M12 12l8-4.5v9L12 21z'],
  left: [kFar, 'M4 7.5L12 3v9l-8 4.5z'],
  back: [kFar, 'M12 3l8 4.5v9L12 12z'],
  iso: [kNear],
  reset: ['M5 5v5h5M5.5 10a7 7 0 1 1-.3 4.5'],
  play: ['', 'M8 5l11 7-11 7z'],
  pause: ['', 'M7 5h2v14H7zM15 5h2v14h-2z'],
  fullscreen: ['M4 9V4h5M15 4h5v5M20 15v5h-5M9 20H4v-5'],
  download: ['M12 4v11M7 10l5 5 5-5M5 20h14'],
};

/** As the content of a button. */
export const icon = (key: string): string =>
  `<svg viewBox="0 0 24 24" aria-hidden="true">${kIcons[key].map((d, i) => `<path d="${d}" ${i ? 'fill="currentColor"' : ''}/>`).join('')}</svg>`;
