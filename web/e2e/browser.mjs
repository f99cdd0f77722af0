// SPDX-License-Identifier: MIT
// One browser for all tests of whole pages, and what a page did in it.
import { chromium } from 'playwright-core';

const kArguments = ['--no-sandbox', '--disable-gpu', '--disable-quic', '--no-first-run', '--disable-background-networking',
  '--disable-component-update', '--disable-sync', '--use-angle=swiftshader', '--enable-unsafe-swiftshader'];
const kReadyMs = 20000;

export const launch = () =>
  chromium.launch({ executablePath: process.env.ORBIVUE_CHROMIUM ?? '/usr/bin/chromium', headless: true, args: kArguments });

/** A page that is open, and all that was told about it. */
export class Opened {
  errors = [];
  requests = [];
  dialogs = 0;

  /** options: those of a browser context, and init, a function that runs before the page's own scripts. */
  static async open(browser, address, { init, ...options } = {}) {
    const opened = new Opened();
    opened.context = await browser.newContext({ viewport: { width: 640, height: 480 }, ...options });
    opened.context.setDefaultTimeout(kReadyMs);
    const page = (opened.page = await opened.context.newPage());
    page.on('console', (message) => message.type() === 'error' && opened.errors.push(message.text()));
    page.on('pageerror', (error) => opened.errors.push(String(error)));
    page.on('request', (request) => opened.requests.push(request.url()));
    page.on('dialog', (dialog) => (opened.dialogs++, dialog.dismiss()));
    await page.addInitScript(() => {
      window.violations = [];
      addEventListener('securitypolicyviolation', (event) => window.violations.push(event.violatedDirective));
    });
    if (init) await page.addInitScript(init);
    await page.goto(address);
    return opened;
  }

  /** What the page says at its end: "ready", or its error. */
  async settled() {
    const has = () => ['ready', 'error'].some((key) => document.body.dataset[key] !== undefined);
    await this.page.waitForFunction(has, null, { timeout: kReadyMs });
    return this.page.evaluate(() => document.body.dataset.error ?? 'ready');
  }

  /** How many colours the canvas shows. */
  async colors() {
    const png = await this.page.locator('canvas').screenshot();
    const blank = await this.context.newPage();
    const count = await blank.evaluate(async (address) => {
      const bitmap = await createImageBitmap(await (await fetch(address)).blob());
      const context = new OffscreenCanvas(bitmap.width, bitmap.height).getContext('2d');
      context.drawImage(bitmap, 0, 0);
      return new Set(new Uint32Array(context.getImageData(0, 0, bitmap.width, bitmap.height).data.buffer)).size;
    }, 'data:image/png;base64,' + png.toString('base64'));
    await blank.close();
    return count;
  }

  /** Requests that leave a folder. */
  strangers(folder) {
    return this.requests.filter((url) => !url.startsWith(folder) && !/^(data|blob):/.test(url));
  }

  violations() {
    return this.page.evaluate(() => window.violations);
  }

  close() {
    return this.context.close();
  }
}
