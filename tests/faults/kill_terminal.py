#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Kills the terminal at random moments (SIGKILL) and looks whether anything is lost, mixed or left undone.

Each time the terminal opens a work folder, imports portfolios, shows the calculation dialog (download, ingestion, reference
tables, figures), visits every view and ends; the kill falls anywhere, or, in a part of the rounds, into the orderly end after
SIGTERM, or into the first start in an empty work folder. Then the database must open; every security must have its earlier or
its later rows whole; no portfolio that was there may be missing; of those being imported all must be there or none. The
exchange files, when they were touched, must bring the earlier or the later portfolios back into an empty database. At last
the next start must finish the work: statistics, figures, and every exported table equal those of an undisturbed run.

    kill_terminal.py --bin DIR [--market-data DIR] [--kills 200] [--seed 1]
"""
import argparse
import pathlib
import random
import shutil
import signal
import subprocess
import tempfile
import time

from aftermath import EXCHANGE_FILES, Aftermath, exchange_bytes
from faults import Report
from market import CODES, FINISHED, LATER, Market, environment, held, number_of

KINDS = {"any moment": 5, "orderly end": 3, "first start": 2}


class Campaign:
    def __init__(self, market, folder, choice, report):
        self.market, self.folder, self.choice, self.report = market, folder, choice, report
        self.aftermath = Aftermath(market, folder, report)
        self.work, self.out = folder / "work", folder / "out"
        self.seconds = {begun: reference.seconds for begun, reference in self.aftermath.references.items()}

    def prepare(self, begun):
        shutil.rmtree(self.work, ignore_errors=True)
        shutil.rmtree(self.out, ignore_errors=True)
        self.aftermath.prepare(self.work, begun)

    def command(self, begun, *more):
        return self.market.command(self.work, *self.aftermath.arguments(begun), *more)

    def kill_anywhere(self, begun):
        process = subprocess.Popen(self.command(begun, "--export", self.out), env=environment(), stdout=subprocess.DEVNULL,
                                   stderr=subprocess.DEVNULL)
        time.sleep(self.choice.uniform(0, self.seconds[begun]))
        process.kill()
        return process.wait()

    def kill_at_exit(self):
        """A window that has done its work, or a part of it, is asked to end and killed while it does."""
        with subprocess.Popen(self.command(True), env=environment(), stdout=subprocess.DEVNULL, stderr=subprocess.PIPE,
                              text=True) as process:
            for line in process.stderr:
                if line.startswith("HOLDWISE_FIRST_PAINT_MS"):
                    break
            time.sleep(self.choice.uniform(0.5, 3))
            process.send_signal(signal.SIGTERM)
            time.sleep(self.choice.uniform(0, 0.12))
            process.kill()
            return process.wait()

    def round(self, number):
        kind = self.choice.choices(list(KINDS), list(KINDS.values()))[0]
        begun = kind != "first start"
        where = f"kill {number} ({kind})"
        self.prepare(begun)
        before = exchange_bytes(self.work)
        ended = self.kill_at_exit() if kind == "orderly end" else self.kill_anywhere(begun)
        if ended not in (-signal.SIGKILL, 0):
            self.report.problem(f"{where}: the terminal had ended with {ended}")
        state, imported = self.aftermath.verify_state(where, self.work, begun)
        self.report.count("ended before the kill" if ended == 0 else f"killed {self.moment(state, imported, before)}")
        self.aftermath.verify_exchange_files(where, self.work, begun, before)
        self.aftermath.finish(where, self.work, begun, imported)

    def moment(self, state, imported, before):
        """Where the kill fell, from what it left behind."""
        if state.database is None:
            return "before the database was made"
        exchange = exchange_bytes(self.work)
        if exchange != before:
            changed = [name for name in EXCHANGE_FILES[:2] if exchange.get(name) != before.get(name)]
            return "after the exchange files" if len(changed) == len(exchange) == 2 else "while the exchange files were written"
        if not imported:
            return "before the import was stored"
        made = [cells for _, cells in state.by_name.values() if cells[FINISHED] == "1" and cells[-1] == self.market.last_day]
        if len(made) == len(state.by_name):
            return "with all figures made, before the exchange files"
        if made:
            return "while the figures were made"
        # The import itself brings the rows of what it holds, so the others tell how far the dialog has come.
        versions = frozenset(state.version(number_of(code)) for code in CODES if code not in held(LATER))
        return {frozenset({0}): "after the import, before the ingestion", frozenset({0, 1}): "in the ingestion"}.get(
            versions, "after the import, before the figures")


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--bin", type=pathlib.Path, required=True, help="folder of the programs")
    parser.add_argument("--market-data", type=pathlib.Path, help="folder with real daily bars; without it they are made up")
    parser.add_argument("--kills", type=int, default=200)
    parser.add_argument("--seed", type=int, default=1)
    arguments = parser.parse_args()
    report = Report()
    with tempfile.TemporaryDirectory(prefix="holdwise-kill-") as folder:
        folder = pathlib.Path(folder)
        market = Market(arguments.bin.resolve(), arguments.market_data, folder)
        campaign = Campaign(market, folder, random.Random(arguments.seed), report)
        print(f"undisturbed: {campaign.seconds[True]:.1f} s, first start {campaign.seconds[False]:.1f} s", flush=True)
        for number in range(1, arguments.kills + 1):
            campaign.round(number)
            if number % 20 == 0:
                print(f"{number} kills, {len(report.problems)} problems", flush=True)
    report.end(f"{arguments.kills} kills")


if __name__ == "__main__":
    main()
