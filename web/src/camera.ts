// SPDX-License-Identifier: MIT
import type { SeenView } from './format.ts';
import type { Mat4 } from './matrix.ts';
import type { TextKey } from './texts.ts';
import { abs, add, clamp, cross, dot, kDegree, length, max, min, normalized, scaled, sub, type Vec3 } from './vector.ts';

const kPresetTanY = Math.tan(22.5 * kDegree);
/** Half the visible height, in radii. */
const kSmallestSeen = 0.0005;
const kLargestSeen = 40;
const kMaxBoxZoom = 20;
const kNearOfFar = 1 / 4000;
/** A step of this size makes what is seen larger or smaller by e. */
export const kStepsOfE = 200;

const kThird = Math.sqrt(1 / 3);
/** Six sides to look from: the name of the text, the way from the model to the eye, and what is up. */
export const kPresets: Record<string, readonly [TextKey, Vec3, Vec3?]> = {
  top_cam: ['top', [0, 0, 1], [0, 1, 0]],
  lft_cam: ['left', [-1, 0, 0]],
  rgt_cam: ['right', [1, 0, 0]],
  frt_cam: ['front', [0, -1, 0]],
  bck_cam: ['back', [0, 1, 0]],
  iso_cam: ['iso', [kThird, -kThird, kThird]],
};

/** A camera of the file at one moment. fovDeg: the horizontal angle of a picture of 4:3. */
export interface FileCamera {
  name: string;
  eye: Vec3;
  target: Vec3;
  rollDeg: number;
  fovDeg: number;
}

/** Two corners of a box in pixels, y down. */
export interface Box {
  x0: number;
  y0: number;
  x1: number;
  y1: number;
}

/** The camera of the view, with the rules of the desktop's. A preset looks at the middle of the model's sphere with an angle
 * of 45 degrees, from where the sphere just fits the narrower side of the view, whatever shape that gets. Others keep their
 * place, and show more above and below where the view is narrower than what they have to show. */
export interface Camera {
  name: string;
  /** The model's sphere. */
  modelCenter: Vec3;
  modelRadius: number;
  /** Of the view, in pixels. */
  viewWidth: number;
  viewHeight: number;
  target: Vec3;
  /** Unit vector from the target to the eye. */
  backward: Vec3;
  up: Vec3;
  /** A preset. */
  fits: boolean;
  zoomed: number;
  /** From the eye to the target at zoom 1, where nothing is fitted. */
  own: number;
  /** Half of what is to be seen at distance 1; x is 0 where only y counts. */
  tanX: number;
  tanY: number;
}

export function newCamera(center: Vec3, radius: number): Camera {
  const camera = { modelCenter: center, modelRadius: radius, viewWidth: 4, viewHeight: 3, own: radius } as Camera;
  setPreset(camera, 'iso_cam');
  return camera;
}

const aspectOf = (c: Camera): number => c.viewWidth / c.viewHeight;

function fitting(radius: number, aspect: number): number {
  const t = kPresetTanY * min(1, aspect);
  return (radius * Math.sqrt(1 + t * t)) / t;
}

export function setPreset(c: Camera, name: string): void {
  const [, back, up = [0, 0, 1]] = kPresets[name];
  Object.assign(c, { name, backward: back, up, target: c.modelCenter, fits: true, zoomed: 1, tanX: 0, tanY: kPresetTanY });
}

/** Looks through a camera of the file. */
export function setFileCamera(c: Camera, camera: FileCamera): void {
  Object.assign(c, { name: camera.name, fits: false, zoomed: 1, tanX: 0 });
  follow(c, camera);
}

/** Takes the pose of the file's camera in use after an animation has moved it, and keeps the zoom. */
export function follow(c: Camera, { name, eye, target, rollDeg, fovDeg }: FileCamera): void {
  if (name !== c.name || c.fits) return;
  const sight = sub(target, eye);
  c.own = length(sight) || c.modelRadius;
  c.target = add(eye, sight);
  c.backward = scaled(normalized(sight), -1);
  // As lib3ds has it: straight up or down, up is -x.
  const right = normalized(cross(sight, sight[0] || sight[1] ? [0, 0, 1] : [-1, 0, 0]));
  const roll = rollDeg * kDegree;
  c.up = sub(scaled(cross(c.backward, right), Math.cos(roll)), scaled(right, Math.sin(roll)));
  c.tanY = (Math.tan((clamp(fovDeg, 0.1, 175) * kDegree) / 2) * 3) / 4;
}

/** What the desktop showed. A preset goes on fitting. */
export function setSeen(c: Camera, { eye, target, up, fovYDeg, size, camera, preset }: SeenView): void {
  const aspect = size[0] / size[1];
  const sight = sub(eye, target);
  if (preset) setPreset(c, camera);
  else {
    const tanY = Math.tan((fovYDeg * kDegree) / 2);
    Object.assign(c, { name: camera, target, fits: false, own: length(sight), tanX: tanY * aspect, tanY });
  }
  c.zoomed = c.fits ? length(sight) / fitting(c.modelRadius, aspect) : 1;
  c.backward = normalized(sight);
  c.up = up;
}

