#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Kills the ingestion of base data at random moments (SIGKILL) and looks whether anything is lost or mixed.

A bare loop ingests the files of some securities and of the indices again and again into a real embedded database, each file
in two versions with other values and another number of rows in turn, and adds a portfolio after each round. After each kill
the database must open; every security must hold exactly the version whose commit had returned, or, when the kill fell into
a commit, that one or the one being committed; every portfolio that was committed must be there with all its holdings. The
next loop goes on with the same database; a new one is made now and then.

    kill_ingestion.py --bin DIR [--kills 2000] [--seed 1] [--fresh-every 250] [--folder DIR]
"""
import argparse
import datetime as dt
import pathlib
import random
import shutil
import subprocess
import tempfile
import time

from faults import STATISTICS, TYPES, Database, Report, run, series_of

STAGES = ["starting", "opening the database", "between transactions", "in a transaction", "in a commit", "closing"]
CHANGING, COMMITTING = 3, 4
JOURNAL_BYTES = 80
NOTHING_YET = 255
CODES = ["000001", "000858", "300750", "600036", "600519", "601398", "603288", "605499"]
INDICES = [1, 399001, 399300]


def weekdays_before(end, step, count):
    """Every step-th weekday up to the end, the oldest first."""
    days = [end - dt.timedelta(days=back) for back in range(2 * step * count + 7)]
    return [day for day in days if day.weekday() < 5][: step * count : step][::-1]


def make_series(choice, days):
    """Rows of one security: daily, weekly and monthly, in the columns of the file."""
    rows = []
    for kind, step in ((0, 1), (1, 5), (2, 21)):
        count = days // step
        dates = weekdays_before(dt.date(2024, 5, 31), step, count)
        mean, deviation = choice.uniform(-0.01, 0.01), choice.uniform(0, 0.1)
        for i, date in enumerate(dates):
            rows.append([round(choice.uniform(1, 2000), 2), kind, i + 1, choice.uniform(-0.1, 0.1), mean,
                         int(date.strftime("%Y%m%d")), round(choice.uniform(1, 2000), 2), deviation, int(i + 1 == count),
                         int(dates[0].strftime("%Y%m%d")), 20240531])
    return rows


class Files:
    """Two versions of every file, and what the database must hold of each."""

    def __init__(self, binaries, folder, choice):
        self.folder = folder
        self.names = [f"{code}.dat" for code in CODES] + ["allzs.dat"]
        self.expected = []  # by version: {code: series}
        for version, days in enumerate((250, 231)):
            (folder / str(version)).mkdir(parents=True)
            expected = {}
            for code in CODES:
                rows = make_series(choice, days)
                self.write(binaries, folder / str(version) / f"{code}.dat", STATISTICS, rows)
                expected[int("1" + code)] = series_of(rows)
            index_rows = {code: make_series(choice, days) for code in INDICES}
            self.write(binaries, folder / str(version) / "allzs.dat", ["SecuCode", *STATISTICS],
                       [[code, *row] for code, rows in index_rows.items() for row in rows])
            expected.update({code: series_of(rows) for code, rows in index_rows.items()})
            self.expected.append(expected)

    @staticmethod
    def write(binaries, path, columns, rows):
        text = path.with_suffix(".csv")
        lines = [",".join(f"{c}:{TYPES.get(c, 'integer')}" for c in columns)] + [",".join(map(repr, row)) for row in rows]
        text.write_text("\n".join(lines) + "\n", encoding="utf-8")
        run(binaries / "holdwise-market", "packet", "from-csv", text, "--out", path)
        text.unlink()

    def codes(self, file):
        return INDICES if self.names[file] == "allzs.dat" else [int("1" + self.names[file][:6])]


class Journal:
    """The worker's journal, see ingestion_worker.cpp."""

    def __init__(self, path, files):
        self.path, self.files = path, files
        path.write_bytes(bytes([0] * 16 + [NOTHING_YET] * (JOURNAL_BYTES - 16)))

    def read(self):
        data = self.path.read_bytes()
        self.stage, self.file, self.version = data[0], int.from_bytes(data[1:2], "little", signed=True), data[2]
        self.statements, self.portfolios, self.ingestions = (int.from_bytes(data[i:i + 4], "little") for i in (4, 8, 12))
        self.committed = list(data[16:16 + len(self.files.names)])

    def write(self):
        """Puts what the database holds into the journal, for the next worker."""
        data = bytearray(JOURNAL_BYTES)
        data[8:12], data[12:16] = self.portfolios.to_bytes(4, "little"), self.ingestions.to_bytes(4, "little")
        data[16:16 + len(self.committed)] = bytes(self.committed)
        self.path.write_bytes(data)


def expected_holdings(number):
    return sorted((f"1{CODES[i]}", str((i + 1) * 100), "0.25", "12.5") for i in range(3))


