#!/usr/bin/python3
"""Looks at the window as assistive technology does, over AT-SPI: every control has a role, a name and an action.

accessibility_walk.py PROGRAM starts PROGRAM on a display and a session of its own. Ends with 77 where what that takes is
not installed, and with 1 after telling all that was found wrong.
"""

import contextlib
import os
import shutil
import subprocess
import sys
import tempfile
import warnings

SKIPPED = 77
PATIENCE = 30  # seconds, for anything that must come
INSIDE = "--inside"

try:
    import gi

    gi.require_version("Atspi", "2.0")
    from gi.repository import Atspi, GLib
except (ImportError, ValueError) as problem:
    print(f"skipped: AT-SPI cannot be used from Python ({problem})")
    sys.exit(SKIPPED)

PRESSED = {Atspi.Role.PUSH_BUTTON, Atspi.Role.LIST_ITEM, Atspi.Role.CHECK_BOX, Atspi.Role.MENU_ITEM,
           Atspi.Role.TOGGLE_BUTTON, Atspi.Role.RADIO_BUTTON, Atspi.Role.LINK}
FILLED = {Atspi.Role.TEXT, Atspi.Role.ENTRY, Atspi.Role.PASSWORD_TEXT}


warnings.simplefilter("ignore", DeprecationWarning)  # the calls' new names are not in every version


class Wrong(Exception):
    """What the walk cannot go on after."""


def soon(condition, what):
    """What the condition answers, as soon as that is something."""
    context = GLib.MainContext.default()
    deadline = GLib.get_monotonic_time() + PATIENCE * 1_000_000
    while GLib.get_monotonic_time() < deadline:
        with contextlib.suppress(GLib.Error):  # what was there a moment ago is gone
            if found := condition():
                return found
        tick = GLib.timeout_source_new(20)
        tick.set_callback(lambda _: GLib.SOURCE_REMOVE)
        tick.attach(context)
        context.iteration(True)
    raise Wrong(f"in vain waited for {what}")


def children(parent):
    parent.clear_cache()
    found = (parent.get_child_at_index(index) for index in range(parent.get_child_count()))
    return [child for child in found if child]


def showing(parent):
    """All below it that can be seen, in order."""
    for child in children(parent):
        if child.get_state_set().contains(Atspi.StateType.SHOWING):
            yield child
            yield from showing(child)


def actions(item):
    face = item.get_action_iface()
    return [face.get_action_name(index) for index in range(face.get_n_actions())] if face else []


def press(item):
    names = actions(item)
    if "Press" not in names:
        raise Wrong(f"\"{item.get_name()}\" has no Press action, only {names}")
    item.get_action_iface().do_action(names.index("Press"))


def is_usable(item):
    states = item.get_state_set()
    return states.contains(Atspi.StateType.ENABLED) and states.contains(Atspi.StateType.SENSITIVE)


def application(process):
    """The program's own face, once it has a window."""
    for candidate in children(Atspi.get_desktop(0)):
        if candidate.get_process_id() == process.pid and any(True for _ in showing(candidate)):
            return candidate
    return None


def named(window, name, roles):
    """A row's name begins with that of its item."""
    for item in showing(window):
        if item.get_role() in roles and (item.get_name() == name or item.get_name().startswith(name + ", ")):
            return item
    return None


class Walk:
    def __init__(self):
        self.faults = []
        self.controls = 0

    def look(self, window, where, expected):
        """Looks at every control on a screen, once those that it must have are there.

        expected: of each name, whether it can be used
        """
        for name in expected:
            soon(lambda name=name: named(window, name, PRESSED | FILLED), f"\"{name}\" in {where}")
        for item in showing(window):
            self.look_at(item, where)
        for name, usable in expected.items():
            if is_usable(named(window, name, PRESSED | FILLED)) != usable:
                self.faults.append(f"{where}: \"{name}\" is {'not ' if usable else ''}told as one that can be used")

    def look_at(self, item, where):
        role, name = item.get_role(), item.get_name()
        what = f"{where}: {item.get_role_name()} \"{name}\""
        has_action = item.get_action_iface() is not None
        if role in (Atspi.Role.INVALID, Atspi.Role.UNKNOWN) or has_action and role == Atspi.Role.FILLER:
            self.faults.append(f"{what} has no role")
        if role not in PRESSED | FILLED:
            return
        self.controls += 1
        if not name.strip():
            self.faults.append(f"{what} has no name")
        if role in PRESSED and "Press" not in actions(item):
            self.faults.append(f"{what} has no Press action")


