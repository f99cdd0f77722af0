// Orbivue's viewer with code of meshoptimizer, (C) Arseny Kapoulkine. MIT licence.
"use strict";
(() => {
  // src/dom.ts
  var make = (tag, properties) => Object.assign(document.createElement(tag), properties);
  var label = (element, text) => element.setAttribute("aria-label", text);

  // src/texts.ts
  var Trouble = class extends Error {
  };
  function demand(condition) {
    if (!condition) throw Error("demand");
  }

  // src/scene_data.ts
  var kMostBytes = 1 << 30;
  var fromBase64 = (text) => Uint8Array.from(atob(text), (c) => c.charCodeAt(0));
  var bytesOf = async (response) => new Uint8Array(await response.arrayBuffer());
  async function unpacked(bytes, most = kMostBytes) {
    if (bytes[0] !== 31 || bytes[1] !== 139) return bytes;
    if (!globalThis.DecompressionStream) throw new Trouble("noUnpacking");
    const end = bytes.length - 4;
    demand(end > 0 && new DataView(bytes.buffer, end).getUint32(0, true) <= most);
    const stream = new Blob([bytes]).stream().pipeThrough(new DecompressionStream("gzip"));
    return bytesOf(new Response(stream));
  }
  var fromScript = (address) => new Promise((resolve, reject) => {
    window.orbivueScene = (text) => resolve(fromBase64(text));
    const missed = () => reject(new Trouble("noScene"));
    document.head.append(make("script", { src: address, onload: missed, onerror: missed }));
  });
  async function fromServer(address) {
    const response = await fetch(address).catch(() => void 0);
    if (!response?.ok) throw new Trouble("noScene");
    return bytesOf(response);
  }
  async function sceneBytes({ files }) {
    if (!files) return unpacked(fromBase64(document.getElementById("scene").textContent));
    return unpacked(await (location.protocol === "file:" ? fromScript(files.script) : fromServer(files.scene)));
  }

  // third_party/meshoptimizer/decode.ts
  var dezig = (v) => v >>> 1 ^ -(v & 1);
  var kModeBits = [0, 2, 4, 8];
  function decodeGroup(source, from, mode, deltas, to) {
    const bits = kModeBits[mode];
    if (bits === 0) return from;
    if (bits === 8) {
      deltas.set(source.subarray(from, from + 16), to);
      return from + 16;
    }
    let next = from + 2 * bits;
    const most = (1 << bits) - 1;
    for (let m = 0; m < 16; m++) {
      const at = m * bits;
      const delta = source[from + (at >>> 3)] >>> 8 - bits - (at & 7) & most;
      deltas[to + m] = delta === most ? source[next++] : delta;
    }
    return next;
  }
  function decodeAttributes(count, stride, source) {
    demand(source[0] === 160 && stride > 0 && stride <= 256 && stride % 4 === 0);
    demand(count * stride / 64 <= source.length);
    const target = new Uint8Array(count * stride);
    const blockSize = Math.min(8192 / stride & ~15, 256);
    const deltas = new Uint8Array(blockSize * stride);
    const tail = source.length - stride;
    const last = source.slice(tail);
    let from = 1;
    for (let base = 0; base < count; base += blockSize) {
      const elements = Math.min(count - base, blockSize);
      const groups = elements + 15 >>> 4;
      deltas.fill(0);
      for (let byte = 0; byte < stride; byte++) {
        const header = from;
        from += groups + 3 >>> 2;
        demand(from <= tail);
        for (let g = 0; g < groups; g++) {
          const mode = source[header + (g >>> 2)] >>> ((g & 3) << 1) & 3;
          from = decodeGroup(source, from, mode, deltas, byte * blockSize + g * 16);
        }
      }
      demand(from <= tail);
      for (let byte = 0; byte < stride; byte++) {
        let value = last[byte];
        const first = byte * blockSize;
        for (let e = 0, to = base * stride + byte; e < elements; e++, to += stride)
          target[to] = value = value + dezig(deltas[first + e]) & 255;
        last[byte] = value;
      }
    }
    return target;
  }
  function filterOctahedral(bytes) {
    const data = new Int8Array(bytes.buffer, bytes.byteOffset, bytes.length & ~3);
    for (let i = 0; i < data.length; i += 4) {
      const one = data[i + 2] || 1;
      let x = data[i] / one;
      let y = data[i + 1] / one;
      const z = 1 - Math.abs(x) - Math.abs(y);
      const t = Math.max(-z, 0);
      x -= x >= 0 ? t : -t;
      y -= y >= 0 ? t : -t;
      const h = 127 / Math.sqrt(x * x + y * y + z * z);
      data[i] = Math.round(x * h);
      data[i + 1] = Math.round(y * h);
      data[i + 2] = Math.round(z * h);
    }
  }
  function filterExponential(bytes) {
    const from = new Int32Array(bytes.buffer, bytes.byteOffset, bytes.length >> 2);
    const to = new Float32Array(bytes.buffer, bytes.byteOffset, bytes.length >> 2);
    for (let i = 0; i < from.length; i++) {
      const v = from[i];
      to[i] = 2 ** (v >> 24) * (v << 8 >> 8);
    }
  }
  function decodeTriangles(count, source) {
    const triangles = count / 3;
    demand(source[0] === 225 && count % 3 === 0 && triangles + 17 <= source.length);
    const target = new Uint32Array(count);
    const aux = source.length - 16;
    const edges = new Uint32Array(32);
    const vertices = new Uint32Array(16);
    let edgeAt = 0;
    let vertexAt = 0;
    let data = 1 + triangles;
    let next = 0;
    let last = 0;
    let to = 0;
    const edge = (n) => edges[edgeAt - 1 - n & 31];
    const vertex = (n) => vertices[vertexAt - 1 - n & 15];
    const pushEdge = (a, b) => {
      edges[edgeAt] = a;
      edges[edgeAt + 1] = b;
      edgeAt = edgeAt + 2 & 31;
    };
    const push = (v) => {
      vertices[vertexAt] = v;
      vertexAt = vertexAt + 1 & 15;
      return v;
    };
    const read = () => {
      let n = 0;
      for (let shift = 0; shift < 35; shift += 7) {
        demand(data < aux);
        const b = source[data++];
        n |= (b & 127) << shift;
        if (b < 128) break;
      }
      return last += dezig(n);
    };
    const corner = (code, far) => {
      if (code === 0) return next++;
      return far && code === 15 ? read() : vertex(code - 1);
    };
    for (let i = 0; i < triangles; i++) {
      const code = source[1 + i];
      const high = code >>> 4;
      const low = code & 15;
      let a;
      let b;
      let c;
      if (high < 15) {
        a = edge(high * 2);
        b = edge(high * 2 + 1);
        if (low === 0) c = push(next++);
        else if (low < 13) c = vertex(low);
        else if (low < 15) c = push(last += low === 13 ? -1 : 1);
        else c = push(read());
      } else {
        const far = low >= 14;
        const pair = far ? source[data++] : source[aux + low];
        if (far && pair === 0) next = 0;
        const z = pair >>> 4;
        const w = pair & 15;
        a = low === 15 ? read() : next++;
        b = corner(z, far);
        c = corner(w, far);
        push(a);
        if (!z || far && z === 15) push(b);
        if (!w || far && w === 15) push(c);
        pushEdge(a, b);
      }
      pushEdge(b, c);
      pushEdge(c, a);
      target[to++] = a;
      target[to++] = b;
      target[to++] = c;
    }
    demand(data <= aux);
    return target;
  }

  // src/gltf.ts
  var kMagic = 1179937895;
  var kArrays = [Int8Array, Uint8Array, Int16Array, Uint16Array, , Uint32Array, Float32Array];
  function readGltf(bytes) {
    const view2 = new DataView(bytes.buffer, bytes.byteOffset, bytes.length);
    const word = (at) => view2.getUint32(at, true);
    const chunk = (at) => {
      demand(word(at) <= bytes.length - at - 8);
      return bytes.subarray(at + 8, at + 8 + word(at));
    };
    demand(bytes.length > 20 && word(0) === kMagic && word(4) === 2);
    const text = chunk(12);
    const next = 20 + text.length;
    const json = JSON.parse(new TextDecoder().decode(text));
    return { json, bin: next + 8 <= bytes.length ? chunk(next) : new Uint8Array(), views: [] };
  }
  function slice({ bin }, { byteOffset = 0, byteLength }) {
    demand(byteOffset >= 0 && byteLength >= 0 && byteOffset + byteLength <= bin.length);
    return bin.subarray(byteOffset, byteOffset + byteLength);
  }
  function unpack(gltf, { count, byteStride, mode, filter, ...at }) {
    const source = slice(gltf, at);
    if (mode === "TRIANGLES") {
      const indices = decodeTriangles(count, source);
      return new Uint8Array(byteStride === 2 ? new Uint16Array(indices).buffer : indices.buffer);
    }
    const bytes = decodeAttributes(count, byteStride, source);
    if (filter === "OCTAHEDRAL") {
      demand(byteStride === 4);
      filterOctahedral(bytes);
    }
    if (filter === "EXPONENTIAL") filterExponential(bytes);
    return bytes;
  }
  function viewBytes(gltf, index) {
    const view2 = gltf.json.bufferViews[index];
    const packed = view2.extensions?.EXT_meshopt_compression;
    return gltf.views[index] ??= packed ? unpack(gltf, packed) : slice(gltf, view2);
  }
  function accessorOf(gltf, index) {
    const a = gltf.json.accessors[index];
    const { bufferView: view2, byteOffset: offset = 0, componentType: type, count, normalized: normalized2 = false, min: min2 = [], max: max2 = [] } = a;
    const json = gltf.json.bufferViews[view2];
    const unit = kArrays[type - 5120].BYTES_PER_ELEMENT;
    const components = +a.type[3] || 1;
    const stride = json.extensions?.EXT_meshopt_compression?.byteStride || json.byteStride || unit * components;
    const end = offset + (count - 1) * stride + unit * components;
    demand(count > 0 && offset >= 0 && offset % unit + stride % unit === 0 && end <= viewBytes(gltf, view2).length);
    return { view: view2, offset, stride, count, components, type, normalized: normalized2, min: min2, max: max2 };
  }
  function numbersOf(gltf, a) {
    const from = typed(gltf, a);
    const step = a.stride / from.BYTES_PER_ELEMENT;
    const result = new Float32Array(a.count * a.components);
    for (let i = 0, to = 0; i < a.count; i++) {
      for (let c = 0; c < a.components; c++) result[to++] = from[i * step + c];
    }
    return result;
  }
  function typed(gltf, { view: view2, offset, type }) {
    let bytes = viewBytes(gltf, view2).subarray(offset);
    const list = kArrays[type - 5120];
    if (bytes.byteOffset % list.BYTES_PER_ELEMENT) bytes = bytes.slice();
    return new list(bytes.buffer, bytes.byteOffset, Math.floor(bytes.length / list.BYTES_PER_ELEMENT));
  }
  function indicesOf(gltf, index, vertices) {
    const a = accessorOf(gltf, index);
    const result = typed(gltf, a).subarray(0, a.count);
    demand(a.components === 1 && a.count % 3 === 0 && result.every((i) => i < vertices));
    return result;
  }

  // src/vector.ts
  var { abs, max, min } = Math;
  var add = (a, b) => [a[0] + b[0], a[1] + b[1], a[2] + b[2]];
  var sub = (a, b) => [a[0] - b[0], a[1] - b[1], a[2] - b[2]];
  var scaled = (a, s) => [a[0] * s, a[1] * s, a[2] * s];
  var dot = (a, b) => a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
  var length = (a) => Math.hypot(a[0], a[1], a[2]);
  var cross = (a, b) => [
    a[1] * b[2] - a[2] * b[1],
    a[2] * b[0] - a[0] * b[2],
    a[0] * b[1] - a[1] * b[0]
  ];
  var normalized = (a, none = 1e-12) => {
    const l = length(a);
    return l > none ? scaled(a, 1 / l) : [0, 0, 0];
  };
  var clamp = (x, low, high) => min(max(x, low), high);
  var kDegree = Math.PI / 180;

  // src/animation.ts
  var kFramesPerSecond = 30;
  function readChannels(gltf, nodes) {
    const { animations = [] } = gltf.json;
    return animations.flatMap(
      ({ channels, samplers }) => channels.map(({ sampler, target }) => {
        const { input, output, interpolation } = samplers[sampler];
        const [times, values] = [input, output].map((a) => numbersOf(gltf, accessorOf(gltf, a)));
        demand(nodes[target.node] && values.length % times.length === 0);
        return { node: nodes[target.node], path: target.path, times, values, step: interpolation === "STEP" };
      })
    );
  }
  function keyAt(times, time) {
    let low = 0;
    for (let high = times.length - 1; low < high; ) {
      const middle = low + high + 1 >> 1;
      if (times[middle] <= time) low = middle;
      else high = middle - 1;
    }
    return low;
  }
  function sample({ times, values, step, path }, time) {
    const n = values.length / times.length;
    const key = keyAt(times, time);
    const from = [...values.subarray(key * n, key * n + n)];
    const share = (time - times[key]) / (times[key + 1] - times[key]);
    if (step || !(share > 0)) return from;
    let [a, b] = [1 - share, share];
    const to = values.subarray(key * n + n, key * n + 2 * n);
    if (path === "rotation") {
      const cosine = from.reduce((sum, x, i) => sum + x * to[i], 0);
      const angle = Math.acos(min(abs(cosine), 1));
      const sine = Math.sin(angle);
      if (sine > 1e-4) [a, b] = [Math.sin(a * angle) / sine, Math.sin(b * angle) / sine];
      if (cosine < 0) b = -b;
    }
    return from.map((x, i) => x * a + to[i] * b);
  }

  // src/camera.ts
  var kPresetTanY = Math.tan(22.5 * kDegree);
  var kSmallestSeen = 5e-4;
  var kLargestSeen = 40;
  var kMaxBoxZoom = 20;
  var kNearOfFar = 1 / 4e3;
  var kStepsOfE = 200;
  var kThird = Math.sqrt(1 / 3);
  var kPresets = {
    top_cam: ["top", [0, 0, 1], [0, 1, 0]],
    lft_cam: ["left", [-1, 0, 0]],
    rgt_cam: ["right", [1, 0, 0]],
    frt_cam: ["front", [0, -1, 0]],
    bck_cam: ["back", [0, 1, 0]],
    iso_cam: ["iso", [kThird, -kThird, kThird]]
  };
  function newCamera(center, radius) {
    const camera = { modelCenter: center, modelRadius: radius, viewWidth: 4, viewHeight: 3, own: radius };
    setPreset(camera, "iso_cam");
    return camera;
  }
  var aspectOf = (c) => c.viewWidth / c.viewHeight;
  function fitting(radius, aspect) {
    const t = kPresetTanY * min(1, aspect);
    return radius * Math.sqrt(1 + t * t) / t;
  }
  function setPreset(c, name) {
    const [, back, up = [0, 0, 1]] = kPresets[name];
    Object.assign(c, { name, backward: back, up, target: c.modelCenter, fits: true, zoomed: 1, tanX: 0, tanY: kPresetTanY });
  }
  function setFileCamera(c, camera) {
    Object.assign(c, { name: camera.name, fits: false, zoomed: 1, tanX: 0 });
    follow(c, camera);
  }
  function follow(c, { name, eye, target, rollDeg, fovDeg }) {
    if (name !== c.name || c.fits) return;
    const sight = sub(target, eye);
    c.own = length(sight) || c.modelRadius;
    c.target = add(eye, sight);
    c.backward = scaled(normalized(sight), -1);
    const right = normalized(cross(sight, sight[0] || sight[1] ? [0, 0, 1] : [-1, 0, 0]));
    const roll = rollDeg * kDegree;
    c.up = sub(scaled(cross(c.backward, right), Math.cos(roll)), scaled(right, Math.sin(roll)));
    c.tanY = Math.tan(clamp(fovDeg, 0.1, 175) * kDegree / 2) * 3 / 4;
  }
  function setSeen(c, { eye, target, up, fovYDeg, size, camera, preset }) {
    const aspect = size[0] / size[1];
    const sight = sub(eye, target);
    if (preset) setPreset(c, camera);
    else {
      const tanY = Math.tan(fovYDeg * kDegree / 2);
      Object.assign(c, { name: camera, target, fits: false, own: length(sight), tanX: tanY * aspect, tanY });
    }
    c.zoomed = c.fits ? length(sight) / fitting(c.modelRadius, aspect) : 1;
    c.backward = normalized(sight);
    c.up = up;
  }
  var distanceOf = (c) => c.zoomed * (c.fits ? fitting(c.modelRadius, aspectOf(c)) : c.own);
  var eyeOf = (c) => add(c.target, scaled(c.backward, distanceOf(c)));
  var tanOf = (c) => max(c.tanY, c.tanX / aspectOf(c));
  function axesOf({ backward: back, up }) {
    let right = cross(up, back);
    if (length(right) < 1e-9) right = cross(abs(back[2]) < 0.9 ? [0, 0, 1] : [0, 1, 0], back);
    right = normalized(right);
    return [right, cross(back, right), back];
  }
  var zoomBy = (c, step) => setDistance(c, distanceOf(c) * Math.exp(step / kStepsOfE));
  function setDistance(c, distance) {
    const now = distanceOf(c);
    const most = c.modelRadius / tanOf(c);
    const nearest = min(now, max(kSmallestSeen * most, c.modelRadius / 1e3));
    if (distance > 0) c.zoomed *= clamp(distance, nearest, max(now, kLargestSeen * most)) / now;
  }
  function rayOf(c, x, y) {
    const [right, up, back] = axesOf(c);
    const size = 2 * tanOf(c) / c.viewHeight;
    return sub(add(scaled(right, (x - c.viewWidth / 2) * size), scaled(up, (c.viewHeight / 2 - y) * size)), back);
  }
  function side(a, b, most, wider) {
    const [middle, half] = [(a + b) / 2, abs(a - b) / 2 * wider];
    return [max(0, middle - half), min(most, middle + half)];
  }
  function zoomTo(c, { x0, y0, x1, y1 }) {
    const larger = min(c.viewWidth / abs(x1 - x0), c.viewHeight / abs(y1 - y0));
    const wider = max(1, larger / kMaxBoxZoom);
    const [l, r] = side(x0, x1, c.viewWidth, wider);
    const [t, b] = side(y0, y1, c.viewHeight, wider);
    if (!(r > l && b > t && isFinite(larger))) return false;
    const eye = eyeOf(c);
    const middle = rayOf(c, (l + r) / 2, (t + b) / 2);
    const turned = { backward: scaled(normalized(middle), -1), up: axesOf(c)[1] };
    const [right, up, back] = axesOf(turned);
    const corners = [rayOf(c, l, t), rayOf(c, r, t), rayOf(c, l, b), rayOf(c, r, b)];
    const seen = (axis) => max(...corners.map((v) => abs(dot(v, axis) / dot(v, back))));
    const own = distanceOf(c) * length(middle);
    Object.assign(c, turned, { name: "", fits: false, zoomed: 1, own, target: sub(eye, scaled(back, own)), tanX: seen(right), tanY: seen(up) });
    return true;
  }
  function depthRange(c, nearest, farthest) {
    const far = farthest > 0 ? farthest * 1.01 : c.modelRadius;
    const framed = max(dot(sub(eyeOf(c), c.modelCenter), c.backward) - c.modelRadius, c.modelRadius / 1e3);
    const near = max(min(nearest * 0.99, far), min(far * kNearOfFar, framed));
    return [near, max(far, near * 1.001)];
  }
  function projection(c, [n, f]) {
    const [r, u, b] = axesOf(c);
    const h = 1 / tanOf(c);
    const w = h / aspectOf(c);
    const z = -(f + n) / (f - n);
    return [...[0, 1, 2].flatMap((i) => [r[i] * w, u[i] * h, b[i] * z, -b[i]]), 0, 0, -2 * f * n / (f - n), 0];
  }

  // src/matrix.ts
  var kIdentity = [1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1];
  var rowTimes = (r, m) => [0, 4, 8, 12].map((c) => r[0] * m[c] + r[1] * m[c + 1] + r[2] * m[c + 2] + r[3] * m[c + 3]);
  function product(a, b) {
    const result = [];
    for (let c = 0; c < 16; c += 4) {
      for (let r = 0; r < 4; r++) result.push(a[r] * b[c] + a[r + 4] * b[c + 1] + a[r + 8] * b[c + 2] + a[r + 12] * b[c + 3]);
    }
    return result;
  }
  var movedTo = (m, [x, y, z]) => [...m.slice(0, 12), x, y, z, 1];
  var column = (m, at) => [m[at], m[at + 1], m[at + 2]];
  function placed([x, y, z, w] = [0, 0, 0, 1], t = [0, 0, 0], [a, b, c] = [1, 1, 1]) {
    const s = 2 / (x * x + y * y + z * z + w * w || 1);
    const linear = [1 - s * (y * y + z * z), s * (x * y + z * w), s * (x * z - y * w), 0, s * (x * y - z * w), 1 - s * (x * x + z * z)];
    linear.push(s * (y * z + x * w), 0, s * (x * z + y * w), s * (y * z - x * w), 1 - s * (x * x + y * y), 0);
    return movedTo(linear.map((v, i) => v * (i < 4 ? a : i < 8 ? b : c)), t);
  }
  var direction = (m, [x, y, z]) => [0, 1, 2].map((i) => m[i] * x + m[i + 4] * y + m[i + 8] * z);
  var point = (m, v) => add(direction(m, v), column(m, 12));
  function normalMatrix(m) {
    const [a, b, c] = [0, 4, 8].map((at) => column(m, at));
    const determinant = dot(cross(a, b), c);
    const cofactors = [...cross(b, c), ...cross(c, a), ...cross(a, b)];
    const size = Math.hypot(...cofactors) * (determinant < 0 ? -1 : 1) || 1;
    return [cofactors.map((x) => x / size), determinant];
  }

  // src/rotation.ts
  var kNoRotation = [0, 0, 0, 1];
  var rotationAbout = (axis, angle) => [...scaled(axis, Math.sin(angle / 2)), Math.cos(angle / 2)];
  function rotationBetween(from, to) {
    const axis = cross(from, to);
    return rotationAbout(normalized(axis), Math.atan2(length(axis), dot(from, to)));
  }
  var combined = ([x, y, z, w], [i, j, k, l]) => [
    w * i + x * l + y * k - z * j,
    w * j - x * k + y * l + z * i,
    w * k + x * j - y * i + z * l,
    w * l - x * i - y * j - z * k
  ];
  var inverse = ([x, y, z, w]) => [-x, -y, -z, w];

  // src/seen.ts
  function place(seen, base = kIdentity) {
    Object.assign(seen, { base, turned: kNoRotation, shift: [0, 0, 0], pivot: point(base, seen.camera.target) });
  }
  var ballOf = (seen) => add(seen.pivot, seen.shift);
  function modelOf(seen) {
    const turn = placed(seen.turned);
    return product(movedTo(turn, sub(ballOf(seen), direction(turn, seen.pivot))), seen.base);
  }
  function pan(seen, right, down) {
    const { camera } = seen;
    const [x, y, back] = axesOf(camera);
    const depth = dot(sub(eyeOf(camera), point(modelOf(seen), camera.modelCenter)), back);
    const distance = distanceOf(camera);
    const size = 2 * tanOf(camera) * (depth > 0.05 * distance ? depth : distance) / camera.viewHeight;
    seen.shift = add(seen.shift, sub(scaled(x, right * size), scaled(y, down * size)));
  }
  function zoomAt(seen, step, x, y) {
    const { camera } = seen;
    const before = distanceOf(camera);
    zoomBy(camera, step);
    seen.shift = sub(seen.shift, scaled(add(rayOf(camera, x, y), camera.backward), before - distanceOf(camera)));
  }
  function turnAbout(seen, at) {
    seen.pivot = add(seen.pivot, direction(placed(inverse(seen.turned)), sub(at, ballOf(seen))));
    seen.shift = sub(at, seen.pivot);
  }
  function zoomToBox(seen, box) {
    const done = zoomTo(seen.camera, box);
    if (done) turnAbout(seen, seen.camera.target);
    return done;
  }
  function centerOn(seen, x, y, depth) {
    const { camera } = seen;
    turnAbout(seen, add(eyeOf(camera), scaled(rayOf(camera, x, y), depth)));
    setDistance(camera, depth);
    seen.shift = sub(camera.target, seen.pivot);
  }
  function turnBy(seen, rightDeg, upDeg) {
    const [right, up] = axesOf(seen.camera);
    seen.turned = combined(combined(rotationAbout(right, -upDeg * kDegree), rotationAbout(up, rightDeg * kDegree)), seen.turned);
  }

  // src/trackball.ts
  function grab(seen, { x, y }) {
    const { camera } = seen;
    const eye = scaled(sub(eyeOf(camera), ballOf(seen)), 1 / camera.modelRadius);
    const sight = normalized(eye);
    const ray = normalized(rayOf(camera, x, y));
    const along = dot(ray, eye);
    const discriminant = along * along - dot(eye, eye) + 1;
    const root = Math.sqrt(max(0, discriminant));
    const distance = (along + root <= 0 ? -root : root) - along;
    const missed = discriminant <= 0 || distance < 0;
    const [right, up] = axesOf({ backward: sight, up: camera.up });
    return { at: normalized(add(eye, scaled(ray, distance))), missed, sight, azimuth: Math.atan2(dot(ray, up), dot(ray, right)) };
  }
  function trackball(seen, from) {
    let begin = grab(seen, from);
    let before = seen.turned;
    return (to) => {
      const now = grab(seen, to);
      if (begin.missed) seen.turned = combined(rotationAbout(now.sight, now.azimuth - begin.azimuth), before);
      else if (!now.missed) seen.turned = combined(rotationBetween(begin.at, now.at), before);
      if (now.missed === begin.missed) return;
      begin = now;
      before = seen.turned;
    };
  }

  // src/gestures.ts
  var kWheelStep = 20;
  var kKeyDeg = 10;
  var kKeyStep = 20;
  var kFineShare = 5;
  var kDoubleMs = 400;
  var kDoublePx = 24;
  var kClickPx = 6;
  var kKeys = {
    ArrowLeft: [-kKeyDeg, 0],
    ArrowRight: [kKeyDeg, 0],
    ArrowUp: [0, kKeyDeg],
    ArrowDown: [0, -kKeyDeg],
    "+": [0, 0, -kKeyStep],
    "=": [0, 0, -kKeyStep],
    "-": [0, 0, kKeyStep]
  };
  var between = (a, b) => Math.hypot(a.x - b.x, a.y - b.y);
  function makeGestures(seen, listener) {
    const pointers = /* @__PURE__ */ new Map();
    let drag;
    let box;
    let press = { x: 0, y: 0 };
    let clicked = -Infinity;
    const end = () => {
      if (box) listener.boxed();
      drag = box = void 0;
    };
    const boxing = ({ x, y }) => {
      box = { x0: press.x, y0: press.y, x1: x, y1: y };
      listener.boxed(box);
    };
    const pinch = (now, last, other) => {
      pan(seen, (now.x - last.x) / 2, (now.y - last.y) / 2);
      const step = kStepsOfE * Math.log(between(last, other) / between(now, other));
      if (isFinite(step)) zoomAt(seen, step, (now.x + other.x) / 2, (now.y + other.y) / 2);
    };
    const single = (p, time) => {
      const again = time - clicked < kDoubleMs && between(p, press) < kDoublePx;
      press = p;
      clicked = again || p.button || p.ctrl ? -Infinity : time;
      if (p.button === 1 || p.button === 2 && p.shift) drag = (now, last) => pan(seen, now.x - last.x, now.y - last.y);
      else if (!p.button && p.ctrl) drag = boxing;
      else if (!p.button) {
        if (again) listener.centered(p);
        drag = trackball(seen, p);
      }
    };
    return {
      down(p, time) {
        pointers.set(p.id, p);
        end();
        if (pointers.size < 2) single(p, time);
        else clicked = -Infinity;
      },
      move(id, now) {
        const last = pointers.get(id);
        if (!last || !between(now, last)) return;
        if (between(now, press) > kClickPx) clicked = -Infinity;
        const [other] = [...pointers].filter(([key]) => key !== id);
        if (pointers.size === 2) pinch(now, last, other[1]);
        else drag?.(now, last);
        pointers.set(id, now);
        if (!box) listener.moved();
      },
      up(id, cancelled) {
        if (!pointers.delete(id)) return;
        const chosen = box;
        end();
        if (chosen && !cancelled && zoomToBox(seen, chosen)) listener.moved();
        const [rest] = pointers.values();
        if (rest) drag = trackball(seen, rest);
      },
      wheel(notches, at) {
        if (pointers.size || !isFinite(notches)) return;
        if (at) zoomAt(seen, notches * kWheelStep, at.x, at.y);
        else zoomBy(seen.camera, notches * kWheelStep);
        listener.moved();
      },
      key(key, fine) {
        const found = kKeys[key];
        if (!found) return false;
        const share = fine ? 1 / kFineShare : 1;
        const [right, up, zoom = 0] = found;
        zoomBy(seen.camera, zoom * share);
        turnBy(seen, right * share, up * share);
        listener.moved();
        return true;
      }
    };
  }

  // src/input.ts
  var kNotch = [100, 3, 1];
  var kPinchNotch = 10;
  function listen(canvas, gestures, keys) {
    const place2 = (event) => ({ x: event.offsetX, y: event.offsetY });
    canvas.onpointerdown = (event) => {
      canvas.setPointerCapture(event.pointerId);
      gestures.down({ ...place2(event), id: event.pointerId, button: event.button, ctrl: event.ctrlKey, shift: event.shiftKey }, event.timeStamp);
    };
    canvas.onpointermove = (event) => gestures.move(event.pointerId, place2(event));
    canvas.onpointerup = (event) => gestures.up(event.pointerId);
    canvas.onpointercancel = canvas.onlostpointercapture = (event) => gestures.up(event.pointerId, true);
    canvas.onmousedown = (event) => {
      if (event.button === 1) event.preventDefault();
    };
    canvas.oncontextmenu = (event) => {
      if (event.shiftKey || event.ctrlKey) event.preventDefault();
    };
    canvas.onwheel = (event) => {
      event.preventDefault();
      const turned = event.deltaY || event.deltaX;
      const notch = event.ctrlKey ? kPinchNotch : kNotch[event.deltaMode];
      gestures.wheel(turned / notch, event.ctrlKey || event.altKey ? place2(event) : void 0);
    };
    canvas.onkeydown = (event) => {
      if (event.ctrlKey || event.altKey || event.metaKey) return;
      const own = keys[event.key];
      own?.();
      if (own || gestures.key(event.key, event.shiftKey)) event.preventDefault();
    };
  }

  // shaders/depth.frag
  var depth_default = "// How far before the eye, along the line of sight, as the four bytes of a float.\nprecision highp float;\nout vec4 oColor;\nvoid main() {\n  uint bits = floatBitsToUint(1. / gl_FragCoord.w);\n  oColor = vec4(uvec4(bits, bits >> 8, bits >> 16, bits >> 24) & 255u) / 255.;\n}\n";

  // shaders/surface.frag
  var surface_default = `precision highp float;
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
`;

  // shaders/surface.vert
  var surface_default2 = "// Coordinates are the file's axes after the turning of the model, with the eye as origin.\nuniform mat4 uModelView, uProjection;\nuniform mat3 uNormal;\nuniform vec2 uMorph;\nlayout(location = 0) in vec3 aPosition;\nlayout(location = 1) in vec3 aNormal;\nlayout(location = 2) in vec2 aUv;\nlayout(location = 3) in vec3 aFace;\nlayout(location = 4) in vec3 aPosition1;\nlayout(location = 5) in vec3 aNormal1;\nlayout(location = 6) in vec3 aPosition2;\nlayout(location = 7) in vec3 aNormal2;\nout vec3 vPoint, vNormal;\nout vec2 vUv;\nvoid main() {\n  vec3 at = aPosition;\n  vec3 normal = aNormal;\n  if (MORPH) {\n    at += uMorph.x * aPosition1 + uMorph.y * aPosition2;\n    normal += uMorph.x * aNormal1 + uMorph.y * aNormal2;\n  }\n  vec4 point = uModelView * vec4(at, 1);\n  vPoint = point.xyz;\n  vNormal = uNormal * normal;\n  vUv = aUv;\n  gl_Position = uProjection * point;\n  // Lines have no back side of their own: those of triangles that face away go out of the picture.\n  if (LINES && !TWO_SIDED) if (dot(uNormal * aFace, vPoint) >= 0.) gl_Position = vec4(2, 2, 2, 1);\n}\n";

  // src/geometry.ts
  var kFace = 3;
  var kFirstTarget = 4;
  function geometryMaker(gl, gltf) {
    const buffers = [];
    const fill = (target, bytes, usage = 35044 /* StaticDraw */) => {
      const buffer = gl.createBuffer();
      gl.bindBuffer(target, buffer);
      gl.bufferData(target, bytes, usage);
      return buffer;
    };
    const point2 = (location2, components, type, normalized2 = false, stride = 0, offset = 0) => {
      gl.enableVertexAttribArray(location2);
      gl.vertexAttribPointer(location2, components, type, normalized2, stride, offset);
    };
    const pointAt = (location2, a) => {
      gl.bindBuffer(34962 /* ArrayBuffer */, buffers[a.view] ??= fill(34962 /* ArrayBuffer */, viewBytes(gltf, a.view)));
      point2(location2, a.components, a.type, a.normalized, a.stride, a.offset);
    };
    const own = (location2, components, values) => {
      fill(34962 /* ArrayBuffer */, values);
      point2(location2, components, 5126 /* Float */);
    };
    const asLines = (attributes, indices) => {
      const edges = new Uint32Array(indices.length * 2);
      const faces = new Float32Array(indices.length * 3);
      attributes.forEach((a, location2) => {
        if (!a) return;
        const from = numbersOf(gltf, a);
        const n = a.components;
        const at = (i) => from.subarray(indices[i] * n, indices[i] * n + n);
        const corners = new Float32Array(indices.length * n);
        indices.forEach((_, i) => corners.set(at(i), i * n));
        own(location2, n, corners);
        if (location2) return;
        for (let i = 0; i < indices.length; i += 3) {
          const face = normalized(cross(sub(at(i + 1), at(i)), sub(at(i + 2), at(i))), 0);
          faces.set([...face, ...face, ...face], i * 3);
          edges.set([i, i + 1, i + 1, i + 2, i + 2, i], i * 2);
        }
      });
      own(kFace, 3, faces);
      return edges;
    };
    return {
      make({ attributes: { POSITION, NORMAL, TEXCOORD_0 }, indices: index, targets: shapes = [] }, lines, sorted) {
        const optional = (a) => a === void 0 ? a : accessorOf(gltf, a);
        const position = accessorOf(gltf, POSITION);
        const attributes = [position, optional(NORMAL), optional(TEXCOORD_0)];
        const indices = indicesOf(gltf, index, position.count);
        const targets = lines ? [] : shapes.map((t) => [optional(t.POSITION), optional(t.NORMAL)]);
        for (const a of [...attributes, ...targets.flat()]) demand(!a || a.count >= position.count);
        const vao = gl.createVertexArray();
        gl.bindVertexArray(vao);
        if (!lines) attributes.forEach((a, location2) => a && pointAt(location2, a));
        const list = lines ? asLines(attributes, indices) : indices;
        fill(34963 /* ElementArrayBuffer */, list, sorted ? 35048 /* DynamicDraw */ : 35044 /* StaticDraw */);
        const reach = (from, outer, which) => targets.reduce((sum, [t]) => sum.map((x, i) => x + outer(0, t?.[which][i] ?? 0)), from);
        return {
          vao,
          mode: lines ? 1 /* Lines */ : 4 /* Triangles */,
          count: list.length,
          indexType: list.BYTES_PER_ELEMENT === 2 ? 5123 /* UnsignedShort */ : 5125 /* UnsignedInt */,
          hasUv: TEXCOORD_0 !== void 0,
          low: reach(position.min, min, "min"),
          high: reach(position.max, max, "max"),
          sorted: sorted ? { positions: numbersOf(gltf, position), indices } : void 0,
          targets
        };
      },
      mixWith({ targets }, chosen) {
        chosen.forEach(
          (target, i) => targets[target]?.forEach((a, part) => {
            const location2 = kFirstTarget + i * 2 + part;
            if (a) pointAt(location2, a);
            else gl.disableVertexAttribArray(location2);
          })
        );
      }
    };
  }

  // src/nodes.ts
  function readNodes(json) {
    const nodes = json.nodes.map((n) => ({ ...n, world: kIdentity }));
    nodes.forEach((node, i) => {
      if (!node.parent) node.matrix = kIdentity;
      for (const child of node.children ?? []) {
        demand(child > i);
        nodes[child].parent = node;
      }
    });
    return nodes;
  }
  function placeNodes(nodes) {
    for (const node of nodes) {
      const { matrix, translation, rotation, scale, parent } = node;
      const own = matrix ?? placed(rotation, translation, scale);
      node.world = product(parent?.world ?? kIdentity, own).map((x) => abs(x) < 1e18 ? x : 0);
    }
  }
  var originOf = (node) => column(node.world, 12);

  // src/lights.ts
  var kMostLights = 8;
  var kEverywhere = 1e30;
  var kNowhere = [0, 0, 0];
  var strength = ({ color, multiplier = 1 }) => color.reduce((sum, c) => sum + abs(c * multiplier), 0);
  var cosOfHalf = (coneDeg = 0) => Math.cos(coneDeg / 2 * kDegree);
  var kHeadlight = { node: -1, color: [1, 1, 1] };
  var strongest = (lights, headlight) => [
    ...lights.sort((a, b) => strength(b) - strength(a)).slice(0, kMostLights - +headlight),
    ...headlight && lights.length ? [kHeadlight] : []
  ];
  function lightUniforms(lights, nodes, toEye) {
    const enlarged = Math.cbrt(abs(normalMatrix(toEye)[1]));
    return lights.flatMap(({ node, target = -1, spot, color, multiplier = 1, attenuate, inner = 0, outer = 0, hotspotDeg, falloffDeg }) => {
      const at = node < 0 ? kNowhere : point(toEye, originOf(nodes[node]));
      const way = spot ? normalized(sub(point(toEye, originOf(nodes[target])), at)) : kNowhere;
      const cosOuter = spot ? cosOfHalf(falloffDeg) : -3;
      const cosInner = spot ? max(cosOfHalf(hotspotDeg), cosOuter + 1e-4) : -2;
      const from = attenuate ? inner * enlarged : kEverywhere;
      const to = max(attenuate ? outer * enlarged : 2 * kEverywhere, from + 1e-6 * (1 + from));
      return [...at, cosOuter, ...way, cosInner, ...scaled(color, multiplier), from, to, 0, 0, 0];
    });
  }

  // src/material.ts
  var kMaps = "texture texture2 opacity specular shininess selfIllumination bump reflection".split(" ");
  var kOpacity = 2;
  var kSpecular = 3;
  var kShininess = 4;
  var kReflection = 7;
  function mapOf(kind, m, strength2) {
    if (!m) return void 0;
    const { amount = 1, uv = [1, 0, 0, 1, 0, 0], tile = true } = m;
    const shows = kind ? kind < kOpacity && !m.ignoreAlpha : m.decal;
    const clears = !kind && m.alphaIsOpacity;
    let weight = m.alphaSource ? [0, 0, 0, 1] : [0.299, 0.587, 0.114, 0];
    if (kind < kOpacity) weight = [0, 0, +!!shows, +!!clears];
    if (kind === kSpecular) weight = [strength2, 0, 0, 0];
    return {
      texture: m.texture,
      alpha: shows || clears ? 1 /* Multiplied */ : 0 /* Separate */,
      wrap: !tile ? 33071 /* ClampToEdge */ : m.mirror ? 33648 /* MirroredRepeat */ : 10497 /* Repeat */,
      amount,
      uniform: [uv[0], uv[2], uv[4], amount, uv[1], uv[3], uv[5], +!tile, ...weight, m.negative ? -1 : 1, +!!m.negative, 0, 0]
    };
  }
  function lookOf(m, twoSided, lines) {
    const { strength: strength2 = 0, opacity = 1, additive = false, shading, specular } = m;
    const glossy = strength2 > 0;
    const maps = kMaps.map((name, kind) => mapOf(kind, m.maps?.[name], strength2));
    if (!glossy) maps[kSpecular] = maps[kShininess] = void 0;
    const line = !!(lines || m.wire || shading === "wire");
    return {
      ...m,
      specular: specular.map((x) => x * strength2),
      self: m.selfIllumination ?? 0,
      opacity,
      glossy,
      metal: glossy && shading === "metal",
      flat: shading === "flat" && !line,
      twoSided: !!(twoSided || m.twoSided),
      lines: line,
      additive,
      blended: !!m.blend || additive,
      maybeSolid: !additive && (opacity >= 1 || maps[kOpacity]?.amount === 1),
      maps
    };
  }

  // src/sorting.ts
  var kMostSorted = 5e4;
  function orderBackToFront(positions, indices, row) {
    const count = indices.length / 3;
    const depths = new Float32Array(count);
    let low = Infinity;
    let high = -Infinity;
    for (let t = 0; t < count; t++) {
      let sum = 0;
      for (let i = t * 3; i < t * 3 + 3; i++) {
        const at = indices[i] * 3;
        sum += row[0] * positions[at] + row[1] * positions[at + 1] + row[2] * positions[at + 2];
      }
      const depth = depths[t] = sum / 3 + row[3];
      if (depth < low) low = depth;
      if (depth > high) high = depth;
    }
    const steps = min(count * 8, 65535);
    const start = new Uint32Array(steps + 2);
    const keyOf2 = (t) => (high > low ? (high - depths[t]) * steps / (high - low) : 0) | 0;
    for (let t = 0; t < count; t++) start[keyOf2(t) + 1]++;
    for (let i = 0; i < steps; i++) start[i + 1] += start[i];
    const ordered = indices.slice();
    for (let t = 0; t < count; t++) ordered.set(indices.subarray(t * 3, t * 3 + 3), start[keyOf2(t)]++ * 3);
    return [ordered, (low + high) / 2];
  }

  // src/parts.ts
  async function makeParts(gltf, nodes, looks, maker, lights, compile, textured) {
    const made = {};
    const opaque = [];
    const blended = [];
    const part = (node, geometry, material, pixels) => {
      const look = looks[material];
      const { diffuse, specular, metal } = look;
      const maps = look.maps.map((map, kind) => !!map && (geometry.hasUv || kind === kReflection));
      const anyMap = maps.includes(true);
      const twoSided = look.twoSided && !look.flat;
      const flags = [...maps, look.glossy, metal && anyMap, look.flat, twoSided, pixels === 1 /* Solid */, pixels === 2 /* Translucent */];
      return {
        node,
        geometry,
        look,
        material,
        program: compile([geometry.targets.length > 0, look.lines, lights, ...flags]),
        key: flags.reduce((sum, flag, i) => sum + (flag ? 1 << i : 0), 0),
        specular: metal && !anyMap ? specular.map((x, i) => x * diffuse[i]) : specular,
        depth: 0
      };
    };
    const uses = nodes.flatMap((node) => {
      if (node.mesh === void 0) return [];
      const { primitives, weights } = gltf.json.meshes[node.mesh];
      node.weights ??= weights;
      return primitives.map((primitive, p) => {
        const { material, indices } = primitive;
        const { blended: blended2, additive, lines } = looks[material];
        const sorts = blended2 && !additive && !lines && gltf.json.accessors[indices].count < kMostSorted * 3;
        return { node, material, geometry: made[node.mesh + "/" + p] ??= maker.make(primitive, lines, sorts) };
      });
    });
    await textured;
    for (const { node, material, geometry } of uses) {
      const { blended: blends, maybeSolid } = looks[material];
      const solid = blends && maybeSolid;
      if (solid || !blends) opaque.push(part(node, geometry, material, solid ? 1 /* Solid */ : 0 /* All */));
      if (blends) blended.push(part(node, geometry, material, solid ? 2 /* Translucent */ : 0 /* All */));
    }
    return { opaque, blended };
  }
  var drawPart = (gl, { geometry: { mode, count, indexType } }) => gl.drawElements(mode, count, indexType, 0);

  // src/program.ts
  var kMacros = "MORPH LINES LIGHTS TEXTURE TEXTURE2 OPACITY SPECULAR SHININESS SELFILLUMINATION BUMP REFLECTION GLOSSY TINTED FLAT TWO_SIDED SOLID TRANSLUCENT".split(" ");
  function makeProgram(gl, vertex, fragment, macros) {
    const program = gl.createProgram();
    const uniforms = {};
    let checked = false;
    const compile = (kind, source) => {
      const shader = gl.createShader(kind);
      gl.shaderSource(shader, ["#version 300 es", ...kMacros.map((name, i) => `#define ${name} ${macros[i] ?? false}`), source].join("\n"));
      gl.compileShader(shader);
      gl.attachShader(program, shader);
    };
    compile(35633 /* VertexShader */, vertex);
    compile(35632 /* FragmentShader */, fragment);
    gl.linkProgram(program);
    return {
      use() {
        gl.useProgram(program);
        if (checked) return;
        checked = true;
        demand(gl.getProgramParameter(program, 35714 /* LinkStatus */) || gl.isContextLost());
        gl.uniform1iv(gl.getUniformLocation(program, "uMap"), [0, 1, 2, 3, 4, 5, 6, 7]);
      },
      uniform(name, values) {
        const at = uniforms[name] ??= gl.getUniformLocation(program, name);
        if (values.length === 2) gl.uniform2fv(at, values);
        else if (values.length === 9) gl.uniformMatrix3fv(at, false, values);
        else gl.uniformMatrix4fv(at, false, values);
      }
    };
  }

  // src/textures.ts
  var kAnisotropy = 8;
  var keyOf = ({ texture, alpha, wrap }, unit) => [texture, alpha, wrap, unit === kReflection].join();
  async function loadTextures(gl, gltf, looks) {
    const { textures = [], images = [] } = gltf.json;
    const anisotropic = !isSoftware(gl) && gl.getExtension("EXT_texture_filter_anisotropic");
    const loaded = {};
    const load = async ({ texture, alpha, wrap }, unit) => {
      const { bufferView, mimeType } = images[textures[texture].source];
      const bitmap = await createImageBitmap(new Blob([viewBytes(gltf, bufferView)], { type: mimeType }), {
        premultiplyAlpha: alpha ? "premultiply" : "none",
        colorSpaceConversion: "none"
      });
      const made = gl.createTexture();
      const set = (name, value) => gl.texParameteri(3553 /* Texture2d */, name, value);
      gl.activeTexture(33984 /* Texture0 */);
      gl.bindTexture(3553 /* Texture2d */, made);
      gl.texImage2D(3553 /* Texture2d */, 0, 6408 /* Rgba */, 6408 /* Rgba */, 5121 /* UnsignedByte */, bitmap);
      gl.generateMipmap(3553 /* Texture2d */);
      set(10242 /* WrapS */, wrap);
      set(10243 /* WrapT */, wrap);
      set(10241 /* MinFilter */, unit === kReflection ? 9729 /* Linear */ : 9987 /* LinearMipmapLinear */);
      if (anisotropic) set(34046 /* Anisotropy */, kAnisotropy);
      return made;
    };
    const found = {};
    const loading = looks.flatMap(
      (look) => look.maps.map(async (map, unit) => {
        if (!map) return;
        const key = keyOf(map, unit);
        found[key] = await (loaded[key] ??= load(map, unit)).catch((error) => {
          console.warn(error);
          look.maps[unit] = void 0;
          return 0;
        });
      })
    );
    await Promise.all(loading);
    return (look) => look.maps.forEach((map, unit) => {
      if (!map) return;
      gl.activeTexture(33984 /* Texture0 */ + unit);
      gl.bindTexture(3553 /* Texture2d */, found[keyOf(map, unit)]);
    });
  }
  function isSoftware(gl) {
    const name = gl.getExtension("WEBGL_debug_renderer_info") ? 37446 /* UnmaskedRenderer */ : 7937 /* Renderer */;
    return /swift|llvm/i.test(gl.getParameter(name));
  }

  // src/renderer.ts
  var kClear = [0, 0, 0, 0];
  async function makeRenderer(gl, scene, seen, settings) {
    const { gltf } = scene;
    const { wire, doubleSided, background, backgroundPicture } = settings;
    const looks = (gltf.json.materials ?? []).map((m) => lookOf(m.extras.orbivue, doubleSided || m.doubleSided, wire));
    const textured = loadTextures(gl, gltf, looks);
    const maker = geometryMaker(gl, gltf);
    const programs = {};
    const compile = (macros) => programs[macros.join()] ??= makeProgram(gl, surface_default2, surface_default, macros);
    const { opaque, blended } = await makeParts(gltf, scene.nodes, looks, maker, scene.lights.length, compile, textured);
    const bindMaps = await textured;
    gltf.views = [];
    let toEye;
    let toClip;
    let depthRow;
    let lights;
    let program;
    let look;
    const depths = () => {
      let [nearest, farthest] = [Infinity, -Infinity];
      for (const part of [...opaque, ...blended]) {
        const { low, high } = part.geometry;
        const r = rowTimes(depthRow, part.node.world);
        const half = dot(r.map(abs), sub(high, low)) / 2;
        part.depth = dot(r, add(low, high)) / 2 + r[3];
        nearest = min(nearest, part.depth - half);
        farthest = max(farthest, part.depth + half);
      }
      return [nearest, farthest];
    };
    const begin = (x, y, width, height, [r, g, b, a]) => {
      const { camera } = seen;
      const model = modelOf(seen);
      toEye = movedTo(model, sub(column(model, 12), eyeOf(camera)));
      depthRow = rowTimes([...camera.backward.map((x2) => -x2), 0], toEye);
      toClip = projection(camera, depthRange(camera, ...depths()));
      lights = lightUniforms(scene.lights, scene.nodes, toEye);
      program = look = void 0;
      gl.enable(2929 /* DepthTest */);
      gl.disable(3042 /* Blend */);
      gl.depthMask(true);
      gl.viewport(x, y, width, height);
      gl.clearColor(r, g, b, a);
      gl.clear(16384 /* ColorBit */ | 256 /* DepthBit */);
    };
    const useProgram = (next) => {
      if (program === next) return;
      next.use();
      program = next;
      look = void 0;
      next.uniform("uProjection", toClip);
      if (lights.length) next.uniform("uLights", lights);
    };
    const cull = (on, side2 = 1029 /* Back */) => {
      gl[on ? "enable" : "disable"](2884 /* CullFace */);
      gl.cullFace(side2);
    };
    const useLook = ({ look: next, specular }) => {
      if (look === next) return;
      look = next;
      const { diffuse, opacity, exponent, ambient, self, maps } = next;
      program.uniform("uLook", [...diffuse, opacity, ...specular, exponent, ...ambient, self, ...scene.ambientLight, 0]);
      program.uniform("uMaps", maps.flatMap((map) => map?.uniform ?? kIdentity));
      bindMaps(next);
      cull(!next.twoSided);
    };
    const placePart = ({ node, geometry }) => {
      const m = product(toEye, node.world);
      program.uniform("uModelView", m);
      const [normal, determinant] = normalMatrix(m);
      program.uniform("uNormal", normal);
      gl.frontFace(determinant < 0 ? 2304 /* Cw */ : 2305 /* Ccw */);
      gl.bindVertexArray(geometry.vao);
      if (!geometry.targets.length) return;
      const weights = node.weights ?? [];
      const chosen = [...weights.keys()].sort((a, b) => abs(weights[b]) - abs(weights[a])).slice(0, 2);
      maker.mixWith(geometry, chosen);
      program.uniform("uMorph", [weights[chosen[0]] || 0, weights[chosen[1]] || 0]);
    };
    const prepare = (part) => {
      useProgram(part.program);
      useLook(part);
      placePart(part);
    };
    const drawOpaque = () => {
      opaque.sort((a, b) => b.key - a.key || b.material - a.material || a.depth - b.depth);
      for (const part of opaque) {
        gl.depthFunc(part.look.lines ? 515 /* Lequal */ : 513 /* Less */);
        prepare(part);
        drawPart(gl, part);
      }
    };
    const drawBlended = () => {
      for (const part of blended) {
        const { sorted } = part.geometry;
        if (sorted) [part.ordered, part.depth] = orderBackToFront(sorted.positions, sorted.indices, rowTimes(depthRow, part.node.world));
      }
      blended.sort((a, b) => b.depth - a.depth);
      gl.enable(3042 /* Blend */);
      gl.depthMask(false);
      gl.depthFunc(515 /* Lequal */);
      for (const part of blended) {
        const { additive, twoSided } = part.look;
        const behind = additive ? 1 /* One */ : 771 /* OneMinusSrcAlpha */;
        gl.blendFuncSeparate(1 /* One */, behind, additive ? 0 /* Zero */ : 1 /* One */, behind);
        prepare(part);
        if (part.ordered) gl.bufferSubData(34963 /* ElementArrayBuffer */, 0, part.ordered);
        else if (twoSided) {
          cull(true, 1028 /* Front */);
          drawPart(gl, part);
          cull(true);
        }
        drawPart(gl, part);
        cull(!twoSided);
      }
    };
    const depthProgram = makeProgram(gl, surface_default2, depth_default, [true]);
    const pixel = onePixel(gl);
    return {
      draw() {
        begin(0, 0, gl.drawingBufferWidth, gl.drawingBufferHeight, backgroundPicture ? kClear : [...background, 1]);
        drawOpaque();
        drawBlended();
      },
      depthAt(x, y) {
        const { viewWidth: width, viewHeight: height } = seen.camera;
        gl.bindFramebuffer(36160 /* Framebuffer */, pixel);
        begin(-Math.floor(x), Math.floor(y) + 1 - height, width, height, kClear);
        gl.depthFunc(513 /* Less */);
        useProgram(depthProgram);
        for (const part of [...opaque, ...blended]) {
          cull(!part.look.twoSided);
          placePart(part);
          drawPart(gl, part);
        }
        const found = new Uint8Array(4);
        gl.readPixels(0, 0, 1, 1, 6408 /* Rgba */, 5121 /* UnsignedByte */, found);
        gl.bindFramebuffer(36160 /* Framebuffer */, null);
        return found[3] ? new Float32Array(found.buffer)[0] : void 0;
      }
    };
  }
  function onePixel(gl) {
    const frame = gl.createFramebuffer();
    gl.bindFramebuffer(36160 /* Framebuffer */, frame);
    const add2 = (place2, format) => {
      const buffer = gl.createRenderbuffer();
      gl.bindRenderbuffer(36161 /* Renderbuffer */, buffer);
      gl.renderbufferStorage(36161 /* Renderbuffer */, format, 1, 1);
      gl.framebufferRenderbuffer(36160 /* Framebuffer */, place2, 36161 /* Renderbuffer */, buffer);
    };
    add2(36064 /* ColorAttachment0 */, 32856 /* Rgba8 */);
    add2(36096 /* DepthAttachment */, 33190 /* DepthComponent24 */);
    gl.bindFramebuffer(36160 /* Framebuffer */, null);
    return frame;
  }

  // src/scene.ts
  function readScene(bytes) {
    const gltf = readGltf(bytes);
    const { json } = gltf;
    const nodes = readNodes(json);
    const channels = readChannels(gltf, nodes);
    const extras = json.scenes[json.scene ?? 0].extras.orbivue;
    const { headlight = false, lights = [], ambientLight = [0, 0, 0], bounds, cameras = [], frames = { first: 0, last: 0, current: 0 } } = extras;
    const scene = {
      gltf,
      nodes,
      lights: strongest(lights, headlight),
      ambientLight,
      bounds: { center: bounds.center, radius: max(bounds.radius || 1, ...bounds.center.map((x) => abs(x) / 1e6)) },
      frames,
      animated: channels.length > 0 && frames.last > frames.first,
      cameraNames: cameras.map((c) => c.name),
      camera(index) {
        const { name, node, target, rollDeg = 0, fovDeg } = cameras[index];
        return { name, rollDeg, fovDeg, eye: originOf(nodes[node]), target: originOf(nodes[target]) };
      },
      show(frame) {
        for (const channel of channels) channel.node[channel.path] = sample(channel, (frame - frames.first) / kFramesPerSecond);
        placeNodes(nodes);
      }
    };
    scene.show(frames.current);
    return scene;
  }

  // src/icons.ts
  var kCube = "M12 3l8 4.5v9L12 21l-8-4.5v-9z";
  var kNear = kCube + "M4 7.5l8 4.5 8-4.5M12 12v9";
  var kFar = kCube + "M12 3v9M4 16.5l8-4.5 8 4.5";
  var kIcons = {
    top: [kNear, "M12 3l8 4.5-8 4.5-8-4.5z"],
    front: [kNear, "M4 7.5l8 4.5v9l-8-4.5z"],
    right: [kNear, "M12 12l8-4.5v9L12 21z"],
    left: [kFar, "M4 7.5L12 3v9l-8 4.5z"],
    back: [kFar, "M12 3l8 4.5v9L12 12z"],
    iso: [kNear],
    reset: ["M5 5v5h5M5.5 10a7 7 0 1 1-.3 4.5"],
    play: ["", "M8 5l11 7-11 7z"],
    pause: ["", "M7 5h2v14H7zM15 5h2v14h-2z"],
    fullscreen: ["M4 9V4h5M15 4h5v5M20 15v5h-5M9 20H4v-5"],
    download: ["M12 4v11M7 10l5 5 5-5M5 20h14"]
  };
  var icon = (key) => `<svg viewBox="0 0 24 24" aria-hidden="true">${kIcons[key].map((d, i) => `<path d="${d}" ${i ? 'fill="currentColor"' : ""}/>`).join("")}</svg>`;

  // src/toolbar.ts
  function toggleFullScreen() {
    const done = document.fullscreenElement ? document.exitFullscreen() : document.documentElement.requestFullscreen();
    done.catch(() => {
    });
  }
  function makeToolbar(bar, { texts, camerasBar, download }, scene, actions) {
    const stops = [];
    const name = (element, key) => label(element, element.title = texts[key]);
    const add2 = (tag, key, properties) => {
      const element = make(tag, properties);
      name(element, key);
      bar.append(element);
      if (tag !== "input") stops.push(element);
      return element;
    };
    const button = (key, onclick) => add2("button", key, { type: "button", onclick, innerHTML: icon(key) });
    const stopAt = (element) => {
      if (stops.includes(element)) for (const other of stops) other.tabIndex = other === element ? 0 : -1;
    };
    const sides = Object.keys(kPresets);
    const presets = camerasBar ? sides.map((preset) => button(kPresets[preset][0], () => actions.preset(preset))) : [];
    let cameras;
    if (camerasBar && scene.cameraNames.length) {
      const list = cameras = add2("select", "cameras", { onchange: () => list.value && actions.fileCamera(+list.value) });
      list.append(new Option(texts.cameras, ""), ...scene.cameraNames.map((camera, i) => new Option(camera, "" + i)));
    }
    button("reset", actions.reset);
    const play = scene.animated && button("play", actions.togglePlaying);
    const { first, last } = scene.frames;
    const slider = play && add2("input", "frame", { type: "range", min: "" + first, max: "" + last, oninput: () => actions.frame(+slider.value) });
    if (document.fullscreenEnabled) button("fullscreen", toggleFullScreen);
    if (download) add2("a", "download", { href: download, download: "", innerHTML: icon("download") });
    label(bar, texts.toolbar);
    bar.addEventListener("focusin", (event) => stopAt(event.target));
    bar.onkeydown = (event) => {
      const at = stops.indexOf(event.target);
      const way = { ArrowLeft: stops.length - 1, ArrowRight: 1 }[event.key];
      if (at < 0 || !way) return;
      event.preventDefault();
      stops[(at + way) % stops.length].focus();
    };
    stopAt(stops[0]);
    return {
      show(preset, camera, frame, playing) {
        presets.forEach((made, i) => made.setAttribute("aria-pressed", "" + (sides[i] === preset)));
        if (cameras) cameras.value = camera < 0 ? "" : "" + camera;
        if (slider) slider.value = "" + Math.round(frame);
        const key = playing ? "pause" : "play";
        if (!play || play.title === texts[key]) return;
        name(play, key);
        play.innerHTML = icon(key);
      }
    };
  }

  // src/viewer.ts
  var kMostPixelsOfPixel = 2;
  var kLongestMs = 100;
  async function view(bytes, settings, { canvas, toolbar, say }, gl) {
    const { texts } = settings;
    let scene = readScene(bytes);
    const { frames, animated, cameraNames, bounds } = scene;
    const seen = { camera: newCamera(bounds.center, bounds.radius) };
    let renderer;
    let frame = settings.frame ?? frames.current;
    let playing = false;
    let fileCamera = -1;
    let drawn = 0;
    let asked = 0;
    let last = 0;
    const draw = () => {
      cancelAnimationFrame(asked);
      asked = 0;
      if (!renderer) return;
      drawn++;
      renderer.draw();
      if (playing) request();
    };
    const showControls = () => bar.show(fileCamera < 0 ? seen.camera.name : "", fileCamera, frame, playing);
    const showFrame = () => {
      scene.show(frame);
      if (fileCamera >= 0) follow(seen.camera, scene.camera(fileCamera));
    };
    const tick = (now) => {
      if (playing) {
        const length2 = frames.last - frames.first;
        const passed = min(last ? now - last : 0, kLongestMs) * kFramesPerSecond / 1e3;
        frame = frames.first + (frame - frames.first + passed) % length2;
        showFrame();
        showControls();
      }
      last = playing ? now : 0;
      draw();
    };
    const request = () => {
      asked ||= requestAnimationFrame(tick);
    };
    const changed = () => {
      showControls();
      request();
    };
    const fit = () => {
      const { clientWidth: width, clientHeight: height } = canvas;
      const ratio = min(devicePixelRatio, kMostPixelsOfPixel);
      Object.assign(seen.camera, { viewWidth: width || 1, viewHeight: height || 1 });
      const [w, h] = [width, height].map((size) => Math.round(size * ratio) || 1);
      if (canvas.width === w && canvas.height === h) return;
      Object.assign(canvas, { width: w, height: h });
      draw();
    };
    const load = async () => {
      renderer = await makeRenderer(gl, scene, seen, settings);
      if (gl.getError() === 1285 /* OutOfMemory */) throw new Trouble("noMemory");
    };
    const reset = () => {
      setSeen(seen.camera, settings.view);
      place(seen, settings.view.model);
      fileCamera = settings.view.preset ? -1 : cameraNames.indexOf(settings.view.camera);
      changed();
    };
    const preset = (name) => {
      setPreset(seen.camera, name);
      place(seen);
      fileCamera = -1;
      say(texts[kPresets[name][0]]);
      changed();
    };
    const lookThrough = (index) => {
      setFileCamera(seen.camera, scene.camera(index));
      place(seen);
      fileCamera = index;
      say(cameraNames[index]);
      changed();
    };
    const play = (on) => {
      playing = on && animated;
      changed();
    };
    const setFrame = (to) => {
      frame = min(max(to, frames.first), frames.last);
      showFrame();
      play(false);
    };
    const togglePlaying = () => play(!playing);
    let box;
    const showBox = (b) => {
      box?.remove();
      if (!b) return;
      box = make("div", { className: "box" });
      const [left, top] = [min(b.x0, b.x1), min(b.y0, b.y1)];
      box.style.cssText = `left:${left}px;top:${top}px;width:${abs(b.x1 - b.x0)}px;height:${abs(b.y1 - b.y0)}px`;
      canvas.after(box);
    };
    const bar = makeToolbar(toolbar, settings, scene, { preset, fileCamera: lookThrough, reset, togglePlaying, frame: setFrame });
    await load();
    showFrame();
    reset();
    fit();
    const gestures = makeGestures(seen, {
      moved: request,
      boxed: showBox,
      centered({ x, y }) {
        const depth = renderer?.depthAt(x, y);
        if (depth) centerOn(seen, x, y, depth);
        request();
      }
    });
    listen(canvas, gestures, { Home: reset, " ": togglePlaying });
    new ResizeObserver(fit).observe(canvas);
    canvas.addEventListener("webglcontextlost", (event) => {
      event.preventDefault();
      renderer = void 0;
      say(texts.lost);
    });
    canvas.addEventListener("webglcontextrestored", async () => {
      scene = readScene(bytes);
      showFrame();
      await load();
      say("");
      request();
    });
    if (animated && !matchMedia("(prefers-reduced-motion:reduce)").matches) play(true);
    return {
      cameras: cameraNames,
      setCamera(name) {
        const found = Object.keys(kPresets).find((key) => key === name || kPresets[key][0] === name);
        if (found) preset(found);
        else if (cameraNames.includes(name)) lookThrough(cameraNames.indexOf(name));
      },
      reset,
      turn(rightDeg, upDeg) {
        turnBy(seen, rightDeg, upDeg);
        request();
      },
      zoom(factor) {
        zoomBy(seen.camera, -kStepsOfE * Math.log(factor));
        request();
      },
      setFrame,
      play,
      state: () => ({ ...frames, frame, playing, drawn })
    };
  }

  // src/main.ts
  var find = (selector) => document.querySelector(selector);
  async function show(api2) {
    const settings = JSON.parse(find("#settings").textContent);
    const { texts, title, backgroundPicture } = settings;
    const status = find("[role=status]");
    const stage = {
      canvas: find("canvas"),
      toolbar: find("[role=toolbar]"),
      say: (text) => void (status.textContent = text)
    };
    const { canvas, say } = stage;
    const named = (key) => texts[key].replace("%1", () => title);
    label(canvas, named("canvas"));
    try {
      const gl = canvas.getContext("webgl2");
      if (backgroundPicture) canvas.style.background = `url("${encodeURI(backgroundPicture)}") 50%/cover rgb(${settings.background.map((x) => x * 255)})`;
      if (!gl) throw new Trouble("noWebGL");
      Object.assign(api2, await view(await sceneBytes(settings), settings, stage, gl));
      say(named("shown"));
      document.body.dataset.ready = "";
      return api2;
    } catch (error) {
      console.error(error);
      status.setAttribute("role", "alert");
      status.textContent = document.body.dataset.error = texts[error instanceof Trouble ? error.message : "broken"];
      throw error;
    }
  }
  var api = {};
  var parsed = new Promise((resolve) => document.addEventListener("DOMContentLoaded", resolve));
  api.ready = parsed.then(() => show(api));
  api.ready.catch(() => {
  });
  window.orbivue = api;
})();
