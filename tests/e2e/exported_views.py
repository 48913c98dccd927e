# SPDX-License-Identifier: MIT
"""Real programs over real bars: builds a data folder, imports five portfolios, exports the views, and reads what they show."""
import argparse
import csv
import datetime as dt
import os
import pathlib
import subprocess
import sys
import tempfile

PORTFOLIOS = {  # name: [(code, quantity, buy price)]
    "银行稳健": [("600036", 1200, "35.10"), ("601398", 30000, "4.85"), ("000001", 5000, "10.02")],
    "消费(白酒)": [("600519", 100, "1400.00"), ("000568", 800, "130.5"), ("600887", 2500, "26.77"), ("000333", 900, "61")],
    "Growth-1": [("300750", 300, "188.88"), ("002594", 400, "95.00")],
    "十全_十美": [("600030", 1000, "20.01"), ("600028", 9000, "6.05"), ("600050", 10000, "4.9"), ("600900", 1500, "25"),
                  ("601318", 700, "44.44"), ("601225", 1100, "33.3"), ("000651", 600, "39.99"), ("000725", 20000, "3.95"),
                  ("300015", 2300, "15.6"), ("000002", 8000, "9.12")],
    "同股再持": [("600519", 1, "0.01"), ("600036", 9999999, "99999.99")],
}


def arguments():
    parser = argparse.ArgumentParser()
    parser.add_argument("--bin", type=pathlib.Path, required=True)
    parser.add_argument("--market-data", type=pathlib.Path, required=True)
    parser.add_argument("--date", action="append", required=True)
    return parser.parse_args()


def run(*command, named=()):
    """Ends with 0, or with 1 and each of `named` on standard error; returns what was said there."""
    done = subprocess.run([str(c) for c in command], capture_output=True, text=True, timeout=120)
    if done.returncode != (1 if named else 0) or any(text not in done.stderr for text in named):
        sys.exit(f"{command[0]} ended with {done.returncode}\n{done.stdout}\n{done.stderr}")
    return done.stderr


def build_data(binaries, market_data, bars, day, data, *options):
    run(binaries / "holdwise-market", "build", "--bars", bars, "--indices", market_data / "indices", "--securities",
        market_data / "securities.csv", "--dates", market_data / "trading_dates.csv", *options, "--date", day.isoformat(),
        "--out", data)


def import_and_export(binaries, data, folder, portfolios, out, *options, lacking=(), days=None):
    """Imports `portfolios` (none: imports nothing) into the work-data folder `folder`/work and exports the views; `days`
    are their days of purchase by name. The terminal has to name the stocks of `lacking` as being without statistics.
    Returns what it said on standard error."""
    if portfolios:
        options = ["--import", folder / "portfolios.csv", *options]
        with open(folder / "portfolios.csv", "w", encoding="utf-8", newline="") as file:
            writer = csv.writer(file)
            writer.writerow(["name", "code", "quantity", "price"] + (["date"] if days else []))
            writer.writerows([name, *row] + ([days[name]] if days else [])
                             for name, rows in portfolios.items() for row in rows)
    os.environ.setdefault("QT_QPA_PLATFORM", "offscreen")
    return run(binaries / "holdwise-terminal", "--data", data, "--work", folder / "work", *options, "--export", out,
               named=[f"{code})没有统计数据" for code in lacking])


def export(binaries, market_data, bars, day, folder, *options, lacking=()):
    """Leaves the data folder, the work-data folder and the exported views of PORTFOLIOS in `folder`: data, work, out."""
    build_data(binaries, market_data, bars, day, folder / "data", *options)
    import_and_export(binaries, folder / "data", folder, PORTFOLIOS, folder / "out", lacking=lacking)


def read_csv(path):
    with open(path, encoding="utf-8-sig", newline="") as file:
        rows = list(csv.reader(file))
    return rows[0], rows[1:]


def compare(where, titles, rows, wanted_titles, wanted_rows, problems):
    if titles != wanted_titles:
        problems.append(f"{where}: titles {titles} instead of {wanted_titles}")
    if len(rows) != len(wanted_rows):
        problems.append(f"{where}: {len(rows)} rows instead of {len(wanted_rows)}")
    cells = 0
    for got, want in zip(rows, wanted_rows):
        for title, g, w in zip(wanted_titles, got, want):
            cells += 1
            if g != w:
                problems.append(f"{where}: {got[0]} {title}: shown {g!r}, computed {w!r}")
    return cells


def check_dates(check):
    """Runs check(binaries, market data, day, folder, problems), which returns the number of cells compared, for every
    --date, says what differs and ends the program."""
    options = arguments()
    problems, cells = [], 0
    for text in options.date:
        with tempfile.TemporaryDirectory() as folder:
            cells += check(options.bin, options.market_data, dt.date.fromisoformat(text), pathlib.Path(folder), problems)
    print("\n".join(problems[:40]))
    print(f"{cells} cells compared on {len(options.date)} dates, {len(problems)} differ")
    sys.exit(1 if problems or cells == 0 else 0)
