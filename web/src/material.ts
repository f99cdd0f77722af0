// SPDX-License-Identifier: MIT
import type { MapExtras, MaterialExtras } from './format.ts';
import { Gl } from './gl.ts';
import type { Vec3 } from './vector.ts';

/** The maps of a material in the order of their texture units. */
export const kMaps = 'texture texture2 opacity specular shininess selfIllumination bump reflection'.split(' ');
const kOpacity = 2;
const kSpecular = 3;
const kShininess = 4;
export const kReflection = 7;

/** How a map uses its picture: as it is, or with colours multiplied by its alpha. */
export const enum AlphaUse {
  Separate,
  Multiplied,
}

export interface MapLook {
  texture: number;
  alpha: AlphaUse;
  wrap: number;
  /** 0 to 1. */
  amount: number;
  /** Its matrix in the shader. */
  uniform: readonly number[];
}

/** What a material means for drawing, in display space: as the desktop's material looks. */
export interface Look {
  ambient: Vec3;
  diffuse: Vec3;
  /** Times its strength. */
  specular: Vec3;
  exponent: number;
  self: number;
  opacity: number;
  glossy: boolean;
  metal: boolean;
  flat: boolean;
  twoSided: boolean;
  lines: boolean;
  additive: boolean;
  blended: boolean;
  /** Transparent only by its pictures, so that parts of it may be solid. */
  maybeSolid: boolean;
  maps: (MapLook | undefined)[];
}

function mapOf(kind: number, m: MapExtras | undefined, strength: number): MapLook | undefined {
  if (!m) return undefined;
  const { amount = 1, uv = [1, 0, 0, 1, 0, 0], tile = true } = m;
  const shows = kind ? kind < kOpacity && !m.ignoreAlpha : m.decal;
  const clears = !kind && m.alphaIsOpacity;
  let weight = m.alphaSource ? [0, 0, 0, 1] : [0.299, 0.587, 0.114, 0];
  if (kind < kOpacity) weight = [0, 0, +!!shows, +!!clears];
  if (kind === kSpecular) weight = [strength, 0, 0, 0];
  return {
    texture: m.texture,
    alpha: shows || clears ? AlphaUse.Multiplied : AlphaUse.Separate,
    wrap: !tile ? Gl.ClampToEdge : m.mirror ? Gl.MirroredRepeat : Gl.Repeat,
    amount,
    uniform: [uv[0], uv[2], uv[4], amount, uv[1], uv[3], uv[5], +!tile, ...weight, m.negative ? -1 : 1, +!!m.negative, 0, 0],
  };
}

/** twoSided, lines: whatever the material says. */
export function lookOf(m: MaterialExtras, twoSided?: boolean, lines?: boolean): Look {
  const { strength = 0, opacity = 1, additive = false, shading, specular } = m;
  const glossy = strength > 0;
  const maps = kMaps.map((name, kind) => mapOf(kind, m.maps?.[name], strength));
  if (!glossy) maps[kSpecular] = maps[kShininess] = undefined;
  const line = !!(lines || m.wire || shading === 'wire');
  return {
    ...m,
    specular: specular.map((x) => x * strength) as unknown as Vec3,
    self: m.selfIllumination ?? 0,
    opacity,
    glossy,
    metal: glossy && shading === 'metal',
    flat: shading === 'flat' && !line,
    twoSided: !!(twoSided || m.twoSided),
    lines: line,
    additive,
    blended: !!m.blend || additive,
    maybeSolid: !additive && (opacity >= 1 || maps[kOpacity]?.amount === 1),
    maps,
  };
}
