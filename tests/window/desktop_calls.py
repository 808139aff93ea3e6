#!/usr/bin/python3
"""Calls the program as the desktop does, over a session bus of its own: each method, two starts at once, and a thousand
calls with arguments of any types, none of which may end it or make a second one.

desktop_calls.py PROGRAM ends with 77 where what that takes is not installed, and with 1 after telling what was wrong.
"""

import os
import pathlib
import random
import re
import shutil
import subprocess
import sys
import tempfile
import time

SKIPPED = 77
PATIENCE = 20  # seconds
INSIDE = "--inside"
NAME = "orvane.TesselDrive"
APPLICATION = ("/orvane/TesselDrive", "org.freedesktop.Application")
FILES = ("/org/freedesktop/FileManager1", "org.freedesktop.FileManager1")
SEARCH = ("/orvane/TesselDrive/SearchProvider", "org.gnome.Shell.SearchProvider2")
METHODS = [(SEARCH, "GetInitialResultSet"), (SEARCH, "GetSubsearchResultSet"), (SEARCH, "GetResultMetas"),
           (SEARCH, "ActivateResult"), (SEARCH, "LaunchSearch"), (APPLICATION, "Activate"), (APPLICATION, "Open"), (APPLICATION, "ActivateAction"), (FILES, "ShowFolders"),
           (FILES, "ShowItems"), (FILES, "ShowItemProperties")]

try:
    from gi.repository import Gio, GLib
except ImportError as problem:
    print(f"skipped: the bus cannot be used from Python ({problem})")
    sys.exit(SKIPPED)


def any_value(dice, depth=0):
    kinds = ["s", "i", "t", "b", "d", "as", "o"] + (["a{sv}", "av"] if depth < 2 else [])
    kind = dice.choice(kinds)
    text = "".join(dice.choice("/%a\u00e9:?.~ \U0001f600") for _ in range(dice.choice([0, 3, 40, 5000])))
    return {
        "s": lambda: GLib.Variant("s", dice.choice([text, "file://" + text, "tesseldriveapp:/" + text, "search"])),
        "i": lambda: GLib.Variant("i", dice.randint(-(2**31), 2**31 - 1)),
        "t": lambda: GLib.Variant("t", dice.randint(0, 2**64 - 1)),
        "b": lambda: GLib.Variant("b", True),
        "d": lambda: GLib.Variant("d", float("nan")),
        "as": lambda: GLib.Variant("as", [text] * dice.choice([0, 1, 50])),
        "o": lambda: GLib.Variant("o", "/"),
        "a{sv}": lambda: GLib.Variant("a{sv}", {text: any_value(dice, depth + 1), "activation-token": any_value(dice, 2)}),
        "av": lambda: GLib.Variant("av", [any_value(dice, depth + 1)]),
    }[kind]()


def walk_recents(desktop, plan):
    """The last documents are actions of the program's icon, for whoever is signed in, and the user's entry is theirs."""
    entry = pathlib.Path(os.environ["XDG_DATA_HOME"]) / "applications/orvane.TesselDrive.desktop"
    desktop.soon(lambda: entry.exists() and "\nName=Plan.txt\n" in entry.read_text(), "the document in the user's entry")
    if shutil.which("desktop-file-validate"):
        subprocess.run(["desktop-file-validate", entry], check=True)
    action = re.search("^Actions=search;(recent[0-9]+);$", entry.read_text(), re.MULTILINE).group(1)
    nothing = GLib.Variant("a{sv}", {}).unpack()
    desktop.call(APPLICATION, "ActivateAction", GLib.Variant("(sava{sv})", (action, [], nothing)))
    desktop.logged(f"Shortcut recent document: {plan}")
    console = [desktop.program, "--console", "--log", "off"]
    subprocess.run(console, input="sign-out\nsettle\n", text=True, check=True, stdout=subprocess.DEVNULL)
    desktop.soon(lambda: not entry.exists(), "the user's entry to go with the account")
    subprocess.run(console, input="sign-in Ana\n", text=True, check=True, stdout=subprocess.DEVNULL)


class Desktop:
    def __init__(self, program):
        self.program = program
        self.bus = Gio.bus_get_sync(Gio.BusType.SESSION)
        self.log = pathlib.Path(os.environ["HOME"]) / "log"
        self.running = []

    def start(self, *arguments):
        child = subprocess.Popen([self.program, "--log", str(self.log), "--log-private", *arguments])
        self.running.append(child)
        return child

    def call(self, target, method, arguments):
        path, interface = target
        return self.bus.call_sync(NAME, path, interface, method, arguments, None, Gio.DBusCallFlags.NO_AUTO_START,
                                  PATIENCE * 1000)

    def soon(self, condition, what):
        deadline = time.monotonic() + PATIENCE
        while not condition():
            if time.monotonic() > deadline:
                sys.exit(f"in vain waited for {what}; the log:\n{self.log.read_text()[-3000:]}")
            time.sleep(0.02)

    def has_owner(self):
        reply = self.bus.call_sync("org.freedesktop.DBus", "/", "org.freedesktop.DBus", "NameHasOwner",
                                   GLib.Variant("(s)", (NAME,)), None, Gio.DBusCallFlags.NONE, -1)
        return reply.unpack()[0]

    def logged(self, text):
        self.soon(lambda: text in self.log.read_text(), text)

    def alive(self):
        return [child for child in self.running if child.poll() is None]