class Campaign:
    def __init__(self, binaries, folder, files, choice, report):
        self.binaries, self.folder, self.files, self.choice, self.report = binaries, folder, files, choice, report
        self.made = 0
        self.ingestions = 0

    def make_database(self):
        self.made += 1
        self.work = self.folder / f"work{self.made}"
        (self.work / "lock").mkdir(parents=True)
        self.database = self.work / "holdwise.fdb"
        self.journal = Journal(self.work / "journal", self.files)
        self.loop_command = [self.binaries / "holdwise-ingestion-worker", "loop", self.database, self.work / "lock",
                             self.files.folder, self.journal.path]

    def drop_database(self):
        self.ingestions += self.journal.ingestions
        shutil.rmtree(self.work)

    def kill_once(self, number):
        with open(self.work / "stderr", "w+", encoding="utf-8") as errors:
            worker = subprocess.Popen([str(c) for c in self.loop_command], stderr=errors)
            # Opening takes a third of a second or so; one kill in eight falls before its end, the others anywhere later.
            if self.choice.random() < 0.125:
                time.sleep(self.choice.uniform(0, 0.15))
            else:
                self.wait_for_work(worker)
                time.sleep(self.choice.uniform(0, 0.4))
            worker.kill()
            if worker.wait() != -9:
                errors.seek(0)
                self.report.problem(f"kill {number}: the worker had ended with {worker.returncode}: {errors.read()}")
        self.journal.read()
        self.report.count(f"killed {STAGES[self.journal.stage]}")
        self.verify(f"kill {number} ({STAGES[self.journal.stage]}, statement {self.journal.statements})")
        self.journal.write()

    def wait_for_work(self, worker):
        begin = self.journal_ingestions()
        while worker.poll() is None and self.journal_ingestions() == begin:
            time.sleep(0.002)

    def journal_ingestions(self):
        return int.from_bytes(self.journal.path.read_bytes()[12:16], "little")

    def verify(self, where):
        if not self.database.exists():
            # Killed while it was made: it only gets its name when it is complete.
            if max(self.journal.committed) != NOTHING_YET or min(self.journal.committed) != NOTHING_YET:
                self.report.problem(f"{where}: the database is gone")
            self.report.count("database not made yet")
            return
        found = Database(self.binaries, self.database)
        if found.problem:
            self.report.problem(f"{where}: the database does not open: {found.problem}")
            return
        self.verify_securities(where, found)
        self.verify_portfolios(where, found)

    def verify_securities(self, where, found):
        journal = self.journal
        known = set()
        for file in range(len(self.files.names)):
            allowed = [journal.committed[file]]
            if journal.stage == COMMITTING and journal.file == file:
                allowed.append(journal.version)
            codes = self.files.codes(file)
            known.update(codes)
            state = [version for version in dict.fromkeys(allowed) if all(
                found.statistics.get(code, []) == ([] if version == NOTHING_YET else self.files.expected[version][code])
                for code in codes)]
            if len(state) != 1:
                rows = {code: len(found.statistics.get(code, [])) for code in codes}
                self.report.problem(f"{where}: {self.files.names[file]} is not one of the versions {allowed} whole: {rows} rows")
                continue
            if len(allowed) == 2 and state[0] == journal.version:
                self.report.count("killed in a commit: the new rows were there")
            journal.committed[file] = state[0]
        if set(found.statistics) - known:
            self.report.problem(f"{where}: rows of other securities: {sorted(set(found.statistics) - known)}")

    def verify_portfolios(self, where, found):
        count = len(found.portfolios)
        most = self.journal.portfolios + (self.journal.stage == COMMITTING and self.journal.file == -1)
        if not self.journal.portfolios <= count <= most or sorted(found.portfolios) != list(range(1, count + 1)):
            self.report.problem(f"{where}: {count} portfolios instead of {self.journal.portfolios} to {most}")
        if sorted(found.holdings) != sorted(found.portfolios):
            self.report.problem(f"{where}: holdings without header or header without holdings")
        for number, cells in found.portfolios.items():
            wanted = (f"组合{number}", "3000.5", "2024-05-31", "1")
            if (cells[1], cells[3], cells[12], cells[13]) != wanted or found.holdings.get(number) != expected_holdings(number):
                self.report.problem(f"{where}: portfolio {number} is {cells} {found.holdings.get(number)}")
        self.journal.portfolios = count


def is_writable(folder):
    try:
        with tempfile.TemporaryFile(dir=folder):
            return True
    except OSError:
        return False


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--bin", type=pathlib.Path, required=True, help="folder of the programs")
    parser.add_argument("--kills", type=int, default=2000)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--fresh-every", type=int, default=250, help="kills on one database")
    parser.add_argument("--folder", help="where the database stands; in memory commits are short, and more kills fall "
                        "elsewhere; one that cannot be written gives way to the system's temporary folder")
    arguments = parser.parse_args()
    place = arguments.folder if arguments.folder and is_writable(arguments.folder) else None
    choice, report = random.Random(arguments.seed), Report()
    with tempfile.TemporaryDirectory(prefix="holdwise-kill-", dir=place) as folder:
        folder = pathlib.Path(folder)
        files = Files(arguments.bin, folder / "files", choice)
        campaign = Campaign(arguments.bin.resolve(), folder, files, choice, report)
        for number in range(1, arguments.kills + 1):
            if (number - 1) % arguments.fresh_every == 0:
                if number > 1:
                    campaign.drop_database()
                campaign.make_database()
            campaign.kill_once(number)
            if number % 100 == 0:
                print(f"{number} kills, {len(report.problems)} problems, "
                      f"{campaign.database.stat().st_size >> 10} KB", flush=True)
        campaign.drop_database()
    report.end(f"{arguments.kills} kills on {campaign.made} databases, {campaign.ingestions} files ingested")


if __name__ == "__main__":
    main()
