// SPDX-License-Identifier: MIT

const kCube = 'M12 3l8 4.5v9L12 21l-8-4.5v-9z';
const kEdges = 'M4 7.5l8 4.5 8-4.5M12 12v9';

/** Pictures of the buttons on a field of 24 by 24: what is filled, and what is drawn as lines. */
const kIcons: Record<string, readonly [string, string]> = {
  top: ['M12 3l8 4.5-8 4.5-8-4.5z', kCube + kEdges],
  front: ['M4 7.5l8 4.5v9l-8-4.5z', kCube + kEdges],
  right: ['M12 12l8-4.5v9L12 21z', kCube + kEdges],
  left: ['M4 7.5L12 3v9l-8 4.5z', kCube + 'M12 3v9M4 16.5l8-4.5 8 4.5'],
  back: ['M12 3l8 4.5v9L12 12z', kCube + 'M12 3v9M4 16.5l8-4.5 8 4.5'],
  iso: ['', kCube + kEdges],
  reset: ['', 'M5 5v5h5M5.5 10a7 7 0 1 1-.3 4.5'],
  play: ['M8 5l11 7-11 7z', ''],
  pause: ['M7 5h4v14H7zM13 5h4v14h-4z', ''],
  fullscreen: ['', 'M4 9V4h5M15 4h5v5M20 15v5h-5M9 20H4v-5'],
  download: ['', 'M12 4v11M7 10l5 5 5-5M5 20h14'],
};

export function icon(name: string): SVGSVGElement {
  const make = <K extends keyof SVGElementTagNameMap>(tag: K, attributes: Record<string, string>): SVGElementTagNameMap[K] => {
    const element = document.createElementNS('http://www.w3.org/2000/svg', tag);
    for (const [key, value] of Object.entries(attributes)) element.setAttribute(key, value);
    return element;
  };
  const svg = make('svg', { viewBox: '0 0 24 24', 'aria-hidden': 'true' });
  const [filled, drawn] = kIcons[name];
  if (filled) svg.append(make('path', { d: filled, class: 'filled' }));
  if (drawn) svg.append(make('path', { d: drawn }));
  return svg;
}
