// Coordinates are the file's axes after the turning of the model, with the eye as origin.
uniform mat4 uModelView, uProjection;
// -1 where the model-view matrix mirrors: that may not turn normals over.
uniform float uMirror;
uniform vec2 uMorph;
layout(location = 0) in vec3 aPosition;
layout(location = 1) in vec3 aNormal;
layout(location = 2) in vec2 aUv;
layout(location = 3) in vec3 aFace;
layout(location = 4) in vec3 aPosition1;
layout(location = 5) in vec3 aNormal1;
layout(location = 6) in vec3 aPosition2;
layout(location = 7) in vec3 aNormal2;
out vec3 vPoint, vNormal;
out vec2 vUv;
// Of directions: the inverse transposed times the determinant is made of the cross products of columns.
vec3 Turned(vec3 v) {
  mat3 m = mat3(uModelView);
  v = mat3(cross(m[1], m[2]), cross(m[2], m[0]), cross(m[0], m[1])) * v * uMirror;
  return v * inversesqrt(max(dot(v, v), 1e-37));
}
void main() {
  vec3 at = aPosition;
  vec3 normal = aNormal;
#ifdef MORPH
  at += uMorph.x * aPosition1 + uMorph.y * aPosition2;
  normal += uMorph.x * aNormal1 + uMorph.y * aNormal2;
#endif
  vec4 point = uModelView * vec4(at, 1);
  vPoint = point.xyz;
  vNormal = Turned(normal);
  vUv = aUv;
  gl_Position = uProjection * point;
#if defined(LINES) && !defined(TWO_SIDED)
  // Lines have no back side of their own: those of triangles that face away go out of the picture.
  if (dot(Turned(aFace), vPoint) >= 0.) gl_Position = vec4(2, 2, 2, 1);
#endif
}
