#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Installs the built program into a fresh folder, moves that, and uses it there: check_install.py WHAT BUILD SCRATCH.

WHAT is programs, desktop or window. What only works in the build tree, or only where it was installed first, fails.
"""
import json
import os
import shutil
import struct
import subprocess
import sys
import time
from pathlib import Path

SAMPLE = "share/orbivue/samples/orrery.3ds"
ICON_SIZES = [16, 20, 24, 32, 48, 64]


def run(*command, **options):
    """Runs a command that must succeed; its standard output."""
    result = subprocess.run([str(part) for part in command], capture_output=True, text=True, stdin=subprocess.DEVNULL,
                            timeout=100, check=False, **options)
    if result.returncode != 0:
        sys.exit(f"{command[0]} ended with {result.returncode}\n{result.stdout}{result.stderr}")
    return result.stdout


def require(condition, message):
    if not condition:
        sys.exit(f"check_install: {message}")


def install(build, scratch):
    shutil.rmtree(scratch, ignore_errors=True)
    run("cmake", "--install", build, "--prefix", scratch / "first")
    (scratch / "first").rename(scratch / "moved here")
    return scratch / "moved here"


def check_programs(prefix, scratch):
    """The renderer draws the installed sample, finds all its textures there, and says its version."""
    render = prefix / "bin/orbivue-render"
    require("1.9.5" in run(render, "--version"), "no version")
    picture = scratch / "picture.png"
    stats = json.loads(run(render, "--stats", "--size", "320x200", prefix / SAMPLE, picture, cwd=scratch))
    require(picture.stat().st_size > 5000, "the picture is too small to show anything")
    require(stats["textures"]["missing"] == [], f"textures missing: {stats['textures']['missing']}")
    for texture in stats["textures"]["found"]:
        require(texture["at"].startswith(str(prefix)), f"{texture['at']} is not the installed one")
    for script in sorted((prefix / SAMPLE).parent.glob("*.orv")):
        stats = json.loads(run(render, "--confined", "--stats", script, cwd=scratch))
        require(stats["triangles"] > 0 and stats["notes"] == [], f"{script.name}: {stats['notes']}")
    page = scratch / "page.html"
    run(prefix / "bin/orbivue-convert", "--language", "de", prefix / SAMPLE, page, cwd=scratch)
    require('lang="de"' in page.read_text(encoding="utf-8"), "the page is not in the language that was asked for")
    require((prefix / "share/orbivue/samples/tour.orv").is_file(), "the tour of the samples is not installed")
    require((prefix / "share/orbivue/previews/chess.jpg").is_file(), "the previews of the samples are not installed")
    for path in ("bin/orbivue-modeldb", "share/man/man1/orbivue-modeldb.1", "lib/systemd/system/orbivue-modeldb.service", "lib/sysusers.d/orbivue-modeldb.conf", "share/doc/orbivue/examples/nginx/orbivue-modeldb.conf", "share/man/man1/orbivue-render.1", "share/man/man1/orbivue-convert.1", "share/man/man1/Orbivue.1", "share/orbivue/languages/de/viewer.mo", "share/doc/orbivue/NOTICE", "share/doc/orbivue/LICENSE"):
        require((prefix / path).is_file(), f"{path} is not installed")
    require((prefix / "share/orbivue/manual/index.html").is_file(), "the manual is not installed")
    check_upload_helper(prefix, scratch)
    for path in prefix.rglob("*"):
        require("seeds" not in path.parts and path.name not in ("make_samples", "make_large"), f"{path} should not be installed")


def check_upload_helper(prefix, scratch):
    """The helper of the Drive export stands beside its template and makes a page ready; without a display that is all."""
    helper = next(prefix.rglob("OrbivueUploadPrepare.exe"), None)
    require(helper is not None and helper.parent.name == "scripts", "the helper of the Drive export is not installed")
    model, upload = scratch / "model", scratch / "upload"
    model.mkdir()
    upload.mkdir()
    (model / "index.html").write_text('<!DOCTYPE html>\n<html lang="de">')
    environment = {key: value for key, value in os.environ.items() if key not in ("DISPLAY", "WAYLAND_DISPLAY")}
    arguments = [str(path.resolve()) for path in (helper, model, helper.parent / "template", upload)]
    ended = subprocess.run(arguments + ["--help \n.3ds"], env=environment, capture_output=True, text=True, timeout=60, check=False)
    require(ended.returncode == 3, f"the helper ended with {ended.returncode}: {ended.stderr}")
    require("3D-Ansicht" in (upload / "index.html").read_text(), "the helper made no page")


def pictures_in(icon):
    """Width, height and bits per pixel, from the icon file's directory."""
    data = icon.read_bytes()
    count = struct.unpack_from("<HHH", data)[2]
    entries = [struct.unpack_from("<4BHHII", data, 6 + 16 * i) for i in range(count)]
    return [(width, height, bits) for width, height, _, _, _, bits, _, _ in entries]


