// A triangle that covers the whole target.
out vec2 vAt;
void main() {
  vAt = vec2(gl_VertexID & 1, gl_VertexID >> 1) * 2.;
  gl_Position = vec4(vAt * 2. - 1., 1, 1);
}
