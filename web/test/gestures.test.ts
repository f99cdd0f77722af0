// SPDX-License-Identifier: MIT
import assert from 'node:assert/strict';
import { test } from 'node:test';
import { distanceOf, newCamera, setPreset } from '../src/camera.ts';
import { makeGestures, type Place, type Press } from '../src/gestures.ts';
import { ballOf, centerOn, modelOf, place, zoomAt, type Seen } from '../src/seen.ts';
import { point } from '../src/matrix.ts';
import { sub, type Vec3 } from '../src/vector.ts';

/** From the front at a unit sphere, in a view of 400 by 400. */
function viewed() {
  const seen = { camera: Object.assign(newCamera([0, 0, 0], 1), { viewWidth: 400, viewHeight: 400 }) } as Seen;
  setPreset(seen.camera, 'frt_cam');
  place(seen);
  const told: string[] = [];
  const gestures = makeGestures(seen, {
    moved: () => void told.push('moved'),
    boxed: (box) => void told.push(box ? 'box' : 'no box'),
    centered: ({ x, y }) => void told.push(`center ${x} ${y}`),
  });
  const down = (x: number, y: number, more: Partial<Press> = {}, time = 0): void =>
    gestures.down({ id: 1, button: 0, ctrl: false, shift: false, x, y, ...more }, time);
  return { seen, gestures, down, told };
}

const state = ({ camera, turned, shift }: Seen): unknown => ({ turned, shift, distance: distanceOf(camera), backward: camera.backward });
const spot = (x: number, y: number): Place => ({ x, y });
const near = (a: number, b: number): void => assert.ok(Math.abs(a - b) < 1e-9, `${a} is not ${b}`);

test('a point that is grabbed stays under the pointer', () => {
  const { seen, gestures, down } = viewed();
  down(200, 200);
  gestures.move(1, spot(260, 200));
  const [x, y, z] = point(modelOf(seen), [0, -1, 0]);
  near(x / (distanceOf(seen.camera) + y), 0.3 * Math.tan(Math.PI / 8));
  near(Math.hypot(x, y, z), 1);
});

test('a drag beside the ball spins the model about the line of sight', () => {
  const { seen, gestures, down } = viewed();
  down(399, 1);
  gestures.move(1, spot(1, 1));
  const [x, y, z] = point(modelOf(seen), [1, 0, 0]);
  near(x, 0);
  near(y, 0);
  near(z, 1);
});

test('a turn has no end: round and round is where it was', () => {
  const { seen, gestures, down } = viewed();
  down(450, 200);
  for (let i = 1; i <= 72; i++) gestures.move(1, spot(200 + 250 * Math.cos((i * Math.PI) / 18), 200 - 250 * Math.sin((i * Math.PI) / 18)));
  const at = point(modelOf(seen), [1, 2, 3]);
  [1, 2, 3].forEach((v, i) => near(at[i], v));
});

for (const [name, press] of Object.entries({ middle: { button: 1 }, 'right and Shift': { button: 2, shift: true } })) {
  test(`dragging with ${name} moves the model with the pointer`, () => {
    const { seen, gestures, down } = viewed();
    down(200, 200, press);
    gestures.move(1, spot(300, 150));
    const size = (2 * distanceOf(seen.camera) * Math.tan(Math.PI / 8)) / 400;
    const [x, , z] = ballOf(seen);
    near(x, 100 * size);
    near(z, 50 * size);
  });
}

test('two fingers move and zoom about their middle', () => {
  const { seen, gestures, down } = viewed();
  down(100, 200);
  down(300, 200, { id: 2 });
  const before = distanceOf(seen.camera);
  gestures.move(2, spot(400, 200));
  near(distanceOf(seen.camera), (before * 200) / 300);
  gestures.up(2);
  gestures.move(1, spot(150, 200));
  assert.notDeepEqual(seen.turned, [0, 0, 0, 1]);
});

test('what lies under the pointer stays there when it is zoomed at', () => {
  const { seen } = viewed();
  const before = distanceOf(seen.camera);
  zoomAt(seen, -100, 300, 200);
  const after = distanceOf(seen.camera);
  // A point in the plane of the target that was seen at 300.
  const at = sub(point(modelOf(seen), [before * Math.tan(Math.PI / 8) * 0.5, 0, 0]), [0, 0, 0] as Vec3);
  near(at[0] / (after * Math.tan(Math.PI / 8)), 0.5);
});

test('a point that is clicked twice comes to the middle, as large as it was', () => {
  const { seen, gestures, down, told } = viewed();
  down(250, 200, {}, 0);
  gestures.up(1);
  down(252, 201, {}, 200);
  assert.ok(told.includes('center 252 201'));
  const depth = distanceOf(seen.camera) - 0.5;
  centerOn(seen, 252, 201, depth);
  near(distanceOf(seen.camera), depth);
  near(Math.hypot(...ballOf(seen)), 0);
});

const kNoDouble: Record<string, [Partial<Press>, number, number]> = {
  'too late': [{}, 250, 900],
  'too far': [{}, 290, 100],
  'with Ctrl': [{ ctrl: true }, 250, 100],
  'with another button': [{ button: 2 }, 250, 100],
};
for (const [name, [press, x, time]] of Object.entries(kNoDouble)) {
  test('no double click: ' + name, () => {
    const { gestures, down, told } = viewed();
    down(250, 200, {}, 0);
    gestures.up(1);
    down(x, 200, press, time);
    assert.ok(!told.some((t) => t.startsWith('center')));
  });
}

test('a box is drawn with Ctrl and zoomed to when the button comes up', () => {
  const { seen, gestures, down, told } = viewed();
  const { backward } = seen.camera;
  down(200, 100, { ctrl: true });
  gestures.move(1, spot(300, 200));
  assert.deepEqual(told, ['box']);
  gestures.up(1);
  assert.deepEqual(told, ['box', 'no box', 'moved']);
  assert.notDeepEqual(seen.camera.backward, backward);
});

test('a box that the system took away is not zoomed to', () => {
  const { seen, gestures, down } = viewed();
  const before = state(seen);
  down(200, 100, { ctrl: true });
  gestures.move(1, spot(300, 200));
  gestures.up(1, true);
  gestures.up(1);
  assert.deepEqual(state(seen), before);
});

test('wheel, keys, and what they leave alone', () => {
  const { seen, gestures } = viewed();
  const before = distanceOf(seen.camera);
  gestures.wheel(1);
  near(distanceOf(seen.camera), before * Math.exp(0.1));
  gestures.wheel(NaN);
  near(distanceOf(seen.camera), before * Math.exp(0.1));
  assert.ok(gestures.key('-', true) && gestures.key('+', false) && gestures.key('=', false));
  near(distanceOf(seen.camera), before * Math.exp(0.1 + 0.02 - 0.2));
  assert.ok(!gestures.key('x', false) && !gestures.key('Tab', false));
  gestures.key('ArrowRight', false);
  const angle = Math.atan2(point(modelOf(seen), [1, 0, 0])[1], point(modelOf(seen), [1, 0, 0])[0]);
  near(angle, (10 * Math.PI) / 180);
});
