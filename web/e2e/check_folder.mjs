// SPDX-License-Identifier: MIT
// node web/e2e/check_folder.mjs FOLDER: exports every model below a folder as a page and opens it. Each page must say that it is
// ready, without an error on its console. Models that cannot be opened are only counted. Ends with 1 if a page failed.
import { readdirSync } from 'node:fs';
import { extname, join } from 'node:path';
import { launch, Opened } from './browser.mjs';
import { Folder } from './exporter.mjs';

function* modelsBelow(folder) {
  for (const entry of readdirSync(folder, { withFileTypes: true })) {
    const path = join(folder, entry.name);
    if (entry.isDirectory()) yield* modelsBelow(path);
    else if (['.3ds', '.obj', '.zip'].includes(extname(entry.name).toLowerCase())) yield path;
  }
}

const browser = await launch();
const counts = { ready: 0, failed: 0, refused: 0 };
for (const path of modelsBelow(process.argv[2])) {
  const folder = new Folder();
  let opened;
  try {
    const address = (() => {
      try {
        return folder.export(path, 'p.html');
      } catch {
        return undefined;
      }
    })();
    if (!address) {
      counts.refused++;
      continue;
    }
    opened = await Opened.open(browser, address, { viewport: { width: 400, height: 300 } });
    const said = await opened.settled().catch(String);
    const isFine = said === 'ready' && opened.errors.length === 0 && opened.strangers(folder.address).length === 0;
    counts[isFine ? 'ready' : 'failed']++;
    if (!isFine) console.log(`${path}: ${said} ${opened.errors.join(' | ')}`);
  } finally {
    await opened?.close();
    folder.close();
  }
}
await browser.close();
console.log(counts);
process.exitCode = counts.failed ? 1 : 0;
