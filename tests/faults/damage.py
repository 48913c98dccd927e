#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Damages the database or the exchange pair of a work folder and looks whether anything is lost, or shown without a mark.

A work folder with three portfolios, left in order, is copied for each round. Then bits are flipped, pages overwritten with
noise or zeros, or the file is cut off: of the database (its pages of rows as often as all others), or of one exchange file
with the database away. The terminal exports. It must end by itself, not by a signal, within the seconds below; when it ends with
0, what was entered must be exported as before; when it does not, standard error must say so in Chinese. Whatever it does,
the portfolios must still be in the folder: in the database, in the exchange pair or the one that was kept, or in a backup.
Figures that differ though the entered values are the same are counted: stored figures have no second copy.

    damage.py --bin DIR [--market-data DIR] [--databases 500] [--pairs 200] [--seed 1]
"""
import argparse
import pathlib
import random
import shutil
import sys
import tempfile

from aftermath import read_back
from faults import SLOWNESS, Database, Report, run
from market import CHINESE, EARLIER, Market, environment, same_holdings, timed

SECONDS = 30 * SLOWNESS  # an export gives each of the views the second after which it may ask for a calculation, nine in all
SECONDS_TO_KILL = 60 * SLOWNESS
PAGE = 4096
ROWS_PAGE = 5  # on-disk structure 12
PAIR = ["TZZHDetail.dat", "TZZHMerge.dat"]


def flip(data, choice, places):
    for _ in range(choice.choice((1, 1, 1, 4))):
        at = choice.choice(places)
        data[at] ^= 1 << choice.randrange(8)


def noise(data, choice, places):
    at = choice.choice(places)
    length = choice.choice((16, 200, PAGE))
    data[at:at + length] = choice.randbytes(len(data[at:at + length]))


def zeros(data, choice, places):
    at = choice.choice(places) // PAGE * PAGE
    data[at:at + PAGE] = bytes(len(data[at:at + PAGE]))


def cut(data, choice, places):
    del data[choice.choice((choice.randrange(len(data)), choice.randrange(len(data)) // PAGE * PAGE)):]


KINDS = {"bits": flip, "noise": noise, "zeros": zeros, "cut": cut}


def places_of(data, choice):
    """Half of the time only pages that hold rows."""
    pages = range(0, len(data), PAGE)
    rows = [page for page in pages if data[page] == ROWS_PAGE]
    page = choice.choice(rows if rows and choice.random() < 0.5 else pages)
    return range(page, min(page + PAGE, len(data)))


def has_all(stored):
    """Every entered portfolio with what it holds?"""
    names = {cells[1]: number for number, cells in stored.portfolios.items()}
    return all(name in names and same_holdings(stored.holdings.get(names[name], []), rows) for name, rows in EARLIER.items())


class Campaign:
    def __init__(self, market, folder, choice, report):
        self.market, self.folder, self.choice, self.report = market, folder, choice, report
        self.sound, self.work, self.out = folder / "sound", folder / "work", folder / "out"
        run(*market.command(self.sound, "--import", market.import_earlier, "--export", folder / "first"), env=environment())
        # Once more: the end in order that every later start follows.
        run(*market.command(self.sound, "--export", folder / "reference"), env=environment())
        self.reference = self.exported(folder / "reference")
        self.slowest = 0.0

    @staticmethod
    def exported(folder):
        return {path.name: path.read_bytes() for path in folder.glob("*.csv")}

    def round(self, number, target, kind):
        for folder in (self.work, self.out):
            shutil.rmtree(folder, ignore_errors=True)
        shutil.copytree(self.sound, self.work)
        file = self.work / ("holdwise.fdb" if target == "database" else self.choice.choice(PAIR))
        if target != "database":
            (self.work / "holdwise.fdb").unlink()
        elif self.choice.random() < 0.3:
            (self.work / "holdwise.fdb.open").touch()
        data = bytearray(file.read_bytes())
        KINDS[kind](data, self.choice, places_of(data, self.choice) if target == "database" else range(len(data)))
        file.write_bytes(data)
        where = f"round {number} ({target}, {kind})"
        done, seconds = timed(self.market.command(self.work, "--export", self.out), SECONDS_TO_KILL)
        self.slowest = max(self.slowest, seconds)
        if seconds > SECONDS:
            self.report.problem(f"{where}: took {seconds:.1f} s")
        if done is None:
            self.report.problem(f"{where}: did not end")
        else:
            self.look(where, target, done.returncode, done.stdout + done.stderr)
        self.look_for_portfolios(where)

    def look(self, where, target, code, text):
        if code not in (0, 1):
            self.report.problem(f"{where}: ended with {code}: {text[-600:]}")
        if code != 0 and not CHINESE.search(text):
            self.report.problem(f"{where}: ended with {code} and did not say why: {text[-600:]}")
        self.count(where, target, code, text)

    def look_for_portfolios(self, where):
        if not self.is_kept():
            self.report.problem(f"{where}: the portfolios are nowhere in the folder: {sorted(p.name for p in self.work.iterdir())}")

    def count(self, where, target, code, text):
        if code != 0:
            self.report.count(f"{target}: told, ended with {code}")
            return
        if self.exported(self.out) == self.reference:
            self.report.count(f"{target}: all as before" + (", told" if CHINESE.search(text) and "已导出" not in text else ""))
            return
        stored = Database(self.market.binaries, self.work / "holdwise.fdb")
        if stored.problem or not has_all(stored) or len(stored.portfolios) != len(EARLIER):
            self.report.problem(f"{where}: ended with 0, and what it exported is not what was entered: {text[-600:]}")
        self.report.count(f"{target}: entered values as before, a figure or a text differs")

    def is_kept(self):
        file = self.work / "holdwise.fdb"
        if file.exists():
            stored = Database(self.market.binaries, file)
            if not stored.problem and has_all(stored):
                return True
        if any((self.work / "backups").glob(f"portfolios-*-{len(EARLIER)}-{sum(map(len, EARLIER.values()))}.csv")):
            return True
        return any(self.brings_back(times) for times in self.pairs())

    def pairs(self):
        """The ends of the names of the pair and of those that were kept."""
        return [""] + sorted({path.name[len(PAIR[0]):] for path in self.work.glob(PAIR[0] + ".*")})

    def brings_back(self, ending):
        files = {name: self.work / (name + ending) for name in PAIR}
        if not all(file.exists() for file in files.values()):
            return False
        copy, _ = read_back(self.market, self.folder, files)
        return has_all(Database(self.market.binaries, copy / "holdwise.fdb"))


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--bin", type=pathlib.Path, required=True, help="folder of the programs")
    parser.add_argument("--market-data", type=pathlib.Path, help="folder with real daily bars; without it they are made up")
    parser.add_argument("--databases", type=int, default=500, help="rounds with a damaged database")
    parser.add_argument("--pairs", type=int, default=200, help="rounds with a damaged exchange pair")
    parser.add_argument("--seed", type=int, default=1)
    arguments = parser.parse_args()
    report = Report()
    with tempfile.TemporaryDirectory(prefix="holdwise-damage-") as folder:
        folder = pathlib.Path(folder)
        market = Market(arguments.bin.resolve(), arguments.market_data, folder)
        campaign = Campaign(market, folder, random.Random(arguments.seed), report)
        targets = ["database"] * arguments.databases + ["pair"] * arguments.pairs
        for number, target in enumerate(targets, 1):
            campaign.round(number, target, list(KINDS)[number % len(KINDS)])
            if number % 50 == 0:
                print(f"{number} rounds, {len(report.problems)} problems, slowest {campaign.slowest:.1f} s", flush=True)
        print(f"slowest {campaign.slowest:.1f} s")
    report.end(f"{len(targets)} rounds")


if __name__ == "__main__":
    sys.exit(main())
