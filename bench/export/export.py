#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Time on the processor of an export of all views, with the start and the end of the terminal, of 1,000 calculated
portfolios of ten holdings: a table for each portfolio and view. Market and portfolios are made first (kept in --folder).
With --check the exit code says whether 2,000 tables take at most 10 s.

    bench/export/export.py [--bin build/release/bin] [--folder DIR] [--portfolios 1000] [--rounds 3] [--check]
"""
import argparse
import os
import pathlib
import shutil
import statistics
import subprocess
import sys
import tempfile
import time

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1]))
from made_market import make_market, make_work_folder  # noqa: E402

MOST_SECONDS, TABLES = 10, 2000


def export(binaries, data, work, out):
    """Seconds on the processor, all processes together; seconds on the wall; tables written."""
    shutil.rmtree(out, ignore_errors=True)
    begin = time.monotonic()
    process = subprocess.Popen([binaries / "holdwise-terminal", "--data", data, "--work", work, "--export", out],
                               stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    _, _, used = os.wait4(process.pid, 0)
    return used.ru_utime + used.ru_stime, time.monotonic() - begin, len(list(out.glob("*.csv")))


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--bin", type=pathlib.Path, default=pathlib.Path("build/release/bin"))
    parser.add_argument("--folder", type=pathlib.Path, default=pathlib.Path(tempfile.gettempdir()) / "holdwise-bench-export")
    parser.add_argument("--portfolios", type=int, default=1000)
    parser.add_argument("--rounds", type=int, default=3)
    parser.add_argument("--check", action="store_true")
    arguments = parser.parse_args()
    folder = arguments.folder / str(arguments.portfolios)
    folder.mkdir(parents=True, exist_ok=True)
    os.environ["QT_QPA_PLATFORM"] = "offscreen"
    # Prices that stand still: every round writes the same tables.
    data, codes = make_market(arguments.bin, folder, 1000, 400, simulated=False)
    work = make_work_folder(arguments.bin, folder, data, codes, arguments.portfolios)
    rounds = [export(arguments.bin, data, work, folder / "out") for _ in range(arguments.rounds)]
    tables = rounds[0][2]
    if tables < arguments.portfolios:
        raise SystemExit(f"only {tables} tables were written")
    print(f"{tables} tables{'':22}{'min':>9}{'median':>9}{'max':>9}")
    share = [seconds * TABLES / tables for seconds, _, _ in rounds]
    for name, values in (("on the processor, s", [r[0] for r in rounds]), ("on the wall, s", [r[1] for r in rounds]),
                         (f"on the processor, s a {TABLES} tables", share)):
        print(f"{name:33}{min(values):9.2f}{statistics.median(values):9.2f}{max(values):9.2f}")
    return 1 if arguments.check and statistics.median(share) > MOST_SECONDS else 0


if __name__ == "__main__":
    sys.exit(main())
