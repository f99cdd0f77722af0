// SPDX-License-Identifier: MIT
// A bare page round a glTF binary of ours: the viewer, a canvas of the whole window, and a view from a side.
import { readFile } from 'node:fs/promises';
import { gzipSync } from 'node:zlib';

const kBack = {
  top_cam: [0, 0, 1],
  lft_cam: [-1, 0, 0],
  rgt_cam: [1, 0, 0],
  frt_cam: [0, -1, 0],
  bck_cam: [0, 1, 0],
  iso_cam: [1, -1, 1].map((x) => x / Math.sqrt(3)),
};

/** The JSON of a glTF binary. */
export function jsonOf(glb) {
  return JSON.parse(glb.subarray(20, 20 + glb.readUInt32LE(12)).toString());
}

/** The view of a preset as the desktop has it at this size. */
export function presetView({ center, radius }, camera, [width, height]) {
  const back = kBack[camera];
  const t = Math.tan(Math.PI / 8) * Math.min(1, width / height);
  const distance = ((radius || 1) * Math.sqrt(1 + t * t)) / t;
  const up = camera === 'top_cam' ? [0, 1, 0] : [0, 0, 1];
  return { eye: center.map((x, i) => x + back[i] * distance), target: center, up, fovYDeg: 45, size: [width, height], camera, preset: true };
}

/** viewer: the text of a bundle. size: of the picture. more: further settings. */
export async function pageOf(glb, viewer, texts, size, camera = 'iso_cam', more = {}) {
  const json = jsonOf(glb);
  const extras = json.scenes[json.scene ?? 0].extras.orbivue;
  const settings = {
    title: 'compare', background: [61 / 255, 66 / 255, 77 / 255], wire: false, doubleSided: false, camerasBar: true,
    view: presetView(extras.bounds, camera, size), frame: extras.frames?.current, texts, ...more,
  };
  const inside = (data) => JSON.stringify(data).replace(/</g, '\\u003c');
  return `<!DOCTYPE html><meta charset="utf-8"><style>body{margin:0}canvas{display:block;width:100vw;height:100vh}[role]{display:none}</style>
<main><canvas tabindex="0"></canvas></main><div role="toolbar"></div><p role="status"></p>
<script type="application/json" id="settings">${inside(settings)}</script>
<script>${viewer}</script>
<script type="text/plain" id="scene">${gzipSync(glb, { level: 1 }).toString('base64')}</script>`;
}

export const readBundle = (name) => readFile(new URL('../dist/' + name, import.meta.url), 'utf8');
