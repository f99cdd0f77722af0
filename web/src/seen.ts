// SPDX-License-Identifier: MIT
import { Camera, type FileCamera, type Rect } from './camera.ts';
import { about, affineInverse, direction, kIdentity, point, product, translation, type Mat4 } from './matrix.ts';
import { combined, kNoRotation, matrixOf, rotationAbout, type Rotation } from './rotation.ts';
import type { SeenView } from './settings.ts';
import { add, dot, kDegree, scaled, sub, type Vec3 } from './vector.ts';

/** What is seen of the scene: the camera, and how the model is turned and moved. Points of the scene go through
 * `model` and then through the camera's matrices. */
export class Seen {
  readonly camera: Camera;
  turn: Rotation = kNoRotation;
  /** The model as the page was written with it. */
  private base: Mat4 = kIdentity;
  /** What the model turns about, after `base`. */
  private pivot: Vec3;
  private shift: Vec3 = [0, 0, 0];

  constructor(
    center: Vec3,
    radius: number,
    private readonly start: SeenView | undefined,
  ) {
    this.camera = new Camera(center, radius);
    this.pivot = center;
    this.reset();
  }

  /** What the page showed first. */
  reset(): void {
    if (!this.start) return this.setPreset('iso_cam');
    this.camera.setSeen(this.start);
    this.place(this.start.model);
  }
  setPreset(name: string): void {
    this.camera.setPreset(name);
    this.place(kIdentity);
  }
  setFileCamera(camera: FileCamera): void {
    this.camera.setFileCamera(camera);
    this.place(kIdentity);
  }

  private place(base: Mat4): void {
    this.base = base;
    this.turn = kNoRotation;
    this.shift = [0, 0, 0];
    this.pivot = point(base, this.camera.target);
  }

  get model(): Mat4 {
    return product(translation(this.shift), product(about(matrixOf(this.turn), this.pivot), this.base));
  }
  /** Where the middle of the trackball is seen. */
  get ball(): Vec3 {
    return add(this.pivot, this.shift);
  }

  private depthOf(at: Vec3): number {
    return dot(sub(this.camera.eye, at), this.camera.axes.back);
  }

  /** The middle of the model follows the pointer; the look-at point stands in for a middle close to the eye. */
  pan(right: number, down: number): void {
    const depth = this.depthOf(point(this.model, this.camera.center));
    const distance = this.camera.distance;
    const { axes, viewHeight } = this.camera;
    const size = (2 * this.camera.heightAt(depth > 0.05 * distance ? depth : distance)) / viewHeight;
    this.shift = add(this.shift, sub(scaled(axes.right, right * size), scaled(axes.up, down * size)));
  }

  /** Zooms, with what is seen at (x, y) staying there: as if the eye went along the ray through it. */
  zoomAt(step: number, x: number, y: number): void {
    const { camera } = this;
    const { origin, way } = camera.ray(x, y);
    const size = (): number => (camera.parallel ? camera.halfHeight : camera.distance);
    const aside = camera.parallel ? sub(origin, camera.eye) : add(way, camera.axes.back);
    const before = size();
    camera.zoom(step);
    const approached = (before - size()) / (camera.parallel ? before : 1);
    this.shift = sub(this.shift, scaled(aside, approached));
  }

  zoomTo(box: Rect): boolean {
    const back = affineInverse(this.model);
    if (!this.camera.zoomTo(box)) return false;
    if (back) this.turnAbout(point(back, this.camera.target));
    return true;
  }

  /** Brings a point of the scene to the middle of the view, at its own depth, and turns the model about it. */
  centerOn(at: Vec3): void {
    this.camera.setDistance(this.depthOf(point(this.model, at)));
    this.turnAbout(at);
  }

  private turnAbout(at: Vec3): void {
    this.pivot = point(this.base, at);
    this.shift = sub(this.camera.target, this.pivot);
  }

  /** By degrees to the right and up, as keys turn it. */
  turnBy(rightDeg: number, upDeg: number): void {
    const { right, up } = this.camera.axes;
    const turn = combined(rotationAbout(right, -upDeg * kDegree), rotationAbout(up, rightDeg * kDegree));
    this.turn = combined(turn, this.turn);
  }

  /** The point of the scene that a depth between 0 and 1 of the picture stands for. */
  pointAt(x: number, y: number, depth: number, [n, f]: [number, number]): Vec3 | undefined {
    const { origin, way } = this.camera.ray(x, y);
    const along = this.camera.parallel ? n + depth * (f - n) : (n * f) / (f - depth * (f - n));
    const back = affineInverse(this.model);
    return back && add(point(back, origin), scaled(direction(back, way), along));
  }
}