def walk(program):
    desktop = Desktop(program)
    try:
        use(desktop)
    finally:
        for child in desktop.alive():
            child.kill()


def use(desktop):
    for _ in range(2):
        desktop.start()
    desktop.soon(desktop.has_owner, "the program's name on the bus")
    desktop.soon(lambda: len(desktop.alive()) == 1, "one of two starts to end")
    drive = pathlib.Path(os.environ["XDG_DATA_HOME"]) / "tesseldrive/Mobile Documents/orvane~Quillbox"
    plan = (drive / "Documents/Plan.txt").as_uri()
    nothing = GLib.Variant("a{sv}", {}).unpack()

    desktop.call(APPLICATION, "Activate", GLib.Variant("(a{sv})", (nothing,)))
    desktop.call(APPLICATION, "Open", GLib.Variant("(asa{sv})", ([plan], nothing)))
    desktop.logged("Plan.txt, options")
    walk_recents(desktop, plan)
    desktop.call(APPLICATION, "ActivateAction", GLib.Variant("(sava{sv})", ("search", [], nothing)))
    desktop.logged("Pressa: Search")
    desktop.call(FILES, "ShowItemProperties", GLib.Variant("(ass)", ([plan], "")))
    desktop.logged("Plan.txt?mode=details, options")
    desktop.call(FILES, "ShowItems", GLib.Variant("(ass)", ([plan], "")))
    desktop.logged("orvane~Quillbox/Documents, options")
    plans = []

    def searched():
        """The index fills while it is asked: what is sought may come later than the first that matches."""
        found = desktop.call(SEARCH, "GetInitialResultSet", GLib.Variant("(as)", (["pla"],))).unpack()[0]
        metas = desktop.call(SEARCH, "GetResultMetas", GLib.Variant("(as)", (found,))).unpack()[0]
        if len(metas) != len(found):
            sys.exit(f"{len(found)} were found, and described are {metas}")
        plans.extend(meta["id"] for meta in metas if meta["name"] == "Plan.txt")
        return plans

    desktop.soon(searched, "the search to find Plan.txt")
    desktop.call(SEARCH, "ActivateResult", GLib.Variant("(sasu)", (plans[0], ["pla"], 0)))
    desktop.logged("Seekindex documentID")
    desktop.call(SEARCH, "LaunchSearch", GLib.Variant("(asu)", (["report"], 0)))
    desktop.logged('Seekindex Search Continuation: "report"')
    later = desktop.start(str(drive / "Welcome.txt"))
    if later.wait(PATIENCE) != 0:
        sys.exit("a second start did not hand over")
    desktop.logged("Welcome.txt, options")

    dice = random.Random(11)
    refused = 0
    for _ in range(1000):
        target, method = dice.choice(METHODS)
        arguments = GLib.Variant.new_tuple(*[any_value(dice) for _ in range(dice.randint(0, 4))])
        try:
            desktop.call(target, method, arguments)
        except GLib.Error:
            refused += 1
    desktop.call(APPLICATION, "Activate", GLib.Variant("(a{sv})", (nothing,)))
    if len(desktop.alive()) != 1 or refused < 500:
        sys.exit(f"{len(desktop.alive())} programs run, and {refused} of 1000 calls were refused")
    subprocess.run([desktop.program, "--console"], input=b"sign-out\n", check=True, stdout=subprocess.DEVNULL)
    for method in ("GetInitialResultSet", "GetSubsearchResultSet", "GetResultMetas"):
        before = [plans] if method == "GetSubsearchResultSet" else []
        asked = plans if method == "GetResultMetas" else ["pla"]
        kinds = "(asas)" if before else "(as)"
        if told := desktop.call(SEARCH, method, GLib.Variant(kinds, (*before, asked))).unpack()[0]:
            sys.exit(f"{method} tells {told} though nobody is signed in")
    for child in desktop.alive():
        child.terminate()
        if child.wait(PATIENCE) != 0:
            sys.exit("the program did not end well")


def main():
    if sys.argv[1] == INSIDE:
        walk(sys.argv[2])
        return 0
    if not shutil.which("dbus-run-session"):
        print("skipped: there is no dbus-run-session")
        return SKIPPED
    with tempfile.TemporaryDirectory() as folder:
        installed = pathlib.Path(folder) / "installed" / "applications"
        installed.mkdir(parents=True)
        packaging = pathlib.Path(__file__).resolve().parents[2] / "packaging"
        shutil.copy(packaging / "orvane.TesselDrive.desktop", installed)
        environment = dict(os.environ, HOME=folder, XDG_DATA_HOME=folder + "/data", XDG_RUNTIME_DIR=folder,
                           XDG_CACHE_HOME=folder + "/cache", XDG_CONFIG_HOME=folder + "/config",
                           XDG_DATA_DIRS=f"{installed.parent}:/usr/local/share:/usr/share",
                           QT_QPA_PLATFORM="offscreen")
        return subprocess.run(["dbus-run-session", "--", sys.executable, __file__, INSIDE, sys.argv[1]],
                              env=environment, check=False).returncode


sys.exit(main())
