// SPDX-License-Identifier: MIT
import type { Vec3 } from './vector.ts';

// What pages and their scenes hold, as docs/web-page.md says. The names of this file stand in the files of people, and so
// keep their spelling in the minified bundle. What is read is checked where a wrong value would do harm.

/** The view of the desktop when the page was written, in the file's coordinates. */
export interface SeenView {
  eye: Vec3;
  target: Vec3;
  up: Vec3;
  fovYDeg: number;
  size: readonly [number, number];
  model?: readonly number[];
  camera: string;
  preset?: boolean;
}

export interface Settings {
  title: string;
  background: readonly [number, number, number];
  backgroundPicture?: string;
  view: SeenView;
  frame?: number;
  wire?: boolean;
  doubleSided?: boolean;
  camerasBar?: boolean;
  download?: string;
  files?: { scene: string; script: string };
  texts: Record<string, string>;
}

export interface MapExtras {
  texture: number;
  amount?: number;
  uv?: readonly number[];
  tile?: boolean;
  decal?: boolean;
  mirror?: boolean;
  negative?: boolean;
  alphaSource?: boolean;
  ignoreAlpha?: boolean;
  alphaIsOpacity?: boolean;
}

export interface MaterialExtras {
  ambient: Vec3;
  diffuse: Vec3;
  specular: Vec3;
  exponent: number;
  strength?: number;
  selfIllumination?: number;
  opacity?: number;
  shading?: 'wire' | 'flat' | 'gouraud' | 'phong' | 'metal';
  twoSided?: boolean;
  wire?: boolean;
  additive?: boolean;
  blend?: boolean;
  maps?: Record<string, MapExtras>;
}

export interface LightExtras {
  node: number;
  spot?: boolean;
  color: Vec3;
  multiplier?: number;
  target?: number;
  hotspotDeg?: number;
  falloffDeg?: number;
  attenuate?: boolean;
  inner?: number;
  outer?: number;
}

export interface CameraExtras {
  node: number;
  target: number;
  name: string;
  rollDeg?: number;
  fovDeg: number;
}

export interface SceneExtras {
  bounds: { center: Vec3; radius: number };
  ambientLight?: Vec3;
  headlight?: boolean;
  lights?: LightExtras[];
  cameras?: CameraExtras[];
  frames?: { first: number; last: number; current: number };
}

export interface AccessorJson {
  bufferView: number;
  byteOffset?: number;
  componentType: number;
  count: number;
  type: string;
  normalized?: boolean;
  min?: number[];
  max?: number[];
}

export interface PackedJson {
  byteOffset?: number;
  byteLength: number;
  byteStride: number;
  count: number;
  mode: string;
  filter?: string;
}

export interface ViewJson {
  byteOffset?: number;
  byteLength: number;
  byteStride?: number;
  extensions?: { EXT_meshopt_compression?: PackedJson };
}

export interface PrimitiveJson {
  attributes: { POSITION: number; NORMAL?: number; TEXCOORD_0?: number };
  indices: number;
  material: number;
  targets?: { POSITION?: number; NORMAL?: number }[];
}

export interface NodeJson {
  children?: number[];
  translation?: number[];
  rotation?: number[];
  scale?: number[];
  matrix?: readonly number[];
  weights?: number[];
  mesh?: number;
}

export type Path = 'translation' | 'rotation' | 'scale' | 'weights';

export interface AnimationJson {
  channels: { sampler: number; target: { node: number; path: Path } }[];
  samplers: { input: number; output: number; interpolation?: string }[];
}

export interface GltfJson {
  scene?: number;
  scenes: { nodes: number[]; extras: { orbivue: SceneExtras } }[];
  nodes: NodeJson[];
  meshes?: { primitives: PrimitiveJson[]; weights?: number[] }[];
  accessors: AccessorJson[];
  bufferViews: ViewJson[];
  materials?: { doubleSided?: boolean; extras: { orbivue: MaterialExtras } }[];
  textures?: { source: number }[];
  images?: { bufferView: number; mimeType: string }[];
  animations?: AnimationJson[];
}

/** What user code may call, as `window.orbivue`: see docs/manual/web-page.md. */
export interface OrbivueApi {
  /** Resolved with this object when the first picture is there. Before that only this member is. */
  ready: Promise<OrbivueApi>;
  /** Names of the file's cameras. */
  readonly cameras: string[];
  /** Looks from a side ("top", "left", "right", "front", "back", "iso") or through a camera of the file. */
  setCamera(name: string): void;
  /** As the page began. */
  reset(): void;
  /** Degrees to the right and up. */
  turn(rightDeg: number, upDeg: number): void;
  /** Makes what is seen so many times larger. */
  zoom(factor: number): void;
  /** Shows a frame and stops the animation. */
  setFrame(frame: number): void;
  play(on: boolean): void;
  /** First and last frame, what is shown now, and how many pictures were drawn so far. */
  state(): { first: number; last: number; frame: number; playing: boolean; drawn: number };
}
