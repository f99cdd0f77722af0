// SPDX-License-Identifier: MIT
// node check.mjs [--out FOLDER] PAGE.html...: opens exported pages in Firefox from file://, as people do, and says of each whether it is
// ready, plays and turns, shows something and complains of nothing. npm ci in this folder first. It needs a display, as Firefox has no
// WebGL 2 without a window; with no graphics card run it so:
//   MOZ_X11_EGL=1 LIBGL_ALWAYS_SOFTWARE=1 tests/run_under_xvfb.sh node web/firefox/check.mjs PAGE.html
import { mkdirSync, writeFileSync } from 'node:fs';
import { basename, join, resolve } from 'node:path';
import { pathToFileURL } from 'node:url';
import { parseArgs } from 'node:util';
import puppeteer from 'puppeteer-core';
import { readPng } from '../compare/picture.mjs';

const kReadyMs = 60000;
const { values: { out }, positionals: pages } = parseArgs({ allowPositionals: true, options: { out: { type: 'string' } } });
if (out) mkdirSync(out, { recursive: true });

// Files are kept apart as for people; the driver would allow them more.
const preferences = { 'webgl.force-enabled': true, 'security.fileuri.strict_origin_policy': true };
const browser = await puppeteer.launch({
  browser: 'firefox', executablePath: process.env.ORBIVUE_FIREFOX ?? '/usr/bin/firefox-esr', headless: false, extraPrefsFirefox: preferences,
});
console.log(await browser.version());

const colors = (png) => {
  const { rgb } = readPng(Buffer.from(png));
  const found = new Set();
  for (let i = 0; i < rgb.length; i += 3) found.add((rgb[i] << 16) | (rgb[i + 1] << 8) | rgb[i + 2]);
  return found.size;
};

/** What is wrong with a page; nothing is expected. */
async function faultsOf(path) {
  const page = await browser.newPage();
  await page.setViewport({ width: 800, height: 600 });
  const faults = [];
  page.on('console', (message) => message.type() === 'error' && faults.push('console: ' + message.text()));
  page.on('pageerror', (error) => faults.push('error: ' + error.message));
  page.on('request', (request) => /^(file|data|blob):/.test(request.url()) || faults.push('asked for ' + request.url()));
  try {
    await page.goto(pathToFileURL(resolve(path)).href, { waitUntil: 'load', timeout: kReadyMs });
    await page.waitForFunction("'ready' in document.body.dataset || 'error' in document.body.dataset", { timeout: kReadyMs });
    const error = await page.evaluate(() => document.body.dataset.error);
    if (error) return [...faults, 'says: ' + error];
    const drawn = await page.evaluate(async () => {
      const before = orbivue.state().drawn;
      orbivue.turn(30, 10);
      await new Promise((done) => requestAnimationFrame(() => requestAnimationFrame(done)));
      return orbivue.state().drawn - before;
    });
    if (drawn < 1) faults.push('does not turn');
    const picture = await page.screenshot();
    if (out) writeFileSync(join(out, basename(path) + '.png'), picture);
    if (colors(picture) < 20) faults.push('shows nothing');
  } catch (error) {
    faults.push(String(error));
  } finally {
    await page.close();
  }
  return faults;
}

let bad = 0;
for (const path of pages) {
  const faults = await faultsOf(path);
  bad += faults.length > 0;
  console.log(faults.length ? `BAD\t${path}\n\t${faults.join('\n\t')}` : `ok\t${path}`);
}
await browser.close();
process.exitCode = bad ? 1 : 0;
