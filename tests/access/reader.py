# SPDX-License-Identifier: MIT
"""What a screen reader sees of the program, and a hand on its keyboard. Nothing waits for a fixed time: what is expected is
looked for until it is there, or LIMIT_S is over, which is a failure with a text that says what was expected."""
import os
import shutil
import subprocess
import tempfile
import time

import pyatspi

LIMIT_S = 20


class Missing(Exception):
    """What a test expects is not there."""


def until(what, look):
    """The first true answer of look; what: said when there is none."""
    end = time.monotonic() + LIMIT_S
    while True:
        try:
            found = look()
        except Exception as error:  # what was being looked at may have gone meanwhile
            found, what = None, f"{what.split(' (')[0]} ({error})" if str(error) else what
        if found:
            return found
        if time.monotonic() > end:
            raise Missing(what)
        time.sleep(0.03)


def children(node):
    """Without those that are gone meanwhile."""
    return [child for child in (node.getChildAtIndex(i) for i in range(node.childCount)) if child is not None]


def has(node, state):
    return node.getState().contains(getattr(pyatspi, "STATE_" + state))


def walk(node, enter=lambda node: True):
    """The node and all below it, but not what is in nodes that are not to be entered."""
    yield node
    if enter(node):
        for child in children(node):
            yield from walk(child, enter)


def is_no_menu(node):
    return node.getRoleName() != "menu"


def may_hold_focus(node):
    """Of menus only an open one; and what is hidden does not, nor the colours of a field."""
    role = node.getRoleName()
    if role == "menu":
        return any(has(item, "SHOWING") for item in children(node)[:1])
    return has(node, "SHOWING") and role != "combo box"


def labelled(node):
    return any(r.getRelationType() == pyatspi.RELATION_LABELLED_BY and r.getNTargets() > 0 for r in node.getRelationSet())


class Program:
    """The program with a folder of models of its own; it ends with the block."""

    def __init__(self, binary, models):
        self.binary = os.path.abspath(binary)
        self.folder = tempfile.mkdtemp()
        self.models = [shutil.copy(model, self.folder) for model in models]

    def start(self, *arguments):
        english = dict(os.environ, LC_ALL="C.UTF-8", LANGUAGE="en")
        self.process = subprocess.Popen([self.binary, *arguments], env=english, stdout=subprocess.DEVNULL,
                                        stderr=subprocess.DEVNULL)
        self.node = until("the program on the bus", self.find)
        self.frame = until("its window", lambda: next(n for n in children(self.node) if n.getRoleName() == "frame"))

    def __enter__(self):
        self.start(self.models[0])
        self.expect_view(os.path.basename(self.models[0]))
        until("the window active", lambda: has(self.frame, "ACTIVE"))
        return self

    def __exit__(self, *_):
        self.process.kill()
        self.process.wait()
        shutil.rmtree(self.folder, ignore_errors=True)

    def find(self):
        if self.process.poll() is not None:
            raise Missing("the program ended")
        name = os.path.basename(self.binary)
        return next((app for app in pyatspi.Registry.getDesktop(0) if app is not None and app.name == name), None)

    # --- what is seen -----------------------------------------------------------------------------------------

    def get(self, role, name, root=None):
        """The one with a role whose name begins so, that is shown."""
        def look():
            return next((n for n in walk(root or self.frame, is_no_menu)
                         if n.getRoleName() == role and n.name.startswith(name) and has(n, "SHOWING")), None)
        return until(f"{role} '{name}'", look)

    def expect_view(self, name):
        return self.get("canvas", "3D view: " + name)

    def focused(self):
        """The item of an open menu, which GTK only calls selected; else the last one that has it."""
        found = None
        for window in children(self.node):
            for node in walk(window, may_hold_focus):
                if node.getRoleName().endswith("menu item") and has(node, "SELECTED"):
                    return node
                if has(node, "FOCUSED"):
                    found = node
        return found

    def expect_focus(self, what, is_right):
        """is_right: asked with the node."""
        def look():
            node = self.focused()
            return node if node is not None and is_right(node) else None
        try:
            return until("", look)
        except Missing:
            raise Missing(f"the keyboard's focus at {what}; it is at {self.told(self.focused())}") from None

    @staticmethod
    def told(node):
        return "nothing" if node is None else f"{node.getRoleName()} '{node.name}'"

    def window(self, title):
        """A window besides the main one."""
        def look():
            return next((n for n in children(self.node)
                         if n.getRoleName() != "frame" and n.name.startswith(title) and has(n, "SHOWING")), None)
        return until(f"a dialog '{title}'", look)

    def expect_closed(self, title):
        until(f"'{title}' closed",
              lambda: not any(n.name.startswith(title) and n.getRoleName() != "frame" for n in children(self.node)))

    # --- what is done -----------------------------------------------------------------------------------------

    def menu_item(self, menu, name):
        bar = next(n for n in walk(self.frame, is_no_menu) if n.getRoleName() == "menu bar")
        found = next((n for n in children(bar) if n.name == menu), None)
        return next((n for n in children(found) if n.name == name), None) if found else None

    def choose(self, menu, name):
        item = until(f"an enabled command {menu} > {name}",
                     lambda: (lambda n: n if n is not None and has(n, "SENSITIVE") else None)(self.menu_item(menu, name)))
        self.act(item)

    @staticmethod
    def act(node):
        if not node.queryAction().doAction(0):
            raise Missing(f"an action of {Program.told(node)}")

    @staticmethod
    def press(*keys):
        subprocess.run(["xdotool", "key", "--clearmodifiers", *keys], check=True)


class HeldWindow(Program):
    """One window that needs what a test has not, such as a server, as the program that shows all windows opens it."""

    def __init__(self, binary, name):
        super().__init__(binary, [])
        self.name = name

    def __enter__(self):
        self.start("en", "--hold", self.name)
        return self
