#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""What an idle terminal takes of one core: the page 组合表现 with ten portfolios on a simulated market of 5,000 securities
at normal speed, which nobody touches. Market and portfolios are made first (kept in --folder). With --check the exit code
says whether it is less than 3 percent.

    bench/idle/idle.py [--bin build/release/bin] [--folder DIR] [--seconds 60] [--settle 20] [--check]
"""
import argparse
import os
import pathlib
import signal
import subprocess
import sys
import tempfile
import time

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1]))
from made_market import make_market, make_work_folder  # noqa: E402

MOST_PERCENT = 3
PORTFOLIOS = 10


def processor_seconds(pid):
    """Of all threads; the command's name may hold blanks, what follows it does not."""
    fields = pathlib.Path(f"/proc/{pid}/stat").read_text(encoding="utf-8").rpartition(")")[2].split()
    return (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--bin", type=pathlib.Path, default=pathlib.Path("build/release/bin"))
    parser.add_argument("--folder", type=pathlib.Path, default=pathlib.Path(tempfile.gettempdir()) / "holdwise-bench-idle")
    parser.add_argument("--seconds", type=float, default=60)
    parser.add_argument("--settle", type=float, default=20)
    parser.add_argument("--check", action="store_true")
    arguments = parser.parse_args()
    arguments.folder.mkdir(parents=True, exist_ok=True)
    os.environ["QT_QPA_PLATFORM"] = "offscreen"
    data, codes = make_market(arguments.bin, arguments.folder, 5000, 500, simulated=True)
    work = make_work_folder(arguments.bin, arguments.folder, data, codes, PORTFOLIOS)
    for name in ("simulation.dat", "ticks.dat"):  # the day begins anew
        (work / name).unlink(missing_ok=True)
    process = subprocess.Popen([arguments.bin / "holdwise-terminal", "--data", data, "--work", work, "--address", "投资组合",
                                "--parameter", "Skip组合表现"], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    time.sleep(arguments.settle)
    ticks = work / "ticks.dat"
    before, bytes_before, begin = processor_seconds(process.pid), ticks.stat().st_size, time.monotonic()
    time.sleep(arguments.seconds)
    seconds, lasted = processor_seconds(process.pid) - before, time.monotonic() - begin
    grown = ticks.stat().st_size - bytes_before
    process.send_signal(signal.SIGTERM)
    process.wait(timeout=30)
    if grown <= 0:
        raise SystemExit("the market stood still: nothing was measured")
    percent = 100 * seconds / lasted
    print(f"idle terminal: {seconds:.2f} s on the processor in {lasted:.0f} s, {percent:.2f} percent of one core")
    return 1 if arguments.check and percent >= MOST_PERCENT else 0


if __name__ == "__main__":
    sys.exit(main())
