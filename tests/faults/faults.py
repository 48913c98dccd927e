# SPDX-License-Identifier: MIT
"""What the fault campaigns share."""
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile

STATISTICS = ["closeprice", "hqtype", "rowid", "ggqjsyl", "pjsyl", "hqdate", "oldcloseprice", "sylbzc", "islastday", "startdate",
              "enddate"]
TYPES = {"closeprice": "real", "ggqjsyl": "real", "pjsyl": "real", "oldcloseprice": "real", "sylbzc": "real"}
SLOWNESS = int(os.environ.get("HOLDWISE_SLOWNESS", "1"))  # of the programs: a sanitizer's build is given more time


def run(*command, **more):
    """Output of a program that must succeed."""
    done = subprocess.run([str(c) for c in command], capture_output=True, text=True, timeout=300, **more)
    if done.returncode != 0:
        sys.exit(f"{' '.join(map(str, command))} ended with {done.returncode}\n{done.stdout}\n{done.stderr}")
    return done.stdout


SKIPPED = 77


def enter_mount_name_space():
    """Goes on in a mount name space of its own, so that no mount outlives the campaign; ends it with SKIPPED when this
    system does not allow that."""
    mark = "HOLDWISE_OWN_MOUNTS"
    if os.environ.get(mark):
        return
    unshare = ["unshare", "-m" if os.geteuid() == 0 else "-rm"]
    try_mount = ["sh", "-c", "mount -t tmpfs -o size=64k tmpfs /mnt"]
    if shutil.which("unshare") is None or subprocess.run(unshare + try_mount, capture_output=True).returncode != 0:
        print("skipped: mounting a disk in memory is not allowed here (neither as root nor with user name spaces)")
        sys.exit(SKIPPED)
    os.environ[mark] = "root" if os.geteuid() == 0 else "user"
    os.execvp("unshare", [*unshare, sys.executable, *sys.argv])


def series_of(rows):
    """Rows without their code, in an order of their own: equal exactly when the stored rows are."""
    return sorted(tuple(float(value) for value in row) for row in rows)


class Database:
    """Every row of a database file. Looks at a copy, so that the file stays as its last user left it, and without the
    mark of one that was not closed, so that nobody looks it over before."""

    def __init__(self, binaries, file):
        with tempfile.TemporaryDirectory(prefix="holdwise-look-") as folder:
            folder = pathlib.Path(folder)
            shutil.copy(file, folder / file.name)
            (folder / "lock").mkdir()
            done = subprocess.run([binaries / "holdwise-ingestion-worker", "dump", folder / file.name, folder / "lock"],
                                  capture_output=True, text=True, timeout=300)
        self.problem = "" if done.returncode == 0 and done.stdout.endswith("end\n") else done.stderr or f"{done.returncode}"
        self.portfolios, self.holdings, self.statistics, self.rates = {}, {}, {}, []
        for line in done.stdout.splitlines():
            table, *cells = line.split("\t")
            if table == "alg_commain":
                self.portfolios[int(cells[0])] = cells
            elif table == "alg_comdetail":
                self.holdings.setdefault(int(cells[1]), []).append(tuple(cells[2:]))
            elif table == "alg_stockstatistic":
                self.statistics.setdefault(int(cells[0]), []).append(cells[1:])
            elif table == "alg_rmbinterestrate":
                self.rates.append(tuple(cells))
        self.statistics = {code: series_of(rows) for code, rows in self.statistics.items()}
        self.holdings = {portfolio: sorted(rows) for portfolio, rows in self.holdings.items()}


class Report:
    """Counts and what went wrong; the exit code says whether anything did."""

    def __init__(self):
        self.counts, self.problems = {}, []

    def count(self, what):
        self.counts[what] = self.counts.get(what, 0) + 1

    def problem(self, text):
        self.problems.append(text)
        print("PROBLEM:", text, flush=True)

    def end(self, title):
        for what, number in sorted(self.counts.items()):
            print(f"  {what:60}{number:8}")
        print(f"{title}: {len(self.problems)} problems")
        sys.exit(1 if self.problems or not self.counts else 0)
