// The picture behind the scene, which covers the view.
precision highp float;
uniform highp sampler2D uPicture;
uniform vec2 uPart;
in vec2 vAt;
out vec4 oColor;
void main() {
  vec2 at = vec2(vAt.x, 1. - vAt.y) - .5;
  oColor = texture(uPicture, at * uPart + .5);
  oColor.rgb *= oColor.a;
}
