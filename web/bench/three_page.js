// SPDX-License-Identifier: MIT
// A bare page of three.js round the same scene: what a page with that library would be.
import { Box3, Color, DirectionalLight, PerspectiveCamera, Scene, Vector3, WebGLRenderer } from 'three';
import { OrbitControls } from 'three/addons/controls/OrbitControls.js';
import { MeshoptDecoder } from 'three/addons/libs/meshopt_decoder.module.js';
import { GLTFLoader } from 'three/addons/loaders/GLTFLoader.js';

const renderer = new WebGLRenderer({ canvas: document.querySelector('canvas'), antialias: true });
renderer.setSize(innerWidth, innerHeight, false);
const scene = new Scene();
scene.background = new Color(0.24, 0.26, 0.3);
const camera = new PerspectiveCamera(45, innerWidth / innerHeight, 0.1, 1000);
const packed = Uint8Array.from(atob(document.getElementById('scene').textContent.trim()), (c) => c.charCodeAt(0));
const stream = new Blob([packed]).stream().pipeThrough(new DecompressionStream('gzip'));
const bytes = await new Response(stream).arrayBuffer();
const loader = new GLTFLoader();
loader.setMeshoptDecoder(MeshoptDecoder);
const gltf = await loader.parseAsync(bytes, '');
scene.add(gltf.scene);
const box = new Box3().setFromObject(gltf.scene);
const [center, radius] = [box.getCenter(new Vector3()), box.getSize(new Vector3()).length() / 2];
camera.position.copy(center).add(new Vector3(1, 1, 1).normalize().multiplyScalar(radius / Math.sin(Math.PI / 8)));
camera.near = radius / 100;
camera.far = radius * 10;
camera.updateProjectionMatrix();
camera.lookAt(center);
const light = new DirectionalLight(0xffffff, 3);
light.position.copy(camera.position);
scene.add(light);
const controls = new OrbitControls(camera, renderer.domElement);
controls.target.copy(center);
renderer.render(scene, camera);
window.turn = () => {
  gltf.scene.rotation.y += 0.05;
  renderer.render(scene, camera);
};
document.body.dataset.ready = '';
