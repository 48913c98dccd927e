#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""A user without sense in front of the real window: clicks, drags, wheels, keys, menus, dialogs, resizes and theme switches
by a seed, on a screen that nobody sees. The terminal must not crash, must go on answering within two seconds, must not grow,
and must leave a database in which every holding has its portfolio. A user who leaves by the menu comes back. A seed that
fails replays: the same events come in the same order.

    random_user.py --bin DIR [--seeds 20] [--first 1] [--events 5000]
"""
import argparse
import pathlib
import random
import subprocess
import sys
import tempfile
import time

from faults import SKIPPED, SLOWNESS, Database, Report, run
from market import environment, make_market, timed

WIDTH, HEIGHT = 1280, 800
BATCH = 25  # events between two looks
LONGEST_SECONDS = 2 * SLOWNESS
MOST_GROWTH_KB = 80 * 1024
KEYS = ["Tab", "shift+Tab", "Return", "Escape", "space", "Delete", "BackSpace", "Up", "Down", "Left", "Right", "Home", "End",
        "Prior", "Next", "F1", "F5", "F10", "alt+f", "alt+v", "alt+h", "ctrl+o", "ctrl+s", "ctrl+a", "ctrl+c", "ctrl+v",
        "ctrl+z", "ctrl+q", "6", "0", "1", "9", "period", "minus", "a", "z", "apostrophe", "quotedbl", "percent", "Menu"]


def place(choice):
    return f"{choice.randrange(WIDTH)} {choice.randrange(HEIGHT)}"


def event(choice):
    """One thing a user does, as a line for xdotool."""
    kind = choice.choices(["click", "keys", "wheel", "drag", "double", "menu"], [40, 30, 8, 10, 6, 6])[0]
    if kind == "click":
        return f"mousemove {place(choice)} click {choice.choices([1, 3], [9, 1])[0]}"
    if kind == "keys":
        return f"key {' '.join(choice.choice(KEYS) for _ in range(choice.randint(1, 3)))}"
    if kind == "wheel":
        return f"mousemove {place(choice)} click {choice.choice([4, 5])}"
    if kind == "drag":
        return f"mousemove {place(choice)} mousedown 1 mousemove {place(choice)} mousemove {place(choice)} mouseup 1"
    if kind == "double":
        return f"mousemove {place(choice)} click --repeat 2 --delay 40 1"
    return f"mousemove {choice.randrange(200)} 10 click 1 mousemove_relative 0 {choice.randrange(20, 160)} click 1"


class Screen:
    def __init__(self):
        # Without the last word it begins anew when its last window goes, and turns away who comes just then.
        self.server = subprocess.Popen(["Xvfb", "-displayfd", "1", "-screen", "0", f"{WIDTH}x{HEIGHT}x24", "-nolisten", "tcp",
                                        "-noreset"], stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
        self.display = ":" + self.server.stdout.readline().strip()

    def close(self):
        self.server.terminate()
        self.server.wait()


class Session:
    """One work folder, one seed."""

    def __init__(self, binaries, data, csv, folder, seed, report):
        self.binaries, self.folder, self.seed, self.report = binaries, folder, seed, report
        self.choice = random.Random(seed)
        self.screen = Screen()
        self.environment = {**environment(), "DISPLAY": self.screen.display, "QT_QPA_PLATFORM": "xcb", "HOME": str(folder)}
        self.arguments = [str(binaries / "holdwise-terminal"), "--data", str(data), "--work", str(folder / "work")]
        self.errors = (folder / "err").open("a+")
        self.process, self.sizes, self.slow = None, [], 0
        run(*self.arguments, "--import", csv, "--export", folder / "out", env=self.offscreen())
        self.start()

    def offscreen(self):
        return {**self.environment, "QT_QPA_PLATFORM": "offscreen"}

    def start(self):
        self.process = subprocess.Popen(self.arguments, env=self.environment, cwd=self.folder, stdout=subprocess.DEVNULL,
                                        stderr=self.errors)
        self.sizes = []
        time.sleep(3)

    def xdotool(self, *words, script=None):
        return subprocess.run(["xdotool", *words], input=script, env=self.environment, capture_output=True, text=True,
                              timeout=60).stdout

    def act(self):
        windows = self.xdotool("search", "--onlyvisible", "--pid", str(self.process.pid)).split()
        if windows:
            self.xdotool("windowfocus", windows[-1])
        lines = [event(self.choice) for _ in range(BATCH)]
        self.xdotool("-", script="\n".join(lines) + "\n")
        if self.choice.random() < 0.1 and windows:
            self.xdotool("windowsize", windows[0], str(self.choice.randint(300, WIDTH)), str(self.choice.randint(200, HEIGHT)))
        theme = self.choice.choice(["dark", "light"]) if self.choice.random() < 0.1 else None
        return ["--theme", theme] if theme else ["--check"]

    def look(self, command):
        """Does it live, answer and keep its size?"""
        if self.process.poll() is not None:
            if self.process.returncode != 0:
                self.report.problem(f"seed {self.seed}: ended with {self.process.returncode}: {self.told()}")
                return False
            self.report.count("left by the menu and came back")
            self.start()
            return True
        done, seconds = timed(self.arguments + command, 20, self.offscreen())
        if done is None and self.process.poll() is not None:
            return self.look(command)  # it had just been left: the command was a terminal of its own
        if done is None:
            self.report.problem(f"seed {self.seed}: does not answer any more")
            return False
        self.slow = self.slow + 1 if seconds > LONGEST_SECONDS else 0
        if self.slow > 1:  # once may be the machine
            self.report.problem(f"seed {self.seed}: answered after {seconds:.1f} s, twice")
        if self.process.poll() is None:
            self.sizes.append(self.resident())
        return True

    def resident(self):
        for line in pathlib.Path(f"/proc/{self.process.pid}/status").read_text().splitlines():
            if line.startswith("VmRSS"):
                return int(line.split()[1])
        return 0

    def told(self):
        self.errors.seek(0)
        return self.errors.read()[-500:]

    def end(self):
        if self.process.poll() is None:
            self.process.terminate()
            if self.process.wait(timeout=30) != 0:
                self.report.problem(f"seed {self.seed}: the end gave {self.process.returncode}: {self.told()}")
        self.screen.close()
        half = self.sizes[len(self.sizes) // 2:]
        if half and half[-1] - half[0] > MOST_GROWTH_KB:
            self.report.problem(f"seed {self.seed}: grew from {half[0]} to {half[-1]} KB in its second half")
        database = Database(self.binaries, self.folder / "work/holdwise.fdb")
        if database.problem:
            self.report.problem(f"seed {self.seed}: the database does not open: {database.problem}")
        for orphan in set(database.holdings) - set(database.portfolios):
            self.report.problem(f"seed {self.seed}: holdings of portfolio {orphan}, which is not there")
        self.errors.close()


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--bin", type=pathlib.Path, required=True)
    parser.add_argument("--seeds", type=int, default=20)
    parser.add_argument("--first", type=int, default=1)
    parser.add_argument("--events", type=int, default=5000)
    asked = parser.parse_args()
    for tool in ["Xvfb", "xdotool"]:
        if subprocess.run(["which", tool], capture_output=True).returncode != 0:
            print(f"skipped: {tool} is not installed")
            sys.exit(SKIPPED)
    report = Report()
    with tempfile.TemporaryDirectory(prefix="holdwise-user-") as root:
        data, csv = make_market(asked.bin.resolve(), pathlib.Path(root), ["--simulated"])
        for seed in range(asked.first, asked.first + asked.seeds):
            folder = pathlib.Path(root, str(seed))
            folder.mkdir()
            session = Session(asked.bin.resolve(), data, csv, folder, seed, report)
            for _ in range(asked.events // BATCH):
                if not session.look(session.act()):
                    break
                report.count("looks")
            session.end()
            report.count("seeds")
            print(f"seed {seed}: resident {session.sizes[:1]} .. {session.sizes[-1:]} KB", flush=True)
    report.end("random user")


if __name__ == "__main__":
    main()
