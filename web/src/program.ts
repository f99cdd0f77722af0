// SPDX-License-Identifier: MIT
import { Gl, type Context } from './gl.ts';
import { demand } from './texts.ts';

/** A linked program. */
export interface Program {
  /** Whether it is linked is asked at the first use, so that programs are made beside each other. */
  use(): void;
  /** Sets two numbers, a 3x3 matrix (9) or 4x4 matrices (16). */
  uniform(name: string, values: readonly number[]): void;
}

/** The macros of the shaders in the order of their values; those left out are false. */
const kMacros =
  'MORPH LINES LIGHTS TEXTURE TEXTURE2 OPACITY SPECULAR SHININESS SELFILLUMINATION BUMP REFLECTION GLOSSY TINTED FLAT TWO_SIDED SOLID TRANSLUCENT'.split(' ');

export function makeProgram(gl: Context, vertex: string, fragment: string, macros: readonly (boolean | number)[]): Program {
  const program = gl.createProgram()!;
  const uniforms: Record<string, WebGLUniformLocation | null> = {};
  let checked = false;
  const compile = (kind: number, source: string): void => {
    const shader = gl.createShader(kind)!;
    gl.shaderSource(shader, ['#version 300 es', ...kMacros.map((name, i) => `#define ${name} ${macros[i] ?? false}`), source].join('\n'));
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
    uniform(name, values) {
      const at = (uniforms[name] ??= gl.getUniformLocation(program, name));
      if (values.length === 2) gl.uniform2fv(at, values);
      else if (values.length === 9) gl.uniformMatrix3fv(at, false, values);
      else gl.uniformMatrix4fv(at, false, values);
    },
  };
}
