// SPDX-License-Identifier: MIT
import type { MapExtras, MaterialExtras } from './format.ts';
import { Gl } from './gl.ts';
import type { Vec3 } from './vector.ts';

/** The maps of a material in the order of their texture units, and their macros in the shader. */
const kMaps = ['texture', 'texture2', 'opacity', 'specular', 'shininess', 'selfIllumination', 'bump', 'reflection'];
export const kMacros = ['TEXTURE', 'TEXTURE2', 'OPACITY', 'SPECULAR_MAP', 'SHININESS', 'SELF', 'BUMP', 'REFLECTION'];
const kOpacity = 2;
const kSpecular = 3;
const kShininess = 4;
export const kReflection = 7;

/** How a map uses its picture: as it is, colours multiplied by its alpha, or brightness as opacity. */
export const enum AlphaUse {
  Separate,
  Multiplied,
  Opacity,
}

export interface MapLook {
  texture: number;
  alpha: AlphaUse;
  wrap: number;
  /** Rows of the transform of texture coordinates. */
  s: Vec3;
  t: Vec3;
  /** Amount, sign, bias, 1 where it is not tiled. */
  value: readonly number[];
  /** Which channels make its value; see the shader. */
  weight: readonly number[];
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
  lineWidth: number;
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
    alpha: shows || clears ? AlphaUse.Multiplied : kind === kOpacity ? AlphaUse.Opacity : AlphaUse.Separate,
    wrap: !tile ? Gl.ClampToEdge : m.mirror ? Gl.MirroredRepeat : Gl.Repeat,
    s: [uv[0], uv[2], uv[4]],
    t: [uv[1], uv[3], uv[5]],
    value: [amount, m.negative ? -1 : 1, +!!m.negative, +!tile],
    weight,
  };
}

/** twoSided, lines: whatever the material says. */
export function lookOf(m: Partial<MaterialExtras>, twoSided: boolean, lines: boolean): Look {
  const { strength = 0, opacity = 1, additive = false, shading, specular = [0.9, 0.9, 0.9], diffuse = [0.588, 0.588, 0.588] } = m;
  const glossy = strength > 0;
  const maps = kMaps.map((name, kind) => mapOf(kind, m.maps?.[name], strength));
  if (!glossy) maps[kSpecular] = maps[kShininess] = undefined;
  const line = lines || !!m.wire || shading === 'wire';
  return {
    ambient: m.ambient ?? diffuse,
    diffuse,
    specular: specular.map((x) => x * strength) as unknown as Vec3,
    exponent: m.exponent ?? 2,
    self: m.selfIllumination ?? 0,
    opacity,
    glossy,
    metal: glossy && shading === 'metal',
    flat: shading === 'flat' && !line,
    twoSided: twoSided || !!m.twoSided,
    lines: line,
    lineWidth: Math.min(m.wireSizePx || 1, 64),
    additive,
    blended: !!m.blend || additive,
    maybeSolid: !additive && (opacity >= 1 || maps[kOpacity]?.value[0] === 1),
    maps,
  };
}
