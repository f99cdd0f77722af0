# SPDX-License-Identifier: MIT
"""Runs the program in a window, uses it, and takes pictures of it, for manual_pictures."""
import contextlib
import os
import subprocess
import sys
import time
from pathlib import Path

MODELS = Path("/tmp/models")
SIZE = (1000, 700)
STILL_TRIES = 60


def run(*command, **options):
    """Runs a command that must succeed; its standard output."""
    result = subprocess.run([str(part) for part in command], capture_output=True, text=True, stdin=subprocess.DEVNULL,
                            timeout=300, check=False, **options)
    if result.returncode != 0:
        sys.exit(f"manual_pictures: {command[0]} ended with {result.returncode}\n{result.stdout}{result.stderr}")
    return result.stdout


def xdotool(*words):
    return subprocess.run(["xdotool", *map(str, words)], capture_output=True, text=True, check=False, timeout=60).stdout.split()


def wait_for(what, question, seconds=40):
    end = time.monotonic() + seconds
    while time.monotonic() < end:
        answer = question()
        if answer:
            return answer
        time.sleep(0.1)
    sys.exit(f"manual_pictures: waited {seconds} s for {what}")


class Shooter:
    """What the pictures' functions share: the programs, a folder for what is in the making, and the program that runs."""

    def __init__(self, build, into, work):
        self.build, self.into, self.work = build, into, work
        self.process = self.window = None

    def tool(self, name):
        return self.build / "bin" / name

    @contextlib.contextmanager
    def program(self, *files, size=SIZE, left=60, environment=None, **settings):
        """Orbivue with these settings and a window of this size, ended at the end."""
        values = {"BkColorR": 58, "BkColorG": 66, "BkColorB": 80, "AutoUpdate": 0, **settings}
        folder = Path(os.environ["XDG_CONFIG_HOME"]) / "orbivue"
        folder.mkdir(exist_ok=True)
        lines = ["[Settings]", *(f"{key}={value}" for key, value in values.items()), "[3dsFileDialog]", f"Path={MODELS}",
                 "[WindowState]", f"Left={left}", "Top=60", f"Width={size[0]}", f"Height={size[1]}", "Maximized=0"]
        (folder / "settings.ini").write_text("\n".join(lines) + "\n")
        self.process = subprocess.Popen([str(self.tool("Orbivue")), *map(str, files)], stdin=subprocess.DEVNULL, cwd=MODELS,
                                        env=dict(os.environ, **(environment or {})))
        try:
            self.window = wait_for("a window", lambda: xdotool("search", "--onlyvisible", "--pid", self.process.pid, "--name", "Orbivue"))[-1]
            xdotool("windowactivate", "--sync", self.window)
            xdotool("mousemove", 2, 2)
            if files:
                wait_for("a model", self.shows_something, 120)
            time.sleep(3)
            yield self
        finally:
            self.process.terminate()
            self.process.wait()

    def shows_something(self):
        """A model, or why there is none."""
        picture = self.work / "opening.png"
        run("import", "-window", self.window, picture)
        failed = "failed" in " ".join(xdotool("getwindowname", self.window))
        return failed or int(run("convert", picture, "-crop", "100%x60%+0+130", "-format", "%k", "info:")) > 600

    def place_of(self, window):
        """Left, top, width and height with the frame that the window manager draws."""
        lines = dict(line.strip().split(":", 1) for line in run("xwininfo", "-id", window).splitlines() if ":" in line)
        x, y, width, height = (int(lines[key]) for key in ("Absolute upper-left X", "Absolute upper-left Y", "Width", "Height"))
        frame = run("xprop", "-id", window, "_NET_FRAME_EXTENTS").split("=")[1]
        left, right, top, bottom = (int(part) for part in frame.split(","))
        return x - left, y - top, width + left + right, height + top + bottom

    def dialog(self, title):
        found = wait_for(title, lambda: xdotool("search", "--onlyvisible", "--name", title))
        time.sleep(0.7)
        return found[-1]

    def screen(self, name):
        """A picture of the screen once nothing changes any more."""
        before = b""
        for _ in range(STILL_TRIES):
            run("import", "-window", "root", "-depth", "8", self.work / f"{name}.ppm")
            now = (self.work / f"{name}.ppm").read_bytes()
            if now == before:
                return self.work / f"{name}.ppm"
            before = now
            time.sleep(0.4)
        sys.exit(f"manual_pictures: the picture for {name} does not come to rest")

    def shoot(self, name, window=None, inside=None):
        """Cuts a window (or a part of it: left, top, width, height) out of the screen."""
        left, top, width, height = self.place_of(window or self.window)
        if inside:
            left, top, width, height = left + inside[0], top + inside[1], inside[2], inside[3]
        part = self.work / f"{name}-part.png"
        run("convert", self.screen(name), "-crop", f"{width}x{height}+{left}+{top}", "+repage", part)
        return part

    def keep(self, name, picture, *changes):
        """Writes a picture of the manual, small: few colours, and none of what tells when it was made."""
        run("convert", picture, *changes, "-dither", "FloydSteinberg", "-colors", "224", "-strip", "-define", "png:exclude-chunks=date,time",
            "-define", "png:compression-level=9", f"PNG8:{self.into / name}.png")

    def key(self, *keys):
        for key in keys:
            xdotool("key", key)
            time.sleep(0.25)

    def click(self, x, y, button=1):
        """At a place of the window, counted from its frame."""
        left, top, _, _ = self.place_of(self.window)
        xdotool("mousemove", left + x, top + y)
        time.sleep(0.3)
        xdotool("click", button)
        time.sleep(0.6)

    def drag(self, start, end, button):
        left, top, _, _ = self.place_of(self.window)
        xdotool("mousemove", left + start[0], top + start[1], "mousedown", button)
        for step in range(1, 11):
            time.sleep(0.1)
            xdotool("mousemove", *(corner + begin + (finish - begin) * step // 10
                                   for corner, begin, finish in zip((left, top), start, end)))
        xdotool("mouseup", button)
        time.sleep(0.6)

    def point(self, x, y):
        left, top, _, _ = self.place_of(self.window)
        xdotool("mousemove", left + x, top + y)
        time.sleep(1)

    def rest(self, part=0.0):
        """Stops the animation at a part of its length."""
        self.key("ctrl+p")
        width = self.place_of(self.window)[2]
        self.click(round(72 + part * (width - 178)), self.place_of(self.window)[3] - 40)
        xdotool("mousemove", 2, 2)

    def montage(self, name, parts, tiles, size):
        made = self.work / f"{name}-montage.png"
        run("montage", *parts, "-tile", tiles, "-geometry", f"{size}+4+4", "-gravity", "center", "-background", "none", made)
        self.keep(name, made, "-shave", "4x4")

    def beside(self, name, left, right, height):
        made = self.work / f"{name}-beside.png"
        run("convert", "-background", "none", "-gravity", "center", left, "(", right, "-resize", f"x{height}", ")", "+append", made)
        self.keep(name, made)
