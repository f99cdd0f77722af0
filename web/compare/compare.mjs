// SPDX-License-Identifier: MIT
// node compare.mjs [--size WxH] [--camera NAME] [--compress] [--samples N] [--out FOLDER] BIN-FOLDER MODEL...
// Draws each model with the page's viewer in Chromium and with orbivue-render, and prints how alike the pictures are:
// PSNR in dB and how much of the silhouette both have. Exit status 1 where a picture is below 38 dB or 0.99.
import { execFileSync } from 'node:child_process';
import { mkdtempSync, readFileSync, rmSync, writeFileSync, mkdirSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { basename, join } from 'node:path';
import { pathToFileURL } from 'node:url';
import { parseArgs } from 'node:util';
import { chromium } from 'playwright-core';
import { bundle } from '../build.mjs';
import { pageOf } from './page_of.mjs';
import { psnr, readPng, silhouetteIoU } from './picture.mjs';

export const kChromium = {
  executablePath: '/usr/bin/chromium',
  args: ['--no-sandbox', '--disable-quic', '--no-first-run', '--disable-background-networking', '--disable-component-update',
    '--disable-sync', '--use-angle=swiftshader', '--enable-unsafe-swiftshader', '--ignore-gpu-blocklist'],
};
const kBackground = [61, 66, 77];

async function texts() {
  const made = await bundle(false, 'src/texts.ts', { format: 'esm' });
  return (await import('data:text/javascript,' + encodeURIComponent(made))).kTexts;
}

const { values: o, positionals: [bin, ...models] } = parseArgs({
  allowPositionals: true,
  options: {
    size: { type: 'string', default: '480x360' }, camera: { type: 'string', default: 'iso' }, compress: { type: 'boolean' },
    samples: { type: 'string', default: '4' }, out: { type: 'string' }, frame: { type: 'string' }, wire: { type: 'boolean' },
  },
});
const size = o.size.split('x').map(Number);
const camera = { top: 'top_cam', left: 'lft_cam', right: 'rgt_cam', front: 'frt_cam', back: 'bck_cam', iso: 'iso_cam' }[o.camera];
const folder = mkdtempSync(join(tmpdir(), 'orbivue-compare-'));
if (o.out) mkdirSync(o.out, { recursive: true });
const browser = await chromium.launch(kChromium);
const page = await browser.newPage({ viewport: { width: size[0], height: size[1] }, reducedMotion: 'reduce' });
page.on('console', (m) => console.error('console:', m.text()));
page.on('pageerror', (e) => console.error('page:', e.stack));
const viewer = await bundle(false);
const words = await texts();
const more = { ...(o.frame && { frame: Number(o.frame) }), ...(o.wire && { wire: true }) };

async function drawn(model) {
  const [glb, html, png] = ['m.glb', 'm.html', 'm.png'].map((name) => join(folder, name));
  execFileSync(join(bin, 'orbivue-gltf'), [...(o.compress ? ['-compress', '-2048'] : []), model, glb]);
  writeFileSync(html, await pageOf(readFileSync(glb), viewer, words, size, camera, more));
  const wanted = ['--size', o.size, '--samples', o.samples, '--camera', o.camera, ...(o.frame ? ['--frame', o.frame] : []), ...(o.wire ? ['--wire'] : [])];
  execFileSync(join(bin, 'orbivue-render'), [...wanted, model, png], { stdio: ['ignore', 'ignore', 'ignore'] });
  await page.goto(pathToFileURL(html).href);
  await page.waitForFunction(() => 'ready' in document.body.dataset || 'error' in document.body.dataset, null, { timeout: 60000 });
  const error = await page.evaluate(() => document.body.dataset.error);
  if (error) throw new Error(error);
  return [await page.screenshot(), readFileSync(png)];
}

let faults = 0;
for (const model of models) {
  const name = basename(model);
  try {
    const [ours, theirs] = await drawn(model);
    const [a, b] = [readPng(ours), readPng(theirs)];
    const [noise, iou] = [psnr(a, b), silhouetteIoU(a, b, kBackground)];
    const bad = noise < 38 || iou < 0.99;
    faults += bad;
    console.log(`${noise.toFixed(2)}\t${iou.toFixed(4)}\t${bad ? 'DIFFERS' : ''}\t${model}`);
    if (o.out) {
      writeFileSync(join(o.out, name + '.page.png'), ours);
      writeFileSync(join(o.out, name + '.desktop.png'), theirs);
    }
  } catch (error) {
    const text = String(error.stderr || error.message).trim().split('\n')[0];
    console.log(`-\t-\t${error.status ? 'no model' : 'ERROR ' + text}\t${model}`);
    faults += !error.status;
  }
}
await browser.close();
rmSync(folder, { recursive: true });
process.exitCode = faults ? 1 : 0;
