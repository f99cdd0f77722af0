// SPDX-License-Identifier: MIT
import { kStepsOfE, zoomBy, type Box } from './camera.ts';
import { pan, turnBy, zoomAt, zoomToBox, type Seen } from './seen.ts';
import { trackball } from './trackball.ts';

/** A place in the view: pixels, y down. */
export interface Place {
  x: number;
  y: number;
}

/** A pointer that goes down. button: 0 left, 1 middle, 2 right. */
export interface Press extends Place {
  id: number;
  button: number;
  ctrl: boolean;
  shift: boolean;
}

/** Of a turn of the wheel towards the user. */
const kWheelStep = 20;
/** Of a key: how far it turns, how far it zooms, and the part of it that a fine step is. */
const kKeyDeg = 10;
const kKeyStep = 20;
const kFineShare = 5;
/** Two presses so close in time and place are a double click. */
const kDoubleMs = 400;
const kDoublePx = 24;
/** A press that moves further is a drag. */
const kClickPx = 6;

/** What a key does with the model: degrees to the right and up, and steps of zoom. */
const kKeys: Record<string, readonly [number, number, number?]> = {
  ArrowLeft: [-kKeyDeg, 0],
  ArrowRight: [kKeyDeg, 0],
  ArrowUp: [0, kKeyDeg],
  ArrowDown: [0, -kKeyDeg],
  '+': [0, 0, -kKeyStep],
  '=': [0, 0, -kKeyStep],
  '-': [0, 0, kKeyStep],
};

/** What gestures tell. */
export interface GestureListener {
  /** Something moved. */
  moved(): void;
  /** The box that is being drawn to zoom into; undefined when it is gone. */
  boxed(box?: Box): void;
  /** What is at the place is to come to the middle. */
  centered(place: Place): void;
}

const between = (a: Place, b: Place): number => Math.hypot(a.x - b.x, a.y - b.y);

export interface Gestures {
  /** time: milliseconds. */
  down(press: Press, time: number): void;
  move(id: number, now: Place): void;
  /** cancelled: the system has taken the pointer away, and nothing is zoomed to. */
  up(id: number, cancelled?: boolean): void;
  /** notches: of a wheel, towards the user above 0. at: the place to zoom to, else the middle. */
  wheel(notches: number, at?: Place): void;
  /** False if the key does nothing. */
  key(key: string, fine: boolean): boolean;
}

/** Turns presses, moves, wheel turns and keys into turning, panning and zooming, by the rules of the desktop. Needs no
 * window. */
export function makeGestures(seen: Seen, listener: GestureListener): Gestures {
  const pointers = new Map<number, Place>();
  /** What follows a single pointer. */
  let drag: ((now: Place, last: Place) => void) | undefined;
  let box: Box | undefined;
  let press: Place = { x: 0, y: 0 };
  /** When the last press was a click. */
  let clicked = -Infinity;

  const end = (): void => {
    if (box) listener.boxed();
    drag = box = undefined;
  };
  const boxing = ({ x, y }: Place): void => {
    box = { x0: press.x, y0: press.y, x1: x, y1: y };
    listener.boxed(box);
  };
  /** Two fingers: their middle moves the model, their distance zooms about it. */
  const pinch = (now: Place, last: Place, other: Place): void => {
    pan(seen, (now.x - last.x) / 2, (now.y - last.y) / 2);
    const step = kStepsOfE * Math.log(between(last, other) / between(now, other));
    if (isFinite(step)) zoomAt(seen, step, (now.x + other.x) / 2, (now.y + other.y) / 2);
  };
  const single = (p: Press, time: number): void => {
    const again = time - clicked < kDoubleMs && between(p, press) < kDoublePx;
    press = p;
    clicked = again || p.button || p.ctrl ? -Infinity : time;
    if (p.button === 1 || (p.button === 2 && p.shift)) drag = (now, last) => pan(seen, now.x - last.x, now.y - last.y);
    else if (!p.button && p.ctrl) drag = boxing;
    else if (!p.button) {
      if (again) listener.centered(p);
      drag = trackball(seen, p);
    }
  };

  return {
    down(p, time) {
      pointers.set(p.id, p);
      end();
      if (pointers.size < 2) single(p, time);
      else clicked = -Infinity;
    },
    move(id, now) {
      const last = pointers.get(id);
      if (!last || !between(now, last)) return;
      if (between(now, press) > kClickPx) clicked = -Infinity;
      const [other] = [...pointers].filter(([key]) => key !== id);
      if (pointers.size === 2) pinch(now, last, other[1]);
      else drag?.(now, last);
      pointers.set(id, now);
      if (!box) listener.moved();
    },
    up(id, cancelled) {
      if (!pointers.delete(id)) return;
      const chosen = box;
      end();
      if (chosen && !cancelled && zoomToBox(seen, chosen)) listener.moved();
      // The finger that stays goes on turning.
      const [rest] = pointers.values();
      if (rest) drag = trackball(seen, rest);
    },
    wheel(notches, at) {
      if (pointers.size || !isFinite(notches)) return;
      if (at) zoomAt(seen, notches * kWheelStep, at.x, at.y);
      else zoomBy(seen.camera, notches * kWheelStep);
      listener.moved();
    },
    key(key, fine) {
      const found = kKeys[key];
      if (!found) return false;
      const share = fine ? 1 / kFineShare : 1;
      const [right, up, zoom = 0] = found;
      zoomBy(seen.camera, zoom * share);
      turnBy(seen, right * share, up * share);
      listener.moved();
      return true;
    },
  };
}
