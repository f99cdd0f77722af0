// SPDX-License-Identifier: MIT
import { publish } from './api.ts';
import { sceneBytes } from './scene_data.ts';
import { readSettings } from './settings.ts';
import { Stage } from './stage.ts';
import { Texts } from './texts.ts';
import { Trouble } from './trouble.ts';
import { Viewer } from './viewer.ts';

async function show(): Promise<void> {
  const settings = readSettings(document.getElementById('settings')?.textContent ?? '');
  const texts = new Texts(settings.texts);
  const stage = new Stage(texts);
  stage.canvas.setAttribute('aria-label', texts.of('canvas', settings.title || settings.model));
  stage.say(texts.of('loading'));
  try {
    const gl = stage.canvas.getContext('webgl2', { alpha: false, antialias: true, powerPreference: 'high-performance' });
    if (!gl) throw new Trouble('noWebGL');
    const viewer = new Viewer(await sceneBytes(), settings, texts, stage, gl);
    await viewer.start();
    stage.say(texts.of('shown', settings.title || settings.model));
    publish(viewer);
    document.body.dataset.ready = '';
  } catch (error) {
    stage.fail(error);
  }
}

// The script may stand before the scene, so that it is read while the rest of the page arrives.
if (document.readyState === 'loading') document.addEventListener('DOMContentLoaded', () => void show());
else void show();
