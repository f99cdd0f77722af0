// SPDX-License-Identifier: MIT
// Bundles the viewer into dist/: viewer.js to be read, viewer.min.js to be sent. --check only says whether they are current.
import { readFile, writeFile, mkdir } from 'node:fs/promises';
import { fileURLToPath } from 'node:url';
import { gzipSync } from 'node:zlib';
import { build } from 'esbuild';

const here = fileURLToPath(new URL('.', import.meta.url));
const banner = '// SPDX-License-Identifier: MIT\n// The viewer of Orbivue\'s web pages. Contains code of meshoptimizer, (C) Arseny Kapoulkine, MIT licence.';

/** Shaders without comments and indentation; each preprocessor line keeps its own. */
function shortened(source) {
  const lines = source.replace(/\/\/.*/g, '').split('\n').map((line) => line.trim()).filter(Boolean);
  let text = '';
  for (const line of lines) {
    if (line.startsWith('#')) text += (text && !text.endsWith('\n') ? '\n' : '') + line + '\n';
    else text += line.replace(/\s*([-+*\/=<>?:,;{}()&|!])\s*/g, '$1');
  }
  return text;
}

const shaders = (minify) => ({
  name: 'shaders',
  setup(bundle) {
    bundle.onLoad({ filter: /\.(vert|frag)$/ }, async ({ path }) => {
      const source = await readFile(path, 'utf8');
      return { contents: minify ? shortened(source) : source, loader: 'text' };
    });
  },
});

/** The text of a bundle. */
export async function bundle(minify) {
  const result = await build({
    entryPoints: [here + 'src/main.ts'],
    bundle: true,
    write: false,
    format: 'iife',
    target: 'es2020',
    charset: 'ascii',
    minify,
    legalComments: 'none',
    banner: { js: banner },
    plugins: [shaders(minify)],
  });
  // The text stands inside pages, in a script element.
  return result.outputFiles[0].text.replace(/<\/(script)/gi, '<\\/$1').replace(/<!--/g, '<\\!--');
}

async function main() {
  const check = process.argv.includes('--check');
  await mkdir(here + 'dist', { recursive: true });
  for (const [name, minify] of [['viewer.js', false], ['viewer.min.js', true]]) {
    const path = `${here}dist/${name}`;
    const text = await bundle(minify);
    if (check) {
      if (text !== (await readFile(path, 'utf8').catch(() => ''))) {
        console.error(`${name} is not current: run npm run build`);
        process.exitCode = 1;
      }
      continue;
    }
    await writeFile(path, text);
    console.log(`${name}: ${text.length} bytes, ${gzipSync(text, { level: 9 }).length} gzipped`);
  }
}

if (process.argv[1] === fileURLToPath(import.meta.url)) await main();
export { shaders };
