// SPDX-License-Identifier: MIT
import backdropFragment from '../shaders/backdrop.frag';
import coverVertex from '../shaders/cover.vert';
import { Program } from './program.ts';
import { fromBase64 } from './scene_data.ts';
import { fromBitmap } from './textures.ts';

/** The picture behind the scene. It covers the view, its middle in the view's middle. */
export class Backdrop {
  private texture: WebGLTexture | undefined;
  private program: Program | undefined;
  private aspect = 1;

  constructor(
    private readonly gl: WebGL2RenderingContext,
    private readonly address: string,
  ) {}

  async load(): Promise<void> {
    const found = /^data:([\w/+-]+);base64,/.exec(this.address);
    if (!found) return;
    const { gl } = this;
    try {
      const bytes = fromBase64(this.address.slice(found[0].length));
      const bitmap = await createImageBitmap(new Blob([bytes as BlobPart], { type: found[1] }), { premultiplyAlpha: 'none' });
      this.aspect = bitmap.width / bitmap.height;
      this.texture = fromBitmap(gl, bitmap);
      gl.generateMipmap(gl.TEXTURE_2D);
      for (const side of [gl.TEXTURE_WRAP_S, gl.TEXTURE_WRAP_T]) gl.texParameteri(gl.TEXTURE_2D, side, gl.CLAMP_TO_EDGE);
      this.program = new Program(gl, coverVertex, backdropFragment);
    } catch {
      // The background stays plain.
    }
  }

  /** aspect: of the view. */
  draw(aspect: number): void {
    const { gl, program, texture } = this;
    if (!texture || !program) return;
    const wider = aspect / this.aspect;
    program.use();
    program.vec2('uPart', [Math.min(1, wider), Math.min(1, 1 / wider)]);
    gl.activeTexture(gl.TEXTURE0);
    gl.bindTexture(gl.TEXTURE_2D, texture);
    gl.bindSampler(0, null);
    gl.disable(gl.DEPTH_TEST);
    gl.disable(gl.CULL_FACE);
    gl.enable(gl.BLEND);
    gl.blendFunc(gl.ONE, gl.ONE_MINUS_SRC_ALPHA);
    gl.drawArrays(gl.TRIANGLES, 0, 3);
  }
}
