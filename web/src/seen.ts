// SPDX-License-Identifier: MIT
import { axesOf, distanceOf, eyeOf, rayOf, setDistance, tanOf, zoomBy, zoomTo, type Box, type Camera } from './camera.ts';
import { direction, kIdentity, movedTo, placed, point, product, type Mat4 } from './matrix.ts';
import { combined, inverse, kNoRotation, rotationAbout, type Rotation } from './rotation.ts';
import { add, dot, kDegree, scaled, sub, type Vec3 } from './vector.ts';

/** What is seen of the scene: the camera, and how the model is turned and moved. */
export interface Seen {
  camera: Camera;
  /** The model as the page was written with it. */
  base: Mat4;
  /** After `base`: the model turns about the pivot, and then is shifted. */
  pivot: Vec3;
  turned: Rotation;
  shift: Vec3;
}

/** Puts the model where it is without turning and shifting. */
export function place(seen: Seen, base: Mat4 = kIdentity): void {
  Object.assign(seen, { base, turned: kNoRotation, shift: [0, 0, 0], pivot: point(base, seen.camera.target) });
}

/** Where the middle of the trackball is seen. */
export const ballOf = (seen: Seen): Vec3 => add(seen.pivot, seen.shift);

/** From the scene to where it is seen. */
export function modelOf(seen: Seen): Mat4 {
  const turn = placed(seen.turned);
  return product(movedTo(turn, sub(ballOf(seen), direction(turn, seen.pivot))), seen.base);
}

/** The middle of the model follows the pointer, by pixels to the right and down. The look-at point stands in for a middle
 * that is close to the eye. */
export function pan(seen: Seen, right: number, down: number): void {
  const { camera } = seen;
  const [x, y, back] = axesOf(camera);
  const depth = dot(sub(eyeOf(camera), point(modelOf(seen), camera.modelCenter)), back);
  const distance = distanceOf(camera);
  const size = (2 * tanOf(camera) * (depth > 0.05 * distance ? depth : distance)) / camera.viewHeight;
  seen.shift = add(seen.shift, sub(scaled(x, right * size), scaled(y, down * size)));
}

/** Zooms, with what is seen at (x, y) staying there: as if the eye went along the ray through it. */
export function zoomAt(seen: Seen, step: number, x: number, y: number): void {
  const { camera } = seen;
  const before = distanceOf(camera);
  zoomBy(camera, step);
  seen.shift = sub(seen.shift, scaled(add(rayOf(camera, x, y), camera.backward), before - distanceOf(camera)));
}

/** A point, given as it is seen, becomes what the model turns about. */
function turnAbout(seen: Seen, at: Vec3): void {
  seen.pivot = add(seen.pivot, direction(placed(inverse(seen.turned)), sub(at, ballOf(seen))));
  seen.shift = sub(at, seen.pivot);
}

/** False for a box without area. */
export function zoomToBox(seen: Seen, box: Box): boolean {
  const done = zoomTo(seen.camera, box);
  if (done) turnAbout(seen, seen.camera.target);
  return done;
}

/** Brings what is seen at (x, y), so far before the eye, to the middle of the view. Nothing is seen larger or smaller, and
 * the model then turns about it. */
export function centerOn(seen: Seen, x: number, y: number, depth: number): void {
  const { camera } = seen;
  turnAbout(seen, add(eyeOf(camera), scaled(rayOf(camera, x, y), depth)));
  setDistance(camera, depth);
  seen.shift = sub(camera.target, seen.pivot);
}

/** By degrees to the right and up, as keys turn it. */
export function turnBy(seen: Seen, rightDeg: number, upDeg: number): void {
  const [right, up] = axesOf(seen.camera);
  seen.turned = combined(combined(rotationAbout(right, -upDeg * kDegree), rotationAbout(up, rightDeg * kDegree)), seen.turned);
}
