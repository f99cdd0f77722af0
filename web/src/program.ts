// SPDX-License-Identifier: MIT
import { Gl, type Context } from './gl.ts';
import { demand } from './texts.ts';

/** A linked program. */
export interface Program {
  /** Whether it is linked is asked at the first use, so that programs are made beside each other. */
  use(): void;
  /** Sets a vector or an array of them by the count of their components, or a 4x4 matrix (16). */
  set(name: string, components: 1 | 2 | 3 | 4 | 16, values: readonly number[]): void;
}

export function makeProgram(gl: Context, vertex: string, fragment: string, defines: readonly string[] = []): Program {
  const program = gl.createProgram()!;
  const uniforms: Record<string, WebGLUniformLocation | null> = {};
  let checked = false;
  const compile = (kind: number, source: string): void => {
    const shader = gl.createShader(kind)!;
    gl.shaderSource(shader, ['#version 300 es', ...defines.map((d) => '#define ' + d), source].join('\n'));
    gl.compileShader(shader);
    gl.attachShader(program, shader);
  };
  compile(Gl.VertexShader, vertex);
  compile(Gl.FragmentShader, fragment);
  gl.linkProgram(program);
  return {
    use() {
      gl.useProgram(program);
      if (checked) return;
      checked = true;
      demand(gl.getProgramParameter(program, Gl.LinkStatus) || gl.isContextLost());
      gl.uniform1iv(gl.getUniformLocation(program, 'uMap'), [0, 1, 2, 3, 4, 5, 6, 7]);
    },
    set(name, components, values) {
      const at = (uniforms[name] ??= gl.getUniformLocation(program, name));
      if (components === 16) gl.uniformMatrix4fv(at, false, values);
      else gl[`uniform${components}fv`](at, values);
    },
  };
}
