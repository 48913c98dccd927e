#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""What `--watch` takes for a new data folder after the file of one stock has changed, of a made-up market with a file a
code: median of some rounds with the spread. The goal: at most 1 s for 5,500 stocks from the start of the build on; the
second for which the files must stand still comes before it. A stock outside the stock pool, and one of it, with which all
proposals are made again. At the end the folder must be that of a build from nothing.

    bench/build/watch.py [--bin build/release/bin] [--securities 5500] [--days 500] [--rounds 5] [--pause 0]
"""
import argparse
import filecmp
import os
import pathlib
import re
import statistics
import subprocess
import sys
import tempfile
import time


def change_last_close(path, round_):
    """A bar of the price before it, give or take a cent: within every limit."""
    lines = path.read_text(encoding="utf-8").splitlines()
    before = float(lines[-2].split(",")[4])
    price = f"{before + 0.01 * (round_ % 2):.2f}"
    date, _, _, _, _, volume = lines[-1].split(",")
    lines[-1] = ",".join([date, price, price, price, price, volume])
    path.write_text("\n".join(lines) + "\n", encoding="utf-8")


def pool_of(program, out):
    table = subprocess.run([program, "packet", "to-csv", out / "QMTL/TZZH/StockPool.dat"], capture_output=True, text=True,
                           check=True).stdout
    return {line.split(",")[0].strip('"') for line in table.splitlines()[1:]}


def seconds_of_build(watch):
    """Of the next one that is done."""
    for line in watch.stdout:
        if found := re.match(r"用时：([0-9.]+) 秒", line):
            return float(found[1])
    sys.exit("the program has ended")


def processor_seconds(watch):
    """That the program has used so far: what does not depend on who else uses the machine."""
    fields = pathlib.Path(f"/proc/{watch.pid}/stat").read_text().rsplit(")", 1)[1].split()
    return (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")


def same_folders(one, other):
    names = sorted(path.relative_to(one) for path in one.rglob("*") if path.is_file())
    _, different, missing = filecmp.cmpfiles(one, other, names, shallow=False)
    return not different and not missing and len(names) == sum(path.is_file() for path in other.rglob("*"))


def spread(values):
    return f"{statistics.median(values):.2f} s ({min(values):.2f} to {max(values):.2f})"


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--bin", default="build/release/bin")
    parser.add_argument("--securities", default="5500")
    parser.add_argument("--days", default="500")
    parser.add_argument("--rounds", type=int, default=5)
    parser.add_argument("--pause", type=float, default=0, help="seconds before each change: ext4 is slow to make as many "
                        "files as have just been removed, for a minute or more")
    parser.add_argument("--folder", help="where to work, for another file system")
    options = parser.parse_args()
    program = pathlib.Path(options.bin) / "holdwise-market"
    with tempfile.TemporaryDirectory(dir=options.folder) as folder:
        source, out, again = (pathlib.Path(folder) / name for name in ("source", "out", "again"))
        subprocess.run([program, "simulate", "--securities", options.securities, "--days", options.days, "--out", source],
                       check=True, capture_output=True)
        build = [program, "build", "--bars", source / "bars", "--indices", source / "indices", "--securities",
                 source / "securities.csv", "--rates", source / "deposit_rates.csv", "--simulated", "--out"]
        watch = subprocess.Popen([*build, out, "--watch"], stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
        print(f"{options.securities} securities x {options.days} days, {os.cpu_count()} cores, {options.rounds} rounds")
        print(f"first build: {seconds_of_build(watch):.2f} s")
        pool = pool_of(program, out)
        codes = sorted(path.stem for path in (source / "bars").glob("*.csv"))
        for name, choices in (("one stock outside the pool", [code for code in codes if code not in pool]),
                              ("one stock of the pool", sorted(pool))):
            builds, waits, work = [], [], []
            for round_ in range(options.rounds):
                time.sleep(options.pause)
                change_last_close(source / "bars" / f"{choices[round_ % len(choices)]}.csv", round_)
                start, before = time.monotonic(), processor_seconds(watch)
                builds.append(seconds_of_build(watch))
                waits.append(time.monotonic() - start)
                work.append(processor_seconds(watch) - before)
            print(f"{name}: build {spread(builds)}, from the change on {spread(waits)}, processor {spread(work)}")
        peak = int(re.search(r"VmHWM:\s+(\d+)", pathlib.Path(f"/proc/{watch.pid}/status").read_text())[1]) / 1024
        print(f"peak {peak:.0f} MB")
        watch.terminate()
        watch.wait()
        subprocess.run([*build, again], check=True, capture_output=True)
        if not same_folders(out, again):
            sys.exit("another data folder than from nothing")


if __name__ == "__main__":
    main()
