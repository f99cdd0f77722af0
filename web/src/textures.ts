// SPDX-License-Identifier: MIT
import coverVertex from '../shaders/cover.vert';
import texelFragment from '../shaders/texel.frag';
import { Gl, type Context } from './gl.ts';
import { viewBytes, type Gltf } from './gltf.ts';
import { AlphaUse, kReflection, type Look, type MapLook } from './material.ts';
import { makeProgram } from './program.ts';

const kAnisotropy = 8;

/** A picture as a texture, with all smaller levels. */
export async function textureOf(gl: Context, bytes: Uint8Array<ArrayBuffer>, type: string, use = AlphaUse.Separate): Promise<[WebGLTexture, number]> {
  const bitmap = await createImageBitmap(new Blob([bytes], { type }), { premultiplyAlpha: 'none', colorSpaceConversion: 'none' });
  const { width, height } = bitmap;
  const make = (): WebGLTexture => {
    const texture = gl.createTexture();
    gl.activeTexture(Gl.Texture0);
    gl.bindTexture(Gl.Texture2d, texture);
    gl.bindSampler(0, null);
    gl.texStorage2D(Gl.Texture2d, Math.log2(Math.max(width, height)) + 1, Gl.Rgba8, width, height);
    return texture;
  };
  let texture = make();
  gl.pixelStorei(Gl.ColorspaceConversion, 0);
  gl.texSubImage2D(Gl.Texture2d, 0, 0, 0, width, height, Gl.Rgba, Gl.UnsignedByte, bitmap);
  if (use) {
    const from = texture;
    texture = make();
    convert(gl, from, texture, [width, height], use === AlphaUse.Opacity);
  }
  gl.generateMipmap(Gl.Texture2d);
  return [texture, width / height];
}

/** Fills a texture with how the picture of another counts. */
function convert(gl: Context, from: WebGLTexture, to: WebGLTexture, size: [number, number], opacity: boolean): void {
  const program = makeProgram(gl, coverVertex, texelFragment, opacity ? ['OPACITY'] : []);
  const frame = gl.createFramebuffer();
  gl.bindFramebuffer(Gl.Framebuffer, frame);
  gl.framebufferTexture2D(Gl.Framebuffer, Gl.ColorAttachment0, Gl.Texture2d, to, 0);
  gl.viewport(0, 0, ...size);
  gl.disable(Gl.Blend);
  gl.disable(Gl.CullFace);
  gl.bindTexture(Gl.Texture2d, from);
  program.use();
  gl.drawArrays(Gl.Triangles, 0, 3);
  gl.deleteFramebuffer(frame);
  gl.deleteTexture(from);
  gl.bindTexture(Gl.Texture2d, to);
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
    [loaded[keyOf(map)]] = await textureOf(gl, viewBytes(gltf, bufferView), mimeType, mimeType === 'image/jpeg' ? map.alpha & AlphaUse.Opacity : map.alpha);
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
