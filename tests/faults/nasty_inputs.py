#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Files from outside that are not what they should be: data folders with a damaged file, and tables to import that no
program has written. The terminal must not crash, must answer in time, must leave a refused import without a trace, must
store no name that was not in the table, and must show damaged data either as the undamaged ones or with a word about it.

    nasty_inputs.py --bin DIR [--packets 200] [--tables 200] [--seed 1]
"""
import argparse
import os
import pathlib
import random
import re
import shutil
import signal
import subprocess
import tempfile
import time
import unicodedata

from faults import SLOWNESS, Database, Report, run
from market import CHINESE, environment, make_market, run_terminal, timed

LONGEST_SECONDS = 10 * SLOWNESS
ENCODINGS = ["utf-8", "utf-8-sig", "gb18030", "big5", "utf-16", "utf-16-le", "utf-32", "shift_jis", "euc_kr"]
NAMES = ["稳健", "進取組合", "價值投資", "医药", "Café", "テスト", "=1+1", "@SUM", "a'b", "‮反", "零​宽", "长" * 41, "", "正常"]
GOOD_NAMES = ["稳健组合", "价值投资", "红利低波", "成长先锋"]


def damaged(choice, content):
    """Bits, a stretch of other bytes, a cut, or nothing at all."""
    content = bytearray(content)
    kind = choice.choice(["bit", "bits", "stretch", "cut", "empty", "doubled"])
    if kind in ("bit", "bits"):
        for _ in range(1 if kind == "bit" else 20):
            content[choice.randrange(len(content))] ^= 1 << choice.randrange(8)
    elif kind == "stretch":
        begin = choice.randrange(len(content))
        content[begin:begin + 64] = choice.randbytes(64)
    elif kind == "cut":
        del content[choice.randrange(len(content)):]
    elif kind == "empty":
        content.clear()
    else:
        content = content + content
    return kind, bytes(content)


def tables_of(folder):
    return {path.name: path.read_bytes() for path in sorted(folder.glob("*.csv"))}


class Packets:
    """One file of the data folder is damaged, and everything is exported."""

    def __init__(self, binaries, data, work, folder, report):
        self.binaries, self.data, self.work, self.folder, self.report = binaries, data, work, folder, report
        self.files = sorted(path.relative_to(data) for path in data.rglob("*") if path.is_file())
        done, self.reference = self.export(data, "reference")
        if done is None or done.returncode != 0:
            report.problem(f"the undamaged export ended with {done and (done.returncode, done.stderr[-300:])}")

    def export(self, data, name):
        work, out = self.folder / name / "work", self.folder / name / "out"
        shutil.copytree(self.work, work)
        done = run_terminal([self.binaries / "holdwise-terminal", "--data", data, "--work", work, "--export", out])
        return done, tables_of(out) if out.exists() else {}

    def round(self, number, choice):
        data = self.folder / f"data-{number}"
        shutil.copytree(self.data, data)
        file = choice.choice(self.files)
        kind, content = damaged(choice, (data / file).read_bytes())
        (data / file).write_bytes(content)
        done, tables = self.export(data, f"packet-{number}")
        what = f"packet {number}: {file} ({kind})"
        if done is None:
            self.report.problem(f"{what}: no end")
        elif done.returncode not in (0, 1):
            self.report.problem(f"{what}: ended with {done.returncode}: {done.stderr[-300:]}")
        elif done.returncode == 0 and tables != self.reference:
            other = [name for name in self.reference if tables.get(name) != self.reference[name]]
            self.report.problem(f"{what}: other figures without a word: {other}")
        elif done.returncode == 1 and not CHINESE.search(done.stderr):
            self.report.problem(f"{what}: refused without a word")
        self.report.count("packets: refused or said" if done and done.returncode == 1 else "packets: nothing that shows")
        shutil.rmtree(data)
        shutil.rmtree(self.folder / f"packet-{number}")


class Tables:
    """A terminal that runs is handed one table after the other."""

    def __init__(self, binaries, data, folder, codes, report):
        self.binaries, self.folder, self.codes, self.report = binaries, folder, codes, report
        self.work = folder / "tables"
        self.arguments = [str(binaries / "holdwise-terminal"), "--data", str(data), "--work", str(self.work)]
        self.errors = (folder / "err").open("w+")
        self.process = subprocess.Popen(self.arguments, env=environment(), stdout=subprocess.DEVNULL, stderr=self.errors)
        self.names, self.imported = set(), 0
        time.sleep(3)

    def table(self, choice, number):
        """Bytes, and the names that a reader may find in them; none: any that can be."""
        offered = GOOD_NAMES if choice.random() < 0.5 else NAMES
        names = [f"{name}{number}" for name in choice.sample(offered, 3)]
        rows = [f"{name},{code},100,10" for name in names for code in choice.sample(self.codes, 3)]
        head = choice.choice(["name,code,quantity,price", "组合名称,股票代码,数量,买入价"])
        text = head + "\n" + "\n".join(rows) + "\n"
        kind = choice.choice(["encoding"] * 4 + ["damage", "quote", "null", "wide", "long", "lines", "random"])
        if kind == "encoding":
            return text.encode(choice.choice(ENCODINGS), "replace"), set(names)
        if kind == "damage":
            return damaged(choice, text.encode(choice.choice(["utf-8", "gb18030"])))[1], None
        if kind == "random":
            return choice.randbytes(choice.randrange(5000)), None
        made = {"quote": text.replace(",", ',"', 5), "null": text.replace(",", ",\0"), "wide": text + "," * 200_000,
                "long": text + "x" * 2_000_000, "lines": text.replace("\n", choice.choice(["\r", "\u2028", "\n\n\n", "\r\n"]))}
        return made[kind].encode(), set(names)

    def path(self, choice, number):
        """Now and then something that is no file at all."""
        path = self.folder / f"table-{number}.csv"
        kind = choice.random()
        if kind < 0.05:
            return pathlib.Path(choice.choice(["/dev/zero", "/dev/stdin", "/", "/proc/self/mem"])), set()
        if kind < 0.08:
            os.mkfifo(path)
            return path, set()
        content, names = self.table(choice, number)
        path.write_bytes(content)
        return path, names

    def round(self, number, choice):
        path, names = self.path(choice, number)
        done, seconds = timed(self.arguments + ["--import", str(path)], 60)
        if done is None:
            self.report.problem(f"table {number}: no answer")
            return
        if seconds > LONGEST_SECONDS:
            self.report.problem(f"table {number}: {seconds:.1f} s")
        if self.process.poll() is not None:
            self.errors.seek(0)
            self.report.problem(f"table {number}: the terminal ended: {self.errors.read()[-300:]}")
        imported = re.search(r"已导入 (\d+) 个组合", done.stdout)
        if (done.returncode == 0) != (imported is not None):
            self.report.problem(f"table {number}: exit {done.returncode}, {done.stdout[:200]} {done.stderr[:200]}")
        if imported:
            self.imported += int(imported[1])
            self.names = None if names is None or self.names is None else self.names | names
        self.report.count("tables: imported" if imported else "tables: refused")

    def end(self):
        self.process.send_signal(signal.SIGTERM)
        if self.process.wait(timeout=30) != 0:
            self.report.problem(f"tables: the end gave {self.process.returncode}")
        database = Database(self.binaries, self.work / "holdwise.fdb")
        if database.problem or len(database.portfolios) != self.imported:
            self.report.problem(f"tables: {len(database.portfolios)} portfolios, {self.imported} imported. {database.problem}")
        if set(database.holdings) != set(database.portfolios):
            self.report.problem("tables: holdings and portfolios do not belong together")
        for cells in database.portfolios.values():
            name = cells[1]
            unseen = [c for c in name if unicodedata.category(c) in ("Cc", "Cf", "Zl", "Zp")]
            if unseen or "'" in name or (self.names is not None and name not in self.names):
                self.report.problem(f"tables: a name that was in no table, or cannot be: {name!r}")


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--bin", type=pathlib.Path, required=True)
    parser.add_argument("--packets", type=int, default=200)
    parser.add_argument("--tables", type=int, default=200)
    parser.add_argument("--seed", type=int, default=1)
    asked = parser.parse_args()
    binaries, report, choice = asked.bin.resolve(), Report(), random.Random(asked.seed)
    with tempfile.TemporaryDirectory(prefix="holdwise-nasty-") as root:
        folder = pathlib.Path(root)
        data, csv = make_market(binaries, folder, [])
        work = folder / "work"
        run(binaries / "holdwise-terminal", "--data", data, "--work", work, "--import", csv, "--export", folder / "first",
            env=environment())
        packets = Packets(binaries, data, work, folder, report)
        for number in range(asked.packets):
            packets.round(number, choice)
        codes = sorted(path.stem for path in (folder / "csv/bars").glob("*.csv"))
        tables = Tables(binaries, data, folder, codes, report)
        for number in range(asked.tables):
            tables.round(number, choice)
        tables.end()
    report.end("nasty inputs")


if __name__ == "__main__":
    main()
