// SPDX-License-Identifier: MIT
import { readFile } from 'node:fs/promises';
import { createServer } from 'node:http';
import { basename, join } from 'node:path';

const kTypes = { html: 'text/html', js: 'text/javascript', bin: 'application/octet-stream', zip: 'application/zip' };

/** Serves the files of one folder to this machine alone; where there is a packed copy, that one, as nginx does with
 * gzip_static. */
export async function serve(folder) {
  const server = createServer(async (request, response) => {
    const name = basename(decodeURIComponent(new URL(request.url, 'http://x').pathname));
    const packed = await readFile(join(folder, name + '.gz')).catch(() => undefined);
    const body = packed ?? (await readFile(join(folder, name)).catch(() => undefined));
    if (!body) return response.writeHead(404).end();
    const headers = { 'content-type': kTypes[name.split('.').pop()] ?? 'text/plain' };
    if (packed) headers['content-encoding'] = 'gzip';
    response.writeHead(200, headers).end(body);
  });
  server.requestTimeout = 10000;
  await new Promise((done) => server.listen(0, '127.0.0.1', done));
  return { address: `http://127.0.0.1:${server.address().port}/`, close: () => (server.closeAllConnections(), server.close()) };
}
