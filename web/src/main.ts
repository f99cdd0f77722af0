// SPDX-License-Identifier: MIT
import { label } from './dom.ts';
import type { OrbivueApi, Settings } from './format.ts';
import { sceneBytes } from './scene_data.ts';
import { Trouble, type TextKey } from './texts.ts';
import { view, type Stage } from './viewer.ts';

const find = (selector: string): HTMLElement => document.querySelector<HTMLElement>(selector)!;

async function show(api: OrbivueApi): Promise<OrbivueApi> {
  const settings = JSON.parse(find('#settings').textContent!) as Settings;
  const { texts, title, backgroundPicture } = settings;
  const status = find('[role=status]');
  const stage: Stage = {
    canvas: find('canvas') as HTMLCanvasElement,
    toolbar: find('[role=toolbar]'),
    say: (text) => void (status.textContent = text),
  };
  const { canvas, say } = stage;
  const named = (key: TextKey): string => texts[key].replace('%1', () => title);
  label(canvas, named('canvas'));
  try {
    const gl = canvas.getContext('webgl2');
    if (backgroundPicture) canvas.style.background = `url("${encodeURI(backgroundPicture)}") 50%/cover rgb(${settings.background.map((x) => x * 255)})`;
    if (!gl) throw new Trouble('noWebGL');
    Object.assign(api, await view(await sceneBytes(settings), settings, stage, gl));
    say(named('shown'));
    document.body.dataset.ready = '';
    return api;
  } catch (error) {
    console.error(error);
    status.setAttribute('role', 'alert');
    // Set after that, or it would not be read aloud.
    status.textContent = document.body.dataset.error = texts[error instanceof Trouble ? error.message : 'broken'];
    throw error;
  }
}

const api = {} as OrbivueApi;
// The script may stand before the scene, so that it is read while the rest of the page arrives.
const parsed = new Promise((resolve) => document.addEventListener('DOMContentLoaded', resolve));
api.ready = parsed.then(() => show(api));
// Told on the page.
api.ready.catch(() => {});
(window as unknown as { orbivue: OrbivueApi }).orbivue = api;
