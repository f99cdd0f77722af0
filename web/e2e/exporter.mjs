// SPDX-License-Identifier: MIT
import { execFileSync } from 'node:child_process';
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
  add(name, bytes) {
    writeFileSync(this.file(name), bytes);
    return this.file(name);
  }
  /** Exports a page by the exporter's own program, with its options; script and name, which may be any bytes, as texts
   * or buffers. Returns the page's address. */
  export(input, page, options = {}) {
    const list = Object.entries(options).map(([name, value]) => [
      `-${name}`,
      name === 'script' || name === 'name' ? this.add(`option${this.#files++}`, value) : String(value),
    ]);
    execFileSync(join(build, 'bin/orbivue-page'), [...list.flat(), input, this.file(page)], { stdio: 'pipe' });
    return this.address + encodeURIComponent(page);
  }
  close() {
    rmSync(this.path, { recursive: true });
  }
}
