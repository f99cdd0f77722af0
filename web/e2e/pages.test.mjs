// SPDX-License-Identifier: MIT
// Whole pages, as the exporter writes them, in a browser.
import assert from 'node:assert/strict';
import { after, before, test } from 'node:test';
import { launch, Opened } from './browser.mjs';
import { Folder, sample } from './exporter.mjs';
import { kNames, kScripts } from './hostile.mjs';
import { model } from './model.mjs';
import { serve } from './server.mjs';

let browser;
before(async () => (browser = await launch()));
after(() => browser?.close());

/** Runs work with a folder and what is opened in it, and closes all. */
async function inFolder(work) {
  const folder = new Folder();
  const opened = [];
  try {
    await work(folder, async (address, options) => {
      opened.push(await Opened.open(browser, address, options));
      return opened.at(-1);
    });
  } finally {
    for (const one of opened) await one.close();
    folder.close();
  }
}

/** That a page has shown its scene, and has done nothing else. */
async function assertFine(opened, folderAddress) {
  assert.equal(await opened.settled(), 'ready');
  assert.ok((await opened.colors()) > 20, 'the canvas shows something');
  assert.deepEqual(opened.errors, []);
  assert.deepEqual(await opened.violations(), []);
  assert.deepEqual(opened.strangers(folderAddress), []);
}

const kScript = 'orbivue.ready.then((api) => { api.turn(10, 0); window.ran = api.state().drawn > 0; })';
// model, options, from a server
const kPages = [
  ['knot.3ds', {}, false],
  ['chess.3ds', { readable: true, 'no-cameras-bar': true }, false],
  ['orrery.3ds', { gzip: true, 'download-link': true }, true],
  ['materials.3ds', { split: true, 'double-sided': true }, false],
  ['vase.3ds', { split: true, readable: true, gzip: true }, true],
  ['knot.3ds', { split: true, 'download-link': true, javascript: kScript }, false],
  ['vase.3ds', { javascript: kScript, 'no-cameras-bar': true, wire: true }, false],
  ['knot.3ds', { split: true, gzip: true, javascript: kScript, 'download-link': true }, true],
  ['vase.3ds', { readable: true, javascript: kScript, gzip: true }, true],
  ['knots.orv', { camera: 'top', background: '255,0,0' }, false],
];
for (const [name, options, served] of kPages) {
  const { javascript } = options;
  test(`page: ${[name, served ? 'from a server' : 'from a file', ...Object.keys(options)].join(', ')}`, () =>
    inFolder(async (folder, open) => {
      // Its name must be encoded wherever it stands in an address.
      const address = folder.export(sample(name), 'über #1?.html', options);
      const server = served ? await serve(folder.path) : undefined;
      try {
        const base = server?.address ?? folder.address;
        const opened = await open(base + address.slice(folder.address.length));
        await assertFine(opened, base);
        assert.equal(await opened.page.evaluate(() => window.ran), javascript ? true : undefined);
        assert.equal(await opened.page.locator('[role=toolbar] [aria-pressed]').count(), options['no-cameras-bar'] ? 0 : 6);
        const links = await opened.page.locator('a[download]').evaluateAll((all) => all.map((link) => link.href));
        assert.deepEqual(links, options['download-link'] ? [`${base}${name}.zip`] : []);
        if (server && options['download-link']) assert.equal((await fetch(links[0])).status, 200);
      } finally {
        server?.close();
      }
    }));
}

const kSmall = { viewport: { width: 400, height: 300 } };
for (const [name, text] of kNames) {
  test(`hostile name: ${name}`, () =>
    inFolder(async (folder, open) => {
      const bytes = Buffer.from(text);
      const inside = bytes.subarray(0, 60);
      // A file's name cannot hold everything.
      const file = Buffer.concat([bytes.map((byte) => (byte === 0x2f ? 0x7c : byte)), Buffer.from('.3ds')]);
      const input = folder.add(file, model({ node: inside, material: inside, camera: inside }));
      const address = folder.export(input, 'p.html', { 'download-link': true });
      const opened = await open(address, kSmall);
      await assertFine(opened, folder.address);
      const { page } = opened;
      assert.equal(await page.evaluate(() => window.harmed), undefined);
      assert.equal(await page.locator('img, svg[onload], iframe, [onerror], [onfocus]').count(), 0);
      const link = await page.locator('a[download]').evaluate((a) => a.href);
      assert.ok(link.startsWith(folder.address), link);
      if (name === 'quotes') assert.ok((await page.title()).includes(text), 'and is shown as it is');
    }));
}

