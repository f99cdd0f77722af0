// SPDX-License-Identifier: MIT
import { spawnSync } from 'node:child_process';
import { mkdtempSync, rmSync, writeFileSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { join } from 'node:path';
import { fileURLToPath, pathToFileURL } from 'node:url';

const root = fileURLToPath(new URL('../..', import.meta.url));
const build = process.env.ORBIVUE_BUILD ?? join(root, 'build/release');
export const sample = (name) => join(build, 'share/orbivue/samples', name);

/** A folder for pages, deleted by close(). */
export class Folder {
  path = mkdtempSync(join(tmpdir(), 'orbivue-e2e-'));
  #files = 0;

  file(name) {
    return join(this.path, name);
  }
  get address() {
    return pathToFileURL(this.path).href + '/';
  }
  /** The path of a new file; a buffer where the name is one. */
  add(name, bytes) {
    const path = Buffer.isBuffer(name) ? Buffer.concat([Buffer.from(this.path + '/'), name]) : this.file(name);
    writeFileSync(path, bytes);
    return path;
  }
  /** Exports a page by the program that does so without a window; options as that takes them, without "--", true for those
   * without a value; javascript as text. Returns the page's address. */
  export(input, page, options = {}) {
    const list = Object.entries(options).flatMap(([name, value]) => {
      if (value === true) return ['--' + name];
      return ['--' + name, name === 'javascript' ? this.add(`option${this.#files++}`, value) : String(value)];
    });
    // Names may be any bytes, which Node's own arguments may not.
    const words = ['--quiet', ...list, '--', input, this.file(page)].flatMap((word) => [Buffer.from(word), Buffer.from([0])]);
    const done = spawnSync('xargs', ['-0', join(build, 'bin/orbivue-convert')], { input: Buffer.concat(words) });
    if (done.status !== 0) throw new Error(String(done.stderr) || `exit code ${done.status}`);
    return this.address + encodeURIComponent(page);
  }
  close() {
    rmSync(this.path, { recursive: true });
  }
}
