// SPDX-License-Identifier: MIT
// What people do with a page: mouse, fingers, keys, and what happens to it.
import assert from 'node:assert/strict';
import { after, before, test } from 'node:test';
import { launch, Opened } from './browser.mjs';
import { Folder, sample } from './exporter.mjs';

let browser;
let folder;
let address;
before(async () => {
  browser = await launch();
  folder = new Folder();
  address = folder.export(sample('orrery.3ds'), 'orrery.html');
});
after(async () => {
  await browser?.close();
  folder?.close();
});

/** Opens the page with nothing moving by itself. */
async function opened(options = {}, at = address) {
  const one = await Opened.open(browser, at, { reducedMotion: 'reduce', ...options });
  assert.equal(await one.settled(), 'ready');
  return one;
}
const picture = async (one) => (await one.page.locator('canvas').screenshot()).toString('base64');
const state = (one) => one.page.evaluate(() => window.orbivue.state());

const kWays = {
  'a drag': async ({ mouse }) => {
    await mouse.move(300, 200);
    await mouse.down();
    await mouse.move(360, 220, { steps: 3 });
    await mouse.up();
  },
  'the middle button': async ({ mouse }) => {
    await mouse.move(300, 200);
    await mouse.down({ button: 'middle' });
    await mouse.move(330, 250, { steps: 3 });
    await mouse.up({ button: 'middle' });
  },
  'the wheel': async ({ mouse }) => {
    await mouse.move(300, 200);
    await mouse.wheel(0, 200);
  },
  'a box': async ({ mouse, keyboard }) => {
    await keyboard.down('Control');
    await mouse.move(250, 150);
    await mouse.down();
    await mouse.move(350, 250, { steps: 3 });
    await mouse.up();
    await keyboard.up('Control');
  },
  'a double click': ({ mouse }) => mouse.dblclick(250, 220),
  'an arrow key': (page) => page.locator('canvas').press('ArrowLeft'),
  'a key that zooms': (page) => page.locator('canvas').press('+'),
  'a button': (page) => page.getByRole('button', { name: 'Top view' }).click(),
  'a camera of the file': (page) => page.getByRole('combobox').selectOption({ index: 1 }),
  'the slider': (page) => page.getByRole('slider').fill('40'),
};

test('each way of looking changes the picture, Home brings it back, and then nothing is drawn', async () => {
  const one = await opened();
  for (const [name, act] of Object.entries(kWays)) {
    const before = await picture(one);
    await act(one.page);
    await one.page.waitForTimeout(60);
    assert.notEqual(await picture(one), before, name);
    await one.page.evaluate(() => window.orbivue.setFrame(0));
    await one.page.locator('canvas').press('Home');
  }
  await one.page.waitForTimeout(300);
  const { drawn } = await state(one);
  await one.page.waitForTimeout(3000);
  assert.equal((await state(one)).drawn, drawn);
  assert.deepEqual(one.errors, []);
  await one.close();
});

test('two fingers on a phone zoom, and the page does not', async () => {
  const one = await opened({ viewport: { width: 390, height: 700 }, hasTouch: true, isMobile: true, deviceScaleFactor: 3 });
  const before = await picture(one);
  const session = await one.context.newCDPSession(one.page);
  const touch = (type, ...points) => session.send('Input.dispatchTouchEvent', { type, touchPoints: points.map(([x, y], id) => ({ x, y, id })) });
  await touch('touchStart', [150, 300], [250, 300]);
  for (let i = 1; i < 6; i++) await touch('touchMove', [150 - i * 10, 300], [250 + i * 10, 300]);
  await touch('touchEnd');
  await one.page.waitForTimeout(100);
  assert.notEqual(await picture(one), before);
  const { scale, ratio } = await one.page.evaluate(() => ({
    scale: visualViewport.scale,
    ratio: document.querySelector('canvas').width / document.querySelector('canvas').clientWidth,
  }));
  assert.equal(scale, 1);
  assert.ok(ratio <= 2.01);
  await one.close();
});

test('an animation plays by itself, and stops with Space', async () => {
  const one = await opened({ reducedMotion: 'no-preference' });
  await one.page.waitForFunction(() => window.orbivue.state().frame > 1);
  await one.page.locator('canvas').press(' ');
  const { playing, frame } = await state(one);
  assert.equal(playing, false);
  await one.page.waitForTimeout(200);
  assert.equal((await state(one)).frame, frame);
  await one.close();
});

test('a context that was lost comes back with the same picture', async () => {
  const one = await opened();
  const before = await picture(one);
  await one.page.evaluate(async () => {
    const canvas = document.querySelector('canvas');
    const lose = canvas.getContext('webgl2').getExtension('WEBGL_lose_context');
    const happened = (name) => new Promise((resolve) => canvas.addEventListener(name, resolve, { once: true }));
    const lost = happened('webglcontextlost');
    lose.loseContext();
    await lost;
    await new Promise((resolve) => setTimeout(resolve, 50));
    const back = happened('webglcontextrestored');
    lose.restoreContext();
    await back;
  });
  await one.page.waitForTimeout(1500);
  assert.equal(await picture(one), before);
  assert.deepEqual(one.errors, []);
  await one.close();
});
