// Coordinates are the file's axes after the turning of the model, with the eye as origin.
uniform mat4 uModelView, uProjection;
uniform mat3 uNormal;
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
void main() {
  vec3 at = aPosition;
  vec3 normal = aNormal;
  if (MORPH) {
    at += uMorph.x * aPosition1 + uMorph.y * aPosition2;
    normal += uMorph.x * aNormal1 + uMorph.y * aNormal2;
  }
  vec4 point = uModelView * vec4(at, 1);
  vPoint = point.xyz;
  vNormal = uNormal * normal;
  vUv = aUv;
  gl_Position = uProjection * point;
  // Lines have no back side of their own: those of triangles that face away go out of the picture.
  if (LINES && !TWO_SIDED) if (dot(uNormal * aFace, vPoint) >= 0.) gl_Position = vec4(2, 2, 2, 1);
}
