// SPDX-License-Identifier: MIT
import { combined, rotationAbout, rotationBetween, type Rotation } from './rotation.ts';
import type { Seen } from './seen.ts';
import { add, cross, dot, length, normalized, scaled, sub, type Vec3 } from './vector.ts';

const kNoDirection = 1e-4;

/** Where the ray through a point of the view meets the ball, or passes it. */
interface Grab {
  /** Unit vector from the centre to the point on the ball or on its outline. */
  at: Vec3;
  /** About the line of sight; undefined where the ray runs along it. */
  azimuth: number | undefined;
  missed: boolean;
}

/** Turns drags into rotations of the model. A drag that begins on the ball, which is as large as the model, keeps the point
 * that was grabbed under the pointer. One that begins beside it spins the model about the line of sight. Where the pointer
 * crosses the outline a new drag begins. */
export class Trackball {
  private begin: Grab | undefined;
  private before: Rotation;
  private spin = 0;
  private azimuth = 0;

  constructor(
    private readonly seen: Seen,
    x: number,
    y: number,
  ) {
    this.before = seen.turn;
    this.start(x, y);
  }

  private start(x: number, y: number): void {
    this.before = this.seen.turn;
    this.spin = 0;
    this.begin = this.grab(x, y);
    this.azimuth = this.begin.azimuth ?? 0;
  }

  drag(x: number, y: number): void {
    const grab = this.grab(x, y);
    const begin = this.begin!;
    if (begin.missed) this.spinTo(grab);
    else this.seen.turn = combined(rotationBetween(begin.at, grab.at), this.before);
    if (grab.missed !== begin.missed) this.start(x, y);
  }

  private spinTo(grab: Grab): void {
    if (grab.azimuth === undefined) return;
    const turned = grab.azimuth - this.azimuth;
    // The short way round.
    this.spin += turned - 2 * Math.PI * Math.round(turned / (2 * Math.PI));
    this.azimuth = grab.azimuth;
    this.seen.turn = combined(rotationAbout(this.sight, this.spin), this.before);
  }

  /** From the ball's centre to the eye, in radii. */
  private get toEye(): Vec3 {
    const { camera, ball } = this.seen;
    return scaled(sub(camera.eye, ball), 1 / camera.radius);
  }
  private get sight(): Vec3 {
    return this.seen.camera.parallel ? this.seen.camera.axes.back : normalized(this.toEye, kNoDirection);
  }

  private grab(x: number, y: number): Grab {
    const { camera, ball } = this.seen;
    const { origin, way } = camera.ray(x, y);
    const ray = normalized(way);
    const from = scaled(sub(origin, ball), 1 / camera.radius);
    const along = dot(ray, from);
    const discriminant = along * along - (dot(from, from) - 1);
    const root = Math.sqrt(Math.max(0, discriminant));
    // From inside the ball the nearer point is behind the eye, so the farther one is taken.
    const distance = -along - root >= 0 ? -along - root : -along + root;
    const missed = !(discriminant > 0) || distance < 0;
    const at = missed ? this.outline(ray, from) : normalized(add(from, scaled(ray, distance)), kNoDirection);
    const { right, up } = this.flatAxes();
    const flat = sub(at, scaled(this.sight, dot(at, this.sight)));
    return { at, missed, azimuth: length(flat) > 1e-6 ? Math.atan2(dot(flat, up), dot(flat, right)) : undefined };
  }

  private flatAxes(): { right: Vec3; up: Vec3 } {
    const sight = this.sight;
    const right = normalized(cross(Math.abs(sight[2]) > 0.9 ? [0, 1, 0] : [0, 0, 1], sight), kNoDirection);
    return { right, up: cross(sight, right) };
  }

  /** The outline of the ball (radius 1 here) is a circle in the plane 1 / |eye| before the centre. */
  private outline(ray: Vec3, from: Vec3): Vec3 {
    const sight = this.sight;
    const parallel = this.seen.camera.parallel;
    const off = parallel ? from : ray;
    const sideways = normalized(sub(off, scaled(sight, dot(off, sight))), kNoDirection);
    const plane = parallel ? 0 : 1 / length(this.toEye);
    const radius = Math.sqrt(Math.max(0, 1 - plane * plane));
    return normalized(add(scaled(sight, plane), scaled(sideways, radius)), kNoDirection);
  }
}
