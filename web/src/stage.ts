// SPDX-License-Identifier: MIT
import type { Rect } from './camera.ts';
import type { Texts } from './texts.ts';
import { Trouble } from './trouble.ts';

/** The elements of the page. */
export class Stage {
  readonly canvas: HTMLCanvasElement;
  readonly toolbar: HTMLElement;
  private readonly status: HTMLElement;
  private box: HTMLElement | undefined;

  constructor(private readonly texts: Texts) {
    this.canvas = element('canvas') as HTMLCanvasElement;
    this.toolbar = element('[role=toolbar]');
    this.status = element('[role=status]');
  }

  /** What a screen reader tells; shown while it is not empty. */
  say(text: string): void {
    this.status.textContent = text;
  }

  showBox(rect: Rect | undefined): void {
    if (!rect) {
      this.box?.remove();
      this.box = undefined;
      return;
    }
    if (!this.box) {
      this.box = document.createElement('div');
      this.box.className = 'box';
      this.canvas.after(this.box);
    }
    const { style } = this.box;
    style.left = Math.min(rect.left, rect.right) + 'px';
    style.top = Math.min(rect.top, rect.bottom) + 'px';
    style.width = Math.abs(rect.right - rect.left) + 'px';
    style.height = Math.abs(rect.bottom - rect.top) + 'px';
  }

  /** There will be no picture. */
  fail(error: unknown): void {
    const trouble = error instanceof Trouble ? error : new Trouble('broken', error instanceof Error ? error.message : '');
    if (trouble !== error) console.error(error);
    const text = this.texts.of(trouble.key, trouble.detail);
    const alert = document.createElement('p');
    alert.setAttribute('role', 'alert');
    this.canvas.after(alert);
    // Set when it is in the page, or it would not be read aloud.
    alert.textContent = text;
    this.say('');
    document.body.dataset.error = text;
  }
}

/** The first element that fits, which the page's skeleton has; made for pages that lack it. */
function element(selector: string): HTMLElement {
  const found = document.querySelector<HTMLElement>(selector);
  if (found) return found;
  const [, role] = /\[role=(\w+)\]/.exec(selector) ?? [];
  const made = document.createElement(role ? 'div' : selector);
  if (role) made.setAttribute('role', role);
  document.body.append(made);
  return made;
}
