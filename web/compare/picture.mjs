// SPDX-License-Identifier: MIT
// Pictures as numbers: reading PNG as browsers and orbivue-render write it, and how alike two are.
import { inflateSync } from 'node:zlib';

const paeth = (a, b, c) => {
  const [pa, pb, pc] = [Math.abs(b - c), Math.abs(a - c), Math.abs(a + b - 2 * c)];
  return pa <= pb && pa <= pc ? a : pb <= pc ? b : c;
};

/** width, height and RGB of a PNG of 8 bits with or without alpha. */
export function readPng(file) {
  const [width, height, kind] = [file.readUInt32BE(16), file.readUInt32BE(20), file[25]];
  const n = { 2: 3, 6: 4 }[kind];
  const parts = [];
  for (let at = 8; at < file.length; at += 12 + file.readUInt32BE(at))
    if (file.toString('latin1', at + 4, at + 8) === 'IDAT') parts.push(file.subarray(at + 8, at + 8 + file.readUInt32BE(at)));
  const raw = inflateSync(Buffer.concat(parts));
  const rgb = new Uint8Array(width * height * 3);
  const stride = width * n;
  let above = new Uint8Array(stride);
  for (let y = 0; y < height; y++) {
    const filter = raw[y * (stride + 1)];
    const line = new Uint8Array(raw.subarray(y * (stride + 1) + 1, (y + 1) * (stride + 1)));
    for (let i = 0; i < stride; i++) {
      const [a, b, c] = [i >= n ? line[i - n] : 0, above[i], i >= n ? above[i - n] : 0];
      line[i] += [0, a, b, (a + b) >> 1, paeth(a, b, c)][filter];
    }
    for (let x = 0; x < width; x++) for (let k = 0; k < 3; k++) rgb[(y * width + x) * 3 + k] = line[x * n + k];
    above = line;
  }
  return { width, height, rgb };
}

/** Peak signal to noise in dB. */
export function psnr(a, b) {
  let sum = 0;
  for (let i = 0; i < a.rgb.length; i++) sum += (a.rgb[i] - b.rgb[i]) ** 2;
  return sum ? 10 * Math.log10(255 ** 2 / (sum / a.rgb.length)) : Infinity;
}

/** How much of what either shows both show: pixels that are not the background's. */
export function silhouetteIoU(a, b, background) {
  const shown = ({ rgb }, i) => background.some((x, k) => Math.abs(rgb[i + k] - x) > 3);
  let [both, either] = [0, 0];
  for (let i = 0; i < a.rgb.length; i += 3) {
    const [x, y] = [shown(a, i), shown(b, i)];
    both += x && y;
    either += x || y;
  }
  return either ? both / either : 1;
}
