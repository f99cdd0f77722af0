// SPDX-License-Identifier: MIT
import type { Mat4 } from './matrix.ts';
import type { SeenView } from './settings.ts';
import { add, clamp, cross, dot, kDegree, length, normalized, scaled, sub, type Vec3 } from './vector.ts';

const kPresetTanY = Math.tan(22.5 * kDegree);
const kMinTanY = 0.0005;
/** Half the visible height, in radii. */
const kSmallestSeen = 0.0005;
const kLargestSeen = 40;
/** In radii. */
const kNearestEye = 0.001;
const kMaxBoxZoom = 20;
const kNearOfFar = 1 / 4000;
/** A step of this size makes what is seen larger or smaller by e. */
export const kStepsOfE = 200;

const kThird = Math.sqrt(1 / 3);

/** Six sides to look from: the way from the model to the eye, and what is up. */
export const kPresets: Record<string, { key: 'top' | 'left' | 'right' | 'front' | 'back' | 'iso'; back: Vec3; up: Vec3 }> = {
  top_cam: { key: 'top', back: [0, 0, 1], up: [0, 1, 0] },
  lft_cam: { key: 'left', back: [-1, 0, 0], up: [0, 0, 1] },
  rgt_cam: { key: 'right', back: [1, 0, 0], up: [0, 0, 1] },
  frt_cam: { key: 'front', back: [0, -1, 0], up: [0, 0, 1] },
  bck_cam: { key: 'back', back: [0, 1, 0], up: [0, 0, 1] },
  iso_cam: { key: 'iso', back: [kThird, -kThird, kThird], up: [0, 0, 1] },
};

/** A camera of the file at one moment. fovDeg: the horizontal angle of a picture of 4:3. */
export interface FileCamera {
  name: string;
  eye: Vec3;
  target: Vec3;
  rollDeg: number;
  fovDeg: number;
}

export interface Rect {
  left: number;
  top: number;
  right: number;
  bottom: number;
}

/** The camera's own axes. */
interface Axes {
  right: Vec3;
  up: Vec3;
  back: Vec3;
}

function axesOf(back: Vec3, up: Vec3): Axes {
  let right = normalized(cross(up, back), 1e-9);
  if (length(right) < 0.5) right = normalized(cross(Math.abs(back[2]) < 0.9 ? [0, 0, 1] : [0, 1, 0], back));
  return { right, up: cross(back, right), back };
}

/** The camera of the view, with the rules of the desktop's. A preset looks at the middle of the model's sphere with an angle
 * of 45 degrees, from where the sphere just fits the narrower side of the view, whatever shape that gets. Others keep their
 * place, and show more above and below where the view is narrower than what they have to show. */
export class Camera {
  name = 'iso_cam';
  target: Vec3 = [0, 0, 0];
  back: Vec3 = [0, 0, 1];
  up: Vec3 = [0, 1, 0];
  parallel = false;
  private fits = true;
  private zoomed = 1;
  /** From the eye to the target at zoom 1, where nothing is fitted. */
  private own = 1;
  /** Half of what is to be seen at distance 1 (parallel: at zoom 1), and where its middle lies. */
  private tanX = 0;
  private tanY = kPresetTanY;
  private middle: readonly [number, number] = [0, 0];
  private width = 4;
  private height = 3;

  constructor(
    readonly center: Vec3,
    readonly radius: number,
  ) {
    this.setPreset('iso_cam');
  }

  setSize(width: number, height: number): void {
    this.width = Math.max(1, width);
    this.height = Math.max(1, height);
  }
  get viewWidth(): number {
    return this.width;
  }
  get viewHeight(): number {
    return this.height;
  }
  private get aspect(): number {
    return this.width / this.height;
  }

  setPreset(name: string): void {
    const preset = kPresets[name];
    if (!preset) return;
    this.reset(name);
    this.fits = true;
    this.target = this.center;
    this.back = preset.back;
    this.up = preset.up;
    this.tanY = kPresetTanY;
  }

  private reset(name: string): void {
    this.name = name;
    this.parallel = this.fits = false;
    this.zoomed = 1;
    this.tanX = 0;
    this.middle = [0, 0];
  }

  setFileCamera(camera: FileCamera): void {
    this.reset(camera.name);
    this.follow(camera);
  }

