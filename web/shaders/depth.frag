// How far before the eye, along the line of sight, as the four bytes of a float.
precision highp float;
out vec4 oColor;
void main() {
  uint bits = floatBitsToUint(1. / gl_FragCoord.w);
  oColor = vec4(uvec4(bits, bits >> 8, bits >> 16, bits >> 24) & 255u) / 255.;
}