def check_icons(images):
    require((images / "main.ico").is_file(), "the program's icon is not installed")
    for icon in images.iterdir():
        require(pictures_in(icon) == [(size, size, 32) for size in ICON_SIZES], f"{icon.name} lacks sizes or alpha")


def check_desktop(prefix, _scratch):
    """What the desktop reads is valid and names things that are installed."""
    share = prefix / "share"
    desktop = share / "applications/orbivue.desktop"
    run("desktop-file-validate", desktop)
    run("appstreamcli", "validate", "--no-net", "--pedantic", share / "metainfo/org.orbivue.orbivue.metainfo.xml")
    entries = dict(line.split("=", 1) for line in desktop.read_text().splitlines() if "=" in line)
    require((prefix / "bin" / entries["Exec"].split()[0]).is_file(), "the desktop file starts nothing that is installed")
    require(list((share / "icons").rglob(entries["Icon"] + ".svg")), "the desktop file's icon is not installed")
    check_icons(share / "orbivue/images")
    run("update-mime-database", share / "mime")
    globs = (share / "mime/globs2").read_text()
    require("image/x-3ds:*.3ds" in globs, "the MIME type is not registered")
    thumbnailer = (share / "thumbnailers/orbivue.thumbnailer").read_text()
    command = next(line.split("=", 1)[1] for line in thumbnailer.splitlines() if line.startswith("Exec="))
    thumbnail = prefix / "thumbnail.png"
    fields = {"%s": "128", "%u": (prefix / SAMPLE).absolute().as_uri(), "%o": str(thumbnail)}
    words = [part for part in command.split()]
    for key, value in fields.items():
        words = [word.replace(key, value) for word in words]
    run(prefix / "bin" / words[0], *words[1:])
    require(thumbnail.stat().st_size > 1000, "the thumbnailer draws nothing")


def wait_for(what, seconds, question):
    """The first true answer within some seconds."""
    end = time.monotonic() + seconds
    while time.monotonic() < end:
        answer = question()
        if answer:
            return answer
        time.sleep(0.1)
    sys.exit(f"check_install: waited {seconds} s for {what}")


def window_of(process):
    if process.poll() is not None:
        sys.exit(f"check_install: the program ended with {process.returncode}")
    found = subprocess.run(["xdotool", "search", "--onlyvisible", "--pid", str(process.pid), "--name", "."],
                           capture_output=True, text=True, check=False).stdout.split()
    return found[-1] if found else None


def colours_in(window, scratch):
    picture = scratch / "window.png"
    subprocess.run(["import", "-window", window, str(picture)], check=False, stderr=subprocess.DEVNULL)
    if not picture.exists():
        return 0
    return int(run("identify", "-format", "%k", picture))


def ends_by_key(process, window):
    """Presses the key that closes a window: again, as a press can be lost while the focus moves."""
    subprocess.run(["xdotool", "windowfocus", window, "key", "alt+F4"], check=False, timeout=20, stderr=subprocess.DEVNULL)
    try:
        process.wait(2)
    except subprocess.TimeoutExpired:
        return False
    return True


def check_window(prefix, scratch):
    """The program opens the installed sample in a window, shows it, and ends well when the window is closed."""
    home = scratch / "home"
    home.mkdir()
    environment = dict(os.environ, HOME=str(home), XDG_CONFIG_HOME=str(home / "config"), XDG_CACHE_HOME=str(home / "cache"))
    process = subprocess.Popen([str(prefix / "bin/Orbivue"), str(prefix / SAMPLE)], stdin=subprocess.DEVNULL, env=environment)
    try:
        window = wait_for("a window", 40, lambda: window_of(process))
        wait_for("a picture in it", 40, lambda: colours_in(window, scratch) > 2000)
        wait_for("its end", 20, lambda: ends_by_key(process, window))
        require(process.returncode == 0, f"it ended with {process.returncode}")
    finally:
        if process.poll() is None:
            process.kill()
            process.wait()


def main():
    what, build, scratch = sys.argv[1], Path(sys.argv[2]), Path(sys.argv[3]).resolve()
    checks = {"programs": check_programs, "desktop": check_desktop, "window": check_window}
    checks[what](install(build, scratch), scratch)


if __name__ == "__main__":
    main()
