// SPDX-License-Identifier: MIT
import { kFramesPerSecond } from './animation.ts';

/** Which frame of the animation is due while it plays. It begins again behind the last one. */
export class Player {
  playing = false;

  constructor(
    private readonly first: number,
    private readonly last: number,
    public frame: number,
  ) {}

  /** Moves on by milliseconds. */
  advance(ms: number): number {
    const length = this.last - this.first;
    if (!this.playing || !(length > 0)) return this.frame;
    const passed = this.frame - this.first + (ms * kFramesPerSecond) / 1000;
    return (this.frame = this.first + (((passed % length) + length) % length));
  }

  show(frame: number): void {
    this.frame = Math.min(Math.max(frame, this.first), this.last);
  }
}
