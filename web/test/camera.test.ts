// SPDX-License-Identifier: MIT
import assert from 'node:assert/strict';
import { test } from 'node:test';
import * as camera from '../src/camera.ts';
import { dot, sub, type Vec3 } from '../src/vector.ts';

const close = (a: number, b: number, what?: string): void => assert.ok(Math.abs(a - b) < 1e-6 * Math.max(1, Math.abs(b)), `${what ?? ''} ${a} is not ${b}`);
const closeAll = (a: readonly number[], b: readonly number[]): void => b.forEach((x, i) => close(a[i], x, `[${i}]`));

/** Where a point is seen: -1 to 1 to the right and up. */
function seenAt(c: camera.Camera, at: Vec3): [number, number] {
  const m = camera.projection(c, [0.1, 100]);
  const p = sub(at, camera.eyeOf(c));
  const row = (r: number): number => m[r] * p[0] + m[r + 4] * p[1] + m[r + 8] * p[2] + m[r + 12];
  return [row(0) / row(3), row(1) / row(3)];
}

function sized(width: number, height: number): camera.Camera {
  return Object.assign(camera.newCamera([1, 2, 3], 2), { viewWidth: width, viewHeight: height });
}

for (const [width, height] of [[800, 600], [300, 600], [1000, 100]]) {
  for (const name of Object.keys(camera.kPresets)) {
    test(`${name} fits the sphere into ${width} x ${height}`, () => {
      const c = sized(width, height);
      camera.setPreset(c, name);
      const narrow = Math.atan(camera.tanOf(c) * Math.min(1, width / height));
      close(camera.distanceOf(c), 2 / Math.sin(narrow));
      closeAll(seenAt(c, [1, 2, 3]), [0, 0]);
      const [right, up] = camera.axesOf(c);
      close(dot(right, up), 0);
    });
  }
}

test('what the desktop saw is seen in a view of any shape', () => {
  const view = { eye: [0, -10, 0] as Vec3, target: [0, 0, 0] as Vec3, up: [0, 0, 1] as Vec3, fovYDeg: 40, size: [800, 400] as const, camera: 'x', preset: false };
  const [up, right] = [10 * Math.tan((20 * Math.PI) / 180), 20 * Math.tan((20 * Math.PI) / 180)];
  for (const [width, height] of [[800, 400], [1600, 400], [200, 900]]) {
    const c = sized(width, height);
    camera.setSeen(c, view);
    const [x, y] = seenAt(c, [right, 0, up]);
    assert.ok(x <= 1 + 1e-9 && y <= 1 + 1e-9 && Math.max(x, y) > 0.999);
  }
});

test('a preset that was zoomed keeps its zoom in another shape', () => {
  const c = sized(400, 400);
  camera.setSeen(c, { eye: [1, -8, 3], target: [1, 2, 3], up: [0, 0, 1], fovYDeg: 45, size: [800, 600], camera: 'frt_cam', preset: true });
  close(camera.distanceOf(c), 10);
  Object.assign(c, { viewWidth: 200, viewHeight: 400 });
  assert.ok(camera.distanceOf(c) > 18);
});

test('a file camera: angle of a 4:3 picture, roll, and looking straight down', () => {
  const c = sized(400, 300);
  camera.setFileCamera(c, { name: 'a', eye: [0, 0, 10], target: [0, 0, 0], rollDeg: 0, fovDeg: 90 });
  close(camera.tanOf(c), 0.75);
  closeAll(camera.axesOf(c)[1], [-1, 0, 0]);
  camera.setFileCamera(c, { name: 'a', eye: [0, -10, 0], target: [0, 0, 0], rollDeg: 90, fovDeg: 90 });
  closeAll(camera.axesOf(c)[1], [-1, 0, 0]);
  camera.follow(c, { name: 'b', eye: [9, 9, 9], target: [0, 0, 0], rollDeg: 0, fovDeg: 50 });
  closeAll(camera.eyeOf(c), [0, -10, 0]);
});

test('zooming there and back, and its limits', () => {
  const c = sized(400, 400);
  const before = camera.distanceOf(c);
  camera.zoomBy(c, -20);
  close(camera.distanceOf(c), before * Math.exp(-0.1));
  camera.zoomBy(c, 20);
  close(camera.distanceOf(c), before);
  camera.zoomBy(c, -100000);
  close(camera.distanceOf(c), Math.max((0.0005 * 2) / camera.tanOf(c), 0.002));
  camera.zoomBy(c, 100000);
  close(camera.distanceOf(c) * camera.tanOf(c), 80);
  camera.setDistance(c, NaN);
  assert.ok(isFinite(camera.distanceOf(c)));
});

test('a zoom box fills the view, and the eye stays', () => {
  const c = sized(400, 400);
  const eye = camera.eyeOf(c);
  const inside = camera.rayOf(c, 250, 100);
  assert.ok(camera.zoomTo(c, { x0: 300, y0: 150, x1: 200, y1: 50 }));
  closeAll(camera.eyeOf(c), eye);
  const at = eye.map((x, i) => x + inside[i]) as unknown as Vec3;
  closeAll(seenAt(c, at), [0, 0]);
  assert.ok(camera.tanOf(c) < 0.15);
});

for (const [name, box] of Object.entries({
  'without area': { x0: 10, y0: 10, x1: 10, y1: 50 },
  'outside the view': { x0: -90, y0: 10, x1: -10, y1: 50 },
  'not finite': { x0: NaN, y0: 10, x1: 10, y1: 50 },
})) {
  test('a zoom box ' + name + ' changes nothing', () => {
    const c = sized(400, 400);
    const before = structuredClone(c);
    assert.equal(camera.zoomTo(c, box), false);
    assert.deepEqual(c, before);
  });
}

for (const [name, [nearest, farthest]] of Object.entries({ behind: [-5, -1], inside: [-5, 5], before: [2, 9], nothing: [Infinity, -Infinity] })) {
  test('planes for what is ' + name, () => {
    const [n, f] = camera.depthRange(sized(400, 400), nearest, farthest);
    assert.ok(n > 0 && f > n && isFinite(f));
    if (nearest > 0 && farthest > 0 && isFinite(farthest)) assert.ok(n <= nearest && f >= farthest);
  });
}
