#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Start of the terminal to its first painted view against the start of an empty Qt window, interleaved, and the terminal's
resident memory. Makes a market of 5,500 securities x 500 days and 100 portfolios of 10 holdings first (kept in --folder).

    bench/start/start.py [--bin build/release/bin] [--folder DIR] [--rounds 9]
"""
import argparse
import csv
import os
import pathlib
import random
import signal
import statistics
import subprocess
import tempfile
import time

MARK = "HOLDWISE_FIRST_PAINT_MS"


def make_market(binaries, folder):
    data = folder / "market"
    if not (data / "market.dat").exists():
        csvs = folder / "csv"
        subprocess.run([binaries / "holdwise-market", "simulate", "--securities", "5500", "--days", "500", "--seed", "7",
                        "--out", csvs], check=True, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        subprocess.run([binaries / "holdwise-market", "build", "--bars", csvs / "bars", "--indices", csvs / "indices",
                        "--securities", csvs / "securities.csv", "--out", data], check=True, stdout=subprocess.DEVNULL,
                       stderr=subprocess.DEVNULL)
        codes = [r["code"] for r in csv.DictReader(open(csvs / "securities.csv", encoding="utf-8"))]
        choice = random.Random(7)
        with open(folder / "portfolios.csv", "w", encoding="utf-8") as file:
            file.write("name,code,quantity,price\n")
            for number in range(100):
                for code in choice.sample(codes, 10):
                    file.write(f"组合{number:03d},{code},{choice.randrange(1, 90) * 100},{choice.randrange(300, 9000) / 100}\n")
    if not (folder / "work").exists():
        subprocess.run([binaries / "holdwise-terminal", "--data", data, "--work", folder / "work", "--import",
                        folder / "portfolios.csv", "--export", folder / "out"], stdout=subprocess.DEVNULL)
        # 1 is no failure here: a made-up stock may not have traded in a week, which the export tells.
        if not (folder / "out" / "2001.png").exists():
            raise SystemExit("the portfolios could not be imported")
    return data


def start_to_paint(command):
    """Seconds from starting the process to its first paint, and the resident memory in MB four seconds later or None."""
    environment = dict(os.environ, HOLDWISE_TRACE_START="1")
    begin = time.monotonic()
    process = subprocess.Popen([str(c) for c in command], stderr=subprocess.PIPE, text=True, env=environment)
    for line in process.stderr:
        if line.startswith(MARK):
            return time.monotonic() - begin, process
    raise SystemExit(f"{command[0]} ended without painting")


def resident_megabytes(pid):
    for line in open(f"/proc/{pid}/status"):
        if line.startswith("VmRSS"):
            return int(line.split()[1]) / 1024
    return float("nan")


def end(process):
    process.send_signal(signal.SIGTERM)
    process.wait(timeout=10)


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--bin", type=pathlib.Path, default=pathlib.Path("build/release/bin"))
    parser.add_argument("--folder", type=pathlib.Path, default=pathlib.Path(tempfile.gettempdir()) / "holdwise-bench-start")
    parser.add_argument("--rounds", type=int, default=9)
    arguments = parser.parse_args()
    arguments.folder.mkdir(parents=True, exist_ok=True)
    os.environ.setdefault("QT_QPA_PLATFORM", "xcb" if os.environ.get("DISPLAY") else "offscreen")
    data = make_market(arguments.bin, arguments.folder)
    terminal = [arguments.bin / "holdwise-terminal", "--data", data, "--work", arguments.folder / "work", "--address",
                "投资组合", "--parameter", "Skip组合表现"]
    ours, empty, memory = [], [], []
    for round_number in range(arguments.rounds + 1):
        seconds, process = start_to_paint([arguments.bin / "bench-empty-window"])
        end(process)
        terminal_seconds, process = start_to_paint(terminal)
        if round_number == arguments.rounds:
            time.sleep(8)
            memory.append(resident_megabytes(process.pid))
        end(process)
        if round_number > 0:
            empty.append(seconds * 1000)
            ours.append(terminal_seconds * 1000)
    ratios = [o / e for o, e in zip(ours, empty)]
    print(f"{'':34}{'min':>9}{'median':>9}{'max':>9}")
    for name, values in (("empty Qt window, first paint ms", empty), ("terminal, first view ms", ours), ("ratio", ratios)):
        print(f"{name:34}{min(values):9.2f}{statistics.median(values):9.2f}{max(values):9.2f}")
    print(f"{'terminal, resident MB after 8 s':34}{'':9}{memory[0]:9.1f}")


if __name__ == "__main__":
    main()
