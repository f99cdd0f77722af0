// SPDX-License-Identifier: MIT
import type { Vec3 } from './vector.ts';

/** The view of the desktop when the page was written; see docs/web-page.md. Coordinates are the file's. */
export interface SeenView {
  kind: 'perspective' | 'parallel';
  eye: Vec3;
  target: Vec3;
  up: Vec3;
  fovYDeg: number;
  height: number;
  window: readonly [number, number, number, number];
  size: readonly [number, number];
  model: readonly number[];
  camera: string;
  preset: boolean;
}

export interface Settings {
  title: string;
  model: string;
  background: Vec3;
  backgroundPicture: string;
  view: SeenView | undefined;
  frame: number | undefined;
  wire: boolean;
  doubleSided: boolean;
  camerasBar: boolean;
  download: string;
  texts: Record<string, unknown>;
}

type Loose = Record<string, unknown>;

const isObject = (v: unknown): v is Loose => typeof v === 'object' && v !== null;
const textOf = (v: unknown): string => (typeof v === 'string' ? v : '');
const numberOr = (v: unknown, otherwise: number): number => (typeof v === 'number' && isFinite(v) ? v : otherwise);

/** So many finite numbers, or undefined. */
export function numbersOf(v: unknown, count: number): number[] | undefined {
  return Array.isArray(v) && v.length === count && v.every((x) => typeof x === 'number' && isFinite(x)) ? v : undefined;
}
export const vec3Of = (v: unknown): Vec3 | undefined => numbersOf(v, 3) as Vec3 | undefined;

function readView(v: unknown): SeenView | undefined {
  if (!isObject(v)) return undefined;
  const eye = vec3Of(v.eye);
  const target = vec3Of(v.target);
  const up = vec3Of(v.up);
  if (!eye || !target || !up) return undefined;
  return {
    kind: v.kind === 'parallel' ? 'parallel' : 'perspective',
    eye,
    target,
    up,
    fovYDeg: numberOr(v.fovYDeg, 45),
    height: numberOr(v.height, 0),
    window: (numbersOf(v.window, 4) ?? [0, 0, 1, 1]) as [number, number, number, number],
    size: (numbersOf(v.size, 2) ?? [4, 3]) as [number, number],
    model: numbersOf(v.model, 16) ?? [1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1],
    camera: textOf(v.camera),
    preset: v.preset === true,
  };
}

/** Reads the settings of a page. Whatever is missing or wrong has its default. */
export function readSettings(json: string): Settings {
  let s: Loose = {};
  try {
    const parsed: unknown = JSON.parse(json);
    if (isObject(parsed)) s = parsed;
  } catch {
    // A page without settings still shows its scene.
  }
  return {
    title: textOf(s.title),
    model: textOf(s.model),
    background: vec3Of(s.background) ?? [0.24, 0.26, 0.3],
    backgroundPicture: textOf(s.backgroundPicture),
    view: readView(s.view),
    frame: typeof s.frame === 'number' ? s.frame : undefined,
    wire: s.wire === true,
    doubleSided: s.doubleSided === true,
    camerasBar: s.camerasBar !== false,
    download: textOf(s.download),
    texts: isObject(s.texts) ? s.texts : {},
  };
}
