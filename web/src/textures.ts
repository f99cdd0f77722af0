// SPDX-License-Identifier: MIT
import coverVertex from '../shaders/cover.vert';
import texelFragment from '../shaders/texel.frag';
import type { Gltf } from './gltf.ts';
import { AlphaUse, Map as Kind, type Look } from './material.ts';
import { Program } from './program.ts';

const kAnisotropy = 8;

/** The pictures of the materials on the graphics card, and how they are sampled. */
export class Textures {
  private readonly textures = new Map<string, WebGLTexture>();
  private readonly samplers = new Map<string, WebGLSampler>();
  private converter: Program | undefined;
  private readonly anisotropic: EXT_texture_filter_anisotropic | null;

  constructor(
    private readonly gl: WebGL2RenderingContext,
    private readonly gltf: Gltf,
    software: boolean,
  ) {
    this.anisotropic = software ? null : gl.getExtension('EXT_texture_filter_anisotropic');
  }

  /** Decodes all pictures that the looks use. Maps whose picture cannot be decoded are taken out of them. */
  async load(looks: readonly Look[]): Promise<void> {
    const wanted = new Map<number, Set<AlphaUse>>();
    for (const look of looks) {
      for (const map of look.maps) {
        if (map) wanted.set(map.texture, (wanted.get(map.texture) ?? new Set()).add(map.alpha));
      }
    }
    await Promise.all([...wanted].map(([texture, uses]) => this.loadOne(texture, uses)));
    for (const look of looks) look.maps = look.maps.map((map) => (map && this.textures.has(map.texture + '/' + map.alpha) ? map : undefined));
  }

  private async loadOne(texture: number, uses: Set<AlphaUse>): Promise<void> {
    try {
      const image = this.gltf.item('images', this.gltf.item('textures', texture).source);
      const blob = new Blob([this.gltf.bytesOf(image.bufferView) as BlobPart], { type: image.mimeType });
      const bitmap = await createImageBitmap(blob, { premultiplyAlpha: 'none', colorSpaceConversion: 'none' });
      for (const use of uses) this.textures.set(texture + '/' + use, this.upload(bitmap, use, image.mimeType !== 'image/jpeg'));
      bitmap.close();
    } catch (error) {
      // The scene is worth showing without it.
      console.warn('texture', texture, error);
    }
  }

  private upload(bitmap: ImageBitmap, use: AlphaUse, hasAlpha: boolean): WebGLTexture {
    const { gl } = this;
    let texture = fromBitmap(gl, bitmap);
    if (use === AlphaUse.Opacity || (use === AlphaUse.Multiplied && hasAlpha))
      texture = this.converted(texture, bitmap.width, bitmap.height, use === AlphaUse.Opacity);
    gl.bindTexture(gl.TEXTURE_2D, texture);
    gl.generateMipmap(gl.TEXTURE_2D);
    return texture;
  }

  private converted(from: WebGLTexture, width: number, height: number, opacity: boolean): WebGLTexture {
    const { gl } = this;
    const to = gl.createTexture()!;
    const levels = Math.floor(Math.log2(Math.max(width, height))) + 1;
    gl.bindTexture(gl.TEXTURE_2D, to);
    gl.texStorage2D(gl.TEXTURE_2D, levels, gl.RGBA8, width, height);
    const frame = gl.createFramebuffer();
    gl.bindFramebuffer(gl.FRAMEBUFFER, frame);
    gl.framebufferTexture2D(gl.FRAMEBUFFER, gl.COLOR_ATTACHMENT0, gl.TEXTURE_2D, to, 0);
    this.converter ??= new Program(gl, coverVertex, texelFragment);
    this.converter.use();
    gl.uniform1i(this.converter.at('uOpacity'), opacity ? 1 : 0);
    gl.activeTexture(gl.TEXTURE0);
    gl.bindTexture(gl.TEXTURE_2D, from);
    gl.bindSampler(0, null);
    gl.viewport(0, 0, width, height);
    gl.disable(gl.BLEND);
    gl.disable(gl.DEPTH_TEST);
    gl.bindVertexArray(null);
    gl.drawArrays(gl.TRIANGLES, 0, 3);
    gl.bindFramebuffer(gl.FRAMEBUFFER, null);
    gl.deleteFramebuffer(frame);
    gl.deleteTexture(from);
    return to;
  }

  /** Binds the maps of a look to the texture units of their numbers. */
  bind(look: Look): void {
    const { gl } = this;
    look.maps.forEach((map, unit) => {
      if (!map) return;
      gl.activeTexture(gl.TEXTURE0 + unit);
      gl.bindTexture(gl.TEXTURE_2D, this.textures.get(map.texture + '/' + map.alpha)!);
      gl.bindSampler(unit, this.sampler(map.wrap, unit !== Kind.Reflection));
    });
  }

  /** Without mipmaps for reflections: where their angle jumps by a whole turn too coarse a level would be chosen. */
  private sampler(wrap: number, mipmaps: boolean): WebGLSampler {
    const { gl, anisotropic } = this;
    const key = wrap + '/' + mipmaps;
    let sampler = this.samplers.get(key);
    if (sampler) return sampler;
    sampler = gl.createSampler()!;
    gl.samplerParameteri(sampler, gl.TEXTURE_WRAP_S, wrap);
    gl.samplerParameteri(sampler, gl.TEXTURE_WRAP_T, wrap);
    gl.samplerParameteri(sampler, gl.TEXTURE_MAG_FILTER, gl.LINEAR);
    gl.samplerParameteri(sampler, gl.TEXTURE_MIN_FILTER, mipmaps ? gl.LINEAR_MIPMAP_LINEAR : gl.LINEAR);
    if (anisotropic && mipmaps) gl.samplerParameterf(sampler, anisotropic.TEXTURE_MAX_ANISOTROPY_EXT, kAnisotropy);
    this.samplers.set(key, sampler);
    return sampler;
  }
}

/** A picture as a texture, without smaller levels. */
export function fromBitmap(gl: WebGL2RenderingContext, bitmap: ImageBitmap): WebGLTexture {
  const texture = gl.createTexture()!;
  gl.activeTexture(gl.TEXTURE0);
  gl.bindTexture(gl.TEXTURE_2D, texture);
  gl.pixelStorei(gl.UNPACK_COLORSPACE_CONVERSION_WEBGL, gl.NONE);
  gl.texImage2D(gl.TEXTURE_2D, 0, gl.RGBA8, gl.RGBA, gl.UNSIGNED_BYTE, bitmap);
  return texture;
}
