#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""One long file of all bars against a file a code, of the same made-up market: median of the interleaved rounds' ratios, and
the peak memory. The goals: at most 3 times the time, at most 300 MB. The data folders must be the same.

    bench/build/long_file.py [--bin build/release/bin] [--securities 5500] [--days 500] [--rounds 9]
"""
import argparse
import filecmp
import multiprocessing
import os
import pathlib
import statistics
import subprocess
import sys
import tempfile
import time


def run(command):
    """(seconds, peak resident megabytes) of one run."""
    start = time.monotonic()
    process = subprocess.Popen(command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    _, status, usage = os.wait4(process.pid, 0)
    if status != 0:
        sys.exit(f"{' '.join(map(str, command))} failed")
    return time.monotonic() - start, usage.ru_maxrss / 1024


def write_long_files(source, folder):
    """All bars by code, and the same by date, newest last."""
    by_date = {}
    with open(folder / "by_code.csv", "w", encoding="utf-8") as target:
        target.write("ts_code,trade_date,open,high,low,close,vol\n")
        for path in sorted((source / "bars").glob("*.csv")):
            lines = path.read_text(encoding="utf-8").splitlines()[1:]
            target.writelines(f"{path.stem},{line}\n" for line in lines)
            for line in lines:
                by_date.setdefault(line[:10], []).append(f"{path.stem},{line}\n")
    with open(folder / "by_date.csv", "w", encoding="utf-8") as target:
        target.write("ts_code,trade_date,open,high,low,close,vol\n")
        for date in sorted(by_date):
            target.writelines(by_date[date])


def same_folders(one, other):
    names = sorted(path.relative_to(one) for path in one.rglob("*") if path.is_file())
    _, different, missing = filecmp.cmpfiles(one, other, names, shallow=False)
    return not different and not missing


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--bin", default="build/release/bin")
    parser.add_argument("--securities", default="5500")
    parser.add_argument("--days", default="500")
    parser.add_argument("--rounds", type=int, default=9)
    options = parser.parse_args()
    program = pathlib.Path(options.bin) / "holdwise-market"
    with tempfile.TemporaryDirectory() as folder:
        folder = pathlib.Path(folder)
        source = folder / "source"
        run([program, "simulate", "--securities", options.securities, "--days", options.days, "--out", source])
        # In a process of its own: what the parent of a program has counts in its peak.
        writer = multiprocessing.Process(target=write_long_files, args=(source, folder))
        writer.start()
        writer.join()
        results = {}
        for _ in range(options.rounds):
            for name, bars in (("a file a code", source / "bars"), ("by code", folder / "by_code.csv"),
                               ("by date", folder / "by_date.csv")):
                out = folder / name.replace(" ", "_")
                results.setdefault(name, []).append(
                    run([program, "build", "--bars", bars, "--indices", source / "indices", "--securities",
                         source / "securities.csv", "--no-proposals", "--simulated", "--out", out]))
        for name in ("by_code", "by_date"):
            if not same_folders(folder / "a_file_a_code", folder / name):
                sys.exit(f"{name}: another data folder")
    print(f"{options.securities} securities x {options.days} days, {os.cpu_count()} cores, {options.rounds} rounds")
    for name, rounds in results.items():
        ratios = [mine[0] / plain[0] for mine, plain in zip(rounds, results["a file a code"])]
        print(f"{name}: {statistics.median(seconds for seconds, _ in rounds):.2f} s, {statistics.median(ratios):.2f} times "
              f"({min(ratios):.2f} to {max(ratios):.2f}), peak {max(peak for _, peak in rounds):.0f} MB")


if __name__ == "__main__":
    main()
