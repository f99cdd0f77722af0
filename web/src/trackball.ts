// SPDX-License-Identifier: MIT
import { axesOf, eyeOf, rayOf } from './camera.ts';
import { combined, rotationAbout, rotationBetween } from './rotation.ts';
import { ballOf, type Seen } from './seen.ts';
import { add, dot, length, normalized, scaled, sub, type Vec3 } from './vector.ts';

/** Where the ray through a point of the view meets the ball, or passes it. */
interface Grab {
  /** Unit vector from the centre to the point on the ball or on its outline. */
  at: Vec3;
  /** About the line of sight; NaN where the ray runs along it. */
  azimuth: number;
  missed: boolean;
  /** Unit vector from the centre to the eye. */
  sight: Vec3;
}

function grab(seen: Seen, x: number, y: number): Grab {
  const { camera } = seen;
  const eye = scaled(sub(eyeOf(camera), ballOf(seen)), 1 / camera.radius);
  const sight = normalized(eye);
  const ray = normalized(rayOf(camera, x, y));
  const along = dot(ray, eye);
  const discriminant = along * along - dot(eye, eye) + 1;
  const root = Math.sqrt(Math.max(0, discriminant));
  // From inside the ball the nearer point is behind the eye, so the farther one is taken.
  const distance = -along - root >= 0 ? -along - root : -along + root;
  const missed = discriminant <= 0 || distance < 0;
  const flat = (v: Vec3): Vec3 => sub(v, scaled(sight, dot(v, sight)));
  // The outline of the ball (radius 1 here) is a circle in the plane 1 / |eye| before the centre.
  const plane = 1 / length(eye);
  const outline = add(scaled(sight, plane), scaled(normalized(flat(ray)), Math.sqrt(Math.max(0, 1 - plane * plane))));
  const at = normalized(missed ? outline : add(eye, scaled(ray, distance)));
  const [right, up] = axesOf({ back: sight, up: camera.up });
  const aside = flat(at);
  return { at, missed, sight, azimuth: length(aside) > 1e-6 ? Math.atan2(dot(aside, up), dot(aside, right)) : NaN };
}

/** Begins a drag and returns what follows the pointer. A drag that begins on the ball, which is as large as the model, keeps
 * the point that was grabbed under the pointer. One that begins beside it spins the model about the line of sight. Where the
 * pointer crosses the outline a new drag begins. */
export function trackball(seen: Seen, x: number, y: number): (x: number, y: number) => void {
  let begin = grab(seen, x, y);
  let before = seen.turn;
  return (toX, toY) => {
    const now = grab(seen, toX, toY);
    const spin = now.azimuth - begin.azimuth;
    if (!begin.missed) seen.turn = combined(rotationBetween(begin.at, now.at), before);
    else if (isFinite(spin)) seen.turn = combined(rotationAbout(now.sight, spin), before);
    if (now.missed === begin.missed) return;
    begin = now;
    before = seen.turn;
  };
}
