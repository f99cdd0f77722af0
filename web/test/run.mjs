// SPDX-License-Identifier: MIT
// Bundles each *.test.ts and runs them all with Node's test runner.
import { spawnSync } from 'node:child_process';
import { mkdtempSync, readdirSync, rmSync, writeFileSync } from 'node:fs';
import { fileURLToPath } from 'node:url';
import { bundle } from '../build.mjs';

const here = fileURLToPath(new URL('.', import.meta.url));
const folder = mkdtempSync(here + '.made-');
const files = readdirSync(here).filter((name) => name.endsWith('.test.ts'));
for (const name of files) {
  const text = await bundle(false, 'test/' + name, { format: 'esm', platform: 'node' });
  writeFileSync(`${folder}/${name.replace('.ts', '.mjs')}`, text);
}
const { status } = spawnSync(process.execPath, ['--test', ...files.map((name) => `${folder}/${name.replace('.ts', '.mjs')}`)], { stdio: 'inherit' });
rmSync(folder, { recursive: true });
process.exitCode = status ?? 1;