  /** Takes the pose of the file's camera in use after an animation has moved it, and keeps the zoom. */
  follow(camera: FileCamera): void {
    if (camera.name !== this.name || this.fits) return;
    const sight = sub(camera.target, camera.eye);
    const distance = length(sight);
    const forward: Vec3 = distance > 1e-12 ? normalized(sight) : [0, 1, 0];
    this.back = scaled(forward, -1);
    this.own = distance > 1e-12 ? distance : this.radius;
    this.target = add(camera.eye, scaled(forward, this.own));
    const pole: Vec3 = forward[0] !== 0 || forward[1] !== 0 ? [0, 0, 1] : [-1, 0, 0];
    const right = normalized(cross(forward, pole));
    const up = normalized(cross(right, forward));
    const roll = camera.rollDeg * kDegree;
    this.up = normalized(sub(scaled(up, Math.cos(roll)), scaled(right, Math.sin(roll))));
    this.tanY = (Math.tan((clamp(camera.fovDeg, 0.1, 175) * kDegree) / 2) * 3) / 4;
  }

  /** What the desktop showed. A preset goes on fitting. */
  setSeen(view: SeenView): void {
    const aspect = view.size[0] / view.size[1] || 1;
    const sight = sub(view.eye, view.target);
    const distance = length(sight);
    if (view.preset && kPresets[view.camera]) {
      this.setPreset(view.camera);
      this.zoomed = distance / this.fitting(aspect);
    } else {
      this.reset(view.camera);
      this.own = distance || this.radius;
      this.target = view.target;
      this.parallel = view.kind === 'parallel';
      const tanY = this.parallel ? view.height / 2 || this.radius : Math.tan((clamp(view.fovYDeg, 0.1, 175) * kDegree) / 2);
      const [left, top, right, bottom] = view.window;
      this.tanX = tanY * aspect * Math.abs(right - left);
      this.tanY = Math.max(tanY * Math.abs(bottom - top), this.parallel ? 0 : kMinTanY);
      this.middle = [(left + right - 1) * tanY * aspect, (1 - top - bottom) * tanY];
    }
    this.back = normalized(sight, 0);
    this.up = view.up;
  }

  private fitting(aspect: number): number {
    const t = kPresetTanY * Math.min(1, aspect);
    return (this.radius * Math.sqrt(1 + t * t)) / t;
  }

  get distance(): number {
    return this.parallel ? this.own : this.zoomed * (this.fits ? this.fitting(this.aspect) : this.own);
  }
  get eye(): Vec3 {
    return add(this.target, scaled(this.back, this.distance));
  }
  /** Half the height that is seen, at distance 1; of a parallel view at any distance. */
  get halfHeight(): number {
    return Math.max(this.tanY, this.tanX / this.aspect) * (this.parallel ? this.zoomed : 1);
  }
  /** Half the height that is seen at a depth before the eye. */
  heightAt(depth: number): number {
    return this.halfHeight * (this.parallel ? 1 : depth);
  }
  get axes(): Axes {
    return axesOf(this.back, this.up);
  }

  /** Away for steps above 0. The eye never passes the target, and what is seen stays between limits. */
  zoom(step: number): void {
    this.setDistance(this.distance * Math.exp(clamp(step, -4000, 4000) / kStepsOfE), Math.exp(step / kStepsOfE));
  }

  setDistance(distance: number, factor = 1): void {
    if (!(distance > 0)) return;
    if (this.parallel) {
      const t = Math.max(this.tanY, this.tanX / this.aspect);
      this.zoomed = clamp(this.zoomed * factor, (this.radius * kSmallestSeen) / t, (this.radius * kLargestSeen) / t);
      return;
    }
    const now = this.distance;
    const tanY = this.halfHeight;
    // A camera of the file may stand beyond the limits: it is not pulled back, only kept from going further.
    const nearest = Math.min(now, this.radius * Math.max(kSmallestSeen / tanY, kNearestEye));
    const farthest = Math.max(now, (this.radius * kLargestSeen) / tanY);
    this.zoomed *= clamp(distance, nearest, farthest) / now;
  }

  /** The way from the eye through a point of the view (pixels, y down), of length 1 along the line of sight. For a
   * parallel view the offset from the eye instead. */
  ray(x: number, y: number): { origin: Vec3; way: Vec3 } {
    const { right, up, back } = this.axes;
    const half = this.halfHeight;
    const shift = this.parallel ? this.zoomed : 1;
    const a = (2 * (x / this.width) - 1) * half * this.aspect + this.middle[0] * shift;
    const b = (1 - (2 * y) / this.height) * half + this.middle[1] * shift;
    const aside = add(scaled(right, a), scaled(up, b));
    const ahead = scaled(back, -1);
    return this.parallel ? { origin: add(this.eye, aside), way: ahead } : { origin: this.eye, way: add(aside, ahead) };
  }