export const distanceOf = (c: Camera): number => c.zoomed * (c.fits ? fitting(c.modelRadius, aspectOf(c)) : c.own);
export const eyeOf = (c: Camera): Vec3 => add(c.target, scaled(c.backward, distanceOf(c)));
/** The tangent of half the vertical field of view. */
export const tanOf = (c: Camera): number => max(c.tanY, c.tanX / aspectOf(c));

/** The camera's own axes: right, up, backwards. */
export function axesOf({ backward: back, up }: Pick<Camera, 'backward' | 'up'>): [Vec3, Vec3, Vec3] {
  let right = cross(up, back);
  if (length(right) < 1e-9) right = cross(abs(back[2]) < 0.9 ? [0, 0, 1] : [0, 1, 0], back);
  right = normalized(right);
  return [right, cross(back, right), back];
}

/** Away for steps above 0. */
export const zoomBy = (c: Camera, step: number): void => setDistance(c, distanceOf(c) * Math.exp(step / kStepsOfE));

/** The eye never passes the target, and what is seen stays between limits. */
export function setDistance(c: Camera, distance: number): void {
  const now = distanceOf(c);
  const most = c.modelRadius / tanOf(c);
  // A camera of the file may stand beyond the limits: it is not pulled back, only kept from going further.
  const nearest = min(now, max(kSmallestSeen * most, c.modelRadius / 1000));
  if (distance > 0) c.zoomed *= clamp(distance, nearest, max(now, kLargestSeen * most)) / now;
}

/** The way from the eye through a point of the view (pixels, y down), of length 1 along the line of sight. */
export function rayOf(c: Camera, x: number, y: number): Vec3 {
  const [right, up, back] = axesOf(c);
  const size = (2 * tanOf(c)) / c.viewHeight;
  return sub(add(scaled(right, (x - c.viewWidth / 2) * size), scaled(up, (c.viewHeight / 2 - y) * size)), back);
}

/** A side of a box, inside the view and not smaller than it may be. */
function side(a: number, b: number, most: number, wider: number): [number, number] {
  const [middle, half] = [(a + b) / 2, (abs(a - b) / 2) * wider];
  return [max(0, middle - half), min(most, middle + half)];
}

/** The part of the view inside the box fills the view: the eye stays, turns to the middle of the box, and sees less. False for
 * a box without area. */
export function zoomTo(c: Camera, { x0, y0, x1, y1 }: Box): boolean {
  const larger = min(c.viewWidth / abs(x1 - x0), c.viewHeight / abs(y1 - y0));
  const wider = max(1, larger / kMaxBoxZoom);
  const [l, r] = side(x0, x1, c.viewWidth, wider);
  const [t, b] = side(y0, y1, c.viewHeight, wider);
  if (!(r > l && b > t && isFinite(larger))) return false;
  const eye = eyeOf(c);
  const middle = rayOf(c, (l + r) / 2, (t + b) / 2);
  // The picture's own up vector: with the scene's, looking aside from steep above would also roll the picture.
  const turned = { backward: scaled(normalized(middle), -1), up: axesOf(c)[1] };
  const [right, up, back] = axesOf(turned);
  const corners = [rayOf(c, l, t), rayOf(c, r, t), rayOf(c, l, b), rayOf(c, r, b)];
  const seen = (axis: Vec3): number => max(...corners.map((v) => abs(dot(v, axis) / dot(v, back))));
  const own = distanceOf(c) * length(middle);
  // It is no camera of the file any longer, whose movements it would follow.
  Object.assign(c, turned, { name: '', fits: false, zoomed: 1, own, target: sub(eye, scaled(back, own)), tanX: seen(right), tanY: seen(up) });
  return true;
}

/** The planes between which is drawn, for the depths (along the line of sight) of the nearest and the farthest point. */
export function depthRange(c: Camera, nearest: number, farthest: number): [number, number] {
  const far = farthest > 0 ? farthest * 1.01 : c.modelRadius;
  // Something far off may not cut away what the camera was placed for.
  const framed = max(dot(sub(eyeOf(c), c.modelCenter), c.backward) - c.modelRadius, c.modelRadius / 1000);
  const near = max(min(nearest * 0.99, far), min(far * kNearOfFar, framed));
  return [near, max(far, near * 1.001)];
}

/** Of points whose origin is the eye, with the axes of the scene. */
export function projection(c: Camera, [n, f]: readonly [number, number]): Mat4 {
  const [r, u, b] = axesOf(c);
  const h = 1 / tanOf(c);
  const w = h / aspectOf(c);
  const z = -(f + n) / (f - n);
  return [...[0, 1, 2].flatMap((i) => [r[i] * w, u[i] * h, b[i] * z, -b[i]]), 0, 0, (-2 * f * n) / (f - n), 0];
}
