#!/usr/bin/python3
"""Has the share sheet send a document to the user's other devices, over a session bus of its own, whose service for that
comes, goes, refuses, answers nonsense, and does not answer.

paired_devices.py PROGRAM PLUGINS ends with 77 where what that takes is not installed, and with 1 after telling what was
wrong. PLUGINS holds the driver of the window.
"""

import os
import pathlib
import shutil
import subprocess
import sys
import tempfile
import threading
import time
import urllib.parse

SKIPPED = 77
PATIENCE = 20  # seconds
PROMPT = 1  # seconds: an answer of a window that nothing holds up
INSIDE = "--inside"
SERVICE = "org.kde.kdeconnect"
DAEMON = "/modules/kdeconnect"
DOCUMENT = "Plän & 50% #1.txt"

try:
    from gi.repository import Gio, GLib
except ImportError as problem:
    print(f"skipped: the bus cannot be used from Python ({problem})")
    sys.exit(SKIPPED)


def interface(name, methods):
    return Gio.DBusNodeInfo.new_for_xml(f"<node><interface name='{name}'>{methods}</interface></node>").interfaces[0]


def method(name, takes, gives=""):
    arguments = "".join(f"<arg type='{kind}' direction='in'/>" for kind in takes)
    answer = f"<arg type='{gives}' direction='out'/>" if gives else ""
    return f"<method name='{name}'>{arguments}{answer}</method>"


class Devices:
    """The service, answering in a thread of its own."""

    def __init__(self):
        loop = GLib.MainLoop()
        threading.Thread(target=loop.run, daemon=True).start()
        self.sent = []
        self.refuses = False

    def come(self, names, listed="as", silent=False):
        """@param names of the devices, by identifier; what is no text is told as it is"""
        self.bus = Gio.DBusConnection.new_for_address_sync(
            os.environ["DBUS_SESSION_BUS_ADDRESS"],
            Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION, None, None)
        found = list(names) if listed == "as" else 7

        def listing(call):
            if not silent and call.get_parameters().unpack() == (True, True):
                call.return_value(GLib.Variant.new_tuple(GLib.Variant(listed, found)))

        self.offer(DAEMON, SERVICE + ".daemon", method("devices", "bb", listed), listing)
        for identifier, name in names.items():
            if not identifier.isidentifier():
                continue
            path = f"{DAEMON}/devices/{identifier}"
            told = GLib.Variant("v", GLib.Variant("s", name) if isinstance(name, str) else name)
            self.offer(path, "org.freedesktop.DBus.Properties", method("Get", "ss", "v"),
                       lambda call, told=told: call.return_value(GLib.Variant.new_tuple(told)))
            self.offer(path + "/share", SERVICE + ".device.share", method("shareUrl", "s"),
                       lambda call, identifier=identifier: self.share(call, identifier))
        self.bus.call_sync("org.freedesktop.DBus", "/", "org.freedesktop.DBus", "RequestName",
                           GLib.Variant("(su)", (SERVICE, 0)), None, Gio.DBusCallFlags.NONE, -1, None)

    def offer(self, path, name, methods, answer):
        self.bus.register_object(path, interface(name, methods), lambda *call: answer(call[-1]), None, None)

    def share(self, call, identifier):
        if self.refuses:
            call.return_dbus_error(SERVICE + ".Error", "gone")
            return
        self.sent.append((identifier, call.get_parameters().unpack()[0]))
        call.return_value(None)

    def go(self):
        self.bus.close_sync(None)


