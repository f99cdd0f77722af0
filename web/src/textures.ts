// SPDX-License-Identifier: MIT
import { Gl, type Context } from './gl.ts';
import { viewBytes, type Gltf } from './gltf.ts';
import { AlphaUse, kReflection, type Look, type MapLook } from './material.ts';

const kAnisotropy = 8;

/** A picture as a texture, with all smaller levels. */
async function textureOf(gl: Context, picture: Blob, use: AlphaUse): Promise<WebGLTexture> {
  const bitmap = await createImageBitmap(picture, { premultiplyAlpha: use === AlphaUse.Multiplied ? 'premultiply' : 'none', colorSpaceConversion: 'none' });
  const texture = gl.createTexture();
  gl.activeTexture(Gl.Texture0);
  gl.bindTexture(Gl.Texture2d, texture);
  gl.pixelStorei(Gl.ColorspaceConversion, 0);
  gl.texImage2D(Gl.Texture2d, 0, Gl.Rgba, Gl.Rgba, Gl.UnsignedByte, bitmap);
  gl.generateMipmap(Gl.Texture2d);
  return texture;
}

const keyOf = ({ texture, alpha }: MapLook): string => texture + '/' + alpha;

/** Uploads all pictures that the looks use, and returns what binds a look's maps to the texture units of their numbers. Maps
 * whose picture cannot be decoded are taken out of the looks. */
export async function loadTextures(gl: Context, gltf: Gltf, looks: readonly Look[], software: boolean): Promise<(look: Look) => void> {
  const { textures = [], images = [] } = gltf.json;
  const loaded: Record<string, WebGLTexture | undefined> = {};
  const samplers: Record<string, WebGLSampler> = {};
  const all = looks.flatMap((look) => look.maps.filter((map) => map !== undefined));
  const load = async (map: MapLook): Promise<void> => {
    const { bufferView, mimeType } = images[textures[map.texture].source];
    loaded[keyOf(map)] = await textureOf(gl, new Blob([viewBytes(gltf, bufferView)], { type: mimeType }), map.alpha);
  };
  // The scene is worth showing without a picture that is broken.
  await Promise.all([...new Map(all.map((map) => [keyOf(map), map])).values()].map((map) => load(map).catch((e) => console.warn(e))));
  for (const look of looks) look.maps = look.maps.map((map) => (map && loaded[keyOf(map)] ? map : undefined));

  const filtered = !software && gl.getExtension('EXT_texture_filter_anisotropic');
  /** Without smaller levels for reflections: where their angle jumps by a whole turn one that is too coarse would be chosen. */
  const samplerOf = (wrap: number, levels: boolean): WebGLSampler => {
    const sampler = gl.createSampler()!;
    const set = (name: number, value: number): void => gl.samplerParameteri(sampler, name, value);
    set(Gl.WrapS, wrap);
    set(Gl.WrapT, wrap);
    set(Gl.MinFilter, levels ? Gl.LinearMipmapLinear : Gl.Linear);
    if (filtered && levels) set(Gl.Anisotropy, kAnisotropy);
    return sampler;
  };
  return (look) =>
    look.maps.forEach((map, unit) => {
      if (!map) return;
      gl.activeTexture(Gl.Texture0 + unit);
      gl.bindTexture(Gl.Texture2d, loaded[keyOf(map)]!);
      gl.bindSampler(unit, (samplers[map.wrap + '/' + unit] ??= samplerOf(map.wrap, unit !== kReflection)));
    });
}
