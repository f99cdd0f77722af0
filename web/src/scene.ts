// SPDX-License-Identifier: MIT
import { kFramesPerSecond, readChannels, sample } from './animation.ts';
import type { FileCamera } from './camera.ts';
import type { LightExtras, SceneExtras } from './format.ts';
import { readGltf, type Gltf } from './gltf.ts';
import { strongest } from './lights.ts';
import { originOf, placeNodes, readNodes, type SceneNode } from './nodes.ts';
import { abs, max, type Vec3 } from './vector.ts';

/** What a page shows: the hierarchy at one frame, its lights and its cameras, in the file's coordinates. */
export interface Scene {
  gltf: Gltf;
  nodes: SceneNode[];
  lights: LightExtras[];
  ambientLight: Vec3;
  bounds: { center: Vec3; radius: number };
  frames: { first: number; last: number; current: number };
  animated: boolean;
  cameraNames: string[];
  /** A camera of the file as it stands now. */
  camera(index: number): FileCamera;
  /** Moves everything to a frame of the animation. */
  show(frame: number): void;
}

export function readScene(bytes: Uint8Array<ArrayBuffer>): Scene {
  const gltf = readGltf(bytes);
  const { json } = gltf;
  const nodes = readNodes(json);
  const channels = readChannels(gltf, nodes);
  const extras: SceneExtras = json.scenes[json.scene ?? 0].extras.orbivue;
  const { headlight = false, lights = [], ambientLight = [0, 0, 0], bounds, cameras = [], frames = { first: 0, last: 0, current: 0 } } = extras;
  const scene: Scene = {
    gltf,
    nodes,
    lights: strongest(lights, headlight),
    ambientLight,
    bounds: { center: bounds.center, radius: max(bounds.radius || 1, ...bounds.center.map((x) => abs(x) / 1e6)) },
    frames,
    animated: channels.length > 0 && frames.last > frames.first,
    cameraNames: cameras.map((c) => c.name),
    camera(index) {
      const { name, node, target, rollDeg = 0, fovDeg } = cameras[index];
      return { name, rollDeg, fovDeg, eye: originOf(nodes[node]), target: originOf(nodes[target]) };
    },
    show(frame) {
      for (const channel of channels) channel.node[channel.path] = sample(channel, (frame - frames.first) / kFramesPerSecond);
      placeNodes(nodes);
    },
  };
  scene.show(frames.current);
  return scene;
}
