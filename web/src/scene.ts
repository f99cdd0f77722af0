// SPDX-License-Identifier: MIT
import { animate, kFramesPerSecond, readChannels, type Channel } from './animation.ts';
import type { FileCamera } from './camera.ts';
import { Gltf, type Json } from './gltf.ts';
import { readLights, type SceneLight } from './lights.ts';
import { originOf, placeNodes, readNodes, type NodeTree, type SceneNode } from './nodes.ts';
import { vec3Of } from './settings.ts';
import type { Vec3 } from './vector.ts';

interface CameraEntry {
  name: string;
  node: SceneNode;
  target: SceneNode | undefined;
  rollDeg: number;
  fovDeg: number;
}

const numberOr = (v: unknown, otherwise: number): number => (typeof v === 'number' && isFinite(v) ? v : otherwise);

/** What a page shows: the hierarchy at one frame, its lights and its cameras, in the file's coordinates. */
export class Scene {
  readonly nodes: NodeTree;
  readonly lights: SceneLight[];
  readonly headlight: boolean;
  readonly ambientLight: Vec3;
  readonly center: Vec3;
  readonly radius: number;
  readonly firstFrame: number;
  readonly lastFrame: number;
  readonly animated: boolean;
  frame: number;
  private readonly channels: Channel[];
  private readonly cameras: CameraEntry[] = [];

  constructor(readonly gltf: Gltf) {
    const extras: Json = gltf.item('scenes', gltf.json.scene ?? 0).extras?.orbivue ?? {};
    this.nodes = readNodes(gltf);
    this.channels = readChannels(gltf, this.nodes.all);
    this.lights = readLights(extras, this.nodes.all);
    this.headlight = extras.headlight === true;
    this.ambientLight = vec3Of(extras.ambientLight) ?? [0, 0, 0];
    this.center = vec3Of(extras.bounds?.center) ?? [0, 0, 0];
    this.radius = Math.max(numberOr(extras.bounds?.radius, 1) || 1, Math.max(...this.center.map(Math.abs)) * 1e-6);
    this.firstFrame = numberOr(extras.frames?.first, 0);
    this.lastFrame = numberOr(extras.frames?.last, this.firstFrame);
    this.animated = this.channels.length > 0 && this.lastFrame > this.firstFrame;
    this.frame = numberOr(extras.frames?.current, this.firstFrame);
    this.readCameras(extras.cameras);
    this.show(this.frame);
  }

  private readCameras(listed: Json): void {
    for (const c of Array.isArray(listed) ? listed : []) {
      const node = this.nodes.all[c?.node];
      if (!node) continue;
      const target = this.nodes.all[c.target];
      this.cameras.push({ name: String(c.name ?? ''), node, target, rollDeg: numberOr(c.rollDeg, 0), fovDeg: numberOr(c.fovDeg, 45) });
    }
  }

  /** Moves everything to a frame of the animation. */
  show(frame: number): void {
    this.frame = frame;
    animate(this.channels, (frame - this.firstFrame) / kFramesPerSecond);
    placeNodes(this.nodes.ordered);
  }

  get cameraNames(): string[] {
    return this.cameras.map((c) => c.name);
  }

  /** A camera of the file as it stands now. */
  camera(index: number): FileCamera | undefined {
    const c = this.cameras[index];
    if (!c) return undefined;
    const eye = originOf(c.node);
    const target: Vec3 = c.target ? originOf(c.target) : this.center;
    return { name: c.name, eye, target, rollDeg: c.rollDeg, fovDeg: c.fovDeg };
  }
}
