// SPDX-License-Identifier: MIT
import type { Gltf, Json } from './gltf.ts';
import { numbersOf, vec3Of } from './settings.ts';
import { clamp, scaled, type Vec3 } from './vector.ts';

/** The maps of a material in the order of their texture units. */
export const kMaps = ['texture', 'texture2', 'opacity', 'specular', 'shininess', 'selfIllumination', 'bump', 'reflection'] as const;
export const enum Map {
  Texture,
  Texture2,
  Opacity,
  Specular,
  Shininess,
  SelfIllumination,
  Bump,
  Reflection,
}

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
  /** Times its strength; for metal without maps tinted by diffuse. */
  specular: Vec3;
  exponent: number;
  self: number;
  opacity: number;
  hasSpecular: boolean;
  metal: boolean;
  flat: boolean;
  twoSided: boolean;
  wire: boolean;
  lineWidth: number;
  additive: boolean;
  blended: boolean;
  /** Transparent only by its pictures, so that parts of it may be solid. */
  maybeSolid: boolean;
  invisible: boolean;
  maps: (MapLook | undefined)[];
}

const kRepeat = 0x2901;
const kClamp = 0x812f;
const kMirror = 0x8370;

const fraction = (v: unknown, otherwise: number): number => (typeof v === 'number' ? clamp(v, 0, 1) : otherwise);

function readMap(kind: Map, m: Json, strength: number): MapLook | undefined {
  const amount = fraction(m?.amount, 1);
  if (!m || !Number.isSafeInteger(m.texture) || amount === 0) return undefined;
  const uv = numbersOf(m.uv, 6) ?? [1, 0, 0, 1, 0, 0];
  const tiled = m.tile !== false;
  const first = kind === Map.Texture;
  const alphaIsOpacity = first && m.alphaIsOpacity === true;
  const shows = first ? m.decal : kind === Map.Texture2 && !m.ignoreAlpha;
  const grey = m.alphaSource ? [0, 0, 0, 1] : [0.299, 0.587, 0.114, 0];
  const plain = kind === Map.Opacity ? AlphaUse.Opacity : AlphaUse.Separate;
  return {
    texture: m.texture,
    alpha: shows || alphaIsOpacity ? AlphaUse.Multiplied : plain,
    wrap: !tiled ? kClamp : m.mirror ? kMirror : kRepeat,
    s: [uv[0], uv[2], uv[4]],
    t: [uv[1], uv[3], uv[5]],
    value: [amount, m.negative ? -1 : 1, m.negative ? 1 : 0, tiled ? 0 : 1],
    weight: kind <= Map.Texture2 ? [0, 0, shows ? 1 : 0, alphaIsOpacity ? 1 : 0] : kind === Map.Specular ? [strength, 0, 0, 0] : grey,
  };
}

function readLook(material: Json, doubleSided: boolean): Look {
  const m: Json = material.extras?.orbivue ?? {};
  const strength = fraction(m.strength, 0);
  const hasSpecular = strength > 0;
  const diffuse = vec3Of(m.diffuse) ?? [0.588, 0.588, 0.588];
  const wire = m.wire === true || m.shading === 'wire';
  const flat = m.shading === 'flat';
  const maps = kMaps.map((name, kind) => readMap(kind, m.maps?.[name], strength));
  if (!hasSpecular) maps[Map.Specular] = maps[Map.Shininess] = undefined;
  const metal = hasSpecular && m.shading === 'metal';
  const opacity = fraction(m.opacity, 1);
  const specular = scaled(vec3Of(m.specular) ?? [0.898, 0.898, 0.898], strength);
  const opacityMap = maps[Map.Opacity];
  const additive = m.additive === true;
  return {
    ambient: vec3Of(m.ambient) ?? diffuse,
    diffuse,
    specular,
    exponent: clamp(typeof m.exponent === 'number' ? m.exponent : 2, 1, 1024),
    self: fraction(m.selfIllumination, 0),
    opacity,
    hasSpecular,
    metal,
    flat,
    twoSided: doubleSided || m.twoSided === true || material.doubleSided === true,
    wire,
    lineWidth: typeof m.wireSizePx === 'number' && m.wireSizePx > 0 ? Math.min(m.wireSizePx, 64) : 1,
    additive,
    blended: m.blend === true || additive,
    maybeSolid: !additive && (opacity >= 1 || (!!opacityMap && opacityMap.value[0] >= 1)),
    invisible: opacity <= 0 && !opacityMap,
    maps,
  };
}

/** All materials; the last one is for faces that have none. */
export function readLooks(gltf: Gltf, doubleSided: boolean): Look[] {
  return [...gltf.list('materials'), {}].map((m) => readLook(m, doubleSided));
}
