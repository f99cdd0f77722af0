// SPDX-License-Identifier: MIT
import type { Gestures, Place } from './gestures.ts';

/** So many pixels, lines or pages of a wheel's turn are one notch. */
const kNotch = [100, 3, 1];
/** A pinch of a touchpad comes as a wheel that turns with Ctrl: so many of its pixels are one notch. */
const kPinchNotch = 10;

/** Hands what happens on the canvas to the gestures. Places are in pixels of the page. keys: what else a key does. */
export function listen(canvas: HTMLCanvasElement, gestures: Gestures, keys: Record<string, (() => void) | undefined>): void {
  const place = (event: MouseEvent): Place => ({ x: event.offsetX, y: event.offsetY });
  canvas.onpointerdown = (event) => {
    canvas.setPointerCapture(event.pointerId);
    gestures.down({ ...place(event), id: event.pointerId, button: event.button, ctrl: event.ctrlKey, shift: event.shiftKey }, event.timeStamp);
  };
  canvas.onpointermove = (event) => gestures.move(event.pointerId, place(event));
  canvas.onpointerup = (event) => gestures.up(event.pointerId);
  canvas.onpointercancel = canvas.onlostpointercapture = (event) => gestures.up(event.pointerId, true);
  // The middle button would scroll the page, and the right one with Shift open a menu after panning.
  canvas.onmousedown = (event) => {
    if (event.button === 1) event.preventDefault();
  };
  canvas.oncontextmenu = (event) => {
    if (event.shiftKey || event.ctrlKey) event.preventDefault();
  };
  canvas.onwheel = (event) => {
    event.preventDefault();
    // Shift turns a wheel sideways.
    const turned = event.deltaY || event.deltaX;
    const notch = event.ctrlKey ? kPinchNotch : kNotch[event.deltaMode];
    gestures.wheel(turned / notch, event.ctrlKey || event.altKey ? place(event) : undefined);
  };
  canvas.onkeydown = (event) => {
    if (event.ctrlKey || event.altKey || event.metaKey) return;
    const own = keys[event.key];
    own?.();
    if (own || gestures.key(event.key, event.shiftKey)) event.preventDefault();
  };
}
