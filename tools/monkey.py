#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Uses a program at random until it breaks: keys, clicks, drags, commands, the clipboard, other windows.

Started by tools/monkey.sh, which builds the program and gives it a display. The seed decides every action, in their
order; a run names its seed and the last actions before the fault, so that the same seed does the same again (how
quickly the program answers is not in its hands). Ends with 1 when the program ended by itself other than by being
asked to, when a sanitizer reported, or when it stopped answering.
"""
import argparse
import collections
import glob
import os
import random
import resource
import shutil
import signal
import subprocess
import sys
import tempfile
import time

SOURCE = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
FENCE = "/etc/pintalux-bare-root"  # tools/bare-root.sh makes it; outside there is something to lose
PATIENCE = 120  # seconds within which an instrumented program on a busy machine answers
WIDTH, HEIGHT = 1920, 1080  # of tools/virtual-display.sh
NAME = "io.github.pintalux.Pintalux"
OBJECT = "/io/github/pintalux/Pintalux"

COMMANDS = ["area", "window", "fullScreen", "text", "color", "showAbout", "showPreferences", "openImage", "revealFolder"]
KEYS = (
    ["ctrl+shift+1", "ctrl+shift+2", "ctrl+shift+3", "ctrl+shift+4", "ctrl+shift+5"] * 2
    + ["Escape", "Return", "Tab", "shift+Tab", "Delete", "BackSpace", "space", "F6", "F10", "Menu"]
    + ["Left", "Right", "Up", "Down", "shift+Left", "shift+Down", "ctrl+Right", "Home", "End", "Page_Down"]
    + list("vatresplhbcnmx1234567890") + ["plus", "minus", "ctrl+plus", "ctrl+minus", "ctrl+0", "ctrl+1"]
    + ["ctrl+z", "ctrl+z", "ctrl+shift+z", "ctrl+c", "ctrl+v", "ctrl+x", "ctrl+a", "ctrl+d", "ctrl+s", "ctrl+shift+s"]
    + ["ctrl+w", "ctrl+o", "ctrl+shift+i", "ctrl+comma", "ctrl+m", "ctrl+h", "bracketleft", "bracketright"]
    + ["alt+F4", "ctrl+q"]
)
TEXTS = ["hola", "Ñandú 12", "/", "..", "a\nb", "   ", "%1 %n", "-5", "99999999", "/dev/null", "x" * 80]


def quietly(*command, stdin=None):
    """Runs a tool of the desktop; whether it finds what it is for is no matter."""
    try:
        subprocess.run(command, input=stdin, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, timeout=20)
    except subprocess.TimeoutExpired:
        pass


def asked(*command):
    try:
        return subprocess.run(command, capture_output=True, text=True, timeout=20).stdout
    except subprocess.TimeoutExpired:
        return ""


class Program:
    """The program under test, started anew whenever it has been asked to end."""

    def __init__(self, path, folder):
        self.path, self.folder = path, folder
        self.reports = os.path.join(folder, "sanitizer")
        self.errors = open(os.path.join(folder, "errors.txt"), "ab")
        self.starts = 0
        self.largest = 0
        self.start()

    def start(self):
        environment = dict(os.environ, QT_QPA_PLATFORM="xcb")
        shared = f":log_path={self.reports}"
        environment["ASAN_OPTIONS"] = "detect_leaks=0:abort_on_error=1" + shared
        environment["UBSAN_OPTIONS"] = "print_stacktrace=1:halt_on_error=1" + shared
        environment["TSAN_OPTIONS"] = f"suppressions={SOURCE}/tools/tsan.supp:history_size=5:exitcode=0" + shared
        self.process = subprocess.Popen([self.path], env=environment, stdin=subprocess.DEVNULL, stderr=self.errors,
                                        stdout=subprocess.DEVNULL)
        self.starts += 1
        limit = time.monotonic() + PATIENCE
        while time.monotonic() < limit and self.process.poll() is None and not self.answers(2):
            time.sleep(0.2)

    def call(self, method, *arguments):
        quietly("gdbus", "call", "--session", "--timeout", "5", "--dest", NAME, "--object-path", OBJECT, "--method",
                "org.freedesktop.Application." + method, *arguments)

    def answers(self, seconds):
        found = subprocess.run(["gdbus", "call", "--session", "--timeout", str(seconds), "--dest", NAME, "--object-path",
                                OBJECT, "--method", "org.freedesktop.DBus.Peer.Ping"], capture_output=True)
        return found.returncode == 0

    def fault(self, told_to_end=False):
        """What is wrong with it; None when nothing is."""
        reports = glob.glob(self.reports + ".*")
        if reports:
            with open(reports[0], encoding="utf-8", errors="replace") as report:
                return report.read()
        status = self.process.poll()
        if status is not None and status != (128 + signal.SIGTERM if told_to_end else 0):
            how = signal.Signals(-status).name if status < 0 else f"estado {status}"
            return f"terminó por sí solo: {how}"
        if status is None and not self.answers(PATIENCE):
            if self.process.poll() is None:
                stacks = asked("gdb", "-p", str(self.process.pid), "-batch", "-ex", "thread apply all bt 30") \
                    if shutil.which("gdb") else ""
                return f"no responde en {PATIENCE} s\n{stacks}"
        return None

    def megabytes(self):
        try:
            with open(f"/proc/{self.process.pid}/statm", encoding="ascii") as sizes:
                now = int(sizes.read().split()[1]) * resource.getpagesize() >> 20
        except (OSError, IndexError):
            return 0
        self.largest = max(self.largest, now)
        return now


class Monkey:
    def __init__(self, seed, program, folder):
        self.chance, self.program, self.folder = random.Random(seed), program, folder
        self.compositor = None
        self.done = collections.deque(maxlen=40)
        self.pictures = self.make_pictures()
        self.actions = [(self.key, 30), (self.click, 24), (self.drag, 22), (self.move, 8), (self.type, 6), (self.wheel, 5),
                        (self.command, 8), (self.window, 6), (self.clipboard, 4), (self.open, 2), (self.composite, 1),
                        (self.rest, 4), (self.burst, 3)]

    def make_pictures(self):
        files = []
        for name, size, form in (("foto.png", "640x480", "plasma:"), ("alta.png", "90x4000", "plasma:"),
                                 ("clara.jpg", "1200x800", "gradient:"), ("nada.png", "1x1", "xc:red")):
            path = os.path.join(self.folder, name)
            quietly("convert", "-size", size, form, path)
            files.append(path)
        path = os.path.join(self.folder, "rota.png")
        with open(path, "wb") as broken:
            broken.write(b"\x89PNG\r\n\x1a\n" + bytes(range(200)))
        return files + [path, os.path.join(self.folder, "no-existe.png")]

    def place(self):
        return str(self.chance.randrange(WIDTH)), str(self.chance.randrange(HEIGHT))

    def step(self):
        action = self.chance.choices([a for a, _ in self.actions], [w for _, w in self.actions])[0]
        self.done.append(action(self.chance))
        time.sleep(self.chance.choice([0, 0, 0, 0.02, 0.1, 0.4]))

    def key(self, chance):
        key = chance.choice(KEYS)
        if key == "ctrl+q" and chance.random() < 0.9:
            key = "Escape"
        quietly("xdotool", "key", key)
        return "key " + key

    def burst(self, chance):
        keys = [chance.choice(KEYS[:-2]) for _ in range(12)]
        quietly("xdotool", "key", "--delay", "1", *keys)
        return "keys " + " ".join(keys)

    def click(self, chance):
        x, y = self.place()
        button = chance.choice("1111113")
        times = chance.choice("1112")
        quietly("xdotool", "mousemove", x, y, "click", "--repeat", times, "--delay", "60", button)
        return f"click {button} × {times} at {x} {y}"

    def drag(self, chance):
        (x, y), (tox, toy) = self.place(), self.place()
        held = chance.choice(["", "", "", "shift", "ctrl", "alt", "space"])
        between = [part for _ in range(chance.randrange(4)) for part in ("mousemove", *self.place())]
        middle = chance.choice([[], [], [], ["key", "Escape"], ["key", "ctrl+z"], ["click", "4"]])
        command = ["mousemove", x, y, "mousedown", "1", *between, *middle, "mousemove", tox, toy, "mouseup", "1"]
        if held:
            command = ["keydown", held, *command, "keyup", held]
        quietly("xdotool", *command)
        return "drag " + " ".join(command)

    def move(self, _):
        x, y = self.place()
        quietly("xdotool", "mousemove", x, y)
        return f"move {x} {y}"

    def type(self, chance):
        text = chance.choice(TEXTS)
        quietly("xdotool", "type", "--delay", "5", text)
        return "type " + repr(text)

    def wheel(self, chance):
        button, times = chance.choice("4567"), str(chance.randrange(1, 15))
        held = chance.choice(["", "ctrl"])
        keys = (["keydown", held], ["keyup", held]) if held else ([], [])
        quietly("xdotool", *keys[0], "click", "--repeat", times, "--delay", "5", button, *keys[1])
        return f"wheel {held} {button} × {times}"

    def command(self, chance):
        name = chance.choice(COMMANDS)
        self.program.call("ActivateAction", name, "[]", "{}")
        return "command " + name

    def open(self, chance):
        path = chance.choice(self.pictures)
        self.program.call("Open", f"['file://{path}']", "{}")
        return "open " + path

    def window(self, chance):
        windows = asked("xdotool", "search", "--onlyvisible", "--pid", str(self.program.process.pid)).split()
        which = chance.random()  # drawn whether or not there is a window, so that the sequence stays the same
        what = chance.choice([["windowactivate"], ["windowactivate"], ["windowsize", "{x}", "{y}"], ["windowmove", "{x}", "{y}"],
                              ["windowminimize"], ["windowclose"]])
        x, y = self.place()
        if not windows:
            return "window: none"
        window = windows[int(which * len(windows))]
        if what == ["windowclose"]:
            quietly("wmctrl", "-i", "-c", window)  # asked to, as by its button; xdotool would destroy it
        else:
            quietly("xdotool", what[0], window, *[part.format(x=x, y=y) for part in what[1:]])
        return f"{what[0]} {window} {x} {y}"

    def clipboard(self, chance):
        kind, path = chance.choice(["text", "image/png", "image/svg+xml", "text/uri-list"]), chance.choice(self.pictures)
        if kind == "text":
            quietly("xclip", "-selection", "clipboard", stdin=chance.choice(TEXTS).encode())
        elif kind == "image/png" and os.path.exists(path):
            quietly("xclip", "-selection", "clipboard", "-t", kind, "-i", path)
        elif kind == "text/uri-list":
            quietly("xclip", "-selection", "clipboard", "-t", kind, stdin=f"file://{path}\r\n".encode())
        else:
            quietly("xclip", "-selection", "clipboard", "-t", kind, stdin=bytes(chance.randrange(256) for _ in range(300)))
        return f"clipboard {kind} {path}"

    def composite(self, _):
        if self.compositor:
            self.compositor.terminate()
            self.compositor.wait()
            self.compositor = None
            return "compositor goes"
        self.compositor = subprocess.Popen(["picom", "--config", "/dev/null", "--backend", "xrender"],
                                           stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        return "compositor comes"

    def rest(self, chance):
        seconds = chance.choice([0.5, 1, 2, 5])
        time.sleep(seconds)
        return f"rest {seconds}"


def run(arguments, folder):
    program = Program(arguments.program, folder)
    monkey = Monkey(arguments.seed, program, folder)
    end = time.monotonic() + arguments.seconds
    steps = told = 0
    fault = program.fault()
    while not fault and time.monotonic() < end and (not arguments.steps or steps < arguments.steps):
        monkey.step()
        steps += 1
        if program.process.poll() is not None or steps % 20 == 0:
            fault = program.fault()
            if not fault and program.process.poll() is not None:
                program.start()
                monkey.done.append("started again")
        if steps // 500 > told:
            told = steps // 500
            print(f"monkey: {steps} acciones, {program.starts} arranques, {program.megabytes()} MB", flush=True)
    if not fault and program.process.poll() is None:
        program.process.terminate()
        try:
            program.process.wait(120)
        except subprocess.TimeoutExpired:
            fault = "no termina cuando se le pide"
            program.process.kill()
        fault = fault or program.fault(told_to_end=True)
    if monkey.compositor:
        monkey.compositor.terminate()
    print(f"monkey: semilla {arguments.seed}: {steps} acciones, {program.starts} arranques, como mucho {program.largest} MB")
    if not fault:
        return 0
    print("monkey: antes del fallo:", *monkey.done, sep="\n  ")
    print(fault)
    with open(os.path.join(folder, "errors.txt"), encoding="utf-8", errors="replace") as errors:
        print(errors.read()[-4000:])
    return 1


def main():
    options = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    options.add_argument("program")
    options.add_argument("--seed", type=int, default=int(time.time()) % 100000)
    options.add_argument("--seconds", type=float, default=600)
    options.add_argument("--steps", type=int, default=0, help="at most so many actions; 0: as many as there is time for")
    arguments = options.parse_args()
    if os.geteuid() == 0 or not os.path.exists(FENCE):
        print("monkey: solo como usuario normal dentro de una raíz propia; véase tools/monkey.sh", file=sys.stderr)
        sys.exit(2)
    arguments.program = os.path.abspath(arguments.program)
    print(f"monkey: semilla {arguments.seed}, {arguments.seconds:.0f} s", flush=True)
    with tempfile.TemporaryDirectory() as folder:
        os.environ["HOME"] = folder
        sys.exit(run(arguments, folder))


if __name__ == "__main__":
    main()
