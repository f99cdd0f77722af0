// SPDX-License-Identifier: MIT
import { kStepsOfE, type Rect } from './camera.ts';
import type { Seen } from './seen.ts';
import { Trackball } from './trackball.ts';

/** A pointer as gestures take it: pixels of the view, y down. */
export interface Press {
  id: number;
  x: number;
  y: number;
  /** As browsers count them: 0 left, 1 middle, 2 right. */
  button: number;
  touch: boolean;
  ctrl: boolean;
  shift: boolean;
}

export const kWheelStep = 20;
const kKeyDeg = 10;
const kKeyStep = 20;
const kFineShare = 5;
/** Two presses so close in time and place are a double click. */
const kDoubleMs = 400;
const kDoublePx = 24;
/** A press that moves further is a drag. */
const kClickPx = 6;

/** What a key does with the model: degrees to the right and up, and steps of zoom. */
const kKeys: Record<string, readonly [number, number, number]> = {
  ArrowLeft: [-kKeyDeg, 0, 0],
  ArrowRight: [kKeyDeg, 0, 0],
  ArrowUp: [0, kKeyDeg, 0],
  ArrowDown: [0, -kKeyDeg, 0],
  '+': [0, 0, -kKeyStep],
  '=': [0, 0, -kKeyStep],
  '-': [0, 0, kKeyStep],
  _: [0, 0, kKeyStep],
};

/** What gestures tell. */
export interface GestureListener {
  /** Something moved. */
  moved(): void;
  /** The box that is being drawn to zoom into; undefined when it is gone. */
  boxed(box: Rect | undefined): void;
  /** What is at the place is to come to the middle. */
  centered(x: number, y: number): void;
}

/** Turns presses, moves, wheel turns and keys into turning, panning and zooming, by the rules of the desktop. Needs no
 * window. */
export class Gestures {
  private readonly pointers = new Map<number, { x: number; y: number }>();
  private ball: Trackball | undefined;
  private box: Rect | undefined;
  private panning = false;
  private press = { x: 0, y: 0, time: -Infinity, isClick: false };

  constructor(
    private readonly seen: Seen,
    private readonly listener: GestureListener,
  ) {}

  get isActive(): boolean {
    return this.pointers.size > 0;
  }

  down(p: Press, time: number): void {
    this.pointers.set(p.id, { x: p.x, y: p.y });
    this.endDrag();
    if (this.pointers.size > 1) {
      this.press.isClick = false;
      return;
    }
    if (p.button === 1 || (p.button === 2 && p.shift)) {
      this.panning = true;
    } else if (p.button === 0 && p.ctrl) {
      this.box = { left: p.x, top: p.y, right: p.x, bottom: p.y };
    } else if (p.button === 0) {
      this.pressed(p, time);
      this.ball = new Trackball(this.seen, p.x, p.y);
    }
  }

  private pressed(p: Press, time: number): void {
    const last = this.press;
    const again = last.isClick && time - last.time < kDoubleMs && Math.hypot(p.x - last.x, p.y - last.y) < kDoublePx;
    this.press = { x: p.x, y: p.y, time, isClick: !again };
    if (again) this.listener.centered(p.x, p.y);
  }

  move(id: number, x: number, y: number): void {
    const last = this.pointers.get(id);
    if (!last || (last.x === x && last.y === y)) return;
    const others = [...this.pointers].filter(([other]) => other !== id);
    if (others.length === 1) this.moveTwo(last, { x, y }, others[0][1]);
    else if (!others.length) this.moveOne(last, x, y);
    this.pointers.set(id, { x, y });
  }

  private moveOne(last: { x: number; y: number }, x: number, y: number): void {
    if (Math.hypot(x - this.press.x, y - this.press.y) > kClickPx) this.press.isClick = false;
    if (this.box) {
      this.box = { ...this.box, right: x, bottom: y };
      this.listener.boxed(this.box);
      return;
    }
    if (this.panning) this.seen.pan(x - last.x, y - last.y);
    else if (this.ball) this.ball.drag(x, y);
    else return;
    this.listener.moved();
  }

  /** Two fingers: their middle moves the model, their distance zooms about it. */
  private moveTwo(last: { x: number; y: number }, now: { x: number; y: number }, other: { x: number; y: number }): void {
    const before = Math.hypot(last.x - other.x, last.y - other.y);
    const after = Math.hypot(now.x - other.x, now.y - other.y);
    this.seen.pan((now.x - last.x) / 2, (now.y - last.y) / 2);
    if (before > 0 && after > 0) this.seen.zoomAt(-kStepsOfE * Math.log(after / before), (now.x + other.x) / 2, (now.y + other.y) / 2);
    this.listener.moved();
  }

  up(id: number): void {
    if (!this.pointers.delete(id)) return;
    const { box } = this;
    this.endDrag();
    if (box && this.seen.zoomTo(box)) this.listener.moved();
    // The finger that stays goes on turning.
    const [rest] = this.pointers.values();
    if (rest && this.pointers.size === 1) this.ball = new Trackball(this.seen, rest.x, rest.y);
  }

  /** The system has taken the pointer away: nothing is zoomed to. */
  cancel(id: number): void {
    this.pointers.delete(id);
    this.endDrag();
  }

  private endDrag(): void {
    this.ball = undefined;
    this.panning = false;
    if (this.box) this.listener.boxed(undefined);
    this.box = undefined;
  }

  /** notches: of a wheel, away from the scene above 0. at: the place to zoom to, else the middle. */
  wheel(notches: number, at?: { x: number; y: number }): void {
    if (this.ball || !isFinite(notches)) return;
    if (at) this.seen.zoomAt(notches * kWheelStep, at.x, at.y);
    else this.seen.camera.zoom(notches * kWheelStep);
    this.listener.moved();
  }

  /** True if the key does something. */
  key(key: string, fine: boolean): boolean {
    const found = kKeys[key];
    if (!found) return false;
    const share = fine ? 1 / kFineShare : 1;
    const [right, up, zoom] = found;
    if (zoom) this.seen.camera.zoom(zoom * share);
    else this.seen.turnBy(right * share, up * share);
    this.listener.moved();
    return true;
  }
}
