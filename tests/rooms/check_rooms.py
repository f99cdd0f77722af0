#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""check_rooms.py ROOT | --self-test   holds the include lines of src/ against the rooms listed in src/rooms.cmake.

Fails on an include of a room that the list does not allow, on a room that uses one listed after it, on windows' headers
outside of ui/, and on a folder of more than MOST_FILES files.
"""
import re
import sys
import tempfile
from pathlib import Path

MOST_FILES = 24  # "some twenty": a room that grows past it is two rooms
INCLUDE = re.compile(r'^\s*#\s*include\s*(["<])([^">]+)[">]', re.M)


def read_rooms(text):
    """The rooms in their order, each with the set of rooms that it may use."""
    lines = [line.split(":") for line in re.findall(r'^\s*"([^"]*)"', text, re.M)]
    names = [name for name, _ in lines]
    rooms = {}
    for name, used in lines:
        allowed = set()
        for pattern in used.split():
            top = pattern.removesuffix("/*")
            found = {n for n in names if n == pattern or (top != pattern and (n == top or n.startswith(top + "/")))}
            if not found:
                raise SystemExit(f"rooms: {name} uses {pattern}, which is no room")
            allowed |= found
        rooms[name] = allowed - {name}
    return rooms


def faults_of(root):
    source = Path(root) / "src"
    rooms = read_rooms((source / "rooms.cmake").read_text(encoding="utf-8"))
    order = list(rooms)
    faults = [f"rooms.cmake: {room} uses {used}, which stands after it"
              for room in order for used in rooms[room] if order.index(used) > order.index(room)]
    counts = {}
    for path in sorted(source.rglob("*")):
        if path.suffix not in (".h", ".cpp"):
            continue
        room = path.parent.relative_to(source).as_posix()
        counts[room] = counts.get(room, 0) + 1
        where = path.relative_to(root).as_posix()
        if room not in rooms:
            faults.append(f"{where}: {room} is no room")
            continue
        for kind, name in INCLUDE.findall(path.read_text(encoding="utf-8")):
            if kind == "<":
                if name.startswith(("gtk/", "gdk/")) and not room.endswith("/ui"):
                    faults.append(f"{where}: includes <{name}> outside of a ui room")
                continue
            other = str(Path(name).parent)
            if "/" not in name or not (source / name).exists():
                if not name.startswith("lib3ds/"):
                    faults.append(f'{where}: includes "{name}", which is not below src/')
            elif other != room and other not in rooms[room]:
                faults.append(f'{where}: {room} may not use {other} ("{name}")')
    faults += [f"src/{room}: {n} files, at most {MOST_FILES}" for room, n in counts.items() if n > MOST_FILES]
    return faults


def self_test():
    with tempfile.TemporaryDirectory() as folder:
        root = Path(folder)
        files = {
            "rooms.cmake": 'set(X\n  "low:"\n  "mid/a: low"\n  "mid/b: low"\n  "high: mid/*")\n',
            "low/up.h": '#include "high/x.h"\n',
            "mid/a/aside.h": '#include "mid/b/b.h"\n',
            "mid/a/fine.h": '#include "low/up.h"\n#include <vector>\n',
            "mid/b/b.h": "",
            "high/x.h": '#include "mid/b/b.h"\n',
            "cellar/x.h": "",
        }
        for name, text in files.items():
            (root / "src" / name).parent.mkdir(parents=True, exist_ok=True)
            (root / "src" / name).write_text(text)
        expected = {'src/low/up.h: low may not use high ("high/x.h")',
                    'src/mid/a/aside.h: mid/a may not use mid/b ("mid/b/b.h")',
                    "src/cellar/x.h: cellar is no room"}
        return [f"self-test: {fault}" for fault in expected ^ set(faults_of(root))]


faults = self_test() if sys.argv[1] == "--self-test" else faults_of(Path(sys.argv[1]))
print("\n".join(faults) if faults else "rooms: every arrow is one of the list")
sys.exit(1 if faults else 0)
