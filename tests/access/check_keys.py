#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""check_keys.py PROGRAM SAMPLES [WINDOWS]   uses the program by keys alone, and looks where a screen reader finds the keyboard's focus."""
import sys

from reader import Missing, Program, children, has, until


def role(*names):
    return lambda node: node.getRoleName() in names


def named(kind, begin):
    return lambda node: node.getRoleName() == kind and node.name.startswith(begin)


VIEW = named("canvas", "3D view")
# Where F6 goes from the view, until it is there again: model list, animation, toolbars.
PANES = [("the list", role("list item")), ("the animation's button", named("push button", "P")),
         ("the first tool", named("push button", "Open 3ds file")), ("the slideshow", named("push button", "Start Slideshow")),
         ("the material tools", named("toggle button", "Colour of a part")), ("the view", VIEW)]
# Where Tab comes by from the view, in whatever order.
STOPS = [("tool", "push button", "Open 3ds file"), ("seconds", "spin button", "Seconds"), ("colour", "combo box", "Colour"),
         ("shininess", "slider", "Shininess"), ("transparency", "slider", "Transparency"), ("pause", "push button", "P"),
         ("frame", "slider", "Frame of the animation")]


def go_round(program):
    program.press("ctrl+l")
    program.expect_focus("the list", role("list item"))
    program.press("Escape")
    program.expect_focus("the view", VIEW)
    for what, is_right in PANES:
        program.press("F6")
        program.expect_focus(what, is_right)
    for what, is_right in [*reversed(PANES[:-1]), PANES[-1]]:
        program.press("shift+F6")
        program.expect_focus(what, is_right)


def tab_through(program):
    missing = list(STOPS)
    before = program.focused()
    for _ in range(3 * len(STOPS)):
        program.press("Tab")
        before = until("the focus to move on", lambda: (lambda n: n if n is not None and n != before else None)(program.focused()))
        missing = [stop for stop in missing if not named(stop[1], stop[2])(before)]
        if VIEW(before):
            break
    if missing:
        raise Missing(f"by Tab: {[stop[0] for stop in missing]}")
    program.expect_focus("the view", VIEW)


def use_tools(program):
    while not program.focused().name.startswith("Open 3ds file"):
        before = program.focused()
        program.press("F6")
        until("the next pane", lambda: program.focused() not in (None, before))
    for key, expected in [("Right", "Save 3ds file"), ("Left", "Open 3ds file"), ("End", "About Orbivue"),
                          ("Left", "Export to Google Drive")]:
        program.press(key)
        program.expect_focus(expected, lambda node, name=expected: node.name.startswith(name))
    program.press("Home", *["Right"] * 11)
    tool = program.expect_focus("Show Bounding Box", lambda node: node.name == "Show Bounding Box")
    for wanted in (True, False):
        program.press("space" if wanted else "Return")
        until(f"the tool {'pressed' if wanted else 'up'}", lambda: has(tool, "CHECKED") == wanted)


def use_dialog(program):
    program.press("alt+e")
    program.expect_focus("a command of the menu", role("menu item"))
    program.press("Return")
    program.window("POV-Ray output settings")
    program.expect_focus("the dialog's first control", role("check box"))
    program.press("Escape")
    program.expect_closed("POV-Ray output settings")
    program.press("alt+e", "Return")
    program.window("POV-Ray output settings")
    program.expect_focus("the dialog's first control", role("check box"))
    program.press("Return")  # the default button
    program.expect_closed("POV-Ray output settings")


def use_colours(program):
    combo = program.get("combo box", "Colour")
    before = combo.name
    for _ in range(3 * len(STOPS)):
        if program.focused() == combo:
            break
        here = program.focused()
        program.press("Tab")
        until("the focus to move on", lambda: program.focused() not in (None, here))
    program.press("space")
    for key in ("Right", "shift+Down", "Page_Up"):
        shown = combo.name
        program.press(key)
        until(f"another colour by {key}", lambda: combo.name != shown)
    program.press("Escape")
    until("the colour of before", lambda: combo.name == before)


def use_list(program):
    program.press("ctrl+l")  # hides it
    program.expect_focus("the view", VIEW)
    program.press("ctrl+l")
    item = program.expect_focus("the list", role("list item"))
    program.press("Home")
    first = program.expect_focus("its first model", lambda node: node.getIndexInParent() < item.getIndexInParent() or node == item)
    program.press("Return")
    program.expect_view(first.name)
    program.press("Escape")
    program.expect_focus("the view", VIEW)
    program.press("space")  # on from there
    until("the next model", lambda: not program.focused().name.endswith(first.name))


def open_context_menu(program):
    for key in ("shift+F10", "Menu"):
        program.press(key)
        until("the context menu", lambda: any(n.getRoleName() == "window" for n in children(program.node)))
        program.press("Down")
        program.expect_focus("its first command", named("menu item", "Open"))
        program.press("Escape")
        program.expect_focus("the view", VIEW)


def main():
    binary, samples = sys.argv[1:3]
    with Program(binary, [f"{samples}/{name}.3ds" for name in ("orrery", "knot")]) as program:
        program.expect_focus("the view", VIEW)
        program.press("ctrl+p")  # an animation takes the machine
        program.get("push button", "Play")
        for step in (go_round, tab_through, use_tools, use_dialog, use_colours, use_list, open_context_menu):
            try:
                step(program)
            except Missing as missing:
                raise Missing(f"{step.__name__}: {missing}") from None


if __name__ == "__main__":
    try:
        main()
    except Missing as missing:
        sys.exit(f"missing: {missing}")
