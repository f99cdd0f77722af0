// SPDX-License-Identifier: MIT
// Bundles the viewer into dist/: viewer.js to be read, viewer.min.js to be sent. --check only says whether they are current.
import { mkdir, readdir, readFile, writeFile } from 'node:fs/promises';
import { fileURLToPath } from 'node:url';
import { gzipSync } from 'node:zlib';
import { build } from 'esbuild';
import { minify as pressed } from 'terser';

const here = fileURLToPath(new URL('.', import.meta.url));
const banner = "// Orbivue's viewer with code of meshoptimizer, (C) Arseny Kapoulkine. MIT licence.";

/** What stands in shaders and is not ours to rename. */
const kGlsl = new Set(
  `void main float int uint bool vec2 vec3 vec4 mat3 mat4 ivec2 uvec4 sampler2D in out uniform layout location precision highp if else 
  for return discard true false gl_Position gl_FragCoord gl_VertexID texture texelFetch dot cross normalize inversesqrt max min abs
  sqrt sign mix smoothstep length clamp pow reflect atan asin dFdx dFdy floatBitsToUint`.split(/\s+/),
);

/** Members of our own records, which get short names in the minified bundle: none of them is a member of anything of the browser
 * that is used, and none stands in a file of src/format.ts. */
const kOwn = `vao indexType hasUv low high sorted positions make mixWith geometry look program depth ordered opaque blended wrap
  uniform self glossy metal lines maybeSolid json bin views offset stride components fits own tanX tanY base pivot shift at
  azimuth missed sight down move wheel moved boxed centered ctrl draw depthAt gltf cameraNames show fileCamera togglePlaying say
  times step use parent world alpha animated modelCenter modelRadius viewWidth viewHeight backward zoomed turned`.split(/\s+/);

/** Our names in a shader, those of its macros among them; not what stands behind a dot. */
const kName = /(?<![.\w#])[A-Za-z_]\w*/g;
const withoutComments = (source) => source.replace(/\/\/.*/g, '');

/** Short names for those of shaders: a letter for the most frequent ones. Uniforms and macros, which the program names, too, have
 * theirs alone; other names may share one where no shader has both. */
async function shortNames() {
  const uses = new Map();
  const files = (await readdir(here + 'shaders')).sort();
  for (const file of files) {
    for (const [name] of withoutComments(await readFile(here + 'shaders/' + file, 'utf8')).matchAll(kName)) {
      if (kGlsl.has(name)) continue;
      const use = uses.get(name) ?? { count: 0, files: /^(u[A-Z]|[A-Z\d_]{3})/.test(name) ? files : new Set() };
      use.count++;
      if (use.files !== files) use.files.add(file);
      uses.set(name, use);
    }
  }
  const letters = [...'etnraiolcsudfmhpgbvwxyEkjqzATSLCRPDIMBFNOGHKUVWXYZJQ'];
  const taken = new Set();
  const given = [...uses].sort(([, a], [, b]) => b.count - a.count).map(([name, use]) => {
    const short = [...letters, ...letters.map((letter) => letter + '_')].find((s) => [...use.files].every((file) => !taken.has(file + s)));
    for (const file of use.files) taken.add(file + short);
    return [name, short];
  });
  return new Map(given);
}

/** A shader without comments and indentation and with short names; preprocessor lines stay lines. */
function shortened(source, names) {
  let text = '';
  for (const line of withoutComments(source).split('\n').map((l) => l.trim()).filter(Boolean)) {
    const short = line.replace(kName, (name) => names.get(name) ?? name);
    if (line.startsWith('#')) text += (text && !text.endsWith('\n') ? '\n' : '') + short + '\n';
    else text += short.replace(/\s*([-+*/=<>?:,;{}()&|!])\s*/g, '$1');
  }
  return text;
}

const shaders = (names) => ({
  name: 'shaders',
  setup(bundle) {
    bundle.onLoad({ filter: /\.(vert|frag)$/ }, async ({ path }) => {
      const source = await readFile(path, 'utf8');
      return { contents: names ? shortened(source, names) : source, loader: 'text' };
    });
  },
});

/** The text of a bundle. */
export async function bundle(minify, entry = 'src/main.ts', options = {}) {
  const names = minify && (await shortNames());
  const result = await build({
    // Or the bundle would depend on where one stands.
    absWorkingDir: here,
    entryPoints: [here + entry],
    bundle: true,
    write: false,
    format: 'iife',
    target: 'es2021',
    charset: 'ascii',
    minify,
    legalComments: 'none',
    banner: { js: banner },
    plugins: [shaders(names)],
    ...(minify && { mangleProps: new RegExp(`^(${kOwn.join('|')})$`) }),
    ...options,
  });
  let text = result.outputFiles[0].text;
  if (minify) {
    text = text.replace('"use strict";', '').replace(/"(u[A-Z]\w+|[A-Z\d_ ]{3,})"/g, (words) => words.replace(/\w+/g, (name) => names.get(name) ?? name));
    const compress = { ecma: 2020, passes: 3, unsafe: true, unsafe_arrows: true, pure_getters: true, keep_fargs: false, inline: 0, reduce_funcs: false, sequences: false };
    text = banner + '\n' + (await pressed(text, { ecma: 2020, compress, format: { ascii_only: true, comments: false } })).code + '\n';
  }
  // It stands inside pages, in a script element.
  return text.replace(/<(?=\/script|!--)/gi, '<\\');
}

async function main() {
  const check = process.argv.includes('--check');
  await mkdir(here + 'dist', { recursive: true });
  for (const [name, minify] of [['viewer.js', false], ['viewer.min.js', true]]) {
    const path = `${here}dist/${name}`;
    const text = await bundle(minify);
    if (!check) await writeFile(path, text);
    else if (text !== (await readFile(path, 'utf8').catch(() => ''))) {
      console.error(`dist/${name} is not current: run npm run build`);
      process.exitCode = 1;
    }
    console.log(`${name}: ${text.length} bytes, ${gzipSync(text, { level: 9 }).length} gzipped`);
  }
}

if (process.argv[1] === fileURLToPath(import.meta.url)) await main();
