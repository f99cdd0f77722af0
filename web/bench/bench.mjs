// SPDX-License-Identifier: MIT
// node bench.mjs BIN-FOLDER MODEL...: the first picture and further ones of our page and of a page of three.js round the same
// scene, in turns in one browser, from file://. Beside the time by the clock stands the processor time of the process that draws, of all
// its threads, which says more on a busy machine. npm install in this folder first.
import { execFileSync } from 'node:child_process';
import { mkdtempSync, readFileSync, rmSync, writeFileSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { basename, join } from 'node:path';
import { fileURLToPath, pathToFileURL } from 'node:url';
import { gzipSync } from 'node:zlib';
import { build } from 'esbuild';
import { launch } from '../e2e/browser.mjs';
import { pageOf, readBundle } from '../compare/page_of.mjs';
import { bundle } from '../build.mjs';

const kRuns = Number(process.env.RUNS ?? 7);
const kFrames = 15;
const here = fileURLToPath(new URL('.', import.meta.url));
const [bin, ...models] = process.argv.slice(2);
const folder = mkdtempSync(join(tmpdir(), 'orbivue-bench-'));
const median = (list) => list.sort((a, b) => a - b)[list.length >> 1];

const made = await build({ entryPoints: [here + 'three_page.js'], bundle: true, minify: true, write: false, format: 'esm', target: 'es2022' });
const three = made.outputFiles[0].text.replace(/<\/(script)/gi, '<\\/$1');
const viewer = await readBundle('viewer.min.js');
const texts = (await import('data:text/javascript,' + encodeURIComponent(await bundle(false, 'src/texts.ts', { format: 'esm' })))).kTexts;
const scene = (glb) => `<script type="text/plain" id="scene">${gzipSync(glb).toString('base64')}</script>`;
const threePage = (glb) => `<!DOCTYPE html><meta charset="utf-8"><style>body{margin:0}canvas{display:block;width:100vw;height:100vh}</style>
<canvas></canvas><script type="module">${three}</script>${scene(glb)}`;
/** Milliseconds of processor time of the process that draws, since it began. */
async function drawingTime(session) {
  const { processInfo } = await session.send('SystemInfo.getProcessInfo');
  return 1000 * processInfo.filter(({ type }) => type === 'GPU').reduce((sum, { cpuTime }) => sum + cpuTime, 0);
}

/** Each picture is read, so that it is drawn within the time that is taken. */
async function measure(browser, system, address, ours) {
  const context = await browser.newContext({ viewport: { width: 800, height: 600 }, reducedMotion: 'reduce' });
  const page = await context.newPage();
  await page.goto(address);
  await page.waitForFunction(() => 'ready' in document.body.dataset, null, { polling: 'raf' });
  const first = await page.evaluate(() => performance.now());
  const before = await drawingTime(system);
  const frame = await page.evaluate(async ([frames, own]) => {
    const gl = document.querySelector('canvas').getContext('webgl2');
    const pixel = new Uint8Array(4);
    const began = performance.now();
    for (let i = 0; i < frames; i++) {
      if (own) {
        window.orbivue.turn(3, 0);
        await new Promise((resolve) => requestAnimationFrame(resolve));
      } else {
        await new Promise((resolve) => requestAnimationFrame(resolve));
        window.turn();
      }
      gl.readPixels(0, 0, 1, 1, gl.RGBA, gl.UNSIGNED_BYTE, pixel);
    }
    return (performance.now() - began) / frames;
  }, [kFrames, ours]);
  const busy = ((await drawingTime(system)) - before) / kFrames;
  const session = await context.newCDPSession(page);
  await session.send('HeapProfiler.collectGarbage');
  const { usedSize, backingStorageSize = 0 } = await session.send('Runtime.getHeapUsage');
  await context.close();
  return { first, frame, busy, heap: (usedSize + backingStorageSize) / 1e6 };
}

const browser = await launch();
const system = await browser.newBrowserCDPSession();
for (const model of models) {
  const path = join(folder, 'm.glb');
  execFileSync(join(bin, 'orbivue-convert'), ['--compress', '--texture-side', '2048', model, path], { stdio: 'ignore' });
  const glb = readFileSync(path);
  const pages = { ours: await pageOf(glb, viewer, texts, [800, 600]), three: threePage(glb) };
  const all = { ours: [], three: [] };
  for (const [name, html] of Object.entries(pages)) writeFileSync(join(folder, name + '.html'), html);
  for (let run = 0; run < kRuns; run++)
    for (const name of ['ours', 'three']) all[name].push(await measure(browser, system, pathToFileURL(join(folder, name + '.html')).href, name === 'ours'));
  for (const [name, list] of Object.entries(all)) {
    const of = (key) => median(list.map((x) => x[key])).toFixed(1);
    console.log(`${basename(model)}\t${name}\tfirst ${of('first')} ms\tframe ${of('frame')} ms\tbusy ${of('busy')} ms\theap ${of('heap')} MB\tpage ${(pages[name].length / 1000).toFixed(0)} KB`);
  }
}
await browser.close();
rmSync(folder, { recursive: true });
