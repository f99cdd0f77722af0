#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""check_reader.py PROGRAM SAMPLES WINDOWS   goes through the program as a screen reader does: every control of the main window and of each
dialog must have a name and a role that fits; then it uses some of them by their actions alone."""
import sys

from reader import HeldWindow, Missing, Program, children, has, is_no_menu, labelled, until, walk

# Menu, command, title of its window, and the button that closes it. Without a title: the window that comes.
WINDOWS = [
    ("Export", "POV-Ray output settings", "POV-Ray output settings", "Cancel"),
    ("Export", "HTML5 output settings", "HTML5 output settings", "Cancel"),
    ("View", "Notes about this model...", "Notes about this model", "Close"),
    ("File", "Open", "Open", "Cancel"),
    ("File", "Save As", "Save As", "Cancel"),
    ("File", "Delete file", "Question", "No"),
    ("Tools", "Replace parts...", "Replace by a part of this file", "Cancel"),
    ("Tools", "ScreenShot", "", "Cancel"),
    ("Export", "Export to HTML5", "", "Cancel"),
    ("Export", "Export to glTF (.glb)", "", "Cancel"),
    ("Tools", "Settings", "Orbivue Settings", "Cancel"),
    ("Tools", "Select Language", "Language selection", "Cancel"),
    ("Help", "Keyboard shortcuts", "Keyboard shortcuts", "Close"),
    ("Help", "Check for updates...", "", "OK"),
    ("Help", "About ...", "About Orbivue", "OK"),
]

# Windows that the program opens by itself, or after an answer from a server: name, title, and the button that closes it.
HELD = [
    ("update-news", "New version", "Remind me later"),
    ("update-progress", "Check for updates", "Cancel"),
]

# What a reader needs no name of: frames of other things, pictures of theirs, texts, which are their own names.
WITHOUT_NAME = {"filler", "panel", "separator", "scroll pane", "scroll bar", "label", "menu bar", "icon", "viewport", "split pane",
                "redundant object", "image", "page tab list", "static"}
# What is no control, so that the keyboard must never be there.
NO_CONTROL = {"panel", "filler", "unknown", "invalid", "redundant object", "scroll pane"}


def complaints(window):
    """What is wrong with a window's controls."""
    found = []
    # GTK's own file dialog is as GTK makes it.
    enter = (lambda n: n.getRoleName() != "file chooser")
    for node in walk(window, enter):
        role = node.getRoleName()
        if role in ("unknown", "invalid"):
            found.append(f"role '{role}' of '{node.name}'")
        is_seen = has(node, "SHOWING") or role.endswith("menu item")
        if is_seen and role not in WITHOUT_NAME and not node.name and not labelled(node):
            found.append(f"{role} without a name in '{window.name}'")
        if is_seen and role in NO_CONTROL and has(node, "FOCUSABLE") and role != "scroll pane":
            found.append(f"{role} '{node.name}' takes the keyboard")
    return found


def check_window(program, title, closer):
    window = program.window(title)
    name = window.name
    wrong = complaints(window)
    if window.getRoleName() not in ("dialog", "alert", "file chooser"):
        wrong.append(f"'{name}' is a {window.getRoleName()}")
    if not name:
        wrong.append(f"the window that '{closer}' closes has no name")
    program.act(program.get("push button", closer, window))
    program.expect_closed(name)
    return wrong


def check_windows(program):
    wrong = complaints(program.frame)
    for menu, command, title, closer in WINDOWS:
        program.choose(menu, command)
        wrong += check_window(program, title, closer)
        if program.find() is None:
            wrong.append(f"the program vanished with '{title}'")
    return wrong


def check_full_screen(program):
    program.choose("View", "Full-screen slideshow")
    bar = next(n for n in walk(program.frame, is_no_menu) if n.getRoleName() == "menu bar")
    until("the full screen", lambda: not has(bar, "SHOWING"))
    program.expect_focus("the view", lambda node: node.getRoleName() == "canvas")
    wrong = complaints(program.frame)
    program.press("Escape")
    until("the menus again", lambda: has(bar, "SHOWING"))
    return wrong


def use_by_actions(program):
    # A dialog: a change, OK, and it is kept.
    for expected in (True, False):
        program.choose("Export", "POV-Ray output settings")
        box = program.get("check box", "Enable radiosity", program.window("POV-Ray"))
        was = has(box, "CHECKED")
        program.act(box)
        until("the box ticked the other way", lambda: has(box, "CHECKED") != was)
        program.act(program.get("push button", "OK", program.window("POV-Ray")))
        program.expect_closed("POV-Ray")
        if expected == was:
            raise Missing("the setting that was made")
    # What a wrong number leads to: the reader has its answer at once, and sees the window.
    program.choose("Export", "POV-Ray output settings")
    dialog = program.window("POV-Ray")
    program.get("text", "", dialog).queryEditableText().setTextContents("7")
    program.act(program.get("push button", "OK", dialog))
    alert = until("a sentence about the number", lambda: next(n for n in children(program.node) if n.getRoleName() == "alert"))
    program.act(program.get("push button", "OK", alert))
    program.act(program.get("push button", "Cancel", dialog))
    program.expect_closed("POV-Ray")
    # A command that opens nothing: the keyboard stays.
    program.expect_focus("the view", lambda node: node.getRoleName() == "canvas")
    program.choose("View", "Show Bounding Box")
    program.expect_focus("the view", lambda node: node.getRoleName() == "canvas")
    # A tool, in the bar and in the menu.
    tool = program.get("toggle button", "Show Axis")
    program.act(tool)
    until("the tool pressed", lambda: has(tool, "CHECKED"))
    until("its command ticked", lambda: has(program.menu_item("View", "Show Axis"), "CHECKED"))
    # A colour, of those that the field opens.
    red = "#FF1919"
    combo = program.get("combo box", "Colour")
    program.act(next(item for item in children(combo) if item.name == red))
    until("the colour chosen", lambda: combo.name.endswith(red))
    # The model list: another model.
    program.choose("View", "Show model list")
    program.act(program.get("list item", "knot.3ds", program.get("list", "Models of this folder")))
    program.expect_view("knot.3ds")
    # The library: a group opens.
    program.choose("Tools", "Download files")
    root = program.get("tree item", "3ds files", program.get("tree", "3ds files"))
    group = until("the library's groups", lambda: next(iter(children(root)), None))
    program.act(group)
    until("the group open", lambda: has(group, "EXPANDED") and children(group))


def main():
    binary, samples, windows = sys.argv[1:]
    # A model without its pictures has notes.
    with Program(binary, [f"{samples}/{name}.3ds" for name in ("materials", "knot")]) as program:
        wrong = check_windows(program)
        wrong += check_full_screen(program)
        use_by_actions(program)
        wrong += complaints(program.frame)
    for name, title, closer in HELD:
        with HeldWindow(windows, name) as held:
            wrong += check_window(held, title, closer)
    for text in dict.fromkeys(wrong):
        print(text)
    return 1 if wrong else 0


if __name__ == "__main__":
    try:
        sys.exit(main())
    except Missing as missing:
        sys.exit(f"missing: {missing}")
