// SPDX-License-Identifier: MIT
import { demand } from './trouble.ts';

type Uniform = WebGLUniformLocation | null;

/** A linked program. Whether that succeeded is asked at its first use, so that programs are made beside each other. */
export class Program {
  private readonly program: WebGLProgram;
  private readonly uniforms = new Map<string, Uniform>();
  private checked = false;

  constructor(
    private readonly gl: WebGL2RenderingContext,
    vertex: string,
    fragment: string,
    defines: readonly string[] = [],
  ) {
    const head = '#version 300 es\n' + defines.map((d) => `#define ${d}\n`).join('');
    this.program = gl.createProgram()!;
    for (const [kind, source] of [
      [gl.VERTEX_SHADER, vertex],
      [gl.FRAGMENT_SHADER, fragment],
    ] as const) {
      const shader = gl.createShader(kind)!;
      gl.shaderSource(shader, head + source);
      gl.compileShader(shader);
      gl.attachShader(this.program, shader);
    }
    gl.linkProgram(this.program);
  }

  use(): void {
    const { gl, program } = this;
    if (!this.checked) {
      this.checked = true;
      const linked = gl.getProgramParameter(program, gl.LINK_STATUS) || gl.isContextLost();
      if (!linked) console.error(gl.getProgramInfoLog(program), ...(gl.getAttachedShaders(program) ?? []).map((s) => gl.getShaderInfoLog(s)));
      demand(linked, 'shader');
    }
    gl.useProgram(program);
  }

  at(name: string): Uniform {
    let found = this.uniforms.get(name);
    if (found === undefined) {
      found = this.gl.getUniformLocation(this.program, name);
      this.uniforms.set(name, found);
    }
    return found;
  }

  vec2(name: string, values: Iterable<number>): void {
    this.gl.uniform2fv(this.at(name), [...values]);
  }
  vec3(name: string, values: Iterable<number>): void {
    this.gl.uniform3fv(this.at(name), [...values]);
  }
  vec4(name: string, values: Iterable<number>): void {
    this.gl.uniform4fv(this.at(name), [...values]);
  }
}