class Window:
    def __init__(self, program, plugins):
        environment = dict(os.environ, QT_PLUGIN_PATH=plugins, QT_QPA_GENERIC_PLUGINS="tesseldriver")
        self.child = subprocess.Popen([program, "--log", "off", "--drive", os.environ["HOME"] + "/drive"],
                                      env=environment, stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
        self.use("rest")

    def say(self, words):
        self.child.stdin.write(words + "\n")
        self.child.stdin.flush()
        lines = []
        for line in self.child.stdout:
            lines.append(line.rstrip("\n"))
            if lines[-1] == "ok" or lines[-1].startswith("error: "):
                return lines
        sys.exit(f"the program ended with {self.child.wait()}")

    def soon(self, condition, what):
        deadline = time.monotonic() + PATIENCE
        while not condition():
            if time.monotonic() > deadline:
                sys.exit(f"in vain waited for {what}; there is\n" + "\n".join(self.say("tree")))
            time.sleep(0.02)

    def use(self, words):
        self.soon(lambda: self.say(words)[-1] == "ok", words)
        self.say("rest")

    def lines(self):
        """Of the sheet, for devices: what they are called, and whether they can be chosen."""
        return {line.split(" | ")[1]: not line.endswith("disabled") for line in self.say("tree")
                if line.startswith("Button | Send to")}

    def sheet(self):
        for words in ("swipe -150 " + DOCUMENT, "tap More", "tap Share"):
            self.use(words)
        self.soon(lambda: any("| Cancel |" in line for line in self.say("tree")), "the sheet")
        return self.lines()

    def has(self, wanted, what):
        """Whether a sheet comes to have these lines; each one that is opened looks once more."""

        def becomes():
            if self.sheet() == wanted:
                return True
            self.use("tap Cancel")
            return False

        self.soon(becomes, what)


def walk(program, plugins):
    window = Window(program, plugins)
    try:
        use(window, Devices())
    finally:
        window.child.kill()


def use(window, devices):
    window.has({}, "a sheet without the service")
    window.use("tap Cancel")

    phone, tablet = "Send to “Ana’s 📱”", "Send to “טאבלט\ufffd”"
    devices.come({"a_1": "Ana’s 📱", "b_2": "טאבלט\u202e", "c_3": "", "d_4": GLib.Variant("u", 3), "../e": "E"})
    window.has({phone: True, tablet: True}, "two devices")
    window.use("tap " + phone)
    window.soon(lambda: devices.sent, "the document to be sent")
    (identifier, url), = devices.sent
    path = os.environ["HOME"] + "/drive/" + DOCUMENT
    if identifier != "a_1" or not url.startswith("file:///") or urllib.parse.unquote(url[7:]) != path:
        sys.exit(f"sent was {url} to {identifier}")

    devices.refuses = True
    window.has({phone: True, tablet: True}, "two devices")
    window.use("tap " + tablet)
    window.soon(lambda: any("couldn’t be sent" in line for line in window.say("tree")), "the refusal to be told")
    window.use("tap OK")

    window.has({phone: True, tablet: True}, "two devices")
    devices.go()
    window.soon(lambda: window.lines() == {phone: False, tablet: False}, "the lines of an open sheet to be disabled")
    window.use("tap Cancel")
    window.has({}, "a sheet without the service")
    window.use("tap Cancel")

    devices.come({"a_1": "A"}, listed="u")
    window.has({}, "a sheet after nonsense")
    window.use("tap Cancel")
    devices.go()

    devices.come({"a_1": "A"}, silent=True)
    began = time.monotonic()
    for _ in range(10):
        window.say("tree")
    if time.monotonic() - began > PROMPT:
        sys.exit("a service that does not answer holds up the window")
    window.has({}, "a sheet while nothing answers")
    devices.go()
    if (pathlib.Path(os.environ["HOME"]) / "started").exists():
        sys.exit("the service was started")
    window.child.stdin.close()
    if window.child.wait(PATIENCE) != 0:
        sys.exit("the program did not end well")


def furnish(home):
    """A drive, a desktop on which no application opens anything, and a service that the bus could start."""
    (home / "drive").mkdir()
    (home / "drive" / DOCUMENT).write_text("plan")
    (home / "desktop").mkdir()
    (home / "desktop" / "mime").symlink_to("/usr/share/mime")
    services = home / "data" / "dbus-1" / "services"
    services.mkdir(parents=True)
    (services / (SERVICE + ".service")).write_text(
        f"[D-BUS Service]\nName={SERVICE}\nExec=/usr/bin/touch {home}/started\n")


def main():
    if sys.argv[1] == INSIDE:
        walk(*sys.argv[2:])
        return 0
    if not shutil.which("dbus-run-session"):
        print("skipped: there is no dbus-run-session")
        return SKIPPED
    with tempfile.TemporaryDirectory() as folder:
        furnish(pathlib.Path(folder))
        environment = dict(os.environ, HOME=folder, XDG_DATA_HOME=folder + "/data", XDG_RUNTIME_DIR=folder,
                           XDG_CACHE_HOME=folder + "/cache", XDG_CONFIG_HOME=folder + "/config", LC_ALL="C.UTF-8",
                           XDG_DATA_DIRS=folder + "/desktop", QT_QPA_PLATFORM="offscreen")
        return subprocess.run(["dbus-run-session", "--", sys.executable, __file__, INSIDE, *sys.argv[1:]],
                              env=environment, check=False).returncode


sys.exit(main())
