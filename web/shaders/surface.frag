precision highp float;
in vec3 vPoint, vNormal;
in vec2 vUv;
out vec4 oColor;
uniform vec4 uDiffuse, uSpecular;
uniform vec3 uAmbient, uAmbientLight;
uniform float uSelf;
#ifdef LIGHTS
uniform vec4 uLightPosition[LIGHTS], uLightDirection[LIGHTS];
uniform vec3 uLightColor[LIGHTS];
uniform vec2 uLightRange[LIGHTS];
#endif
#ifdef MAPS
uniform sampler2D uMap[8];
uniform vec3 uMapS[8], uMapT[8];
uniform vec4 uMapValue[8], uMapWeight[8];
vec2 Coordinates(int i, vec2 uv) {
  return vec2(dot(uMapS[i], vec3(uv, 1)), dot(uMapT[i], vec3(uv, 1)));
}
// The map's amount; 0 outside one that is not tiled.
float Amount(int i, vec2 at) {
  vec2 away = abs(at - .5);
  return uMapValue[i].w > .5 && max(away.x, away.y) > .5 ? 0. : uMapValue[i].x;
}
float Value(int i, vec4 color) {
  return dot(uMapWeight[i], color) * uMapValue[i].y + uMapValue[i].z;
}
vec3 Colour(int i, vec4 color) {
  return color.rgb * uMapValue[i].y + uMapValue[i].z;
}
#endif
void main() {
  vec3 V = normalize(-vPoint);
#ifdef FLAT
  vec3 N = normalize(cross(dFdx(vPoint), dFdy(vPoint)));
#else
  // A zero normal stays zero instead of becoming undefined.
  vec3 N = vNormal * inversesqrt(max(dot(vNormal, vNormal), 1e-30));
#ifdef TWO_SIDED
  // By the normal, not by the winding: neighbours of such surfaces are often wound against each other.
  if (dot(N, V) < 0.) N = -N;
#endif
#endif
  float opacity = uDiffuse.w, self = uSelf;
  vec3 diffuse = uDiffuse.rgb, specular = uSpecular.rgb, ambient = uAmbient;
  vec2 at;
  vec4 texel;
  float amount;
#ifdef BUMP
  {
    at = Coordinates(6, vUv);
    vec2 stepX = dFdx(at), stepY = dFdy(at);
    float here = Value(6, texture(uMap[6], at));
    float right = Value(6, texture(uMap[6], at + stepX)) - here;
    float up = Value(6, texture(uMap[6], at + stepY)) - here;
    vec3 alongX = dFdx(vPoint), alongY = dFdy(vPoint);
    vec3 fromX = cross(alongY, N), fromY = cross(N, alongX);
    float area = dot(alongX, fromX);
    // Heights are measured in tiles of the map, so a bump looks the same whatever the model's units are.
    float tile = sqrt(abs(area) / max(abs(stepX.x * stepY.y - stepX.y * stepY.x), 1e-20));
    vec3 slope = (area < 0. ? -1. : 1.) * (right * fromX + up * fromY);
    vec3 bent = abs(area) * N - .03 * Amount(6, at) * tile * slope;
    N = bent * inversesqrt(max(dot(bent, bent), 1e-30));
  }
#endif
#ifdef TEXTURE
  at = Coordinates(0, vUv);
  texel = texture(uMap[0], at);
  // Colours are premultiplied where alpha counts, so that transparent pixels do not bleed into the edges.
  texel.rgb /= max(mix(1., texel.a, uMapWeight[0].z + uMapWeight[0].w), .004);
  amount = Amount(0, at) * mix(1., texel.a, uMapWeight[0].z);
  diffuse = mix(diffuse, Colour(0, texel), amount);
  ambient = mix(ambient, Colour(0, texel), amount);
  opacity *= mix(1., texel.a, amount * uMapWeight[0].w);
#endif
#ifdef TEXTURE2
  at = Coordinates(1, vUv);
  texel = texture(uMap[1], at);
  texel.rgb /= max(mix(1., texel.a, uMapWeight[1].z), .004);
  amount = Amount(1, at) * mix(1., texel.a, uMapWeight[1].z);
  diffuse = mix(diffuse, Colour(1, texel), amount);
  ambient = mix(ambient, Colour(1, texel), amount);
#endif
#ifdef OPACITY
  at = Coordinates(2, vUv);
  opacity = mix(opacity, Value(2, texture(uMap[2], at)), Amount(2, at));
#endif
#ifdef SPECULAR_MAP
  at = Coordinates(3, vUv);
  specular = mix(specular, Colour(3, texture(uMap[3], at)) * uMapWeight[3].x, Amount(3, at));
#endif
#ifdef SHININESS
  at = Coordinates(4, vUv);
  specular *= mix(1., Value(4, texture(uMap[4], at)), Amount(4, at));
#endif
#ifdef TINTED
  specular *= diffuse;
#endif
#ifdef SELF
  at = Coordinates(5, vUv);
  self = mix(self, Value(5, texture(uMap[5], at)), Amount(5, at));
#endif
#ifdef SOLID
  if (opacity * 255. < 249.5) discard;
  opacity = 1.;
#endif
#ifdef TRANSLUCENT
  if (opacity * 255. >= 249.5) discard;
#endif
  vec3 color = self * diffuse + uAmbientLight * ambient;
#ifdef LIGHTS
  for (int i = 0; i < LIGHTS; ++i) {
    vec3 L = uLightPosition[i].xyz - vPoint;
    float distance = length(L);
    L /= max(distance, 1e-20);
    vec3 light = uLightColor[i];
    light *= smoothstep(uLightPosition[i].w, uLightDirection[i].w, -dot(L, uLightDirection[i].xyz));
    light *= clamp((uLightRange[i].y - distance) / (uLightRange[i].y - uLightRange[i].x), 0., 1.);
    float facing = max(dot(N, L), 0.);
    vec3 reflected = diffuse * facing;
#ifdef SPECULAR
    vec3 H = L + V;
    float highlight = max(dot(N, H * inversesqrt(max(dot(H, H), 1e-20))), 1e-4);
    if (facing > 0.) reflected += specular * pow(highlight, uSpecular.w);
#endif
    color += light * reflected;
  }
#else
  float facing = max(dot(N, V), 0.);
  color += diffuse * facing;
#ifdef SPECULAR
  color += specular * pow(max(facing, 1e-4), uSpecular.w);
#endif
#endif
#ifdef REFLECTION
  {
    vec3 R = reflect(-V, N);
    // The picture's rows count downwards.
    at = vec2(atan(R.y, R.x) * .15915494 + .5, .5 - asin(clamp(R.z, -1., 1.)) * .31830989);
    at = Coordinates(7, at);
    color += Colour(7, texture(uMap[7], at)) * Amount(7, at);
  }
#endif
  // Multiplied here, as a colour is clipped at white before the blending: highlights on glass would lose theirs.
  oColor = vec4(color * opacity, opacity);
}
