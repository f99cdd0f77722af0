precision highp float;
in vec3 vPoint, vNormal;
in vec2 vUv;
out vec4 oColor;
// Diffuse and opacity; specular and exponent; ambient and self-illumination; the scene's ambient light.
uniform mat4 uLook;
// Position and outer cosine; direction and inner cosine; colour and inner range; outer range.
uniform mat4 uLights[8];
uniform sampler2D uMap[8];
// Rows of the coordinates' transform, each with amount and "not tiled"; weights of the channels; sign and bias.
uniform mat4 uMaps[8];
// Of the map that was taken last.
mat4 map;
vec4 texel;
// 0 outside one that is not tiled.
float amount;
vec2 Coordinates(int i, vec2 uv) {
  map = uMaps[i];
  return (vec4(uv, 1, 0) * map).xy;
}
void Take(sampler2D picture, int i, vec2 uv) {
  vec2 at = Coordinates(i, uv), away = abs(at - .5);
  texel = texture(picture, at);
  amount = map[1].w > .5 && max(away.x, away.y) > .5 ? 0. : map[0].w;
}
float Value() {
  return dot(map[2], texel) * map[3].x + map[3].y;
}
vec3 Colour() {
  return texel.rgb * map[3].x + map[3].y;
}
vec3 diffuse, ambient;
float opacity;
// Lays a picture over the colours. What its alpha weighs: z lets them show, w makes transparent.
void Lay(sampler2D picture, int i) {
  Take(picture, i, vUv);
  // Colours are premultiplied where alpha counts, so that transparent pixels do not bleed into the edges.
  texel.rgb /= max(mix(1., texel.a, map[2].z + map[2].w), .004);
  amount *= mix(1., texel.a, map[2].z);
  diffuse = mix(diffuse, Colour(), amount);
  ambient = mix(ambient, Colour(), amount);
  opacity *= mix(1., texel.a, amount * map[2].w);
}
// A zero vector stays zero instead of becoming undefined.
vec3 Unit(vec3 v) {
  return v * inversesqrt(max(dot(v, v), 1e-30));
}
vec3 V, N, specular, color;
// facing, gloss: cosines between the normal and the way to the light, and the way between that and the way to the eye.
void Shine(vec3 light, float facing, float gloss) {
  if (facing > 0.) {
    color += light * diffuse * facing;
    if (GLOSSY) color += light * specular * pow(max(gloss, 1e-4), uLook[1].w);
  }
}
void Light(int i) {
  mat4 lamp = uLights[i];
  vec3 L = lamp[0].xyz - vPoint;
  float distance = length(L);
  L /= max(distance, 1e-20);
  float light = smoothstep(lamp[0].w, lamp[1].w, -dot(L, lamp[1].xyz)) * clamp((lamp[3].x - distance) / (lamp[3].x - lamp[2].w), 0., 1.);
  Shine(lamp[2].rgb * light, dot(N, L), dot(N, Unit(L + V)));
}
void main() {
  V = normalize(-vPoint);
  vec3 alongX = dFdx(vPoint), alongY = dFdy(vPoint);
  N = FLAT ? normalize(cross(alongX, alongY)) : Unit(vNormal);
  // By the normal, not by the winding: neighbours of such surfaces are often wound against each other.
  if (TWO_SIDED) if (dot(N, V) < 0.) N = -N;
  opacity = uLook[0].w;
  diffuse = uLook[0].rgb;
  ambient = uLook[2].rgb;
  specular = uLook[1].rgb;
  float self = uLook[2].w;
  if (BUMP) {
    vec2 at = Coordinates(6, vUv), stepX = dFdx(at), stepY = dFdy(at);
    texel = texture(uMap[6], at + stepX);
    float right = Value();
    texel = texture(uMap[6], at + stepY);
    float up = Value();
    Take(uMap[6], 6, vUv);
    float here = Value();
    vec3 fromX = cross(alongY, N), fromY = cross(N, alongX);
    float area = dot(alongX, fromX);
    // Heights are measured in tiles of the map, so a bump looks the same whatever the model's units are.
    float tile = sqrt(abs(area) / max(abs(stepX.x * stepY.y - stepX.y * stepY.x), 1e-20));
    vec3 slope = sign(area) * ((right - here) * fromX + (up - here) * fromY);
    N = Unit(abs(area) * N - .03 * amount * tile * slope);
  }
  if (TEXTURE) Lay(uMap[0], 0);
  if (TEXTURE2) Lay(uMap[1], 1);
  if (OPACITY) {
    Take(uMap[2], 2, vUv);
    opacity = mix(opacity, Value(), amount);
  }
  // Nearly clear is clear, as pictures of lossy formats mean it.
  if (opacity < 5.5 / 255.) opacity = 0.;
  if (SPECULAR) {
    Take(uMap[3], 3, vUv);
    specular = mix(specular, Colour() * map[2].x, amount);
  }
  if (SHININESS) {
    Take(uMap[4], 4, vUv);
    specular *= mix(1., Value(), amount);
  }
  if (SELFILLUMINATION) {
    Take(uMap[5], 5, vUv);
    self = mix(self, Value(), amount);
  }
  if (TINTED) specular *= diffuse;
  if (SOLID || TRANSLUCENT) if ((opacity * 255. < 249.5) == SOLID) discard;
  if (SOLID) opacity = 1.;
  color = self * diffuse + uLook[3].rgb * ambient;
  // Software renderers take a fifth longer for the same in a loop.
  if (LIGHTS > 0) Light(0);
  if (LIGHTS > 1) Light(1);
  if (LIGHTS > 2) Light(2);
  if (LIGHTS > 3) Light(3);
  if (LIGHTS > 4) Light(4);
  if (LIGHTS > 5) Light(5);
  if (LIGHTS > 6) Light(6);
  if (LIGHTS > 7) Light(7);
  if (LIGHTS < 1) Shine(vec3(1), dot(N, V), dot(N, V));
  if (REFLECTION) {
    vec3 R = reflect(-V, N);
    // The picture's rows count downwards.
    Take(uMap[7], 7, vec2(atan(R.y, R.x) * .15915494, -asin(clamp(R.z, -1., 1.)) * .31830989) + .5);
    color += Colour() * amount;
  }
  // Multiplied here, as a colour is clipped at white before the blending: highlights on glass would lose theirs.
  oColor = vec4(color * opacity, opacity);
}
