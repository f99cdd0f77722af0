// SPDX-License-Identifier: MIT
import type { Gestures } from './gestures.ts';

/** So many pixels or lines of a wheel's turn are one notch. */
const kNotch = [100, 3, 1];
/** A pinch of a touchpad comes as a wheel that turns with Ctrl, a hundredth of e for each pixel. */
const kPinchNotch = 10;

/** Keys that the page itself has a use for. */
export interface PageKeys {
  reset(): void;
  togglePlaying(): void;
}

/** Hands what happens on the canvas to the gestures. Places are in pixels of the page. */
export function listen(canvas: HTMLCanvasElement, gestures: Gestures, keys: PageKeys): void {
  const place = (event: MouseEvent): { x: number; y: number } => {
    const box = canvas.getBoundingClientRect();
    return { x: event.clientX - box.left, y: event.clientY - box.top };
  };
  canvas.addEventListener('pointerdown', (event) => {
    canvas.focus({ preventScroll: true });
    if (event.button === 1) event.preventDefault();
    canvas.setPointerCapture(event.pointerId);
    const { pointerId: id, button, ctrlKey: ctrl, shiftKey: shift } = event;
    gestures.down({ id, ...place(event), button, touch: event.pointerType === 'touch', ctrl, shift }, event.timeStamp);
  });
  canvas.addEventListener('pointermove', (event) => {
    const { x, y } = place(event);
    gestures.move(event.pointerId, x, y);
  });
  canvas.addEventListener('pointerup', (event) => gestures.up(event.pointerId));
  canvas.addEventListener('pointercancel', (event) => gestures.cancel(event.pointerId));
  canvas.addEventListener('lostpointercapture', (event) => gestures.cancel(event.pointerId));
  // The middle button would scroll the page, and the right one with Shift open a menu after panning.
  canvas.addEventListener('mousedown', (event) => event.button === 1 && event.preventDefault());
  canvas.addEventListener('contextmenu', (event) => (event.shiftKey || event.ctrlKey) && event.preventDefault());
  canvas.addEventListener(
    'wheel',
    (event) => {
      event.preventDefault();
      const turned = event.deltaY || event.deltaX;
      if (event.ctrlKey) gestures.wheel(turned / kPinchNotch, place(event));
      else gestures.wheel(turned / kNotch[event.deltaMode], event.altKey ? place(event) : undefined);
    },
    { passive: false },
  );
  canvas.addEventListener('keydown', (event) => {
    if (event.ctrlKey || event.altKey || event.metaKey) return;
    if (event.key === 'Home') keys.reset();
    else if (event.key === ' ') keys.togglePlaying();
    else if (!gestures.key(event.key, event.shiftKey)) return;
    event.preventDefault();
  });
}