  /** The part of the view inside the box (pixels) fills the view: the eye stays, turns to the middle of the box, and sees
   * less. False for a box without area. */
  zoomTo(box: Rect): boolean {
    let [l, r] = [Math.max(Math.min(box.left, box.right), 0), Math.min(Math.max(box.left, box.right), this.width)];
    let [t, b] = [Math.max(Math.min(box.top, box.bottom), 0), Math.min(Math.max(box.top, box.bottom), this.height)];
    if (!(r > l && b > t)) return false;
    const wider = Math.max(1, Math.min(this.width / (r - l), this.height / (b - t)) / kMaxBoxZoom);
    [l, r] = [(l + r) / 2 - ((r - l) / 2) * wider, (l + r) / 2 + ((r - l) / 2) * wider];
    [t, b] = [(t + b) / 2 - ((b - t) / 2) * wider, (t + b) / 2 + ((b - t) / 2) * wider];
    if (this.parallel) this.moveTo(l, t, r, b);
    else this.turnTo(l, t, r, b);
    return true;
  }

  private moveTo(l: number, t: number, r: number, b: number): void {
    const { origin, way } = this.ray((l + r) / 2, (t + b) / 2);
    const half = this.halfHeight;
    this.target = add(origin, scaled(way, this.own));
    this.middle = [0, 0];
    this.zoomed = 1;
    this.tanX = (half * this.aspect * (r - l)) / this.width;
    this.tanY = (half * (b - t)) / this.height;
  }

  private turnTo(l: number, t: number, r: number, b: number): void {
    const eye = this.eye;
    const axes = this.axes;
    const middle = this.ray((l + r) / 2, (t + b) / 2).way;
    // The picture's own up vector: with the scene's, looking aside from steep above would also roll the picture.
    const turned = axesOf(scaled(normalized(middle), -1), axes.up);
    const corners = [this.ray(l, t), this.ray(r, t), this.ray(l, b), this.ray(r, b)].map((c) => c.way);
    const seen = (axis: Vec3): number => Math.max(...corners.map((c) => Math.abs(dot(c, axis)) / -dot(c, turned.back)));
    const own = this.distance * length(middle);
    const [tanX, tanY] = [seen(turned.right), Math.max(seen(turned.up), kMinTanY)];
    this.reset(this.name);
    Object.assign(this, { own, tanX, tanY, back: turned.back, up: turned.up, target: add(eye, scaled(turned.back, -own)) });
    // It is no camera of the file any longer, whose movements it would follow.
    this.name = '';
  }

  viewMatrix(): Mat4 {
    const { right: r, up: u, back: b } = this.axes;
    const e = this.eye;
    return [r[0], u[0], b[0], 0, r[1], u[1], b[1], 0, r[2], u[2], b[2], 0, -dot(r, e), -dot(u, e), -dot(b, e), 1];
  }

  /** The planes between which is drawn, for depths (along the line of sight) of the nearest and the farthest point. */
  depthRange(nearest: number, farthest: number): [number, number] {
    if (this.parallel) {
      const room = Math.max(farthest - nearest, this.radius) * 0.01;
      return [nearest - room, farthest + room];
    }
    if (!(farthest > 0)) return [this.radius * 0.01, this.radius];
    const far = farthest * 1.01;
    // Something far off may not cut away what the camera was placed for.
    const middle = dot(sub(this.eye, this.center), this.back);
    const framed = Math.max(middle - this.radius, this.radius * 0.001);
    const near = Math.max(nearest * 0.99, Math.min(far * kNearOfFar, framed));
    return [near, Math.max(far, near * 1.001)];
  }

  projection([n, f]: [number, number]): Mat4 {
    const h = this.halfHeight;
    const w = h * this.aspect;
    const shift = this.parallel ? this.zoomed : 1;
    const [x, y] = [(this.middle[0] * shift) / w, (this.middle[1] * shift) / h];
    if (this.parallel) return [1 / w, 0, 0, 0, 0, 1 / h, 0, 0, 0, 0, -2 / (f - n), 0, -x, -y, -(f + n) / (f - n), 1];
    return [1 / w, 0, 0, 0, 0, 1 / h, 0, 0, x, y, -(f + n) / (f - n), -1, 0, 0, (-2 * f * n) / (f - n), 0];
  }
}
