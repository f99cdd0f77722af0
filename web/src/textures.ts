// SPDX-License-Identifier: MIT
import { Gl, type Context } from './gl.ts';
import { viewBytes, type Gltf } from './gltf.ts';
import { kReflection, type Look, type MapLook } from './material.ts';

const kAnisotropy = 8;

/** One for each way in which a picture is used. */
const keyOf = ({ texture, alpha, wrap }: MapLook, unit: number): string => [texture, alpha, wrap, unit === kReflection].join();

/** Uploads all pictures that the looks use, and returns what binds a look's maps to the texture units of their numbers. Maps
 * whose picture cannot be decoded are taken out of the looks. */
export async function loadTextures(gl: Context, gltf: Gltf, looks: readonly Look[]): Promise<(look: Look) => void> {
  const { textures = [], images = [] } = gltf.json;
  const anisotropic = !isSoftware(gl) && gl.getExtension('EXT_texture_filter_anisotropic');
  const loaded: Record<string, Promise<WebGLTexture>> = {};
  const load = async ({ texture, alpha, wrap }: MapLook, unit: number): Promise<WebGLTexture> => {
    const { bufferView, mimeType } = images[textures[texture].source];
    const bitmap = await createImageBitmap(new Blob([viewBytes(gltf, bufferView)], { type: mimeType }), {
      premultiplyAlpha: alpha ? 'premultiply' : 'none',
      colorSpaceConversion: 'none',
    });
    const made = gl.createTexture();
    const set = (name: number, value: number): void => gl.texParameteri(Gl.Texture2d, name, value);
    gl.activeTexture(Gl.Texture0);
    gl.bindTexture(Gl.Texture2d, made);
    gl.texImage2D(Gl.Texture2d, 0, Gl.Rgba, Gl.Rgba, Gl.UnsignedByte, bitmap);
    gl.generateMipmap(Gl.Texture2d);
    set(Gl.WrapS, wrap);
    set(Gl.WrapT, wrap);
    // Where the angle of a reflection jumps by a whole turn, a level that is too coarse would be chosen.
    set(Gl.MinFilter, unit === kReflection ? Gl.Linear : Gl.LinearMipmapLinear);
    if (anisotropic) set(Gl.Anisotropy, kAnisotropy);
    return made;
  };
  const found: Record<string, WebGLTexture> = {};
  const loading = looks.flatMap((look) =>
    look.maps.map(async (map, unit) => {
      if (!map) return;
      const key = keyOf(map, unit);
      // The scene is worth showing without a picture that is broken.
      found[key] = await (loaded[key] ??= load(map, unit)).catch((error) => {
        console.warn(error);
        look.maps[unit] = undefined;
        return 0;
      });
    }),
  );
  await Promise.all(loading);
  return (look) =>
    look.maps.forEach((map, unit) => {
      if (!map) return;
      gl.activeTexture(Gl.Texture0 + unit);
      gl.bindTexture(Gl.Texture2d, found[keyOf(map, unit)]);
    });
}

/** Drawn without a graphics card, where fine filters take their time. */
function isSoftware(gl: Context): boolean {
  const name = gl.getExtension('WEBGL_debug_renderer_info') ? Gl.UnmaskedRenderer : Gl.Renderer;
  return /swift|llvm/i.test(gl.getParameter(name));
}