// Beside the page a script stands as it is, so a few will do.
const kBeside = ['end of script in a text', 'line separators', 'huge'];
for (const [name, script, expected] of kScripts) {
  for (const combine of kBeside.includes(name) ? [1, 0] : [1]) {
    test(`hostile script: ${name}, ${combine ? 'combined' : 'beside the page'}`, () =>
      inFolder(async (folder, open) => {
        const opened = await open(folder.export(folder.add('m.3ds', model({})), 'p.html', { javascript: script, ...(combine ? {} : { split: true }) }), kSmall);
        assert.equal(await opened.settled(), 'ready');
        const [ran, harmed] = await opened.page.evaluate(() => [window.ran, window.harmed]);
        assert.equal(harmed, undefined);
        assert.equal(ran, expected);
        assert.deepEqual(opened.strangers(folder.address), []);
        assert.equal(opened.errors.length, expected === undefined ? 1 : 0, opened.errors.join('\n'));
        assert.equal(opened.dialogs, 0);
      }));
  }
}

test('keys alone reach everything', () =>
  inFolder(async (folder, open) => {
    const opened = await open(folder.export(sample('knot.3ds'), 'p.html', { 'download-link': true }));
    await assertFine(opened, folder.address);
    const { page } = opened;
    const focus = () => page.evaluate(() => document.activeElement.tagName + ':' + (document.activeElement.title || ''));
    const drawn = () => page.evaluate(() => orbivue.state().drawn);
    await page.keyboard.press('Tab');
    assert.match(await focus(), /^CANVAS/);
    const before = await drawn();
    await page.keyboard.press('ArrowLeft');
    await page.waitForFunction((n) => orbivue.state().drawn > n, before);
    await page.keyboard.press('Tab');
    assert.equal(await focus(), 'BUTTON:Top view');
    await page.keyboard.press('Enter');
    await page.waitForFunction(() => document.activeElement.getAttribute('aria-pressed') === 'true');
    await page.keyboard.press('ArrowRight');
    assert.equal(await focus(), 'BUTTON:Left view');
    for (let i = 0; i < 2; i++) await page.keyboard.press('ArrowLeft');
    assert.equal(await focus(), 'A:Download the model');
    await page.keyboard.press('Tab');
    assert.ok(!/^(BUTTON|A):/.test(await focus()), 'the toolbar is one stop');
    assert.equal(await page.locator('[role=toolbar] > :not([aria-label])').count(), 0);
  }));

test('a phone sees all of it', () =>
  inFolder(async (folder, open) => {
    const phone = { viewport: { width: 360, height: 640 }, deviceScaleFactor: 3, isMobile: true, hasTouch: true };
    const opened = await open(folder.export(sample('knot.3ds'), 'p.html', { 'download-link': true }), phone);
    await assertFine(opened, folder.address);
    const sizes = await opened.page.evaluate(() => {
      const bar = document.querySelector('[role=toolbar]').getBoundingClientRect();
      const canvas = document.querySelector('canvas').getBoundingClientRect();
      const small = [...document.querySelectorAll('[role=toolbar] button')].filter((b) => b.offsetWidth < 40 || b.offsetHeight < 40);
      return [document.documentElement.scrollWidth, Math.round(bar.bottom), Math.round(canvas.bottom - bar.top), small.length];
    });
    assert.deepEqual(sizes, [360, 640, 0, 0]);
  }));

test('a page in German', () =>
  inFolder(async (folder, open) => {
    const opened = await open(folder.export(sample('vase.3ds'), 'p.html', { language: 'de' }));
    await assertFine(opened, folder.address);
    assert.equal(await opened.page.locator('html').getAttribute('lang'), 'de');
    assert.equal(await opened.page.locator('[role=toolbar] button').first().getAttribute('aria-label'), 'Ansicht von oben');
  }));

// What cannot be shown is said, in a sentence that screen readers tell.
const kTroubles = [
  ['no JavaScript', { javaScriptEnabled: false }, undefined, /needs JavaScript/],
  ['no WebGL 2', { init: () => (HTMLCanvasElement.prototype.getContext = () => null) }, undefined, /no WebGL 2/],
  ['no unpacking', { init: () => delete globalThis.DecompressionStream }, undefined, /too old/],
  ['an empty scene', {}, (page) => page.replace(/(id="scene">)[^<]*/, '$1'), /damaged/],
  ['a damaged scene', {}, (page) => page.replace(/(id="scene">.{40}).{40}/, '$1'), /damaged|cannot be read/],
  ['a cut page', {}, (page) => page.slice(0, page.indexOf('id="scene">') + 200), /damaged|cannot be read/],
];
for (const [name, options, change, expected] of kTroubles) {
  test(`says what is wrong: ${name}`, () =>
    inFolder(async (folder, open) => {
      const address = folder.export(sample('vase.3ds'), 'p.html');
      if (change) {
        const { readFileSync } = await import('node:fs');
        folder.add('p.html', change(readFileSync(folder.file('p.html'), 'utf8')));
      }
      const opened = await open(address, options);
      const alert = opened.page.locator('[role=alert]');
      await alert.waitFor();
      assert.match(await alert.textContent(), expected);
    }));
}
