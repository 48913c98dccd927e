#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Takes the right to write away from the terminal, here and there, and looks whether it says so and loses nothing.

The whole work folder, an empty one, the database, the engine's lock files, the downloads, the log and the exchange files are
made read-only in turn (mounts of the campaign's own; skipped with exit code 77 where mounting is not allowed), the database
once more by its mode under another user (root only), and the downloads go to a disk that is full before they are. The terminal
must end by itself with the exit code and the Chinese words expected; what it could not write must be as before. Then the right
is given back, and all must hold that holds after a kill (see kill_terminal.py).

    read_only.py --bin DIR [--market-data DIR] [--checks 10]
"""
import argparse
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile

from aftermath import Aftermath, exchange_bytes, log_of
from faults import Report, enter_mount_name_space, run
from market import Market, environment, run_terminal

NOBODY = 65534


def content_of(folder):
    return {path.relative_to(folder): path.read_bytes() for path in folder.rglob("*") if path.is_file()}


class Campaign:
    def __init__(self, market, folder, report):
        self.market, self.folder, self.report = market, folder, report
        self.aftermath = Aftermath(market, folder, report)
        self.work, self.out = folder / "work", folder / "out"
        self.mounted = []

    def prepare(self, begun):
        shutil.rmtree(self.work, ignore_errors=True)
        shutil.rmtree(self.out, ignore_errors=True)
        self.aftermath.prepare(self.work, begun)
        self.work.mkdir(mode=0o700, exist_ok=True)

    def make_read_only(self, path):
        run("mount", "--bind", path, path)
        run("mount", "-o", "remount,ro,bind", path)
        self.mounted.append(path)

    def mount_small(self, path, size, full=False):
        path.mkdir(exist_ok=True)
        run("mount", "-t", "tmpfs", "-o", f"mode=0700,size={size}", "tmpfs", path)
        self.mounted.append(path)
        if full:
            (path / "ballast").write_bytes(b"x")

    def give_back(self):
        while self.mounted:
            run("umount", self.mounted.pop())

    def check(self, title, take_away, wanted_code, words, begun=True, untouched=True, imported=False):
        """`untouched`: the work folder as a whole must be as before."""
        self.prepare(begun)
        before, exchange_before = content_of(self.work), exchange_bytes(self.work)
        take_away()
        try:
            done = run_terminal(self.market.command(self.work, *self.aftermath.arguments(begun), "--export", self.out))
            text = (done.stderr if done else "") + log_of(self.work)
        finally:
            self.give_back()
        if done is None or done.returncode != wanted_code or words not in text:
            self.report.problem(f"{title}: {done and done.returncode} instead of {wanted_code}, or no “{words}” in: {text}")
        if untouched and content_of(self.work) != before:
            self.report.problem(f"{title}: the work folder has changed")
        _, is_imported = self.aftermath.verify_state(title, self.work, begun)
        if is_imported != imported:
            self.report.problem(f"{title}: imported: {is_imported}")
        self.aftermath.verify_exchange_files(title, self.work, begun, exchange_before)
        self.aftermath.finish(title, self.work, begun, is_imported)
        self.report.count(f"{title}: ends with {wanted_code}")

    def check_mode(self):
        """The database's mode, as a user who has no right beyond it."""
        title = "database of mode 0400, other user"
        if os.geteuid() != 0 or os.environ.get("HOLDWISE_OWN_MOUNTS") != "root" or shutil.which("setpriv") is None:
            self.report.count(f"{title}: skipped, needs root and setpriv")
            return
        self.prepare(True)
        self.folder.chmod(0o755)
        database = self.work / "holdwise.fdb"
        database.chmod(0o400)
        before = content_of(self.work)
        for path in [self.work, *self.work.rglob("*")]:
            os.chown(path, NOBODY, NOBODY)
        out = self.folder / "nobody-out"
        command = ["setpriv", f"--reuid={NOBODY}", f"--regid={NOBODY}", "--clear-groups",
                   *self.market.command(self.work, "--import", self.market.import_later, "--export", out)]
        done = subprocess.run(command, capture_output=True, text=True, timeout=100, env=environment())
        if done.returncode != 1 or "不能写入" not in done.stderr:
            self.report.problem(f"{title}: {done.returncode}: {done.stderr}")
        changed = {name for name, content in before.items() if (self.work / name).read_bytes() != content}
        if {str(name) for name in changed} - {"log/terminal.log"}:
            self.report.problem(f"{title}: changed {changed}")
        for path in [self.work, *self.work.rglob("*")]:
            os.chown(path, 0, 0)
        database.chmod(0o600)
        self.aftermath.verify_state(title, self.work, True)
        self.aftermath.finish(title, self.work, True, False)
        self.report.count(f"{title}: ends with 1")

    def all(self, count):
        work, downloads = self.work, self.work / "QMTL"
        stored = {"untouched": False, "imported": True}
        checks = [
            ("work folder read-only", lambda: self.make_read_only(work), 1, "只读", {}),
            ("database read-only", lambda: self.make_read_only(work / "holdwise.fdb"), 1, "不能写入", {"untouched": False}),
            # Room for one block of the first file.
            ("downloads full in the middle of a file", lambda: self.mount_small(downloads, "4k"), 0, "不能写入", stored),
            ("downloads full", lambda: self.mount_small(downloads, "4k", full=True), 0, "不能写入", stored),
            ("downloads read-only", lambda: (downloads.mkdir(exist_ok=True), self.make_read_only(downloads)), 0, "不能写入",
             stored),
            ("empty work folder read-only", lambda: self.make_read_only(work), 1, "只读", {"begun": False}),
            ("lock folder read-only", lambda: self.make_read_only(work / "lock"), 1, "不能写入", {"untouched": False}),
            ("log read-only", lambda: self.make_read_only(work / "log"), 0, "已导入 2 个组合", stored),
            ("exchange file not replaceable", lambda: self.make_read_only(work / "TZZHDetail.dat"), 0, "文件无法写入", stored),
        ]
        for title, take_away, code, words, more in checks[:count]:
            self.check(title, take_away, code, words, **more)
        if count > len(checks):
            self.check_mode()


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--bin", type=pathlib.Path, required=True, help="folder of the programs")
    parser.add_argument("--market-data", type=pathlib.Path, help="folder with real daily bars; without it they are made up")
    parser.add_argument("--checks", type=int, default=10, help="so many of the places")
    arguments = parser.parse_args()
    enter_mount_name_space()
    report = Report()
    with tempfile.TemporaryDirectory(prefix="holdwise-read-only-") as folder:
        folder = pathlib.Path(folder)
        campaign = Campaign(Market(arguments.bin.resolve(), arguments.market_data, folder), folder, report)
        campaign.all(arguments.checks)
    report.end("read-only places")


if __name__ == "__main__":
    sys.exit(main())