@contextlib.contextmanager
def display():
    """A free display of its own."""
    reader, writer = os.pipe()
    server = subprocess.Popen(["Xvfb", "-displayfd", str(writer), "-screen", "0", "1280x800x24", "-nolisten", "tcp"],
                              pass_fds=[writer], stderr=subprocess.DEVNULL)
    os.close(writer)
    try:
        with os.fdopen(reader) as numbers:
            number = numbers.readline().strip()
        if not number:
            raise Wrong("Xvfb does not start")
        yield ":" + number
    finally:
        end(server)


@contextlib.contextmanager
def opened(program, screen, folder, *arguments):
    """The program's accessible face, with its example drive."""
    environment = dict(os.environ, DISPLAY=screen, QT_QPA_PLATFORM="xcb", QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1",
                       XDG_CACHE_HOME=os.path.join(folder, "cache"), XDG_RUNTIME_DIR=folder, LC_ALL="C.UTF-8")
    process = subprocess.Popen([program, "--log", "off", "--home", os.path.join(folder, "home"), *arguments],
                               env=environment, stdin=subprocess.DEVNULL)
    try:
        yield soon(lambda: application(process), "the window")
    finally:
        end(process)


def end(process):
    process.terminate()
    try:
        process.wait(PATIENCE)
    except subprocess.TimeoutExpired:
        process.kill()
        process.wait()


def title_is(window, title):
    return any(item.get_name() == title and item.get_role() == Atspi.Role.PANEL for item in showing(window))


def open_page(window, row, title):
    press(soon(lambda: named(window, row, PRESSED), f"\"{row}\""))
    soon(lambda: title_is(window, title), f"the page \"{title}\"")


def walk_drive(walk, window):
    walk.look(window, "the drive", {"Search": True, "Documents": True, "Welcome.txt": True})
    open_page(window, "Documents", "Documents")
    walk.look(window, "Documents", {"Back to Tessel Drive": True, "Notes.md": True})
    press(named(window, "Back to Tessel Drive", PRESSED))
    soon(lambda: title_is(window, "Tessel Drive"), "the way back")


def walk_gallery(walk, window):
    walk.look(window, "the gallery", {"Labels": True, "Controls": True})
    open_page(window, "Bars", "Bars")
    walk.look(window, "bars", {"Disabled": False, "Done": True})
    press(named(window, "Back to Gallery", PRESSED))
    open_page(window, "Presentations", "Presentations")
    walk.look(window, "presentations", {"Popover": True})
    press(named(window, "Alert with a text field", PRESSED))
    walk.look(window, "an alert", {"Name": True, "Cancel": True, "OK": False})
    press(named(window, "Cancel", PRESSED))
    soon(lambda: not named(window, "Cancel", PRESSED), "the alert to go")


def inside(program):
    walk = Walk()
    try:
        Atspi.init()
        with tempfile.TemporaryDirectory() as folder, display() as screen:
            with opened(program, screen, folder) as window:
                walk_drive(walk, window)
            with opened(program, screen, folder, "--gallery") as window:
                walk_gallery(walk, window)
    except Wrong as problem:
        walk.faults.append(str(problem))
    for fault in walk.faults:
        print(fault)
    print(f"{walk.controls} controls looked at, {len(walk.faults)} faults")
    return 1 if walk.faults else 0


def outside(program):
    missing = [tool for tool in ("Xvfb", "dbus-run-session") if not shutil.which(tool)]
    if missing:
        print(f"skipped: {' and '.join(missing)} not installed")
        return SKIPPED
    return subprocess.call(["dbus-run-session", "--", sys.executable, __file__, INSIDE, program])


if __name__ == "__main__":
    sys.exit(inside(sys.argv[2]) if sys.argv[1] == INSIDE else outside(sys.argv[1]))
