// SPDX-License-Identifier: MIT

/** A step of the clock is never longer: a tab that comes back goes on where it was. */
const kLongestMs = 100;

/** Draws when something has changed, and at no other time. */
export class FrameLoop {
  /** Pictures that were drawn. */
  count = 0;
  private asked = 0;
  private last = 0;

  /** step: moves on what moves by itself by so many milliseconds, and says whether it still does. */
  constructor(
    private readonly step: (ms: number) => boolean,
    private readonly draw: () => void,
  ) {}

  request(): void {
    if (!this.asked) this.asked = requestAnimationFrame((now) => this.run(now));
  }

  private run(now: number): void {
    this.asked = 0;
    const moves = this.step(Math.min(this.last ? now - this.last : 0, kLongestMs));
    this.last = moves ? now : 0;
    this.count++;
    this.draw();
    if (moves) this.request();
  }
}
