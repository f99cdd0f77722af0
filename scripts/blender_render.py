# SPDX-License-Identifier: MIT
"""Run by Blender (blender -b --python scripts/blender_render.py -- JOBS.json): imports glTF files and renders each.

JOBS.json is a list of {"glb", "png", "width", "height", "camera", "frame"}. camera is the name of one of the file's, or a
list: eye, target and up in the file's coordinates, and the tangent of half the vertical field of view. The picture's
background is transparent. Prints one line "DONE {json}" for each job, with what was imported.
"""
import json
import math
import sys

import bpy
import numpy
from mathutils import Matrix, Vector

numpy.bool = bool  # Debian 12's NumPy has no such name any more, and its Blender asks for it


def look_at(eye, target, up):
    """The file's coordinates are Blender's: the root of the file turns them for glTF, and the import turns them back."""
    back = (Vector(eye) - Vector(target)).normalized()
    right = Vector(up).cross(back).normalized()
    top = back.cross(right)
    matrix = Matrix((right, top, back)).transposed().to_4x4()
    matrix.translation = Vector(eye)
    return matrix


def choose_camera(scene, camera, radius):
    if isinstance(camera, str):
        for thing in scene.objects:
            if thing.type == "CAMERA" and camera in (thing.name, thing.parent.name if thing.parent else ""):
                scene.camera = thing
                return
        raise RuntimeError(f"no camera {camera}")
    eye, target, up, tangent = camera
    data = bpy.data.cameras.new("seen")
    data.sensor_fit = "VERTICAL"
    data.angle_y = 2 * math.atan(tangent)
    data.clip_start, data.clip_end = radius * 1e-3, radius * 1e3
    thing = bpy.data.objects.new("seen", data)
    thing.matrix_world = look_at(eye, target, up)
    scene.collection.objects.link(thing)
    scene.camera = thing


def light_all(scene):
    world = bpy.data.worlds.new("world")
    world.use_nodes = True
    world.node_tree.nodes["Background"].inputs[0].default_value = (1, 1, 1, 1)
    scene.world = world


def render(job):
    bpy.ops.wm.read_factory_settings(use_empty=True)
    bpy.context.scene.render.fps = 30  # the import turns seconds into frames
    bpy.ops.import_scene.gltf(filepath=job["glb"])
    scene = bpy.context.scene
    scene.render.engine = "CYCLES"
    scene.cycles.device, scene.cycles.samples, scene.cycles.use_denoising = "CPU", job.get("samples", 8), False
    scene.cycles.transparent_max_bounces = 64
    scene.cycles.pixel_filter_type, scene.cycles.filter_width = "GAUSSIAN", 0.01  # what the middle of the pixel shows
    scene.render.resolution_x, scene.render.resolution_y = job["width"], job["height"]
    scene.render.resolution_percentage = 100
    scene.render.film_transparent = True
    scene.view_settings.view_transform = "Standard"
    scene.frame_set(int(round(job["frame"])))
    choose_camera(scene, job["camera"], job["radius"])
    light_all(scene)
    scene.render.filepath = job["png"]
    bpy.ops.render.render(write_still=True)
    kinds = {}
    for thing in scene.objects:
        kinds[thing.type] = kinds.get(thing.type, 0) + 1
    polygons = sum(len(thing.data.polygons) for thing in scene.objects if thing.type == "MESH")
    return {"png": job["png"], "objects": kinds, "polygons": polygons, "images": len(bpy.data.images),
            "actions": len(bpy.data.actions)}


for job in json.load(open(sys.argv[sys.argv.index("--") + 1], encoding="utf-8")):
    try:
        print("DONE", json.dumps(render(job)), flush=True)
    except Exception as error:  # the other pictures are of use, too
        print("FAILED", json.dumps({"png": job["png"], "error": str(error)}), flush=True)
