// The depth of what is seen, in three bytes.
precision highp float;
out vec4 oColor;
void main() {
  vec3 digits = fract(gl_FragCoord.z * vec3(1, 255, 65025));
  oColor = vec4(digits - digits.yzz * vec3(1. / 255., 1. / 255., 0), 1);
}
