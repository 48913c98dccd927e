#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Fills the disk under the terminal and looks whether anything is lost, mixed, left undone or not told.

The work folder stands on a small disk in memory (a mount of its own, which needs root or user name spaces; without either
the campaign is skipped, exit code 77). Each round has its own amount of space: an empty work folder on a disk of that size,
from one too small for a database on; a work folder with portfolios and so much left beside it; or a disk that is filled up
to so much while the terminal is opening, importing, calculating or ending. The terminal must end by itself and not by a
signal, and say in Chinese, on standard error or in its log, that the space is the trouble, unless everything was done or the
campaign itself has ended a window before it was through. Then the space is given back, and all must hold that holds after a kill (see kill_terminal.py).

    full_disk.py --bin DIR [--market-data DIR] [--sizes 50] [--seed 1]
"""
import argparse
import os
import pathlib
import random
import shutil
import signal
import subprocess
import sys
import tempfile
import time

from aftermath import Aftermath, exchange_bytes, log_of
from faults import Report, enter_mount_name_space, run
from market import Market, environment

KB = 1024
LARGE_KB = 64 * KB
NO_SPACE = ("磁盘空间不足", "磁盘空间已用完")
SECONDS_TO_END = 150
SECONDS_OF_WINDOW = 6


def free_kb(disk):
    status = os.statvfs(disk)
    return status.f_bavail * status.f_frsize // KB


def fill(disk, left_kb):
    """Leaves so much free, or less when less was."""
    with open(disk / "ballast", "ab", buffering=0) as ballast:
        while (more := free_kb(disk) - left_kb) > 0:
            try:
                ballast.write(bytes(min(more, KB) * KB))
            except OSError:
                break


class Campaign:
    def __init__(self, market, folder, choice, report):
        self.market, self.folder, self.choice, self.report = market, folder, choice, report
        self.aftermath = Aftermath(market, folder, report)
        self.disk, self.out = folder / "disk", folder / "out"
        self.work = self.disk / "work"
        self.disk.mkdir()

    def round(self, number, kind, size_kb):
        where = f"round {number} ({kind}, {size_kb} KB)"
        begun = kind != "small disk"
        shutil.rmtree(self.out, ignore_errors=True)
        run("mount", "-t", "tmpfs", "-o", f"mode=0700,size={size_kb if kind == 'small disk' else LARGE_KB}k", "tmpfs", self.disk)
        try:
            self.aftermath.prepare(self.work, begun)
            before = exchange_bytes(self.work)
            if kind == "little left":
                fill(self.disk, size_kb)
            is_window = self.choice.random() < 0.4
            code, text = self.run_terminal(begun, is_window, size_kb if kind == "filled meanwhile" else None)
            text += log_of(self.work)
            self.give_back()
            self.verify(where, begun, is_window, before, code, text)
        finally:
            run("umount", self.disk)

    def run_terminal(self, begun, is_window, fill_to_kb):
        command = self.market.command(self.work, *self.aftermath.arguments(begun))
        if not is_window:
            command += ["--export", str(self.out)]
        moment = self.choice.uniform(0, 2.5)
        with open(self.folder / "messages", "w+", encoding="utf-8") as messages:
            process = subprocess.Popen(command, env=environment(), stdout=messages, stderr=messages)
            if fill_to_kb is not None:
                time.sleep(moment)
                fill(self.disk, fill_to_kb)
            if is_window:
                time.sleep(SECONDS_OF_WINDOW)
                process.send_signal(signal.SIGTERM)
            try:
                process.wait(SECONDS_TO_END)
            except subprocess.TimeoutExpired:
                process.kill()
                process.wait()
                process.returncode = None
            messages.seek(0)
            return process.returncode, messages.read()

    def give_back(self):
        (self.disk / "ballast").unlink(missing_ok=True)
        run("mount", "-o", f"remount,size={LARGE_KB}k", self.disk)

    def verify(self, where, begun, is_window, before, code, text):
        if code not in (0, 1):
            self.report.problem(f"{where}: " + ("did not end" if code is None else f"ended with {code}") + f": {text}")
        state, imported = self.aftermath.verify_state(where, self.work, begun)
        if code == 0 and not imported and not is_window:
            self.report.problem(f"{where}: ended with 0, but the import is not stored: {text}")
        done = imported and not state.unfinished() and not self.aftermath.references[begun].differences_of_state(state)
        told = any(words in text for words in NO_SPACE)
        cut_short = is_window and not done and not told
        if not done and not told and not is_window:
            self.report.problem(f"{where}: ended with {code}, the work is not done, and nobody was told: {text}")
        self.report.count("window ended by the campaign before it was through" if cut_short else
                          "space was enough" if done and not told else
                          "told, all stored nevertheless" if done else
                          "told, import stored, figures not made" if imported else
                          "told, import not stored" if state.database is not None else "told, no database made")
        self.aftermath.verify_exchange_files(where, self.work, begun, before)
        self.aftermath.finish(where, self.work, begun, imported)


def rounds(count):
    """(kind, KB): a fifth on a small disk, a fifth with little left, the others filled meanwhile; every size once."""
    fifth = max(1, count // 5)
    small = [("small disk", 40 + 12 * KB * i // fifth) for i in range(fifth)]
    little = [("little left", 10 * KB * i // fifth) for i in range(fifth)]
    filled = count - 2 * fifth
    return small + little + [("filled meanwhile", 700 * (2 * i + 1) // filled) for i in range(filled)]


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--bin", type=pathlib.Path, required=True, help="folder of the programs")
    parser.add_argument("--market-data", type=pathlib.Path, help="folder with real daily bars; without it they are made up")
    parser.add_argument("--sizes", type=int, default=50, help="number of rounds")
    parser.add_argument("--seed", type=int, default=1)
    arguments = parser.parse_args()
    enter_mount_name_space()
    report = Report()
    with tempfile.TemporaryDirectory(prefix="holdwise-full-") as folder:
        folder = pathlib.Path(folder)
        market = Market(arguments.bin.resolve(), arguments.market_data, folder)
        campaign = Campaign(market, folder, random.Random(arguments.seed), report)
        for number, (kind, size_kb) in enumerate(rounds(arguments.sizes), 1):
            campaign.round(number, kind, size_kb)
            if number % 10 == 0:
                print(f"{number} rounds, {len(report.problems)} problems", flush=True)
    report.end(f"{arguments.sizes} rounds")


if __name__ == "__main__":
    sys.exit(main())
