// SPDX-License-Identifier: MIT
// The viewer of Orbivue's web pages. Contains code of meshoptimizer, (C) Arseny Kapoulkine, MIT licence.
"use strict";
(() => {
  // src/vector.ts
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
  var clamp = (x, low, high) => Math.min(Math.max(x, low), high);
  var kDegree = Math.PI / 180;

  // src/camera.ts
  var kPresetTanY = Math.tan(22.5 * kDegree);
  var kMinTanY = 5e-4;
  var kSmallestSeen = 5e-4;
  var kLargestSeen = 40;
  var kNearestEye = 1e-3;
  var kMaxBoxZoom = 20;
  var kNearOfFar = 1 / 4e3;
  var kStepsOfE = 200;
  var kThird = Math.sqrt(1 / 3);
  var kPresets = {
    top_cam: { key: "top", back: [0, 0, 1], up: [0, 1, 0] },
    lft_cam: { key: "left", back: [-1, 0, 0], up: [0, 0, 1] },
    rgt_cam: { key: "right", back: [1, 0, 0], up: [0, 0, 1] },
    frt_cam: { key: "front", back: [0, -1, 0], up: [0, 0, 1] },
    bck_cam: { key: "back", back: [0, 1, 0], up: [0, 0, 1] },
    iso_cam: { key: "iso", back: [kThird, -kThird, kThird], up: [0, 0, 1] }
  };
  function axesOf(back, up) {
    let right = normalized(cross(up, back), 1e-9);
    if (length(right) < 0.5) right = normalized(cross(Math.abs(back[2]) < 0.9 ? [0, 0, 1] : [0, 1, 0], back));
    return { right, up: cross(back, right), back };
  }
  var Camera = class {
    constructor(center, radius) {
      this.center = center;
      this.radius = radius;
      this.name = "iso_cam";
      this.target = [0, 0, 0];
      this.back = [0, 0, 1];
      this.up = [0, 1, 0];
      this.parallel = false;
      this.fits = true;
      this.zoomed = 1;
      /** From the eye to the target at zoom 1, where nothing is fitted. */
      this.own = 1;
      /** Half of what is to be seen at distance 1 (parallel: at zoom 1), and where its middle lies. */
      this.tanX = 0;
      this.tanY = kPresetTanY;
      this.middle = [0, 0];
      this.width = 4;
      this.height = 3;
      this.setPreset("iso_cam");
    }
    setSize(width, height) {
      this.width = Math.max(1, width);
      this.height = Math.max(1, height);
    }
    get viewWidth() {
      return this.width;
    }
    get viewHeight() {
      return this.height;
    }
    get aspect() {
      return this.width / this.height;
    }
    setPreset(name) {
      const preset = kPresets[name];
      if (!preset) return;
      this.reset(name);
      this.fits = true;
      this.target = this.center;
      this.back = preset.back;
      this.up = preset.up;
      this.tanY = kPresetTanY;
    }
    reset(name) {
      this.name = name;
      this.parallel = this.fits = false;
      this.zoomed = 1;
      this.tanX = 0;
      this.middle = [0, 0];
    }
    setFileCamera(camera) {
      this.reset(camera.name);
      this.follow(camera);
    }
    /** Takes the pose of the file's camera in use after an animation has moved it, and keeps the zoom. */
    follow(camera) {
      if (camera.name !== this.name || this.fits) return;
      const sight = sub(camera.target, camera.eye);
      const distance = length(sight);
      const forward = distance > 1e-12 ? normalized(sight) : [0, 1, 0];
      this.back = scaled(forward, -1);
      this.own = distance > 1e-12 ? distance : this.radius;
      this.target = add(camera.eye, scaled(forward, this.own));
      const pole = forward[0] !== 0 || forward[1] !== 0 ? [0, 0, 1] : [-1, 0, 0];
      const right = normalized(cross(forward, pole));
      const up = normalized(cross(right, forward));
      const roll = camera.rollDeg * kDegree;
      this.up = normalized(sub(scaled(up, Math.cos(roll)), scaled(right, Math.sin(roll))));
      this.tanY = Math.tan(clamp(camera.fovDeg, 0.1, 175) * kDegree / 2) * 3 / 4;
    }
    /** What the desktop showed. A preset goes on fitting. */
    setSeen(view) {
      const aspect = view.size[0] / view.size[1] || 1;
      const sight = sub(view.eye, view.target);
      const distance = length(sight);
      if (view.preset && kPresets[view.camera]) {
        this.setPreset(view.camera);
        this.zoomed = distance / this.fitting(aspect);
      } else {
        this.reset(view.camera);
        this.own = distance || this.radius;
        this.target = view.target;
        this.parallel = view.kind === "parallel";
        const tanY = this.parallel ? view.height / 2 || this.radius : Math.tan(clamp(view.fovYDeg, 0.1, 175) * kDegree / 2);
        const [left, top, right, bottom] = view.window;
        this.tanX = tanY * aspect * Math.abs(right - left);
        this.tanY = Math.max(tanY * Math.abs(bottom - top), this.parallel ? 0 : kMinTanY);
        this.middle = [(left + right - 1) * tanY * aspect, (1 - top - bottom) * tanY];
      }
      this.back = normalized(sight, 0);
      this.up = view.up;
    }
    fitting(aspect) {
      const t = kPresetTanY * Math.min(1, aspect);
      return this.radius * Math.sqrt(1 + t * t) / t;
    }
    get distance() {
      return this.parallel ? this.own : this.zoomed * (this.fits ? this.fitting(this.aspect) : this.own);
    }
    get eye() {
      return add(this.target, scaled(this.back, this.distance));
    }
    /** Half the height that is seen, at distance 1; of a parallel view at any distance. */
    get halfHeight() {
      return Math.max(this.tanY, this.tanX / this.aspect) * (this.parallel ? this.zoomed : 1);
    }
    /** Half the height that is seen at a depth before the eye. */
    heightAt(depth) {
      return this.halfHeight * (this.parallel ? 1 : depth);
    }
    get axes() {
      return axesOf(this.back, this.up);
    }
    /** Away for steps above 0. The eye never passes the target, and what is seen stays between limits. */
    zoom(step) {
      this.setDistance(this.distance * Math.exp(clamp(step, -4e3, 4e3) / kStepsOfE), Math.exp(step / kStepsOfE));
    }
    setDistance(distance, factor = 1) {
      if (!(distance > 0)) return;
      if (this.parallel) {
        const t = Math.max(this.tanY, this.tanX / this.aspect);
        this.zoomed = clamp(this.zoomed * factor, this.radius * kSmallestSeen / t, this.radius * kLargestSeen / t);
        return;
      }
      const now = this.distance;
      const tanY = this.halfHeight;
      const nearest = Math.min(now, this.radius * Math.max(kSmallestSeen / tanY, kNearestEye));
      const farthest = Math.max(now, this.radius * kLargestSeen / tanY);
      this.zoomed *= clamp(distance, nearest, farthest) / now;
    }
    /** The way from the eye through a point of the view (pixels, y down), of length 1 along the line of sight. For a
     * parallel view the offset from the eye instead. */
    ray(x, y) {
      const { right, up, back } = this.axes;
      const half = this.halfHeight;
      const shift = this.parallel ? this.zoomed : 1;
      const a = (2 * (x / this.width) - 1) * half * this.aspect + this.middle[0] * shift;
      const b = (1 - 2 * y / this.height) * half + this.middle[1] * shift;
      const aside = add(scaled(right, a), scaled(up, b));
      const ahead = scaled(back, -1);
      return this.parallel ? { origin: add(this.eye, aside), way: ahead } : { origin: this.eye, way: add(aside, ahead) };
    }
    /** The part of the view inside the box (pixels) fills the view: the eye stays, turns to the middle of the box, and sees
     * less. False for a box without area. */
    zoomTo(box) {
      let [l, r] = [Math.max(Math.min(box.left, box.right), 0), Math.min(Math.max(box.left, box.right), this.width)];
      let [t, b] = [Math.max(Math.min(box.top, box.bottom), 0), Math.min(Math.max(box.top, box.bottom), this.height)];
      if (!(r > l && b > t)) return false;
      const wider = Math.max(1, Math.min(this.width / (r - l), this.height / (b - t)) / kMaxBoxZoom);
      [l, r] = [(l + r) / 2 - (r - l) / 2 * wider, (l + r) / 2 + (r - l) / 2 * wider];
      [t, b] = [(t + b) / 2 - (b - t) / 2 * wider, (t + b) / 2 + (b - t) / 2 * wider];
      if (this.parallel) this.moveTo(l, t, r, b);
      else this.turnTo(l, t, r, b);
      return true;
    }
    moveTo(l, t, r, b) {
      const { origin, way } = this.ray((l + r) / 2, (t + b) / 2);
      const half = this.halfHeight;
      this.target = add(origin, scaled(way, this.own));
      this.middle = [0, 0];
      this.zoomed = 1;
      this.tanX = half * this.aspect * (r - l) / this.width;
      this.tanY = half * (b - t) / this.height;
    }
    turnTo(l, t, r, b) {
      const eye = this.eye;
      const axes = this.axes;
      const middle = this.ray((l + r) / 2, (t + b) / 2).way;
      const turned2 = axesOf(scaled(normalized(middle), -1), axes.up);
      const corners = [this.ray(l, t), this.ray(r, t), this.ray(l, b), this.ray(r, b)].map((c) => c.way);
      const seen = (axis) => Math.max(...corners.map((c) => Math.abs(dot(c, axis)) / -dot(c, turned2.back)));
      const own = this.distance * length(middle);
      const [tanX, tanY] = [seen(turned2.right), Math.max(seen(turned2.up), kMinTanY)];
      this.reset(this.name);
      Object.assign(this, { own, tanX, tanY, back: turned2.back, up: turned2.up, target: add(eye, scaled(turned2.back, -own)) });
      this.name = "";
    }
    viewMatrix() {
      const { right: r, up: u, back: b } = this.axes;
      const e = this.eye;
      return [r[0], u[0], b[0], 0, r[1], u[1], b[1], 0, r[2], u[2], b[2], 0, -dot(r, e), -dot(u, e), -dot(b, e), 1];
    }
    /** The planes between which is drawn, for depths (along the line of sight) of the nearest and the farthest point. */
    depthRange(nearest, farthest) {
      if (this.parallel) {
        const room = Math.max(farthest - nearest, this.radius) * 0.01;
        return [nearest - room, farthest + room];
      }
      if (!(farthest > 0)) return [this.radius * 0.01, this.radius];
      const far = farthest * 1.01;
      const middle = dot(sub(this.eye, this.center), this.back);
      const framed = Math.max(middle - this.radius, this.radius * 1e-3);
      const near = Math.max(nearest * 0.99, Math.min(far * kNearOfFar, framed));
      return [near, Math.max(far, near * 1.001)];
    }
    projection([n, f]) {
      const h = this.halfHeight;
      const w = h * this.aspect;
      const shift = this.parallel ? this.zoomed : 1;
      const [x, y] = [this.middle[0] * shift / w, this.middle[1] * shift / h];
      if (this.parallel) return [1 / w, 0, 0, 0, 0, 1 / h, 0, 0, 0, 0, -2 / (f - n), 0, -x, -y, -(f + n) / (f - n), 1];
      return [1 / w, 0, 0, 0, 0, 1 / h, 0, 0, x, y, -(f + n) / (f - n), -1, 0, 0, -2 * f * n / (f - n), 0];
    }
  };

  // src/api.ts
  function apiOf(viewer) {
    return {
      version: 1,
      get cameras() {
        return viewer.cameraNames;
      },
      setCamera(name) {
        const preset = Object.keys(kPresets).find((n) => n === name || kPresets[n].key === name);
        const file = viewer.cameraNames.indexOf(name);
        if (preset) viewer.setPreset(preset);
        else viewer.setFileCamera(file);
        return !!preset || file >= 0;
      },
      reset: () => viewer.reset(),
      turn(rightDeg, upDeg) {
        viewer.seen.turnBy(Number(rightDeg) || 0, Number(upDeg) || 0);
        viewer.redraw();
      },
      zoom(factor) {
        if (factor > 0) viewer.seen.camera.zoom(-200 * Math.log(factor));
        viewer.redraw();
      },
      get frames() {
        return viewer.animated ? viewer.frames : void 0;
      },
      get frame() {
        return viewer.frame;
      },
      set frame(frame) {
        viewer.setFrame(Number(frame) || 0);
      },
      get playing() {
        return viewer.playing;
      },
      set playing(playing) {
        viewer.setPlaying(!!playing);
      },
      get drawn() {
        return viewer.drawn;
      }
    };
  }
  function publish(viewer) {
    const api = apiOf(viewer);
    Object.defineProperty(window, "orbivue", { value: api });
    window.dispatchEvent(new CustomEvent("orbivue", { detail: api }));
  }

  // src/trouble.ts
  var Trouble = class extends Error {
    constructor(key, detail = "") {
      super(`${key} ${detail}`);
      this.key = key;
      this.detail = detail;
    }
  };
  function demand(condition, what) {
    if (!condition) throw new Trouble("broken", what);
  }

  // src/scene_data.ts
  var kMostBytes = 1 << 30;
  function fromBase64(text) {
    try {
      const binary = atob(text.trim());
      const bytes = new Uint8Array(binary.length);
      for (let i = 0; i < bytes.length; i++) bytes[i] = binary.charCodeAt(i);
      return bytes;
    } catch {
      throw new Trouble("broken", "base64");
    }
  }
  async function unpacked(bytes, most = kMostBytes) {
    if (bytes[0] !== 31 || bytes[1] !== 139) return bytes;
    if (typeof DecompressionStream === "undefined") throw new Trouble("noUnpacking");
    const reader = new Blob([bytes]).stream().pipeThrough(new DecompressionStream("gzip")).getReader();
    const parts = [];
    let size = 0;
    try {
      for (; ; ) {
        const { done, value } = await reader.read();
        if (done) break;
        parts.push(value);
        size += value.length;
        if (size > most) break;
      }
    } catch {
      throw new Trouble("broken", "gzip");
    }
    if (size > most) {
      void reader.cancel();
      throw new Trouble("broken", "size");
    }
    const result = new Uint8Array(size);
    let at = 0;
    for (const part of parts) {
      result.set(part, at);
      at += part.length;
    }
    return result;
  }
  function fromScript() {
    return new Promise((resolve, reject) => {
      const script = document.createElement("script");
      const scope = window;
      scope.orbivueScene = (text) => {
        try {
          resolve(fromBase64(text));
        } catch (trouble) {
          reject(trouble);
        }
      };
      script.onload = script.onerror = () => reject(new Trouble("noScene"));
      script.src = "scene.bin.js";
      document.head.append(script);
    });
  }
  async function fromServer() {
    try {
      const response = await fetch("scene.bin");
      if (response.ok) return new Uint8Array(await response.arrayBuffer());
    } catch {
    }
    throw new Trouble("noScene");
  }
  async function sceneBytes() {
    const inside = document.getElementById("scene");
    if (inside) return unpacked(fromBase64(inside.textContent ?? ""));
    return unpacked(await (location.protocol === "file:" ? fromScript() : fromServer()));
  }

  // src/settings.ts
  var isObject = (v) => typeof v === "object" && v !== null;
  var textOf = (v) => typeof v === "string" ? v : "";
  var numberOr = (v, otherwise) => typeof v === "number" && isFinite(v) ? v : otherwise;
  function numbersOf(v, count) {
    return Array.isArray(v) && v.length === count && v.every((x) => typeof x === "number" && isFinite(x)) ? v : void 0;
  }
  var vec3Of = (v) => numbersOf(v, 3);
  function readView(v) {
    if (!isObject(v)) return void 0;
    const eye = vec3Of(v.eye);
    const target = vec3Of(v.target);
    const up = vec3Of(v.up);
    if (!eye || !target || !up) return void 0;
    return {
      kind: v.kind === "parallel" ? "parallel" : "perspective",
      eye,
      target,
      up,
      fovYDeg: numberOr(v.fovYDeg, 45),
      height: numberOr(v.height, 0),
      window: numbersOf(v.window, 4) ?? [0, 0, 1, 1],
      size: numbersOf(v.size, 2) ?? [4, 3],
      model: numbersOf(v.model, 16) ?? [1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1],
      camera: textOf(v.camera),
      preset: v.preset === true
    };
  }
  function readSettings(json) {
    let s = {};
    try {
      const parsed2 = JSON.parse(json);
      if (isObject(parsed2)) s = parsed2;
    } catch {
    }
    return {
      title: textOf(s.title),
      model: textOf(s.model),
      background: vec3Of(s.background) ?? [0.24, 0.26, 0.3],
      backgroundPicture: textOf(s.backgroundPicture),
      view: readView(s.view),
      frame: typeof s.frame === "number" ? s.frame : void 0,
      wire: s.wire === true,
      doubleSided: s.doubleSided === true,
      camerasBar: s.camerasBar !== false,
      download: textOf(s.download),
      texts: isObject(s.texts) ? s.texts : {}
    };
  }

  // src/stage.ts
  var Stage = class {
    constructor(texts) {
      this.texts = texts;
      this.canvas = element("canvas");
      this.toolbar = element("[role=toolbar]");
      this.status = element("[role=status]");
    }
    /** What a screen reader tells; shown while it is not empty. */
    say(text) {
      this.status.textContent = text;
    }
    showBox(rect) {
      if (!rect) {
        this.box?.remove();
        this.box = void 0;
        return;
      }
      if (!this.box) {
        this.box = document.createElement("div");
        this.box.className = "box";
        this.canvas.after(this.box);
      }
      const { style } = this.box;
      style.left = Math.min(rect.left, rect.right) + "px";
      style.top = Math.min(rect.top, rect.bottom) + "px";
      style.width = Math.abs(rect.right - rect.left) + "px";
      style.height = Math.abs(rect.bottom - rect.top) + "px";
    }
    /** There will be no picture. */
    fail(error) {
      const trouble = error instanceof Trouble ? error : new Trouble("broken", error instanceof Error ? error.message : "");
      if (trouble !== error) console.error(error);
      const text = this.texts.of(trouble.key, trouble.detail);
      const alert = document.createElement("p");
      alert.setAttribute("role", "alert");
      this.canvas.after(alert);
      alert.textContent = text;
      this.say("");
      document.body.dataset.error = text;
    }
  };
  function element(selector) {
    const found = document.querySelector(selector);
    if (found) return found;
    const [, role] = /\[role=(\w+)\]/.exec(selector) ?? [];
    const made = document.createElement(role ? "div" : selector);
    if (role) made.setAttribute("role", role);
    document.body.append(made);
    return made;
  }

  // src/texts.ts
  var kTexts = {
    toolbar: "View",
    top: "Top view",
    left: "Left view",
    right: "Right view",
    front: "Front view",
    back: "Back view",
    iso: "Isometric view",
    cameras: "Cameras of the file",
    reset: "Reset view",
    play: "Play",
    pause: "Pause",
    frame: "Frame",
    fullscreen: "Full screen",
    download: "Download the model",
    canvas: "3D model %1. Arrow keys turn it, plus and minus zoom, Home resets the view.",
    loading: "Loading\u2026",
    shown: "%1 is shown",
    cameraShown: "Camera: %1",
    noWebGL: "This browser cannot show 3D pictures, because it has no WebGL 2, or it is switched off.",
    noUnpacking: "This browser is too old to unpack the scene. Any browser since 2023 can show this page.",
    noScene: "The scene of this page cannot be read. Is a file missing beside the page?",
    broken: "The scene of this page is damaged (%1).",
    noMemory: "There is too little graphics memory to show this scene.",
    lost: "The graphics card has dropped the picture. It is drawn again as soon as it is back."
  };
  var Texts = class {
    constructor(own = {}) {
      this.own = own;
    }
    /** The name of a view from a side, by the name of its camera. */
    ofPreset(name) {
      return name in kPresets ? this.of(kPresets[name].key) : name;
    }
    of(key, first = "") {
      const own = this.own[key];
      return (typeof own === "string" && own ? own : kTexts[key]).replace("%1", () => first);
    }
  };

  // src/frame_loop.ts
  var kLongestMs = 100;
  var FrameLoop = class {
    /** step: moves on what moves by itself by so many milliseconds, and says whether it still does. */
    constructor(step, draw) {
      this.step = step;
      this.draw = draw;
      /** Pictures that were drawn. */
      this.count = 0;
      this.asked = 0;
      this.last = 0;
    }
    request() {
      if (!this.asked) this.asked = requestAnimationFrame((now) => this.run(now));
    }
    run(now) {
      this.asked = 0;
      const moves = this.step(Math.min(this.last ? now - this.last : 0, kLongestMs));
      this.last = moves ? now : 0;
      this.count++;
      this.draw();
      if (moves) this.request();
    }
  };

  // src/matrix.ts
  var kIdentity = [1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1];
  function product(a, b) {
    const result = [];
    for (let c = 0; c < 16; c += 4) {
      for (let r = 0; r < 4; r++)
        result.push(a[r] * b[c] + a[r + 4] * b[c + 1] + a[r + 8] * b[c + 2] + a[r + 12] * b[c + 3]);
    }
    return result;
  }
  var translation = (v) => [1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, v[0], v[1], v[2], 1];
  function placed(t, q, s) {
    const [x, y, z, w] = [q[0], q[1], q[2], q[3]];
    return [
      (1 - 2 * (y * y + z * z)) * s[0],
      2 * (x * y + z * w) * s[0],
      2 * (x * z - y * w) * s[0],
      0,
      2 * (x * y - z * w) * s[1],
      (1 - 2 * (x * x + z * z)) * s[1],
      2 * (y * z + x * w) * s[1],
      0,
      2 * (x * z + y * w) * s[2],
      2 * (y * z - x * w) * s[2],
      (1 - 2 * (x * x + y * y)) * s[2],
      0,
      t[0],
      t[1],
      t[2],
      1
    ];
  }
  function about(linear, center) {
    const d = direction(linear, center);
    return [...linear.slice(0, 12), center[0] - d[0], center[1] - d[1], center[2] - d[2], 1];
  }
  var direction = (m, v) => [
    m[0] * v[0] + m[4] * v[1] + m[8] * v[2],
    m[1] * v[0] + m[5] * v[1] + m[9] * v[2],
    m[2] * v[0] + m[6] * v[1] + m[10] * v[2]
  ];
  var point = (m, v) => {
    const d = direction(m, v);
    return [d[0] + m[12], d[1] + m[13], d[2] + m[14]];
  };
  var row = (m, r) => [m[r], m[r + 4], m[r + 8], m[r + 12]];
  var rowTimes = (r, m) => [0, 4, 8, 12].map((c) => r[0] * m[c] + r[1] * m[c + 1] + r[2] * m[c + 2] + r[3] * m[c + 3]);
  var cofactors = (d) => [
    d[5] * d[10] - d[6] * d[9],
    d[6] * d[8] - d[4] * d[10],
    d[4] * d[9] - d[5] * d[8],
    d[2] * d[9] - d[1] * d[10],
    d[0] * d[10] - d[2] * d[8],
    d[1] * d[8] - d[0] * d[9],
    d[1] * d[6] - d[2] * d[5],
    d[2] * d[4] - d[0] * d[6],
    d[0] * d[5] - d[1] * d[4]
  ];
  function determinant(m) {
    const c = cofactors(m);
    return m[0] * c[0] + m[1] * c[1] + m[2] * c[2];
  }
  function normalMatrix(m) {
    const c = cofactors(m);
    const largest = Math.max(...c.map(Math.abs));
    const scale = largest > 0 ? Math.sign(determinant(m) || 1) / largest : 0;
    return c.map((x) => x * scale);
  }
  function affineInverse(m) {
    const c = cofactors(m);
    const d = determinant(m);
    if (!(Math.abs(d) > 1e-300)) return void 0;
    const i = [c[0], c[3], c[6], 0, c[1], c[4], c[7], 0, c[2], c[5], c[8], 0, 0, 0, 0, 1].map((x) => x / d);
    const t = direction(i, [m[12], m[13], m[14]]);
    return [...i.slice(0, 12), -t[0], -t[1], -t[2], 1];
  }

  // src/rotation.ts
  var kNoRotation = [0, 0, 0, 1];
  function rotationAbout(axis, angle) {
    const s = Math.sin(angle / 2);
    return [axis[0] * s, axis[1] * s, axis[2] * s, Math.cos(angle / 2)];
  }
  function rotationBetween(from, to) {
    const axis = cross(from, to);
    const sine = length(axis);
    return sine > 1e-12 ? rotationAbout(scaled(axis, 1 / sine), Math.atan2(sine, dot(from, to))) : kNoRotation;
  }
  function combined(a, b) {
    const r = [
      a[3] * b[0] + a[0] * b[3] + a[1] * b[2] - a[2] * b[1],
      a[3] * b[1] - a[0] * b[2] + a[1] * b[3] + a[2] * b[0],
      a[3] * b[2] + a[0] * b[1] - a[1] * b[0] + a[2] * b[3],
      a[3] * b[3] - a[0] * b[0] - a[1] * b[1] - a[2] * b[2]
    ];
    const l = Math.hypot(...r);
    return l > 0 && isFinite(l) ? [r[0] / l, r[1] / l, r[2] / l, r[3] / l] : kNoRotation;
  }
  var matrixOf = (r) => r === kNoRotation ? kIdentity : placed([0, 0, 0], r, [1, 1, 1]);

  // src/trackball.ts
  var kNoDirection = 1e-4;
  var Trackball = class {
    constructor(seen, x, y) {
      this.seen = seen;
      this.spin = 0;
      this.azimuth = 0;
      this.before = seen.turn;
      this.start(x, y);
    }
    start(x, y) {
      this.before = this.seen.turn;
      this.spin = 0;
      this.begin = this.grab(x, y);
      this.azimuth = this.begin.azimuth ?? 0;
    }
    drag(x, y) {
      const grab = this.grab(x, y);
      const begin = this.begin;
      if (begin.missed) this.spinTo(grab);
      else this.seen.turn = combined(rotationBetween(begin.at, grab.at), this.before);
      if (grab.missed !== begin.missed) this.start(x, y);
    }
    spinTo(grab) {
      if (grab.azimuth === void 0) return;
      const turned2 = grab.azimuth - this.azimuth;
      this.spin += turned2 - 2 * Math.PI * Math.round(turned2 / (2 * Math.PI));
      this.azimuth = grab.azimuth;
      this.seen.turn = combined(rotationAbout(this.sight, this.spin), this.before);
    }
    /** From the ball's centre to the eye, in radii. */
    get toEye() {
      const { camera, ball } = this.seen;
      return scaled(sub(camera.eye, ball), 1 / camera.radius);
    }
    get sight() {
      return this.seen.camera.parallel ? this.seen.camera.axes.back : normalized(this.toEye, kNoDirection);
    }
    grab(x, y) {
      const { camera, ball } = this.seen;
      const { origin, way } = camera.ray(x, y);
      const ray = normalized(way);
      const from = scaled(sub(origin, ball), 1 / camera.radius);
      const along = dot(ray, from);
      const discriminant = along * along - (dot(from, from) - 1);
      const root = Math.sqrt(Math.max(0, discriminant));
      const distance = -along - root >= 0 ? -along - root : -along + root;
      const missed = !(discriminant > 0) || distance < 0;
      const at = missed ? this.outline(ray, from) : normalized(add(from, scaled(ray, distance)), kNoDirection);
      const { right, up } = this.flatAxes();
      const flat = sub(at, scaled(this.sight, dot(at, this.sight)));
      return { at, missed, azimuth: length(flat) > 1e-6 ? Math.atan2(dot(flat, up), dot(flat, right)) : void 0 };
    }
    flatAxes() {
      const sight = this.sight;
      const right = normalized(cross(Math.abs(sight[2]) > 0.9 ? [0, 1, 0] : [0, 0, 1], sight), kNoDirection);
      return { right, up: cross(sight, right) };
    }
    /** The outline of the ball (radius 1 here) is a circle in the plane 1 / |eye| before the centre. */
    outline(ray, from) {
      const sight = this.sight;
      const parallel = this.seen.camera.parallel;
      const off = parallel ? from : ray;
      const sideways = normalized(sub(off, scaled(sight, dot(off, sight))), kNoDirection);
      const plane = parallel ? 0 : 1 / length(this.toEye);
      const radius = Math.sqrt(Math.max(0, 1 - plane * plane));
      return normalized(add(scaled(sight, plane), scaled(sideways, radius)), kNoDirection);
    }
  };

  // src/gestures.ts
  var kWheelStep = 20;
  var kKeyDeg = 10;
  var kKeyStep = 20;
  var kFineShare = 5;
  var kDoubleMs = 400;
  var kDoublePx = 24;
  var kClickPx = 6;
  var kKeys = {
    ArrowLeft: [-kKeyDeg, 0, 0],
    ArrowRight: [kKeyDeg, 0, 0],
    ArrowUp: [0, kKeyDeg, 0],
    ArrowDown: [0, -kKeyDeg, 0],
    "+": [0, 0, -kKeyStep],
    "=": [0, 0, -kKeyStep],
    "-": [0, 0, kKeyStep],
    _: [0, 0, kKeyStep]
  };
  var Gestures = class {
    constructor(seen, listener) {
      this.seen = seen;
      this.listener = listener;
      this.pointers = /* @__PURE__ */ new Map();
      this.panning = false;
      this.press = { x: 0, y: 0, time: -Infinity, isClick: false };
    }
    get isActive() {
      return this.pointers.size > 0;
    }
    down(p, time) {
      this.pointers.set(p.id, { x: p.x, y: p.y });
      this.endDrag();
      if (this.pointers.size > 1) {
        this.press.isClick = false;
        return;
      }
      if (p.button === 1 || p.button === 2 && p.shift) {
        this.panning = true;
      } else if (p.button === 0 && p.ctrl) {
        this.box = { left: p.x, top: p.y, right: p.x, bottom: p.y };
      } else if (p.button === 0) {
        this.pressed(p, time);
        this.ball = new Trackball(this.seen, p.x, p.y);
      }
    }
    pressed(p, time) {
      const last = this.press;
      const again = last.isClick && time - last.time < kDoubleMs && Math.hypot(p.x - last.x, p.y - last.y) < kDoublePx;
      this.press = { x: p.x, y: p.y, time, isClick: !again };
      if (again) this.listener.centered(p.x, p.y);
    }
    move(id, x, y) {
      const last = this.pointers.get(id);
      if (!last || last.x === x && last.y === y) return;
      const others = [...this.pointers].filter(([other]) => other !== id);
      if (others.length === 1) this.moveTwo(last, { x, y }, others[0][1]);
      else if (!others.length) this.moveOne(last, x, y);
      this.pointers.set(id, { x, y });
    }
    moveOne(last, x, y) {
      if (Math.hypot(x - this.press.x, y - this.press.y) > kClickPx) this.press.isClick = false;
      if (this.box) {
        this.box = { ...this.box, right: x, bottom: y };
        this.listener.boxed(this.box);
        return;
      }
      if (this.panning) this.seen.pan(x - last.x, y - last.y);
      else if (this.ball) this.ball.drag(x, y);
      else return;
      this.listener.moved();
    }
    /** Two fingers: their middle moves the model, their distance zooms about it. */
    moveTwo(last, now, other) {
      const before = Math.hypot(last.x - other.x, last.y - other.y);
      const after = Math.hypot(now.x - other.x, now.y - other.y);
      this.seen.pan((now.x - last.x) / 2, (now.y - last.y) / 2);
      if (before > 0 && after > 0) this.seen.zoomAt(-kStepsOfE * Math.log(after / before), (now.x + other.x) / 2, (now.y + other.y) / 2);
      this.listener.moved();
    }
    up(id) {
      if (!this.pointers.delete(id)) return;
      const { box } = this;
      this.endDrag();
      if (box && this.seen.zoomTo(box)) this.listener.moved();
      const [rest] = this.pointers.values();
      if (rest && this.pointers.size === 1) this.ball = new Trackball(this.seen, rest.x, rest.y);
    }
    /** The system has taken the pointer away: nothing is zoomed to. */
    cancel(id) {
      this.pointers.delete(id);
      this.endDrag();
    }
    endDrag() {
      this.ball = void 0;
      this.panning = false;
      if (this.box) this.listener.boxed(void 0);
      this.box = void 0;
    }
    /** notches: of a wheel, away from the scene above 0. at: the place to zoom to, else the middle. */
    wheel(notches, at) {
      if (this.ball || !isFinite(notches)) return;
      if (at) this.seen.zoomAt(notches * kWheelStep, at.x, at.y);
      else this.seen.camera.zoom(notches * kWheelStep);
      this.listener.moved();
    }
    /** True if the key does something. */
    key(key, fine) {
      const found = kKeys[key];
      if (!found) return false;
      const share = fine ? 1 / kFineShare : 1;
      const [right, up, zoom] = found;
      if (zoom) this.seen.camera.zoom(zoom * share);
      else this.seen.turnBy(right * share, up * share);
      this.listener.moved();
      return true;
    }
  };

  // third_party/meshoptimizer/decode.ts
  function assert(condition) {
    if (!condition) throw new Error("meshopt");
  }
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
    assert(source[0] === 160 && stride > 0 && stride <= 256 && stride % 4 === 0);
    assert(count * stride / 64 <= source.length);
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
        assert(from <= tail);
        for (let g = 0; g < groups; g++) {
          const mode = source[header + (g >>> 2)] >>> ((g & 3) << 1) & 3;
          from = decodeGroup(source, from, mode, deltas, byte * blockSize + g * 16);
        }
      }
      assert(from <= tail);
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
  function filterOctahedral(bytes, stride) {
    assert(stride === 4 || stride === 8);
    const data = new (stride === 4 ? Int8Array : Int16Array)(bytes.buffer, bytes.byteOffset, bytes.length / stride * 4);
    const most = stride === 4 ? 127 : 32767;
    for (let i = 0; i < data.length; i += 4) {
      const one = data[i + 2] || 1;
      let x = data[i] / one;
      let y = data[i + 1] / one;
      const z = 1 - Math.abs(x) - Math.abs(y);
      const t = Math.max(-z, 0);
      x -= x >= 0 ? t : -t;
      y -= y >= 0 ? t : -t;
      const h = most / Math.sqrt(x * x + y * y + z * z);
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
    assert((source[0] & 240) === 224 && count % 3 === 0 && triangles + 17 <= source.length);
    const version1 = source[0] === 225;
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
        assert(data < aux);
        const b = source[data++];
        n |= (b & 127) << shift;
        if (b < 128) break;
      }
      return last += dezig(n);
    };
    const corner = (code) => {
      if (code === 0) return next++;
      return code === 15 ? read() : vertex(code - 1);
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
        else if (low < (version1 ? 13 : 15)) c = vertex(low);
        else if (low < 15) c = push(last += low === 13 ? -1 : 1);
        else c = push(read());
      } else {
        const far = low >= 14;
        const pair = far ? source[data++] : source[aux + low];
        if (far && pair === 0) next = 0;
        const z = pair >>> 4;
        const w = pair & 15;
        a = low === 15 ? -1 : next++;
        if (low === 15) a = read();
        b = far ? corner(z) : z ? vertex(z - 1) : next++;
        c = far ? corner(w) : w ? vertex(w - 1) : next++;
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
    assert(data <= aux);
    return target;
  }

  // src/glb.ts
  var kMagic = 1179937895;
  var kJson = 1313821514;
  var kBin = 5130562;
  function readGlb(bytes) {
    const view = new DataView(bytes.buffer, bytes.byteOffset, bytes.length);
    demand(bytes.length >= 20 && view.getUint32(0, true) === kMagic && view.getUint32(4, true) === 2, "glTF");
    const end = view.getUint32(8, true);
    demand(end <= bytes.length, "length");
    let json;
    let bin = new Uint8Array(0);
    for (let at = 12; at + 8 <= end; ) {
      const size = view.getUint32(at, true);
      const kind = view.getUint32(at + 4, true);
      at += 8;
      demand(size <= end - at, "chunk");
      const chunk = bytes.subarray(at, at + size);
      if (kind === kJson && json === void 0) json = parsed(chunk);
      if (kind === kBin && !bin.length) bin = chunk;
      at += size + 3 & ~3;
    }
    demand(typeof json === "object" && json !== null, "JSON");
    return { json, bin };
  }
  function parsed(chunk) {
    try {
      return JSON.parse(new TextDecoder().decode(chunk));
    } catch {
      return void 0;
    }
  }

  // src/gltf.ts
  var kComponents = { SCALAR: 1, VEC2: 2, VEC3: 3, VEC4: 4, MAT4: 16 };
  var kTypes = {
    5120: { size: 1, most: 127, read: (v, at) => v.getInt8(at) },
    5121: { size: 1, most: 255, read: (v, at) => v.getUint8(at) },
    5122: { size: 2, most: 32767, read: (v, at) => v.getInt16(at, true) },
    5123: { size: 2, most: 65535, read: (v, at) => v.getUint16(at, true) },
    5125: { size: 4, most: 1, read: (v, at) => v.getUint32(at, true) },
    5126: { size: 4, most: 1, read: (v, at) => v.getFloat32(at, true) }
  };
  function whole(v, otherwise, what) {
    const n = v ?? otherwise;
    demand(Number.isSafeInteger(n) && n >= 0, what);
    return n;
  }
  var Gltf = class {
    constructor(bytes) {
      this.decoded = /* @__PURE__ */ new Map();
      const glb = readGlb(bytes);
      this.json = glb.json;
      this.bin = glb.bin;
    }
    /** Element `index` of a top-level list. */
    item(list, index) {
      const all = this.json[list];
      const item = Array.isArray(all) && Number.isSafeInteger(index) ? all[index] : void 0;
      demand(typeof item === "object" && item, list);
      return item;
    }
    /** A top-level list; empty where there is none. */
    list(name) {
      const all = this.json[name] ?? [];
      demand(Array.isArray(all) && all.every((x) => typeof x === "object" && x), name);
      return all;
    }
    /** The bytes of a buffer view, unpacked. */
    bytesOf(index) {
      const known = this.decoded.get(index);
      if (known) return known;
      const view = this.item("bufferViews", index);
      const packed = view.extensions?.EXT_meshopt_compression;
      const bytes = packed ? this.unpacked(packed) : this.slice(view);
      this.decoded.set(index, bytes);
      return bytes;
    }
    /** Lets what was unpacked go: it is on the graphics card. */
    forget() {
      this.decoded.clear();
    }
    slice(view) {
      const offset = whole(view.byteOffset, 0, "bufferViews");
      const length2 = whole(view.byteLength, void 0, "bufferViews");
      demand(view.buffer === 0 && offset + length2 <= this.bin.length, "bufferViews");
      return this.bin.subarray(offset, offset + length2);
    }
    unpacked(packed) {
      const source = this.slice(packed);
      const count = whole(packed.count, void 0, "meshopt");
      const stride = whole(packed.byteStride, void 0, "meshopt");
      try {
        if (packed.mode === "TRIANGLES") {
          const indices = decodeTriangles(count, source);
          return new Uint8Array(stride === 2 ? new Uint16Array(indices).buffer : indices.buffer);
        }
        const bytes = decodeAttributes(packed.mode === "ATTRIBUTES" ? count : -1, stride, source);
        if (packed.filter === "OCTAHEDRAL") filterOctahedral(bytes, stride);
        if (packed.filter === "EXPONENTIAL") filterExponential(bytes);
        return bytes;
      } catch {
        return demand(false, "meshopt");
      }
    }
    /** Checks and returns an accessor with so many components, of one of the types. */
    accessor(index, components) {
      const a = this.item("accessors", index);
      const type = kTypes[a.componentType];
      const view = this.item("bufferViews", a.bufferView);
      const bytes = this.bytesOf(a.bufferView);
      const offset = whole(a.byteOffset, 0, "accessors");
      const count = whole(a.count, void 0, "accessors");
      demand(type && kComponents[a.type] === components && !a.sparse, "accessors");
      const size = type.size * components;
      const stride = whole(view.extensions?.EXT_meshopt_compression?.byteStride ?? view.byteStride, size, "accessors") || size;
      demand(stride >= size && stride <= 255 && offset % type.size === 0 && stride % type.size === 0, "accessors");
      demand(count > 0 && offset + (count - 1) * stride + size <= bytes.length, "accessors");
      return {
        view: a.bufferView,
        bytes,
        offset,
        stride,
        count,
        components,
        type: a.componentType,
        normalized: a.normalized === true,
        min: a.min,
        max: a.max
      };
    }
    /** What a number in the file is multiplied with. */
    scaleOf(a) {
      return a.normalized ? 1 / kTypes[a.type].most : 1;
    }
    /** All numbers of an accessor; normalized ones as fractions. */
    numbers(a) {
      const { read, size } = kTypes[a.type];
      const view = new DataView(a.bytes.buffer, a.bytes.byteOffset, a.bytes.length);
      const result = new Float32Array(a.count * a.components);
      const scale = this.scaleOf(a);
      for (let i = 0, to = 0; i < a.count; i++) {
        for (let c = 0; c < a.components; c++)
          result[to++] = Math.max(read(view, a.offset + i * a.stride + c * size) * scale, a.normalized ? -1 : -Infinity);
      }
      return result;
    }
    /** The indices of triangles, all of them below `vertices`. */
    indices(index, vertices) {
      const a = this.accessor(index, 1);
      demand((a.type === 5123 || a.type === 5125) && a.count % 3 === 0 && (a.bytes.byteOffset + a.offset) % 2 === 0, "indices");
      const from = a.bytes.byteOffset + a.offset;
      const bytes = from % 4 ? a.bytes.slice(a.offset) : void 0;
      const buffer = (bytes ?? a.bytes).buffer;
      const at = bytes ? 0 : from;
      const result = a.type === 5123 ? new Uint16Array(buffer, at, a.count) : new Uint32Array(buffer, at, a.count);
      let most = 0;
      for (let i = 0; i < result.length; i++) if (result[i] > most) most = result[i];
      demand(most < vertices, "indices");
      return result;
    }
  };

  // src/input.ts
  var kNotch = [100, 3, 1];
  var kPinchNotch = 10;
  function listen(canvas, gestures, keys) {
    const place = (event) => {
      const box = canvas.getBoundingClientRect();
      return { x: event.clientX - box.left, y: event.clientY - box.top };
    };
    canvas.addEventListener("pointerdown", (event) => {
      canvas.focus({ preventScroll: true });
      if (event.button === 1) event.preventDefault();
      canvas.setPointerCapture(event.pointerId);
      const { pointerId: id, button, ctrlKey: ctrl, shiftKey: shift } = event;
      gestures.down({ id, ...place(event), button, touch: event.pointerType === "touch", ctrl, shift }, event.timeStamp);
    });
    canvas.addEventListener("pointermove", (event) => {
      const { x, y } = place(event);
      gestures.move(event.pointerId, x, y);
    });
    canvas.addEventListener("pointerup", (event) => gestures.up(event.pointerId));
    canvas.addEventListener("pointercancel", (event) => gestures.cancel(event.pointerId));
    canvas.addEventListener("lostpointercapture", (event) => gestures.cancel(event.pointerId));
    canvas.addEventListener("mousedown", (event) => event.button === 1 && event.preventDefault());
    canvas.addEventListener("contextmenu", (event) => (event.shiftKey || event.ctrlKey) && event.preventDefault());
    canvas.addEventListener(
      "wheel",
      (event) => {
        event.preventDefault();
        const turned2 = event.deltaY || event.deltaX;
        if (event.ctrlKey) gestures.wheel(turned2 / kPinchNotch, place(event));
        else gestures.wheel(turned2 / kNotch[event.deltaMode], event.altKey ? place(event) : void 0);
      },
      { passive: false }
    );
    canvas.addEventListener("keydown", (event) => {
      if (event.ctrlKey || event.altKey || event.metaKey) return;
      if (event.key === "Home") keys.reset();
      else if (event.key === " ") keys.togglePlaying();
      else if (!gestures.key(event.key, event.shiftKey)) return;
      event.preventDefault();
    });
  }

  // src/animation.ts
  var kFramesPerSecond = 30;
  var kComponents2 = { translation: 3, rotation: 4, scale: 3, weights: 0 };
  function readChannel(gltf, animation, channel, nodes) {
    const node = nodes[channel?.target?.node];
    const target = channel?.target?.path;
    const sampler = animation.samplers?.[channel?.sampler];
    if (!node || !(target in kComponents2)) return void 0;
    demand(sampler, "animations");
    const times = gltf.numbers(gltf.accessor(sampler.input, 1));
    const wanted = kComponents2[target];
    const values = gltf.numbers(gltf.accessor(sampler.output, wanted || 1));
    const components = wanted || Math.floor(values.length / times.length);
    demand(components > 0 && values.length >= times.length * components, "animations");
    demand(sampler.interpolation !== "CUBICSPLINE", "animations");
    return { node, target, times, values, components, step: sampler.interpolation === "STEP" };
  }
  function readChannels(gltf, nodes) {
    const result = [];
    for (const animation of gltf.list("animations")) {
      for (const channel of animation.channels ?? []) {
        const read = readChannel(gltf, animation, channel, nodes);
        if (read) result.push(read);
      }
    }
    return result;
  }
  function keyAt(times, time) {
    let low = 0;
    let high = times.length - 1;
    while (low < high) {
      const middle = low + high + 1 >> 1;
      if (times[middle] <= time) low = middle;
      else high = middle - 1;
    }
    return low;
  }
  function sample(c, time) {
    const n = c.components;
    const key = keyAt(c.times, time);
    const from = Array.from(c.values.subarray(key * n, key * n + n));
    const next = key + 1;
    if (c.step || next >= c.times.length || time <= c.times[key]) return from;
    const to = c.values.subarray(next * n, next * n + n);
    const share = (time - c.times[key]) / (c.times[next] - c.times[key]);
    if (c.target !== "rotation") return from.map((x, i) => x + (to[i] - x) * share);
    return turned(from, to, share);
  }
  function turned(from, to, share) {
    let cosine = from.reduce((sum, x, i) => sum + x * to[i], 0);
    const sign = cosine < 0 ? -1 : 1;
    cosine = Math.min(cosine * sign, 1);
    const angle = Math.acos(cosine);
    const sine = Math.sin(angle);
    const [a, b] = sine > 1e-4 ? [Math.sin((1 - share) * angle) / sine, Math.sin(share * angle) / sine] : [1 - share, share];
    return from.map((x, i) => x * a + to[i] * b * sign);
  }
  function animate(channels, time) {
    for (const channel of channels) {
      channel.node[channel.target] = sample(channel, time);
      if (channel.target !== "weights") channel.node.matrix = void 0;
    }
  }

  // src/player.ts
  var Player = class {
    constructor(first, last, frame) {
      this.first = first;
      this.last = last;
      this.frame = frame;
      this.playing = false;
    }
    /** Moves on by milliseconds. */
    advance(ms) {
      const length2 = this.last - this.first;
      if (!this.playing || !(length2 > 0)) return this.frame;
      const passed = this.frame - this.first + ms * kFramesPerSecond / 1e3;
      return this.frame = this.first + (passed % length2 + length2) % length2;
    }
    show(frame) {
      this.frame = Math.min(Math.max(frame, this.first), this.last);
    }
  };

  // shaders/depth.frag
  var depth_default = "// The depth of what is seen, in three bytes.\nprecision highp float;\nout vec4 oColor;\nvoid main() {\n  vec3 digits = fract(gl_FragCoord.z * vec3(1, 255, 65025));\n  oColor = vec4(digits - digits.yzz * vec3(1. / 255., 1. / 255., 0), 1);\n}\n";

  // shaders/surface.frag
  var surface_default = "precision highp float;\nin vec3 vPoint, vNormal;\nin vec2 vUv;\nout vec4 oColor;\nuniform vec4 uViewer, uDiffuse, uSpecular;\nuniform vec3 uAmbient, uAmbientLight;\nuniform float uSelf;\n#ifdef LIGHTS\nuniform vec4 uLightPosition[LIGHTS], uLightDirection[LIGHTS];\nuniform vec3 uLightColor[LIGHTS];\nuniform vec2 uLightRange[LIGHTS];\n#endif\n#ifdef MAPS\nuniform sampler2D uMap[8];\nuniform vec3 uMapS[8], uMapT[8];\nuniform vec4 uMapValue[8], uMapWeight[8];\nvec2 Coordinates(int i, vec2 uv) {\n  return vec2(dot(uMapS[i], vec3(uv, 1)), dot(uMapT[i], vec3(uv, 1)));\n}\n// The map's amount; 0 outside one that is not tiled.\nfloat Amount(int i, vec2 at) {\n  vec2 away = abs(at - .5);\n  return uMapValue[i].w > .5 && max(away.x, away.y) > .5 ? 0. : uMapValue[i].x;\n}\nfloat Value(int i, vec4 color) {\n  return dot(uMapWeight[i], color) * uMapValue[i].y + uMapValue[i].z;\n}\nvec3 Colour(int i, vec4 color) {\n  return color.rgb * uMapValue[i].y + uMapValue[i].z;\n}\n#endif\nvoid main() {\n  vec3 V = normalize(uViewer.xyz - uViewer.w * vPoint);\n#ifdef FLAT\n  vec3 N = normalize(cross(dFdx(vPoint), dFdy(vPoint)));\n#else\n  // A zero normal stays zero instead of becoming undefined.\n  vec3 N = vNormal * inversesqrt(max(dot(vNormal, vNormal), 1e-30));\n#ifdef TWO_SIDED\n  // By the normal, not by the winding: neighbours of such surfaces are often wound against each other.\n  if (dot(N, V) < 0.) N = -N;\n#endif\n#endif\n  float opacity = uDiffuse.w, self = uSelf;\n  vec3 diffuse = uDiffuse.rgb, specular = uSpecular.rgb, ambient = uAmbient;\n  vec2 at;\n  vec4 texel;\n  float amount;\n#ifdef BUMP\n  {\n    at = Coordinates(6, vUv);\n    vec2 stepX = dFdx(at), stepY = dFdy(at);\n    float here = Value(6, texture(uMap[6], at));\n    float right = Value(6, texture(uMap[6], at + stepX)) - here;\n    float up = Value(6, texture(uMap[6], at + stepY)) - here;\n    vec3 alongX = dFdx(vPoint), alongY = dFdy(vPoint);\n    vec3 fromX = cross(alongY, N), fromY = cross(N, alongX);\n    float area = dot(alongX, fromX);\n    // Heights are measured in tiles of the map, so a bump looks the same whatever the model's units are.\n    float tile = sqrt(abs(area) / max(abs(stepX.x * stepY.y - stepX.y * stepY.x), 1e-20));\n    vec3 slope = (area < 0. ? -1. : 1.) * (right * fromX + up * fromY);\n    vec3 bent = abs(area) * N - .03 * Amount(6, at) * tile * slope;\n    N = bent * inversesqrt(max(dot(bent, bent), 1e-30));\n  }\n#endif\n#ifdef TEXTURE\n  at = Coordinates(0, vUv);\n  texel = texture(uMap[0], at);\n  // Colours are premultiplied where alpha counts, so that transparent pixels do not bleed into the edges.\n  texel.rgb /= max(mix(1., texel.a, uMapWeight[0].z + uMapWeight[0].w), .004);\n  amount = Amount(0, at) * mix(1., texel.a, uMapWeight[0].z);\n  diffuse = mix(diffuse, Colour(0, texel), amount);\n  ambient = mix(ambient, Colour(0, texel), amount);\n  opacity *= mix(1., texel.a, amount * uMapWeight[0].w);\n#endif\n#ifdef TEXTURE2\n  at = Coordinates(1, vUv);\n  texel = texture(uMap[1], at);\n  texel.rgb /= max(mix(1., texel.a, uMapWeight[1].z), .004);\n  amount = Amount(1, at) * mix(1., texel.a, uMapWeight[1].z);\n  diffuse = mix(diffuse, Colour(1, texel), amount);\n  ambient = mix(ambient, Colour(1, texel), amount);\n#endif\n#ifdef OPACITY\n  at = Coordinates(2, vUv);\n  opacity = mix(opacity, Value(2, texture(uMap[2], at)), Amount(2, at));\n#endif\n#ifdef SPECULAR_MAP\n  at = Coordinates(3, vUv);\n  specular = mix(specular, Colour(3, texture(uMap[3], at)) * uMapWeight[3].x, Amount(3, at));\n#endif\n#ifdef SHININESS\n  at = Coordinates(4, vUv);\n  specular *= mix(1., Value(4, texture(uMap[4], at)), Amount(4, at));\n#endif\n#ifdef TINTED\n  specular *= diffuse;\n#endif\n#ifdef SELF\n  at = Coordinates(5, vUv);\n  self = mix(self, Value(5, texture(uMap[5], at)), Amount(5, at));\n#endif\n#ifdef SOLID\n  if (opacity * 255. < 249.5) discard;\n  opacity = 1.;\n#endif\n#ifdef TRANSLUCENT\n  if (opacity * 255. >= 249.5) discard;\n#endif\n  vec3 color = self * diffuse + uAmbientLight * ambient;\n#ifdef LIGHTS\n  for (int i = 0; i < LIGHTS; ++i) {\n    vec3 L = uLightPosition[i].xyz - vPoint;\n    float distance = length(L);\n    L /= max(distance, 1e-20);\n    vec3 light = uLightColor[i];\n    light *= smoothstep(uLightPosition[i].w, uLightDirection[i].w, -dot(L, uLightDirection[i].xyz));\n    light *= clamp((uLightRange[i].y - distance) / (uLightRange[i].y - uLightRange[i].x), 0., 1.);\n    float facing = max(dot(N, L), 0.);\n    vec3 reflected = diffuse * facing;\n#ifdef SPECULAR\n    vec3 H = L + V;\n    float highlight = max(dot(N, H * inversesqrt(max(dot(H, H), 1e-20))), 1e-4);\n    if (facing > 0.) reflected += specular * pow(highlight, uSpecular.w);\n#endif\n    color += light * reflected;\n  }\n#else\n  float facing = max(dot(N, V), 0.);\n  color += diffuse * facing;\n#ifdef SPECULAR\n  color += specular * pow(max(facing, 1e-4), uSpecular.w);\n#endif\n#endif\n#ifdef REFLECTION\n  {\n    vec3 R = reflect(-V, N);\n    // The picture's rows count downwards.\n    at = vec2(atan(R.y, R.x) * .15915494 + .5, .5 - asin(clamp(R.z, -1., 1.)) * .31830989);\n    at = Coordinates(7, at);\n    color += Colour(7, texture(uMap[7], at)) * Amount(7, at);\n  }\n#endif\n  // Multiplied here, as a colour is clipped at white before the blending: highlights on glass would lose theirs.\n  oColor = vec4(color * opacity, opacity);\n}\n";

  // shaders/surface.vert
  var surface_default2 = "// Coordinates are the file's axes after the turning of the model, with the eye as origin.\nuniform mat4 uModelView, uProjection;\nuniform mat3 uNormal;\nuniform vec4 uViewer;\nuniform vec2 uMorph;\nuniform vec2 uStep;\nlayout(location = 0) in vec3 aPosition;\nlayout(location = 1) in vec3 aNormal;\nlayout(location = 2) in vec2 aUv;\nlayout(location = 3) in vec3 aFace;\nlayout(location = 4) in vec3 aPosition1;\nlayout(location = 5) in vec3 aNormal1;\nlayout(location = 6) in vec3 aPosition2;\nlayout(location = 7) in vec3 aNormal2;\nout vec3 vPoint, vNormal;\nout vec2 vUv;\nvoid main() {\n  vec3 at = aPosition;\n  vec3 normal = aNormal;\n#ifdef MORPH\n  at += uMorph.x * aPosition1 + uMorph.y * aPosition2;\n  normal += uMorph.x * aNormal1 + uMorph.y * aNormal2;\n#endif\n  vec4 point = uModelView * vec4(at, 1);\n  vPoint = point.xyz;\n  vNormal = uNormal * normal;\n  vUv = aUv;\n  gl_Position = uProjection * point;\n#ifdef LINES\n  // Copies beside each other make a line wider.\n  gl_Position.xy += uStep * gl_Position.w;\n#ifndef TWO_SIDED\n  // Lines have no back side of their own: those of triangles that face away go out of the picture.\n  if (dot(uNormal * aFace, uViewer.xyz - uViewer.w * vPoint) <= 0.) gl_Position = vec4(2, 2, 2, 1);\n#endif\n#endif\n}\n";

  // shaders/backdrop.frag
  var backdrop_default = "// The picture behind the scene, which covers the view.\nprecision highp float;\nuniform highp sampler2D uPicture;\nuniform vec2 uPart;\nin vec2 vAt;\nout vec4 oColor;\nvoid main() {\n  vec2 at = vec2(vAt.x, 1. - vAt.y) - .5;\n  oColor = texture(uPicture, at * uPart + .5);\n  oColor.rgb *= oColor.a;\n}\n";

  // shaders/cover.vert
  var cover_default = "// A triangle that covers the whole target.\nout vec2 vAt;\nvoid main() {\n  vAt = vec2(gl_VertexID & 1, gl_VertexID >> 1) * 2.;\n  gl_Position = vec4(vAt * 2. - 1., 1, 1);\n}\n";

  // src/program.ts
  var Program = class {
    constructor(gl, vertex, fragment, defines = []) {
      this.gl = gl;
      this.uniforms = /* @__PURE__ */ new Map();
      this.checked = false;
      const head = "#version 300 es\n" + defines.map((d) => `#define ${d}
`).join("");
      this.program = gl.createProgram();
      for (const [kind, source] of [
        [gl.VERTEX_SHADER, vertex],
        [gl.FRAGMENT_SHADER, fragment]
      ]) {
        const shader = gl.createShader(kind);
        gl.shaderSource(shader, head + source);
        gl.compileShader(shader);
        gl.attachShader(this.program, shader);
      }
      gl.linkProgram(this.program);
    }
    use() {
      const { gl, program } = this;
      if (!this.checked) {
        this.checked = true;
        const linked = gl.getProgramParameter(program, gl.LINK_STATUS) || gl.isContextLost();
        if (!linked) console.error(gl.getProgramInfoLog(program), ...(gl.getAttachedShaders(program) ?? []).map((s) => gl.getShaderInfoLog(s)));
        demand(linked, "shader");
      }
      gl.useProgram(program);
    }
    at(name) {
      let found = this.uniforms.get(name);
      if (found === void 0) {
        found = this.gl.getUniformLocation(this.program, name);
        this.uniforms.set(name, found);
      }
      return found;
    }
    vec2(name, values) {
      this.gl.uniform2fv(this.at(name), [...values]);
    }
    vec3(name, values) {
      this.gl.uniform3fv(this.at(name), [...values]);
    }
    vec4(name, values) {
      this.gl.uniform4fv(this.at(name), [...values]);
    }
  };

  // shaders/texel.frag
  var texel_default = "// Turns a picture into one with alpha as it counts: nearly solid is solid, nearly clear is clear. uOpacity: its brightness is\n// the opacity; else its colours are multiplied by alpha.\nprecision highp float;\nuniform highp sampler2D uPicture;\nuniform bool uOpacity;\nout vec4 oColor;\nfloat Counted(float alpha) {\n  return alpha > 249.5 / 255. ? 1. : alpha < 5.5 / 255. ? 0. : alpha;\n}\nvoid main() {\n  vec4 texel = texelFetch(uPicture, ivec2(gl_FragCoord.xy), 0);\n  float alpha = Counted(texel.a);\n  float grey = floor(dot(texel.rgb, vec3(.299, .587, .114)) * 255. + .5) / 255.;\n  oColor = vec4(uOpacity ? vec3(Counted(grey)) : texel.rgb * alpha, alpha);\n}\n";

  // src/material.ts
  var kMaps = ["texture", "texture2", "opacity", "specular", "shininess", "selfIllumination", "bump", "reflection"];
  var kRepeat = 10497;
  var kClamp = 33071;
  var kMirror = 33648;
  var fraction = (v, otherwise) => typeof v === "number" ? clamp(v, 0, 1) : otherwise;
  function readMap(kind, m, strength2) {
    const amount = fraction(m?.amount, 1);
    if (!m || !Number.isSafeInteger(m.texture) || amount === 0) return void 0;
    const uv = numbersOf(m.uv, 6) ?? [1, 0, 0, 1, 0, 0];
    const tiled = m.tile !== false;
    const first = kind === 0 /* Texture */;
    const alphaIsOpacity = first && m.alphaIsOpacity === true;
    const shows = first ? m.decal : kind === 1 /* Texture2 */ && !m.ignoreAlpha;
    const grey = m.alphaSource ? [0, 0, 0, 1] : [0.299, 0.587, 0.114, 0];
    const plain = kind === 2 /* Opacity */ ? 2 /* Opacity */ : 0 /* Separate */;
    return {
      texture: m.texture,
      alpha: shows || alphaIsOpacity ? 1 /* Multiplied */ : plain,
      wrap: !tiled ? kClamp : m.mirror ? kMirror : kRepeat,
      s: [uv[0], uv[2], uv[4]],
      t: [uv[1], uv[3], uv[5]],
      value: [amount, m.negative ? -1 : 1, m.negative ? 1 : 0, tiled ? 0 : 1],
      weight: kind <= 1 /* Texture2 */ ? [0, 0, shows ? 1 : 0, alphaIsOpacity ? 1 : 0] : kind === 3 /* Specular */ ? [strength2, 0, 0, 0] : grey
    };
  }
  function readLook(material, doubleSided) {
    const m = material.extras?.orbivue ?? {};
    const strength2 = fraction(m.strength, 0);
    const hasSpecular = strength2 > 0;
    const diffuse = vec3Of(m.diffuse) ?? [0.588, 0.588, 0.588];
    const wire = m.wire === true || m.shading === "wire";
    const flat = m.shading === "flat";
    const maps = kMaps.map((name, kind) => readMap(kind, m.maps?.[name], strength2));
    if (!hasSpecular) maps[3 /* Specular */] = maps[4 /* Shininess */] = void 0;
    const metal = hasSpecular && m.shading === "metal";
    const opacity = fraction(m.opacity, 1);
    const specular = scaled(vec3Of(m.specular) ?? [0.898, 0.898, 0.898], strength2);
    const opacityMap = maps[2 /* Opacity */];
    const additive = m.additive === true;
    return {
      ambient: vec3Of(m.ambient) ?? diffuse,
      diffuse,
      specular,
      exponent: clamp(typeof m.exponent === "number" ? m.exponent : 2, 1, 1024),
      self: fraction(m.selfIllumination, 0),
      opacity,
      hasSpecular,
      metal,
      flat,
      twoSided: doubleSided || m.twoSided === true || material.doubleSided === true,
      wire,
      lineWidth: typeof m.wireSizePx === "number" && m.wireSizePx > 0 ? Math.min(m.wireSizePx, 64) : 1,
      additive,
      blended: m.blend === true || additive,
      maybeSolid: !additive && (opacity >= 1 || !!opacityMap && opacityMap.value[0] >= 1),
      invisible: opacity <= 0 && !opacityMap,
      maps
    };
  }
  function readLooks(gltf, doubleSided) {
    return [...gltf.list("materials"), {}].map((m) => readLook(m, doubleSided));
  }

  // src/textures.ts
  var kAnisotropy = 8;
  var Textures = class {
    constructor(gl, gltf, software) {
      this.gl = gl;
      this.gltf = gltf;
      this.textures = /* @__PURE__ */ new Map();
      this.samplers = /* @__PURE__ */ new Map();
      this.anisotropic = software ? null : gl.getExtension("EXT_texture_filter_anisotropic");
    }
    /** Decodes all pictures that the looks use. Maps whose picture cannot be decoded are taken out of them. */
    async load(looks) {
      const wanted = /* @__PURE__ */ new Map();
      for (const look of looks) {
        for (const map of look.maps) {
          if (map) wanted.set(map.texture, (wanted.get(map.texture) ?? /* @__PURE__ */ new Set()).add(map.alpha));
        }
      }
      await Promise.all([...wanted].map(([texture, uses]) => this.loadOne(texture, uses)));
      for (const look of looks) look.maps = look.maps.map((map) => map && this.textures.has(map.texture + "/" + map.alpha) ? map : void 0);
    }
    async loadOne(texture, uses) {
      try {
        const image = this.gltf.item("images", this.gltf.item("textures", texture).source);
        const blob = new Blob([this.gltf.bytesOf(image.bufferView)], { type: image.mimeType });
        const bitmap = await createImageBitmap(blob, { premultiplyAlpha: "none", colorSpaceConversion: "none" });
        for (const use of uses) this.textures.set(texture + "/" + use, this.upload(bitmap, use, image.mimeType !== "image/jpeg"));
        bitmap.close();
      } catch (error) {
        console.warn("texture", texture, error);
      }
    }
    upload(bitmap, use, hasAlpha) {
      const { gl } = this;
      let texture = fromBitmap(gl, bitmap);
      if (use === 2 /* Opacity */ || use === 1 /* Multiplied */ && hasAlpha)
        texture = this.converted(texture, bitmap.width, bitmap.height, use === 2 /* Opacity */);
      gl.bindTexture(gl.TEXTURE_2D, texture);
      gl.generateMipmap(gl.TEXTURE_2D);
      return texture;
    }
    converted(from, width, height, opacity) {
      const { gl } = this;
      const to = gl.createTexture();
      const levels = Math.floor(Math.log2(Math.max(width, height))) + 1;
      gl.bindTexture(gl.TEXTURE_2D, to);
      gl.texStorage2D(gl.TEXTURE_2D, levels, gl.RGBA8, width, height);
      const frame = gl.createFramebuffer();
      gl.bindFramebuffer(gl.FRAMEBUFFER, frame);
      gl.framebufferTexture2D(gl.FRAMEBUFFER, gl.COLOR_ATTACHMENT0, gl.TEXTURE_2D, to, 0);
      this.converter ?? (this.converter = new Program(gl, cover_default, texel_default));
      this.converter.use();
      gl.uniform1i(this.converter.at("uOpacity"), opacity ? 1 : 0);
      gl.activeTexture(gl.TEXTURE0);
      gl.bindTexture(gl.TEXTURE_2D, from);
      gl.bindSampler(0, null);
      gl.viewport(0, 0, width, height);
      gl.disable(gl.BLEND);
      gl.disable(gl.DEPTH_TEST);
      gl.bindVertexArray(null);
      gl.drawArrays(gl.TRIANGLES, 0, 3);
      gl.bindFramebuffer(gl.FRAMEBUFFER, null);
      gl.deleteFramebuffer(frame);
      gl.deleteTexture(from);
      return to;
    }
    /** Binds the maps of a look to the texture units of their numbers. */
    bind(look) {
      const { gl } = this;
      look.maps.forEach((map, unit) => {
        if (!map) return;
        gl.activeTexture(gl.TEXTURE0 + unit);
        gl.bindTexture(gl.TEXTURE_2D, this.textures.get(map.texture + "/" + map.alpha));
        gl.bindSampler(unit, this.sampler(map.wrap, unit !== 7 /* Reflection */));
      });
    }
    /** Without mipmaps for reflections: where their angle jumps by a whole turn too coarse a level would be chosen. */
    sampler(wrap, mipmaps) {
      const { gl, anisotropic } = this;
      const key = wrap + "/" + mipmaps;
      let sampler = this.samplers.get(key);
      if (sampler) return sampler;
      sampler = gl.createSampler();
      gl.samplerParameteri(sampler, gl.TEXTURE_WRAP_S, wrap);
      gl.samplerParameteri(sampler, gl.TEXTURE_WRAP_T, wrap);
      gl.samplerParameteri(sampler, gl.TEXTURE_MAG_FILTER, gl.LINEAR);
      gl.samplerParameteri(sampler, gl.TEXTURE_MIN_FILTER, mipmaps ? gl.LINEAR_MIPMAP_LINEAR : gl.LINEAR);
      if (anisotropic && mipmaps) gl.samplerParameterf(sampler, anisotropic.TEXTURE_MAX_ANISOTROPY_EXT, kAnisotropy);
      this.samplers.set(key, sampler);
      return sampler;
    }
  };
  function fromBitmap(gl, bitmap) {
    const texture = gl.createTexture();
    gl.activeTexture(gl.TEXTURE0);
    gl.bindTexture(gl.TEXTURE_2D, texture);
    gl.pixelStorei(gl.UNPACK_COLORSPACE_CONVERSION_WEBGL, gl.NONE);
    gl.texImage2D(gl.TEXTURE_2D, 0, gl.RGBA8, gl.RGBA, gl.UNSIGNED_BYTE, bitmap);
    return texture;
  }

  // src/backdrop.ts
  var Backdrop = class {
    constructor(gl, address) {
      this.gl = gl;
      this.address = address;
      this.aspect = 1;
    }
    async load() {
      const found = /^data:([\w/+-]+);base64,/.exec(this.address);
      if (!found) return;
      const { gl } = this;
      try {
        const bytes = fromBase64(this.address.slice(found[0].length));
        const bitmap = await createImageBitmap(new Blob([bytes], { type: found[1] }), { premultiplyAlpha: "none" });
        this.aspect = bitmap.width / bitmap.height;
        this.texture = fromBitmap(gl, bitmap);
        gl.generateMipmap(gl.TEXTURE_2D);
        for (const side of [gl.TEXTURE_WRAP_S, gl.TEXTURE_WRAP_T]) gl.texParameteri(gl.TEXTURE_2D, side, gl.CLAMP_TO_EDGE);
        this.program = new Program(gl, cover_default, backdrop_default);
      } catch {
      }
    }
    /** aspect: of the view. */
    draw(aspect) {
      const { gl, program, texture } = this;
      if (!texture || !program) return;
      const wider = aspect / this.aspect;
      program.use();
      program.vec2("uPart", [Math.min(1, wider), Math.min(1, 1 / wider)]);
      gl.activeTexture(gl.TEXTURE0);
      gl.bindTexture(gl.TEXTURE_2D, texture);
      gl.bindSampler(0, null);
      gl.disable(gl.DEPTH_TEST);
      gl.disable(gl.CULL_FACE);
      gl.enable(gl.BLEND);
      gl.blendFunc(gl.ONE, gl.ONE_MINUS_SRC_ALPHA);
      gl.drawArrays(gl.TRIANGLES, 0, 3);
    }
  };

  // src/sorting.ts
  var kMostSorted = 5e4;
  function orderBackToFront(positions, indices, row2) {
    const count = indices.length / 3;
    const depths = new Float32Array(count);
    let low = Infinity;
    let high = -Infinity;
    for (let t = 0; t < count; t++) {
      let sum = 0;
      for (let i = t * 3; i < t * 3 + 3; i++) {
        const at = indices[i] * 3;
        sum += row2[0] * positions[at] + row2[1] * positions[at + 1] + row2[2] * positions[at + 2];
      }
      const depth = depths[t] = sum / 3 + row2[3];
      if (depth < low) low = depth;
      if (depth > high) high = depth;
    }
    const scale = high > low ? 65535 / (high - low) : 0;
    const keys = new Uint16Array(count);
    for (let t = 0; t < count; t++) keys[t] = (high - depths[t]) * scale;
    let order = new Uint32Array(count);
    for (let t = 0; t < count; t++) order[t] = t;
    for (const shift of [0, 8]) order = sortedByByte(order, keys, shift);
    const ordered = indices.slice();
    for (let t = 0; t < count; t++) {
      const from = order[t] * 3;
      ordered[t * 3] = indices[from];
      ordered[t * 3 + 1] = indices[from + 1];
      ordered[t * 3 + 2] = indices[from + 2];
    }
    return { ordered, middle: (low + high) / 2 };
  }
  function sortedByByte(order, keys, shift) {
    const start = new Uint32Array(257);
    for (const key of keys) start[(key >> shift & 255) + 1]++;
    for (let i = 1; i < 257; i++) start[i] += start[i - 1];
    const to = new Uint32Array(order.length);
    for (const t of order) to[start[keys[t] >> shift & 255]++] = t;
    return to;
  }

  // src/drawable.ts
  function makeDrawables(gltf, nodes, looks, maker, options) {
    const made = /* @__PURE__ */ new Map();
    const result = [];
    for (const node of nodes.ordered) {
      if (node.mesh < 0) continue;
      const mesh = gltf.item("meshes", node.mesh);
      demand(Array.isArray(mesh.primitives), "meshes");
      if (!node.weights.length && Array.isArray(mesh.weights)) node.weights = mesh.weights;
      mesh.primitives.forEach((primitive, p) => {
        const material = Number.isSafeInteger(primitive?.material) ? primitive.material : looks.length - 1;
        const look = looks[material];
        demand(look, "materials");
        if (look.invisible) return;
        const lines = options.wire || look.wire;
        const key = node.mesh + "/" + p;
        let geometry = made.get(key);
        if (!geometry) {
          const count = gltf.item("accessors", primitive.indices).count;
          geometry = maker.make(primitive, { lines, sorted: look.blended && !look.additive && !lines && count < kMostSorted * 3 });
          made.set(key, geometry);
        }
        result.push({ node, geometry, look, material, lines, order: result.length });
      });
    }
    return result;
  }
  var usable = (d) => d.look.maps.map((map, kind) => !!map && (d.geometry.hasUv || kind === 7 /* Reflection */));
  var kMacros = ["TEXTURE", "TEXTURE2", "OPACITY", "SPECULAR_MAP", "SHININESS", "SELF", "BUMP", "REFLECTION"];
  function variantOf(d, part, lights) {
    const { look } = d;
    const maps = usable(d);
    const anyMap = maps.some(Boolean);
    const flat = look.flat && !d.lines;
    const twoSided = look.twoSided && !flat;
    const tinted = look.metal && anyMap;
    const defines = kMaps.map((_, kind) => maps[kind] ? kMacros[kind] : "").filter(Boolean);
    const flags = [
      [anyMap, "MAPS"],
      [look.hasSpecular, "SPECULAR"],
      [tinted, "TINTED"],
      [flat, "FLAT"],
      [twoSided, "TWO_SIDED"],
      [part === 1 /* Solid */, "SOLID"],
      [part === 2 /* Translucent */, "TRANSLUCENT"],
      [d.lines, "LINES"],
      [d.geometry.targets.length, "MORPH"],
      [lights, `LIGHTS ${lights}`]
    ];
    for (const [wanted, name] of flags) if (wanted) defines.push(name);
    const bits = [look.hasSpecular, tinted, flat, twoSided].reduce((sum, b, i) => sum + (b ? 1 << 10 + i : 0), 0);
    const key = maps.reduce((sum, b, i) => sum + (b ? 1 << i : 0), 0) + bits + (part << 14) + (lights << 16);
    return { defines, key, tinted };
  }

  // src/geometry.ts
  var kAttributes = [
    ["POSITION", 3],
    ["NORMAL", 3],
    ["TEXCOORD_0", 2]
  ];
  var kFace = 3;
  var kFirstTarget = 4;
  var GeometryMaker = class {
    constructor(gl, gltf) {
      this.gl = gl;
      this.gltf = gltf;
      this.buffers = /* @__PURE__ */ new Map();
    }
    make(primitive, use) {
      const { gl, gltf } = this;
      const attributes = primitive?.attributes ?? {};
      const position = gltf.accessor(attributes.POSITION, 3);
      demand((primitive.mode ?? 4) === 4, "mode");
      const indices = gltf.indices(primitive.indices, position.count);
      const vao = gl.createVertexArray();
      gl.bindVertexArray(vao);
      const present = kAttributes.map(([name, n]) => attributes[name] === void 0 ? void 0 : gltf.accessor(attributes[name], n));
      for (const a of present) demand(!a || a.count >= position.count, "attributes");
      let list = indices;
      if (use.lines) list = this.asLines(present, indices);
      else present.forEach((a, i) => a && this.point(i, a));
      const indexBuffer = gl.createBuffer();
      gl.bindBuffer(gl.ELEMENT_ARRAY_BUFFER, indexBuffer);
      gl.bufferData(gl.ELEMENT_ARRAY_BUFFER, list, use.sorted ? gl.DYNAMIC_DRAW : gl.STATIC_DRAW);
      gl.bindVertexArray(null);
      const [low, high] = this.boundsOf(primitive, position);
      return {
        vao,
        mode: use.lines ? gl.LINES : gl.TRIANGLES,
        count: list.length,
        indexType: list instanceof Uint16Array ? gl.UNSIGNED_SHORT : gl.UNSIGNED_INT,
        hasUv: !!present[2],
        low,
        high,
        positions: use.sorted ? gltf.numbers(position) : void 0,
        indices: use.sorted ? indices : void 0,
        indexBuffer,
        targets: use.lines ? [] : this.targetsOf(primitive, position.count)
      };
    }
    targetsOf(primitive, count) {
      return (primitive.targets ?? []).map((target) => {
        const [position, normal] = ["POSITION", "NORMAL"].map((name) => target?.[name] === void 0 ? void 0 : this.gltf.accessor(target[name], 3));
        for (const a of [position, normal]) {
          demand(!a || a.count >= count, "targets");
          if (a) this.bufferOf(a);
        }
        return { position, normal };
      });
    }
    bufferOf(a) {
      const { gl } = this;
      let buffer = this.buffers.get(a.view);
      if (!buffer) {
        buffer = gl.createBuffer();
        gl.bindBuffer(gl.ARRAY_BUFFER, buffer);
        gl.bufferData(gl.ARRAY_BUFFER, a.bytes, gl.STATIC_DRAW);
        this.buffers.set(a.view, buffer);
      }
      return buffer;
    }
    point(location2, a) {
      const { gl } = this;
      gl.bindBuffer(gl.ARRAY_BUFFER, this.bufferOf(a));
      gl.enableVertexAttribArray(location2);
      gl.vertexAttribPointer(location2, a.components, a.type, a.normalized, a.stride, a.offset);
    }
    /** Makes two of the shapes those that the bound geometry is mixed with. */
    pointAtTargets(geometry, chosen) {
      chosen.forEach((target, i) => {
        const { position, normal } = geometry.targets[target] ?? {};
        [position, normal].forEach((a, part) => {
          const location2 = kFirstTarget + i * 2 + part;
          if (a) this.point(location2, a);
          else this.gl.disableVertexAttribArray(location2);
        });
      });
    }
    /** Gives each triangle corners of its own, with the triangle's normal, and returns its edges. */
    asLines(present, indices) {
      const { gl, gltf } = this;
      const from = gltf.numbers(present[0]);
      const corner = (i) => [from[indices[i] * 3], from[indices[i] * 3 + 1], from[indices[i] * 3 + 2]];
      const faces = new Float32Array(indices.length * 3);
      const edges = new Uint32Array(indices.length * 2);
      for (let i = 0; i < indices.length; i += 3) {
        const a = corner(i);
        const normal = normalized(cross(sub(corner(i + 1), a), sub(corner(i + 2), a)), 0);
        for (let c = 0; c < 3; c++) faces.set(normal, (i + c) * 3);
        edges.set([i, i + 1, i + 1, i + 2, i + 2, i], i * 2);
      }
      this.upload(kFace, faces, 3);
      present.forEach((a, location2) => {
        if (!a) return;
        const all = gltf.numbers(a);
        const n = a.components;
        const own = new Float32Array(indices.length * n);
        for (let i = 0; i < indices.length; i++) for (let c = 0; c < n; c++) own[i * n + c] = all[indices[i] * n + c];
        this.upload(location2, own, n);
      });
      return edges;
    }
    upload(location2, values, components) {
      const { gl } = this;
      gl.bindBuffer(gl.ARRAY_BUFFER, gl.createBuffer());
      gl.bufferData(gl.ARRAY_BUFFER, values, gl.STATIC_DRAW);
      gl.enableVertexAttribArray(location2);
      gl.vertexAttribPointer(location2, components, gl.FLOAT, false, 0, 0);
    }
    /** Lowest and highest coordinates, in any shape. */
    boundsOf(primitive, position) {
      const shapes = (primitive.targets ?? []).filter((t) => t?.POSITION !== void 0).map((t) => this.gltf.accessor(t.POSITION, 3));
      const corner = (which, outer) => {
        const read = (a) => numbersOf(a[which], 3)?.map((x) => x * this.gltf.scaleOf(a)) ?? [];
        const own = read(position);
        demand(own.length, "bounds");
        return shapes.map(read).reduce((sum, add2) => sum.map((x, i) => x + outer(0, add2[i] || 0)), own);
      };
      return [corner("min", Math.min), corner("max", Math.max)];
    }
  };

  // src/nodes.ts
  function readNode(n) {
    return {
      parent: void 0,
      translation: numbersOf(n.translation, 3) ?? [0, 0, 0],
      rotation: numbersOf(n.rotation, 4) ?? [0, 0, 0, 1],
      scale: numbersOf(n.scale, 3) ?? [1, 1, 1],
      matrix: numbersOf(n.matrix, 16),
      weights: Array.isArray(n.weights) ? n.weights : [],
      mesh: Number.isSafeInteger(n.mesh) ? n.mesh : -1,
      world: kIdentity
    };
  }
  function readNodes(gltf) {
    const json = gltf.list("nodes");
    const all = json.map(readNode);
    const seen = /* @__PURE__ */ new Set();
    const ordered = [];
    const roots = gltf.item("scenes", gltf.json.scene ?? 0).nodes ?? [];
    const open = [[roots, void 0]];
    for (let next = open.pop(); next; next = open.pop()) {
      const [children, parent] = next;
      demand(Array.isArray(children), "nodes");
      for (const child of children) {
        const node = all[child];
        demand(node && !seen.has(child), "nodes");
        seen.add(child);
        node.parent = parent;
        if (!parent) node.matrix = kIdentity;
        ordered.push(node);
        open.push([json[child].children ?? [], node]);
      }
    }
    return { all, ordered };
  }
  function placeNodes(ordered) {
    for (const node of ordered) {
      const own = node.matrix ?? placed(node.translation, node.rotation, node.scale);
      node.world = node.parent ? product(node.parent.world, own) : own;
    }
  }
  var originOf = (node) => point(node.world, [0, 0, 0]);

  // src/lights.ts
  var kMostLights = 8;
  var kEverywhere = 1e30;
  var cosOfHalf = (coneDeg) => Math.cos(clamp(Number(coneDeg) || 0, 0, 360) / 2 * kDegree);
  function readLight(l, nodes) {
    const node = nodes[l?.node];
    const color = vec3Of(l?.color) ?? [1, 1, 1];
    if (!node) return void 0;
    const target = l.spot ? nodes[l.target] : void 0;
    const cosOuter = target ? cosOfHalf(l.falloffDeg) : -3;
    return {
      node,
      target,
      color: scaled(color, typeof l.multiplier === "number" ? l.multiplier : 1),
      cosOuter,
      // Equal angles would divide by zero; this is a hard edge.
      cosInner: target ? Math.max(cosOfHalf(l.hotspotDeg), cosOuter + 1e-4) : -2,
      inner: l.attenuate ? Number(l.inner) || 0 : kEverywhere,
      outer: l.attenuate ? Number(l.outer) || 0 : 2 * kEverywhere
    };
  }
  var strength = (l) => l.color.reduce((sum, c) => sum + Math.abs(c), 0);
  function readLights(extras, nodes) {
    const listed = Array.isArray(extras.lights) ? extras.lights : [];
    const all = listed.map((l) => readLight(l, nodes)).filter((l) => l !== void 0);
    const most = extras.headlight ? kMostLights - 1 : kMostLights;
    return all.length > most ? all.sort((a, b) => strength(b) - strength(a)).slice(0, most) : all;
  }
  function lightUniforms(lights, headlight, toEye, viewer) {
    const result = { position: [], direction: [], color: [], range: [] };
    const enlarged = Math.cbrt(Math.abs(determinant(toEye)));
    for (const l of lights) {
      const at = point(toEye, originOf(l.node));
      const way = l.target ? normalized(sub(point(toEye, originOf(l.target)), at)) : [0, 0, 0];
      const far = l.inner === kEverywhere ? 1 : enlarged;
      result.position.push(...at, l.cosOuter);
      result.direction.push(...way, l.cosInner);
      result.color.push(...l.color);
      result.range.push(l.inner * far, Math.max(l.outer * far, l.inner * far + 1e-6 * (1 + l.inner * far)));
    }
    if (lights.length && headlight) {
      const far = viewer[3] ? 0 : 1e12;
      result.position.push(viewer[0] * far, viewer[1] * far, viewer[2] * far, -3);
      result.direction.push(0, 0, 0, -2);
      result.color.push(1, 1, 1);
      result.range.push(kEverywhere, 2 * kEverywhere);
    }
    return result;
  }

  // src/renderer.ts
  var Renderer = class {
    constructor(gl, scene, seen, settings, software) {
      this.gl = gl;
      this.scene = scene;
      this.seen = seen;
      this.settings = settings;
      this.programs = /* @__PURE__ */ new Map();
      this.opaque = [];
      this.blended = [];
      this.drawables = [];
      this.ready = /* @__PURE__ */ new Set();
      this.looks = readLooks(scene.gltf, settings.doubleSided);
      this.textures = new Textures(gl, scene.gltf, software);
      this.maker = new GeometryMaker(gl, scene.gltf);
      this.backdrop = new Backdrop(gl, settings.backgroundPicture);
      this.depth = new Program(gl, surface_default2, depth_default, ["TWO_SIDED"]);
      this.depthTarget = onePixel(gl);
    }
    /** Uploads everything. */
    async load() {
      const { gltf, nodes } = this.scene;
      await Promise.all([this.textures.load(this.looks), this.backdrop.load()]);
      if (this.gl.isContextLost()) return;
      this.drawables = makeDrawables(gltf, nodes, this.looks, this.maker, this.settings);
      for (const d of this.drawables) {
        const parts = d.look.blended && d.look.maybeSolid;
        if (!d.look.blended || parts) this.opaque.push(this.itemOf(d, parts ? 1 /* Solid */ : 0 /* Whole */));
        if (d.look.blended) this.blended.push(this.itemOf(d, parts ? 2 /* Translucent */ : 0 /* Whole */));
      }
      gltf.forget();
    }
    itemOf(d, part) {
      const { lights, headlight } = this.scene;
      const variant = variantOf(d, part, lights.length && lights.length + (headlight ? 1 : 0));
      const name = variant.defines.join();
      let program = this.programs.get(name);
      if (!program) this.programs.set(name, program = new Program(this.gl, surface_default2, surface_default, variant.defines));
      const { specular, diffuse, metal } = d.look;
      const tint = metal && !variant.tinted;
      const own = tint ? [specular[0] * diffuse[0], specular[1] * diffuse[1], specular[2] * diffuse[2]] : specular;
      const sorted = part !== 1 /* Solid */ && d.look.blended && !!d.geometry.indices;
      return { drawable: d, program, key: variant.key, specular: own, depth: 0, sorted };
    }
    /** Draws into the canvas, whose size the camera has. */
    draw() {
      const { gl, seen, settings } = this;
      const { drawingBufferWidth: width, drawingBufferHeight: height } = gl;
      gl.bindFramebuffer(gl.FRAMEBUFFER, null);
      gl.viewport(0, 0, width, height);
      gl.depthMask(true);
      gl.clearColor(...settings.background, 1);
      gl.clear(gl.COLOR_BUFFER_BIT | gl.DEPTH_BUFFER_BIT);
      this.backdrop.draw(width / height);
      this.look(seen.camera.projection);
      this.drawOpaque();
      this.drawBlended();
      gl.bindVertexArray(null);
    }
    /** Takes the view for what is drawn next. */
    look(projectionOf) {
      const { seen, scene } = this;
      const { camera, model } = seen;
      const range = camera.depthRange(...this.depths(model));
      const projection = projectionOf.call(camera, range);
      const { back } = camera.axes;
      const eye = camera.eye;
      const viewer = camera.parallel ? [...back, 0] : [0, 0, 0, 1];
      const v = camera.viewMatrix();
      const toEye = product(translation(camera.parallel ? [0, 0, 0] : scaled(eye, -1)), model);
      const toClip = product(projection, camera.parallel ? v : [...v.slice(0, 12), 0, 0, 0, 1]);
      this.view = {
        toEye,
        projection: toClip,
        depthRow: rowTimes(row(toClip, camera.parallel ? 2 : 3), toEye),
        viewer,
        lights: lightUniforms(scene.lights, scene.headlight, toEye, viewer),
        range
      };
      this.ready = /* @__PURE__ */ new Set();
      this.current = this.currentLook = void 0;
      this.gl.enable(this.gl.DEPTH_TEST);
    }
    /** Of the nearest and the farthest corner of what is shown. */
    depths(model) {
      const { eye, axes } = this.seen.camera;
      const away = rowTimes([...scaled(axes.back, -1), dot(eye, axes.back)], model);
      let [nearest, farthest] = [Infinity, -Infinity];
      for (const { node, geometry } of this.drawables) {
        const { low, high } = geometry;
        const r = rowTimes(away, node.world);
        let [middle, half] = [r[3], 0];
        for (let i = 0; i < 3; i++) {
          middle += r[i] * (low[i] + high[i]) / 2;
          half += Math.abs(r[i] * (high[i] - low[i])) / 2;
        }
        nearest = Math.min(nearest, middle - half);
        farthest = Math.max(farthest, middle + half);
      }
      return nearest <= farthest ? [nearest, farthest] : [0, this.scene.radius];
    }
    depthRow(d) {
      return rowTimes(this.view.depthRow, d.node.world);
    }
    middleDepth(d) {
      const r = this.depthRow(d);
      const { low, high } = d.geometry;
      return (r[0] * (low[0] + high[0]) + r[1] * (low[1] + high[1]) + r[2] * (low[2] + high[2])) / 2 + r[3];
    }
    drawOpaque() {
      const { gl, opaque } = this;
      gl.disable(gl.BLEND);
      gl.depthMask(true);
      for (const item of opaque) item.depth = this.middleDepth(item.drawable);
      opaque.sort((a, b) => b.key - a.key || b.drawable.material - a.drawable.material || a.depth - b.depth || b.drawable.order - a.drawable.order);
      for (const item of opaque) {
        gl.depthFunc(item.drawable.lines ? gl.LEQUAL : gl.LESS);
        this.prepare(item);
        this.drawPart(item.drawable);
      }
    }
    drawBlended() {
      const { gl, blended } = this;
      if (!blended.length) return;
      gl.enable(gl.BLEND);
      gl.depthMask(false);
      gl.depthFunc(gl.LEQUAL);
      const ordered = /* @__PURE__ */ new Map();
      for (const item of blended) {
        const { geometry } = item.drawable;
        if (item.sorted) ordered.set(item, orderBackToFront(geometry.positions, geometry.indices, this.depthRow(item.drawable)));
        item.depth = ordered.get(item)?.middle ?? this.middleDepth(item.drawable);
      }
      blended.sort((a, b) => b.depth - a.depth);
      for (const item of blended) {
        const { look } = item.drawable;
        const behind = look.additive ? gl.ONE : gl.ONE_MINUS_SRC_ALPHA;
        gl.blendFuncSeparate(gl.ONE, behind, look.additive ? gl.ZERO : gl.ONE, behind);
        this.prepare(item);
        const own = ordered.get(item);
        if (own) gl.bufferSubData(gl.ELEMENT_ARRAY_BUFFER, 0, own.ordered);
        if (look.twoSided && !own && !item.drawable.lines) {
          gl.enable(gl.CULL_FACE);
          gl.cullFace(gl.FRONT);
          this.drawPart(item.drawable);
          gl.cullFace(gl.BACK);
        }
        this.drawPart(item.drawable);
        if (look.twoSided) gl.disable(gl.CULL_FACE);
      }
    }
    prepare(item) {
      const { program, drawable } = item;
      if (this.current !== program) {
        program.use();
        this.current = program;
        this.currentLook = void 0;
        if (!this.ready.has(program)) this.setFrame(program);
        this.ready.add(program);
      }
      if (this.currentLook !== drawable.look) this.setLook(item);
      this.currentLook = drawable.look;
      this.place(program, drawable);
    }
    setFrame(program) {
      const { gl, view } = this;
      gl.uniformMatrix4fv(program.at("uProjection"), false, view.projection);
      program.vec4("uViewer", view.viewer);
      program.vec3("uAmbientLight", this.scene.ambientLight);
      gl.uniform1iv(program.at("uMap[0]"), kMaps.map((_, i) => i));
      if (!view.lights.color.length) return;
      program.vec4("uLightPosition[0]", view.lights.position);
      program.vec4("uLightDirection[0]", view.lights.direction);
      program.vec3("uLightColor[0]", view.lights.color);
      program.vec2("uLightRange[0]", view.lights.range);
    }
    setLook({ program, drawable: { look }, specular }) {
      const { gl } = this;
      program.vec4("uDiffuse", [...look.diffuse, look.opacity]);
      program.vec4("uSpecular", [...specular, look.exponent]);
      program.vec3("uAmbient", look.ambient);
      gl.uniform1f(program.at("uSelf"), look.self);
      look.maps.forEach((map, i) => {
        if (!map) return;
        program.vec3(`uMapS[${i}]`, map.s);
        program.vec3(`uMapT[${i}]`, map.t);
        program.vec4(`uMapValue[${i}]`, map.value);
        program.vec4(`uMapWeight[${i}]`, map.weight);
      });
      this.textures.bind(look);
      if (look.twoSided) gl.disable(gl.CULL_FACE);
      else gl.enable(gl.CULL_FACE);
      gl.cullFace(gl.BACK);
    }
    /** Where the drawable is, and its triangles. */
    place(program, d) {
      const { gl } = this;
      const m = product(this.view.toEye, d.node.world);
      gl.uniformMatrix4fv(program.at("uModelView"), false, m);
      gl.uniformMatrix3fv(program.at("uNormal"), false, normalMatrix(m));
      gl.frontFace(determinant(m) < 0 ? gl.CW : gl.CCW);
      gl.bindVertexArray(d.geometry.vao);
      if (d.geometry.targets.length) this.mix(program, d);
    }
    /** The two shapes that count most. */
    mix(program, d) {
      const weights = Array.from(d.node.weights);
      const chosen = weights.map((_, i) => i).sort((a, b) => Math.abs(weights[b]) - Math.abs(weights[a])).slice(0, 2);
      this.maker.pointAtTargets(d.geometry, chosen);
      program.vec2("uMorph", [weights[chosen[0]] ?? 0, weights[chosen[1]] ?? 0]);
    }
    drawPart({ geometry, look, lines }) {
      const { gl } = this;
      const copies = lines ? Math.max(1, Math.round(look.lineWidth)) : 1;
      for (let x = 0; x < copies; x++) {
        for (let y = 0; y < copies; y++) {
          if (lines) {
            const aside = (at, size) => (2 * at + 1 - copies) / size;
            this.current.vec2("uStep", [aside(x, gl.drawingBufferWidth), aside(y, gl.drawingBufferHeight)]);
          }
          gl.drawElements(geometry.mode, geometry.count, geometry.indexType, 0);
        }
      }
    }
    /** The point of the scene that is seen at a pixel of the canvas; undefined beside the model. */
    pick(x, y) {
      const { gl, seen, depth } = this;
      const { viewWidth: w, viewHeight: h } = seen.camera;
      gl.bindFramebuffer(gl.FRAMEBUFFER, this.depthTarget);
      gl.viewport(0, 0, 1, 1);
      gl.depthMask(true);
      gl.disable(gl.BLEND);
      gl.clearColor(1, 1, 1, 1);
      gl.clear(gl.COLOR_BUFFER_BIT | gl.DEPTH_BUFFER_BIT);
      const zoom = [w, 0, 0, 0, 0, h, 0, 0, 0, 0, 1, 0, w - 2 * x, 2 * y - h, 0, 1];
      this.look((range) => product(zoom, seen.camera.projection(range)));
      gl.depthFunc(gl.LESS);
      depth.use();
      this.current = depth;
      gl.uniformMatrix4fv(depth.at("uProjection"), false, this.view.projection);
      for (const d of this.drawables) {
        if (d.look.twoSided) gl.disable(gl.CULL_FACE);
        else gl.enable(gl.CULL_FACE);
        this.place(depth, d);
        gl.drawElements(d.geometry.mode, d.geometry.count, d.geometry.indexType, 0);
      }
      gl.bindVertexArray(null);
      const pixel = new Uint8Array(4);
      gl.readPixels(0, 0, 1, 1, gl.RGBA, gl.UNSIGNED_BYTE, pixel);
      gl.bindFramebuffer(gl.FRAMEBUFFER, null);
      const far = pixel[0] / 255 + pixel[1] / 65025 + pixel[2] / 16581375;
      return pixel[0] === 255 ? void 0 : seen.pointAt(x, y, far, this.view.range);
    }
  };
  function onePixel(gl) {
    const frame = gl.createFramebuffer();
    gl.bindFramebuffer(gl.FRAMEBUFFER, frame);
    for (const [place, format] of [
      [gl.COLOR_ATTACHMENT0, gl.RGBA8],
      [gl.DEPTH_ATTACHMENT, gl.DEPTH_COMPONENT24]
    ]) {
      const buffer = gl.createRenderbuffer();
      gl.bindRenderbuffer(gl.RENDERBUFFER, buffer);
      gl.renderbufferStorage(gl.RENDERBUFFER, format, 1, 1);
      gl.framebufferRenderbuffer(gl.FRAMEBUFFER, place, gl.RENDERBUFFER, buffer);
    }
    gl.bindFramebuffer(gl.FRAMEBUFFER, null);
    return frame;
  }

  // src/scene.ts
  var numberOr2 = (v, otherwise) => typeof v === "number" && isFinite(v) ? v : otherwise;
  var Scene = class {
    constructor(gltf) {
      this.gltf = gltf;
      this.cameras = [];
      const extras = gltf.item("scenes", gltf.json.scene ?? 0).extras?.orbivue ?? {};
      this.nodes = readNodes(gltf);
      this.channels = readChannels(gltf, this.nodes.all);
      this.lights = readLights(extras, this.nodes.all);
      this.headlight = extras.headlight === true;
      this.ambientLight = vec3Of(extras.ambientLight) ?? [0, 0, 0];
      this.center = vec3Of(extras.bounds?.center) ?? [0, 0, 0];
      this.radius = Math.max(numberOr2(extras.bounds?.radius, 1) || 1, Math.max(...this.center.map(Math.abs)) * 1e-6);
      this.firstFrame = numberOr2(extras.frames?.first, 0);
      this.lastFrame = numberOr2(extras.frames?.last, this.firstFrame);
      this.animated = this.channels.length > 0 && this.lastFrame > this.firstFrame;
      this.frame = numberOr2(extras.frames?.current, this.firstFrame);
      this.readCameras(extras.cameras);
      this.show(this.frame);
    }
    readCameras(listed) {
      for (const c of Array.isArray(listed) ? listed : []) {
        const node = this.nodes.all[c?.node];
        if (!node) continue;
        const target = this.nodes.all[c.target];
        this.cameras.push({ name: String(c.name ?? ""), node, target, rollDeg: numberOr2(c.rollDeg, 0), fovDeg: numberOr2(c.fovDeg, 45) });
      }
    }
    /** Moves everything to a frame of the animation. */
    show(frame) {
      this.frame = frame;
      animate(this.channels, (frame - this.firstFrame) / kFramesPerSecond);
      placeNodes(this.nodes.ordered);
    }
    get cameraNames() {
      return this.cameras.map((c) => c.name);
    }
    /** A camera of the file as it stands now. */
    camera(index) {
      const c = this.cameras[index];
      if (!c) return void 0;
      const eye = originOf(c.node);
      const target = c.target ? originOf(c.target) : this.center;
      return { name: c.name, eye, target, rollDeg: c.rollDeg, fovDeg: c.fovDeg };
    }
  };

  // src/seen.ts
  var Seen = class {
    constructor(center, radius, start) {
      this.start = start;
      this.turn = kNoRotation;
      /** The model as the page was written with it. */
      this.base = kIdentity;
      this.shift = [0, 0, 0];
      this.camera = new Camera(center, radius);
      this.pivot = center;
      this.reset();
    }
    /** What the page showed first. */
    reset() {
      if (!this.start) return this.setPreset("iso_cam");
      this.camera.setSeen(this.start);
      this.place(this.start.model);
    }
    setPreset(name) {
      this.camera.setPreset(name);
      this.place(kIdentity);
    }
    setFileCamera(camera) {
      this.camera.setFileCamera(camera);
      this.place(kIdentity);
    }
    place(base) {
      this.base = base;
      this.turn = kNoRotation;
      this.shift = [0, 0, 0];
      this.pivot = point(base, this.camera.target);
    }
    get model() {
      return product(translation(this.shift), product(about(matrixOf(this.turn), this.pivot), this.base));
    }
    /** Where the middle of the trackball is seen. */
    get ball() {
      return add(this.pivot, this.shift);
    }
    depthOf(at) {
      return dot(sub(this.camera.eye, at), this.camera.axes.back);
    }
    /** The middle of the model follows the pointer; the look-at point stands in for a middle close to the eye. */
    pan(right, down) {
      const depth = this.depthOf(point(this.model, this.camera.center));
      const distance = this.camera.distance;
      const { axes, viewHeight } = this.camera;
      const size = 2 * this.camera.heightAt(depth > 0.05 * distance ? depth : distance) / viewHeight;
      this.shift = add(this.shift, sub(scaled(axes.right, right * size), scaled(axes.up, down * size)));
    }
    /** Zooms, with what is seen at (x, y) staying there: as if the eye went along the ray through it. */
    zoomAt(step, x, y) {
      const { camera } = this;
      const { origin, way } = camera.ray(x, y);
      const size = () => camera.parallel ? camera.halfHeight : camera.distance;
      const aside = camera.parallel ? sub(origin, camera.eye) : add(way, camera.axes.back);
      const before = size();
      camera.zoom(step);
      const approached = (before - size()) / (camera.parallel ? before : 1);
      this.shift = sub(this.shift, scaled(aside, approached));
    }
    zoomTo(box) {
      const back = affineInverse(this.model);
      if (!this.camera.zoomTo(box)) return false;
      if (back) this.turnAbout(point(back, this.camera.target));
      return true;
    }
    /** Brings a point of the scene to the middle of the view, at its own depth, and turns the model about it. */
    centerOn(at) {
      this.camera.setDistance(this.depthOf(point(this.model, at)));
      this.turnAbout(at);
    }
    turnAbout(at) {
      this.pivot = point(this.base, at);
      this.shift = sub(this.camera.target, this.pivot);
    }
    /** By degrees to the right and up, as keys turn it. */
    turnBy(rightDeg, upDeg) {
      const { right, up } = this.camera.axes;
      const turn = combined(rotationAbout(right, -upDeg * kDegree), rotationAbout(up, rightDeg * kDegree));
      this.turn = combined(turn, this.turn);
    }
    /** The point of the scene that a depth between 0 and 1 of the picture stands for. */
    pointAt(x, y, depth, [n, f]) {
      const { origin, way } = this.camera.ray(x, y);
      const along = this.camera.parallel ? n + depth * (f - n) : n * f / (f - depth * (f - n));
      const back = affineInverse(this.model);
      return back && add(point(back, origin), scaled(direction(back, way), along));
    }
  };

  // src/icons.ts
  var kCube = "M12 3l8 4.5v9L12 21l-8-4.5v-9z";
  var kEdges = "M4 7.5l8 4.5 8-4.5M12 12v9";
  var kIcons = {
    top: ["M12 3l8 4.5-8 4.5-8-4.5z", kCube + kEdges],
    front: ["M4 7.5l8 4.5v9l-8-4.5z", kCube + kEdges],
    right: ["M12 12l8-4.5v9L12 21z", kCube + kEdges],
    left: ["M4 7.5L12 3v9l-8 4.5z", kCube + "M12 3v9M4 16.5l8-4.5 8 4.5"],
    back: ["M12 3l8 4.5v9L12 12z", kCube + "M12 3v9M4 16.5l8-4.5 8 4.5"],
    iso: ["", kCube + kEdges],
    reset: ["", "M5 5v5h5M5.5 10a7 7 0 1 1-.3 4.5"],
    play: ["M8 5l11 7-11 7z", ""],
    pause: ["M7 5h4v14H7zM13 5h4v14h-4z", ""],
    fullscreen: ["", "M4 9V4h5M15 4h5v5M20 15v5h-5M9 20H4v-5"],
    download: ["", "M12 4v11M7 10l5 5 5-5M5 20h14"]
  };
  function icon(name) {
    const make = (tag, attributes) => {
      const element2 = document.createElementNS("http://www.w3.org/2000/svg", tag);
      for (const [key, value] of Object.entries(attributes)) element2.setAttribute(key, value);
      return element2;
    };
    const svg = make("svg", { viewBox: "0 0 24 24", "aria-hidden": "true" });
    const [filled, drawn] = kIcons[name];
    if (filled) svg.append(make("path", { d: filled, class: "filled" }));
    if (drawn) svg.append(make("path", { d: drawn }));
    return svg;
  }

  // src/toolbar.ts
  var Toolbar = class {
    constructor(bar, texts, actions) {
      this.bar = bar;
      this.texts = texts;
      this.actions = actions;
      this.stops = [];
      this.presets = /* @__PURE__ */ new Map();
      bar.setAttribute("aria-label", texts.of("toolbar"));
      bar.addEventListener("keydown", (event) => this.key(event));
      bar.addEventListener("focusin", (event) => this.stop(event.target));
    }
    fill(settings, cameras, frames) {
      this.bar.textContent = "";
      if (settings.camerasBar) {
        for (const [name, { key }] of Object.entries(kPresets)) this.presets.set(name, this.button(key, () => this.actions.preset(name)));
        if (cameras.length) this.addCameras(cameras);
      }
      this.button("reset", () => this.actions.reset());
      if (frames) this.addPlayer(frames);
      if (document.fullscreenEnabled) this.button("fullscreen", () => void toggleFullScreen());
      if (settings.download) this.addDownload(settings.download);
      this.stop(this.stops[0]);
    }
    add(element2, key, isStop = true) {
      element2.setAttribute("aria-label", this.texts.of(key));
      element2.title = this.texts.of(key);
      if (isStop) this.stops.push(element2);
      this.bar.append(element2);
      return element2;
    }
    button(key, act) {
      const button = this.add(document.createElement("button"), key);
      button.type = "button";
      button.append(icon(key));
      button.addEventListener("click", act);
      return button;
    }
    addCameras(names) {
      const select = this.add(document.createElement("select"), "cameras");
      select.append(new Option(this.texts.of("cameras"), "", true, true));
      names.forEach((name, i) => select.append(new Option(name || String(i + 1), String(i))));
      select.addEventListener("change", () => select.value && this.actions.fileCamera(Number(select.value)));
      this.cameras = select;
    }
    addPlayer({ first, last }) {
      this.play = this.button("play", () => this.actions.togglePlaying());
      const slider = this.slider = this.add(document.createElement("input"), "frame", false);
      slider.type = "range";
      slider.min = String(first);
      slider.max = String(last);
      slider.step = "1";
      slider.addEventListener("input", () => this.actions.frame(Number(slider.value)));
    }
    addDownload(address) {
      const link = this.add(document.createElement("a"), "download");
      link.href = address;
      link.download = "";
      link.append(icon("download"));
    }
    /** Marks the camera that is in use; the name of none leaves all unmarked. */
    showCamera(preset, file) {
      for (const [name, button] of this.presets) button.setAttribute("aria-pressed", String(name === preset));
      if (this.cameras) this.cameras.value = file < 0 ? "" : String(file);
    }
    showPlaying(playing) {
      const { play } = this;
      if (!play) return;
      const key = playing ? "pause" : "play";
      play.replaceChildren(icon(key));
      play.title = this.texts.of(key);
      play.setAttribute("aria-label", play.title);
    }
    showFrame(frame) {
      if (this.slider) this.slider.value = String(Math.round(frame));
    }
    stop(element2) {
      if (!element2 || !this.stops.includes(element2)) return;
      for (const other of this.stops) other.tabIndex = other === element2 ? 0 : -1;
    }
    key(event) {
      const at = this.stops.indexOf(event.target);
      const ends = { Home: 0, End: this.stops.length - 1 };
      const ways = { ArrowLeft: -1, ArrowRight: 1 };
      if (at < 0 || !(event.key in ends || event.key in ways)) return;
      event.preventDefault();
      const count = this.stops.length;
      this.stops[ends[event.key] ?? (at + ways[event.key] + count) % count].focus();
    }
  };
  async function toggleFullScreen() {
    try {
      await (document.fullscreenElement ? document.exitFullscreen() : document.documentElement.requestFullscreen());
    } catch {
    }
  }

  // src/viewer.ts
  var kMostPixelsOfPixel = 2;
  var Viewer = class {
    constructor(bytes, settings, texts, stage, gl) {
      this.bytes = bytes;
      this.settings = settings;
      this.texts = texts;
      this.stage = stage;
      this.gl = gl;
      this.fileCamera = -1;
      this.scene = new Scene(new Gltf(bytes));
      const { scene } = this;
      this.player = new Player(scene.firstFrame, scene.lastFrame, settings.frame ?? scene.frame);
      if (settings.frame !== void 0) scene.show(this.player.frame);
      this.seen = new Seen(scene.center, scene.radius, settings.view);
      this.loop = new FrameLoop((ms) => this.step(ms), () => this.draw());
      this.toolbar = new Toolbar(stage.toolbar, texts, {
        preset: (name) => this.setPreset(name),
        fileCamera: (index) => this.setFileCamera(index),
        reset: () => this.reset(),
        togglePlaying: () => this.setPlaying(!this.player.playing),
        frame: (frame) => this.setFrame(frame)
      });
      this.toolbar.fill(settings, scene.cameraNames, scene.animated ? { first: scene.firstFrame, last: scene.lastFrame } : void 0);
      this.startCamera();
    }
    /** Shows the first picture; resolves when it is drawn. */
    async start() {
      const { stage } = this;
      await this.load();
      const gestures = new Gestures(this.seen, {
        moved: () => this.loop.request(),
        boxed: (box) => stage.showBox(box),
        centered: (x, y) => this.centerAt(x, y)
      });
      listen(stage.canvas, gestures, { reset: () => this.reset(), togglePlaying: () => this.setPlaying(!this.player.playing) });
      this.fit();
      this.draw();
      this.loop.count++;
      new ResizeObserver(() => this.fit() && this.loop.request()).observe(stage.canvas);
      stage.canvas.addEventListener("webglcontextlost", (event) => {
        event.preventDefault();
        this.renderer = void 0;
        stage.say(this.texts.of("lost"));
      });
      stage.canvas.addEventListener("webglcontextrestored", () => void this.restore());
      if (!matchMedia("(prefers-reduced-motion: reduce)").matches) this.setPlaying(true);
    }
    async load() {
      const renderer = new Renderer(this.gl, this.scene, this.seen, this.settings, isSoftware(this.gl));
      await renderer.load();
      if (this.gl.getError() === this.gl.OUT_OF_MEMORY) throw new Trouble("noMemory");
      this.renderer = renderer;
    }
    /** The context is back, and empty. */
    async restore() {
      const { frame } = this.scene;
      this.scene = new Scene(new Gltf(this.bytes));
      this.scene.show(frame);
      await this.load();
      this.stage.say("");
      this.loop.request();
    }
    step(ms) {
      const { player } = this;
      if (!player.playing) return false;
      this.showFrame(player.advance(ms));
      return true;
    }
    showFrame(frame) {
      this.scene.show(frame);
      this.toolbar.showFrame(frame);
      const camera = this.scene.camera(this.fileCamera);
      if (camera) this.seen.camera.follow(camera);
    }
    draw() {
      this.renderer?.draw();
    }
    /** Gives the canvas the pixels that it covers. True if they have changed. */
    fit() {
      const { canvas } = this.stage;
      const ratio = Math.min(devicePixelRatio || 1, kMostPixelsOfPixel);
      const [width, height] = [canvas.clientWidth, canvas.clientHeight];
      const [w, h] = [Math.max(1, Math.round(width * ratio)), Math.max(1, Math.round(height * ratio))];
      this.seen.camera.setSize(width, height);
      if (canvas.width === w && canvas.height === h) return false;
      canvas.width = w;
      canvas.height = h;
      return true;
    }
    centerAt(x, y) {
      const point2 = this.renderer?.pick(x, y);
      if (!point2) return;
      this.seen.centerOn(point2);
      this.loop.request();
    }
    /** What the page began with, which may be a camera of the file. */
    startCamera() {
      const { view } = this.settings;
      this.fileCamera = view && !view.preset ? this.scene.cameraNames.indexOf(view.camera) : -1;
      this.toolbar.showCamera(view ? view.preset ? view.camera : "" : "iso_cam", this.fileCamera);
      this.toolbar.showFrame(this.player.frame);
    }
    reset() {
      this.seen.reset();
      this.startCamera();
      this.stage.say(this.texts.of("reset"));
      this.loop.request();
    }
    setPreset(name) {
      this.seen.setPreset(name);
      this.cameraChanged(name, -1);
    }
    setFileCamera(index) {
      const camera = this.scene.camera(index);
      if (!camera) return;
      this.seen.setFileCamera(camera);
      this.cameraChanged(camera.name, index);
    }
    cameraChanged(name, file) {
      this.fileCamera = file;
      this.toolbar.showCamera(file < 0 ? name : "", file);
      this.stage.say(this.texts.of("cameraShown", file < 0 ? this.texts.ofPreset(name) : name));
      this.loop.request();
    }
    setFrame(frame) {
      this.setPlaying(false);
      this.player.show(frame);
      this.showFrame(this.player.frame);
      this.loop.request();
    }
    setPlaying(playing) {
      if (!this.scene.animated) return;
      this.player.playing = playing;
      this.toolbar.showPlaying(playing);
      if (playing) this.loop.request();
    }
    get cameraNames() {
      return this.scene.cameraNames;
    }
    get frame() {
      return this.player.frame;
    }
    get playing() {
      return this.player.playing;
    }
    get animated() {
      return this.scene.animated;
    }
    get frames() {
      return [this.scene.firstFrame, this.scene.lastFrame];
    }
    get drawn() {
      return this.loop.count;
    }
    redraw() {
      this.loop.request();
    }
  };
  function isSoftware(gl) {
    const names = gl.getExtension("WEBGL_debug_renderer_info");
    return /swiftshader|llvmpipe|software/i.test(String(gl.getParameter(names ? names.UNMASKED_RENDERER_WEBGL : gl.RENDERER)));
  }

  // src/main.ts
  async function show() {
    const settings = readSettings(document.getElementById("settings")?.textContent ?? "");
    const texts = new Texts(settings.texts);
    const stage = new Stage(texts);
    stage.canvas.setAttribute("aria-label", texts.of("canvas", settings.title || settings.model));
    stage.say(texts.of("loading"));
    try {
      const gl = stage.canvas.getContext("webgl2", { alpha: false, antialias: true, powerPreference: "high-performance" });
      if (!gl) throw new Trouble("noWebGL");
      const viewer = new Viewer(await sceneBytes(), settings, texts, stage, gl);
      await viewer.start();
      stage.say(texts.of("shown", settings.title || settings.model));
      publish(viewer);
      document.body.dataset.ready = "";
    } catch (error) {
      stage.fail(error);
    }
  }
  if (document.readyState === "loading") document.addEventListener("DOMContentLoaded", () => void show());
  else void show();
})();
