// SPDX-License-Identifier: MIT
import { axesOf, eyeOf, rayOf } from './camera.ts';
import type { Place } from './gestures.ts';
import { combined, rotationAbout, rotationBetween } from './rotation.ts';
import { ballOf, type Seen } from './seen.ts';
import { add, dot, max, normalized, scaled, sub, type Vec3 } from './vector.ts';

/** Where the ray through a point of the view meets the ball, or passes it. */
interface Grab {
  /** Unit vector from the centre to the point on the ball, where it is met. */
  at: Vec3;
  /** Of the ray about the line of sight. */
  azimuth: number;
  missed: boolean;
  /** Unit vector from the centre to the eye. */
  sight: Vec3;
}

function grab(seen: Seen, { x, y }: Place): Grab {
  const { camera } = seen;
  const eye = scaled(sub(eyeOf(camera), ballOf(seen)), 1 / camera.modelRadius);
  const sight = normalized(eye);
  const ray = normalized(rayOf(camera, x, y));
  const along = dot(ray, eye);
  const discriminant = along * along - dot(eye, eye) + 1;
  const root = Math.sqrt(max(0, discriminant));
  // From inside the ball the nearer point is behind the eye, so the farther one is taken.
  const distance = (along + root <= 0 ? -root : root) - along;
  const missed = discriminant <= 0 || distance < 0;
  const [right, up] = axesOf({ backward: sight, up: camera.up });
  return { at: normalized(add(eye, scaled(ray, distance))), missed, sight, azimuth: Math.atan2(dot(ray, up), dot(ray, right)) };
}

/** Begins a drag and returns what follows the pointer. A drag that begins on the ball, which is as large as the model, keeps
 * the point that was grabbed under the pointer. One that begins beside it spins the model about the line of sight. Where the
 * pointer crosses the outline a new drag begins. */
export function trackball(seen: Seen, from: Place): (to: Place) => void {
  let begin = grab(seen, from);
  let before = seen.turned;
  return (to) => {
    const now = grab(seen, to);
    if (begin.missed) seen.turned = combined(rotationAbout(now.sight, now.azimuth - begin.azimuth), before);
    else if (!now.missed) seen.turned = combined(rotationBetween(begin.at, now.at), before);
    if (now.missed === begin.missed) return;
    begin = now;
    before = seen.turned;
  };
}
