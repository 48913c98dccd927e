#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Kills the terminal (SIGKILL) at random moments of a restore, and looks whether anything is lost or mixed.

A restore writes what is there as a generation, takes old generations away, and changes the tables: the kill falls anywhere in
it. Afterwards the database must hold all of the portfolios before or all of those restored, and the latter when the terminal
had said so; every generation must be whole; what was there before must be in one of them when it is not in the database any
more; nothing may take more than ten seconds. Files are made and read here, not by the programs under test.

    kill_backup.py --bin DIR [--kills 500] [--seed 1] [--folder DIR]
"""
import argparse
import hashlib
import pathlib
import random
import subprocess
import tempfile
import time

from faults import SLOWNESS, Report
from market import environment, timed

TITLES = ("组合名称,股票代码,数量(股),买入价(元),买入日期,组合编号,上证指数,指数为收盘,保存标志,组合风格,目标收益率,行情止于,持股编号,比例")
MOST_SECONDS = 10 * SLOWNESS
HOLDINGS = 5


def checksum(text):
    return hashlib.md5(text.encode()).hexdigest()[:16]


def portfolio_file(choice, count):
    """A file of so many portfolios, as a backup has it."""
    rows = [TITLES]
    for portfolio in range(1, count + 1):
        for holding in range(HOLDINGS):
            rows.append(f"组合{portfolio},6000{holding:02d},{choice.randrange(1, 9999)},{choice.randrange(1, 999)},2026-03-02,"
                        f"{portfolio},3123.45,,1,,0,,{(portfolio - 1) * HOLDINGS + holding + 1},0.2")
    text = "\n".join(rows) + "\n"
    return "\ufeff" + text + f"合计,{count},{count * HOLDINGS},x{checksum(text)}" + "," * 10 + "\n"


def is_whole(text):
    body, mark, last = text.removeprefix("\ufeff").rpartition("合计,")
    return mark != "" and last.endswith("," * 10 + "\n") and last.split(",")[2] == "x" + checksum(body)


class Campaign:
    def __init__(self, binaries, folder, choice, report):
        self.binaries, self.folder, self.choice, self.report = binaries, folder, choice, report
        self.work = folder / "work"
        self.files = [portfolio_file(choice, count) for count in (20, 21, 25)]
        for place, text in enumerate(self.files):
            self.file(place).write_text(text, encoding="utf-8")

    def file(self, place):
        return self.folder / f"{place}.csv"

    def command(self, *more):
        return [str(part) for part in (self.binaries / "holdwise-terminal", "--work", self.work, "--data",
                                       self.folder / "nowhere", *more)]

    def run(self, *more):
        done, seconds = timed(self.command(*more), 60 * SLOWNESS)
        if seconds > MOST_SECONDS:
            self.report.problem(f"{more} took {seconds:.1f} s")
        if done is None or done.returncode != 0:
            self.report.problem(f"{more} ended with {done and (done.returncode, done.stderr)}")

    def stored(self):
        out = self.folder / "out.csv"
        out.unlink(missing_ok=True)
        self.run("--backup", out)
        return out.read_text(encoding="utf-8") if out.exists() else ""

    def generations(self):
        texts = []
        for path in sorted((self.work / "backups").glob("portfolios-*.csv")):
            texts.append(path.read_text(encoding="utf-8"))
            if not is_whole(texts[-1]):
                self.report.problem(f"{path.name} is not whole")
        return texts

    def round(self, seconds, before, after):
        process = subprocess.Popen(self.command("--restore", self.file(after)), env=environment(), stdout=subprocess.PIPE,
                                   stderr=subprocess.DEVNULL, text=True)
        time.sleep(self.choice.uniform(0, 1.8 * seconds))
        process.kill()
        said = "已从" in process.communicate()[0]
        now = self.stored()
        if now not in (self.files[before], self.files[after]):
            self.report.problem("the database holds neither what was there nor what was restored")
        if said and now != self.files[after]:
            self.report.problem("what was said to be restored is not there")
        if now == self.files[after] and self.files[before] not in self.generations():
            self.report.problem("what was there before is in no generation")
        self.report.count("restored" if now == self.files[after] else "as before")
        self.report.count("said to be done" if said else "killed before the end")
        return after if now == self.files[after] else before

    def go(self, kills):
        self.run("--restore", self.file(0))  # makes the database
        begun = time.monotonic()
        self.run("--restore", self.file(1))
        seconds = time.monotonic() - begun
        there = 1
        for _ in range(kills):
            there = self.round(seconds, there, (there + self.choice.randrange(1, 3)) % 3)
        self.run("--restore", self.file((there + 1) % 3))
        if list((self.work / "backups").glob(".holdwise-*")):
            self.report.problem("pieces of files are left over")


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--bin", type=pathlib.Path, required=True)
    parser.add_argument("--kills", type=int, default=500)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--folder", type=pathlib.Path)
    options = parser.parse_args()
    report = Report()
    with tempfile.TemporaryDirectory(prefix="holdwise-kill-backup-", dir=options.folder) as folder:
        Campaign(options.bin.resolve(), pathlib.Path(folder), random.Random(options.seed), report).go(options.kills)
    report.end(f"kill_backup, seed {options.seed}, {options.kills} kills")


if __name__ == "__main__":
    main()
