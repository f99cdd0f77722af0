// Turns a picture into one with alpha as it counts: nearly solid is solid, nearly clear is clear. OPACITY: its brightness is
// the opacity; else its colours are multiplied by alpha.
precision highp float;
uniform highp sampler2D uPicture;
out vec4 oColor;
float Counted(float alpha) {
  return alpha > 249.5 / 255. ? 1. : alpha < 5.5 / 255. ? 0. : alpha;
}
void main() {
  vec4 texel = texelFetch(uPicture, ivec2(gl_FragCoord.xy), 0);
  float alpha = Counted(texel.a);
#ifdef OPACITY
  oColor = vec4(vec3(Counted(dot(texel.rgb, vec3(.299, .587, .114)))), alpha);
#else
  oColor = vec4(texel.rgb * alpha, alpha);
#endif
}
